// metadata/headdigest.h - what a pass looks for in the first bytes of a file, found while they are
// fetched: on another thread, from those bytes alone. No state.
#pragma once

#include "metadata/id3v2.h"
#include "platform/disk/files.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace metadata
{

struct HeadDigest : platform::Digest {
    // The bytes in which it was found; it is not valid for any others.
    const char *bytes = nullptr;
    std::size_t byteCount = 0;

    std::int64_t headerPosition = 0; // FindHeaderPosition
    bool hasWholeTag = false;        // of an ID3v2 tag; only then the two below are set:
    FrameFindings findings;          // FindFrames
    bool hasTextsForFrames = false;  // unicode::NeedsFrames
};

// The digest of `start`, the first bytes of a file of `sizeBytes` bytes, for reading tags without
// frames.
[[nodiscard]] std::unique_ptr<platform::Digest> DigestHead(std::string_view start,
                                                           std::int64_t sizeBytes);

// `digest`, if it was made of exactly these bytes at the same place in memory; else null.
[[nodiscard]] const HeadDigest *DigestOf(const platform::Digest *digest, std::string_view bytes);

} // namespace metadata

// metadata/unicode/framelist.h - the frames of an ID3v2 tag of version 2.2, 2.3 or 2.4, found by
// their sizes. No state. Source: the three format documents "ID3 tag version 2", "ID3 tag
// version 2.3.0" and "ID3 tag version 2.4.0 - Main Structure"; sections of the last one where no
// other is named.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace metadata::unicode
{

inline constexpr std::int64_t kTagHeaderBytes = 10;            // of a header or a footer
inline constexpr std::int64_t kLargestBody = (1LL << 28U) - 1; // its size has four times seven bits

// A frame is unpacked only up to the first size, and all frames of a tag together up to the second
// one. The longest texts that people write are far shorter; a longer one was made to exhaust the
// memory or the time.
inline constexpr std::size_t kMaxUnpackedBytes = 8U << 20U;
inline constexpr std::size_t kMaxUnpackedInTag = 32U << 20U;

// The most frames of a tag that are read; later ones are ignored.
inline constexpr std::size_t kMostFrames = 65536;

// The header of a tag, or its footer (sections 3.1 and 3.4).
struct TagHeader {
    static constexpr unsigned kFooterFlag = 0x10;

    int majorVersion = 0;       // 2, 3 or 4
    unsigned flags = 0;         // bits of section 3.1
    std::int64_t bodyBytes = 0; // between header and footer, as stored

    bool HasFooter() const { return majorVersion == 4 && (flags & kFooterFlag) != 0; }
    // Of the whole tag, header and footer included.
    std::int64_t WholeBytes() const { return bodyBytes + (HasFooter() ? 2 : 1) * kTagHeaderBytes; }
};

// The header at the beginning of `bytes`. No value: the 10 bytes are no header of these versions. A
// size with a byte of 0x80 or more is read as a plain number, which some programs write.
[[nodiscard]] std::optional<TagHeader> ReadTagHeader(std::string_view bytes);

// The same for the footer of a tag at the end of a file, which begins with "3DI".
[[nodiscard]] std::optional<TagHeader> ReadTagFooter(std::string_view bytes);

// One frame of a tag. The views are valid as long as its FrameList and the tag's bytes.
struct Frame {
    std::string_view id;   // in version 2.3, if that has the same frame; else as stored
    std::string_view data; // after the frame's header, as stored
    int majorVersion = 0;
    unsigned statusFlags = 0;    // the first flag byte; 0 in version 2.2
    unsigned formatFlags = 0;    // the second flag byte; 0 in version 2.2
    bool unsynchronised = false; // `data` has a NUL after each byte 0xFF that would need one
    bool isBomb = false;         // it unpacks to more bytes than the bounds allow
    std::string_view whole = {}; // header and data, as stored
};

// The frames of one tag, in the order of the file.
struct FrameList {
    std::vector<Frame> frames;
    bool isUpdate = false;            // its frames replace those of earlier tags (section 3.2)
    std::optional<std::int64_t> seek; // bytes from this tag's end to the next tag (SEEK frame)
    std::string_view rest;            // after the last frame: padding, or what is no frame
    std::size_t unpackedBytes = 0;    // of its compressed frames together
    std::vector<char> resynchronised; // bytes of `data` that are not stored like this in the tag
};

// The frames of the tag whose header is `header` and whose bytes, header included, are `tag`; the
// bytes may end too early. The list has views into `tag`. The walk ends at padding, at a frame that
// reaches past the end, and at bytes that are no identifier. In version 2.4, when a size leads to
// no frame, but leads to one if it is read as a plain number, it is read like that: a well-known
// program wrote such sizes. An extended header that is announced and missing is ignored. Compressed
// frames that together unpack to more than `mayUnpack` bytes are marked.
[[nodiscard]] FrameList ReadFrames(const TagHeader &header, std::string_view tag,
                                   std::size_t mayUnpack = kMaxUnpackedInTag);

// What is in front of a frame's content, by its flags.
struct FrameExtras {
    std::size_t bytes = 0;
    bool compressed = false;
    bool encrypted = false;
    bool grouped = false;
    bool hasLength = false; // of the content, in 4 bytes
};
[[nodiscard]] FrameExtras ExtrasOf(const Frame &frame);

// The content of a frame: without group, encryption and length bytes, with unsynchronisation and
// compression undone.
// Returns: no value when it is encrypted, damaged, or larger than the bounds when unpacked.
[[nodiscard]] std::optional<std::string> FrameContent(const Frame &frame);

// The same without a copy, where the content is stored as it is: a view into the tag, or into
// `buffer`.
[[nodiscard]] std::optional<std::string_view> ViewContent(const Frame &frame, std::string &buffer);

// `bytes` with the unsynchronisation undone: a NUL after a byte 0xFF is removed (section 6.1).
[[nodiscard]] std::string Resynchronise(std::string_view bytes);

} // namespace metadata::unicode

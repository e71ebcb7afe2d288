// metadata/filepass.h - the bytes of an MP3 file that one pass (one reading of the file) needs: the
// beginning with the whole ID3v2 body and the first bytes for the header search, and the end with
// the ID3v1 tag. They are read in as few calls as the file allows, each byte once.
#pragma once

#include "metadata/unicode/tagtexts.h"
#include "platform/disk/files.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace metadata
{

inline constexpr std::size_t kImageBytes = 128; // of the ID3v1 tag

// The bytes read from one file. The buffer is reused from file to file.
struct FileBytes {
    platform::FileIdentity file; // as it was when it was opened
    int failure = 0;             // an errno: 0 when all that is needed could be read
    bool opened = false;
    bool claimsTooMuch = false;  // the ID3v2 tag's size exceeds the file's length
    bool hasID3v2Header = false; // the file begins with "ID3"
    int majorVersion = 0;        // of that header; 0 where the file ends before it
    std::int64_t bodyBytes = 0;  // of the ID3v2 tag, as its header says
    std::int64_t openedAtNs = 0; // by the clock of file stamps
    platform::ByteBuffer head;   // the file's first bytes; it may be longer than what was read
    std::size_t headBytes = 0;   // how many of its bytes were read from the file
    // What was found in these bytes while they were fetched (metadata/headdigest.h); may be null.
    std::unique_ptr<platform::Digest> digest;
    // The file's last bytes: the ID3v1 tag, and before it what may be the footer of an ID3v2 tag.
    // NULs where the file ended early, and at the front when it is shorter.
    std::array<char, 10 + kImageBytes> tail{};
    bool hasTail = false; // of the last 128 bytes at least the first three were read
    // Whether the tags were read by their frames (shell::Globals::UnicodeTags). claimsTooMuch is
    // false then, and `bodyBytes` is at most the length of the file.
    bool readsUnicode = false;
    std::optional<unicode::TagTexts> texts; // then the fields of all its tags, if it has any
    unicode::ReadingOptions options;        // used for reading them

    // The part of the file's beginning that was read.
    [[nodiscard]] std::string_view Head() const { return {head.data(), headBytes}; }

    // The bytes of the ID3v1 tag, if the file has one.
    [[nodiscard]] std::string_view Image() const
    {
        return std::string_view(tail.data(), tail.size()).substr(tail.size() - kImageBytes);
    }

    // The body after the 10-byte header, `bodyBytes` long; NULs where the file ends before it
    // does.
    [[nodiscard]] std::string_view Body() const
    {
        return {head.data() + 10, static_cast<std::size_t>(bodyBytes)};
    }

    // The byte at a one-based position of the file; 0 when it was not read.
    [[nodiscard]] std::uint8_t ByteAt(std::int64_t position) const;
};

// Reads `path` into `bytes`. `beforeSlowRead`, when not empty, is called before each read that may
// have to wait for a disk or a network.
// Returns: the handle when the file is to stay open (claimsTooMuch), else -1.
// Errors: none thrown; see `failure`.
int ReadFileBytes(const std::string &path, const std::function<void()> &beforeSlowRead,
                  FileBytes &bytes);

// Announces the files that will be read next, in this order.
void ExpectReads(const std::vector<std::string> &paths);

// The same for files that will be read only when they are in another state than this.
void ExpectReadsUnlessInState(const std::vector<platform::FileIdentity> &states);

// Whether `bytes` are still those of `path`: it is the same file, it has not changed since, and its
// last change was so long before it was opened that a later change has another time stamp.
bool IsStillTheSame(const std::string &path, FileBytes &bytes);

} // namespace metadata

// metadata/filepass.h - the bytes of an MP3 file that a pass looks at: the beginning with the whole
// ID3v2 body, the first bytes for the header search, and the last 128. Read in as few calls as the
// file allows, each byte once.
#pragma once

#include "platform/files.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace metadata
{

// What was read of one file. The buffer is reused from file to file.
struct FileBytes {
    platform::FileIdentity file; // as it was when it was opened
    int failure = 0;             // an errno: 0 when all that is needed could be read
    bool opened = false;
    bool claimsTooMuch = false;   // the ID3v2 tag's size exceeds the file's length
    bool hasID3v2Header = false;  // the file begins with "ID3"
    int majorVersion = 0;         // of that header; 0 where the file ends before it
    std::int64_t bodyBytes = 0;   // of the ID3v2 tag, as its header says
    std::int64_t openedAtNs = 0;  // by the clock of file stamps
    std::vector<char> head;       // grows only
    std::size_t headBytes = 0;    // in use
    std::array<char, 128> tail{}; // NULs where the file ended early
    bool hasTail = false;         // the file has 128 bytes, and the last ones begin in it

    // The file's beginning as far as it was read.
    [[nodiscard]] std::string_view Head() const { return {head.data(), headBytes}; }

    // The body after the 10-byte header, `bodyBytes` long; NULs where the file ends before it
    // does.
    [[nodiscard]] std::string_view Body() const
    {
        return {head.data() + 10, static_cast<std::size_t>(bodyBytes)};
    }

    // The byte at a one-based position of the beginning; 0 after what was read.
    [[nodiscard]] std::uint8_t ByteAt(std::int64_t position) const;
};

// Reads `path` into `bytes`. `beforeSlowRead`, when not empty, is called before each read that may
// have to wait for a disk or a network.
// Returns: the handle when the file is to stay open (claimsTooMuch), else -1.
int ReadFileBytes(const std::string &path, const std::function<void()> &beforeSlowRead,
                  FileBytes &bytes);

// Says which files will be read next, in this order.
void ExpectReads(const std::vector<std::string> &paths);

// Whether `bytes` are still those of `path`: it is the very same file, not changed since, and its
// last change lay so far back when it was opened that another one could not have hidden behind the
// same time stamp.
bool IsStillTheSame(const std::string &path, FileBytes &bytes);

} // namespace metadata

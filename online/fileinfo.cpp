#include "online/fileinfo.h"

#include "platform/disk/wholefiles.h"
#include "shell/apppath.h"
#include "shell/version.h"

#include <cstdint>

namespace online
{

namespace
{

constexpr std::string_view kOwnName = "Quenlin.exe";
constexpr std::size_t kMaxBytes = 64u << 20; // of a file that is read

constexpr std::string_view kSignature("\xBD\x04\xEF\xFE", 4);
constexpr std::size_t kVersionOffset = 8; // after the signature and the structure's version
constexpr std::size_t kWords = 8;         // bytes of the file version
// The end of the key, its NUL and up to two bytes of padding are before the signature.
constexpr std::string_view kKeyEnd("F\0O\0\0\0", 6);
constexpr std::size_t kMaxPadding = 2;

unsigned Word(std::string_view bytes, std::size_t at)
{
    return static_cast<std::uint8_t>(bytes[at]) |
           static_cast<unsigned>(static_cast<std::uint8_t>(bytes[at + 1])) << 8;
}

bool FollowsKey(std::string_view before)
{
    for (std::size_t padding = 0; padding <= kMaxPadding && padding <= before.size(); ++padding)
        if (before.substr(0, before.size() - padding).ends_with(kKeyEnd))
            return true;
    return false;
}

std::string Dotted(unsigned first, unsigned second, unsigned third)
{
    return std::to_string(first) + "." + std::to_string(second) + "." + std::to_string(third);
}

} // namespace

std::string VersionInBlock(std::string_view bytes)
{
    for (auto at = bytes.find(kSignature); at != std::string_view::npos;
         at = bytes.find(kSignature, at + 1)) {
        if (bytes.size() - at < kVersionOffset + kWords || !FollowsKey(bytes.substr(0, at)))
            continue;
        const std::size_t words = at + kVersionOffset;
        return Dotted(Word(bytes, words + 2), Word(bytes, words), Word(bytes, words + 4));
    }
    return {};
}

std::string FileVersion(const std::string &path)
{
    if (path == shell::AppFile(kOwnName))
        return shell::VersionText(shell::kProgramVersion, ".");
    const auto bytes = platform::ReadRegularFile(path, kMaxBytes + 1);
    return bytes && bytes->size() <= kMaxBytes ? VersionInBlock(*bytes) : std::string{};
}

} // namespace online

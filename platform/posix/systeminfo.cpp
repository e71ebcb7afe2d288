#include "platform/posix/systeminfo.h"

#include "platform/disk/wholefiles.h"

#include <sys/utsname.h>

#include <optional>

namespace platform::posix
{

namespace
{

constexpr std::size_t kMaxReleaseBytes = 64u << 10;

std::string Unquoted(std::string_view value)
{
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front())
        value = value.substr(1, value.size() - 2);
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size())
            ++i;
        text += value[i];
    }
    return text;
}

std::string ValueOf(std::string_view text, std::string_view key)
{
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        if (line.starts_with(key) && line.substr(key.size()).starts_with('='))
            return Unquoted(line.substr(key.size() + 1));
    }
    return {};
}

} // namespace

std::string NameInRelease(std::string_view text)
{
    std::string pretty = ValueOf(text, "PRETTY_NAME");
    if (!pretty.empty())
        return pretty;
    const std::string name = ValueOf(text, "NAME");
    const std::string version = ValueOf(text, "VERSION_ID");
    return name.empty() || version.empty() ? name : name + " " + version;
}

std::string OsRelease::Name()
{
    for (const std::string &file : m_files) {
        std::string name =
            NameInRelease(ReadRegularFile(file, kMaxReleaseBytes).value_or(std::string()));
        if (!name.empty())
            return name;
    }
    utsname kernel{};
    if (uname(&kernel) != 0)
        return {};
    return std::string(kernel.sysname) + " " + kernel.release;
}

} // namespace platform::posix

namespace platform
{

SystemInfo &ThisSystem()
{
    static posix::OsRelease system;
    return system;
}

} // namespace platform

// platform/posix/systeminfo.h - the name of the operating system from its os-release file.
#pragma once

#include "platform/systeminfo.h"

#include <string>
#include <string_view>
#include <vector>

namespace platform::posix
{

// The value of PRETTY_NAME in the text of an os-release file, else NAME and VERSION_ID; empty
// without them. Values may be in quotes, with back-slashes before marks of the shell.
// Source: os-release(5).
[[nodiscard]] std::string NameInRelease(std::string_view text);

// Reads the first of `files` that has a name; if none has, the result is the kernel's name and
// release.
class OsRelease : public SystemInfo
{
public:
    explicit OsRelease(std::vector<std::string> files = {"/etc/os-release", "/usr/lib/os-release"})
        : m_files(std::move(files))
    {
    }
    std::string Name() override;

private:
    std::vector<std::string> m_files;
};

} // namespace platform::posix

// platform/systeminfo.h - what the program asks about the operating system.
#pragma once

#include <string>

namespace platform
{

struct SystemInfo {
    virtual ~SystemInfo() = default;

    // The operating system's name and version as its maker writes them ("Debian GNU/Linux 12
    // (bookworm)"); empty when they cannot be determined.
    virtual std::string Name() = 0;
};

// The operating system of this machine.
SystemInfo &ThisSystem();

} // namespace platform

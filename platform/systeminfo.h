// platform/systeminfo.h - what the program asks about the system that it runs on.
#pragma once

#include <string>

namespace platform
{

struct SystemInfo {
    virtual ~SystemInfo() = default;

    // The system's name and version as its maker writes them ("Debian GNU/Linux 12 (bookworm)");
    // empty when that cannot be found out.
    virtual std::string Name() = 0;
};

// This machine's.
SystemInfo &ThisSystem();

} // namespace platform

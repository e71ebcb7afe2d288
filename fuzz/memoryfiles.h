// fuzz/memoryfiles.h - the files port over one file whose content stands in memory.
#pragma once

#include "platform/posix/systemfiles.h"

#include <algorithm>
#include <string_view>

class MemoryFiles : public platform::posix::SystemFilesPort
{
public:
    std::string_view content; // what every path names

    int OpenToRead(const std::string &path, platform::FileIdentity &identity) override
    {
        Identify(path, identity);
        return 1'000'000;
    }
    int Identify(const std::string &path, platform::FileIdentity &identity) override
    {
        identity = {path,
                    1,
                    1,
                    static_cast<std::int64_t>(content.size()),
                    1,
                    1,
                    platform::FileKind::Regular};
        return 0;
    }
    std::int64_t ReadAt(int, std::int64_t offset, char *to, std::size_t count, bool) override
    {
        const auto from = std::min(static_cast<std::size_t>(offset), content.size());
        return static_cast<std::int64_t>(content.substr(from).copy(to, count));
    }
    void Close(int) override {}
};

// platform/posix/systemfiles.h - the files port by the system calls of POSIX. A test derives from
// it to make single calls fail.
#pragma once

#include "platform/files.h"

namespace platform::posix
{

class SystemFilesPort : public Files
{
public:
    int OpenToRead(const std::string &path, FileIdentity &identity) override;
    int Identify(const std::string &path, FileIdentity &identity) override;
    std::int64_t ReadAt(int handle, std::int64_t offset, char *to, std::size_t count,
                        bool mayWait) override;
    void Close(int handle) override;
    std::int64_t StampClockNs() override;
};

} // namespace platform::posix

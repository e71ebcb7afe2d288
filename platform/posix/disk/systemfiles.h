// platform/posix/disk/systemfiles.h - the files port by the system calls of POSIX. A test derives
// from it to make single calls fail.
#pragma once

#include "platform/disk/files.h"

namespace platform::posix
{

class SystemFilesPort : public Files
{
public:
    int OpenToRead(const std::string &path, FileIdentity &identity) override;
    int Identify(const std::string &path, FileIdentity &identity) override;
    int IdentifyOpen(int handle, const std::string &path, FileIdentity &identity) override;
    bool HasChangeTimes(const FileIdentity &file) override;
    std::int64_t ReadAt(int handle, std::int64_t offset, char *to, std::size_t count,
                        bool mayWait) override;
    void Close(int handle) override;
    int RealPath(const std::string &path, std::string &real) override;
    int CreateBeside(const std::string &finalPath, std::string &temporaryPath) override;
    int CreateScratch(const std::string &folder) override;
    int OpenLockFile(const std::string &path) override;
    std::int64_t Write(int handle, const char *from, std::size_t count) override;
    std::int64_t CopyRange(int source, std::int64_t offset, int target, std::size_t count) override;
    int CopyPermissions(int source, int target) override;
    int Flush(int handle) override;
    int FlushFolderOf(const std::string &path) override;
    int Rename(const std::string &from, const std::string &to) override;
    int RenameNew(const std::string &from, const std::string &to) override;
    int TryLock(int handle) override;
    int Delete(const std::string &path) override;
    int MakeFolder(const std::string &path) override;
    int RemoveFolder(const std::string &path) override;
    std::int64_t FreeBytes(const std::string &folder) override;
    std::int64_t StampClockNs() override;
};

} // namespace platform::posix

// tests/metadata/faultyfiles.h - the real files, of which the n-th call that changes something
// fails, or is the one in which the process is killed.
#pragma once

#include "platform/posix/disk/systemfiles.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

namespace tests
{

class FaultyFiles : public platform::posix::SystemFilesPort
{
public:
    int calls = 0;      // that change something, up to now
    int faultyCall = 0; // which of them, from 1 on; 0 = none
    int reason = 0;     // its errno; 0 = the process is killed there and nothing happens any more
    bool isDead = false;
    std::string log; // f: a file flushed, b: named .bck, r: named otherwise, d: a folder flushed
    std::vector<std::string> named, deleted; // the paths that files got or lost, in order
    bool rightsFailed = false;               // those of one file at least
    int createReason = 0;                    // the errno of every CreateBeside, when not 0

    int OpenToRead(const std::string &path, platform::FileIdentity &identity) override
    {
        return isDead ? -5 : SystemFilesPort::OpenToRead(path, identity);
    }
    int Identify(const std::string &path, platform::FileIdentity &identity) override
    {
        return isDead ? 5 : SystemFilesPort::Identify(path, identity);
    }
    int CreateBeside(const std::string &finalPath, std::string &temporaryPath) override
    {
        if (const int fault = createReason != 0 ? createReason : Fault())
            return -fault;
        return SystemFilesPort::CreateBeside(finalPath, temporaryPath);
    }
    // A write that fails has written half.
    std::int64_t Write(int handle, const char *from, std::size_t count) override
    {
        const bool wasDead = isDead;
        if (const int fault = Fault()) {
            if (!wasDead)
                SystemFilesPort::Write(handle, from, count / 2);
            return -fault;
        }
        return SystemFilesPort::Write(handle, from, count);
    }
    std::int64_t CopyRange(int source, std::int64_t offset, int target, std::size_t count) override
    {
        const bool wasDead = isDead;
        if (const int fault = Fault()) {
            const bool cannot = reason == EXDEV || reason == EINVAL || reason == EOPNOTSUPP;
            if (!wasDead && !cannot)
                SystemFilesPort::CopyRange(source, offset, target, count / 2);
            return -fault;
        }
        return SystemFilesPort::CopyRange(source, offset, target, std::min(count, longest));
    }
    int CopyPermissions(int source, int target) override
    {
        const int fault = Fault();
        rightsFailed = rightsFailed || fault != 0;
        return fault != 0 ? fault : SystemFilesPort::CopyPermissions(source, target);
    }
    int Flush(int handle) override
    {
        const int fault = Fault();
        log += 'f';
        return fault != 0 ? fault : SystemFilesPort::Flush(handle);
    }
    int FlushFolderOf(const std::string &path) override
    {
        const int fault = Fault();
        log += 'd';
        return fault != 0 ? fault : SystemFilesPort::FlushFolderOf(path);
    }
    int Rename(const std::string &from, const std::string &to) override
    {
        const int fault = Fault();
        log += to.ends_with(".bck") ? 'b' : 'r';
        const int failure = fault != 0 ? fault : SystemFilesPort::Rename(from, to);
        if (failure == 0)
            named.push_back(to);
        return failure;
    }
    int RenameNew(const std::string &from, const std::string &to) override
    {
        const int fault = Fault();
        log += to.ends_with(".bck") ? 'b' : 'r';
        const int failure = fault != 0 ? fault : SystemFilesPort::RenameNew(from, to);
        if (failure == 0)
            named.push_back(to);
        return failure;
    }
    int Delete(const std::string &path) override
    {
        const int fault = Fault();
        const int failure = fault != 0 ? fault : SystemFilesPort::Delete(path);
        if (failure == 0)
            deleted.push_back(path);
        return failure;
    }
    int MakeFolder(const std::string &path) override
    {
        const int fault = Fault();
        return fault != 0 ? fault : SystemFilesPort::MakeFolder(path);
    }

    std::size_t longest = 3000; // of one CopyRange, so that a copy takes several

private:
    int Fault()
    {
        if (isDead)
            return 5;
        if (++calls != faultyCall)
            return 0;
        isDead = reason == 0;
        return isDead ? 5 : reason;
    }
};

} // namespace tests

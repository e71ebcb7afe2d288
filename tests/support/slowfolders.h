// tests/support/slowfolders.h - the folders port with disks that do not answer.
#pragma once

#include "platform/clock.h"
#include "platform/machine.h"
#include "platform/posix/disk/systemfolders.h"

#include <set>
#include <string>
#include <vector>

namespace tests
{

// The real folders, except those in `silent`: reading one of these waits, by the clock port, as
// long as the caller is willing to. While one exists, it is TheMachine().folders.
class SlowFolders : public platform::posix::SystemFolders
{
public:
    SlowFolders() { platform::TheMachine().folders = this; }
    ~SlowFolders() override { platform::TheMachine().folders = nullptr; }
    SlowFolders(const SlowFolders &) = delete;
    SlowFolders &operator=(const SlowFolders &) = delete;

    platform::FolderContents List(const std::string &path, const std::vector<std::string> &leaveOut,
                                  const KeepWaiting &keepWaiting) override
    {
        return IsSilent(path, keepWaiting) ? platform::FolderContents{}
                                           : SystemFolders::List(path, leaveOut, keepWaiting);
    }
    platform::FolderAnswer Probe(const std::string &path, const std::vector<std::string> &leaveOut,
                                 const KeepWaiting &keepWaiting, std::string &firstFolder) override
    {
        return IsSilent(path, keepWaiting)
                   ? platform::FolderAnswer::NoAnswer
                   : SystemFolders::Probe(path, leaveOut, keepWaiting, firstFolder);
    }

    std::set<std::string> silent;

private:
    bool IsSilent(const std::string &path, const KeepWaiting &keepWaiting) const
    {
        if (!silent.contains(path))
            return false;
        while (keepWaiting())
            platform::TheMachine().clock->Sleep(20);
        return true;
    }
};

} // namespace tests

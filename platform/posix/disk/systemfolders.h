// platform/posix/disk/systemfolders.h - the folders of this machine. A helper thread reads the
// disk, so that the caller can stop waiting for a disk that never answers. The thread only uses its
// own question, and nobody waits for its end.
#pragma once

#include "platform/disk/folders.h"

#include <memory>

namespace platform::posix
{

class SystemFolders : public Folders
{
public:
    // The parts that tests replace.
    struct Places {
        // The file with the user's folders; empty for the one of the configuration folder.
        // Source: xdg-user-dirs, user-dirs.dirs(5).
        std::string userFolders;
        // Whether the folder `name` of the open folder is mounted only when it is opened.
        // Called in the helper thread. Empty asks the kernel.
        std::function<bool(int folder, const char *name)> isAutomount;
        // Called in the helper thread before it asks the disk about `path`. Empty does nothing.
        std::function<void(const std::string &path)> beforeRead;
    };

    SystemFolders() = default;
    explicit SystemFolders(Places places) : m_places(std::move(places)) {}

    // When an earlier question about the same folder still waits for the disk, the answer is
    // NoAnswer at once.
    FolderContents List(const std::string &path, const std::vector<std::string> &leaveOut,
                        const KeepWaiting &keepWaiting) override;
    FolderAnswer Probe(const std::string &path, const std::vector<std::string> &leaveOut,
                       const KeepWaiting &keepWaiting, std::string &firstFolder) override;

    std::string UserFolder(std::string_view purpose) override;
    std::vector<std::string> UserFolderPurposes() override;

    std::string CurrentFolder() override;
    bool SetCurrentFolder(const std::string &path) override;
    int MakeFolder(const std::string &path) override;

private:
    Places m_places;
};

} // namespace platform::posix

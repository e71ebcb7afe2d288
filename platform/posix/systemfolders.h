// platform/posix/systemfolders.h - the folders of this machine. A helper thread asks the disk, so
// that one that never answers costs the caller its patience and no more: the thread knows its
// question only, and nothing waits for it at the end of the process.
#pragma once

#include "platform/folders.h"

#include <memory>

namespace platform::posix
{

class SystemFolders : public Folders
{
public:
    // What tests put in the place of the machine's own.
    struct Places {
        // The file with the user's folders; empty for the one of the configuration folder.
        // Source: xdg-user-dirs, user-dirs.dirs(5).
        std::string userFolders;
        // Whether the folder `name` of the open folder is mounted only when it is looked into.
        // Called in the helper thread. Empty asks the kernel.
        std::function<bool(int folder, const char *name)> isAutomount;
        // Called in the helper thread before it asks the disk about `path`. Empty does nothing.
        std::function<void(const std::string &path)> beforeRead;
    };

    SystemFolders() = default;
    explicit SystemFolders(Places places) : m_places(std::move(places)) {}

    // A question about a folder for which an earlier one still waits for the disk is not asked: its
    // answer is NoAnswer at once.
    FolderContents List(const std::string &path, const std::vector<std::string> &leaveOut,
                        const KeepWaiting &keepWaiting) override;
    FolderAnswer Look(const std::string &path, const std::vector<std::string> &leaveOut,
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

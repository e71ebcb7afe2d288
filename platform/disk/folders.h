// platform/disk/folders.h - what a tree of folders asks of the machine: the folders in a folder,
// the folders that belong to the user, and the process's current folder. Paths are bytes. A disk
// may never answer: each question to one can be given up.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace platform
{

enum class FolderAnswer {
    Listed,     // the folder was read
    Missing,    // there is no such folder
    Unreadable, // it exists, but cannot be read
    NoAnswer    // the disk had not answered when the question was given up
};

// One sub-folder, and the name of the first folder in it in the disk's own order: empty when it has
// none, or when it was not opened.
struct SubFolder {
    std::string name;
    std::string firstFolder;

    bool operator==(const SubFolder &) const = default;
};

struct FolderContents {
    FolderAnswer answer = FolderAnswer::NoAnswer;
    std::vector<SubFolder> folders; // in the disk's own order; links to folders are among them
    std::vector<std::string> files; // the names of all others
};

struct Folders {
    virtual ~Folders() = default;

    // Called about every 20 ms while a disk has not answered; false ends the wait. Empty: waits
    // without a limit.
    using KeepWaiting = std::function<bool()>;

    // The content of the folder. Folders whose full paths are in `leaveOut` are not listed. A
    // folder that is mounted only when it is opened is listed but not opened, and so is a link to
    // the folder itself or to one above it. When the wait ends after the names have been read, what
    // is known by then is returned as Listed.
    virtual FolderContents List(const std::string &path, const std::vector<std::string> &leaveOut,
                                const KeepWaiting &keepWaiting) = 0;

    // Whether the folder can be read, and in `firstFolder` the name of the first folder in it that
    // is not in `leaveOut`; empty when there is none.
    virtual FolderAnswer Probe(const std::string &path, const std::vector<std::string> &leaveOut,
                               const KeepWaiting &keepWaiting, std::string &firstFolder) = 0;

    // The user's own folder for a purpose: "DESKTOP", "MUSIC". Empty when none is set.
    virtual std::string UserFolder(std::string_view purpose) = 0;
    // The purposes for which the user has a folder, in the order of the settings.
    virtual std::vector<std::string> UserFolderPurposes() = 0;

    // The process's current folder, with the links that the user followed; and changing it: false
    // when that failed.
    virtual std::string CurrentFolder() = 0;
    virtual bool SetCurrentFolder(const std::string &path) = 0;

    // Creates a folder in an existing one, with the permissions of the user's new folders. Returns:
    // an errno; EEXIST when the name is taken.
    virtual int MakeFolder(const std::string &path) = 0;
};

} // namespace platform

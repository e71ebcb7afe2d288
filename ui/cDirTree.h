// ui/cDirTree.h - turns a tree control into a browser of folders: the desktop, the computer, its
// drives, and their folders, which are listed when the user opens them.
//
// A node's key is its folder's path in upper case; of two folders that differ in letter case alone
// the second one's key has its path appended. The path itself is kept beside it (PathOf).
#pragma once

#include "platform/folders.h"
#include "ui/controls/keyedlist.h"
#include "ui/controls/keyedtree.h"
#include "ui/controls/label.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace ui
{

// What the host window gives to its tree.
struct DirTreeHost {
    KeyedList *LV = nullptr;  // the list of the folder's files
    Label *lblPath = nullptr; // null where the host has none
    // Puts the desktop's own icon into the list of images under the key "desktop"; false when it
    // cannot be had. Empty: it cannot.
    std::function<bool()> addDesktopIcon;
};

class cDirTree
{
public:
    // Asks for the desktop's path, once.
    cDirTree();
    ~cDirTree();
    cDirTree(const cDirTree &) = delete;
    cDirTree &operator=(const cDirTree &) = delete;

    // Take the tree's events, and the host. Both outlive this object.
    void SetTV(KeyedTree &tree);
    void SetParent(DirTreeHost host);

    // The selection may have changed; a node was clicked. Set by the host.
    std::function<void()> ChangePath;
    std::function<void(NodeId)> NodeSelected;

    // Fills the tree and opens it at the process's current folder. The desktop is a root, or a
    // child of the node `relativeKey`. The tree is emptied first where that key is empty.
    void LoadTV(std::string_view relativeKey = {});

    // Adds desktop, computer and drives. Returns: the text of the first fixed disk's node.
    std::string ListDrives(std::string_view relativeKey);

    // Empties the host's list and adds the folders in `path` below its node, each with its first
    // folder, so that its expander shows. Nothing fails: what cannot be read has no folders.
    void ListDirs(const std::string &path);

    // The key of the selected node; empty when there is none, and setting an unknown one does
    // nothing. No event.
    std::string SelectedNode() const;
    void SetSelectedNode(std::string_view key);

    // The text of the node at `index`, from 1 in the order of adding.
    // Errors: kSubscriptOutOfRange.
    std::string Nodes(int index) const;
    int NodesCount() const;

    bool ExtractIcon() const;                           // the host's addDesktopIcon
    std::string GetDriveName(const std::string &drive); // its label in proper case
    static std::string GetComputerName();               // "My Computer"
    // The names of the user's own folders in the desktop's settings: the values of the one key that
    // there is, "Shell Folders". False for any other key.
    static bool RegEnumValues(std::string_view key, std::vector<std::string> &names);

    // The real path of a node; empty for the computer.
    std::string PathOf(NodeId node) const;
    // Whether the node is a folder or drive, so neither the desktop nor the computer.
    bool IsFolder(NodeId node) const;
    // The node of a folder by its real path, else one whose key is the path in upper case.
    NodeId FindPath(const std::string &path) const;
    // The folders on the way down to `path`, from the longest drive that it is in to itself.
    std::vector<std::string> WayTo(const std::string &path) const;

    // Whether a disk is being waited for, and the end of that wait. The object must stay until
    // the wait has ended.
    bool IsListing() const { return m_listing; }
    void Abandon() { m_abandoned = true; }

    // When set, `ListDirs` lists the folder's files too. Nothing sets it in this program.
    bool listFiles = false;

    // How long a disk may take before its folder shows without sub-folders.
    static constexpr std::int64_t kPatienceMs = 2000;

private:
    void Expand(NodeId node);
    void Collapse(NodeId node);
    void TV_NodeClick(NodeId node);
    void RaiseChangePath() const;
    void PrepareList() const;
    void AddFolders(NodeId parent, const std::string &path,
                    const std::vector<platform::SubFolder> &folders);
    NodeId AddFolder(NodeId parent, const std::string &path, const std::string &upperPath,
                     std::string_view text);
    NodeId AddNode(NodeId parent, std::string_view key, const std::string &path,
                   std::string_view text, std::string_view image, std::string_view selectedImage);
    void AddDrive(NodeId computer, const std::string &drive, std::string &firstFixed);
    platform::Folders::KeepWaiting Patience();
    void EndPatience();

    KeyedTree *m_tree = nullptr;
    DirTreeHost m_host;
    std::string m_desktopPath;
    NodeId m_desktop = kNoNode;
    std::unordered_set<std::string> m_expanded;       // keys of nodes that were filled by Expand
    std::vector<std::string> m_paths;                 // by NodeId
    std::unordered_map<std::string, NodeId> m_byPath; // folders and drives
    std::vector<std::string> m_roots;                 // the drives
    bool m_listing = false;
    bool m_abandoned = false;
    bool m_yielded = false;
    std::int64_t m_since = 0; // of the wait under way
};

// `text` with a capital at the start of each word and small letters after it; blanks, tabs, line
// ends and NULs part words.
std::string ProperCase(std::string_view text);

} // namespace ui

// ui/cDirTree.h - makes a tree control show folders: the desktop, the computer, its drives and
// their folders, which are listed when the user opens them.
//
// A node's key is the path of its folder in upper case. When two folders differ only in letter
// case, the second one's key is followed by its path. The path itself is returned by PathOf.
#pragma once

#include "platform/disk/folders.h"
#include "ui/controls/inputs/keyedlist.h"
#include "ui/controls/inputs/keyedtree.h"
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

// What the window with the tree provides.
struct DirTreeHost {
    KeyedList *LV = nullptr;  // the list of the folder's files
    Label *lblPath = nullptr; // null when the window has none
    // Adds the desktop's own icon to the images with the key "desktop". Returns: false when there
    // is none. An empty function: there is none.
    std::function<bool()> addDesktopIcon;
};

class cDirTree
{
public:
    // Reads the path of the desktop folder, once.
    cDirTree();
    ~cDirTree();
    cDirTree(const cDirTree &) = delete;
    cDirTree &operator=(const cDirTree &) = delete;

    // Set the tree whose events this object handles, and the host. Both outlive this object.
    void SetTV(KeyedTree &tree);
    void SetParent(DirTreeHost host);

    // The selection may have changed, or a node was clicked. Set by the host.
    std::function<void()> ChangePath;
    std::function<void(NodeId)> NodeSelected;

    // Fills the tree, and expands it down to the current folder of the process, which is then
    // selected. With an empty `relativeKey` the tree is emptied first, and the desktop is a root;
    // else the desktop is a child of the node with that key.
    void LoadTV(std::string_view relativeKey = {});

    // Adds the nodes of the desktop, the computer and the drives; `relativeKey` as in LoadTV.
    // Returns: the text of the first fixed disk's node; empty when there is none.
    std::string ListDrives(std::string_view relativeKey);

    // Empties the host's list and adds the folders in `path` below its node, each with its first
    // sub-folder, so that the expander is shown. Nothing fails: a folder that cannot be read has no
    // sub-folders.
    void ListDirs(const std::string &path);

    // The key of the selected node; empty when there is none. SetSelectedNode selects the node with
    // this key, without an event; it does nothing when no node has the key.
    std::string SelectedNode() const;
    void SetSelectedNode(std::string_view key);

    // Nodes returns the text of the node with the number `index` (one-based, in the order of
    // adding), NodesCount the number of nodes.
    // Errors: kSubscriptOutOfRange when there is no such node.
    std::string Nodes(int index) const;
    int NodesCount() const;

    bool ExtractIcon() const;                           // the host's addDesktopIcon
    std::string GetDriveName(const std::string &drive); // its label, words with capital letters
    static std::string GetComputerName();               // "My Computer"
    // Sets `names` to the names of the user's own folders ("DESKTOP", "MUSIC", ...) that the
    // settings of the desktop have. The only key is "Shell Folders".
    // Returns: false for any other key; `names` is then unchanged.
    static bool RegEnumValues(std::string_view key, std::vector<std::string> &names);

    // The real path of a node; empty for the computer.
    std::string PathOf(NodeId node) const;
    // Whether the node is a folder or a drive; false for the desktop and the computer.
    bool IsFolder(NodeId node) const;
    // The node of a folder by its real path, else the node whose key is the path in upper case.
    NodeId FindPath(const std::string &path) const;
    // The paths of the folders from the drive that contains `path` down to `path` itself. When
    // several drives contain it, the one with the longest path. Empty when none does.
    std::vector<std::string> FoldersDownTo(const std::string &path) const;

    // Whether a disk is being waited for; Abandon ends that wait. This object must not be destroyed
    // before the wait has ended.
    bool IsListing() const { return m_listing; }
    void Abandon() { m_abandoned = true; }

    // When true, `ListDirs` lists the folder's files too. Nothing sets it in this program.
    bool listFiles = false;

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
    platform::Folders::KeepWaiting BeginWait();
    void EndWait();

    KeyedTree *m_tree = nullptr;
    DirTreeHost m_host;
    std::string m_desktopPath;
    NodeId m_desktop = kNoNode;
    std::unordered_set<std::string> m_expanded;       // keys of the nodes that Expand has filled
    std::vector<std::string> m_paths;                 // index: NodeId
    std::unordered_map<std::string, NodeId> m_byPath; // folders and drives
    std::vector<std::string> m_roots;                 // the drives
    bool m_listing = false;
    bool m_abandoned = false;
    bool m_yielded = false;
};

// `text` with a capital letter at the start of each word and small letters after it. Blanks, tabs,
// line ends and NULs separate words.
std::string ProperCase(std::string_view text);

} // namespace ui

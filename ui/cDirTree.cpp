#include "ui/cDirTree.h"

#include "platform/desktop.h"
#include "platform/disk/drives.h"
#include "platform/machine.h"
#include "platform/waiting.h"
#include "runtime/paths.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ui
{

namespace
{

constexpr std::string_view kRootKey = "root";
constexpr char kSeparator = '/';

std::string InBrackets(const std::string &drive)
{
    return "(" + drive + ")";
}

// How a drive is shown, by its type.
struct DriveStyle {
    std::string_view image;
    bool named = false;    // the name of the volume comes first
    bool isFloppy = false; // not read before the user opens it
    bool isFixed = false;
};

DriveStyle StyleOf(platform::DriveType type)
{
    switch (type) {
    case platform::DriveType::Removable:
        return {"floppy", false, true, false};
    case platform::DriveType::Remote:
        return {"net", true, false, false};
    case platform::DriveType::CdRom:
        return {"cdrom", true, false, false};
    case platform::DriveType::NoRoot:
    case platform::DriveType::Fixed:
        return {"hard", true, false, true};
    default:
        return {"hard", false, false, false};
    }
}

} // namespace

std::string ProperCase(std::string_view text)
{
    constexpr std::string_view kParting = std::string_view("\0\t\n\v\f\r ", 7);
    std::string result;
    bool atStart = true;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1; // of the character, with its continuation bytes
        while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0u) == 0x80u)
            end++;
        const std::string_view character = text.substr(at, end - at);
        result += atStart ? runtime::UpperText(character) : runtime::LowerText(character);
        atStart = kParting.find(text[at]) != std::string_view::npos;
        at = end;
    }
    return result;
}

cDirTree::cDirTree() : m_desktopPath(platform::TheFolders().UserFolder("DESKTOP")) {}

cDirTree::~cDirTree()
{
    if (m_tree == nullptr)
        return;
    m_tree->onExpand = m_tree->onCollapse = m_tree->onNodeClick = nullptr;
}

void cDirTree::SetTV(KeyedTree &tree)
{
    m_tree = &tree;
    tree.onExpand = [this](NodeId node) { Expand(node); };
    tree.onCollapse = [this](NodeId node) { Collapse(node); };
    tree.onNodeClick = [this](NodeId node) { TV_NodeClick(node); };
}

void cDirTree::SetParent(DirTreeHost host)
{
    m_host = std::move(host);
}

bool cDirTree::ExtractIcon() const
{
    return m_host.addDesktopIcon && m_host.addDesktopIcon();
}

std::string cDirTree::GetDriveName(const std::string &drive)
{
    return ProperCase(platform::TheMachine().drives->LabelOf(drive));
}

std::string cDirTree::GetComputerName()
{
    return "My Computer";
}

bool cDirTree::RegEnumValues(std::string_view key, std::vector<std::string> &names)
{
    if (key != "Shell Folders")
        return false;
    names = platform::TheFolders().UserFolderPurposes();
    return true;
}

std::string cDirTree::SelectedNode() const
{
    const NodeId node = m_tree->Selected();
    return node == kNoNode ? std::string() : std::string(m_tree->Key(node));
}

void cDirTree::SetSelectedNode(std::string_view key)
{
    if (const NodeId node = m_tree->Find(key); node != kNoNode)
        m_tree->Select(node);
}

std::string cDirTree::Nodes(int index) const
{
    return std::string(m_tree->Text(index - 1));
}

int cDirTree::NodesCount() const
{
    return m_tree->Count();
}

std::string cDirTree::PathOf(NodeId node) const
{
    const auto index = static_cast<std::size_t>(node);
    return node >= 0 && index < m_paths.size() ? m_paths[index] : std::string();
}

bool cDirTree::IsFolder(NodeId node) const
{
    return node != m_desktop && !PathOf(node).empty();
}

NodeId cDirTree::FindPath(const std::string &path) const
{
    const auto found = m_byPath.find(path);
    return found != m_byPath.end() ? found->second : m_tree->Find(runtime::UpperText(path));
}

std::vector<std::string> cDirTree::FoldersDownTo(const std::string &path) const
{
    std::string root;
    for (const std::string &drive : m_roots)
        if (runtime::IsInFolder(path, drive) && drive.size() > root.size())
            root = drive;
    if (root.empty())
        return {};
    std::vector<std::string> folders{root};
    while (folders.back().size() < path.size()) {
        const std::string &last = folders.back();
        const std::size_t from = last.size() + (last.ends_with(kSeparator) ? 0 : 1);
        const auto end = std::min(path.find(kSeparator, from), path.size());
        if (end <= from) // a separator at the end of the path
            break;
        folders.push_back(path.substr(0, end));
    }
    return folders;
}

// --- Adding nodes.

NodeId cDirTree::AddNode(NodeId parent, std::string_view key, const std::string &path,
                         std::string_view text, std::string_view image,
                         std::string_view selectedImage)
{
    const NodeId node = m_tree->TryAdd(parent, key, text, image, selectedImage);
    if (node == kNoNode)
        return node;
    m_paths.resize(static_cast<std::size_t>(node) + 1);
    m_paths.back() = path;
    return node;
}

// Adds the node of a folder if there is none yet. Its key is `upperPath`; when another folder has
// that key, `upperPath` followed by `path`. Returns: the node; kNoNode when both keys are in use.
NodeId cDirTree::AddFolder(NodeId parent, const std::string &path, const std::string &upperPath,
                           std::string_view text)
{
    if (const auto known = m_byPath.find(path); known != m_byPath.end())
        return known->second;
    NodeId node = AddNode(parent, upperPath, path, text, "closed", "open");
    if (node == kNoNode)
        node = AddNode(parent, upperPath + path, path, text, "closed", "open");
    if (node != kNoNode)
        m_byPath.emplace(path, node);
    return node;
}

void cDirTree::AddFolders(NodeId parent, const std::string &path,
                          const std::vector<platform::SubFolder> &folders)
{
    TreeUpdate update(*m_tree);
    m_byPath.reserve(m_byPath.size() + 2 * folders.size());
    const std::string front = runtime::JoinPath(path, "");
    const std::string upperFront = runtime::UpperText(front);
    for (const platform::SubFolder &folder : folders) {
        const std::string child = front + folder.name;
        const std::string upperChild = upperFront + runtime::UpperText(folder.name);
        const NodeId node = AddFolder(parent, child, upperChild, folder.name);
        if (node != kNoNode && !folder.firstFolder.empty())
            AddFolder(node, runtime::JoinPath(child, folder.firstFolder),
                      runtime::JoinPath(upperChild, runtime::UpperText(folder.firstFolder)),
                      folder.firstFolder);
    }
}

void cDirTree::AddDrive(NodeId computer, const std::string &drive, std::string &firstFixed)
{
    const DriveStyle style = StyleOf(platform::TheMachine().drives->TypeOf(drive));
    std::string text = InBrackets(drive);
    if (style.isFloppy)
        text = "Floppy " + text;
    else if (const std::string name = style.named ? GetDriveName(drive) : ""; !name.empty())
        text = name + " " + text;
    const NodeId node =
        AddNode(computer, runtime::UpperText(drive), drive, text, style.image, style.image);
    if (node == kNoNode)
        return;
    m_byPath.emplace(drive, node);
    if (style.isFixed && firstFixed.empty())
        firstFixed = text;
    std::string first;
    if (!style.isFloppy &&
        platform::TheFolders().Probe(drive, m_roots, BeginWait(), first) ==
            platform::FolderAnswer::Listed &&
        !first.empty())
        AddFolders(node, drive, {{first, {}}});
}

std::string cDirTree::ListDrives(std::string_view relativeKey)
{
    const std::string computerImage = ExtractIcon() ? "desktop" : "open";
    const NodeId parent = relativeKey.empty() ? kNoNode : m_tree->Find(relativeKey);
    m_desktop = AddNode(parent, m_desktopPath, m_desktopPath, "Desktop", "desk", "desk");
    const NodeId computer =
        AddNode(m_desktop, kRootKey, {}, GetComputerName(), computerImage, computerImage);
    m_roots = platform::TheMachine().drives->Roots();
    std::string firstFixed;
    m_listing = true;
    for (const std::string &drive : m_roots)
        AddDrive(computer, drive, firstFixed);
    EndWait();
    if (m_tree->Count() > 1)
        m_tree->MakeVisible(1);
    platform::TheMachine().desktop->SetPointer(platform::Pointer::Normal);
    return firstFixed;
}

// --- Waiting for disks.

// While events run the tree is disabled, so that no click changes it.
platform::Folders::KeepWaiting cDirTree::BeginWait()
{
    const auto disable = [this] {
        m_yielded = true;
        m_tree->SetEnabled(false);
    };
    return [this, keepWaiting = platform::WaitWithEvents(disable)] {
        return keepWaiting() && !m_abandoned;
    };
}

void cDirTree::EndWait()
{
    m_listing = false;
    if (std::exchange(m_yielded, false))
        m_tree->SetEnabled(true);
}

void cDirTree::PrepareList() const
{
    if (m_host.LV == nullptr)
        return;
    KeyedList &list = *m_host.LV;
    list.ClearColumns();
    list.AddColumn("unique", "none", 8000);
    list.HideHeaders(true);
    list.ClearRows();
}

void cDirTree::ListDirs(const std::string &path)
{
    PrepareList();
    if (path.empty() || m_listing || m_abandoned)
        return;
    m_listing = true;
    const platform::FolderContents contents =
        platform::TheFolders().List(path, m_roots, BeginWait());
    EndWait();
    const NodeId parent = path == m_desktopPath ? m_desktop : FindPath(path);
    if (parent == kNoNode)
        return;
    AddFolders(parent, path, contents.folders);
    if (!listFiles || m_host.LV == nullptr)
        return;
    for (const std::string &file : contents.files)
        m_host.LV->AddRow(file, ProperCase(file), {}, {});
}

// --- Events.

void cDirTree::RaiseChangePath() const
{
    if (ChangePath)
        ChangePath();
}

void cDirTree::Expand(NodeId node)
{
    if (!IsFolder(node))
        return;
    RaiseChangePath();
    if (m_listing || m_expanded.contains(std::string(m_tree->Key(node))))
        return;
    ListDirs(PathOf(node));
    m_tree->SortChildren(node);
    m_expanded.emplace(m_tree->Key(node));
}

void cDirTree::Collapse(NodeId node)
{
    TV_NodeClick(node);
}

void cDirTree::TV_NodeClick(NodeId node)
{
    platform::Desktop &desktop = *platform::TheMachine().desktop;
    desktop.SetPointer(platform::Pointer::ArrowHourglass);
    ListDirs(PathOf(node));
    desktop.SetPointer(platform::Pointer::Normal);
    RaiseChangePath();
    if (!IsFolder(node)) {
        if (m_host.lblPath != nullptr)
            m_host.lblPath->SetCaption("");
        return;
    }
    RaiseChangePath();
    if (NodeSelected)
        NodeSelected(node);
}

void cDirTree::LoadTV(std::string_view relativeKey)
{
    m_expanded.clear();
    m_abandoned = false;
    if (relativeKey.empty()) {
        m_tree->Clear();
        m_paths.clear();
        m_byPath.clear();
    }
    const std::string firstFixed = ListDrives(relativeKey);
    for (NodeId node = 0; node < m_tree->Count(); node++)
        if (m_tree->Text(node) == firstFixed) {
            m_tree->Select(node);
            ListDirs(PathOf(node));
            break;
        }
    const std::string current = platform::TheFolders().CurrentFolder();
    for (const std::string &part : FoldersDownTo(current))
        ListDirs(part);
    const NodeId node = FindPath(current);
    if (node == kNoNode)
        return;
    m_tree->MakeVisible(node);
    m_tree->Select(node);
    TV_NodeClick(node);
}

} // namespace ui

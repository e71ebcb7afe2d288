// ui/controls/keyedtree.h - a tree of nodes found by key, children in insertion order. Keys and
// texts (UTF-8) are kept in one block, so that 100,000 nodes cost what their text costs.
#pragma once

#include "runtime/keyindex.h"
#include "ui/controls/area.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ui
{

// A node's number, from 0 in the order of adding. It holds until the next Remove or Clear.
using NodeId = std::int32_t;
inline constexpr NodeId kNoNode = -1;

class KeyedTree : public Area
{
public:
    // Adds a node below `parent`, or a root for kNoNode. Images are keys of an image list; an empty
    // `selectedImage` means that a selected node keeps its image.
    // Errors: kDuplicateKey (runtime/error.h) when the key is taken; the tree is as it was.
    NodeId Add(NodeId parent, std::string_view key, std::string_view text,
               std::string_view image = {}, std::string_view selectedImage = {});

    // The same, but kNoNode instead of an error.
    NodeId TryAdd(NodeId parent, std::string_view key, std::string_view text,
                  std::string_view image = {}, std::string_view selectedImage = {});

    // Removes the node with the key and all below it. Errors: kSubscriptOutOfRange when absent.
    void Remove(std::string_view key);
    void Clear();

    // Puts the children of `parent` (the roots for kNoNode) in the order of their texts as lists
    // show them; equal ones keep their order. Nodes added later come after them.
    void SortChildren(NodeId parent);

    NodeId Find(std::string_view key) const; // kNoNode when absent
    NodeId Count() const { return static_cast<NodeId>(m_nodes.size()); }

    // Of one node. The views hold until the next change of the tree's nodes.
    std::string_view Key(NodeId node) const;
    std::string_view Text(NodeId node) const;
    std::string_view Image(NodeId node) const { return m_images[At(node).image]; }
    std::string_view SelectedImage(NodeId node) const { return m_images[At(node).selectedImage]; }
    NodeId Parent(NodeId node) const { return At(node).parent; }
    int RowInParent(NodeId node) const { return At(node).row; } // from 0
    const std::vector<NodeId> &Children(NodeId node) const;     // kNoNode: the roots
    bool Expanded(NodeId node) const { return At(node).expanded; }

    // The texts from the root down to the node, joined by `pathSeparator`.
    std::string FullPath(NodeId node) const;

    // The selected node, kNoNode when there is none. Selecting from code raises no event.
    NodeId Selected() const { return m_selected; }
    void Select(NodeId node);

    // Expands all nodes above `node` that are not, from the top down, so that it can be seen.
    void MakeVisible(NodeId node);

    // From code: expanding a collapsed node raises `onExpand`, collapsing raises nothing.
    // Collapsing a node selects it if the selected node is below it.
    void SetExpanded(NodeId node, bool expanded);

    // What the user does, each with its events in order. The window calls these and nothing else.
    // A key or a double click that expands or collapses a node is a click on its expander: its
    // Click lets the listener take back the mark of the Expand before the next move.
    void ClickText(NodeId node);     // selects; NodeClick, Click
    void ClickExpander(NodeId node); // Expand or Collapse, Click; nothing without children
    void ClickNothing();             // Click
    void MoveTo(NodeId node);        // by key: selects; NodeClick

    // Counts what the user did; events of one click have one number.
    std::uint64_t Gesture() const { return m_gesture; }

    // From the first Begin to the last End the window shows the nodes as they were and asks for
    // nothing (TreeUpdate calls these).
    void BeginUpdate();
    void EndUpdate();
    bool Updating() const { return m_updating > 0; }

    char pathSeparator = '/';

    // The events of logic.
    std::function<void(NodeId)> onExpand, onCollapse, onNodeClick;
    std::function<void()> onClick;

    // The entries of the popup that a right click on a node opens, which selects the node as a
    // click does, or the menu key on the selected one. Empty, or without entries: no popup.
    struct PopupEntry {
        std::string caption; // "&" marks the access key
        std::function<void()> run;
    };
    std::function<std::vector<PopupEntry>(NodeId)> popupOf;

    // The widget's: nodes are about to change, have changed (all numbers are new), the selection or
    // one node's expansion has changed.
    std::function<void()> nodesAboutToChange, nodesChanged;
    std::function<void(NodeId)> selectionChanged, expansionChanged;

private:
    struct Node {
        std::uint64_t keyAt, textAt; // offsets in m_block
        std::uint32_t keyLength, textLength;
        std::uint32_t hash;
        NodeId parent;
        std::int32_t row;
        std::int32_t children; // index in m_children, kNoChildren for a leaf
        std::uint8_t image, selectedImage;
        bool expanded;
    };
    static constexpr std::int32_t kNoChildren = -1;

    const Node &At(NodeId node) const;
    NodeId FindHashed(std::string_view key, std::uint32_t hash) const;
    std::uint8_t ImageNumber(std::string_view key);
    std::vector<NodeId> &ChildrenToFill(NodeId parent);
    void StoreTexts(Node &node, std::string_view key, std::string_view text);
    NodeId Append(NodeId parent, std::string_view key, std::uint32_t hash, std::string_view text,
                  std::uint8_t image, std::uint8_t selectedImage);
    bool IsBelow(NodeId node, NodeId ancestor) const;
    void ChangeExpansion(NodeId node, bool expanded);
    void Forget();

    std::string m_block;
    std::vector<Node> m_nodes;
    std::vector<std::vector<NodeId>> m_children;
    std::vector<NodeId> m_roots;
    std::vector<std::string> m_images{std::string()};
    runtime::KeyIndex m_index;
    NodeId m_selected = kNoNode;
    std::uint64_t m_gesture = 0;
    int m_updating = 0;
};

// Holds a tree in update for as long as it lives.
class TreeUpdate
{
public:
    explicit TreeUpdate(KeyedTree &tree) : m_tree(tree) { m_tree.BeginUpdate(); }
    ~TreeUpdate() { m_tree.EndUpdate(); }
    TreeUpdate(const TreeUpdate &) = delete;
    TreeUpdate &operator=(const TreeUpdate &) = delete;

private:
    KeyedTree &m_tree;
};

} // namespace ui

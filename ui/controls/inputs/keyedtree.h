// ui/controls/inputs/keyedtree.h - a tree of nodes with keys; children are in the order of adding.
// Keys and texts (UTF-8) are in one block of memory, so that 100,000 nodes need little more than
// their text.
#pragma once

#include "runtime/keyindex.h"
#include "ui/controls/area.h"
#include "ui/controls/inputs/update.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ui
{

// The number of a node, from 0 in the order of adding. It is valid until the next Remove or Clear.
using NodeId = std::int32_t;
inline constexpr NodeId kNoNode = -1;

class KeyedTree : public Area
{
public:
    // Adds a node below `parent`, or a root for kNoNode. Images are keys of an image list; with an
    // empty `selectedImage` a selected node keeps its image.
    // Errors: kDuplicateKey (runtime/error.h) when the key exists; the tree is unchanged then.
    NodeId Add(NodeId parent, std::string_view key, std::string_view text,
               std::string_view image = {}, std::string_view selectedImage = {});

    // The same, but returns kNoNode instead of an error.
    NodeId TryAdd(NodeId parent, std::string_view key, std::string_view text,
                  std::string_view image = {}, std::string_view selectedImage = {});

    // Removes the node with the key and all nodes below it. Errors: kSubscriptOutOfRange for an
    // unknown key.
    void Remove(std::string_view key);
    void Clear();

    // Sorts the children of `parent` (the roots for kNoNode) by their texts, in the order of
    // runtime/collation.h; equal ones keep their order. Nodes added later come after them.
    void SortChildren(NodeId parent);

    NodeId Find(std::string_view key) const; // kNoNode when absent
    NodeId Count() const { return static_cast<NodeId>(m_nodes.size()); }

    // One node. The views are valid until the nodes of the tree change.
    // Errors of all: kSubscriptOutOfRange for an unknown node.
    std::string_view Key(NodeId node) const;
    std::string_view Text(NodeId node) const;
    std::string_view Image(NodeId node) const { return m_images[At(node).image]; }
    std::string_view SelectedImage(NodeId node) const { return m_images[At(node).selectedImage]; }
    NodeId Parent(NodeId node) const { return At(node).parent; }
    int RowInParent(NodeId node) const { return At(node).row; } // zero-based
    const std::vector<NodeId> &Children(NodeId node) const;     // kNoNode: the roots
    bool Expanded(NodeId node) const { return At(node).expanded; }

    // The texts from the root to the node, with `pathSeparator` between them.
    std::string FullPath(NodeId node) const;

    // The selected node, kNoNode when there is none. Select raises no event.
    NodeId Selected() const { return m_selected; }
    void Select(NodeId node);

    // Expands all collapsed nodes above `node`, from the top down.
    void MakeVisible(NodeId node);

    // By the program: expanding a collapsed node raises `onExpand`; collapsing raises nothing. When
    // a node is collapsed and the selected one is below it, it becomes the selected one.
    void SetExpanded(NodeId node, bool expanded);

    // What the user does, each with its events in order. The window calls only these. A key or a
    // double click that expands or collapses a node counts as a click on its expander: the Click
    // event comes after Expand, so that its handler can reset there what it stored in Expand.
    void ClickText(NodeId node);     // selects; NodeClick, Click
    void ClickExpander(NodeId node); // Expand or Collapse, Click; nothing for a leaf
    void ClickNothing();             // Click
    void MoveTo(NodeId node);        // by key: selects; NodeClick

    // The number of the user's last action; all events of one action have the same.
    std::uint64_t Gesture() const { return m_gesture; }

    // From the first Begin to the last End the window shows the former nodes and reads nothing. Use
    // TreeUpdate.
    void BeginUpdate();
    void EndUpdate();
    bool Updating() const { return m_updating > 0; }

    char pathSeparator = '/';

    // The events.
    std::function<void(NodeId)> onExpand, onCollapse, onNodeClick;
    std::function<void()> onClick;

    // The entries of the popup menu of a node. A right click selects the node and opens it; the
    // menu key opens it for the selected node. Without entries there is no popup menu.
    struct PopupEntry {
        std::string caption; // "&" marks the access key
        std::function<void()> run;
    };
    std::function<std::vector<PopupEntry>(NodeId)> popupOf;

    // For the widget: the nodes are about to change; they have changed (all numbers are new); the
    // selection or the expansion of one node has changed.
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

using TreeUpdate = Update<KeyedTree>;

} // namespace ui

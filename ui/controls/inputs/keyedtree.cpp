#include "ui/controls/inputs/keyedtree.h"

#include "runtime/collation.h"
#include "runtime/error.h"

#include <algorithm>

namespace ui
{

NodeId KeyedTree::Add(NodeId parent, std::string_view key, std::string_view text,
                      std::string_view image, std::string_view selectedImage)
{
    const NodeId node = TryAdd(parent, key, text, image, selectedImage);
    if (node == kNoNode)
        throw runtime::RuntimeError(runtime::kDuplicateKey);
    return node;
}

NodeId KeyedTree::TryAdd(NodeId parent, std::string_view key, std::string_view text,
                         std::string_view image, std::string_view selectedImage)
{
    const std::uint32_t hash = runtime::KeyIndex::HashOf(key);
    if (FindHashed(key, hash) != kNoNode)
        return kNoNode;
    TreeUpdate update(*this);
    return Append(parent, key, hash, text, ImageNumber(image), ImageNumber(selectedImage));
}

NodeId KeyedTree::Append(NodeId parent, std::string_view key, std::uint32_t hash,
                         std::string_view text, std::uint8_t image, std::uint8_t selectedImage)
{
    const NodeId node = Count();
    Node added{};
    added.hash = hash;
    added.parent = parent;
    added.children = kNoChildren;
    added.image = image;
    added.selectedImage = selectedImage;
    StoreTexts(added, key, text);
    std::vector<NodeId> &siblings = ChildrenToFill(parent);
    added.row = static_cast<std::int32_t>(siblings.size());
    siblings.push_back(node);
    m_nodes.push_back(added);
    m_index.Insert(node, hash);
    return node;
}

// A text that is the end of the key (an upper-case value after its marker) is stored only once.
void KeyedTree::StoreTexts(Node &node, std::string_view key, std::string_view text)
{
    node.keyAt = m_block.size();
    node.keyLength = static_cast<std::uint32_t>(key.size());
    m_block.append(key);
    node.textLength = static_cast<std::uint32_t>(text.size());
    if (key.ends_with(text)) {
        node.textAt = node.keyAt + key.size() - text.size();
        return;
    }
    node.textAt = m_block.size();
    m_block.append(text);
}

void KeyedTree::Remove(std::string_view key)
{
    const NodeId removed = Find(key);
    if (removed == kNoNode)
        throw runtime::RuntimeError(runtime::kSubscriptOutOfRange);
    TreeUpdate update(*this);
    KeyedTree old;
    std::swap(old.m_block, m_block);
    std::swap(old.m_nodes, m_nodes);
    old.m_selected = m_selected;
    Forget();
    // The number of a parent is smaller than those of its children, so one pass in order is enough.
    std::vector<NodeId> newNumber(old.m_nodes.size(), kNoNode);
    for (NodeId node = 0; node < old.Count(); ++node) {
        const Node &was = old.m_nodes[static_cast<std::size_t>(node)];
        const NodeId parent =
            was.parent == kNoNode ? kNoNode : newNumber[static_cast<std::size_t>(was.parent)];
        if (node == removed || (was.parent != kNoNode && parent == kNoNode))
            continue;
        const NodeId now =
            Append(parent, old.Key(node), was.hash, old.Text(node), was.image, was.selectedImage);
        m_nodes.back().expanded = was.expanded;
        newNumber[static_cast<std::size_t>(node)] = now;
        if (old.m_selected == node)
            m_selected = now;
    }
}

void KeyedTree::Clear()
{
    TreeUpdate update(*this);
    Forget();
}

void KeyedTree::Forget()
{
    m_block.clear();
    m_nodes.clear();
    m_children.clear();
    m_roots.clear();
    m_index.Clear();
    m_selected = kNoNode;
}

const KeyedTree::Node &KeyedTree::At(NodeId node) const
{
    if (node < 0 || node >= Count())
        throw runtime::RuntimeError(runtime::kSubscriptOutOfRange);
    return m_nodes[static_cast<std::size_t>(node)];
}

void KeyedTree::SortChildren(NodeId parent)
{
    if (Children(parent).size() < 2)
        return;
    TreeUpdate update(*this);
    std::vector<NodeId> &children = ChildrenToFill(parent);
    std::vector<std::pair<std::string, NodeId>> keyed;
    keyed.reserve(children.size());
    for (const NodeId child : children)
        keyed.emplace_back(runtime::SortKey(Text(child)), child);
    std::ranges::stable_sort(keyed, [this](const auto &first, const auto &second) {
        return runtime::CollateKeyed(first.first, Text(first.second), second.first,
                                     Text(second.second)) < 0;
    });
    for (std::size_t row = 0; row < keyed.size(); ++row) {
        children[row] = keyed[row].second;
        m_nodes[static_cast<std::size_t>(children[row])].row = static_cast<std::int32_t>(row);
    }
}

NodeId KeyedTree::Find(std::string_view key) const
{
    return FindHashed(key, runtime::KeyIndex::HashOf(key));
}

NodeId KeyedTree::FindHashed(std::string_view key, std::uint32_t hash) const
{
    return m_index.Find(key, hash, [this](NodeId node) { return Key(node); });
}

std::string_view KeyedTree::Key(NodeId node) const
{
    const Node &at = At(node);
    return std::string_view(m_block).substr(at.keyAt, at.keyLength);
}

std::string_view KeyedTree::Text(NodeId node) const
{
    const Node &at = At(node);
    return std::string_view(m_block).substr(at.textAt, at.textLength);
}

const std::vector<NodeId> &KeyedTree::Children(NodeId node) const
{
    static const std::vector<NodeId> none;
    if (node == kNoNode)
        return m_roots;
    const std::int32_t children = At(node).children;
    return children == kNoChildren ? none : m_children[static_cast<std::size_t>(children)];
}

std::vector<NodeId> &KeyedTree::ChildrenToFill(NodeId parent)
{
    if (parent == kNoNode)
        return m_roots;
    static_cast<void>(At(parent)); // throws for an invalid number
    std::int32_t &children = m_nodes[static_cast<std::size_t>(parent)].children;
    if (children == kNoChildren) {
        children = static_cast<std::int32_t>(m_children.size());
        m_children.emplace_back();
    }
    return m_children[static_cast<std::size_t>(children)];
}

std::uint8_t KeyedTree::ImageNumber(std::string_view key)
{
    const auto number = std::find(m_images.begin(), m_images.end(), key) - m_images.begin();
    if (static_cast<std::size_t>(number) == m_images.size())
        m_images.emplace_back(key);
    return static_cast<std::uint8_t>(number);
}

std::string KeyedTree::FullPath(NodeId node) const
{
    std::string path(Text(node));
    for (NodeId up = Parent(node); up != kNoNode; up = Parent(up))
        path.insert(0, std::string(Text(up)) + pathSeparator);
    return path;
}

void KeyedTree::Select(NodeId node)
{
    if (node == m_selected)
        return;
    if (node != kNoNode)
        static_cast<void>(At(node));
    m_selected = node;
    if (selectionChanged && !Updating())
        selectionChanged(node);
}

bool KeyedTree::IsBelow(NodeId node, NodeId ancestor) const
{
    while (node != kNoNode && node != ancestor)
        node = Parent(node);
    return node == ancestor;
}

void KeyedTree::ChangeExpansion(NodeId node, bool expanded)
{
    static_cast<void>(At(node));
    m_nodes[static_cast<std::size_t>(node)].expanded = expanded;
    if (expansionChanged && !Updating())
        expansionChanged(node);
    if (!expanded && m_selected != kNoNode && IsBelow(m_selected, node))
        Select(node);
}

void KeyedTree::MakeVisible(NodeId node)
{
    std::vector<NodeId> above;
    for (NodeId up = Parent(node); up != kNoNode; up = Parent(up))
        above.push_back(up);
    for (auto up = above.rbegin(); up != above.rend(); ++up)
        SetExpanded(*up, true);
}

void KeyedTree::SetExpanded(NodeId node, bool expanded)
{
    if (Expanded(node) == expanded)
        return;
    ChangeExpansion(node, expanded);
    if (expanded && onExpand)
        onExpand(node);
}

void KeyedTree::ClickText(NodeId node)
{
    ++m_gesture;
    Select(node);
    if (onNodeClick)
        onNodeClick(node);
    if (onClick)
        onClick();
}

void KeyedTree::ClickExpander(NodeId node)
{
    if (Children(node).empty())
        return;
    ++m_gesture;
    const bool expand = !Expanded(node);
    ChangeExpansion(node, expand);
    if (const auto &event = expand ? onExpand : onCollapse)
        event(node);
    if (onClick)
        onClick();
}

void KeyedTree::ClickNothing()
{
    ++m_gesture;
    if (onClick)
        onClick();
}

void KeyedTree::MoveTo(NodeId node)
{
    ++m_gesture;
    Select(node);
    if (onNodeClick)
        onNodeClick(node);
}

void KeyedTree::BeginUpdate()
{
    if (m_updating == 0 && nodesAboutToChange)
        nodesAboutToChange(); // the old nodes can still be read
    ++m_updating;
}

void KeyedTree::EndUpdate()
{
    if (--m_updating == 0 && nodesChanged)
        nodesChanged();
}

} // namespace ui

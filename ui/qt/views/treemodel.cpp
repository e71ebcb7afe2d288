#include "ui/qt/views/treemodel.h"

#include "ui/qt/icons.h"
#include "ui/qt/qttext.h"
#include "ui/qt/views/rowdelegate.h"

namespace ui::qt
{

TreeModel::TreeModel(ui::KeyedTree &tree, QObject *parent)
    : QAbstractItemModel(parent), m_tree(tree)
{
    tree.nodesAboutToChange = [this] { beginResetModel(); };
    tree.nodesChanged = [this] { endResetModel(); };
}

TreeModel::~TreeModel()
{
    m_tree.nodesAboutToChange = nullptr;
    m_tree.nodesChanged = nullptr;
}

ui::NodeId TreeModel::NodeAt(const QModelIndex &index)
{
    return index.isValid() ? static_cast<ui::NodeId>(index.internalId()) : ui::kNoNode;
}

QModelIndex TreeModel::IndexOf(ui::NodeId node) const
{
    if (node == ui::kNoNode || m_tree.Updating())
        return {};
    return createIndex(m_tree.RowInParent(node), 0, static_cast<quintptr>(node));
}

void TreeModel::Touch(ui::NodeId node)
{
    const QModelIndex index = IndexOf(node);
    if (index.isValid())
        Q_EMIT dataChanged(index, index);
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (column != 0 || row < 0 || row >= rowCount(parent))
        return {};
    const ui::NodeId node = m_tree.Children(NodeAt(parent))[static_cast<std::size_t>(row)];
    return createIndex(row, 0, static_cast<quintptr>(node));
}

QModelIndex TreeModel::parent(const QModelIndex &child) const
{
    const ui::NodeId node = NodeAt(child);
    if (m_tree.Updating() || node < 0 || node >= m_tree.Count())
        return {};
    return IndexOf(m_tree.Parent(node));
}

int TreeModel::rowCount(const QModelIndex &parent) const
{
    const ui::NodeId node = NodeAt(parent);
    if (m_tree.Updating() || node >= m_tree.Count())
        return 0;
    return static_cast<int>(m_tree.Children(node).size());
}

int TreeModel::columnCount(const QModelIndex &) const
{
    return 1;
}

bool TreeModel::hasChildren(const QModelIndex &parent) const
{
    return rowCount(parent) > 0;
}

QVariant TreeModel::data(const QModelIndex &index, int role) const
{
    const ui::NodeId node = NodeAt(index);
    if (m_tree.Updating() || node < 0 || node >= m_tree.Count())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return OneLineText(m_tree.Text(node));
    case Qt::DecorationRole: {
        const bool open = node == m_tree.Selected() && !m_tree.SelectedImage(node).empty();
        return Icon(open ? m_tree.SelectedImage(node) : m_tree.Image(node));
    }
    case Qt::AccessibleTextRole:
        if (m_tree.Text(node).empty() && nameOfEmpty)
            return nameOfEmpty(node);
        return OneLineText(m_tree.Text(node));
    case kTextOfEmptyRole:
        return textOfEmpty && m_tree.Text(node).empty() ? textOfEmpty(node) : QString();
    case Qt::ToolTipRole:
        return TipOf(node);
    default:
        return {};
    }
}

// What distinguishes the node from another that looks the same.
QVariant TreeModel::TipOf(ui::NodeId node) const
{
    QString tip = tipOf ? tipOf(node) : QString();
    if (tip.isEmpty())
        tip = OddCharactersShown(m_tree.Text(node));
    return tip.isEmpty() ? QVariant() : QVariant(tip);
}

} // namespace ui::qt

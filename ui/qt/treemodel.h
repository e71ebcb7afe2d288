// ui/qt/treemodel.h - a ui::KeyedTree as the toolkit's views ask for it. The model keeps no node of
// its own: it costs the same for ten nodes and for 100,000.
#pragma once

#include "ui/controls/keyedtree.h"

#include <QAbstractItemModel>
#include <functional>

namespace ui::qt
{

class TreeModel : public QAbstractItemModel
{
public:
    // `tree` outlives the model, which listens to it until it is destroyed.
    TreeModel(ui::KeyedTree &tree, QObject *parent);
    ~TreeModel() override;

    // The node of an index; kNoNode for an invalid one.
    static ui::NodeId NodeAt(const QModelIndex &index);

    // The index of a node; invalid for kNoNode and while the tree is in update.
    QModelIndex IndexOf(ui::NodeId node) const;

    // Repaints what depends on a node's state (its image follows the selection).
    void Touch(ui::NodeId node);

    // What a screen reader says of a node whose text is empty. Set by the window.
    std::function<QString(ui::NodeId)> nameOfEmpty;

    // The words that are drawn in place of an empty text, and the tip of a node whose text alone
    // does not say which it is; each empty for none. Set by the window.
    std::function<QString(ui::NodeId)> textOfEmpty, tipOf;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    QVariant TipOf(ui::NodeId node) const;

    ui::KeyedTree &m_tree;
};

} // namespace ui::qt

// ui/qt/views/treemodel.h - a ui::KeyedTree as a model for the toolkit's views. The model has no
// copy of the nodes.
#pragma once

#include "ui/controls/inputs/keyedtree.h"

#include <QAbstractItemModel>
#include <functional>

namespace ui::qt
{

class TreeModel : public QAbstractItemModel
{
public:
    // `tree` outlives the model.
    TreeModel(ui::KeyedTree &tree, QObject *parent);
    ~TreeModel() override;

    // The node of an index; kNoNode for an invalid one.
    static ui::NodeId NodeAt(const QModelIndex &index);

    // The index of a node; invalid for kNoNode and during an update of the tree.
    QModelIndex IndexOf(ui::NodeId node) const;

    // Repaints a node (its image depends on the selection).
    void Touch(ui::NodeId node);

    // The words of a screen reader for a node whose text is empty. Set by the window.
    std::function<QString(ui::NodeId)> nameOfEmpty;

    // The words that are drawn in place of an empty text; the tip of a node whose text could be
    // mistaken for that of another. Each is empty for none. Set by the window.
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

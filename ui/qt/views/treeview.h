// ui/qt/views/treeview.h - shows a ui::KeyedTree and raises the tree's events: a click on a node's
// text, a click on its expander, a move by key; Enter or a double click expands or collapses a
// node. Typing finds a node by the beginning of its text. A right click and the menu key open the
// node's popup menu.
#pragma once

#include "ui/qt/views/frozenview.h"
#include "ui/qt/views/treemodel.h"

#include <QTreeView>

namespace ui::qt
{

class TreeView : public QTreeView
{
public:
    // `tree` outlives the view. `byLayout`: a layout of the window decides its place, not the
    // control.
    TreeView(ui::KeyedTree &tree, QWidget *parent, bool byLayout = false);
    ~TreeView() override;

    TreeModel &Model() { return m_model; }

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    void ShowAll();
    void ShowSelection();
    void ShowExpansion(ui::NodeId node);
    bool IsOnExpander(const QModelIndex &index, QPoint position) const;
    bool HandleTreeKey(int key);
    void MoveToCurrent();
    void ShowPopup(QPoint place);
    void ShowPopupByKey();

    ui::KeyedTree &m_tree;
    TreeModel m_model;
    FrozenView m_picture;
    ui::NodeId m_pressed = ui::kNoNode; // the node on whose text the button was pressed
    bool m_pressedNothing = false;
    ui::NodeId m_shown = ui::kNoNode; // the node that is shown as selected
    bool m_showing = false;           // the view is being changed from the tree, not by the user
    bool m_moving = false;            // the view itself is still handling a key
};

} // namespace ui::qt

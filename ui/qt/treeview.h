// ui/qt/treeview.h - shows a ui::KeyedTree and turns what the user does into the tree's events: a
// click on a node's text, a click on its expander, a move by key, Enter or a double click as a
// change of its expansion. Typing finds a node by the start of its text. A right click and the menu
// key open the node's popup.
#pragma once

#include "ui/qt/frozenview.h"
#include "ui/qt/treemodel.h"

#include <QTreeView>

namespace ui::qt
{

class TreeView : public QTreeView
{
public:
    // `tree` outlives the view, which listens to it until it is destroyed.
    // `byLayout`: a layout of the window puts it in its place, not the control.
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
    ui::NodeId m_pressed = ui::kNoNode; // the node under the press of a click on its text
    bool m_pressedNothing = false;
    ui::NodeId m_shown = ui::kNoNode; // the node shown as selected
    bool m_showing = false;           // the view follows the tree, not the user
    bool m_moving = false;            // the view itself is still at a key
};

} // namespace ui::qt

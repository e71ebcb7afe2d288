#include "ui/qt/views/treeview.h"

#include "ui/qt/bindings.h"
#include "ui/qt/qttext.h"
#include "ui/qt/views/itemtips.h"
#include "ui/qt/views/rowdelegate.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScopedValueRollback>

namespace ui::qt
{

TreeView::TreeView(ui::KeyedTree &tree, QWidget *parent, bool byLayout)
    : QTreeView(parent), m_tree(tree), m_model(tree, this), m_picture(*this)
{
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setExpandsOnDoubleClick(false);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollMode(ScrollPerPixel);
    setItemDelegate(new RowDelegate(this));
    setModel(&m_model);
    tree.nodesAboutToChange = [this, begin = tree.nodesAboutToChange] {
        m_picture.Keep(); // until the new nodes have come
        begin();
    };
    tree.nodesChanged = [this, end = tree.nodesChanged] {
        end();
        ShowAll();
        m_picture.Drop();
    };
    tree.selectionChanged = [this](ui::NodeId) { ShowSelection(); };
    tree.expansionChanged = [this](ui::NodeId node) { ShowExpansion(node); };
    Bind(tree, this, [this, byLayout] {
        if (byLayout)
            ShowState(m_tree, this);
        else
            ShowArea(m_tree, this);
    });
    ShowAll();
}

TreeView::~TreeView()
{
    m_tree.selectionChanged = nullptr;
    m_tree.expansionChanged = nullptr;
    setModel(nullptr);
}

// Shows expansion and selection in a view whose nodes are all new.
void TreeView::ShowAll()
{
    const QScopedValueRollback following(m_showing, true);
    m_shown = ui::kNoNode;
    for (ui::NodeId node = 0; node < m_tree.Count(); ++node)
        if (m_tree.Expanded(node) && !m_tree.Children(node).empty())
            expand(m_model.IndexOf(node));
    ShowSelection();
}

void TreeView::ShowSelection()
{
    const QScopedValueRollback following(m_showing, true);
    const ui::NodeId before = std::exchange(m_shown, m_tree.Selected());
    setCurrentIndex(m_model.IndexOf(m_shown));
    if (before < m_tree.Count())
        m_model.Touch(before);
    m_model.Touch(m_shown);
}

void TreeView::ShowExpansion(ui::NodeId node)
{
    const QScopedValueRollback following(m_showing, true);
    setExpanded(m_model.IndexOf(node), m_tree.Expanded(node));
}

bool TreeView::IsOnExpander(const QModelIndex &index, QPoint position) const
{
    if (!m_model.hasChildren(index))
        return false;
    const int textLeft = visualRect(index).left(), textRight = visualRect(index).right();
    if (isRightToLeft())
        return position.x() > textRight && position.x() <= textRight + indentation();
    return position.x() < textLeft && position.x() >= textLeft - indentation();
}

void TreeView::mousePressEvent(QMouseEvent *event)
{
    m_pressed = ui::kNoNode;
    m_pressedNothing = false;
    if (event->button() != Qt::LeftButton)
        return;
    const QModelIndex index = indexAt(event->position().toPoint());
    const ui::NodeId node = TreeModel::NodeAt(index);
    if (node == ui::kNoNode) {
        m_pressedNothing = true;
    } else if (IsOnExpander(index, event->position().toPoint())) {
        m_tree.ClickExpander(node);
    } else {
        m_pressed = node;
        const QScopedValueRollback following(m_showing, true);
        setCurrentIndex(
            index); // the mark is shown at the press, the event is raised at the release
    }
}

void TreeView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const ui::NodeId pressed = std::exchange(m_pressed, ui::kNoNode);
    const ui::NodeId node = TreeModel::NodeAt(indexAt(event->position().toPoint()));
    if (pressed != ui::kNoNode && pressed == node && node < m_tree.Count())
        m_tree.ClickText(node);
    else if (pressed != ui::kNoNode)
        ShowSelection();
    else if (std::exchange(m_pressedNothing, false) && node == ui::kNoNode)
        m_tree.ClickNothing();
}

void TreeView::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    const ui::NodeId node = TreeModel::NodeAt(index);
    if (event->button() != Qt::LeftButton || node == ui::kNoNode)
        return;
    m_tree.ClickExpander(node); // on the expander, a double click counts as two clicks
}

// Moving the mouse with a pressed button selects nothing and starts no drag.
void TreeView::mouseMoveEvent(QMouseEvent *event)
{
    event->accept();
}

bool TreeView::HandleTreeKey(int key)
{
    const ui::NodeId node = m_tree.Selected();
    if (node == ui::kNoNode)
        return false;
    const bool open = m_tree.Expanded(node) && !m_tree.Children(node).empty();
    switch (key) {
    case Qt::Key_Right:
    case Qt::Key_Plus:
    case Qt::Key_Asterisk:
        if (!open)
            m_tree.ClickExpander(node);
        else if (key == Qt::Key_Right)
            m_tree.MoveTo(m_tree.Children(node).front());
        return true;
    case Qt::Key_Left:
    case Qt::Key_Minus:
        if (open)
            m_tree.ClickExpander(node);
        else if (key == Qt::Key_Left && m_tree.Parent(node) != ui::kNoNode)
            m_tree.MoveTo(m_tree.Parent(node));
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        m_tree.ClickExpander(node);
        return true;
    default:
        return false;
    }
}

void TreeView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        ShowPopupByKey();
        return;
    }
    // Keys of the tree are handled also with Shift, which "+" and "*" need on many keyboards, and
    // with Ctrl: otherwise the view itself would expand the node, and the control would not be
    // updated.
    const bool isShortcut = (event->modifiers() & (Qt::AltModifier | Qt::MetaModifier)) != 0;
    if (!isShortcut && HandleTreeKey(event->key()))
        return;
    {
        const QScopedValueRollback moving(m_moving, true);
        QTreeView::keyPressEvent(event);
    }
    MoveToCurrent();
}

void TreeView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTreeView::currentChanged(current, previous);
    if (!m_moving)
        MoveToCurrent();
}

// Raises the event of a move. A listener may let events run that handle the next key, so the view's
// own handling of this key must be finished.
void TreeView::MoveToCurrent()
{
    const ui::NodeId node = TreeModel::NodeAt(currentIndex());
    if (!m_showing && node != ui::kNoNode && !m_tree.Updating() && node != m_tree.Selected())
        m_tree.MoveTo(node);
}

void TreeView::contextMenuEvent(QContextMenuEvent *event)
{
    if (event->reason() != QContextMenuEvent::Mouse) {
        ShowPopupByKey();
        return;
    }
    const ui::NodeId node = TreeModel::NodeAt(indexAt(event->pos()));
    if (node == ui::kNoNode || !m_tree.popupOf)
        return;
    if (node != m_tree.Selected())
        m_tree.ClickText(node);
    ShowPopup(event->globalPos());
}

// Opens it below the selected node, if that can be seen.
void TreeView::ShowPopupByKey()
{
    const QRect row = visualRect(currentIndex());
    ShowPopup(viewport()->mapToGlobal(viewport()->rect().intersects(row) ? row.bottomLeft()
                                                                         : QPoint(0, 0)));
}

// Opens the popup menu of the selected node. The entry's action runs after the menu has closed.
void TreeView::ShowPopup(QPoint place)
{
    const ui::NodeId node = m_tree.Selected();
    if (!m_tree.popupOf || node == ui::kNoNode)
        return;
    const std::vector<ui::KeyedTree::PopupEntry> entries = m_tree.popupOf(node);
    if (entries.empty())
        return;
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("TreePopup"));
    for (const auto &entry : entries)
        menu.addAction(MenuText(entry.caption));
    const auto chosen = menu.actions().indexOf(menu.exec(place));
    if (chosen >= 0)
        entries[static_cast<std::size_t>(chosen)].run();
}

bool TreeView::viewportEvent(QEvent *event)
{
    return ShowTipOfCutText(*this, event) || QTreeView::viewportEvent(event);
}

} // namespace ui::qt

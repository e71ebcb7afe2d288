// ui/qt/views/listview.h - shows a ui::KeyedList as a table and raises the list's events. A click
// on a row raises ItemClick, then Click; a click beside the rows raises Click; a change of the
// selection by key raises both, so that commands follow the keyboard too; a double click or Enter
// raises DblClick; a click on a header raises ColumnClick. Typing finds a row by the beginning of
// its first visible text. Rows that are files can be dragged out, to be copied; Ctrl+C copies the
// selected rows. If the last column has the key "Non", it takes the width that the others leave.
#pragma once

#include "ui/qt/views/frozenview.h"
#include "ui/qt/views/listmodel.h"

#include <QElapsedTimer>
#include <QTreeView>

class QPushButton;

namespace ui::qt
{

// What decides the place of the view. InCutFrame: the control's place, less a frame of 3 pixels at
// its left, top and bottom that the parent cuts off. Exact: the control's place. ByLayout: a layout
// of the window.
enum class Positioning { InCutFrame, Exact, ByLayout };

class ListView : public QTreeView
{
public:
    // `list` outlives the view.
    ListView(ui::KeyedList &list, QWidget *parent,
             Positioning positioning = Positioning::InCutFrame);
    ~ListView() override;

    ListModel &Model() { return m_model; }

    // A menu is wanted: the right button was pressed on `row` (kNoRow beside the rows), or the menu
    // key (`byKey`; `row` is the selected one). `place` is where to open it, on the screen.
    std::function<void(ui::RowId row, QPoint place, bool byKey)> onMenuAsked;

    // The rows are about to be scrolled, by the mouse wheel or by the scroll bar.
    std::function<void(bool byWheel)> onScrolled;

    // Leaves `pixels` free at the left of the list's place, for a scroll bar there.
    void SetLeftInset(int pixels);

    void keyboardSearch(const QString &text) override;

    // Scrolls to the row; never sideways.
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void startDrag(Qt::DropActions actions) override;
    bool viewportEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void Place();
    bool ShowsHint() const;
    void ShowHintText();
    void ShowHintButton();
    void ShowRows();
    void ShowColumns();
    void ShowOrder();
    void ShowSelection();
    void TakeSelection();
    void Changed(ui::ListChange change);
    void AskForMenuByKey();
    void FillWidth();
    void CopySelection() const;
    int SearchColumn() const;
    bool RowBeginsWith(int displayIndex, int column, const QString &text) const;

    ui::KeyedList &m_list;
    const Positioning m_positioning;
    ListModel m_model;
    FrozenView m_picture;
    QPushButton *m_hintButton =
        nullptr; // made for the first hint with a button; owned by the viewport
    QElapsedTimer m_sinceTyped;
    QString m_typed;
    int m_leftInset = 0;
    bool m_showing = false;          // the view is being changed from the list, not by the user
    bool m_selectionChanged = false; // the user has changed it since the last event
    bool m_pressed = false;          // the left button is down for a click
};

} // namespace ui::qt

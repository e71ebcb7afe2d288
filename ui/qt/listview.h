// ui/qt/listview.h - shows a ui::KeyedList as a report and turns what the user does into the list's
// events. A click on a row raises ItemClick, then Click; one beside the rows raises Click; a change
// of the selection by key raises both, so that commands follow the keyboard too; a double click or
// Enter raises DblClick; a click on a header raises ColumnClick. Typing finds a row by the start of
// its first visible text. Rows that are files can be dragged out, as copies; Ctrl+C copies the
// selected rows. A last column "Non" is as wide as what the others leave.
#pragma once

#include "ui/qt/frozenview.h"
#include "ui/qt/listmodel.h"

#include <QElapsedTimer>
#include <QTreeView>

class QPushButton;

namespace ui::qt
{

// Where a view is put: at its control's place, inside the frame that the parent cuts off there; at
// that place; or by a layout of the window's.
enum class Placing { InCutFrame, Exact, ByLayout };

class ListView : public QTreeView
{
public:
    // `list` outlives the view, which listens to it until it is destroyed.
    ListView(ui::KeyedList &list, QWidget *parent, Placing placing = Placing::InCutFrame);
    ~ListView() override;

    ListModel &Model() { return m_model; }

    // The right button went down on `row` (kNoRow beside the rows), or the menu key was pressed
    // (`byKey`, `row` is the selected one). `place` is where a menu would open, on the screen.
    std::function<void(ui::RowId row, QPoint place, bool byKey)> onMenuAsked;

    // The list is about to move its rows, by the mouse wheel or else by its scroll bar.
    std::function<void(bool byWheel)> onScrolled;

    // Leaves `pixels` at the left of the list's place free, for a scroll bar that covers it.
    void SetLeftInset(int pixels);

    void keyboardSearch(const QString &text) override;

    // Brings the row into view; the columns stay where the user has them.
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
    void ShowHint();
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
    const Placing m_placing;
    ListModel m_model;
    FrozenView m_picture;
    QPushButton *m_hintButton = nullptr; // made when a hint has one; owned by the viewport
    QElapsedTimer m_sinceTyped;
    QString m_typed;
    int m_leftInset = 0;
    bool m_showing = false;          // the view follows the list, not the user
    bool m_selectionChanged = false; // by the user, since the last event
    bool m_pressed = false;          // a click of the left button is under way
};

} // namespace ui::qt

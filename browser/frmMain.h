// browser/frmMain.h - the main window: its widgets, bound to the controls of browser/mainform.h.
// It lays out nothing by itself and decides nothing: places come from ReDrawForm, commands go to
// the form's handlers.
#pragma once

#include "browser/mainform.h"

#include <QMainWindow>

class QFrame;
class QProgressBar;
class QToolBar;

namespace ui::qt
{
class ElidedLabel;
class StatusBarView;
class StripMenu;
class TreeView;
} // namespace ui::qt

namespace browser
{

class ItemView;

class frmMainWindow : public QMainWindow
{
public:
    // Builds the window over `form`, which outlives it, binds the controls and fills in the form's
    // calls that are the window's own. The window is hidden; LoadMainForm has not run.
    explicit frmMainWindow(MainForm &form);
    ~frmMainWindow() override;

    // Puts the window where the form's `window` says. On a window system that does not report
    // places only the size counts.
    void PlaceWindow();

protected:
    void moveEvent(QMoveEvent *event) override;
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // The frame: frmMain.cpp.
    void FillCalls();
    void BindFrame();
    void MeasureFrame();
    void ClientResized();
    void LearnPlace();
    void BuildSettled();
    int TextWidthTwips(std::string_view text) const;
    void NameForReaders();

    // Menus, toolbar, popup: frmMainMenus.cpp.
    void BuildMenus();
    void BuildToolbar();
    void AddMenuLine(const MenuLine &line);
    void FillLanguageMenu(QMenu *menu);
    void BuildPopup();
    std::vector<int> PopupHeights();
    void ShowPopup(int leftTwips, int topTwips);
    QPixmap DrawStrip(QSize size, qreal scale);

    // Tree and list: frmMainLists.cpp.
    void BuildTree();
    void BuildList();
    void BuildSeparator();
    void DragSeparator(QEvent *event);
    void MoveSeparatorByKey(int key);

    MainForm &m_form;
    bool m_applying = false;        // the window follows the form, not the user
    double m_grabbedAt = 0;         // pixels beside the separator; 0 in it
    bool m_layoutDue = false;       // the form's layout, after the event that is at work
    std::optional<QPoint> m_anchor; // of a popup opened by key, on the screen

    QWidget *m_client;    // all below the menu bar; owned by the window as all that follows
    QToolBar *m_toolbar;  // TB
    QFrame *m_addressBar; // TBAddress
    ui::qt::ElidedLabel *m_lblAddress, *m_WEPath;
    ui::qt::TreeView *m_tree; // TV
    QWidget *m_separator;     // Separator
    QWidget *m_grip;          // over the separator and a little beside it, for the mouse
    ItemView *m_items;        // pctBorders with panel and list
    ui::qt::StatusBarView *m_statusBar;
    QProgressBar *m_progress; // PBar
    QTimer *m_settled;        // after the last change of the place
    ui::qt::StripMenu *m_popup = nullptr;
    std::map<std::string, QMenu *, std::less<>> m_menus; // by menu name
};

} // namespace browser

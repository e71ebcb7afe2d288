// browser/windows/frmMain.h - the main window: its widgets, connected with the controls of
// browser/mainform.h. It does not decide anything: ReDrawForm sets the places, the form's handlers
// do the commands.
#pragma once

#include "browser/mainform.h"

#include <QMainWindow>

class QFrame;
class QProgressBar;
class QToolBar;

namespace ui::qt
{
class ElidedLabel;
class SplitterView;
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
    // Builds the window for `form`, which outlives it, connects the controls, and sets the
    // functions in the form's calls that need the window. The window is hidden, and LoadMainForm
    // has not run yet.
    explicit frmMainWindow(MainForm &form);
    ~frmMainWindow() override;

    // Moves the window to the place in the form's `window`. On a window system that does not report
    // places, only the size is set.
    void PlaceWindow();

protected:
    void moveEvent(QMoveEvent *event) override;
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // The frame, in frmMain.cpp.
    void FillCalls();
    void BindFrame();
    void MeasureFrame();
    void ClientResized();
    void TakeOwnPlace();
    void BuildSettled();
    int TextWidthTwips(std::string_view text) const;
    void NameForReaders();

    // Menus, toolbar, popup, in frmMainMenus.cpp.
    void BuildMenus();
    void BuildToolbar();
    void AddMenuLine(const MenuLine &line);
    void FillLanguageMenu(QMenu *menu);
    void BuildPopup();
    std::vector<int> PopupHeights();
    void ShowPopup(int leftTwips, int topTwips);
    QPixmap DrawStrip(QSize size, qreal scale);

    // Tree and list, in frmMainLists.cpp.
    void BuildTree();
    void BuildList();
    void GiveKeyboardBack();

    MainForm &m_form;
    bool m_applying = false;        // the window is being changed from the form, not by the user
    bool m_layoutDue = false;       // the form's layout is to run after the current event
    std::optional<QPoint> m_anchor; // the place on the screen for a popup opened by key

    QWidget *m_client;    // everything below the menu bar; it and all below are owned by the window
    QToolBar *m_toolbar;  // TB
    QFrame *m_addressBar; // TBAddress
    ui::qt::ElidedLabel *m_lblAddress, *m_WEPath;
    ui::qt::TreeView *m_tree;          // TV
    ui::qt::SplitterView *m_separator; // Separator
    ItemView *m_items;                 // pctBorders, with panel and list
    ui::qt::StatusBarView *m_statusBar;
    QProgressBar *m_progress; // PBar
    QTimer *m_settled;        // runs from the last change of the place
    ui::qt::StripMenu *m_popup = nullptr;
    std::map<std::string, QMenu *, std::less<>> m_menus; // by menu name
};

} // namespace browser

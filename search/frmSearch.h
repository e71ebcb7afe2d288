// search/frmSearch.h - the search window: its widgets, connected with the controls of
// search/searchform.h. It decides nothing and computes no layout, except inside the pane with the
// criteria, which depends on font and language.
#pragma once

#include "search/searchform.h"

#include <QWidget>

class QScrollArea;

namespace browser
{
class ItemView;
}

namespace ui::qt
{
class Splitter;
class StatusBarView;
} // namespace ui::qt

namespace search
{

class frmSearchWindow : public QWidget
{
public:
    // Builds the window for `form`, which must be loaded and outlives it. The window is hidden.
    explicit frmSearchWindow(SearchForm &form);
    ~frmSearchWindow() override;

    // Shows the window, or brings it to the front, with the focus in the text to find.
    // Errors: kNonModalOverModal (401) while a modal window is open.
    void Present();

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void BuildTitle();
    void BuildOptions();
    void BuildBoxes(QWidget *options);
    void BuildSeparator();
    void BuildList();
    void NameForReaders();
    void MeasureTitle();
    void ClientResized();
    void ListPressed(const QMouseEvent &event);
    void AskForPopup(QPoint place);
    void ShowPane();

    SearchForm &m_form;
    bool m_layoutDue = false; // the form's layout is to run after the current event

    QWidget *m_closeTree;            // pctCloseTree; it and all below are owned by the window
    QScrollArea *m_options;          // pctOptions
    QWidget *m_close = nullptr;      // lblCloseTree
    QWidget *m_text = nullptr;       // txtToFind
    QWidget *m_lastInPane = nullptr; // cmdSearch
    ui::qt::Splitter *m_separator;
    browser::ItemView *m_items; // pctBorders, with panel and list
    ui::qt::StatusBarView *m_statusBar;
};

} // namespace search

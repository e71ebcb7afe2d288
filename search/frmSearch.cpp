#include "search/frmSearch.h"

#include "browser/mainform.h"
#include "browser/windows/frmItemView.h"
#include "search/searchform.h"
#include "shell/language.h"
#include "ui/qt/qttext.h"
#include "ui/qt/views/listview.h"
#include "ui/qt/widgetmakers.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScopeGuard>
#include <utility>

namespace search
{

namespace
{

// The place of the main window on the screen; its popup is placed relative to this.
QPoint MainWindowPlace()
{
    for (const QWidget *window : QApplication::topLevelWidgets())
        if (window->objectName() == QLatin1String("frmMain"))
            return window->pos();
    return {};
}

class SearchItems : public browser::ItemView
{
public:
    SearchItems(SearchForm &form, QWidget *parent);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void ListPressed(const QMouseEvent &event);
    void AskForPopup(QPoint place);

    SearchForm &m_form;
};

SearchItems::SearchItems(SearchForm &form, QWidget *parent)
    : ItemView(form, form.ListView, "ListView", parent), m_form(form)
{
    RaisePanel();
    List().viewport()->installEventFilter(this);
    List().onMenuAsked = [this](ui::RowId, QPoint place, bool) { AskForPopup(place); };
}

// A menu outside the list, which shows or hides the pane with the criteria.
void SearchItems::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu menu;
    QAction *pane = menu.addAction(
        ui::qt::MenuText(shell::GetLanguageText("&Search Options", "SearchOptions", "Search")));
    pane->setCheckable(true);
    pane->setChecked(m_form.pctCloseTree.Visible());
    pane->setShortcut(QKeySequence::Find);
    if (menu.exec(event->globalPos()) != pane)
        return;
    if (m_form.pctCloseTree.Visible())
        ShowOptionsPane(m_form, false);
    else
        GoToOptionsPane(m_form);
}

bool SearchItems::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != List().viewport())
        return ItemView::eventFilter(watched, event);
    if (event->type() == QEvent::MouseButtonPress)
        ListPressed(*static_cast<QMouseEvent *>(event));
    return false;
}

// A click with Ctrl has to wait (ListView_MouseDown). The wait begins after the list has handled
// the click, so that the row is selected at once.
void SearchItems::ListPressed(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton)
        return;
    const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
    const bool ctrl = event.modifiers().testFlag(Qt::ControlModifier);
    if (!shift && !ctrl)
        ListView_MouseDown(m_form, 1, false, false);
    else
        QMetaObject::invokeMethod(
            this, [this, shift, ctrl] { ListView_MouseDown(m_form, 1, shift, ctrl); },
            Qt::QueuedConnection);
}

// The popup belongs to the main window; it opens where the user asked for it.
void SearchItems::AskForPopup(QPoint place)
{
    browser::MainForm &main = browser::frmMain();
    const QPoint inMain = place - MainWindowPlace();
    const auto cursor = std::exchange(main.calls.cursor, [&main, inMain] {
        return ui::Rect{main.window.left + ui::TwipsOfPixels(inMain.x()),
                        main.window.top + ui::TwipsOfPixels(inMain.y()), 0, 0};
    });
    const auto putBack = qScopeGuard([&main, &cursor] { main.calls.cursor = cursor; });
    ListView_MouseDown(m_form, 2, false, false);
}

SearchItems &ItemsIn(const QWidget *window)
{
    return *static_cast<SearchItems *>(window->findChild<QWidget *>(QStringLiteral("pctBorders")));
}

} // namespace

void RegisterSearchWidgets()
{
    const auto own = [](std::string_view control, ui::qt::WidgetMaker make) {
        ui::qt::RegisterWidget("frmSearch", control, std::move(make));
    };
    own("pctBorders", [](ui::Form &form, QWidget *parent) -> QWidget * {
        return new SearchItems(static_cast<SearchForm &>(form), parent);
    });
    own("ListView",
        [](ui::Form &, QWidget *parent) -> QWidget * { return &ItemsIn(parent).List(); });
    own("pctWeb",
        [](ui::Form &, QWidget *parent) -> QWidget * { return &ItemsIn(parent).Panel(); });
}

} // namespace search

#include "search/frmSearch.h"

#include "browser/mainform.h"
#include "browser/windows/frmItemView.h"
#include "platform/machine.h"
#include "platform/windows.h"
#include "shell/language.h"
#include "ui/qt/bindings.h"
#include "ui/qt/inputbindings.h"
#include "ui/qt/qttext.h"
#include "ui/qt/views/listview.h"
#include "ui/qt/widgets/splitter.h"
#include "ui/qt/widgets/statusbarview.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QScopeGuard>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace search
{

namespace
{

constexpr int kMarginTwips = 100;                                // beside the controls of the pane
constexpr int kLeastWidthPixels = 420, kLeastHeightPixels = 260; // so that the window stays usable
constexpr ui::qt::Binding kInLayout{false};

// The place of the main window on the screen; its popup is placed relative to this.
QPoint MainWindowPlace()
{
    for (const QWidget *window : QApplication::topLevelWidgets())
        if (window->objectName() == QLatin1String("frmMain"))
            return window->pos();
    return {};
}

} // namespace

frmSearchWindow::frmSearchWindow(SearchForm &form)
    : m_form(form), m_closeTree(new QWidget(this)), m_options(new QScrollArea(this)),
      m_separator(new ui::qt::Splitter(form.Separator, this)),
      m_items(new browser::ItemView(form, form.ListView, "ListView", this)),
      m_statusBar(new ui::qt::StatusBarView(form.SBar, this))
{
    ui::qt::Name(this, "frmSearch");
    setWindowTitle(ui::qt::LabelText(form.lblFolders.Caption()));
    setWindowIcon(QIcon(QStringLiteral(":/icons/app.svg")));
    setMinimumSize(kLeastWidthPixels, kLeastHeightPixels);
    BuildTitle();
    BuildOptions();
    BuildSeparator();
    BuildList();
    ui::qt::Name(m_statusBar, "SBar");
    ui::qt::Bind(form.statusBarArea, m_statusBar,
                 [this] { ui::qt::ShowArea(m_form.statusBarArea, m_statusBar); });
    ui::qt::BindTimer(form.ShowSelectedItems, this);
    ui::qt::BindTimer(form.tmrReadAhead, this);
    form.calls.placed = [this] { m_items->ShowPanel(); };
    m_items->RaisePanel();
    m_separator->RaiseGrip();
    NameForReaders();
    MeasureTitle();
    setTabOrder(m_lastInPane, &m_items->List());
    setTabOrder(&m_items->List(), m_separator);
    const auto addKey = [this](const QKeySequence &keys, auto action) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
    };
    addKey(QKeySequence(Qt::Key_Escape), [this] { close(); });
    addKey(QKeySequence::Find, [this] { ShowPane(); });
    resize(ui::PixelsOfTwips(form.window.width - kFrameWidth),
           ui::PixelsOfTwips(form.window.height - kFrameHeight));
}

frmSearchWindow::~frmSearchWindow()
{
    m_form.calls = {};
    if (m_form.visible)
        SetVisible(m_form, false);
}

void frmSearchWindow::BuildTitle()
{
    using namespace ui::qt;
    Name(m_closeTree, "pctCloseTree");
    Bind(m_form.pctCloseTree, m_closeTree, [this] { ShowArea(m_form.pctCloseTree, m_closeTree); });
    auto *frame = new QWidget(m_closeTree);
    Name(frame, "frmCloseTree");
    Bind(m_form.frmCloseTree, frame, [this, frame] { ShowArea(m_form.frmCloseTree, frame); });
    auto *title = new QLabel(frame);
    Name(title, "lblFolders");
    QFont bold = font();
    bold.setBold(true);
    title->setFont(bold);
    BindLabel(m_form.lblFolders, title);
    auto *close = new QToolButton(frame);
    m_close = close;
    Name(close, "lblCloseTree");
    close->setAutoRaise(true);
    const QString words = ToQt(shell::GetLanguageText("Close the pane", "ClosePane", "Search"));
    close->setToolTip(words);
    close->setAccessibleName(words);
    Bind(m_form.lblCloseTree, close, [this, close] {
        ShowArea(m_form.lblCloseTree, close);
        close->setText(LabelText(m_form.lblCloseTree.Caption()));
    });
    connect(close, &QToolButton::clicked, this, [this] { ShowOptionsPane(m_form, false); });
}

void frmSearchWindow::BuildOptions()
{
    using namespace ui::qt;
    Name(m_options, "pctOptions");
    m_options->setFrameShape(QFrame::NoFrame);
    m_options->setFocusPolicy(
        Qt::NoFocus); // the controls inside take the focus and scroll into view
    m_options->setWidgetResizable(true);
    m_options->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    Bind(m_form.pctOptions, m_options, [this] { ShowArea(m_form.pctOptions, m_options); });
    auto *options = new QWidget;
    Name(options, "frmSearchOptions");
    BuildBoxes(options);
    m_options->setWidget(options);
}

// One below the other, with the width of the pane; the toolkit decides only their heights.
void frmSearchWindow::BuildBoxes(QWidget *options)
{
    using namespace ui::qt;
    SearchOptions &controls = m_form.options;
    auto *column = new QVBoxLayout(options);
    const int margin = ui::PixelsOfTwips(kMarginTwips);
    column->setContentsMargins(margin, margin, margin, margin);
    const auto add = [column](QWidget *widget, const char *name) {
        Name(widget, name);
        column->addWidget(widget);
        return widget;
    };
    const auto addNamed = [&](ui::Label &label, const char *labelName, QWidget *widget,
                              const char *name) {
        auto *shown = static_cast<QLabel *>(MakeLabel(label, true, options, kInLayout));
        add(shown, labelName);
        add(widget, name);
        shown->setBuddy(widget);
        widget->setAccessibleName(SpokenText(label.Caption()));
        widget->setMinimumWidth(0);
        return widget;
    };
    m_text = addNamed(controls.lblToFind, "lblToFind",
                      MakeTextBox(controls.txtToFind, options, kInLayout), "txtToFind");
    auto *types = addNamed(controls.lblTypeOfSearch, "lblTypeOfSearch",
                           MakeComboBox(controls.cmbType, options, kInLayout), "cmbType");
    types->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    for (std::size_t i = 0; i < controls.chkField.size(); ++i)
        add(MakeCheckBox(controls.chkField[i], false, options, kInLayout),
            qPrintable(QStringLiteral("chkField(%1)").arg(i)));
    for (std::size_t i = 0; i < controls.cmdAll.size(); ++i)
        add(MakeButton(controls.cmdAll[i], options, kInLayout),
            qPrintable(QStringLiteral("cmdAll(%1)").arg(i)));
    m_lastInPane = add(MakeButton(controls.cmdSearch, options, kInLayout), "cmdSearch");
    column->addStretch();
}

void frmSearchWindow::BuildSeparator()
{
    m_separator->pressed = [this] { Separator_MouseDown(m_form); };
    m_separator->moved = [this](double mouseX) {
        Separator_MouseMove(m_form, static_cast<int>(mouseX));
    };
    m_separator->released = [this] { Separator_MouseUp(m_form); };
}

void frmSearchWindow::BuildList()
{
    m_items->List().viewport()->installEventFilter(this);
    m_items->List().onMenuAsked = [this](ui::RowId, QPoint place, bool) { AskForPopup(place); };
}

void frmSearchWindow::NameForReaders()
{
    const auto name = [this](const char *control, const std::string &words) {
        if (auto *widget = findChild<QWidget *>(QLatin1String(control)); widget != nullptr)
            widget->setAccessibleName(ui::qt::ToQt(words));
    };
    setAccessibleName(windowTitle());
    name("ListView", m_form.lblWebFolder.Caption());
    name("Separator", shell::GetLanguageText("Width of the search pane", "PaneSplitter", "Spoken"));
    name("vsbBack", shell::GetLanguageText("Position in the information", "PanelBar", "Spoken"));
}

// The row of the title is as high as the font and its button need.
void frmSearchWindow::MeasureTitle()
{
    const QSize button = m_close->minimumSizeHint();
    const int side = ui::TwipsOfPixels(std::max(button.width(), button.height()));
    const int height = std::max(ui::TwipsOfPixels(fontMetrics().height() + 10), side + 60);
    m_form.pctCloseTree.SetHeight(height);
    m_form.frmCloseTree.SetHeight(height);
    m_form.lblFolders.SetPlace({kMarginTwips, 75, m_form.lblFolders.Width(), height - 75});
    m_form.lblCloseTree.SetPlace({m_form.lblCloseTree.Left(), 30, side, side});
    m_form.statusBarArea.SetHeight(ui::TwipsOfPixels(m_statusBar->sizeHint().height()));
}

void frmSearchWindow::Present()
{
    if (platform::Windows *windows = platform::TheMachine().windows; windows != nullptr)
        windows->CheckNonModal();
    if (isMinimized())
        showNormal();
    else
        show();
    raise();
    activateWindow();
    if (m_form.pctCloseTree.Visible())
        m_text->setFocus();
}

// A new size of the window is passed to the form's layout, the first one before the window is
// shown.
void frmSearchWindow::ClientResized()
{
    m_form.minimised = isMinimized();
    m_form.scaleWidth = ui::TwipsOfPixels(width());
    m_form.window.width = m_form.scaleWidth + kFrameWidth;
    m_form.window.height = ui::TwipsOfPixels(height()) + kFrameHeight;
    const int barHeight = m_form.statusBarArea.Height();
    m_form.statusBarArea.SetPlace(
        {0, ui::TwipsOfPixels(height()) - barHeight, m_form.scaleWidth, barHeight});
    if (m_form.visible)
        ResizeSearchForm(m_form);
    else
        ReDrawForm(m_form);
}

bool frmSearchWindow::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    if (std::exchange(m_layoutDue, false))
        ClientResized();
    return handled;
}

void frmSearchWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_layoutDue = true;
}

void frmSearchWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        m_form.minimised = isMinimized();
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        PrepareSearch(m_form); // another program may have changed the catalogue meanwhile
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        MeasureTitle();
        m_items->SetPanelFonts();
        m_layoutDue = true;
    }
}

void frmSearchWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        SetVisible(m_form, true);
}

void frmSearchWindow::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous())
        SetVisible(m_form, false);
}

// Enter searches from anywhere in the pane; buttons and the list handle it themselves.
void frmSearchWindow::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && m_options->isAncestorOf(focusWidget()))
        m_form.options.cmdSearch.Click();
    else
        QWidget::keyPressEvent(event);
}

// A menu besides that of the list: it shows the pane again, or hides it.
void frmSearchWindow::contextMenuEvent(QContextMenuEvent *event)
{
    if (!m_items->geometry().contains(event->pos()))
        return;
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
        ShowPane();
}

void frmSearchWindow::ShowPane()
{
    if (!m_form.pctCloseTree.Visible())
        ShowOptionsPane(m_form, true);
    m_text->setFocus();
    m_form.options.txtToFind.SelectAll();
}

bool frmSearchWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress)
        ListPressed(*static_cast<QMouseEvent *>(event));
    return QWidget::eventFilter(watched, event);
}

// If the click has to wait, that is done after the list has handled it, so that the row is selected
// at once.
void frmSearchWindow::ListPressed(const QMouseEvent &event)
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
void frmSearchWindow::AskForPopup(QPoint place)
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

} // namespace search

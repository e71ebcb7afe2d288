#include "browser/windows/frmMain.h"

#include "browser/form/formclose.h"
#include "browser/form/formcommands.h"
#include "browser/form/formlayout.h"
#include "browser/form/formpopup.h"
#include "browser/windows/frmItemView.h"
#include "platform/machine.h"
#include "platform/placement.h"
#include "ui/qt/bindings.h"
#include "ui/qt/icons.h"
#include "ui/qt/qttext.h"
#include "ui/qt/views/listview.h"
#include "ui/qt/views/treeview.h"
#include "ui/qt/widgets/elidedlabel.h"
#include "ui/qt/widgets/splitterview.h"
#include "ui/qt/widgets/statusbarview.h"

#include <QCloseEvent>
#include <QCursor>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QScopedValueRollback>
#include <QScreen>
#include <QTimer>
#include <QToolBar>
#include <cmath>
#include <utility>

namespace browser
{

namespace
{

constexpr int kFrameHeightPixels = kFrameHeight / ui::kTwipsPerPixel;
constexpr int kFrameWidthPixels = kFrameWidth / ui::kTwipsPerPixel;
constexpr int kLeastWidthPixels = 400, kLeastHeightPixels = 260; // so that the window stays usable

} // namespace

frmMainWindow::frmMainWindow(MainForm &form)
    : m_form(form), m_client(new QWidget(this)), m_toolbar(new QToolBar(m_client)),
      m_addressBar(new QFrame(m_client)), m_lblAddress(new ui::qt::ElidedLabel(m_addressBar)),
      m_WEPath(new ui::qt::ElidedLabel(m_addressBar)),
      m_tree(new ui::qt::TreeView(form.TV, m_client)),
      m_separator(new ui::qt::SplitterView(form.Separator, m_client)),
      m_items(new ItemView(form, form.LV, "LV", m_client)),
      m_statusBar(new ui::qt::StatusBarView(form.SB, m_client)),
      m_progress(new QProgressBar(m_statusBar)), m_settled(new QTimer(this))
{
    ui::qt::Name(this, "frmMain");
    setWindowTitle(ui::qt::ToQt(form.caption));
    setWindowIcon(QIcon(QStringLiteral(":/icons/app.svg")));
    setCentralWidget(m_client);
    setMinimumSize(kLeastWidthPixels, kLeastHeightPixels);
    ui::qt::Name(m_client, "Client");
    m_client->installEventFilter(this);
    BuildSettled();
    FillCalls();
    BuildMenus();
    BuildToolbar();
    BuildTree();
    BuildList();
    BuildPopup();
    BindFrame();
    m_form.calls.raisePanel();
    m_separator->RaiseGrip();
    MeasureFrame();
    NameForReaders();
    setTabOrder(m_tree, &m_items->List());
    setTabOrder(&m_items->List(), m_separator);
}

frmMainWindow::~frmMainWindow()
{
    m_client->removeEventFilter(this);
    m_form.calls = {};
    m_form.extrasBuilt = nullptr;
}

// Sets the functions that the form calls on its window. app/ sets the others.
void frmMainWindow::FillCalls()
{
    m_form.calls.textWidth = [this](std::string_view text) { return TextWidthTwips(text); };
    m_form.calls.bringIntoView = [](const ui::Rect &stored) {
        platform::Windows *windows = platform::TheMachine().windows;
        if (windows == nullptr)
            return stored;
        const platform::Placement fitted = platform::BringIntoView(
            {stored.left, stored.top, stored.width, stored.height}, *windows);
        return ui::Rect{fitted.left, fitted.top, fitted.width, fitted.height};
    };
    m_form.calls.showWindow = [this] {
        if (platform::Windows *windows = platform::TheMachine().windows; windows != nullptr)
            windows->CheckNonModal();
        PlaceWindow();
        if (m_form.maximised)
            showMaximized();
        else
            show();
        m_tree->setFocus();
    };
    m_form.calls.popupHeights = [this] { return PopupHeights(); };
    m_form.calls.showPopup = [this](int left, int top) { ShowPopup(left, top); };
    // Counted from the window itself, because some window systems do not report where it is on the
    // screen.
    m_form.calls.cursor = [this] {
        const QPoint inWindow = m_anchor.value_or(QCursor::pos()) - pos();
        return ui::Rect{m_form.window.left + ui::TwipsOfPixels(inWindow.x()),
                        m_form.window.top + ui::TwipsOfPixels(inWindow.y()), 0, 0};
    };
    m_form.calls.raisePanel = [this] { m_items->RaisePanel(); };
}

void frmMainWindow::BindFrame()
{
    using namespace ui::qt;
    Name(m_toolbar, "TB");
    Bind(m_form.TB, m_toolbar, [this] { ShowArea(m_form.TB, m_toolbar); });
    Name(m_addressBar, "TBAddress");
    Bind(m_form.TBAddress, m_addressBar, [this] { ShowArea(m_form.TBAddress, m_addressBar); });
    Name(m_lblAddress, "lblAddress");
    Name(m_WEPath, "WEPath");
    m_WEPath->SetElideMode(Qt::ElideMiddle);
    m_WEPath->SetSelectable();
    const auto bindLine = [this](ui::Label &label, ElidedLabel *widget) {
        Bind(label, widget, [this, &label, widget] {
            // The whole height of the bar, so that a larger font is centred.
            const QRect place = PixelRect(label.Place());
            widget->setGeometry(place.left(), 4, place.width(), m_addressBar->height() - 6);
            widget->SetFullText(LabelText(label.Caption()));
        });
    };
    bindLine(m_form.lblAddress, m_lblAddress);
    bindLine(m_form.WEPath, m_WEPath);
    Name(m_separator, "Separator");
    Name(m_statusBar, "SB");
    Name(m_progress, "PBar");
    Bind(m_form.pbarArea, m_progress,
         [this] { m_progress->setGeometry(PixelRect(m_form.pbarArea.Place())); });
    BindProgress(m_form.PBar, m_progress);
    for (ui::Timer *timer :
         {&m_form.ShowSelectedItems, &m_form.tmrRefreshList, &m_form.tmr_Playing,
          &m_form.tmrAutoCheckVersion, &m_form.tmrClearAutoCheck, &m_form.tmrListFiles})
        BindTimer(*timer, this);
}

// Gives the form the sizes that depend on the desktop's font and style.
void frmMainWindow::MeasureFrame()
{
    m_form.TB.SetHeight(ui::TwipsOfPixels(m_toolbar->sizeHint().height()));
    m_form.SB.SetHeight(ui::TwipsOfPixels(m_statusBar->sizeHint().height()));
    m_form.lblAddress.SetWidth(TextWidthTwips(m_form.lblAddress.Caption()));
    if (m_form.lblAddress.captionChanged)
        m_form.lblAddress.captionChanged(); // the controls beside it depend on its width
}

// The width of a label for the whole text. The width of letters has fractions of a pixel; a label
// that is too narrow by a fraction would cut its text.
int frmMainWindow::TextWidthTwips(std::string_view text) const
{
    const QFontMetricsF metrics(m_lblAddress->font(), m_lblAddress);
    const qreal width = metrics.horizontalAdvance(ui::qt::LabelText(text));
    return ui::TwipsOfPixels(static_cast<int>(std::ceil(width)));
}

void frmMainWindow::PlaceWindow()
{
    const QScopedValueRollback applying(m_applying, true);
    const ui::Rect &place = m_form.window;
    const int menuHeight = menuBar()->sizeHint().height();
    resize(ui::PixelsOfTwips(place.width) - kFrameWidthPixels,
           ui::PixelsOfTwips(place.height) - kFrameHeightPixels + menuHeight);
    move(ui::PixelsOfTwips(place.left), ui::PixelsOfTwips(place.top));
}

// Copies the window's place to the form, in the units of the layout and the settings.
void frmMainWindow::TakeOwnPlace()
{
    m_form.minimised = isMinimized();
    if (m_form.minimised)
        return;
    ui::Rect &place = m_form.window;
    platform::Windows *windows = platform::TheMachine().windows;
    if (windows == nullptr || windows->KnowsPlaces()) {
        place.left = ui::TwipsOfPixels(x());
        place.top = ui::TwipsOfPixels(y());
    }
    place.width = ui::TwipsOfPixels(m_client->width() + kFrameWidthPixels);
    place.height = ui::TwipsOfPixels(m_client->height() + kFrameHeightPixels);
    m_form.scaleWidth = ui::TwipsOfPixels(m_client->width());
    m_settled->start();
}

// The window system reports the size of a maximised window before it reports that it is maximised.
// So a new place is taken only after a while without another change.
void frmMainWindow::BuildSettled()
{
    constexpr int kSettledMs = 300;
    m_settled->setSingleShot(true);
    m_settled->setInterval(kSettledMs);
    connect(m_settled, &QTimer::timeout, this, [this] {
        if (!isMaximized() && !isMinimized() && !isFullScreen())
            m_form.normal = m_form.window;
    });
}

void frmMainWindow::ClientResized()
{
    TakeOwnPlace();
    const int height = m_form.SB.Height();
    m_form.SB.SetPlace(
        {0, ui::TwipsOfPixels(m_client->height()) - height, m_form.scaleWidth, height});
    m_form.TB.SetWidth(m_form.scaleWidth);
    ResizeMainForm(m_form);
}

void frmMainWindow::moveEvent(QMoveEvent *event)
{
    QMainWindow::moveEvent(event);
    if (!m_applying && isVisible())
        TakeOwnPlace();
}

// The form's layout yields. During the toolkit's own layout another event could destroy an object
// that it uses, so the form's layout runs after this event.
bool frmMainWindow::event(QEvent *event)
{
    const bool handled = QMainWindow::event(event);
    if (std::exchange(m_layoutDue, false))
        ClientResized();
    return handled;
}

void frmMainWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    switch (event->type()) {
    case QEvent::WindowStateChange:
        m_form.minimised = isMinimized();
        if (!m_form.minimised)
            m_form.maximised = isMaximized();
        break;
    case QEvent::FontChange:
    case QEvent::StyleChange:
        MeasureFrame();
        m_layoutDue = true;
        break;
    default:
        break;
    }
}

// The form decides whether the window closes; its unload ends the program.
void frmMainWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    CloseMainForm(m_form);
}

void frmMainWindow::keyPressEvent(QKeyEvent *event)
{
    const int code = event->key() == Qt::Key_Escape ? 27 : event->key();
    if (!Form_KeyDown(m_form, code, event->modifiers().testFlag(Qt::AltModifier)))
        QMainWindow::keyPressEvent(event);
}

// While tree and list are disabled, the separator has the focus. The tree gets it when it is
// enabled again.
void frmMainWindow::GiveKeyboardBack()
{
    const QWidget *owner = focusWidget();
    if (m_tree->isEnabled() && (owner == nullptr || owner == m_separator || owner == this))
        m_tree->setFocus();
}

bool frmMainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_client && event->type() == QEvent::Resize)
        m_layoutDue = true;
    else if (watched == m_tree && event->type() == QEvent::EnabledChange)
        GiveKeyboardBack();
    return QMainWindow::eventFilter(watched, event);
}

} // namespace browser

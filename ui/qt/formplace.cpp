// The place of a form's window: storing it, and using the window beside a modal one.
#include "platform/machine.h"
#include "platform/placement.h"
#include "shell/settings.h"
#include "ui/qt/formwindow.h"

#include <QApplication>
#include <QMainWindow>
#include <QScreen>
#include <QWindow>
#include <charconv>
#include <optional>

namespace ui::qt
{

namespace
{

constexpr std::string_view kPlaces = "Window Places"; // a section of the settings

std::optional<int> StoredTwips(const std::string &key)
{
    const std::string text = shell::GetSetting(kPlaces, key);
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

} // namespace

// Uses the stored place, moved onto the screens that exist now.
void FormWindow::RestorePlace()
{
    platform::Windows *windows = platform::TheMachine().windows;
    if (!m_form.remembersPlace || windows == nullptr)
        return;
    const auto left = StoredTwips(m_form.name + " Left");
    const auto top = StoredTwips(m_form.name + " Top");
    const auto wide = StoredTwips(m_form.name + " Width");
    const auto high = StoredTwips(m_form.name + " Height");
    if (!left || !top || !wide || !high)
        return;
    const platform::Placement place =
        platform::BringIntoView({*left, *top, *wide, *high}, *windows);
    if (m_form.resizable)
        resize(ui::PixelsOfTwips(place.width), ui::PixelsOfTwips(place.height));
    if (!m_form.opensBeside)
        move(ui::PixelsOfTwips(place.left), ui::PixelsOfTwips(place.top));
}

// In the middle of the first screen.
void FormWindow::Centre()
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    move(screen.topLeft() + QPoint(screen.width() - width(), screen.height() - height()) / 2);
}

// The window in use: the modal one, the active one, else the main window. Null when there is none.
QWidget *FormWindow::WindowInUse() const
{
    if (m_over != nullptr)
        return m_over;
    if (QWidget *active = QApplication::activeWindow(); active != nullptr && active != this)
        return active;
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window->isVisible() && qobject_cast<const QMainWindow *>(window) != nullptr)
            return window;
    return nullptr;
}

// The frame of a window that was not shown yet is not known; that of the other window is used,
// which has the same size.
void FormWindow::PlaceBesideWindowInUse()
{
    const QWidget *other = WindowInUse();
    platform::Windows *windows = platform::TheMachine().windows;
    if (other == nullptr || windows == nullptr || !windows->KnowsPlaces())
        return;
    const auto placement = [](const QRect &place) {
        return platform::Placement{place.left(), place.top(), place.width(), place.height()};
    };
    const QRect outside = other->frameGeometry();
    const QSize frame = outside.size() - other->size();
    const platform::Placement beside =
        platform::PlaceBeside(placement(QRect(QPoint(), size() + frame)), placement(outside),
                              placement(other->screen()->availableGeometry()));
    move(beside.left, beside.top);
    if (windowHandle() != nullptr) // else the place would count as that inside the frame
        windowHandle()->setFramePosition({beside.left, beside.top});
}

void FormWindow::StorePlace() const
{
    if (!m_form.remembersPlace || isMinimized() || platform::TheMachine().settings == nullptr)
        return;
    const auto save = [this](const char *what, int pixels) {
        shell::SaveSetting(kPlaces, m_form.name + what, std::to_string(ui::TwipsOfPixels(pixels)));
    };
    platform::Windows *windows = platform::TheMachine().windows;
    if (windows == nullptr || windows->KnowsPlaces()) {
        save(" Left", x());
        save(" Top", y());
    }
    save(" Width", width());
    save(" Height", height());
}

// A modal window blocks all windows except its own; the toolkit checks this when a window is shown.
void FormWindow::UseOver(QWidget *modal)
{
    if (modal == m_over || modal == this)
        return;
    if (m_over != nullptr)
        m_over->removeEventFilter(this);
    m_over = modal;
    const bool shown = isVisible();
    hide();
    winId(); // makes a native window
    QWindow *owner = nullptr;
    if (modal != nullptr) {
        modal->installEventFilter(this);
        owner = modal->windowHandle();
    }
    windowHandle()->setTransientParent(owner);
    if (!shown)
        return;
    setAttribute(Qt::WA_ShowWithoutActivating);
    show();
    setAttribute(Qt::WA_ShowWithoutActivating, false);
}

// The modal window has closed: from now on this one is used beside the modal window that is open
// now, if any.
void FormWindow::LeaveOver()
{
    const auto goOn = [this] {
        if (m_over == nullptr || !m_over->isVisible())
            UseOver(QApplication::activeModalWidget());
    };
    QMetaObject::invokeMethod(this, goOn, Qt::QueuedConnection);
}

} // namespace ui::qt

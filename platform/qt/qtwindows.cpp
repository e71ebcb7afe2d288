#include "platform/qt/qtwindows.h"

#include "platform/qt/theme.h"
#include "runtime/error.h"

#include <QApplication>
#include <QScreen>

namespace platform::qt
{

namespace
{

constexpr int kTwipsPerPixel = 15;

} // namespace

std::vector<Placement> QtWindows::Screens()
{
    std::vector<Placement> places;
    const QScreen *primary = QGuiApplication::primaryScreen();
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QRect area = screen->availableGeometry();
        const Placement place{area.left() * kTwipsPerPixel, area.top() * kTwipsPerPixel,
                              area.width() * kTwipsPerPixel, area.height() * kTwipsPerPixel};
        places.insert(screen == primary ? places.begin() : places.end(), place);
    }
    return places;
}

bool QtWindows::KnowsPlaces()
{
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

void QtWindows::CheckNonModal()
{
    if (QApplication::activeModalWidget() != nullptr)
        throw runtime::RuntimeError(runtime::kNonModalOverModal);
}

bool QtWindows::IsDark()
{
    return qt::IsDark();
}

} // namespace platform::qt

#include "tests/windows/awaitplace.h"

#include "tests/windows/bench.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <optional>

namespace tests
{

namespace
{

template <class Answer>
std::unique_ptr<Answer, decltype(&std::free)> Owned(Answer *answer)
{
    return {answer, &std::free};
}

// Where the window is on the display, without its frame and in pixels of the display; nothing when
// there is no X server to ask.
std::optional<QRect> PlaceOnDisplay(xcb_window_t window)
{
    const auto *x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr)
        return std::nullopt;
    xcb_connection_t *display = x11->connection();
    const auto size =
        Owned(xcb_get_geometry_reply(display, xcb_get_geometry(display, window), nullptr));
    if (size == nullptr)
        return std::nullopt;
    const auto place = Owned(xcb_translate_coordinates_reply(
        display, xcb_translate_coordinates(display, window, size->root, 0, 0), nullptr));
    if (place == nullptr)
        return std::nullopt;
    return QRect(place->dst_x, place->dst_y, size->width, size->height);
}

} // namespace

void AwaitPlace(QWidget &window)
{
    const QWindow *handle = window.windowHandle();
    ASSERT_NE(handle, nullptr);
    const auto id = static_cast<xcb_window_t>(handle->winId());
    EXPECT_TRUE(WaitUntil([&] {
        const std::optional<QRect> place = PlaceOnDisplay(id);
        if (!place)
            return true;
        const qreal scale = handle->devicePixelRatio();
        // The toolkit rounds the values that it gets.
        const auto isSame = [&](int shown, int known) {
            return std::abs(shown - known * scale) < scale;
        };
        return isSame(place->x(), handle->x()) && isSame(place->y(), handle->y()) &&
               isSame(place->width(), handle->width()) && isSame(place->height(), handle->height());
    }));
    Settle();
}

} // namespace tests

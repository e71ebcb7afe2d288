#include "platform/placement.h"

#include <algorithm>
#include <cstdint>

namespace platform
{

namespace
{

// The part of the title line that must be on a screen, so that the user can move the window: its
// whole height and this much of its width.
constexpr int kTitleHeight = 450; // 30 pixels
constexpr int kGraspWidth = 1500; // 100 pixels

std::int64_t Overlap(int firstStart, int firstLength, int secondStart, int secondLength)
{
    const std::int64_t start = std::max(firstStart, secondStart);
    const std::int64_t end =
        std::min(std::int64_t{firstStart} + firstLength, std::int64_t{secondStart} + secondLength);
    return std::max<std::int64_t>(end - start, 0);
}

std::int64_t SharedArea(const Placement &a, const Placement &b)
{
    return Overlap(a.left, a.width, b.left, b.width) * Overlap(a.top, a.height, b.top, b.height);
}

bool CanBeGrasped(const Placement &window, const Placement &screen)
{
    const int grasp = std::min(kGraspWidth, window.width);
    return window.top >= screen.top &&
           std::int64_t{window.top} + kTitleHeight <= std::int64_t{screen.top} + screen.height &&
           Overlap(window.left, window.width, screen.left, screen.width) >= grasp;
}

int Into(int start, int length, int screenStart, int screenLength)
{
    const std::int64_t last = std::int64_t{screenStart} + screenLength - length;
    return static_cast<int>(
        std::clamp<std::int64_t>(start, screenStart, std::max<std::int64_t>(last, screenStart)));
}

} // namespace

Placement BringIntoView(const Placement &wanted, const std::vector<Placement> &screens)
{
    if (screens.empty())
        return wanted;
    const Placement *best = &screens.front();
    std::int64_t visible = 0;
    for (const Placement &screen : screens) {
        visible += SharedArea(wanted, screen);
        if (SharedArea(wanted, screen) > SharedArea(wanted, *best))
            best = &screen;
    }
    if (visible > 0 && visible >= std::int64_t{wanted.width} * wanted.height)
        return wanted;

    Placement result = wanted;
    result.width = std::min(wanted.width, best->width);
    result.height = std::min(wanted.height, best->height);
    const bool shrunk = result.width != wanted.width || result.height != wanted.height;
    if (!shrunk && std::any_of(screens.begin(), screens.end(), [&](const Placement &screen) {
            return CanBeGrasped(result, screen);
        }))
        return result;
    result.left = Into(result.left, result.width, best->left, best->width);
    result.top = Into(result.top, result.height, best->top, best->height);
    return result;
}

Placement PlaceBeside(const Placement &size, const Placement &window, const Placement &screen)
{
    const int screensRight = screen.left + screen.width;
    const int roomRight = screensRight - (window.left + window.width);
    const int roomLeft = window.left - screen.left;
    Placement result = size;
    if (roomRight >= size.width)
        result.left = window.left + window.width;
    else if (roomLeft >= size.width)
        result.left = window.left - size.width;
    else
        result.left = roomRight >= roomLeft ? screensRight - size.width : screen.left;
    result.left = Into(result.left, size.width, screen.left, screen.width);
    result.top = Into(window.top, size.height, screen.top, screen.height);
    return result;
}

Placement BringIntoView(const Placement &wanted, Windows &windows)
{
    Placement result = BringIntoView(wanted, windows.Screens());
    if (!windows.KnowsPlaces()) {
        result.left = wanted.left;
        result.top = wanted.top;
    }
    return result;
}

} // namespace platform

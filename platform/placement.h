// platform/placement.h - where a window fits on the screens. No state.
#pragma once

#include "platform/windows.h"

#include <vector>

namespace platform
{

// `wanted`, changed so that it can be used on `screens`. It is not changed when it is completely on
// the screens (it may cover two), or when it fits the screen that it overlaps most (the first one
// when it overlaps none) and enough of its title line is visible to move it. Otherwise it is
// reduced to the size of that screen and moved onto it. Without a screen: `wanted`.
[[nodiscard]] Placement BringIntoView(const Placement &wanted,
                                      const std::vector<Placement> &screens);

// The same on the screens of `windows`. If these do not know places, left and top are not changed.
[[nodiscard]] Placement BringIntoView(const Placement &wanted, Windows &windows);

// The place for a window as large as `size` beside `window` on `screen`: to its right; to its left
// when there is room only there; without room on either side, at the end of the screen where it
// covers less of `window`. Its top is at the height of the other's top, or higher, so that all of
// it is on the screen. A window that is larger than the screen begins at the screen's corner.
[[nodiscard]] Placement PlaceBeside(const Placement &size, const Placement &window,
                                    const Placement &screen);

} // namespace platform

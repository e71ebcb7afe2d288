// platform/windows.h - what the program asks of the window system: screens, modality, dark or
// light, and bringing windows forward. Lengths are twips (15 to the pixel at 96 dpi), from the left
// upper corner of the whole desktop, so they may be negative.
#pragma once

#include <functional>
#include <vector>

namespace platform
{

struct Placement {
    int left = 0, top = 0;     // twips; the corner of the window with its frame
    int width = 0, height = 0; // twips; the size inside the frame

    bool operator==(const Placement &) const = default;
};

struct Windows {
    virtual ~Windows() = default;

    // The parts of the screens that windows may cover (without panels and docks), the primary
    // screen first. Empty when there is none.
    virtual std::vector<Placement> Screens() = 0;

    // Whether a window can be put at a place of the program's choice and learn where it is. False
    // on Wayland: there only a size is restored, and a stored left and top stay as they are stored.
    virtual bool KnowsPlaces() = 0;

    // Must be called before a non-modal window is shown.
    // Errors: kNonModalOverModal (401) while a modal window is up.
    virtual void CheckNonModal() = 0;

    // Whether windows are dark now.
    virtual bool IsDark() = 0;
};

// `wanted`, changed so that it can be used on `screens`. It is not changed when it is completely on
// the screens (it may cover two), or when it fits the screen that it overlaps most (the first one
// when it overlaps none) and enough of its title line is visible to move it. Otherwise it is
// reduced to the size of that screen and moved onto it. Without a screen: `wanted`.
[[nodiscard]] Placement BringIntoView(const Placement &wanted,
                                      const std::vector<Placement> &screens);

// The same on the screens of `windows`. If these do not know places, left and top are not changed.
[[nodiscard]] Placement BringIntoView(const Placement &wanted, Windows &windows);

// Where a window as large as `size` opens beside `window` on `screen`: to its right; to its left
// when there is room only there; without room on either side, at the end of the screen where it
// covers less of `window`. Its top is at the height of the other's top, or higher, so that all of
// it is on the screen. One that is larger than the screen begins at the screen's corner.
[[nodiscard]] Placement PlaceBeside(const Placement &size, const Placement &window,
                                    const Placement &screen);

} // namespace platform

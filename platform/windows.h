// platform/windows.h - what the program asks of the window system: screens, modality, dark or
// light. Lengths are twips (15 to the pixel at 96 dpi), from the upper left corner of the whole
// desktop, so they may be negative.
#pragma once

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

    // Whether the program can choose and read the place of a window. False on Wayland: there only
    // the size is restored, and a stored left and top are not changed.
    virtual bool KnowsPlaces() = 0;

    // Must be called before a non-modal window is shown.
    // Errors: kNonModalOverModal (401) while a modal window is open.
    virtual void CheckNonModal() = 0;

    // Whether windows are dark now.
    virtual bool IsDark() = 0;
};

} // namespace platform

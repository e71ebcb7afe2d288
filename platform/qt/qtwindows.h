// platform/qt/qtwindows.h - the window system's port over the toolkit.
#pragma once

#include "platform/windows.h"

namespace platform::qt
{

class QtWindows : public Windows
{
public:
    std::vector<Placement> Screens() override;
    bool KnowsPlaces() override;
    void CheckNonModal() override;
    bool IsDark() override;
};

} // namespace platform::qt

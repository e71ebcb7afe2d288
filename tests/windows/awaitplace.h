// tests/windows/awaitplace.h - waits for the place of a window on the display.
#pragma once

#include <QWidget>

namespace tests
{

// Waits until the window system has put the window at its place, or has reported another place.
void AwaitPlace(QWidget &window);

} // namespace tests

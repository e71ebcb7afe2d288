// tests/windows/accessibility.h - what a screen reader finds in a window.
#pragma once

#include <QWidget>
#include <string>
#include <vector>

namespace tests
{

// Every control, row and node under the window that a screen reader could not name: one line each,
// "role at path". Empty when all have a name and a role. Rows are looked at up to `maxRows` a view.
std::vector<std::string> NamelessControls(QWidget &window, int maxRows = 50);

} // namespace tests

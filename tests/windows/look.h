// tests/windows/look.h - what is wrong with a window as a user sees or hears it.
#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

namespace tests
{

// One line for each fault of a window that shows: a text that its widget cuts off, a widget that
// lies partly outside of its parent, an access key that two widgets share, a window that does not
// fit a screen of 800 by 600 pixels, what takes the keyboard without a name in words for a screen
// reader.
std::vector<std::string> LookProblems(QWidget &window);

// Looks at a window in English and in each shipped language, light and dark, and fails the test for
// each fault. `open` shows the window with the texts of the language in use and gives it; `close`
// ends it. Pictures are kept as <name>-<language>-<theme>.
void CheckLook(const std::string &name, const std::function<QWidget *()> &open,
               const std::function<void()> &close);

} // namespace tests

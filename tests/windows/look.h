// tests/windows/look.h - finds what is wrong with the look or the spoken names of a window.
#pragma once

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

namespace tests
{

// One line for each fault of a visible window: a text that its widget cuts, a widget that is partly
// outside its parent, an access key of two widgets, a window that does not fit a screen of 800 by
// 600 pixels, a widget that takes the focus without a name in words for a screen reader.
std::vector<std::string> LookProblems(QWidget &window);

// Checks a window in English and in each shipped language, light and dark, and fails the test for
// each fault. In every second language it is opened dark and becomes light, in the others it is
// opened light. `open` shows the window with the texts of the language in use and returns it;
// `close` closes it. Screenshots are kept as <name>-<language>-<theme>.
void CheckLook(const std::string &name, const std::function<QWidget *()> &open,
               const std::function<void()> &close);

// Calls `check` in German, which has the longest words, with each font family that desktops have.
void InEachFontFamily(const std::function<void()> &check);

} // namespace tests

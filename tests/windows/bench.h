// tests/windows/bench.h - shared by the tests of windows: finds controls by name, sends keys and
// mouse events through the window system, waits for conditions, and makes screenshots.
//
// The programs run under tests/windows/run_windowed: a separate display, window manager, D-Bus
// session and home folder. Suites whose names end with "Scaled" run a second time at 200 percent.
#pragma once

#include "ui/controls/timer.h"

#include <QApplication>
#include <QMenu>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

namespace tests
{

// Fails the test: the window has no such control.
void FailMissing(const QWidget &window, const char *name);

// The control `name` in the window, or the window itself. A missing one fails the test; the result
// is then null.
template <typename Control = QWidget>
Control *Find(QWidget &window, const char *name)
{
    const QString wanted = QString::fromLatin1(name);
    auto *found = window.objectName() == wanted ? qobject_cast<Control *>(&window)
                                                : window.findChild<Control *>(wanted);
    if (!found)
        FailMissing(window, name);
    return found;
}

// The visible top-level window with this object name; null when there is none. Waits for it.
QWidget *WaitForWindow(const char *objectName, int milliseconds = 30000);

// Shows the window and waits until the window system shows it and gives it the keyboard.
void ShowAndActivate(QWidget &window);

// Lets events run until `done` returns true. Returns: false when it did not within `milliseconds`.
[[nodiscard]] bool WaitUntil(const std::function<bool()> &done, int milliseconds = 30000);

// Whether `holds` returns true all the time while events run for `milliseconds`. For tests that
// show that nothing happens, when there is no other event to wait for.
[[nodiscard]] bool Stays(const std::function<bool()> &holds, int milliseconds);

// Handles all events that are due and those that they post: layouts, painting, the end of closed
// windows. Does not wait for the window system; WaitUntil and AwaitPlace do.
void Settle();

// Waits until the timer has had so many ticks.
void AwaitTicks(ui::Timer &timer, int count);

// Waits until a further click is no double click, and a further letter begins a new word to look
// for.
void EndDoubleClick();
void EndTypedWord();

// One key stroke such as "Ctrl+Q", "Escape", "Alt+3", into the window that has the keyboard, and
// characters typed one after the other.
void PressKey(const char *keys);
void TypeText(const std::string &text);

// Presses and releases the button in the middle of the control, or at `at` (in pixels of the
// control), through the window system.
void Click(QWidget &control, Qt::MouseButton button = Qt::LeftButton);
void ClickAt(QWidget &control, QPoint at, Qt::MouseButton button = Qt::LeftButton);
void DoubleClickAt(QWidget &control, QPoint at);
// A drag with the left button from one point of the control to another.
void Drag(QWidget &control, QPoint from, QPoint to);

// Runs `action` once, as soon as a modal window is open and has the focus. The test fails when no
// modal window opens in that time, or when it is still open that long after the action. To be
// called before the window is opened.
void WhenModal(const std::function<void(QWidget &modal)> &action, int milliseconds = 5000);

// Runs `action` once, as soon as a popup menu is open. To be called before the menu is opened.
void WhenPopup(const std::function<void(QMenu &menu)> &action);

// Keeps a picture of the window, as the display shows it, as "<name>.png" ("<name>@2x.png" at 200
// percent) in the folder that QUENLIN_SCREENSHOTS names in the environment; without it, none.
void KeepScreenshot(QWidget &window, const std::string &name);

// Waits until the window is on the display, settles, and paints it anew.
void AwaitPainted(QWidget &window);

// KeepScreenshot of a window for which AwaitPainted has waited.
void KeepPainted(QWidget &window, const std::string &name);

// The picture that KeepScreenshot would keep.
QImage Screenshot(QWidget &window);

} // namespace tests

// tests/windows/bench.h - what the tests of windows share: finding controls by their names, keys
// and mouse as events of the window system, waiting for something to come true, screenshots, and
// the walk over what a screen reader sees.
//
// The programs run under tests/windows/run_windowed: a display, a window manager, a D-Bus session
// and home folders of their own. Suites whose name ends in "Scaled" run a second time at 200
// percent.
#pragma once

#include <QApplication>
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

// Lets events run until `done` gives true; false when it did not in time.
[[nodiscard]] bool WaitUntil(const std::function<bool()> &done, int milliseconds = 30000);

// Lets events run for that long.
void LetRun(int milliseconds);

// One key stroke such as "Ctrl+Q", "Escape", "Alt+3", into the window that has the keyboard, and
// characters typed one after the other.
void PressKey(const char *keys);
void TypeText(const std::string &text);

// A press and release in the middle of the control, or `at` (in its own pixels), as the window
// system reports it.
void Click(QWidget &control, Qt::MouseButton button = Qt::LeftButton);
void ClickAt(QWidget &control, QPoint at, Qt::MouseButton button = Qt::LeftButton);
void DoubleClickAt(QWidget &control, QPoint at);
// A drag with the left button from one point of the control to another.
void Drag(QWidget &control, QPoint from, QPoint to);

// Runs `action` once, as soon as a modal window stands and has the keyboard. A modal window that
// does not come in time fails the test, and so does one that is still up that long after the
// action. Call it before what opens the window.
void WhenModal(const std::function<void(QWidget &modal)> &action, int milliseconds = 5000);

// Keeps a picture of the window, as the display shows it, at
// build/<preset>/screenshots/<name>.png ("<name>@2x.png" at 200 percent).
void KeepScreenshot(QWidget &window, const std::string &name);

// The picture that KeepScreenshot would keep.
QImage Screenshot(QWidget &window);

// Every control, row and node under the window that a screen reader could not name: one line each,
// "role at path". Empty when all have a name and a role. Rows are looked at up to `maxRows` a view.
std::vector<std::string> NamelessControls(QWidget &window, int maxRows = 50);

} // namespace tests

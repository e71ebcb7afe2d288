// ui/qt/bindings.h - connects a control of ui/controls with the widget that shows it. The widget is
// updated from the control; what the user does is passed to the functions in the control's own
// header. A control outlives its widget, and its hook is empty again when the widget is destroyed.
#pragma once

#include "ui/controls/area.h"
#include "ui/controls/inputs/scrollbar.h"
#include "ui/controls/label.h"
#include "ui/controls/picture.h"
#include "ui/controls/progressbar.h"
#include "ui/controls/timer.h"

#include <QAction>
#include <QLabel>
#include <QProgressBar>
#include <QScrollBar>
#include <functional>

namespace ui
{
class Command;
}

namespace ui::qt
{

// A place in pixels. The edges are rounded, not the sizes, so that neighbours in twips are
// neighbours in pixels.
[[nodiscard]] QRect PixelRect(const ui::Rect &place);

// Runs `show` now and at each change of `control` until `owner` is destroyed.
template <class Control>
void Bind(Control &control, QObject *owner, const std::function<void()> &show)
{
    QObject::connect(owner, &QObject::destroyed, [&control] { control.changed = nullptr; });
    show();
    control.changed = show;
}

// Returns: a function that runs `show`, but at most 25 times a second. For calls that are too early
// `show` runs once, as soon as it may, so that the last state is always shown. The function must
// not be called after `owner` was destroyed.
[[nodiscard]] std::function<void()> Throttled(QObject *owner, std::function<void()> show);

// Bind for a control that changes very often, such as the progress of a job: `show` is Throttled.
template <class Control>
void BindThrottled(Control &control, QObject *owner, const std::function<void()> &show)
{
    Bind(control, owner, Throttled(owner, show));
}

// Sets the object name of a widget, for tests and style sheets. Its accessible name, which a screen
// reader speaks, is a text for the user.
void Name(QWidget *widget, const char *name);

// Shows the place, visibility and enabled state of `area`.
void ShowArea(const ui::Area &area, QWidget *widget);

// Shows only visibility and enabled state. A widget that had the focus when it was disabled gets it
// again.
void ShowState(const ui::Area &area, QWidget *widget);

// Shows a label's text, plain and wrapped, at its place.
void BindLabel(ui::Label &label, QLabel *widget);

// A picture scaled to the size of its place; `placed` is false where a layout decides where it is.
void BindPicture(ui::Picture &picture, QLabel *widget, bool placed = true);

// In both directions: range, steps and value; when the user scrolls, the control's value is set.
void BindScrollBar(ui::ScrollBar &bar, QScrollBar *widget);

// Shows how much is done, and whether the bar is visible.
void BindProgress(ui::ProgressBar &bar, QProgressBar *widget);

// Makes a timer of the toolkit call Fire while `timer` is enabled. `owner` owns the toolkit's
// timer.
void BindTimer(ui::Timer &timer, QObject *owner);

// Shows a menu entry: caption, enabled, visible, checked (a check mark if `checkable`).
void BindAction(ui::Command &command, QAction *action, bool checkable = false);

} // namespace ui::qt

// ui/qt/bindings.h - ties a control of ui/controls to the widget that shows it. The widget follows
// the control; the control hears of the user through the functions of its own header. A control
// outlives its widget, and its hook is empty again once the widget is gone.
#pragma once

#include "ui/controls/area.h"
#include "ui/controls/label.h"
#include "ui/controls/picture.h"
#include "ui/controls/progressbar.h"
#include "ui/controls/scrollbar.h"
#include "ui/controls/timer.h"

#include <QAction>
#include <QLabel>
#include <QProgressBar>
#include <QScrollBar>
#include <QTimer>
#include <functional>
#include <memory>

namespace ui
{
class Command;
}

namespace ui::qt
{

// A place in pixels. Edges are rounded, not sizes, so that neighbours in twips touch in pixels.
[[nodiscard]] QRect PixelRect(const ui::Rect &place);

// Runs `show` now and at each change of `control` until `owner` is destroyed.
template <class Control>
void Bind(Control &control, QObject *owner, const std::function<void()> &show)
{
    QObject::connect(owner, &QObject::destroyed, [&control] { control.changed = nullptr; });
    show();
    control.changed = show;
}

// The same for a control that changes faster than anyone can read, as a job's progress does: `show`
// runs at most 25 times a second, and once more after the last change.
template <class Control>
void BindCalmly(Control &control, QObject *owner, const std::function<void()> &show)
{
    constexpr int kFrameMs = 40;
    auto *frame = new QTimer(owner);
    frame->setInterval(kFrameMs);
    auto pending = std::make_shared<bool>(false); // shared by the control's hook and the timer's
    QObject::connect(frame, &QTimer::timeout, frame, [frame, pending, show] {
        if (std::exchange(*pending, false))
            show();
        else
            frame->stop();
    });
    Bind(control, owner, [frame, pending, show] {
        if (frame->isActive()) {
            *pending = true;
            return;
        }
        show();
        frame->start();
    });
}

// Gives a widget its name, for tests and style sheets. A screen reader speaks its accessible name,
// which is in the words of the user.
void Name(QWidget *widget, const char *name);

// Place, visibility and enabled state of `area`.
void ShowArea(const ui::Area &area, QWidget *widget);

// Visibility and enabled state alone. The keyboard comes back to a widget that had it when it was
// disabled.
void ShowState(const ui::Area &area, QWidget *widget);

// A label's text, plain, wrapped, with its place.
void BindLabel(ui::Label &label, QLabel *widget);

// A picture scaled to its place.
void BindPicture(ui::Picture &picture, QLabel *widget);

// Both ways: range, steps and value; the user's scrolling sets the control's value.
void BindScrollBar(ui::ScrollBar &bar, QScrollBar *widget);

// The bar's share of the way, and whether it shows.
void BindProgress(ui::ProgressBar &bar, QProgressBar *widget);

// Starts, restarts and stops a toolkit timer, owned by `owner`, that fires the control.
void BindTimer(ui::Timer &timer, QObject *owner);

// A menu entry: caption, enabled, checked (shown as a check mark while `checkable`), visible.
void BindAction(ui::Command &command, QAction *action, bool checkable = false);

} // namespace ui::qt

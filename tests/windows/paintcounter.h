// tests/windows/paintcounter.h - counts how often a widget is painted.
#pragma once

#include "tests/windows/bench.h"

#include <QEvent>
#include <QObject>
#include <QWidget>

namespace tests
{

class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget &widget) { widget.installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            paints++;
        return QObject::eventFilter(watched, event);
    }

    // Waits until no event has painted the widget for a while. Returns: the number of paint events.
    int AtRest() const
    {
        int seen = 0;
        do
            seen = paints;
        while (!Stays([&] { return paints == seen; }, 300));
        return seen;
    }

    int paints = 0;
};

} // namespace tests

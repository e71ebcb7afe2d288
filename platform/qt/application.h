// platform/qt/application.h - the toolkit's application, with the program's answer to errors that
// no handler took: they are shown, and the program continues.
#pragma once

#include "runtime/error.h"

#include <QApplication>
#include <functional>
#include <vector>

namespace platform::qt
{

class Application : public QApplication
{
public:
    using QApplication::QApplication;

    // Shows an error to the user, and may wait for an answer. It runs for one error at a time: one
    // that comes while it runs (a timer that fails at each of its ticks) is shown after it, and
    // only once while the same error is being shown or waits to be. Empty: nothing is shown.
    std::function<void(const runtime::RuntimeError &)> tellError;

    // Hands the event on. An error ends its handler alone. An exception of the language counts as
    // error 7, out of memory, or as 51, an internal error, with its own words.
    bool notify(QObject *receiver, QEvent *event) override;

private:
    void Tell(const runtime::RuntimeError &error);

    std::vector<runtime::RuntimeError> m_toTell; // the first one is being shown
};

} // namespace platform::qt

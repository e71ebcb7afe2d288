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

    // Shows an error to the user, and may wait for an answer. It is called for one error at a time:
    // an error that occurs meanwhile (a timer that fails at each tick) is shown after it, and not
    // again while the same error is being shown or is waiting. Empty: nothing is shown.
    std::function<void(const runtime::RuntimeError &)> showError;

    // Passes the event on. An error ends only its handler. An exception of the language counts as
    // error 7, out of memory, or as 51, an internal error, with its own words.
    bool notify(QObject *receiver, QEvent *event) override;

private:
    void ShowError(const runtime::RuntimeError &error);

    std::vector<runtime::RuntimeError> m_toShow; // the first one is being shown
};

} // namespace platform::qt

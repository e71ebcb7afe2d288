#include "platform/qt/application.h"

#include <algorithm>
#include <new>

namespace platform::qt
{

namespace
{

constexpr int kInternalError = 51; // the runtime's number for a mistake in the program itself

} // namespace

bool Application::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const runtime::RuntimeError &error) {
        Tell(error);
    } catch (const std::bad_alloc &) {
        Tell(runtime::RuntimeError(runtime::kOutOfMemory));
    } catch (const std::exception &error) {
        Tell({kInternalError, error.what()});
    }
    return false;
}

void Application::Tell(const runtime::RuntimeError &error)
{
    const auto same = [&error](const runtime::RuntimeError &other) {
        return other.number == error.number && other.description == error.description;
    };
    if (!tellError || std::any_of(m_toTell.begin(), m_toTell.end(), same))
        return;
    m_toTell.push_back(error);
    if (m_toTell.size() > 1)
        return;
    for (std::size_t next = 0; next < m_toTell.size(); ++next) {
        const runtime::RuntimeError current = m_toTell[next];
        tellError(current);
    }
    m_toTell.clear();
}

} // namespace platform::qt

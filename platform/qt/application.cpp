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
        ShowError(error);
    } catch (const std::bad_alloc &) {
        ShowError(runtime::RuntimeError(runtime::kOutOfMemory));
    } catch (const std::exception &error) {
        ShowError({kInternalError, error.what()});
    }
    return false;
}

void Application::ShowError(const runtime::RuntimeError &error)
{
    const auto same = [&error](const runtime::RuntimeError &other) {
        return other.number == error.number && other.description == error.description;
    };
    if (!showError || std::any_of(m_toShow.begin(), m_toShow.end(), same))
        return;
    m_toShow.push_back(error);
    if (m_toShow.size() > 1)
        return;
    for (std::size_t next = 0; next < m_toShow.size(); ++next) {
        const runtime::RuntimeError current = m_toShow[next];
        showError(current);
    }
    m_toShow.clear();
}

} // namespace platform::qt

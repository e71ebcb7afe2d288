#include "platform/helperthread.h"

#include <csignal>
#include <system_error>
#include <thread>
#include <utility>

namespace platform
{

bool StartHelperThread(std::function<void()> work)
{
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    bool hasStarted = true;
    try {
        std::thread(std::move(work)).detach();
    } catch (const std::system_error &) {
        hasStarted = false;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return hasStarted;
}

} // namespace platform

#include "platform/endrequest.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <initializer_list>

namespace platform
{

namespace
{

volatile std::sig_atomic_t requestedSignal = 0; // written by the handler
int deferrals = 0;
int wakeUp = -1; // an eventfd that counts the signals; -1 until a caller asks for it

void WakeUp()
{
    const std::uint64_t one = 1;
    // When the counter is full, the write fails; the descriptor is readable then too.
    [[maybe_unused]] const ssize_t written = write(wakeUp, &one, sizeof one);
}

void OnSignal(int signalNo)
{
    const int errnoBefore = errno;
    requestedSignal = signalNo;
    if (wakeUp >= 0)
        WakeUp();
    errno = errnoBefore;
}

} // namespace

int EndRequestDescriptor()
{
    if (wakeUp < 0)
        wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeUp >= 0 && requestedSignal != 0)
        WakeUp(); // the signal came before the descriptor existed
    return wakeUp;
}

void WatchForEndRequest()
{
    struct sigaction action {
    };
    action.sa_handler = OnSignal;
    // Without SA_RESTART, so that a read that waits for an answer returns; with SA_RESETHAND, so
    // that a second signal ends a step that hangs.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signalNo : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction former {
        };
        // A signal that this process was started to ignore (nohup) stays ignored.
        if (sigaction(signalNo, nullptr, &former) == 0 && former.sa_handler != SIG_IGN)
            sigaction(signalNo, &action, nullptr);
    }
}

void CheckEndRequest()
{
    if (requestedSignal != 0 && deferrals == 0)
        throw EndRequested{requestedSignal};
}

bool IsEndRequested()
{
    return requestedSignal != 0;
}

void RequestEnd(int signalNo)
{
    if (signalNo != 0)
        OnSignal(signalNo);
    requestedSignal = signalNo;
}

EndDeferral::EndDeferral()
{
    ++deferrals;
}

EndDeferral::~EndDeferral()
{
    --deferrals;
}

} // namespace platform

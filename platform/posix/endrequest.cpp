#include "platform/endrequest.h"

#include <csignal>
#include <initializer_list>

namespace platform
{

namespace
{

volatile std::sig_atomic_t requestedSignal = 0; // written by the handler
int deferrals = 0;

void OnSignal(int signalNo)
{
    requestedSignal = signalNo;
}

} // namespace

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
        // What the parent had this process ignore (nohup) stays ignored.
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

// platform/endrequest.h - ends the program when a signal asks for it (SIGINT, SIGTERM, SIGHUP): at
// the next point where events run, not in the middle of a step, so that everything is closed in
// order.
#pragma once

namespace platform
{

// Thrown by CheckEndRequest. It is not an error, so it is neither a RuntimeError nor a
// std::exception. Only `main` catches it, and ends the process.
struct EndRequested {
    int signalNo;
};

// Installs the handler of the three signals. The first signal asks for the end, the second one ends
// the process at once.
void WatchForEndRequest();

// Throws EndRequested when a signal has asked for the end and no EndDeferral exists.
void CheckEndRequest();

// Whether a signal has asked for the end, also while an EndDeferral exists.
bool IsEndRequested();

// A descriptor that becomes readable when a signal asks for the end, for an event loop that waits
// on descriptors; -1 when it cannot be created. This module owns it and never closes it.
int EndRequestDescriptor();

// Does the same as the signal handler. For tests; 0 cancels the request.
void RequestEnd(int signalNo);

// While one exists, the end is deferred: for a job whose steps belong together, such as the rewrite
// of a song's file.
class EndDeferral
{
public:
    EndDeferral();
    ~EndDeferral();
    EndDeferral(const EndDeferral &) = delete;
    EndDeferral &operator=(const EndDeferral &) = delete;
};

} // namespace platform

// platform/endrequest.h - the end that a signal asks for (SIGINT, SIGTERM, SIGHUP): it comes at the
// next point where events run, not in the middle of a step, so that everything closes in order.
#pragma once

namespace platform
{

// Thrown by CheckEndRequest. No error: it is no RuntimeError and no std::exception, and only the
// entry of the program takes it, which then ends the process.
struct EndRequested {
    int signalNo;
};

// Has the three signals ask for the end; the second of them ends the process at once.
void WatchForEndRequest();

// Throws EndRequested when a signal asked for the end and no EndDeferral lives.
void CheckEndRequest();

// Whether a signal asked for the end, also while an EndDeferral lives.
bool IsEndRequested();

// A descriptor that becomes readable when a signal asks for the end, for an event loop that waits
// on descriptors; -1 when there is none to be had. It stays open and belongs to this module.
int EndRequestDescriptor();

// As the signal handler: asks for the end. For tests; 0 takes the wish back.
void RequestEnd(int signalNo);

// While one lives, the end waits: for a job whose steps belong together, such as the rewrite of a
// song's file.
class EndDeferral
{
public:
    EndDeferral();
    ~EndDeferral();
    EndDeferral(const EndDeferral &) = delete;
    EndDeferral &operator=(const EndDeferral &) = delete;
};

} // namespace platform

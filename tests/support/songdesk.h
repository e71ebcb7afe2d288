// tests/support/songdesk.h - what an edit of a song needs: a desktop and a clock, a program folder,
// settings. The destructor restores everything.
#pragma once

#include "tests/support/recordingdesktop.h"
#include "tests/support/testfolder.h"

#include <functional>
#include <string>
#include <vector>

namespace tests
{

// A desktop that records what it is asked, and a clock that advances only by waits.
class SongDesk : public RecordingDesktop, public WaitedClock
{
public:
    SongDesk(); // makes a program folder; both settings off, no hooks
    ~SongDesk() override;
    SongDesk(const SongDesk &) = delete;
    SongDesk &operator=(const SongDesk &) = delete;

    TestFolder program; // the program's folder
    TestFolder music;

private:
    platform::Clock *m_clockBefore;
    std::string m_appPathBefore;
};

} // namespace tests

// tests/support/songdesk.h - what an edit of a song needs: a desktop and a clock, a program folder,
// settings. The destructor restores everything.
#pragma once

#include "tests/support/silentdesktop.h"
#include "tests/support/testfolder.h"

#include <functional>
#include <string>
#include <vector>

namespace tests
{

// A desktop that records what it is asked, and a clock that only waits move on.
class SongDesk : public SilentDesktop, public WaitedClock
{
public:
    SongDesk(); // makes a program folder; both settings off, no hooks
    ~SongDesk() override;
    SongDesk(const SongDesk &) = delete;
    SongDesk &operator=(const SongDesk &) = delete;

    platform::Answer MessageBox(std::string_view text, platform::Buttons, std::string_view,
                                platform::BoxIcon) override;
    void SetPointer(platform::Pointer pointer) override { pointers.push_back(pointer); }
    void DoEvents() override;

    std::vector<std::string> boxes;
    std::vector<platform::Pointer> pointers;
    std::function<void()> onEvents; // called at each yield
    int yields = 0;
    TestFolder program; // the program's folder
    TestFolder music;

private:
    platform::Desktop *m_desktopBefore;
    platform::Clock *m_clockBefore;
    std::string m_appPathBefore;
};

} // namespace tests

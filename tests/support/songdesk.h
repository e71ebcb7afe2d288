// tests/support/songdesk.h - what an edit of a song needs around it: a desktop and a clock of its
// own, a program folder, the settings. All of it is put back at the end.
#pragma once

#include "platform/clock.h"
#include "platform/desktop.h"
#include "tests/support/testfolder.h"

#include <functional>
#include <string>
#include <vector>

namespace tests
{

// A desktop that keeps what it was asked for, and a clock that only waiting moves on.
class SongDesk : public platform::Desktop, public platform::Clock
{
public:
    SongDesk(); // with a program folder, both settings off, no hooks
    ~SongDesk() override;
    SongDesk(const SongDesk &) = delete;
    SongDesk &operator=(const SongDesk &) = delete;

    platform::Answer MessageBox(std::string_view text, platform::Buttons, std::string_view,
                                platform::BoxIcon) override;
    std::optional<std::string> InputBox(std::string_view, std::string_view,
                                        std::string_view) override
    {
        return std::nullopt;
    }
    std::optional<std::string> OpenDialog(std::string_view,
                                          const std::vector<platform::FileFilter> &,
                                          const std::string &) override
    {
        return std::nullopt;
    }
    void EmptyClipboard() override {}
    void SetClipboardText(std::string_view) override {}
    bool OpenAddress(const std::string &, const std::string &) override { return false; }
    void SetPointer(platform::Pointer pointer) override { pointers.push_back(pointer); }
    void DoEvents() override;

    std::int64_t SteadyMs() override { return steadyMs; }
    platform::LocalTime Now() override { return {}; }
    double SecondsOfDay() override { return secondsAtStart + static_cast<double>(steadyMs) / 1000; }
    std::string DateText(const platform::LocalTime &) override { return {}; }
    std::string TimeText(const platform::LocalTime &) override { return {}; }
    void Sleep(std::int64_t milliseconds) override { steadyMs += milliseconds; }

    std::vector<std::string> boxes;
    std::vector<platform::Pointer> pointers;
    std::function<void()> onEvents; // runs at every yield
    int yields = 0;
    std::int64_t steadyMs = 0;
    double secondsAtStart = 1000.25;
    TestFolder program; // the program's own folder
    TestFolder music;

private:
    platform::Desktop *m_desktopBefore;
    platform::Clock *m_clockBefore;
    std::string m_appPathBefore;
};

} // namespace tests

// tests/support/silentdesktop.h - a desktop port with harmless defaults, and a clock that advances
// only by waits. A test that needs one of their procedures derives from them and overrides it.
#pragma once

#include "platform/clock.h"
#include "platform/desktop.h"

#include <string>
#include <string_view>

namespace tests
{

// Boxes return Ok, questions nothing; nothing is opened.
struct SilentDesktop : platform::Desktop {
    platform::Answer MessageBox(std::string_view /*text*/, platform::Buttons /*buttons*/,
                                std::string_view /*title*/, platform::BoxIcon /*icon*/) override
    {
        return platform::Answer::Ok;
    }
    std::optional<std::string> InputBox(std::string_view /*prompt*/, std::string_view /*title*/,
                                        std::string_view /*initialText*/) override
    {
        return std::nullopt;
    }
    std::optional<std::string> OpenDialog(std::string_view /*title*/,
                                          const std::vector<platform::FileFilter> & /*filters*/,
                                          const std::string & /*folder*/) override
    {
        return std::nullopt;
    }
    void EmptyClipboard() override {}
    void SetClipboardText(std::string_view /*text*/) override {}
    bool OpenAddress(const std::string & /*address*/, const std::string & /*folder*/) override
    {
        return false;
    }
    void SetPointer(platform::Pointer /*pointer*/) override {}
    void DoEvents() override {}
};

// Its time begins at 0; dates have no text.
struct WaitedClock : platform::Clock {
    std::int64_t SteadyMs() override { return steadyMs; }
    platform::LocalTime Now() override { return {}; }
    double SecondsOfDay() override { return secondsAtStart + static_cast<double>(steadyMs) / 1000; }
    std::string DateText(const platform::LocalTime & /*time*/) override { return {}; }
    std::string TimeText(const platform::LocalTime & /*time*/) override { return {}; }
    void Sleep(std::int64_t milliseconds) override { steadyMs += milliseconds; }

    std::int64_t steadyMs = 0;
    double secondsAtStart = 0;
};

// Both in one object, which counts the boxes and keeps the text of the last one.
struct QuietDesk : SilentDesktop, WaitedClock {
    platform::Answer MessageBox(std::string_view text, platform::Buttons buttons,
                                std::string_view title, platform::BoxIcon icon) override
    {
        ++boxes;
        lastBox = text;
        return SilentDesktop::MessageBox(text, buttons, title, icon);
    }

    int boxes = 0;
    std::string lastBox;
};

} // namespace tests

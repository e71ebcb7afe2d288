// fuzz/quietdesk.h - a desktop where nobody answers, and a clock that stands still.
#pragma once

#include "platform/clock.h"
#include "platform/desktop.h"

struct QuietDesk : platform::Desktop, platform::Clock {
    platform::Answer MessageBox(std::string_view, platform::Buttons, std::string_view,
                                platform::BoxIcon) override
    {
        ++boxes;
        return platform::Answer::Ok;
    }
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
    void SetPointer(platform::Pointer) override {}
    void DoEvents() override {}
    std::int64_t SteadyMs() override { return ms; }
    platform::LocalTime Now() override { return {}; }
    double SecondsOfDay() override { return static_cast<double>(ms) / 1000; }
    std::string DateText(const platform::LocalTime &) override { return {}; }
    std::string TimeText(const platform::LocalTime &) override { return {}; }
    void Sleep(std::int64_t milliseconds) override { ms += milliseconds; }

    std::int64_t ms = 0;
    int boxes = 0;
};

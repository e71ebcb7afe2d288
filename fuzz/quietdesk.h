// fuzz/quietdesk.h - a desktop that asks nobody and counts its boxes, and a clock that only waits
// move on.
#pragma once

#include "tests/support/silentdesktop.h"

struct QuietDesk : tests::SilentDesktop, tests::WaitedClock {
    platform::Answer MessageBox(std::string_view text, platform::Buttons buttons,
                                std::string_view title, platform::BoxIcon icon) override
    {
        ++boxes;
        return SilentDesktop::MessageBox(text, buttons, title, icon);
    }

    int boxes = 0;
};

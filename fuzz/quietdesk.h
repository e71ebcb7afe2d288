// fuzz/quietdesk.h - a desktop that answers nothing, and a clock that only a wait moves on.
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

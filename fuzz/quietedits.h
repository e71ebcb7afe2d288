// fuzz/quietedits.h - what an edit of a song needs besides its files.
#pragma once

#include "platform/machine.h"
#include "shell/globals.h"
#include "tests/support/silentdesktop.h"

namespace fuzz
{

// Makes `desk` the desktop and the clock of the program, without the boxes of an earlier run. Edits
// make no backup and do not write to a catalogue.
inline void EditQuietly(tests::QuietDesk &desk)
{
    desk.boxes = 0;
    platform::TheMachine().desktop = &desk;
    platform::TheMachine().clock = &desk;
    shell::TheGlobals().BackUpFiles = false;
    shell::TheGlobals().UpdateDBAfterEditing = false;
}

} // namespace fuzz

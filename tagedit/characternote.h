// tagedit/characternote.h - the note about characters that a tag cannot store. No state.
#pragma once

#include "tagedit/savetags.h"
#include "ui/controls/label.h"

namespace tagedit
{

// Shows which characters in the boxes of `song` its tags cannot store, and what will be written
// instead: all of them in `note`, those of a box in its tool tip; these boxes are marked. Hides
// `note` when there are none. A tag whose texts are UTF-8 can store all characters.
void ShowNote(EditedSong &song, ui::Label &note);

} // namespace tagedit

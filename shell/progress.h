// shell/progress.h - shows the progress of a job: in the progress line of the splash
// (Globals::lblProgress), or in the line of another window.
#pragma once

#include <string_view>

namespace ui
{
class Label;
}

namespace shell
{

// Shows `words` in the progress line and lets waiting events run. This is a yield: any handler may
// run in it, a window may be closed, the program may end. The caller must check its state again.
void ShowProgress(std::string_view words);

// The same in `line`; null shows nothing, but waiting events run.
void ShowProgress(std::string_view words, ui::Label *line);

// The same in the progress line of the splash, with the text of `key` in the section "Progress" of
// the language file.
void ShowProgressText(std::string_view defaultText, std::string_view key);

} // namespace shell

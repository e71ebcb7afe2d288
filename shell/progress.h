// shell/progress.h - the progress line of the splash. Its text is in Globals::lblProgress.
#pragma once

#include <string_view>

namespace shell
{

// Shows `words` in the progress line and lets waiting events run. This is a yield: any handler may
// run in it, a window may be closed, the program may end. The caller must check its state again.
void ShowProgress(std::string_view words);

// The same with the text of `key` in the section "Progress" of the language file.
void ShowProgressText(std::string_view defaultText, std::string_view key);

} // namespace shell

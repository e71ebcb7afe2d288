#include "shell/progress.h"

#include "platform/desktop.h"
#include "platform/machine.h"
#include "shell/globals.h"
#include "shell/language.h"

namespace shell
{

void ShowProgress(std::string_view words)
{
    TheGlobals().lblProgress.SetCaption(words);
    if (auto *desktop = platform::TheMachine().desktop)
        desktop->DoEvents();
}

void ShowProgressText(std::string_view defaultText, std::string_view key)
{
    ShowProgress(GetLanguageText(defaultText, key, "Progress"));
}

} // namespace shell

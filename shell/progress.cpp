#include "shell/progress.h"

#include "platform/desktop.h"
#include "platform/machine.h"
#include "shell/globals.h"
#include "shell/language.h"

namespace shell
{

void ShowProgress(std::string_view words, ui::Label *line)
{
    if (line != nullptr)
        line->SetCaption(words);
    if (auto *desktop = platform::TheMachine().desktop)
        desktop->DoEvents();
}

void ShowProgress(std::string_view words)
{
    ShowProgress(words, &TheGlobals().lblProgress);
}

void ShowProgressText(std::string_view defaultText, std::string_view key)
{
    ShowProgress(GetLanguageText(defaultText, key, "Progress"));
}

} // namespace shell

// platform/qt/toolkitlanguage.h - the language of the toolkit's own texts: file dialogs, the menus
// of text boxes, the names of keys.
#pragma once

#include <QString>

namespace platform::qt
{

// Sets the language for all windows, also for open ones. `name` is the language's name in the
// language itself ("Deutsch", "español"), as language files are called, in any letter case.
// Returns: false when the name is empty or unknown, or when the toolkit's translation is not
// installed; the texts are English then.
bool ChooseToolkitLanguage(const QString &name);

} // namespace platform::qt

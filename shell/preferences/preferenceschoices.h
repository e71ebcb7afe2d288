// shell/preferences/preferenceschoices.h - what the user chooses in frmPref, and how Apply stores
// it and puts it to use.
#pragma once

#include "shell/preferences/preferencescontrols.h"

#include <string>

namespace shell
{

struct PreferencesChoices : PreferencesControls {
    std::string DirList; // the chosen folder: a path, byte for byte
    // DirList, when it shows a substitute for the stored folder, which is missing; else empty.
    std::string standIn;
    bool regenerating = false; // a regeneration that was started here is running
};

// Enables or disables all controls that change a choice; they are disabled while the window works.
void EnableChoices(PreferencesControls &form, bool enabled);

// Sets the check boxes for the backup, the catalogue, the lyrics, the version check and the fields
// from the settings.
void ShowFlags(PreferencesChoices &form);

// Stores and uses all choices: when the folder has changed, the catalogue is regenerated first;
// then each setting is stored; then each field whose flag has changed is loaded into the tree or
// removed from it. Lets events run. Errors: those of the regeneration; `MP3Directory` and
// `DeleteBeforeAppend` of the globals then have their former values.
void ApplyChoices(PreferencesChoices &form);

} // namespace shell

// app/programhome.h - finds and prepares the program's own folder.
#pragma once

namespace app
{

// Sets the program's folder (shell/apppath.h) and the code page of the user's locale. On the very
// first start of an installed program, fills the folder from share/quenlin beside the program's
// bin. Copies a shipped file again that a power cut has left incomplete, and begins to remove the
// incomplete files that killed runs have left (RemoveAbandonedFiles, platform/disk/wholefiles.h).
// Errors: FileError (runtime/error.h) when filling the folder fails.
void PrepareProgramHome();

} // namespace app

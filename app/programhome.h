// app/programhome.h - tells the program which folder is its own.
#pragma once

namespace app
{

// Sets the program's folder (shell/apppath.h) and the code page of the user's locale; fills the
// folder on the very first start of an installed program, from share/quenlin beside its bin, and
// puts a shipped file again that a power cut left torn.
// Errors: FileError (runtime/error.h) when that first start fails.
void SettleIn();

} // namespace app

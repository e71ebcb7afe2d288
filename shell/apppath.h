// shell/apppath.h - the program's own folder: it has the catalogue, the language files, the report,
// the summary and the backups.
#pragma once

#include <string>
#include <string_view>

namespace shell
{

// The program's folder without a trailing separator; a path, byte for byte. Set once by app/.
const std::string &GetAppPath();

// Sets the program's folder; one trailing separator is cut.
void SetAppPath(std::string folder);

// A path in the program's folder: the folder, a separator, `name`.
std::string AppFile(std::string_view name);

} // namespace shell

// catalogue/sqlite/cataloguecopy.h - a whole copy of the catalogue, made before its songs are
// deleted at once.
#pragma once

#include <cstddef>
#include <string>

namespace catalogue
{

// This many copies are kept; older ones are removed.
inline constexpr std::size_t kCopiesKept = 3;

// Copies the catalogue file at `path` to the folder `Backup` beside it, as "MP3s 2026-03-05
// 07-08-09.mdb" (local time; "_2" and so on is added when the name is taken). The copy is complete
// and on the disk when the call returns.
// Returns: the reason when the copy could not be made; no part of it is left then. Otherwise the
// empty text.
[[nodiscard]] std::string CopyCatalogue(const std::string &path);

} // namespace catalogue

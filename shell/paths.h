// shell/paths.h - the parts of a path. Paths are bytes; no file is looked at, and nothing fails. A
// path without a separator is only a name.
#pragma once

#include <string>
#include <string_view>

namespace shell
{

// The text after the last separator; the whole path when it has none.
std::string GetFileName(std::string_view path);

// The text up to and including the last separator; empty when there is none.
std::string GetFolderPath(std::string_view path);

// The name of the folder that contains the last part of the path ("/music/abba/one.mp3" gives
// "abba", "/one.mp3" gives the empty text).
std::string GetLastFolderName(std::string_view path);

} // namespace shell

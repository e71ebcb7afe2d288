// shell/paths.h - the parts of a path, as text. Paths are bytes; nothing asks the file system, and
// nothing fails. A path without a separator is a name alone.
#pragma once

#include <string>
#include <string_view>

namespace shell
{

// The text after the last separator; the whole path when it has none.
std::string GetFileName(std::string_view path);

// The text up to and including the last separator; empty when there is none.
std::string GetFolderPath(std::string_view path);

// The name of the folder that holds the path's last part: the folder part without its trailing
// separator, then what comes after the last separator of that ("/music/abba/one.mp3" gives
// "abba", "/one.mp3" the empty text).
std::string GetLastFolderName(std::string_view path);

} // namespace shell

// runtime/paths.h - the parts of a path, and paths made of parts. Paths are bytes; no file is
// looked at, and nothing fails. A path without a separator is only a name. No state.
#pragma once

#include <string>
#include <string_view>

namespace runtime
{

// The character between folders in a path of this platform.
#ifdef _WIN32
inline constexpr char PathSeparator = '\\';
#else
inline constexpr char PathSeparator = '/';
#endif

// The text after the last separator; the whole path when it has none.
std::string GetFileName(std::string_view path);

// The text up to and including the last separator; empty when there is none. FolderPart is a view
// into `path`.
std::string GetFolderPath(std::string_view path);
std::string_view FolderPart(std::string_view path);

// The name of the folder that contains the last part of the path ("/music/abba/one.mp3" gives
// "abba", "/one.mp3" gives the empty text).
std::string GetLastFolderName(std::string_view path);

// The folder of the path, without a separator at its end ("/music/abba" gives "/music", "/music"
// gives "/"). The root is its own parent; empty for a name alone.
std::string ParentFolder(std::string_view path);

// The path without the separators at its end; the root keeps its one.
std::string CutSeparators(std::string path);
std::string_view WithoutSeparators(std::string_view path); // the same part of `path` itself

// Whether `path` is `folder` itself, or in it at any depth. `folder` has no separator at its end,
// except the root.
bool IsInFolder(std::string_view path, std::string_view folder);

// `name` in `folder`: with one separator between them, also when the folder ends with one.
std::string JoinPath(std::string_view folder, std::string_view name);

} // namespace runtime

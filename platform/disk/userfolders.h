// platform/disk/userfolders.h - the folders of the user, and the folder of the program's
// file.
#pragma once

#include <string>

namespace platform
{

// The user's folder for configurations and the one for data: $XDG_CONFIG_HOME and $XDG_DATA_HOME if
// those are absolute paths, else .config and .local/share in the user's home. Without a home the
// result is a path in which nothing can be created. Source: the XDG base directory rules.
std::string ConfigHome();
std::string DataHome();

// The user's home; when there is none, a path in which nothing can be created.
std::string HomeFolder();

// The folder of the running program's file, without a trailing separator.
std::string ProgramFolder();

// A path that leads to the running program's file, also when that was moved or deleted.
std::string ProgramFile();

// The value of an environment variable; empty when it is not set.
std::string Environment(const char *name);

// The name of the locale that texts follow: LC_ALL, LC_CTYPE or LANG, the first that is set and not
// empty; "C" when none is.
std::string LocaleName();

// `path` as an absolute path without "." and ".." and doubled separators. It starts at the current
// folder as the shell shows it ($PWD). ".." after a symbolic link leaves the folder to which the
// link leads. A separator at the end stays. The path need not exist. The empty path, which names
// nothing, stays empty.
std::string AbsolutePath(const std::string &path);

} // namespace platform

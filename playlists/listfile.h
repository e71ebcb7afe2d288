// playlists/listfile.h - reads the file of a list without waiting for a disk that does not answer.
#pragma once

#include "playlists/m3u.h"

#include <functional>
#include <string>

namespace playlists
{

// Reads a list; called on a helper thread, uses nothing but the path and throws nothing but
// std::bad_alloc.
using ListReader = std::function<std::string(const std::string &path)>;

// The text of a list file, see ReadM3UFile. A helper thread reads it; events run meanwhile, so the
// caller's state may be another one afterwards.
// Returns: the empty text also when the disk has not answered within a second, when it
// has not answered an earlier question for this path, and when the wait was ended.
std::string ReadListFile(const std::string &path, const ListReader &read = ReadM3UFile);

} // namespace playlists

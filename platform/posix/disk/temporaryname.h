// platform/posix/disk/temporaryname.h - the names of files that are not complete yet. They show
// that the file is this program's own: no user gives a file such a name.
#pragma once

#include <string_view>

namespace platform::posix
{

// Follows the final name. mkostemp puts letters and digits in place of the X.
inline constexpr std::string_view kTemporaryMark = ".quenlin-";
inline constexpr std::string_view kTemporaryEnding = ".quenlin-XXXXXX";

} // namespace platform::posix

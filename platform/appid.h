// platform/appid.h - the one id of the program on the desktop.
#pragma once

namespace platform
{

// The program's id in reverse-DNS form: the name of its desktop entry, of its icon, of its
// AppStream data and of its place on the session bus. CMake reads it from this line.
inline constexpr const char *kApplicationId = "example.quenlin.Quenlin";

} // namespace platform

// online/fileinfo.h - the version of a program file. No state.
#pragma once

#include <string>
#include <string_view>

namespace online
{

// The file version of the program at `path` (bytes): three numbers with dots, "1.6.9". For this
// program itself, which has the name "Quenlin.exe" in the program's folder, that is the version of
// the running program. For any other it is read from the version block of the file.
// Returns: an empty text when the file is missing, cannot be read, is larger than 64 MiB or has no
// such block.
std::string FileVersion(const std::string &path);

// The version in the fixed part of the first version block in `bytes`; empty without one. The high
// and the low 16 bits of the more significant word, then the low 16 bits of the less significant.
// Source: VS_VERSIONINFO and VS_FIXEDFILEINFO of the Portable Executable resources: the key
// "VS_VERSION_INFO" in UTF-16, padding to 32 bits, the signature FEEF04BD, the structure's
// version, the file version's two words, all little-endian.
std::string VersionInBlock(std::string_view bytes);

} // namespace online

// catalogue/disklabel.h - the label of the disk that a song is on.
#pragma once

#include <cstdint>
#include <string>

namespace catalogue
{

// The label of the disk with the file at `path`, so that the program can ask the user to insert it
// later; empty for a fixed disk. The file is the one that was read last (metadata::RawTagsFile).
// `groupNo`: RowStep::GroupNo.
// Errors: those of the drives port.
std::string DiskLabel(const std::string &path, std::uint64_t groupNo);

} // namespace catalogue

// catalogue/disklabel.h - the label of the disk that a song is on.
#pragma once

#include <cstdint>
#include <string>

namespace catalogue
{

// The label (UTF-8) of the disk with the file at `path`, so that the program can ask the user to
// insert it later; empty for a fixed disk. `path` (bytes) must be the file that was read last
// (metadata::RawTagsFile).
// `groupNo`: the number of the open group of rows (RowStep::GroupNo); within one group the drives
// port is asked once for each device. 0 without a group: it is asked each time.
// Errors: those of the drives port (platform/disk/drives.h).
std::string DiskLabel(const std::string &path, std::uint64_t groupNo);

} // namespace catalogue

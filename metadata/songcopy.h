// metadata/songcopy.h - whole copies of a song on the disk: its new version in a ".bck" file beside
// it, and its old version in the folder of backups. A copy is whole or not there: it grows under a
// name of its own and gets its name at the end. No state.
#pragma once

#include "platform/files.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace metadata
{

// What a new version of a song consists of: bytes, a range of the old file, bytes.
struct NewSong {
    std::string_view front;
    std::int64_t audioOffset = 0; // in the old file
    std::int64_t audioBytes = 0;
    std::string_view back;
};

// Writes the new version of `song` (a real path, no link) to `copyPath` in the same folder, with
// the song's owner, rights and attributes, and brings it to the disk. What stood at `copyPath` is
// gone. Returns which file the copy is (device and inode hold for good; another program may put its
// own at that path). Errors: kInvalidCall when the range is no range of the file; kFileNotFound
// without a song; kPathNotFound without the folder; else FileError. After an error nothing new is
// there, and what stood at `copyPath` before is as it was.
platform::FileIdentity WriteNewSong(const std::string &song, const NewSong &content,
                                    const std::string &copyPath);

// Copies the whole song to `copyPath`, as above; rights that cannot be kept there are let go.
// Errors: as above; kPermissionDenied when `copyPath` is the song itself.
void CopySong(const std::string &song, const std::string &copyPath);

} // namespace metadata

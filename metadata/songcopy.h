// metadata/songcopy.h - whole copies of a song on the disk: its new version in a ".bck" file beside
// it, and its old version in the folder of backups. A copy is whole or not there: it grows under a
// name of its own and gets its name at the end. No state.
#pragma once

#include "platform/files.h"

#include <cstdint>
#include <optional>
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

// A written copy. As long as this lives, no other edit by this program puts its own in its place.
class SongCopy
{
public:
    SongCopy(int handle, platform::FileIdentity identity); // takes the handle over
    SongCopy(SongCopy &&other) noexcept;
    SongCopy &operator=(SongCopy &&other) noexcept;
    SongCopy(const SongCopy &) = delete;
    SongCopy &operator=(const SongCopy &) = delete;
    ~SongCopy();

    // Which file the copy is. Device and inode hold for good; another program may put its own at
    // the copy's path.
    const platform::FileIdentity &Identity() const { return m_identity; }
    void SetIdentity(const platform::FileIdentity &identity) { m_identity = identity; }

private:
    int m_handle; // locked; -1 = moved away
    platform::FileIdentity m_identity;
};

// Writes the new version of `song` (a real path, no link) to `copyPath` in the same folder, with
// the song's owner, rights and attributes, and brings it to the disk. What an edit that was cut off
// left at `copyPath` is gone.
// Returns: nothing when another edit of the song is under way, in this process or in another, and
// has its copy there.
// Errors: kInvalidCall when the range is no range of the file; kFileNotFound without a song;
// kPathNotFound without the folder; else FileError. After an error nothing new is there, and what
// stood at `copyPath` before is as it was.
std::optional<SongCopy> WriteNewSong(const std::string &song, const NewSong &content,
                                     const std::string &copyPath);

// Copies the whole song to `copyPath`, whose name is on the disk afterwards; what stood there is
// gone, and rights that cannot be kept there are let go.
// Errors: as above; kPermissionDenied when `copyPath` is the song itself.
void CopySong(const std::string &song, const std::string &copyPath);

} // namespace metadata

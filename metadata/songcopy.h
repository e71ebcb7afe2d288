// metadata/songcopy.h - whole copies of a song on the disk: its new version in a ".bck" file beside
// it, and its old version in the folder of backups. A copy is complete or does not exist: it is
// written under another name and gets its name at the end. No state.
#pragma once

#include "platform/disk/files.h"

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

// A written copy. While this exists, no other edit by this program can replace it.
class SongCopy
{
public:
    SongCopy(int handle, platform::FileIdentity identity); // takes ownership of the handle
    SongCopy(SongCopy &&other) noexcept;
    SongCopy &operator=(SongCopy &&other) noexcept;
    SongCopy(const SongCopy &) = delete;
    SongCopy &operator=(const SongCopy &) = delete;
    ~SongCopy();

    // The identity of the copy. Device and inode never change; another program may put its own file
    // at the copy's path.
    const platform::FileIdentity &Identity() const { return m_identity; }
    void SetIdentity(const platform::FileIdentity &identity) { m_identity = identity; }

private:
    int m_handle; // locked; -1 = moved away
    platform::FileIdentity m_identity;
};

// Writes the new version of `song` (a real path, no link) to `copyPath` in the same folder, with
// the song's owner, permissions and attributes, and flushes it to the disk. A file that an
// interrupted edit left at `copyPath` is removed.
// Returns: nullopt when another edit of the song is running, in this process or in another, and has
// its copy at `copyPath`.
// Errors: kInvalidCall when the range is not inside the file; kFileNotFound without a song;
// kPathNotFound without the folder; else FileError. After an error there is no new file, and a
// former file at `copyPath` is unchanged.
std::optional<SongCopy> WriteNewSong(const std::string &song, const NewSong &content,
                                     const std::string &copyPath);

// Copies the whole song to `copyPath` and flushes the new name to the disk; a file of that name is
// replaced, and permissions that cannot be kept there are lost.
// Errors: as above; kPermissionDenied when `copyPath` is the song itself.
void CopySong(const std::string &song, const std::string &copyPath);

} // namespace metadata

// platform/disk/folderreader.h - one folder, examined and read: its state and the names in it, for
// a walk over many folders on any thread. Paths are bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace platform
{

using FolderIdentity = std::pair<std::uint64_t, std::uint64_t>; // device and inode

// The identity of a folder, and its state.
struct FolderState {
    FolderIdentity identity;
    std::int64_t modifiedNs = 0; // since 1970, UTC
    std::int64_t changedNs = 0;

    bool operator==(const FolderState &) const = default;
};

// The folder at `path` now; nullopt when there is none or it cannot be examined.
std::optional<FolderState> FolderStateAt(const std::string &path);

// One name in a folder.
struct FolderEntry {
    const char *name = nullptr; // valid until the next call of Next
    bool isFolder = false;      // or a link to one; false when this cannot be found out
};

// A folder that is open to be read.
class FolderReader
{
public:
    FolderReader() = default;
    ~FolderReader();
    FolderReader(const FolderReader &) = delete;
    FolderReader &operator=(const FolderReader &) = delete;

    // Opens the folder, once; `state` is set to its state then. Returns: an errno.
    int Open(const std::string &path, FolderState &state);

    // The next name in the disk's own order, without those of the folder itself and of the one
    // above it. Returns: false at the end and after a failure; `failure` is then 0 or an errno.
    bool Next(FolderEntry &entry, int &failure);

    // Reads up to `count` first bytes of a file in this folder, without waiting for a device or the
    // other end of a pipe. Returns: how many; 0 also when it cannot be read.
    std::size_t ReadStart(const char *name, char *to, std::size_t count) const;

private:
    void *m_folder = nullptr; // of the operating system
};

} // namespace platform

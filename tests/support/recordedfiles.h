// tests/support/recordedfiles.h - the real files with a record of every change, and what can be on
// the disk after a power cut at any point of that record.
#pragma once

#include "platform/posix/disk/systemfiles.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tests
{

// Records all changes in one folder. What was flushed before the power cut is on the disk: the
// bytes of a file by Flush, the names in a folder by FlushFolderOf. Of the rest a part is on the
// disk: the changes of names up to any of them, or any single one; and none, half or all of the
// bytes.
class RecordedFiles : public platform::posix::SystemFilesPort
{
public:
    // All changes are made in the folder `root`; its contents now are on the disk.
    explicit RecordedFiles(std::string root);

    int CreateBeside(const std::string &finalPath, std::string &temporaryPath) override;
    std::int64_t Write(int handle, const char *from, std::size_t count) override;
    std::int64_t CopyRange(int source, std::int64_t offset, int target, std::size_t count) override;
    int Flush(int handle) override;
    int FlushFolderOf(const std::string &path) override;
    int Rename(const std::string &from, const std::string &to) override;
    int RenameNew(const std::string &from, const std::string &to) override;
    int Delete(const std::string &path) override;
    int MakeFolder(const std::string &path) override;

    // The number of recorded changes; a power cut can come before each of them and after the last.
    [[nodiscard]] int Count() const { return static_cast<int>(m_changes.size()); }

    // Calls `look` with a folder that has what can be on the disk after a power cut when the first
    // `done` changes were made; once for each possibility. The folder is deleted again.
    void AfterCut(int done, const std::function<void(const std::string &root)> &look) const;

private:
    enum class Kind { Bytes, Flush, FlushFolder, Name, Rename, Delete, Folder };
    struct Change {
        Kind kind;
        int file = 0;      // a number for each file
        std::string name;  // relative to the root: the file, or the folder
        std::string other; // the new name
        std::string bytes;
    };
    struct Range {
        int begin, end; // numbers of changes; `end` is not included
    };
    struct Disk {
        std::map<std::string, int> names; // 0 = a folder
        std::map<int, std::string> bytes;
    };

    [[nodiscard]] std::string Below(const std::string &path) const;
    [[nodiscard]] Disk StateAfter(int done, Range keptNames, int keptHalves) const;
    [[nodiscard]] bool IsOnDisk(int change, int done) const;
    void RecordRename(const std::string &from, const std::string &to);

    std::string m_root;
    Disk m_disk, m_now;         // at the beginning; the names now
    std::map<int, int> m_files; // handle -> file
    int m_lastFile = 0;
    std::vector<Change> m_changes;
};

} // namespace tests

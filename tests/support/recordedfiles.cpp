#include "tests/support/recordedfiles.h"

#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

namespace fs = std::filesystem;

namespace tests
{

namespace
{

std::string FolderOf(const std::string &name)
{
    return fs::path(name).parent_path().string();
}

} // namespace

RecordedFiles::RecordedFiles(std::string root) : m_root(std::move(root))
{
    for (const auto &entry : fs::recursive_directory_iterator(m_root)) {
        const std::string name = Below(entry.path().string());
        if (entry.is_directory()) {
            m_disk.names[name] = 0;
            continue;
        }
        m_disk.names[name] = ++m_lastFile;
        m_disk.bytes[m_lastFile] = ReadFile(entry.path().string());
    }
    m_now.names = m_disk.names;
}

std::string RecordedFiles::Below(const std::string &path) const
{
    EXPECT_TRUE(path.starts_with(m_root)) << path;
    return fs::path(path).lexically_relative(m_root).string();
}

int RecordedFiles::CreateBeside(const std::string &finalPath, std::string &temporaryPath)
{
    const int handle = SystemFilesPort::CreateBeside(finalPath, temporaryPath);
    if (handle >= 0) {
        m_files[handle] = ++m_lastFile;
        m_now.names[Below(temporaryPath)] = m_lastFile;
        m_changes.push_back({Kind::Name, m_lastFile, Below(temporaryPath), {}, {}});
    }
    return handle;
}

std::int64_t RecordedFiles::Write(int handle, const char *from, std::size_t count)
{
    const auto written = SystemFilesPort::Write(handle, from, count);
    if (written > 0)
        m_changes.push_back({Kind::Bytes,
                             m_files.at(handle),
                             {},
                             {},
                             std::string(from, static_cast<std::size_t>(written))});
    return written;
}

std::int64_t RecordedFiles::CopyRange(int source, std::int64_t offset, int target,
                                      std::size_t count)
{
    std::string bytes(count, '\0');
    const auto got = ReadAt(source, offset, bytes.data(), count, true);
    return got > 0 ? Write(target, bytes.data(), static_cast<std::size_t>(got)) : got;
}

int RecordedFiles::Flush(int handle)
{
    m_changes.push_back({Kind::Flush, m_files.at(handle), {}, {}, {}});
    return SystemFilesPort::Flush(handle);
}

int RecordedFiles::FlushFolderOf(const std::string &path)
{
    m_changes.push_back({Kind::FlushFolder, 0, FolderOf(Below(path)), {}, {}});
    return SystemFilesPort::FlushFolderOf(path);
}

void RecordedFiles::RecordRename(const std::string &from, const std::string &to)
{
    const auto found = m_now.names.find(Below(from));
    ASSERT_NE(found, m_now.names.end()) << from;
    const int file = found->second;
    m_now.names.erase(found);
    m_now.names[Below(to)] = file;
    m_changes.push_back({Kind::Rename, file, Below(from), Below(to), {}});
}

int RecordedFiles::Rename(const std::string &from, const std::string &to)
{
    const int reason = SystemFilesPort::Rename(from, to);
    if (reason == 0)
        RecordRename(from, to);
    return reason;
}

int RecordedFiles::RenameNew(const std::string &from, const std::string &to)
{
    const int reason = SystemFilesPort::RenameNew(from, to);
    if (reason == 0)
        RecordRename(from, to);
    return reason;
}

int RecordedFiles::Delete(const std::string &path)
{
    const int reason = SystemFilesPort::Delete(path);
    if (reason == 0) {
        m_now.names.erase(Below(path));
        m_changes.push_back({Kind::Delete, 0, Below(path), {}, {}});
    }
    return reason;
}

int RecordedFiles::MakeFolder(const std::string &path)
{
    const int reason = SystemFilesPort::MakeFolder(path);
    if (reason == 0)
        m_changes.push_back({Kind::Folder, 0, Below(path), {}, {}});
    return reason;
}

// Whether a flush after the change and before the power cut has written it to the disk.
bool RecordedFiles::IsOnDisk(int change, int done) const
{
    const Change &wanted = m_changes[static_cast<std::size_t>(change)];
    for (int at = change + 1; at < done; ++at) {
        const Change &later = m_changes[static_cast<std::size_t>(at)];
        if (wanted.kind == Kind::Bytes
                ? later.kind == Kind::Flush && later.file == wanted.file
                : later.kind == Kind::FlushFolder && later.name == FolderOf(wanted.name))
            return true;
    }
    return false;
}

// Of what was not flushed: the changes of names in `keptNames`, and `keptHalves` halves of each
// file's bytes.
RecordedFiles::Disk RecordedFiles::StateAfter(int done, Range keptNames, int keptHalves) const
{
    Disk disk = m_disk;
    for (int at = 0; at < done; ++at) {
        const Change &change = m_changes[static_cast<std::size_t>(at)];
        const bool kept = IsOnDisk(at, done);
        if (change.kind == Kind::Bytes)
            disk.bytes[change.file] += kept || keptHalves == 2 ? change.bytes
                                       : keptHalves == 1
                                           ? change.bytes.substr(0, change.bytes.size() / 2)
                                           : std::string();
        if (!kept && (at < keptNames.begin || at >= keptNames.end))
            continue;
        if (change.kind == Kind::Name || change.kind == Kind::Folder)
            disk.names[change.name] = change.file;
        if (change.kind == Kind::Delete)
            disk.names.erase(change.name);
        if (change.kind == Kind::Rename) {
            if (const auto old = disk.names.find(change.name);
                old != disk.names.end() && old->second == change.file)
                disk.names.erase(old);
            disk.names[change.other] = change.file;
        }
    }
    return disk;
}

void RecordedFiles::AfterCut(int done,
                             const std::function<void(const std::string &root)> &look) const
{
    std::vector<Range> ranges{{0, 0}};
    for (int at = 0; at < done; ++at) {
        ranges.push_back({0, at + 1});  // a disk that writes the changes in order
        ranges.push_back({at, at + 1}); // and one that does not
    }
    std::set<std::map<std::string, std::string>> seen;
    for (const Range keptNames : ranges)
        for (int keptHalves = 0; keptHalves <= 2; ++keptHalves) {
            Disk disk = StateAfter(done, keptNames, keptHalves);
            std::map<std::string, std::string> whole;
            for (const auto &[name, file] : disk.names)
                whole[name] = file == 0 ? "folder" : "file " + disk.bytes[file];
            if (!seen.insert(whole).second)
                continue;
            const TestFolder folder;
            // A name is lost when its folder was not flushed.
            for (const auto &[name, file] : disk.names)
                if (!FolderOf(name).empty() && disk.names.count(FolderOf(name)) == 0)
                    continue;
                else if (file == 0)
                    fs::create_directory(folder / name);
                else
                    WriteFile(folder / name, disk.bytes[file]);
            SCOPED_TRACE("after " + std::to_string(done) + " changes, names from " +
                         std::to_string(keptNames.begin) + " to " + std::to_string(keptNames.end) +
                         ", halves " + std::to_string(keptHalves));
            look(folder.Path());
        }
}

} // namespace tests

// fuzz/memoryfiles.h - the files port for a few files in memory, each with its path.
#pragma once

#include "metadata/mp3info.h"
#include "platform/machine.h"
#include "platform/posix/disk/systemfiles.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace fuzz
{

// While one exists, it is TheMachine().files, and nothing is known of the files of an earlier run.
class MemoryFiles : public platform::posix::SystemFilesPort
{
public:
    MemoryFiles()
    {
        platform::TheMachine().files = this;
        metadata::ResetMP3Info();
    }
    ~MemoryFiles() override
    {
        metadata::ResetMP3Info();
        platform::TheMachine().files = &platform::SystemFiles();
    }
    MemoryFiles(const MemoryFiles &) = delete;
    MemoryFiles &operator=(const MemoryFiles &) = delete;

    using Content = std::shared_ptr<std::string>; // owners: the name and the open handles
    std::map<std::string, Content> names;

    int OpenToRead(const std::string &path, platform::FileIdentity &identity) override
    {
        if (const int reason = Identify(path, identity))
            return -reason;
        return Open(names[path]);
    }
    int Identify(const std::string &path, platform::FileIdentity &identity) override
    {
        const auto found = names.find(path);
        if (found == names.end())
            return ENOENT;
        identity = {path,
                    1,
                    reinterpret_cast<std::uintptr_t>(found->second.get()),
                    static_cast<std::int64_t>(found->second->size()),
                    1,
                    1,
                    platform::FileKind::Regular};
        return 0;
    }
    std::int64_t ReadAt(int handle, std::int64_t offset, char *to, std::size_t count, bool) override
    {
        const std::string &content = *At(handle);
        const auto from = std::min(static_cast<std::size_t>(offset), content.size());
        return static_cast<std::int64_t>(content.copy(to, count, from));
    }
    void Close(int handle) override { At(handle).reset(); }
    int RealPath(const std::string &path, std::string &real) override
    {
        real = path;
        return names.count(path) != 0 ? 0 : ENOENT;
    }
    int CreateBeside(const std::string &finalPath, std::string &temporaryPath) override
    {
        temporaryPath = finalPath + ".new";
        names[temporaryPath] = std::make_shared<std::string>();
        return Open(names[temporaryPath]);
    }
    std::int64_t Write(int handle, const char *from, std::size_t count) override
    {
        At(handle)->append(from, count);
        return static_cast<std::int64_t>(count);
    }
    std::int64_t CopyRange(int, std::int64_t, int, std::size_t) override { return -EOPNOTSUPP; }
    int CopyPermissions(int, int) override { return 0; }
    int Flush(int) override { return 0; }
    int FlushFolderOf(const std::string &) override { return 0; }
    int Rename(const std::string &from, const std::string &to) override
    {
        const auto found = names.find(from);
        if (found == names.end())
            return ENOENT;
        const Content content = found->second;
        names.erase(found);
        names[to] = content;
        return 0;
    }
    int RenameNew(const std::string &from, const std::string &to) override
    {
        return names.count(to) != 0 ? EEXIST : Rename(from, to);
    }
    int TryLock(int) override { return 0; }
    int Delete(const std::string &path) override { return names.erase(path) != 0 ? 0 : ENOENT; }
    int MakeFolder(const std::string &) override { return 0; }
    int RemoveFolder(const std::string &) override { return 0; }
    std::int64_t FreeBytes(const std::string &) override { return -EOPNOTSUPP; }

private:
    static constexpr int kFirstHandle = 1'000'000;

    int Open(const Content &content)
    {
        m_open.push_back(content);
        return kFirstHandle + static_cast<int>(m_open.size()) - 1;
    }
    Content &At(int handle) { return m_open[static_cast<std::size_t>(handle - kFirstHandle)]; }

    std::vector<Content> m_open;
};

} // namespace fuzz

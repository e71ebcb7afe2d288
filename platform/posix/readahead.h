// platform/posix/readahead.h - the files port that has the coming files on the way: helper threads
// open them, read their first and last bytes and look for what is wanted in the first ones, while
// the logic works. A helper touches file bytes only, knows no state of the program, and is never
// waited for at an end.
#pragma once

#include "platform/posix/systemfiles.h"

#include <memory>
#include <thread>
#include <vector>

namespace platform::posix
{

// All operations are for one thread, that of the logic. What they return is what SystemFilesPort
// would: a file that was fetched is asked for its state once more when it is opened, and is read
// anew where it is no longer the same. The helpers are one where files come fast and there is a
// processor for it, and up to 16 where the logic has to wait for them; at most 64 files, which
// take a quarter of the process's file handles at most, and about 8 MiB are held.
class ReadAheadFiles : public SystemFilesPort
{
public:
    // `source` does the opening and reading, on several threads at a time. The other owners are the
    // helpers, which may outlive this object in the middle of a read.
    // `processors`: that this process may use.
    explicit ReadAheadFiles(std::shared_ptr<Files> source = std::make_shared<SystemFilesPort>(),
                            unsigned processors = std::thread::hardware_concurrency());
    ~ReadAheadFiles() override;
    ReadAheadFiles(const ReadAheadFiles &) = delete;
    ReadAheadFiles &operator=(const ReadAheadFiles &) = delete;

    // A wait for a helper ends with -EINTR when the end of the program is asked for.
    int OpenToRead(const std::string &path, FileIdentity &identity) override;
    int Identify(const std::string &path, FileIdentity &identity) override;
    std::int64_t ReadAt(int handle, std::int64_t offset, char *to, std::size_t count,
                        bool mayWait) override;
    // A helper that has the file is given the time of a read from memory.
    std::size_t TakeStart(int handle, ByteBuffer &bytes, std::unique_ptr<Digest> &digest) override;
    void Close(int handle) override;
    bool PaysToExpect() override;
    void Expect(const std::vector<std::string> &paths, const WantedBytes &wanted) override;
    void ExpectNothing() override;

private:
    struct ComingFile;
    struct Shared;
    using FilePtr = std::shared_ptr<ComingFile>;

    FilePtr Take(const std::string &path);
    int OpenHere(const std::string &path, FileIdentity &identity);
    bool IsSlow();
    template <class Call>
    auto Timed(const Call &call);
    bool IsUnchanged(const ComingFile &file);

    // A file that was fetched and is open now.
    struct OpenFile {
        int handle;
        std::shared_ptr<Shared> shared; // of its helpers
        FilePtr file;
    };

    std::shared_ptr<Files> m_source;
    const int m_helpersKept;          // where files come fast
    std::shared_ptr<Shared> m_shared; // null where nothing is expected
    std::vector<OpenFile> m_open;
    FileIdentity m_now;    // of the file that is opened; kept for its path's memory
    bool m_isSlow = false; // a call had to wait for a disk
};

} // namespace platform::posix

// platform/posix/disk/readahead.h - a files port that reads ahead: while the logic works, helper
// threads open the files that were announced, read their first and last bytes, and find what is
// wanted in the first ones. A helper only handles file bytes, uses no other state of the program,
// and nobody waits for its end.
#pragma once

#include "platform/posix/disk/systemfiles.h"

#include <memory>
#include <thread>
#include <vector>

namespace platform::posix
{

struct ComingFile; // platform/posix/disk/fetching.h
struct Fetcher;

// All operations may be called on one thread only, that of the logic. They return what
// SystemFilesPort would return: the state of a fetched file is looked up again when it is opened,
// and the file is read again when it has changed. There is one helper when files come fast and
// there is a second processor, and up to 16 when several files had to wait for a disk or the logic
// waits long for one. At most 64 files and about 8 MiB are kept, and at most a quarter of the
// process's file handles is used.
class ReadAheadFiles : public SystemFilesPort
{
public:
    // `source` opens and reads the files, on several threads at a time. The other owners are the
    // helpers: one that is reading may outlive this object. `processors`: how many this process may
    // use.
    explicit ReadAheadFiles(std::shared_ptr<Files> source = std::make_shared<SystemFilesPort>(),
                            unsigned processors = std::thread::hardware_concurrency());
    ~ReadAheadFiles() override;
    ReadAheadFiles(const ReadAheadFiles &) = delete;
    ReadAheadFiles &operator=(const ReadAheadFiles &) = delete;

    // A wait for a helper ends with -EINTR when the program is to end.
    int OpenToRead(const std::string &path, FileIdentity &identity) override;
    int Identify(const std::string &path, FileIdentity &identity) override;
    bool IsInState(const FileIdentity &state) override;
    bool HasChangeTimes(const FileIdentity &file) override;
    std::int64_t ReadAt(int handle, std::int64_t offset, char *to, std::size_t count,
                        bool mayWait) override;
    // When a helper is reading the file, this waits as long as a read from memory takes on a busy
    // processor.
    std::size_t TakeStart(int handle, ByteBuffer &bytes, std::unique_ptr<Digest> &digest) override;
    void Close(int handle) override;
    bool PaysToExpect() override;
    void Expect(const std::vector<std::string> &paths, const WantedBytes &wanted) override;
    void ExpectInState(const std::vector<FileIdentity> &states, const WantedBytes &wanted) override;
    void ExpectNothing() override;

private:
    Fetcher &FetcherInUse();
    std::shared_ptr<ComingFile> Take(const std::string &path);
    std::shared_ptr<ComingFile> FindKnown(const FileIdentity &state);
    void Forget(const std::shared_ptr<ComingFile> &file);
    int OpenHere(const std::string &path, FileIdentity &identity);
    bool IsSlow();
    template <class Call>
    auto Timed(const Call &call);
    bool IsUnchanged(const ComingFile &file);

    // A file that was fetched and is open now.
    struct OpenFile {
        int handle;
        std::shared_ptr<Fetcher> fetcher; // the one that fetched it
        std::shared_ptr<ComingFile> file;
    };

    std::shared_ptr<Files> m_source;
    const int m_helpersKept;            // when files come fast
    std::shared_ptr<Fetcher> m_fetcher; // null when no file is expected
    std::vector<OpenFile> m_open;
    FileIdentity m_now;    // of the file that is being opened; kept for the memory of its path
    bool m_isSlow = false; // whether a call had to wait for a disk
};

} // namespace platform::posix

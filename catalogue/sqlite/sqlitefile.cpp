#include "catalogue/sqlite/sqlitefile.h"

#include "catalogue/provider.h"
#include "platform/disk/files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

namespace catalogue
{

namespace
{

using namespace std::string_view_literals;

constexpr auto kMagic = "SQLite format 3\0"sv;
constexpr int kLogHeaderBytes = 32;
constexpr int kFrameHeaderBytes = 24;

// A file that closes itself. It is read with the files port of the machine, as SQLite reads it,
// also where a test has put another one in use for songs.
class ReadOnlyFile
{
public:
    explicit ReadOnlyFile(const std::string &path)
        : m_handle(platform::SystemFiles().OpenToRead(path, m_identity))
    {
    }
    ~ReadOnlyFile()
    {
        if (m_handle >= 0)
            platform::SystemFiles().Close(m_handle);
    }
    ReadOnlyFile(const ReadOnlyFile &) = delete;
    ReadOnlyFile &operator=(const ReadOnlyFile &) = delete;

    // 0 when it is open, else the errno why not.
    [[nodiscard]] int Failure() const { return m_handle >= 0 ? 0 : -m_handle; }

    // Up to `count` bytes from `offset` on.
    [[nodiscard]] std::string Read(std::size_t count, std::int64_t offset) const
    {
        std::string bytes(count, '\0');
        const auto got =
            platform::SystemFiles().ReadAt(m_handle, offset, bytes.data(), count, true);
        bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
        return bytes;
    }

private:
    platform::FileIdentity m_identity;
    int m_handle;
};

std::uint32_t BigEndian(std::string_view bytes, std::size_t at, int count)
{
    std::uint32_t value = 0;
    for (int i = 0; i < count; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    return value;
}

std::uint32_t PageSizeOf(std::string_view header)
{
    const auto size = BigEndian(header, 16, 2);
    return size == 1 ? 65536 : size;
}

[[noreturn]] void ThrowGeneric(const std::string &path, const char *words)
{
    throw ProviderFailure(kGenericFailure, "'" + path + "' " + words);
}

[[noreturn]] void ThrowUnreadable(const std::string &path, int reason)
{
    throw ProviderFailure(kStatementFailure, "'" + path + "': " + std::strerror(reason));
}

platform::FileIdentity IdentifyOrThrow(const std::string &path)
{
    platform::FileIdentity identity;
    const int reason = platform::SystemFiles().Identify(path, identity);
    if (reason == ENOENT || reason == ENOTDIR || reason == ELOOP || reason == ENAMETOOLONG)
        ThrowGeneric(path, "is not there.");
    if (reason != 0)
        ThrowUnreadable(path, reason);
    return identity;
}

// The pages that the complete transactions of a log contain, and the number of pages of the
// database after the last of them.
struct LogPages {
    std::vector<std::uint32_t> pages; // sorted
    std::uint32_t pageCount = 0;      // 0 = the log holds no transaction
};

LogPages ReadLog(const std::string &path, std::uint32_t pageSize)
{
    LogPages result;
    const ReadOnlyFile log(path + "-wal");
    const std::string header = log.Failure() == 0 ? log.Read(kLogHeaderBytes, 0) : std::string();
    if (header.size() < kLogHeaderBytes || BigEndian(header, 8, 4) != pageSize)
        return result;
    const std::string salt = header.substr(16, 8);
    std::size_t committed = 0;
    for (std::int64_t at = kLogHeaderBytes;; at += kFrameHeaderBytes + pageSize) {
        const std::string frame = log.Read(kFrameHeaderBytes, at);
        if (frame.size() < kFrameHeaderBytes || frame.substr(8, 8) != salt)
            break;
        result.pages.push_back(BigEndian(frame, 0, 4));
        if (const auto count = BigEndian(frame, 4, 4); count != 0) {
            result.pageCount = count;
            committed = result.pages.size();
        }
    }
    result.pages.resize(committed);
    std::sort(result.pages.begin(), result.pages.end());
    return result;
}

} // namespace

bool IsSoundHeader(std::string_view header)
{
    if (header.size() < kHeaderBytes || !header.starts_with(kMagic))
        return false;
    const auto pageSize = PageSizeOf(header);
    const bool isPageSize = pageSize >= 512 && (pageSize & (pageSize - 1)) == 0;
    const bool isVersion = header[18] >= 1 && header[18] <= 2 && header[19] >= 1 && header[19] <= 2;
    const bool isUtf8 = BigEndian(header, 56, 4) == 1;
    return isPageSize && isVersion && isUtf8 && header.substr(21, 3) == "\x40\x20\x20";
}

bool IsCutShort(std::string_view header, std::int64_t sizeBytes, const std::string &path)
{
    const auto pageSize = PageSizeOf(header);
    const bool countIsValid = BigEndian(header, 24, 4) == BigEndian(header, 92, 4);
    std::uint32_t pages = countIsValid ? BigEndian(header, 28, 4) : 0;
    const auto whole = static_cast<std::uint32_t>(sizeBytes / pageSize);
    if (whole >= pages && pages != 0)
        return false;
    const LogPages log = ReadLog(path, pageSize);
    if (log.pageCount != 0)
        pages = log.pageCount;
    for (std::uint32_t page = whole + 1; page <= pages; ++page)
        if (!std::binary_search(log.pages.begin(), log.pages.end(), page))
            return true;
    return whole == 0 && pages == 0;
}

DatabaseIdentity IdentityOf(const std::string &path)
{
    const platform::FileIdentity found = IdentifyOrThrow(path);
    return {found.device, found.inode};
}

DatabaseIdentity InspectCatalogueFile(const std::string &path)
{
    const platform::FileIdentity found = IdentifyOrThrow(path);
    if (found.kind != platform::FileKind::Regular)
        ThrowGeneric(path, "is no file.");
    const ReadOnlyFile file(path);
    if (const int reason = file.Failure(); reason != 0)
        ThrowUnreadable(path, reason);
    const std::string header = file.Read(kHeaderBytes, 0);
    if (!IsSoundHeader(header))
        ThrowGeneric(path, found.sizeBytes == 0 ? "is empty." : "is no catalogue.");
    if (IsCutShort(header, found.sizeBytes, path))
        ThrowGeneric(path, "is cut short.");
    return {found.device, found.inode};
}

} // namespace catalogue

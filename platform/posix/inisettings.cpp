#include "platform/posix/inisettings.h"

#include "platform/disk/wholefiles.h"
#include "platform/posix/disk/descriptor.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "runtime/text.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>
#include <vector>

namespace platform::posix
{

namespace
{

constexpr std::size_t kMaxFileBytes = 64u << 20;

// The state of a file: it differs when the file has changed. Found without reading the file.
struct Stamp {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = -1; // -1 = absent
    timespec changed{};

    bool operator==(const Stamp &other) const
    {
        return device == other.device && inode == other.inode && size == other.size &&
               changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
    }
};

Stamp StampOf(const std::string &path)
{
    struct stat status {
    };
    if (stat(path.c_str(), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

struct Change {
    std::string section, key;
    std::optional<std::string> text; // nothing = remove
};

} // namespace

struct IniSettings::File {
    std::string path;
    Stamp stamp;
    IniDocument document{""};
    std::vector<Change> heldBack;
    bool isReported = false; // whether a failure to write was reported

    // Reads the file again. Returns: false when it exists and cannot be read.
    bool Load()
    {
        const Stamp now = StampOf(path);
        const auto text = ReadRegularFile(path, kMaxFileBytes);
        const int why = errno;
        const bool absent = !text && why == ENOENT;
        stamp = now;
        document = IniDocument(text ? std::string_view(*text) : std::string_view());
        errno = why;
        return text || absent;
    }

    // Writes the changes that wait. Returns: false when that failed, with errno set and the file
    // that caused it in `failed`; the next Flush tries again.
    bool Save(std::string &failed);
};

bool IniSettings::File::Save(std::string &failed)
{
    const std::string folder = runtime::ParentFolder(path);
    failed = folder;
    if (!MakeFolders(folder))
        return false;
    failed = folder + "/settings.lock";
    const Descriptor lock(open(failed.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!lock)
        return false;
    while (flock(lock.Get(), LOCK_EX) != 0)
        if (errno != EINTR)
            return false;
    failed = path;
    if (!Load())
        return false;
    const std::string before = document.Text();
    for (const Change &change : heldBack) {
        if (change.text)
            document.Set(change.section, change.key, *change.text);
        else
            document.Remove(change.section, change.key);
    }
    const std::string after = document.Text();
    if (after != before && !ReplaceFile(path, after, 0600))
        return false;
    stamp = StampOf(path);
    heldBack.clear();
    return true;
}

IniSettings::IniSettings(std::string configHome) : m_configHome(std::move(configHome)) {}

IniSettings::~IniSettings()
{
    Flush();
}

std::string IniSettings::PathOf(std::string_view title) const
{
    return m_configHome + "/" + std::string(title) + "/settings.ini";
}

IniSettings::File &IniSettings::FileOf(std::string_view title)
{
    const auto known = m_files.find(title);
    if (known != m_files.end())
        return *known->second;
    auto file = std::make_unique<File>();
    file->path = PathOf(title);
    file->Load();
    return *m_files.emplace(title, std::move(file)).first->second;
}

std::optional<std::string> IniSettings::Current(std::string_view title, std::string_view section,
                                                std::string_view key)
{
    File &file = FileOf(title);
    for (auto change = file.heldBack.rbegin(); change != file.heldBack.rend(); ++change)
        if (runtime::EqualAscii(change->section, section) && runtime::EqualAscii(change->key, key))
            return change->text;
    if (!(StampOf(file.path) == file.stamp))
        file.Load();
    return file.document.Find(section, key);
}

void IniSettings::HoldBack(std::string_view title, std::string_view section, std::string_view key,
                           std::optional<std::string> text)
{
    File &file = FileOf(title);
    std::erase_if(file.heldBack, [&](const Change &change) {
        return runtime::EqualAscii(change.section, section) && runtime::EqualAscii(change.key, key);
    });
    const bool first = file.heldBack.empty();
    file.heldBack.push_back({std::string(section), std::string(key), std::move(text)});
    if (first && onHeldBack)
        onHeldBack();
}

std::string IniSettings::Read(std::string_view title, std::string_view section,
                              std::string_view key, std::string_view defaultText)
{
    return Current(title, section, key).value_or(std::string(defaultText));
}

void IniSettings::Write(std::string_view title, std::string_view section, std::string_view key,
                        std::string_view text)
{
    if (Current(title, section, key) != text)
        HoldBack(title, section, key, std::string(text));
}

void IniSettings::Delete(std::string_view title, std::string_view section, std::string_view key)
{
    if (!Current(title, section, key))
        throw runtime::RuntimeError(runtime::kInvalidCall);
    HoldBack(title, section, key, std::nullopt);
}

void IniSettings::Flush()
{
    for (auto &[title, file] : m_files) {
        std::string failed;
        if (file->heldBack.empty() || file->Save(failed))
            continue;
        const int why = errno;
        if (!std::exchange(file->isReported, true) && onCannotStore)
            onCannotStore(failed, why);
    }
}

} // namespace platform::posix

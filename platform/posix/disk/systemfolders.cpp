#include "platform/posix/disk/systemfolders.h"

#include "platform/disk/userfolders.h"
#include "platform/disk/wholefiles.h"
#include "platform/helperthread.h"
#include "runtime/paths.h"
#include "runtime/text.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <set>
#include <utility>

namespace platform::posix
{

namespace
{

constexpr auto kAskAgain = std::chrono::milliseconds(20);
constexpr std::size_t kMaxUserFoldersBytes = 64u << 10;
constexpr long kAutofsMagic = 0x0187; // linux/magic.h

using Identity = std::pair<dev_t, ino_t>;

struct CloseFolder {
    void operator()(DIR *folder) const { closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

// Opens the folder `name`, which is relative to `parent` unless it is a full path. Returns: null,
// with errno set, when that failed.
OpenFolder Open(int parent, const char *name)
{
    const int fd = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
    return OpenFolder(fd >= 0 ? fdopendir(fd) : nullptr);
}

bool IsDotName(const char *name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

// Whether the entry is a folder or a link to one.
bool IsFolder(DIR *parent, const dirent &entry)
{
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK)
        return entry.d_type == DT_DIR;
    struct stat status {
    };
    return fstatat(dirfd(parent), entry.d_name, &status, AT_NO_AUTOMOUNT) == 0 &&
           S_ISDIR(status.st_mode);
}

bool IsAutomount(int folder, const char *name)
{
    struct statx status {
    };
    return statx(folder, name, AT_NO_AUTOMOUNT | AT_SYMLINK_NOFOLLOW, STATX_TYPE, &status) == 0 &&
           (status.stx_attributes & STATX_ATTR_AUTOMOUNT) != 0;
}

// A question to a disk, and what the helper thread has found so far; shared with the thread that
// waits for the answer.
struct Question {
    std::string path;
    std::set<std::string> leaveOut;
    std::function<bool(int, const char *)> isAutomount;
    std::function<void(const std::string &)> beforeRead;
    bool lookOnly = false;

    std::mutex mutex; // guards what follows
    std::condition_variable changed;
    bool named = false; // all names have been read
    bool done = false;  // nothing more will come
    bool givenUp = false;
    FolderContents contents;
    std::string firstFolder; // for lookOnly
};

// The folders about which a disk has not answered yet.
struct Waiting {
    std::mutex mutex;
    std::set<std::string> paths;
};

std::shared_ptr<Waiting> TheWaiting()
{
    // Shared with the helper threads, which may outlive all else at the end of the process.
    static const auto waiting = std::make_shared<Waiting>();
    return waiting;
}

// The identities on the disk of the folder at `path` and of all folders above it.
std::vector<Identity> IdentitiesUpFrom(const std::string &path)
{
    std::vector<Identity> identities;
    std::string above = path;
    for (;;) {
        struct stat status {
        };
        if (stat(above.c_str(), &status) == 0)
            identities.emplace_back(status.st_dev, status.st_ino);
        if (above.size() <= 1)
            return identities;
        above = runtime::ParentFolder(above);
    }
}

// The name of the first folder in `folder`, whose path is `path`.
std::string FirstFolderIn(DIR *folder, const std::string &path,
                          const std::set<std::string> &leaveOut)
{
    while (const dirent *entry = readdir(folder))
        if (!IsDotName(entry->d_name) && IsFolder(folder, *entry) &&
            (leaveOut.empty() || !leaveOut.contains(runtime::JoinPath(path, entry->d_name))))
            return entry->d_name;
    return {};
}

// The first folder in the sub-folder `name` of the open folder; empty when it has none, or is not
// to be opened.
std::string LookInto(DIR *parent, const std::string &name, const Question &question,
                     const std::vector<Identity> &above)
{
    if (question.isAutomount(dirfd(parent), name.c_str()))
        return {};
    const OpenFolder folder = Open(dirfd(parent), name.c_str());
    struct stat status {
    };
    if (folder == nullptr || fstat(dirfd(folder.get()), &status) != 0 ||
        std::ranges::find(above, Identity(status.st_dev, status.st_ino)) != above.end())
        return {};
    return FirstFolderIn(folder.get(), runtime::JoinPath(question.path, name), question.leaveOut);
}

FolderAnswer AnswerOf(int errnoValue)
{
    return errnoValue == ENOENT || errnoValue == ENOTDIR ? FolderAnswer::Missing
                                                         : FolderAnswer::Unreadable;
}

FolderContents ReadNames(DIR *folder, const Question &question)
{
    FolderContents contents;
    contents.answer = FolderAnswer::Listed;
    errno = 0;
    while (const dirent *entry = readdir(folder)) {
        const std::string name = entry->d_name;
        if (!IsDotName(entry->d_name) && !IsFolder(folder, *entry))
            contents.files.push_back(name);
        else if (!IsDotName(entry->d_name) &&
                 (question.leaveOut.empty() ||
                  !question.leaveOut.contains(runtime::JoinPath(question.path, name))))
            contents.folders.push_back({name, {}});
        errno = 0;
    }
    if (errno != 0)
        contents.answer = FolderAnswer::Unreadable;
    return contents;
}

// Whether the answer is still wanted.
bool IsWanted(Question &question)
{
    const std::lock_guard lock(question.mutex);
    return !question.givenUp;
}

void LookIntoEach(DIR *folder, Question &question, const std::vector<std::string> &names)
{
    struct statfs system {
    };
    if (fstatfs(dirfd(folder), &system) == 0 && system.f_type == kAutofsMagic)
        return;
    const std::vector<Identity> above = IdentitiesUpFrom(question.path);
    for (std::size_t index = 0; index < names.size(); index++) {
        std::string first = LookInto(folder, names[index], question, above);
        const std::lock_guard lock(question.mutex);
        if (question.givenUp)
            return;
        question.contents.folders[index].firstFolder = std::move(first);
    }
}

void Answer(Question &question)
{
    if (question.beforeRead)
        question.beforeRead(question.path);
    const OpenFolder folder = Open(AT_FDCWD, question.path.c_str());
    FolderContents contents;
    std::string firstFolder;
    std::vector<std::string> names;
    if (folder == nullptr) {
        contents.answer = AnswerOf(errno);
    } else if (question.lookOnly) {
        contents.answer = FolderAnswer::Listed;
        firstFolder = FirstFolderIn(folder.get(), question.path, question.leaveOut);
    } else {
        contents = ReadNames(folder.get(), question);
        names.reserve(contents.folders.size());
        for (const SubFolder &found : contents.folders)
            names.push_back(found.name);
    }
    {
        const std::lock_guard lock(question.mutex);
        question.contents = std::move(contents);
        question.firstFolder = std::move(firstFolder);
        question.named = true;
    }
    if (folder != nullptr && IsWanted(question))
        LookIntoEach(folder.get(), question, names);
}

// The work of the helper thread.
void Help(const std::shared_ptr<Question> &question, const std::shared_ptr<Waiting> &waiting)
{
    Answer(*question);
    {
        const std::lock_guard lock(waiting->mutex);
        waiting->paths.erase(question->path);
    }
    const std::lock_guard lock(question->mutex);
    question->done = true;
    question->changed.notify_all();
}

void Ask(const std::shared_ptr<Question> &question, const Folders::KeepWaiting &keepWaiting)
{
    {
        const std::lock_guard lock(TheWaiting()->mutex);
        if (!TheWaiting()->paths.insert(question->path).second)
            return;
    }
    if (!StartHelperThread([question, waiting = TheWaiting()] { Help(question, waiting); })) {
        const std::lock_guard lock(TheWaiting()->mutex);
        TheWaiting()->paths.erase(question->path);
        return;
    }
    std::unique_lock lock(question->mutex);
    while (!question->changed.wait_for(lock, kAskAgain, [&] { return question->done; })) {
        lock.unlock();
        const bool goOn = !keepWaiting || keepWaiting();
        lock.lock();
        question->givenUp = !goOn && !question->done;
        if (question->givenUp)
            return;
    }
}

// One folder of user-dirs.dirs: XDG_MUSIC_DIR="$HOME/Music".
struct NamedFolder {
    std::string purpose;
    std::string path;
};

std::optional<NamedFolder> ParseUserFolder(std::string_view line)
{
    constexpr std::string_view kFront = "XDG_", kBack = "_DIR", kHome = "$HOME";
    const auto equals = line.find('=');
    if (!line.starts_with(kFront) || equals == std::string_view::npos)
        return std::nullopt;
    std::string_view name = line.substr(kFront.size(), equals - kFront.size());
    std::string_view value = line.substr(equals + 1);
    if (!name.ends_with(kBack) || value.size() < 2 || !value.starts_with('"') ||
        !value.ends_with('"'))
        return std::nullopt;
    name.remove_suffix(kBack.size());
    value = value.substr(1, value.size() - 2);
    std::string path;
    if (value.starts_with(kHome)) {
        path = HomeFolder();
        value.remove_prefix(kHome.size());
    }
    for (std::size_t at = 0; at < value.size(); at++) {
        if (value[at] == '\\' && at + 1 < value.size())
            at++;
        path.push_back(value[at]);
    }
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    if (!path.starts_with('/'))
        return std::nullopt;
    return NamedFolder{std::string(name), path};
}

std::vector<NamedFolder> UserFolders(const std::string &place)
{
    const std::string file = place.empty() ? ConfigHome() + "/user-dirs.dirs" : place;
    std::vector<NamedFolder> folders;
    const std::string text = ReadRegularFile(file, kMaxUserFoldersBytes).value_or("");
    for (const std::string &line : runtime::Split(text, "\n"))
        if (auto folder = ParseUserFolder(runtime::Trim(line)))
            folders.push_back(*std::move(folder));
    return folders;
}

} // namespace

FolderContents SystemFolders::List(const std::string &path,
                                   const std::vector<std::string> &leaveOut,
                                   const KeepWaiting &keepWaiting)
{
    const auto question = std::make_shared<Question>();
    question->path = path;
    question->leaveOut = {leaveOut.begin(), leaveOut.end()};
    question->isAutomount = m_places.isAutomount ? m_places.isAutomount : IsAutomount;
    question->beforeRead = m_places.beforeRead;
    Ask(question, keepWaiting);
    const std::lock_guard lock(question->mutex);
    return question->named ? std::move(question->contents) : FolderContents();
}

FolderAnswer SystemFolders::Probe(const std::string &path, const std::vector<std::string> &leaveOut,
                                  const KeepWaiting &keepWaiting, std::string &firstFolder)
{
    const auto question = std::make_shared<Question>();
    question->path = path;
    question->leaveOut = {leaveOut.begin(), leaveOut.end()};
    question->beforeRead = m_places.beforeRead;
    question->lookOnly = true;
    Ask(question, keepWaiting);
    const std::lock_guard lock(question->mutex);
    firstFolder = question->named ? question->firstFolder : std::string();
    return question->named ? question->contents.answer : FolderAnswer::NoAnswer;
}

std::string SystemFolders::UserFolder(std::string_view purpose)
{
    for (const NamedFolder &folder : UserFolders(m_places.userFolders))
        if (folder.purpose == purpose)
            return folder.path;
    return {};
}

std::vector<std::string> SystemFolders::UserFolderPurposes()
{
    std::vector<std::string> purposes;
    for (const NamedFolder &folder : UserFolders(m_places.userFolders))
        purposes.push_back(folder.purpose);
    return purposes;
}

std::string SystemFolders::CurrentFolder()
{
    return AbsolutePath(".");
}

bool SystemFolders::SetCurrentFolder(const std::string &path)
{
    // $PWD has the path with the links that the user followed; started programs inherit it.
    return chdir(path.c_str()) == 0 && setenv("PWD", path.c_str(), 1) == 0;
}

int SystemFolders::MakeFolder(const std::string &path)
{
    return mkdir(path.c_str(), 0777) == 0 ? 0 : errno; // the process's file mode mask is applied
}

} // namespace platform::posix

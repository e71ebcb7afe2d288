#include "platform/player/audacious.h"

#include "platform/disk/userfolders.h"
#include "platform/disk/wholefiles.h"
#include "platform/spawn.h"
#include "platform/waiting.h"
#include "runtime/error.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

namespace platform::player
{

namespace
{

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr std::string_view kWindowClass = "Winamp v1.x";
constexpr std::string_view kPlayCommandKey = "WinAmp.File\\shell\\play\\command";
constexpr const char *kPlaylistFile = "/WINAMP.m3u";
constexpr const char *kProgram = "audacious";
constexpr std::uint32_t kTheKey = 1; // the one key of the registry that there is
constexpr std::uint8_t kShuffleKey = 'S';
constexpr std::int64_t kEnqueueMs = 5000;
constexpr std::int64_t kLearnMs = 30'000;
constexpr std::int64_t kCatchUpMs = 3000; // then the position that the player reports is used
constexpr std::int64_t kNearMs = 1500; // a position this near to the sought one counts as reached
constexpr std::int64_t kReadAheadMs = 500; // what the player reads ahead of the sound
constexpr std::size_t kLongestFile = std::size_t{64} << 20;

std::int64_t MsSince(steady_clock::time_point when)
{
    return duration_cast<milliseconds>(steady_clock::now() - when).count();
}

bool IsRegularFile(const std::string &path)
{
    struct stat status {
    };
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

AudaciousPlayer::~AudaciousPlayer()
{
    if (m_folder.empty())
        return;
    unlink((m_folder + kPlaylistFile).c_str());
    rmdir(m_folder.c_str());
}

WindowHandle AudaciousPlayer::FindWindow(std::string_view className)
{
    if (className != kWindowClass)
        return 0;
    m_bus.Update();
    if (m_startsAfterEnd && !m_bus.IsEnding()) {
        m_startsAfterEnd = false;
        if (!m_bus.IsOwned())
            StartDetached({kProgram}, Environment("HOME"));
    }
    if (m_bus.IsAnswering() && !m_list.IsBegun())
        m_list.Check(-1);
    m_list.Continue();
    return m_bus.IsAnswering() ? m_bus.Run() : 0;
}

std::int32_t AudaciousPlayer::SendMessage(WindowHandle window, std::uint32_t message,
                                          std::int32_t wParam, std::int32_t lParam)
{
    m_bus.Update();
    if (window == 0 || window != m_bus.Run())
        return 0;
    if (message == kWmUser)
        return Ask(lParam, wParam);
    return message == kWmCommand ? Command(wParam) : 0;
}

std::int32_t AudaciousPlayer::Ask(std::int32_t request, std::int32_t argument)
{
    if (m_batches > 0 && !m_bus.HasAskedAhead())
        AskAhead();
    switch (request) {
    case kAskState:
        return State();
    case kAskTime:
        return argument == 0 ? PositionMs() : argument == 1 ? LengthSeconds() : 0;
    case kSeek:
        return Seek(argument);
    case kWritePlaylist:
        return WritePlaylist();
    case kSelectEntry:
        return SelectEntry(argument);
    case kAskListLength:
        return m_list.Length();
    case kAskSelected:
        m_lastIndex = m_list.Position();
        return m_lastIndex;
    default:
        return 0;
    }
}

// The questions that the monitor will ask: all of them if the player was playing at the last one.
void AudaciousPlayer::AskAhead()
{
    const auto last = static_cast<std::uint32_t>(std::max(0, m_lastIndex));
    if (m_lastState == 1)
        m_bus.AskAhead({{"Status", {}},
                        {"Position", {}},
                        {"Length", {}},
                        {"SongFilename", last},
                        {"SongLength", last},
                        {"Time", {}}});
    else
        m_bus.AskAhead({{"Status", {}}});
}

void AudaciousPlayer::EndBatch()
{
    if (--m_batches == 0)
        m_bus.ForgetAnswers();
}

std::int32_t AudaciousPlayer::Command(std::int32_t menuId)
{
    struct Row {
        std::int32_t menuId;
        const char *method;
    };
    constexpr Row kRows[] = {{kPreviousTrack, "Reverse"},
                             {kPlay, "Play"},
                             {kPause, "Pause"},
                             {kStop, "Stop"},
                             {kNextTrack, "Advance"}};
    for (const Row &row : kRows) {
        if (row.menuId != menuId)
            continue;
        if (menuId != kPause)
            m_sought.reset();
        m_list.Select();
        m_bus.Order(row.method);
        // When it is paused while it starts to play, it would still play what it has read ahead. A
        // seek clears that.
        if (menuId == kPause && m_sought && MsSince(m_sought->when) < kReadAheadMs)
            m_bus.Order("Seek", static_cast<std::uint32_t>(m_sought->ms));
    }
    return 0;
}

// The method "Playing" is not used: it is also true for a paused player.
std::int32_t AudaciousPlayer::State()
{
    const std::string status = m_bus.AskText("Status").value_or(std::string());
    m_lastState = status == "playing" ? 1 : status == "paused" ? 3 : 0;
    return m_lastState;
}

std::int32_t AudaciousPlayer::PositionMs()
{
    const std::int64_t reportedMs = m_bus.AskUnsigned("Time").value_or(0);
    const auto position = static_cast<std::int32_t>(std::min<std::int64_t>(reportedMs, INT32_MAX));
    if (!m_sought)
        return position;
    const std::int64_t since = MsSince(m_sought->when);
    const bool caughtUp =
        reportedMs >= m_sought->ms - kNearMs && reportedMs <= m_sought->ms + since + kNearMs;
    if (since < kCatchUpMs && !(caughtUp && reportedMs != 0))
        return static_cast<std::int32_t>(m_sought->ms);
    m_sought.reset();
    return position;
}

std::int32_t AudaciousPlayer::LengthSeconds()
{
    if (State() == 0)
        return 0;
    const std::int32_t index = m_list.Position();
    if (index < 0)
        return 0;
    return std::max(0, m_bus.AskInt("SongLength", static_cast<std::uint32_t>(index)).value_or(0));
}

std::int32_t AudaciousPlayer::Seek(std::int32_t ms)
{
    if (State() == 0)
        return -1;
    m_bus.Order("Seek", static_cast<std::uint32_t>(std::max(0, ms)));
    m_sought = {std::max(0, ms), steady_clock::now()};
    return 0;
}

std::int32_t AudaciousPlayer::WritePlaylist()
{
    if (!MakeFolder() || !m_list.Check(m_list.Position()))
        return -1;
    m_list.Continue();
    return m_list.Write(m_folder + kPlaylistFile) ? 0 : -1;
}

// When the player is asked to select an entry that does not exist, it loses its selection and
// stops: such an index is never sent.
std::int32_t AudaciousPlayer::SelectEntry(std::int32_t index)
{
    if (index < 0)
        return 0;
    m_sought.reset();
    std::int32_t place = -1;
    if (index < m_list.Length())
        place = PlaceOfKnown(index);
    else if (m_enqueued)
        place = PlaceOf(*m_enqueued);
    if (place >= 0) {
        m_list.Select();
        m_bus.Order("Jump", static_cast<std::uint32_t>(place));
    }
    return 0;
}

// The present index of the entry that was known at `index`: the user may change the list at any
// time.
std::int32_t AudaciousPlayer::PlaceOfKnown(std::int32_t index)
{
    const auto known = m_list.Known(index);
    const auto there = m_list.LineAt(index);
    if (!known || !there || *known == *there)
        return index;
    m_list.Forget();
    LearnPlaylist();
    const std::int32_t place = m_list.LastIndexOf(*known);
    if (place >= 0)
        return place;
    Enqueue(*known);
    return m_enqueued ? m_enqueued->index : -1;
}

std::int32_t AudaciousPlayer::PlaceOf(const Enqueued &entry)
{
    return m_list.LineAt(entry.index) == entry.line ? entry.index : m_list.LastIndexOf(entry.line);
}

std::int32_t AudaciousPlayer::SendCopyData(WindowHandle window, std::uint32_t tag,
                                           std::string_view bytes)
{
    m_bus.Update();
    if (window == 0 || window != m_bus.Run() || tag != kEnqueueTag)
        return 0;
    return Enqueue(std::string(bytes.substr(0, bytes.find('\0'))));
}

// The player answers before the entry is in its list. If the file cannot be read, the entry is
// never added.
std::int32_t AudaciousPlayer::Enqueue(const std::string &path)
{
    if (!IsRegularFile(path))
        throw runtime::FileError(ENOENT, path);
    m_enqueued.reset();
    const std::string uri = UriOfPath(path), line = LineOfUri(uri);
    const std::int32_t before = m_list.Length();
    m_list.Select();
    m_bus.Order("Add", uri);
    std::int32_t place = -1;
    const WaitEnd end = WaitUntil(
        [&] {
            m_bus.Update();
            place = FindFrom(before, line);
            return place >= 0 || !m_bus.IsOwned();
        },
        kEnqueueMs);
    if (place >= 0)
        m_enqueued = {line, place};
    else if (end != WaitEnd::Cancelled)
        throw runtime::RuntimeError(runtime::kFileNotFound,
                                    path + ": " + Name() + " did not add it to its list.");
    return 0;
}

// The index of an entry, searched from `first` on; -1 when there is none.
std::int32_t AudaciousPlayer::FindFrom(std::int32_t first, const std::string &line)
{
    const std::int32_t length = m_list.Length();
    for (std::int32_t i = length - 1; i >= first; --i)
        if (m_list.LineAt(i) == line)
            return i;
    return -1;
}

void AudaciousPlayer::SetForegroundWindow(WindowHandle window)
{
    if (window == 0 || window == m_bus.Run())
        m_foreground = window;
}

std::int16_t AudaciousPlayer::KeyOfCharacter(unsigned char character)
{
    constexpr int kShift = 0x100, kCaseBit = 0x20;
    if (character >= 'a' && character <= 'z')
        return static_cast<std::int16_t>(character - kCaseBit);
    if (character >= 'A' && character <= 'Z')
        return static_cast<std::int16_t>(character + kShift);
    return character;
}

void AudaciousPlayer::KeyEvent(std::uint8_t key, std::uint8_t, std::uint32_t flags)
{
    if (key == kShuffleKey && flags == 0 && m_foreground != 0 && m_foreground == m_bus.Run())
        m_bus.Order("ToggleShuffle");
}

// The folder that the program takes for the player's: a private one in the user's runtime folder.
bool AudaciousPlayer::MakeFolder()
{
    if (!m_folder.empty())
        return true;
    const std::string runtimeFolder = Environment("XDG_RUNTIME_DIR");
    std::string name =
        (runtimeFolder.empty() ? std::string("/tmp") : runtimeFolder) + "/quenlin-player-XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        return false;
    m_folder = name;
    return true;
}

std::uint32_t AudaciousPlayer::OpenKey(std::uint32_t root, std::string_view subkey, std::uint32_t,
                                       std::uint32_t &key)
{
    const bool registered = m_bus.IsOwned() || !FindProgram(kProgram).empty();
    if (root != kClassesRoot || subkey != kPlayCommandKey || !registered || !MakeFolder())
        return ENOENT;
    key = kTheKey;
    return 0;
}

std::uint32_t AudaciousPlayer::QueryValue(std::uint32_t key, std::string_view valueName,
                                          std::uint32_t &type, char *buffer, std::uint32_t &size)
{
    constexpr std::uint32_t kPlainText = 1;
    const std::string value = "\"" + m_folder + "/" + kProgram + "\" \"%1\"";
    if (key != kTheKey || !valueName.empty() || value.size() >= size)
        return ENOENT;
    std::copy_n(value.c_str(), value.size() + 1, buffer);
    size = static_cast<std::uint32_t>(value.size() + 1);
    type = kPlainText;
    return 0;
}

void AudaciousPlayer::StartProgram(const std::string &program, int)
{
    m_bus.Update();
    if (m_bus.IsOwned())
        return; // it will answer soon, or it was stopped by a signal: a second start would only
                // wait for it
    // A new player would not read the list that the old one writes when it ends.
    m_startsAfterEnd = m_bus.IsEnding();
    if (m_startsAfterEnd)
        return;
    if (program.empty() || !StartDetached({kProgram}, Environment("HOME")))
        throw runtime::RuntimeError(
            runtime::kFileNotFound,
            "The player Audacious, which plays the songs, is not installed. Install the package "
            "\"audacious\", for example with: sudo apt install audacious");
}

std::string AudaciousPlayer::ReadFile(const std::string &path)
{
    std::optional<std::string> bytes = ReadRegularFile(path, kLongestFile);
    if (!bytes)
        throw runtime::FileError(errno, path);
    return *std::move(bytes);
}

void AudaciousPlayer::LearnPlaylist()
{
    m_bus.Update();
    const std::int32_t last = m_list.Length() - 1;
    if (!m_list.Check(0) || !m_list.Check(last))
        return;
    WaitUntil(
        [this] {
            m_bus.Update();
            m_list.Continue();
            return m_list.IsComplete() || !m_bus.IsAnswering();
        },
        kLearnMs);
}

} // namespace platform::player

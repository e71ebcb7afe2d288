#include "player/winampmod.h"

#include "platform/desktop.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/paths.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

namespace player
{

using platform::TheMachine;

platform::WindowHandle WinampWindow = 0;

namespace
{

constexpr std::string_view kWindowClass = "Winamp v1.x";
constexpr std::string_view kPlayCommandKey = "WinAmp.File\\shell\\play\\command";
constexpr std::string_view kPlaylistFile = "WINAMP.m3u";
constexpr std::string_view kEntryInfo = "#EXTINF";
constexpr int kForegroundRounds = 20; // attempts to bring a window to the front

// The cache of GetCurrentSongPath: WINAMP.m3u as last read, and its text without the lines that are
// not paths.
struct State {
    std::string raw, stripped;
} state;

std::int32_t Send(std::uint32_t message, std::int32_t wParam, std::int32_t lParam)
{
    platform::Player *port = TheMachine().player;
    return port != nullptr ? port->SendMessage(WinampWindow, message, wParam, lParam) : 0;
}

std::int32_t Request(std::int32_t request, std::int32_t argument = 0)
{
    return Send(platform::kWmUser, argument, request);
}

std::int32_t Command(std::int32_t menuId)
{
    return Send(platform::kWmCommand, menuId, 0);
}

bool BringForward(platform::Player &port, platform::WindowHandle window)
{
    for (int round = 0; round < kForegroundRounds; ++round) {
        if (port.GetForegroundWindow() == window)
            break;
        port.SetForegroundWindow(window);
        TheMachine().desktop->DoEvents();
    }
    return port.GetForegroundWindow() == window;
}

void TypeKey(platform::Player &port, std::int16_t key)
{
    struct Modifier {
        int bit;
        std::uint8_t key;
    };
    // Shift, Control and Alt: the bit in `key`, the virtual key. Source: VkKeyScan of the Windows
    // API.
    constexpr std::array<Modifier, 3> kModifiers = {{{8, 16}, {9, 17}, {10, 18}}};
    const std::uint32_t scanCode = port.ScanCodeOfKey(static_cast<std::uint16_t>(key));
    const auto sendModifiers = [&](std::uint32_t flags) {
        for (const Modifier &modifier : kModifiers)
            if ((key >> modifier.bit & 1) != 0)
                port.KeyEvent(modifier.key, 0, flags);
    };
    sendModifiers(0);
    // Only the press of the key is sent, never its release. The modifiers are released.
    port.KeyEvent(static_cast<std::uint8_t>(key & 0xFF), static_cast<std::uint8_t>(scanCode), 0);
    sendModifiers(platform::kKeyUp);
}

// Takes the first line from the front of `text`, without its end. Returns: nothing when no line has
// an end.
std::optional<std::string_view> TakeLine(std::string_view &text)
{
    const std::size_t end = text.find('\r');
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 2, text.size())); // the CR and the LF after it
    return line;
}

// The path of WINAMP.m3u; empty when there is no folder, no player, or the player could not write
// the file.
std::string WrittenPlaylist()
{
    const std::string folder = GetWinampFolder();
    if (folder.empty() || !IsWinampRunning() || WritePlaylistFile() == -1)
        return {};
    return folder + std::string(kPlaylistFile);
}

// Whether an error is ignored, so that the text stays as it was; any other error ends the question.
bool IsPassedOver(int number)
{
    return number == runtime::kPathFileAccess || number == runtime::kFileNotFound ||
           number == runtime::kBadFileNumber;
}

// Updates the cached texts from the file. Returns: false when the question has no answer.
bool RefreshKeptPlaylist(const std::string &file)
{
    std::string raw;
    try {
        if (FileCanBeOpened(file))
            raw = TheMachine().player->ReadFile(file);
    } catch (const runtime::RuntimeError &error) {
        if (!IsPassedOver(error.number))
            return false;
    }
    if (!raw.empty() && raw != state.raw) {
        state.stripped = StripExtInfLines(raw);
        state.raw = std::move(raw);
    }
    return true;
}

} // namespace

bool IsWinampRunning()
{
    platform::Player *port = TheMachine().player;
    WinampWindow = port != nullptr ? port->FindWindow(kWindowClass) : 0;
    return WinampWindow != 0;
}

std::int32_t GetPlayingState()
{
    return Request(platform::kAskState);
}

double GetPlayingPosition()
{
    return Request(platform::kAskTime, 0);
}

std::int32_t GetPlayingLength()
{
    return Request(platform::kAskTime, 1);
}

std::int32_t JumpToTime(std::int32_t seconds, std::int32_t milliseconds)
{
    return Request(platform::kSeek, runtime::RoundToInt32(seconds * 1000.0 + milliseconds));
}

std::int32_t WritePlaylistFile()
{
    return Request(platform::kWritePlaylist);
}

std::int32_t SetPlaylistPosition(std::int16_t index)
{
    return Request(platform::kSelectEntry, index);
}

std::int32_t GetPlaylistLength()
{
    return Request(platform::kAskListLength);
}

std::int32_t GetPlaylistPosition()
{
    return Request(platform::kAskSelected);
}

std::int32_t EnqueueFile(const std::string &path)
{
    platform::Player *port = TheMachine().player;
    if (port == nullptr)
        return 0;
    return port->SendCopyData(WinampWindow, platform::kEnqueueTag,
                              std::string_view(path.c_str(), path.size() + 1));
}

std::int32_t PreviousTrack()
{
    return Command(platform::kPreviousTrack);
}

std::int32_t PlayTrack()
{
    return Command(platform::kPlay);
}

std::int32_t PauseTrack()
{
    return Command(platform::kPause);
}

std::int32_t StopTrack()
{
    return Command(platform::kStop);
}

std::int32_t NextTrack()
{
    return Command(platform::kNextTrack);
}

int ToggleShuffle()
{
    return TypeKeysToWindow("s", WinampWindow);
}

int TypeKeysToWindow(std::string_view text, platform::WindowHandle window)
{
    platform::Player *port = TheMachine().player;
    if (text.empty() || port == nullptr)
        return 0;
    const platform::WindowHandle before = port->GetForegroundWindow();
    for (const char character : text) {
        const std::int16_t key = port->KeyOfCharacter(static_cast<unsigned char>(character));
        if (!BringForward(*port, window))
            return 0;
        TypeKey(*port, key);
    }
    port->SetForegroundWindow(before);
    return 1;
}

std::string ReadRegistryString(std::uint32_t root, std::string_view subkey,
                               std::string_view valueName)
{
    constexpr std::uint32_t kQueryAccess = 1, kPlainText = 1; // KEY_QUERY_VALUE, REG_SZ
    platform::Player *port = TheMachine().player;
    std::uint32_t key = 0;
    if (port == nullptr || port->OpenKey(root, subkey, kQueryAccess, key) != 0)
        return {};
    std::array<char, 256> buffer{};
    std::uint32_t type = 0, size = buffer.size();
    const std::uint32_t failure = port->QueryValue(key, valueName, type, buffer.data(), size);
    if (root == 0)
        port->CloseKey(key);
    if (failure != 0 || type != kPlainText || size < 1 || size > buffer.size())
        return {};
    return {buffer.data(), size - 1};
}

std::string GetWinampExePath()
{
    const std::string command = ReadRegistryString(platform::kClassesRoot, kPlayCommandKey, {});
    if (command.size() < 8)
        return {};
    return std::string(runtime::Mid(command, 2, static_cast<long long>(command.size()) - 7));
}

std::string GetWinampFolder()
{
    const std::string path = GetWinampExePath();
    const std::size_t last = path.rfind(runtime::PathSeparator);
    // The first character is not looked at: for a path without a separator the result is that
    // character.
    return path.substr(0, last == std::string::npos || last == 0 ? 1 : last + 1);
}

std::string StripExtInfLines(std::string_view text)
{
    constexpr std::size_t kHead = 9; // "#EXTM3U" and its line end
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = kHead; i < text.size(); ++i) {
        result.push_back(text[i]);
        // The text joined by a removal may be a mark too, so the result is checked, not the
        // original text.
        if (text[i] != kEntryInfo.back() || !result.ends_with(kEntryInfo))
            continue;
        result.resize(result.size() - kEntryInfo.size());
        const std::size_t end = text.find('\r', i);
        i = end == std::string_view::npos ? text.size() - 1 : end + 1;
    }
    return result;
}

std::string GetCurrentSongPath()
{
    const std::int32_t index = GetPlaylistPosition(); // uses the window that was last found
    if (index == -1)
        return {};
    const std::string file = WrittenPlaylist();
    if (file.empty() || !RefreshKeptPlaylist(file))
        return {};
    std::string_view rest = state.stripped;
    for (std::int32_t i = 0; i < index && !rest.empty(); ++i)
        if (!TakeLine(rest))
            break;
    return std::string(TakeLine(rest).value_or(std::string_view()));
}

std::int16_t GetPlaylistIndexOf(const std::string &path)
{
    const std::int32_t length = GetPlaylistLength();
    const std::string file = WrittenPlaylist();
    if (file.empty())
        return -1;
    const std::string text =
        runtime::UpperText(StripExtInfLines(TheMachine().player->ReadFile(file)));
    const std::string wanted = runtime::UpperText(path);
    std::string_view rest = text;
    // An index above 32767 does not fit the result.
    constexpr std::int32_t kCounted = std::numeric_limits<std::int16_t>::max() + 1;
    for (std::int32_t i = 0; i < std::min(length, kCounted); ++i) {
        const std::optional<std::string_view> line = TakeLine(rest);
        if (!line)
            return -1;
        if (*line == wanted)
            return static_cast<std::int16_t>(i);
    }
    return -1;
}

bool IsInPlaylist(const std::string &path)
{
    const std::string file = WrittenPlaylist();
    if (file.empty())
        return false;
    const std::string text = runtime::UpperText(TheMachine().player->ReadFile(file));
    return text.find(runtime::UpperText(path)) != std::string::npos;
}

bool FileCanBeOpened(const std::string &path)
{
    platform::Files &files = *TheMachine().files;
    platform::FileIdentity identity;
    const int handle = files.OpenToRead(path, identity);
    if (handle < 0)
        return false;
    files.Close(handle);
    return identity.kind != platform::FileKind::Folder;
}

bool IsPlayerSilent()
{
    platform::Player *port = TheMachine().player;
    return port != nullptr && port->IsSilent();
}

QuestionBatch::QuestionBatch() : m_port(TheMachine().player)
{
    if (m_port != nullptr)
        m_port->BeginBatch();
}

QuestionBatch::~QuestionBatch()
{
    if (m_port != nullptr)
        m_port->EndBatch();
}

void ResetWinAmpMod()
{
    WinampWindow = 0;
    state = {};
}

} // namespace player

// tests/support/recordingplayer.h - a player port that records the calls and returns what the test
// has set.
#pragma once

#include "platform/machine.h"
#include "platform/player.h"
#include "player/winampmod.h"
#include "runtime/error.h"
#include "tests/support/testfolder.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tests
{

// The player's messages, as RecordingPlayer::received has them.
inline constexpr const char *kStop = "273 40047 0", *kPlay = "273 40045 0", *kPause = "273 40046 0";

// While one exists, it is TheMachine().player. `received` has each call as a line of text; a
// message is "message wParam lParam".
class RecordingPlayer : public platform::Player
{
public:
    RecordingPlayer() : m_before(platform::TheMachine().player)
    {
        platform::TheMachine().player = this;
        player::ResetWinAmpMod();
    }
    ~RecordingPlayer() override
    {
        platform::TheMachine().player = m_before;
        player::ResetWinAmpMod();
    }
    RecordingPlayer(const RecordingPlayer &) = delete;
    RecordingPlayer &operator=(const RecordingPlayer &) = delete;

    platform::WindowHandle FindWindow(std::string_view className) override
    {
        Note("find " + std::string(className));
        return className == "Winamp v1.x" ? window : 0;
    }
    std::int32_t SendMessage(platform::WindowHandle to, std::uint32_t message, std::int32_t wParam,
                             std::int32_t lParam) override
    {
        const std::string line =
            std::to_string(message) + " " + std::to_string(wParam) + " " + std::to_string(lParam);
        Note(to == window ? line : line + " to " + std::to_string(to));
        if (to == 0 || to != window)
            return 0;
        const auto answer = answers.find(line);
        return answer != answers.end() ? answer->second : 0;
    }
    std::int32_t SendCopyData(platform::WindowHandle to, std::uint32_t tag,
                              std::string_view bytes) override
    {
        Note("copy " + std::to_string(tag) + " " + std::to_string(bytes.size()) + " " +
             std::string(bytes.substr(0, bytes.size() - 1)) +
             (bytes.back() == '\0' ? "" : " unterminated"));
        if (refusesFiles)
            throw runtime::RuntimeError(runtime::kFileNotFound);
        if (onEnqueue)
            onEnqueue();
        return to == window ? 0 : -7;
    }
    platform::WindowHandle GetForegroundWindow() override { return foreground; }
    void SetForegroundWindow(platform::WindowHandle to) override
    {
        Note("front " + std::to_string(to));
        if (frontAfter-- <= 0)
            foreground = to;
    }
    std::int16_t KeyOfCharacter(unsigned char character) override
    {
        return keys.contains(character) ? keys[character] : static_cast<std::int16_t>(character);
    }
    std::uint32_t ScanCodeOfKey(std::uint32_t key) override { return key % 256 + 1; }
    void KeyEvent(std::uint8_t key, std::uint8_t scanCode, std::uint32_t flags) override
    {
        Note("key " + std::to_string(key) + " " + std::to_string(scanCode) + " " +
             std::to_string(flags));
    }
    std::uint32_t OpenKey(std::uint32_t root, std::string_view subkey, std::uint32_t access,
                          std::uint32_t &key) override
    {
        if (noteRegistry)
            Note("open " + std::to_string(root) + " " + std::string(subkey) + " " +
                 std::to_string(access));
        key = 77;
        return command.empty() ? 2 : 0;
    }
    std::uint32_t QueryValue(std::uint32_t key, std::string_view valueName, std::uint32_t &type,
                             char *buffer, std::uint32_t &size) override
    {
        if (noteRegistry)
            Note("query " + std::to_string(key) + " " + std::string(valueName) + " " +
                 std::to_string(size));
        if (command.size() + 1 > size)
            return 234; // more data
        std::copy_n(command.c_str(), command.size() + 1, buffer);
        size = static_cast<std::uint32_t>(command.size() + 1);
        type = valueType;
        return 0;
    }
    void CloseKey(std::uint32_t key) override { Note("close " + std::to_string(key)); }
    void StartProgram(const std::string &program, int windowStyle) override
    {
        Note("start " + program + " " + std::to_string(windowStyle));
        if (onStart)
            onStart();
    }
    std::string ReadFile(const std::string &path) override
    {
        if (noteReads)
            Note("read " + path);
        if (readError != 0)
            throw runtime::RuntimeError(readError);
        return tests::ReadFile(path);
    }
    void LearnPlaylist() override
    {
        if (onLearn)
            onLearn();
    }
    bool IsSilent() override { return silent; }
    std::string Name() override { return "Recorder"; }

    // Sets the answer to a request of WM_USER.
    void Answer(std::int32_t request, std::int32_t answer, std::int32_t argument = 0)
    {
        answers["1024 " + std::to_string(argument) + " " + std::to_string(request)] = answer;
    }

    // Writes `text` to WINAMP.m3u.
    void SetPlaylist(std::string_view text) const { WriteFile(Playlist(), text); }
    std::string Playlist() const { return folder / "WINAMP.m3u"; }

    // The calls since the last call of this.
    std::vector<std::string> Received() { return std::exchange(received, {}); }

    // The same without the questions about the position, which timers ask at any time.
    std::vector<std::string> Orders()
    {
        std::vector<std::string> orders = Received();
        std::erase_if(orders, [](const std::string &line) { return line.ends_with(" 105"); });
        return orders;
    }

    TestFolder folder; // the folder of the player
    platform::WindowHandle window = 9;
    std::map<std::string, std::int32_t> answers; // by "message wParam lParam"; else 0
    platform::WindowHandle foreground = 3;
    int frontAfter = 0; // attempts that do not bring a window to the front
    std::map<unsigned char, std::int16_t> keys;
    std::string command = "\"" + (folder / "player") + "\" \"%1\""; // in the registry
    std::uint32_t valueType = 1;
    int readError = 0; // ReadFile fails with this error
    bool refusesFiles = false;
    bool silent = false; // did not answer in time
    bool noteRegistry = false, noteReads = false;
    std::function<void()> onEnqueue, onStart, onLearn;
    std::function<void(const std::string &)> onCall; // called for each call, with its line
    std::vector<std::string> received;

private:
    void Note(const std::string &line)
    {
        received.push_back(line);
        if (onCall)
            onCall(line);
    }

    platform::Player *m_before;
};

} // namespace tests

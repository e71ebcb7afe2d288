// platform/player/audacious.h - implements platform::Player for the player Audacious: each raw
// message becomes a call on the session's D-Bus. Written for its version 4.2.
#pragma once

#include "platform/player.h"
#include "platform/player/audaciouslist.h"

#include <chrono>
#include <optional>
#include <string>

namespace platform::player
{

class AudaciousPlayer : public Player
{
public:
    // `answerMs`: how long a call waits for the player; when it does not answer in this time, it
    // counts as not running until it answers.
    explicit AudaciousPlayer(std::int64_t answerMs = 100) : m_bus(answerMs) {}
    ~AudaciousPlayer() override; // removes the private folder
    AudaciousPlayer(const AudaciousPlayer &) = delete;
    AudaciousPlayer &operator=(const AudaciousPlayer &) = delete;

    WindowHandle FindWindow(std::string_view className) override;
    std::int32_t SendMessage(WindowHandle window, std::uint32_t message, std::int32_t wParam,
                             std::int32_t lParam) override;
    std::int32_t SendCopyData(WindowHandle window, std::uint32_t tag,
                              std::string_view bytes) override;
    WindowHandle GetForegroundWindow() override { return m_foreground; }
    void SetForegroundWindow(WindowHandle window) override;
    std::int16_t KeyOfCharacter(unsigned char character) override;
    std::uint32_t ScanCodeOfKey(std::uint32_t key) override { return key & 0xFF; }
    void KeyEvent(std::uint8_t key, std::uint8_t scanCode, std::uint32_t flags) override;
    std::uint32_t OpenKey(std::uint32_t root, std::string_view subkey, std::uint32_t access,
                          std::uint32_t &key) override;
    std::uint32_t QueryValue(std::uint32_t key, std::string_view valueName, std::uint32_t &type,
                             char *buffer, std::uint32_t &size) override;
    void CloseKey(std::uint32_t) override {}
    void StartProgram(const std::string &program, int windowStyle) override;
    std::string ReadFile(const std::string &path) override;
    void LearnPlaylist() override;
    bool IsSilent() override { return m_bus.IsOwned() && !m_bus.IsAnswering(); }
    void BeginBatch() override { ++m_batches; }
    void EndBatch() override;
    std::string Name() override { return "Audacious"; }

private:
    // The position of the last seek, until the player has reached it.
    struct Sought {
        std::int64_t ms;
        std::chrono::steady_clock::time_point when;
    };
    // The entry that was added last.
    struct Enqueued {
        std::string line;
        std::int32_t index;
    };

    void AskAhead();
    std::int32_t Ask(std::int32_t request, std::int32_t argument);
    std::int32_t Command(std::int32_t menuId);
    std::int32_t State();
    std::int32_t PositionMs();
    std::int32_t LengthSeconds();
    std::int32_t Seek(std::int32_t ms);
    std::int32_t WritePlaylist();
    std::int32_t SelectEntry(std::int32_t index);
    std::int32_t PlaceOf(const Enqueued &entry);
    std::int32_t PlaceOfKnown(std::int32_t index);
    std::int32_t Enqueue(const std::string &path);
    std::int32_t FindFrom(std::int32_t first, const std::string &line);
    bool MakeFolder();

    AudaciousBus m_bus;
    AudaciousList m_list{m_bus};
    bool m_startsAfterEnd = false; // FindWindow starts it when the player that is closing has ended
    int m_batches = 0;             // batches that have begun and not ended
    std::int32_t m_lastState = 0, m_lastIndex = 0; // as of the last answers
    WindowHandle m_foreground = 0;
    std::optional<Sought> m_sought;
    std::optional<Enqueued> m_enqueued;
    std::string m_folder; // private; empty until it is needed
};

} // namespace platform::player

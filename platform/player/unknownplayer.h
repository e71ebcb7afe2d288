// platform/player/unknownplayer.h - used when the settings name a player that the program does not
// know: it never runs, and reports that when it is to be started.
#pragma once

#include "platform/player.h"
#include "runtime/error.h"

#include <string>
#include <utility>

namespace platform::player
{

class UnknownPlayer : public Player
{
public:
    // `known`: the names of the known players, for the message.
    UnknownPlayer(std::string name, std::string known)
        : m_name(std::move(name)), m_known(std::move(known))
    {
    }

    WindowHandle FindWindow(std::string_view) override { return 0; }
    std::int32_t SendMessage(WindowHandle, std::uint32_t, std::int32_t, std::int32_t) override
    {
        return 0;
    }
    std::int32_t SendCopyData(WindowHandle, std::uint32_t, std::string_view) override { return 0; }
    WindowHandle GetForegroundWindow() override { return 0; }
    void SetForegroundWindow(WindowHandle) override {}
    std::int16_t KeyOfCharacter(unsigned char character) override { return character; }
    std::uint32_t ScanCodeOfKey(std::uint32_t) override { return 0; }
    void KeyEvent(std::uint8_t, std::uint8_t, std::uint32_t) override {}
    std::uint32_t OpenKey(std::uint32_t, std::string_view, std::uint32_t, std::uint32_t &) override
    {
        return kNoSuchKey;
    }
    std::uint32_t QueryValue(std::uint32_t, std::string_view, std::uint32_t &, char *,
                             std::uint32_t &) override
    {
        return kNoSuchKey;
    }
    void CloseKey(std::uint32_t) override {}
    void StartProgram(const std::string &, int) override
    {
        throw runtime::RuntimeError(runtime::kFileNotFound,
                                    "The settings name the player \"" + m_name +
                                        "\", which is not known. Known: " + m_known + ".");
    }
    std::string ReadFile(const std::string &path) override
    {
        throw runtime::RuntimeError(runtime::kFileNotFound, path);
    }
    std::string Name() override { return m_name; }

private:
    static constexpr std::uint32_t kNoSuchKey = 2;

    std::string m_name, m_known;
};

} // namespace platform::player

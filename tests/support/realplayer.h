// tests/support/realplayer.h - the real player, started by the test, and calls to it that do not
// use the port. Needs a D-Bus session and a sound server (tests/windows/run_windowed --player).
#pragma once

#include "tests/support/testfolder.h"

#include <sys/types.h>
#include <systemd/sd-bus.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tests
{

// Waits in real time, at most `limitMs`. Returns: whether the condition became true.
bool WaitRealTime(const std::function<bool()> &condition, int limitMs = 60'000);

class RealPlayer
{
public:
    RealPlayer();
    ~RealPlayer(); // ends the player
    RealPlayer(const RealPlayer &) = delete;
    RealPlayer &operator=(const RealPlayer &) = delete;

    void Start(); // with an empty list; returns when it answers
    void Kill();  // at once, by a signal
    void Signal(int signalNo) const;
    pid_t Process(); // the process with the player's name on the bus; 0 = none
    bool IsThere() { return Process() != 0; }
    bool IsUp(); // its remote control is on the bus too; asking it earlier would end the player

    // Raw calls.
    void Order(const char *method);
    void Order(const char *method, std::uint32_t argument);
    void Add(const std::vector<std::string> &paths); // returns when they are in the list
    std::string Status();
    std::uint32_t Time();
    std::uint32_t Position();
    std::int32_t Length();
    std::string Filename(std::uint32_t index);
    std::int32_t Lists();
    bool Shuffles();

    // Makes a song of silence with the encoder. The same length always gives the same bytes, which
    // are made once.
    std::string Song(const std::string &name, int seconds = 100) const;
    TestFolder music;

private:
    sd_bus_message *Call(const char *method, const char *types = nullptr,
                         std::uint32_t argument = 0);

    sd_bus *m_bus = nullptr;
    pid_t m_process = 0;
};

} // namespace tests

// platform/player/audaciouslist.h - the list of songs that Audacious plays from, as paths: learnt
// name by name in idle time, then checked by single questions, and written as WINAMP.m3u.
#pragma once

#include "platform/files.h"
#include "platform/player/audaciousbus.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::player
{

// The address of a file: every byte but letters, digits, "-._~/" as "%" and two digits.
std::string UriOfPath(std::string_view path);

// What the playlist file has for an entry: the path of a file, byte for byte; the address itself
// for anything else, and for a path that would not stay one line (a line break, a NUL, "#EXTINF").
std::string LineOfUri(std::string_view uri);

class AudaciousList
{
public:
    explicit AudaciousList(AudaciousBus &bus) : m_bus(bus) {}

    // Has the player's methods mean the list that it plays from. Comes before each question and
    // order about the list.
    void Select() { m_bus.SelectPlayingList(); }

    std::int32_t Length();   // asks the player; 0 when it is silent
    std::int32_t Position(); // asks the player: the selected index; -1 = none, also when silent

    // The entry's line. Asks the player; nothing when it is silent or has no such entry.
    std::optional<std::string> LineAt(std::int32_t index);

    // Asks for the length and for the entry at `index` (-1: none), and starts anew when what is
    // known does not agree with the answers. False when the player is silent.
    bool Check(std::int32_t index);

    // Asks for the names that are not known yet, at most 256 at a time; their answers come with
    // AudaciousBus::Look.
    void Continue();
    bool IsComplete() const { return m_unknown == 0; }

    // Whether the list of this run of the player was looked at yet.
    bool IsBegun() const { return m_run == m_bus.Run(); }

    // What is known of an entry; nothing where its name has not come yet or there is no such entry.
    std::optional<std::string> Known(std::int32_t index) const;
    std::int32_t LastIndexOf(const std::string &line) const; // -1 = not known
    void Forget();

    // Makes `file` hold the list, with an empty line for what is not known yet; whole or not at
    // all, and not when it holds that already. False when it cannot be written.
    bool Write(const std::string &file);

private:
    void Begin(std::size_t length);
    void Learn(std::size_t index, const std::string &line);
    bool Agrees(std::size_t index);

    AudaciousBus &m_bus;
    std::uint32_t m_run = 0;     // the player's run that the names are of
    std::uint32_t m_reading = 0; // late answers of an earlier one do not count
    std::vector<std::optional<std::string>> m_lines;
    std::size_t m_unknown = 0;
    std::size_t m_next = 0; // the first index that was not asked for
    bool m_changed = true;  // since it was written
    FileIdentity m_written;
};

} // namespace platform::player

// platform/player/audaciouslist.h - the list of songs that Audacious plays from, as paths: read
// name by name in idle time, then checked by single questions, and written as WINAMP.m3u.
#pragma once

#include "platform/disk/files.h"
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

// The line of the playlist file for an entry: the path of a file, byte for byte; the address for
// anything else, and for a path that cannot be one line (with a line break, a NUL or "#EXTINF").
std::string LineOfUri(std::string_view uri);

class AudaciousList
{
public:
    explicit AudaciousList(AudaciousBus &bus) : m_bus(bus) {}

    // Makes the player's methods refer to the list that it plays from. Called before each question
    // and order about the list.
    void Select() { m_bus.SelectPlayingList(); }

    std::int32_t Length();   // asks the player; 0 when it is silent
    std::int32_t Position(); // asks the player: the selected index; -1 = none, also when silent

    // The entry's line. Asks the player; nothing when it is silent or has no such entry.
    std::optional<std::string> LineAt(std::int32_t index);

    // Asks for the length and for the entry at `index` (-1: none). When the answers differ from the
    // known names, all names are forgotten. Returns: false when the player is silent.
    bool Check(std::int32_t index);

    // Asks for the names that are not known yet, at most 256 at a time; their answers arrive with
    // AudaciousBus::Update.
    void Continue();
    bool IsComplete() const { return m_unknown == 0; }

    // Whether the list of this run of the player has been read.
    bool IsBegun() const { return m_run == m_bus.Run(); }

    // The line of an entry; nullopt when its name has not arrived yet or there is no such entry.
    std::optional<std::string> Known(std::int32_t index) const;
    std::int32_t LastIndexOf(const std::string &line) const; // -1 = not known
    void Forget();

    // Writes the list to `file`, with an empty line for each name that is not known yet. The file
    // is replaced as a whole, and not written when it has this content already. Returns: false when
    // it cannot be written.
    bool Write(const std::string &file);

private:
    void Begin(std::size_t length);
    void Learn(std::size_t index, const std::string &line);
    bool Agrees(std::size_t index);

    AudaciousBus &m_bus;
    std::uint32_t m_run = 0;     // the run of the player to which the names belong
    std::uint32_t m_reading = 0; // late answers of an earlier one do not count
    std::vector<std::optional<std::string>> m_lines;
    std::size_t m_unknown = 0;
    std::size_t m_next = 0; // the first index that was not asked for
    bool m_changed = true;  // since the file was written
    FileIdentity m_written;
};

} // namespace platform::player

// catalogue/regeneration/knownsongs.h - what earlier regenerations have read, so that a song that
// has not changed since need not be read again: a file in the program's folder. Without it, or when
// it cannot be used, all songs are read.
//
// The file: the hash of what follows; then kMagic, the size of a record, the hash of the
// circumstances and the number of records; then the records. All numbers have 64 bits in the byte
// order of the machine. It is not flushed: one that is damaged in any way is not used.
#pragma once

#include "platform/disk/files.h"
#include "runtime/hash.h"
#include "runtime/keyindex.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue
{

inline constexpr std::string_view kKnownSongsName = "KnownSongs.dat";

// Which tags a song has (metadata::GetTagFlags, metadata::HasTextsForFrames).
struct SongTags {
    bool hasID3v1 = false;
    bool hasID3v2 = false;
    bool hasTextsForFrames = false;

    bool operator==(const SongTags &) const = default;
};

// What reading a song has given.
struct KnownSong {
    platform::FileIdentity file; // its path, and its state when it was read
    SongTags tags;
    bool isReadByFrames = false; // shell::Globals::UnicodeTags when it was read
    runtime::Hash128 texts;      // FingerprintOf the texts that an update writes into its row
};

// Whether reading the file again will give the same as long as it is in the same state.
// `openedAtNs`: when it was opened to be read (platform::Files::StampClockNs).
[[nodiscard]] bool CanBeKnown(const platform::FileIdentity &file, std::int64_t openedAtNs);

// The file of the running program: what another build has read is not used. A test sets another
// one.
std::string &TheProgramFile();

// The known songs during a run. At most 250,000 are kept, with about 100 bytes for each.
class KnownSongs
{
public:
    // Loads `file`. It is ignored when it was written by another build of the program, or with
    // another code page. `isUsed`: whether Find may find a song; otherwise the run only writes.
    // `expected`: the number of songs that the run will visit, as far as it is known.
    KnownSongs(std::string file, bool isUsed, std::int64_t expected = 0);

    // What is known of the song at `path` (bytes), if its tags were read in the way in which tags
    // are read now (isReadByFrames). nullopt: nothing.
    // When the file had no song, none is found: a run asks before it reads a song, not again.
    [[nodiscard]] std::optional<KnownSong> Find(const std::string &path) const;

    // Keep replaces what is known of a song that the run has visited, Forget removes it. A song
    // more than can be kept is ignored.
    void Keep(const KnownSong &song);
    void Forget(const std::string &path);

    // Counts whether a song that Find returned had a row in the catalogue with the known texts.
    // After 32 songs in a row without one, another catalogue is in use, and Find returns nothing
    // any more: files that are announced as files to be read are fetched before they are needed.
    void CountRow(bool hasRow);

    // Writes the file, if that changes it. `isWhole`: the run has visited all songs of its folder.
    // A song that neither it nor the eight whole runs before it have visited is then forgotten.
    // Errors: none; when the file cannot be written, the next run reads more songs. To be called
    // once, as the last call for this object.
    void Save(bool isWhole);

private:
    struct Record {
        runtime::Hash128 path, texts;
        std::uint64_t device = 0, inode = 0;
        std::int64_t sizeBytes = 0, modifiedNs = 0, changedNs = 0;
        std::uint64_t flags = 0;
    };

    void Load();
    void TakeRecords(std::string_view bytes);
    void TurnIntoFile(bool isWhole);
    [[nodiscard]] static bool IsVisited(const Record &record);
    [[nodiscard]] static bool IsToBeSaved(const Record &record, bool isWhole);
    [[nodiscard]] std::int32_t IndexOf(const runtime::Hash128 &path) const;
    void AddToIndex(std::size_t item);

    std::string m_file;
    std::optional<runtime::Hash128> m_circumstances; // no value: they cannot be determined
    std::vector<Record> m_records;
    runtime::KeyIndex m_index; // of m_records, by path
    bool m_isUsed;
    bool m_hasChanged = false; // since it was loaded
    int m_missesInARow = 0;
};

} // namespace catalogue

#include "catalogue/regeneration/knownsongs.h"

#include "platform/disk/userfolders.h"
#include "platform/disk/wholefiles.h"
#include "platform/machine.h"
#include "runtime/codepage.h"
#include "shell/globals.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <random>
#include <utility>

namespace catalogue
{

namespace
{

constexpr std::uint64_t kMagic = 0x31'53'4B'6C'6E'65'75'51; // "QuenlKS1"
constexpr std::size_t kMostSongs = 250'000;
constexpr int kMostMisses = 32;

// In the file: what is known of the song.
constexpr std::uint64_t kHasID3v1 = 1;
constexpr std::uint64_t kHasID3v2 = 2;
constexpr std::uint64_t kHasTextsForFrames = 4;
constexpr std::uint64_t kIsReadByFrames = 8;
// How many whole runs in a row have not visited it, times kAgeUnit.
constexpr std::uint64_t kAgeUnit = 256;
constexpr std::uint64_t kAgeBits = 15 * kAgeUnit;
constexpr std::uint64_t kOldest =
    8 * kAgeUnit; // so that a walk over another folder forgets nothing
constexpr std::uint64_t kFileFlags =
    kHasID3v1 | kHasID3v2 | kHasTextsForFrames | kIsReadByFrames | kAgeBits;
// In memory: what the run has done with it.
constexpr std::uint64_t kIsVisited = 16;
constexpr std::uint64_t kIsForgotten = 32;

struct Header {
    std::uint64_t magic = kMagic;
    std::uint64_t recordBytes = 0;
    runtime::Hash128 circumstances;
    std::uint64_t count = 0;
};
constexpr std::size_t kHashBytes = sizeof(runtime::Hash128);
constexpr std::size_t kFrontBytes = kHashBytes + sizeof(Header);

template <class Plain>
std::string_view BytesOf(const Plain &value)
{
    static_assert(std::has_unique_object_representations_v<Plain>, "no padding");
    return {reinterpret_cast<const char *>(&value), sizeof value};
}

template <class Plain>
Plain ValueAt(std::string_view bytes, std::size_t offset)
{
    Plain value;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

// What reading a song depends on beside its file and the setting that each record names: the
// program itself and the code page. nullopt: the program's file cannot be found.
std::optional<runtime::Hash128> Circumstances()
{
    platform::FileIdentity program;
    if (platform::SystemFiles().Identify(TheProgramFile(), program) != 0)
        return std::nullopt;
    const std::array<std::uint64_t, 6> numbers = {program.device,
                                                  program.inode,
                                                  static_cast<std::uint64_t>(program.sizeBytes),
                                                  static_cast<std::uint64_t>(program.modifiedNs),
                                                  static_cast<std::uint64_t>(program.changedNs),
                                                  static_cast<std::uint64_t>(runtime::CodePage())};
    return runtime::Hash128Of(BytesOf(numbers));
}

std::uint64_t FlagsOf(const KnownSong &song)
{
    return (song.tags.hasID3v1 ? kHasID3v1 : 0) | (song.tags.hasID3v2 ? kHasID3v2 : 0) |
           (song.tags.hasTextsForFrames ? kHasTextsForFrames : 0) |
           (song.isReadByFrames ? kIsReadByFrames : 0);
}

// The hash of a path in the index. A file may have been made whose paths have all hashes but for a
// few bits alike, so that each look-up would pass all of them: so numbers that nobody can know take
// part.
std::uint32_t IndexHashOf(const runtime::Hash128 &path)
{
    static const std::array<std::uint64_t, 2> numbers = [] {
        std::random_device random;
        const auto number = [&] { return std::uint64_t{random()} << 32 | random(); };
        return std::array{number() | 1, number() | 1};
    }();
    return static_cast<std::uint32_t>((path.low * numbers[0] + path.high * numbers[1]) >> 32);
}

bool IsRegularOrAbsent(const std::string &path)
{
    platform::FileIdentity found;
    return platform::SystemFiles().Identify(path, found) != 0 ||
           found.kind == platform::FileKind::Regular;
}

} // namespace

std::string &TheProgramFile()
{
    static std::string path = platform::ProgramFile();
    return path;
}

// A program can write to a file through a mapping into its memory. Then only the first write sets
// the time of change, until the operating system has written the page to the disk; further writes
// before that set none. Linux writes such pages after 35 seconds at the latest (30 of
// vm.dirty_expire_centisecs and 5 of vm.dirty_writeback_centisecs, as they are by default).
bool CanBeKnown(const platform::FileIdentity &file, std::int64_t openedAtNs)
{
    constexpr std::int64_t kLongSettledNs = 60'000'000'000;
    return file.kind == platform::FileKind::Regular &&
           openedAtNs - file.changedNs >= kLongSettledNs &&
           platform::TheFiles().HasChangeTimes(file);
}

KnownSongs::KnownSongs(std::string file, bool isUsed, std::int64_t expected)
    : m_file(std::move(file)), m_circumstances(Circumstances()), m_isUsed(isUsed)
{
    try {
        // Reserved at once: a vector that grows needs up to three times the memory for a moment.
        constexpr auto kMost = static_cast<std::int64_t>(kMostSongs);
        m_records.reserve(static_cast<std::size_t>(std::clamp<std::int64_t>(expected, 0, kMost)));
        Load();
    } catch (const std::bad_alloc &) {
        m_records = {};
        m_index.Clear();
    }
    m_isUsed = m_isUsed && !m_records.empty(); // the songs of this run are not looked for
}

void KnownSongs::Load()
{
    constexpr std::size_t kMostBytes = kFrontBytes + kMostSongs * sizeof(Record);
    if (!m_circumstances)
        return;
    const auto bytes = platform::ReadRegularFile(m_file, kMostBytes + 1);
    if (bytes && bytes->size() >= kFrontBytes && bytes->size() <= kMostBytes)
        TakeRecords(*bytes);
}

void KnownSongs::TakeRecords(std::string_view bytes)
{
    const auto header = ValueAt<Header>(bytes, kHashBytes);
    const std::size_t recordBytes = bytes.size() - kFrontBytes;
    if (header.magic != kMagic || header.recordBytes != sizeof(Record) ||
        header.circumstances != *m_circumstances || recordBytes % sizeof(Record) != 0 ||
        header.count != recordBytes / sizeof(Record) ||
        ValueAt<runtime::Hash128>(bytes, 0) != runtime::Hash128Of(bytes.substr(kHashBytes)))
        return;
    m_records.resize(recordBytes / sizeof(Record));
    if (m_records.empty())
        return;
    std::memcpy(m_records.data(), bytes.data() + kFrontBytes, recordBytes);
    for (std::size_t item = 0; item < m_records.size(); ++item) {
        m_records[item].flags &= kFileFlags;
        AddToIndex(item);
    }
}

std::int32_t KnownSongs::IndexOf(const runtime::Hash128 &path) const
{
    return m_index.Find(BytesOf(path), IndexHashOf(path), [this](std::int32_t item) {
        return BytesOf(m_records[static_cast<std::size_t>(item)].path);
    });
}

// Of two records with the same path the first one is found.
void KnownSongs::AddToIndex(std::size_t item)
{
    const runtime::Hash128 &path = m_records[item].path;
    if (IndexOf(path) == runtime::KeyIndex::kNone)
        m_index.Insert(static_cast<std::int32_t>(item), IndexHashOf(path));
}

std::optional<KnownSong> KnownSongs::Find(const std::string &path) const
{
    if (!m_isUsed)
        return std::nullopt;
    const std::int32_t item = IndexOf(runtime::Hash128Of(path));
    if (item == runtime::KeyIndex::kNone)
        return std::nullopt;
    const Record &record = m_records[static_cast<std::size_t>(item)];
    const auto has = [&](std::uint64_t flag) { return (record.flags & flag) != 0; };
    if (has(kIsForgotten) || has(kIsReadByFrames) != shell::TheGlobals().UnicodeTags)
        return std::nullopt;
    return KnownSong{{path, record.device, record.inode, record.sizeBytes, record.modifiedNs,
                      record.changedNs, platform::FileKind::Regular},
                     {has(kHasID3v1), has(kHasID3v2), has(kHasTextsForFrames)},
                     has(kIsReadByFrames),
                     record.texts};
}

void KnownSongs::Keep(const KnownSong &song)
{
    const platform::FileIdentity &file = song.file;
    const Record record{runtime::Hash128Of(file.path),
                        song.texts,
                        file.device,
                        file.inode,
                        file.sizeBytes,
                        file.modifiedNs,
                        file.changedNs,
                        FlagsOf(song) | kIsVisited};
    const std::int32_t item = IndexOf(record.path);
    if (item == runtime::KeyIndex::kNone) {
        if (m_records.size() >= kMostSongs)
            return;
        m_index.Insert(static_cast<std::int32_t>(m_records.size()), IndexHashOf(record.path));
        m_records.push_back(record);
        m_hasChanged = true;
        return;
    }
    Record &old = m_records[static_cast<std::size_t>(item)];
    old.flags |= kIsVisited;
    m_hasChanged |= BytesOf(old) != BytesOf(record);
    old = record;
}

void KnownSongs::Forget(const std::string &path)
{
    const std::int32_t item =
        m_records.empty() ? runtime::KeyIndex::kNone : IndexOf(runtime::Hash128Of(path));
    if (item == runtime::KeyIndex::kNone)
        return;
    m_records[static_cast<std::size_t>(item)].flags |= kIsForgotten;
    m_hasChanged = true;
}

void KnownSongs::CountRow(bool hasRow)
{
    m_missesInARow = hasRow ? 0 : m_missesInARow + 1;
    m_isUsed = m_isUsed && m_missesInARow < kMostMisses;
}

bool KnownSongs::IsVisited(const Record &record)
{
    return (record.flags & kIsVisited) != 0;
}

bool KnownSongs::IsToBeSaved(const Record &record, bool isWhole)
{
    return (record.flags & kIsForgotten) == 0 &&
           (!isWhole || IsVisited(record) || (record.flags & kAgeBits) < kOldest);
}

// Leaves the records as the file has them. There may be many megabytes: no copy is made.
void KnownSongs::TurnIntoFile(bool isWhole)
{
    m_index.Clear();
    std::erase_if(m_records, [&](const Record &record) { return !IsToBeSaved(record, isWhole); });
    for (Record &record : m_records) {
        const bool isOlder = isWhole && !IsVisited(record);
        record.flags &= kFileFlags;
        if (isOlder)
            record.flags += kAgeUnit;
    }
}

// Anything but a regular file in its place (a pipe, a device, a folder) is not replaced.
void KnownSongs::Save(bool isWhole)
{
    m_hasChanged = m_hasChanged || (isWhole && !std::ranges::all_of(m_records, IsVisited));
    if (!m_circumstances || !m_hasChanged || !IsRegularOrAbsent(m_file))
        return;
    TurnIntoFile(isWhole);
    const Header header{.recordBytes = sizeof(Record),
                        .circumstances = *m_circumstances,
                        .count = m_records.size()};
    const std::string_view records(reinterpret_cast<const char *>(m_records.data()),
                                   m_records.size() * sizeof(Record));
    const runtime::Hash128 hash = runtime::Hash128Of({BytesOf(header), records});
    constexpr unsigned kOwnersAlone = 0600;
    platform::ReplaceFile(m_file, {BytesOf(hash), BytesOf(header), records}, kOwnersAlone);
    m_records = {};
}

} // namespace catalogue

// The file of the known songs: what cannot be used is ignored, and what cannot be written is not
// missed.
#include "catalogue/regeneration/knownsongs.h"
#include "shell/globals.h"
#include "tests/support/asnobody.h"
#include "tests/support/fulldisk.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <vector>

namespace fs = std::filesystem;
using catalogue::KnownSong;
using catalogue::KnownSongs;

namespace
{

constexpr std::size_t kRecordBytes = 80;

struct KnownSongsFile : testing::Test {
    static KnownSong Song(const std::string &path, std::uint64_t number = 1)
    {
        return {{path, number, 2, 3, 4, 5, platform::FileKind::Regular},
                {true, false, true},
                false,
                {number, 7}};
    }

    // The bytes of a file with two songs.
    std::string TwoSongs() const
    {
        KnownSongs songs(file, true);
        songs.Keep(Song("/a"));
        songs.Keep(Song("/b", 9));
        songs.Save(true);
        return tests::ReadFile(file);
    }

    // The hash of a changed file, made right again.
    static void Seal(std::string &bytes)
    {
        const runtime::Hash128 hash =
            runtime::Hash128Of(std::string_view(bytes).substr(sizeof(runtime::Hash128)));
        std::memcpy(bytes.data(), &hash, sizeof hash);
    }

    bool IsFound(const std::string &bytes) const
    {
        fs::remove(file); // to write into one that is there waits for the disk
        tests::WriteFile(file, bytes);
        const KnownSongs songs(file, true);
        return songs.Find("/a") || songs.Find("/b");
    }

    int Files() const
    {
        return static_cast<int>(std::distance(fs::directory_iterator(folder.Path()), {}));
    }

    tests::TestFolder folder;
    const std::string file = folder / "KnownSongs.dat";
};

void ExpectEqual(const std::optional<KnownSong> &found, const KnownSong &wanted)
{
    ASSERT_TRUE(found);
    EXPECT_EQ(found->file, wanted.file);
    EXPECT_EQ(found->tags, wanted.tags);
    EXPECT_EQ(found->isReadByFrames, wanted.isReadByFrames);
    EXPECT_EQ(found->texts, wanted.texts);
}

TEST_F(KnownSongsFile, KeepsSongs)
{
    TwoSongs();
    KnownSongs songs(file, true);
    ExpectEqual(songs.Find("/a"), Song("/a"));
    ExpectEqual(songs.Find("/b"), Song("/b", 9));
    EXPECT_FALSE(songs.Find("/c"));
    EXPECT_FALSE(KnownSongs(file, false).Find("/a"));

    KnownSong other = Song("/a", 5);
    other.tags = {false, true, false};
    other.isReadByFrames = true;
    songs.Keep(other);
    EXPECT_FALSE(songs.Find("/a"));
    shell::TheGlobals().UnicodeTags = true;
    ExpectEqual(songs.Find("/a"), other);
    EXPECT_FALSE(songs.Find("/b"));
    songs.Save(true); // only "/a" was visited
    ExpectEqual(KnownSongs(file, true).Find("/a"), other);
    shell::TheGlobals().UnicodeTags = false;
    ExpectEqual(KnownSongs(file, true).Find("/b"), Song("/b", 9));
}

// Whole runs that do not visit a song are counted, those that are stopped are not.
TEST_F(KnownSongsFile, ForgetsSongsThatNineRunsHaveNotVisited)
{
    TwoSongs();
    const auto run = [&](bool isWhole, bool visitsB) {
        KnownSongs songs(file, true);
        songs.Keep(Song("/a"));
        if (visitsB)
            songs.Keep(Song("/b", 9));
        songs.Save(isWhole);
        return KnownSongs(file, true).Find("/b").has_value();
    };
    for (const bool visitsB : {false, true, false}) {
        if (visitsB) {
            EXPECT_TRUE(run(true, visitsB));
            continue;
        }
        for (int i = 0; i < 8; ++i) {
            EXPECT_TRUE(run(true, false)) << i;
            EXPECT_TRUE(run(false, false)) << i;
        }
    }
    EXPECT_FALSE(run(true, false));
    EXPECT_TRUE(KnownSongs(file, true).Find("/a"));
    EXPECT_EQ(fs::file_size(file), 56U + 80);
}

TEST_F(KnownSongsFile, ForgetsSongs)
{
    TwoSongs();
    KnownSongs songs(file, true);
    songs.Forget("/a");
    songs.Forget("/c");
    EXPECT_FALSE(songs.Find("/a"));
    songs.Save(false);
    EXPECT_FALSE(KnownSongs(file, true).Find("/a"));
    KnownSongs again(file, true);
    EXPECT_TRUE(again.Find("/b"));
    again.Forget("/b");
    again.Keep(Song("/b", 3));
    ExpectEqual(again.Find("/b"), Song("/b", 3));
}

TEST_F(KnownSongsFile, IsWrittenOnlyWhenItChanges)
{
    TwoSongs();
    struct stat before = {}, after = {};
    ASSERT_EQ(stat(file.c_str(), &before), 0);
    EXPECT_EQ(before.st_mode & 0777, 0600U);
    const auto save = [&](const std::vector<KnownSong> &kept, bool isWhole) {
        KnownSongs songs(file, true);
        for (const KnownSong &song : kept)
            songs.Keep(song);
        songs.Save(isWhole);
    };
    save({Song("/a")}, false);
    save({Song("/a"), Song("/b", 9)}, true);
    ASSERT_EQ(stat(file.c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    save({Song("/a"), Song("/b", 8)}, true);
    ExpectEqual(KnownSongs(file, true).Find("/b"), Song("/b", 8));
    EXPECT_EQ(Files(), 1);
}

TEST_F(KnownSongsFile, OneThatIsDamagedAnywhereIsIgnored)
{
    const std::string whole = TwoSongs();
    ASSERT_TRUE(IsFound(whole));
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(IsFound(whole.substr(0, length))) << length;
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const int bits : {1, 0x80, 0xFF}) {
            std::string damaged = whole;
            damaged[at] = static_cast<char>(damaged[at] ^ bits);
            EXPECT_FALSE(IsFound(damaged)) << at;
        }
    EXPECT_FALSE(IsFound(whole + whole.substr(whole.size() - 80)));
    EXPECT_FALSE(IsFound(std::string(10'000, '\0')));
}

TEST_F(KnownSongsFile, OneWhoseHashIsRightIsNotTrustedEither)
{
    const std::string whole = TwoSongs();
    constexpr std::size_t kFront = 56;
    const auto changed = [&](std::size_t at, std::uint64_t number) {
        std::string bytes = whole;
        std::memcpy(bytes.data() + at, &number, sizeof number);
        Seal(bytes);
        return bytes;
    };
    std::uint64_t magic = 0, count = 0;
    std::memcpy(&magic, whole.data() + 16, sizeof magic);
    std::memcpy(&count, whole.data() + 48, sizeof count);
    EXPECT_EQ(count, 2U);
    EXPECT_TRUE(IsFound(changed(16, magic)));
    EXPECT_FALSE(IsFound(changed(16, magic + 1)));
    EXPECT_FALSE(IsFound(changed(24, 72)));
    EXPECT_FALSE(IsFound(changed(32, 0)));
    for (const std::uint64_t wrong : {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{3},
                                      std::uint64_t{1} << 60U, ~std::uint64_t{0}})
        EXPECT_FALSE(IsFound(changed(48, wrong))) << wrong;
    // Flags that have no meaning in the file.
    EXPECT_TRUE(IsFound(changed(kFront + 72, ~std::uint64_t{8})));
    std::string longer = whole + std::string(79, 'x');
    Seal(longer);
    EXPECT_FALSE(IsFound(longer));
    std::string twice = whole + whole.substr(kFront);
    count = 4;
    std::memcpy(twice.data() + 48, &count, sizeof count);
    Seal(twice);
    EXPECT_TRUE(IsFound(twice)) << "two records with one path";
}

// With all of them in one place of the index this would take minutes.
TEST_F(KnownSongsFile, PathsThatWereMadeAlikeAreFoundAsFastAsOthers)
{
    constexpr std::uint64_t kSongs = 200'000;
    const std::string two = TwoSongs();
    const std::string front = two.substr(0, two.size() - 2 * kRecordBytes);
    std::string record = two.substr(front.size(), kRecordBytes), bytes = front;
    for (std::uint64_t i = 0; i < kSongs; ++i) {
        const runtime::Hash128 path = {(i << 32) + 5, i % 2};
        std::memcpy(record.data(), &path, sizeof path);
        bytes += record;
    }
    bytes += two.substr(front.size());
    const std::uint64_t count = kSongs + 2;
    std::memcpy(bytes.data() + front.size() - sizeof count, &count, sizeof count);
    Seal(bytes);
    EXPECT_TRUE(IsFound(bytes));
}

TEST_F(KnownSongsFile, OneThatIsTooLargeIsIgnored)
{
    TwoSongs();
    fs::resize_file(file, std::uintmax_t{1} << 40U); // a hole: it takes no room
    KnownSongs songs(file, true);
    EXPECT_FALSE(songs.Find("/a"));
    songs.Keep(Song("/a"));
    songs.Save(true);
    EXPECT_TRUE(KnownSongs(file, true).Find("/a"));
    EXPECT_LT(fs::file_size(file), 1000U);
}

TEST_F(KnownSongsFile, HasAnUpperBound)
{
    KnownSongs songs(file, true);
    for (int i = 0; i < 250'010; ++i)
        songs.Keep(Song("/" + std::to_string(i)));
    songs.Save(true);
    EXPECT_EQ(fs::file_size(file), 56U + 250'000U * 80);
    KnownSongs again(file, true);
    EXPECT_TRUE(again.Find("/249999"));
    EXPECT_FALSE(again.Find("/250000"));
}

TEST_F(KnownSongsFile, StaysWhereItCannotBeWritten)
{
    const std::string before = TwoSongs();
    {
        const tests::FullDisk full(100);
        KnownSongs songs(file, true);
        songs.Keep(Song("/a", 100));
        songs.Save(true);
    }
    EXPECT_EQ(tests::ReadFile(file), before);
    EXPECT_EQ(Files(), 1) << "nothing is left beside it";
    ASSERT_EQ(chmod(file.c_str(), 0644), 0);
    ASSERT_EQ(chmod(folder.Path().c_str(), 0555), 0);
    {
        const tests::AsNobody nobody;
        KnownSongs songs(file, true);
        EXPECT_TRUE(songs.Find("/a"));
        songs.Keep(Song("/a", 100));
        songs.Save(true);
    }
    ASSERT_EQ(chmod(folder.Path().c_str(), 0755), 0);
    EXPECT_EQ(tests::ReadFile(file), before);
    EXPECT_EQ(Files(), 1);
}

// Each of two processes at once writes what it has read; the file is always whole.
TEST_F(KnownSongsFile, OfTwoWritersTheLastOneCounts)
{
    TwoSongs();
    KnownSongs first(file, true), second(file, true);
    first.Keep(Song("/a", 20));
    second.Keep(Song("/b", 30));
    second.Save(false);
    ExpectEqual(KnownSongs(file, true).Find("/b"), Song("/b", 30));
    first.Save(false);
    ExpectEqual(KnownSongs(file, true).Find("/a"), Song("/a", 20));
    ExpectEqual(KnownSongs(file, true).Find("/b"), Song("/b", 9));
}

TEST_F(KnownSongsFile, IsNotUsedWhereTheCatalogueIsAnother)
{
    TwoSongs();
    KnownSongs songs(file, true);
    for (int i = 0; i < 31; ++i)
        songs.CountRow(false);
    songs.CountRow(true);
    for (int i = 0; i < 31; ++i)
        songs.CountRow(false);
    EXPECT_TRUE(songs.Find("/a"));
    songs.CountRow(false);
    EXPECT_FALSE(songs.Find("/a"));
    songs.CountRow(true);
    EXPECT_FALSE(songs.Find("/a"));
    songs.Keep(Song("/b", 4));
    songs.Save(false);
    EXPECT_TRUE(KnownSongs(file, true).Find("/a"));
    ExpectEqual(KnownSongs(file, true).Find("/b"), Song("/b", 4));
}

} // namespace

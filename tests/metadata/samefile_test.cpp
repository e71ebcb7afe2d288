// What GetMP3Info still knows of the files that it has read: the last one's bytes, the state of the
// last ones.
#include "metadata/mp3info.h"
#include "tests/metadata/countedfiles.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <optional>

namespace fs = std::filesystem;

namespace tests
{

namespace
{

using metadata::ReadSongInfo;
using metadata::SongInfo;

class SameFile : public CountedSongs
{
};

TEST_F(SameFile, TheSameFileAgainIsNotReadAgain)
{
    const std::string path = Song("a.mp3", "x");
    m_files.shiftNs = -kHourNs; // its last change was long ago
    const SongInfo first = ReadSongInfo(path);
    m_files.reads = m_files.opens = 0;
    EXPECT_EQ(ReadSongInfo(path), first);
    EXPECT_EQ(m_files.opens, 0);
    EXPECT_EQ(m_files.identifications, 1);
    EXPECT_EQ(metadata::RawID3v2Body(), Frame3("TIT2", "x"));

    const std::string other = Song("b.mp3", "y");
    EXPECT_EQ(ReadSongInfo(other).id3v2.Title, "y");
    EXPECT_EQ(m_files.opens, 1);
    EXPECT_EQ(ReadSongInfo(path), first);
    EXPECT_EQ(m_files.opens, 2);
}

TEST_F(SameFile, TheSecondPassFillsWhatTheFirstLeftOut)
{
    const std::string path = Song("a.mp3", "x");
    m_files.shiftNs = -kHourNs;
    EXPECT_EQ(ReadSongInfo(path, true).id3v1.Genre, -1);
    EXPECT_EQ(metadata::RawID3v1Image(), "");
    EXPECT_EQ(ReadSongInfo(path, false).id3v1.Genre, 2);
    EXPECT_EQ(metadata::RawID3v1Image().substr(0, 4), "TAGx");
    EXPECT_EQ(m_files.opens, 1);
}

TEST_F(SameFile, AFileThatHasJustChangedIsReadAgain)
{
    const std::string path = Song("a.mp3", "x");
    ReadSongInfo(path);
    ReadSongInfo(path);
    EXPECT_EQ(m_files.opens, 2); // another change could have the same time stamp
}

TEST_F(SameFile, HowOldAChangeMustBeToBeTrusted)
{
    constexpr std::int64_t kSecondNs = 1'000'000'000;
    const std::string path = Song("a.mp3", "x");
    const std::int64_t now = m_files.StampClockNs();
    const std::int64_t fine = now - now % kSecondNs + 500'000'007;
    const struct {
        const char *name;
        std::int64_t changedNs;
        int wantOpens;
    } cases[] = {
        {"a fine stamp of just now", now - 50'000'001 + (now % 2), 2},
        {"a fine stamp of seconds ago", fine - 2 * kSecondNs, 1},
        {"whole seconds, two ago", now - now % kSecondNs - kSecondNs, 2},
        {"whole seconds, ten ago", now - now % kSecondNs - 10 * kSecondNs, 1},
        {"in the future", fine + 100 * kSecondNs, 2},
    };
    for (const auto &c : cases) {
        metadata::ResetMP3Info();
        m_files.opens = 0;
        m_files.changedNs = c.changedNs;
        ReadSongInfo(path);
        ReadSongInfo(path);
        EXPECT_EQ(m_files.opens, c.wantOpens) << c.name;
    }
}

TEST_F(SameFile, AChangedOrReplacedFileIsReadAgain)
{
    const std::string path = Song("a.mp3", "x");
    m_files.shiftNs = -kHourNs;
    ReadSongInfo(path);
    Song("a.mp3", "y");
    EXPECT_EQ(ReadSongInfo(path).id3v2.Title, "y");
    Song("b.mp3", "z");
    fs::rename(m_folder / "b.mp3", path);
    EXPECT_EQ(ReadSongInfo(path).id3v2.Title, "z");
    fs::remove(path);
    ReadSongInfo(path);
    EXPECT_EQ(metadata::LastReadFailure(), ENOENT);
}

TEST_F(SameFile, WhatTheLastPassOverAPathSaw)
{
    const std::string path = Song("a.mp3", "x");
    EXPECT_EQ(metadata::LastSeen(path), std::nullopt);
    ReadSongInfo(path);
    platform::FileIdentity now;
    ASSERT_EQ(m_files.Identify(path, now), 0);
    for (int i = 1; i < 64; ++i)
        ReadSongInfo(m_folder / std::to_string(i));
    for (int i = 0; i < 100; ++i) // the song that plays is read again and again
        ReadSongInfo(m_folder / "63");
    EXPECT_EQ(metadata::LastSeen(path), now);
    EXPECT_EQ(metadata::LastSeen(m_folder / "63"), std::nullopt);
    ReadSongInfo(m_folder / "64");
    EXPECT_EQ(metadata::LastSeen(path), std::nullopt);

    ReadSongInfo(path);
    EXPECT_EQ(metadata::LastSeen(path), now);
    fs::remove(path);
    ReadSongInfo(path); // could not open it
    EXPECT_EQ(metadata::LastSeen(path), std::nullopt);
}

TEST_F(SameFile, TheStateHasThePathOfItsFile)
{
    const std::string path = Song("a.mp3", "x");
    ReadSongInfo(path);
    platform::FileIdentity now;
    ASSERT_EQ(m_files.Identify(path, now), 0);
    EXPECT_EQ(metadata::RawTagsFile(), now);
}

} // namespace

} // namespace tests

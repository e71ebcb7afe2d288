// Complete files before and after an edit, byte for byte.
#include "metadata/id3v1.h"
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "tests/metadata/songedit.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace tests
{

namespace
{

using metadata::ReadSongInfo;

class SaveTag : public SongEdit
{
};

TEST_F(SaveTag, TitleOverAnOldTag)
{
    const std::string picture = Frame3("APIC", Z("image/png\0\x03\0") + std::string(100, 'p'));
    const std::string padding(64, '\0');
    const std::string old =
        Frame3("TIT2", "Old") + picture + Frame3("TCON", "(17)") + Frame3("TRCK", "3") + padding;
    Song(Tag(3, old) + AudioBytes() + Tag1("One", "", "", "", "", 3, 17));
    m_pass.id3v2.Title = "New";
    m_pass.id3v2.Genre = "Rock";
    EXPECT_TRUE(Save(true, true));
    ExpectSong(Tag(3, Frame3("TIT2", "New") + Frame3("TCON", "(17)Rock") + Frame3("TRCK", "3") +
                          picture + padding) +
               AudioBytes() + Tag1("One", "", "", "", "", 3, 17));
}

TEST_F(SaveTag, NothingChanged)
{
    const std::string bytes =
        Tag(3, Frame3("TIT2", "Title") + GenreAndTrack("(17)Rock", "3") + std::string(10, '\0')) +
        AudioBytes() + Tag1("One", "", "", "", "", 3, 17);
    Song(bytes);
    const auto before = fs::last_write_time(m_path);
    m_pass.id3v2.Genre = m_old.id3v2.Genre = "Rock";
    EXPECT_FALSE(Save(true, true));
    EXPECT_EQ(fs::last_write_time(m_path), before);
    ExpectSong(bytes);
    EXPECT_EQ(m_desk.pointers,
              (std::vector{platform::Pointer::Hourglass, platform::Pointer::Normal}));
}

TEST_F(SaveTag, OnlyTheID3v1TagChanges)
{
    const std::string start =
        Tag(3, Frame3("TIT2", "Title") + GenreAndTrack("(17)Rock", "3")) + AudioBytes();
    Song(start + Tag1("One", "", "", "", "", 3, 17));
    m_pass.id3v2.Genre = m_old.id3v2.Genre = "Rock";
    m_pass.id3v1.Title = "Other";
    EXPECT_TRUE(Save(true, true));
    ExpectSong(start + Tag1("Other", "", "", "", "", 3, 17));
}

TEST_F(SaveTag, AddingAnID3v1TagAloneKeepsEveryByte)
{
    Song(AudioBytes());
    m_pass.id3v1.Title = "New";
    EXPECT_TRUE(Save(true, false)); // no ID3v2 tag is removed: the whole song is kept
    ExpectSong(AudioBytes() + Tag1("New", "", "", "", "", 0, 255));
}

TEST_F(SaveTag, NewID3v2TagWhereThereWasNoneLosesTenBytesOfAudio)
{
    Song(AudioBytes());
    m_pass.id3v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    const std::string audio = AudioBytes();
    ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack()) +
               audio.substr(0, audio.size() - 10));
}

TEST_F(SaveTag, NewTagsWhereThereWasAnID3v1TagLoseTenBytesOfAudio)
{
    Song(AudioBytes() + Tag1("One", "", "", "", "", 3, 17));
    m_pass.id3v2.Title = "New";
    EXPECT_TRUE(Save(true, true));
    const std::string audio = AudioBytes();
    ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack()) +
               audio.substr(0, audio.size() - 10) + Tag1("One", "", "", "", "", 3, 17));
}

TEST_F(SaveTag, UncheckedTagsLeaveTheFile)
{
    const std::string body = Frame3("TIT2", "Title") + std::string(30, '\0');
    const std::string image = Tag1("One", "", "", "", "", 3, 17);
    Song(Tag(3, body) + AudioBytes() + image);
    EXPECT_TRUE(Save(false, false));
    ExpectSong(AudioBytes(), "both");
    Song(Tag(3, body) + AudioBytes() + image);
    EXPECT_TRUE(Save(true, false));
    ExpectSong(AudioBytes() + image, "ID3v2");
    Song(Tag(3, Frame3("TIT2", "Title") + GenreAndTrack()) + AudioBytes() + image);
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, Frame3("TIT2", "Title") + GenreAndTrack("(0)")) + AudioBytes(), "ID3v1");
}

TEST_F(SaveTag, AnUncheckedID3v2TagThatIsNotThereIsUnchanged)
{
    Song(AudioBytes() + Tag1("One", "", "", "", "", 3, 17));
    EXPECT_FALSE(Save(true, false));
    EXPECT_TRUE(Save(false, false)); // the ID3v1 tag is removed: only the audio is kept
    const std::string audio = AudioBytes();
    ExpectSong(audio.substr(0, audio.size() - 10));
}

// The image in the module is from an earlier file, and is equal to it.
TEST_F(SaveTag, NeitherTagAndAnEarlierImageShortensTheAudioByTen)
{
    WriteFile(m_desk.program / "earlier.mp3", AudioBytes() + Tag1("One", "", "", "", "", 3, 17));
    ReadSongInfo(m_desk.program / "earlier.mp3");
    Song(AudioBytes());
    ASSERT_EQ(metadata::RawID3v1Image().size(), 128u);
    EXPECT_TRUE(Save(false, false));
    const std::string audio = AudioBytes();
    ExpectSong(audio.substr(0, audio.size() - 10));
}

TEST_F(SaveTag, AnEarlierFilesImageNeverCostsAudio)
{
    WriteFile(m_desk.program / "earlier.mp3", AudioBytes() + Tag1("One", "", "", "", "", 3, 17));
    ReadSongInfo(m_desk.program / "earlier.mp3");
    Song(AudioBytes());
    m_pass.id3v1.Title = "New";
    EXPECT_TRUE(Save(true, false));
    ExpectSong(AudioBytes() + Tag1("New", "", "", "", "", 0, 255));
}

TEST_F(SaveTag, ClearedFields)
{
    const std::string rest = Frame3("PRIV", "kept");
    const std::string old = Frame3("TIT2", "T") + Frame3("TPE1", "A") + Frame3("TALB", "L") +
                            Frame3("TYER", "1999") + Frame3("COMM", Z("eng\0Words")) +
                            Frame3("USLT", Z("eng\0La")) + rest;
    Song(Tag(3, old) + AudioBytes());
    m_pass.id3v2.Title = m_pass.id3v2.Artist = m_pass.id3v2.Album = m_pass.id3v2.Year =
        m_pass.id3v2.Comment = m_pass.id3v2.Lyrics = "";
    EXPECT_TRUE(Save(false, true));
    // The comment's data stays as loose bytes.
    ExpectSong(Tag(3, GenreAndTrack() + Z("eng\0Words") + rest) + AudioBytes());
}

TEST_F(SaveTag, AClearedFieldThatHadNoFrameIsAChange)
{
    const std::string bytes = Tag(3, GenreAndTrack()) + AudioBytes();
    Song(bytes);
    m_pass.id3v2.Genre = m_old.id3v2.Genre = "-1";
    m_old.id3v2.Title = "only in the record";
    EXPECT_TRUE(Save(false, true));
    ExpectSong(bytes);
}

TEST_F(SaveTag, AChangedComment)
{
    const std::string old = Frame3("COMM", Z("eng\0old"));
    Song(Tag(3, old) + AudioBytes());
    m_pass.id3v2.Comment = "new";
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, Frame3("COMM", Z("eng\0new")) + GenreAndTrack() + old) + AudioBytes());
    EXPECT_EQ(ReadSongInfo(m_path).id3v2.Comment, "new");
}

// A genre that was read is a number in text form, which is not in the table; and "255" is the text
// of number 0. The tag editor uses names instead.
TEST_F(SaveTag, AGenreAsItWasRead)
{
    Song(Tag(3, Frame3("TCON", "(17)Rock") + Frame3("TRCK", "0")) + AudioBytes());
    EXPECT_EQ(m_pass.id3v2.Genre, "17");
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, GenreAndTrack("(255)Rock")) + AudioBytes());
    m_pass = m_old = ReadSongInfo(m_path);
    EXPECT_EQ(m_pass.id3v2.Genre, "255");
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, GenreAndTrack("(0)")) + AudioBytes());
}

TEST_F(SaveTag, ClearedGenreIsWrittenAllTheSame)
{
    Song(Tag(3, Frame3("TCON", "Pop") + Frame3("TRCK", "0")) + AudioBytes());
    m_pass.id3v2.Genre = "";
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, GenreAndTrack()) + AudioBytes());
}

// One is removed because the field was emptied, the next one because the genre is written again.
TEST_F(SaveTag, AClearedGenreTakesTwoFramesAlong)
{
    const std::string pop = Frame3("TCON", "Pop");
    Song(Tag(3, pop + pop + pop) + AudioBytes());
    m_pass.id3v2.Genre = "";
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, GenreAndTrack() + pop) + AudioBytes());
}

// The last pass preferred the other tag and did not read this one.
TEST_F(SaveTag, AnID3v1TagThatWasPassedOverIsReplaced)
{
    const std::string start = Tag(3, Frame3("TIT2", "Title") + GenreAndTrack()) + AudioBytes();
    Song(start + Tag1("One", "", "", "", "", 3, 17));
    m_old.id3v2.Genre = m_pass.id3v2.Genre = "-1";
    ReadSongInfo(m_path, true);
    m_pass.id3v1.Title = "Two";
    EXPECT_TRUE(Save(true, true));
    ExpectSong(start + Tag1("Two", "", "", "", "", 3, 17));
    ReadSongInfo(m_path, true);
    m_pass.id3v2.Genre = "-1";
    EXPECT_FALSE(Save(true, true)); // which it has already
}

TEST_F(SaveTag, Version2BodyUnderAVersion3Header)
{
    const std::string body = Z("TT2\0\0\x06\0Title") + std::string(20, '\0');
    Song(Tag(2, body) + AudioBytes());
    m_pass.id3v2 = {};
    m_old.id3v2 = {};
    m_pass.id3v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack() + body) + AudioBytes());
}

TEST_F(SaveTag, ATagThatClaimsTooMuchStaysAsAudio)
{
    const std::string bytes = "ID3" + Z("\x03\0\0\x7F\x7F\x7F\x7F") + AudioBytes();
    const auto openFiles = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), {});
    };
    const auto before = openFiles();
    Song(bytes);
    EXPECT_EQ(openFiles(), before + 1);
    m_pass.id3v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    EXPECT_EQ(openFiles(), before);
    ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack()) +
               bytes.substr(0, bytes.size() - 10));
}

TEST_F(SaveTag, FilesTooShortForTheWayAreLeft)
{
    const std::string whole = Tag(3, Frame3("TIT2", "x"));
    for (const std::string &bytes :
         {std::string(), std::string("short"), whole.substr(0, 20), whole.substr(0, 17)}) {
        SCOPED_TRACE(bytes.size());
        Song(bytes);
        m_pass.id3v2.Title = "New";
        Save(false, true);
        EXPECT_EQ(m_desk.boxes,
                  std::vector<std::string>{m_path + ": Invalid procedure call or argument"});
        EXPECT_EQ(ReadFile(m_path), bytes);
        m_desk.boxes.clear();
    }
}

TEST_F(SaveTag, LargeTags)
{
    const std::string picture = Frame3("APIC", std::string(20 << 20, 'p'));
    Song(Tag(3, Frame3("TIT2", "Old") + picture + std::string(1000, '\0')) + AudioBytes(300'000));
    m_pass.id3v2.Title = std::string(10'000, 't');
    m_pass.id3v2.Lyrics = std::string(1 << 20, 'l');
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, Frame3("TIT2", m_pass.id3v2.Title) + Frame3("TCON", "(255)") +
                          Frame3("USLT", Z("\0\0\0\0") + m_pass.id3v2.Lyrics) +
                          Frame3("TRCK", "0") + picture + std::string(1000, '\0')) +
               AudioBytes(300'000));
}

} // namespace

} // namespace tests

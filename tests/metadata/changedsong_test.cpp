// The module's state after a pass is for one file: what an edit does when another file was read
// since, or when the song was changed or deleted.
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "shell/globals.h"
#include "tests/metadata/songedit.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

namespace fs = std::filesystem;

namespace tests
{

namespace
{

using metadata::ReadSongInfo;

class ChangedSong : public SongEdit
{
};

TEST_F(ChangedSong, AnotherSongReadAtEveryYield)
{
    const std::string other = m_desk.program / "other.mp3";
    WriteFile(other, Tag(3, Frame3("TIT2", "Other") + std::string(777, 'x')) + AudioBytes(900) +
                         Tag1("Other", "", "", "", "", 9, 9));
    m_desk.onYield = [&] { ReadSongInfo(other); };
    shell::TheGlobals().BackUpFiles = true;
    const std::string old = Frame3("TIT2", "Old") + Frame3("PRIV", "kept");
    const std::string image = Tag1("One", "", "", "", "", 3, 17);
    Song(Tag(3, old) + AudioBytes() + image);
    ReadSongInfo(other); // also between the two
    m_pass.id3v2.Title = "New";
    EXPECT_TRUE(Save(true, true));
    ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack() + Frame3("PRIV", "kept")) +
               AudioBytes() + image);
    EXPECT_TRUE(ReadSongInfo(m_path).id3v2.Title == "New");
    ReadSongInfo(other);
    m_pass.id3v1.Title = "Two";
    m_old = m_pass = ReadSongInfo(m_path);
    m_pass.id3v1.Title = "Two";
    EXPECT_TRUE(Save(true, false)); // the ID3v2 tag is removed: only the audio is kept
    ExpectSong(AudioBytes() + Tag1("Two", "", "", "", "", 3, 17));
}

TEST_F(ChangedSong, TheSameRecordAsOldAndNewAfterAnotherSong)
{
    WriteFile(m_desk.program / "other.mp3", AudioBytes());
    Song(Tag(3, Frame3("USLT", Z("eng\0old"))) + AudioBytes());
    m_pass.id3v2.Lyrics = "new";
    ReadSongInfo(m_desk.program / "other.mp3");
    EXPECT_TRUE(metadata::SaveTag(m_pass.id3v1, m_pass.id3v2, m_pass.id3v1, m_pass.id3v2, m_path,
                                  false, true, nullptr));
    ExpectSong(
        Tag(3, Frame3("TCON", "(255)") + Frame3("USLT", Z("\0\0\0\0new")) + Frame3("TRCK", "0")) +
        AudioBytes());
}

TEST_F(ChangedSong, ManyOtherSongsLaterTheTagsDecide)
{
    Song(Tag(3, Frame3("TIT2", "Old")) + AudioBytes());
    for (int i = 0; i < 100; ++i)
        ReadSongInfo(m_desk.program / std::to_string(i));
    m_pass.id3v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack()) + AudioBytes());

    const struct {
        std::string before, changed;
    } cases[] = {{Frame3("TIT2", "Old"), Frame3("TIT2", "Changed")},
                 {"", Frame3("TPE1", "Changed")},
                 {"", Frame3("TALB", "Changed")},
                 {"", Frame3("TYER", "1999")},
                 {"", Frame3("TCON", "(17)")},
                 {"", Frame3("TRCK", "7")},
                 {"", Frame3("COMM", Z("eng\0Changed"))},
                 {"", Frame3("USLT", Z("eng\0Changed"))}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.changed);
        const std::string changed = Tag(3, c.changed) + AudioBytes();
        Song(Tag(3, c.before) + AudioBytes());
        WriteFile(m_path, changed);
        for (int i = 0; i < 100; ++i)
            ReadSongInfo(m_desk.program / std::to_string(i));
        m_pass.id3v2.Title = "New";
        m_desk.boxes.clear();
        EXPECT_FALSE(Save(false, true));
        EXPECT_EQ(m_desk.boxes.size(), 1u);
        EXPECT_TRUE(ReadFile(m_path) == changed);
    }
}

// A program that changes the song `atYield` yields into the edit (0 = before it).
TEST_F(ChangedSong, ASongChangedInBetweenIsNotOverwritten)
{
    WriteFile(m_desk.program / "other.mp3", AudioBytes());
    shell::TheGlobals().BackUpFiles = true;
    const std::string before = Tag(3, Frame3("TIT2", "Old")) + AudioBytes();
    const std::string changed = Tag(3, Frame3("TIT2", "Theirs")) + AudioBytes(6000);
    int reported = 0;
    for (const bool otherBetween : {false, true})
        for (int atYield = 0; atYield < 200; ++atYield) {
            Song(before);
            m_desk.boxes.clear();
            m_desk.yields = 0;
            bool wasWritten = false; // when the other program changes the song
            m_desk.onYield = [&] {
                if (m_desk.yields != atYield)
                    return;
                wasWritten = ReadFile(m_path) != before;
                WriteFile(m_path, changed);
            };
            if (otherBetween)
                ReadSongInfo(m_desk.program / "other.mp3");
            if (atYield == 0)
                WriteFile(m_path, changed);
            m_pass.id3v2.Title = "New";
            const bool result = Save(false, true);
            m_desk.onYield = nullptr;
            EXPECT_FALSE(fs::exists(m_path + ".bck"));
            if (m_desk.yields < atYield)
                break;
            EXPECT_TRUE(ReadFile(m_path) == changed) << atYield;
            EXPECT_EQ(result, wasWritten) << atYield;
            ASSERT_EQ(m_desk.boxes.size(), wasWritten ? 0u : 1u) << atYield;
            if (wasWritten)
                continue;
            ++reported;
            EXPECT_TRUE(m_desk.boxes[0].find("was changed by another program") !=
                        std::string::npos);
        }
    EXPECT_GT(reported, 100);
}

TEST_F(ChangedSong, ASongReplacedByOneOfTheSameSizeIsNotOverwritten)
{
    const std::string theirs = Tag(3, Frame3("TIT2", "Odd")) + AudioBytes();
    for (const char *step : {"", "Writing the new MP3 file"}) {
        ui::Label label;
        Song(Tag(3, Frame3("TIT2", "Old")) + AudioBytes());
        m_desk.onYield = [&] {
            if (label.Caption() != step || fs::exists(m_path + ".bck"))
                return;
            WriteFile(m_path + ".new", theirs);
            fs::rename(m_path + ".new", m_path);
        };
        m_pass.id3v2.Title = "New";
        m_desk.boxes.clear();
        EXPECT_FALSE(Save(false, true, &label));
        m_desk.onYield = nullptr;
        ASSERT_EQ(m_desk.boxes.size(), 1u);
        EXPECT_NE(m_desk.boxes[0].find("was changed by another program"), std::string::npos);
        EXPECT_TRUE(ReadFile(m_path) == theirs);
    }
}

// Before the copy is written, the edit has changed nothing, not even the catalogue.
TEST_F(ChangedSong, ASongChangedBeforeItsCopyIsWrittenStaysInTheCatalogueAsItIs)
{
    shell::TheGlobals().BackUpFiles = true;
    shell::TheGlobals().UpdateDBAfterEditing = true;
    int updates = 0;
    metadata::TheTagWriterHooks().updateCatalogue = [&](const metadata::ID3v2Tag &,
                                                        const std::string &) { ++updates; };
    const std::string changed = AudioBytes(300); // shorter than what is to be copied
    for (const std::string_view step :
         {"Creating the ID3v1 Tag", "Creating the ID3v2 Tag", "Backing-Up the MP3",
          "Processing the MP3", "Reading the whole MP3 file", "Writing the new MP3 file"}) {
        SCOPED_TRACE(step);
        ui::Label label;
        m_desk.boxes.clear();
        m_desk.onYield = nullptr;
        Song(Tag(3, Frame3("TIT2", "Old")) + AudioBytes());
        m_desk.onYield = [&] {
            if (label.Caption() == step)
                WriteFile(m_path, changed);
        };
        m_pass.id3v2.Title = "New";
        EXPECT_FALSE(Save(true, true, &label));
        ASSERT_EQ(m_desk.boxes.size(), 1u);
        EXPECT_NE(m_desk.boxes[0].find("was changed by another program"), std::string::npos);
        EXPECT_TRUE(ReadFile(m_path) == changed);
        EXPECT_FALSE(fs::exists(m_path + ".bck"));
        EXPECT_EQ(updates, 0);
    }
}

// Another edit of the same song writes its own ".bck"; `atYield` runs during this one.
TEST_F(ChangedSong, TheCopyOfAnotherEditIsNeitherTakenNorDeleted)
{
    const std::string before = Tag(3, Frame3("TIT2", "Old")) + AudioBytes();
    int reported = 0;
    for (int atYield = 1; atYield < 400; ++atYield) {
        SCOPED_TRACE(atYield);
        fs::remove(m_path + ".bck");
        Song(before);
        m_desk.boxes.clear();
        m_desk.yields = 0;
        bool ours = false; // the copy made by this edit was there
        m_desk.onYield = [&] {
            if (m_desk.yields != atYield)
                return;
            ours = fs::exists(m_path + ".bck");
            WriteFile(m_path + ".their", "theirs");
            fs::rename(m_path + ".their", m_path + ".bck");
        };
        m_pass.id3v2.Title = "New";
        const bool result = Save(false, true);
        m_desk.onYield = nullptr;
        if (m_desk.yields < atYield)
            break;
        EXPECT_EQ(result, !ours);
        if (!ours) {
            EXPECT_EQ(metadata::ReadSongInfo(m_path).id3v2.Title, "New");
            EXPECT_TRUE(m_desk.boxes.empty());
            continue;
        }
        ++reported;
        ASSERT_EQ(m_desk.boxes.size(), 1u);
        EXPECT_TRUE(m_desk.boxes[0].find("is being edited by another program") !=
                    std::string::npos);
        EXPECT_TRUE(ReadFile(m_path) == before);
        EXPECT_EQ(ReadFile(m_path + ".bck"), "theirs");
    }
    EXPECT_GT(reported, 50);
}

// A second edit of the same song at every yield of the first: one of them is refused with a reason,
// the other one is in the file, and no copy is left.
TEST_F(ChangedSong, OfTwoEditsAtOnceOneIsRefused)
{
    const std::string before = Tag(3, Frame3("TIT2", "Old")) + AudioBytes();
    // In the order in which they occur, the later the second edit begins.
    enum class End { FirstRefused, SecondRefused, OneAfterTheOther };
    End end = End::FirstRefused;
    int refusedSecond = 0;
    for (int atYield = 1; atYield < 400; ++atYield) {
        SCOPED_TRACE(atYield);
        Song(before);
        m_desk.boxes.clear();
        m_desk.yields = 0;
        std::optional<bool> second;
        m_desk.onYield = [&] {
            if (m_desk.yields < atYield || second)
                return;
            second = false; // its own yields call this too
            metadata::SongInfo old = metadata::ReadSongInfo(m_path);
            metadata::SongInfo now = old;
            now.id3v2.Title = "Second";
            second = metadata::SaveTag(now.id3v1, now.id3v2, old.id3v1, old.id3v2, m_path, false,
                                       true, nullptr);
        };
        m_pass.id3v2.Title = "First";
        const bool first = Save(false, true);
        m_desk.onYield = nullptr;
        if (!second)
            break;
        EXPECT_FALSE(fs::exists(m_path + ".bck"));
        const std::string title = metadata::ReadSongInfo(m_path).id3v2.Title;
        ASSERT_TRUE(first || *second);
        const End now = !first    ? End::FirstRefused
                        : *second ? End::OneAfterTheOther
                                  : End::SecondRefused;
        EXPECT_GE(now, end);
        end = now;
        EXPECT_EQ(title, now == End::SecondRefused ? "First" : "Second");
        if (now == End::OneAfterTheOther) {
            EXPECT_TRUE(m_desk.boxes.empty());
            continue;
        }
        ASSERT_EQ(m_desk.boxes.size(), 1u);
        const char *reason = now == End::SecondRefused ? "is being edited by another program"
                                                       : "was changed by another";
        EXPECT_NE(m_desk.boxes[0].find(reason), std::string::npos) << m_desk.boxes[0];
        refusedSecond += now == End::SecondRefused ? 1 : 0;
    }
    EXPECT_EQ(end, End::OneAfterTheOther);
    EXPECT_GT(refusedSecond, 50);
}

TEST_F(ChangedSong, ASongThatDoesNotExistOrCannotBeRead)
{
    Song(AudioBytes());
    fs::remove(m_path);
    m_pass.id3v2.Title = "New";
    EXPECT_FALSE(Save(false, true));
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{m_path + ": No such file or directory"});
    EXPECT_FALSE(fs::exists(m_path));
    ReadSongInfo(m_path);
    EXPECT_FALSE(Save(false, true));
    EXPECT_EQ(m_desk.boxes.back(), m_path + ": No such file or directory");
    fs::create_directory(m_path);
    ReadSongInfo(m_path);
    EXPECT_FALSE(Save(false, true));
    EXPECT_EQ(m_desk.boxes.back(), m_path + ": Is a directory");
}

// Its new version is then the only copy there is, and stays.
TEST_F(ChangedSong, ASongThatIsDeletedWhileItsCopyWaits)
{
    Song(AudioBytes());
    m_desk.onYield = [&] {
        if (fs::exists(m_path + ".bck"))
            fs::remove(m_path);
    };
    m_pass.id3v1.Title = "New";
    EXPECT_FALSE(Save(true, false));
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{m_path + ": No such file or directory"});
    EXPECT_FALSE(fs::exists(m_path));
    EXPECT_TRUE(ReadFile(m_path + ".bck") == AudioBytes() + Tag1("New", "", "", "", "", 0, 255));
}

} // namespace

} // namespace tests

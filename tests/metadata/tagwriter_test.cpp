// Whole files before and after an edit, byte for byte, and the steps between.
#include "metadata/id3v1.h"
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "tests/metadata/mp3bytes.h"
#include "tests/support/songdesk.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace
{

using tests::Frame3;
using tests::Pass;
using tests::ReadFile;
using tests::ReadPass;
using tests::Tag;
using tests::Tag1;
using tests::Z;

std::string Audio(std::size_t size = 5000)
{
    std::string audio = tests::Header128();
    for (std::size_t i = audio.size(); i < size; ++i)
        audio += static_cast<char>('A' + i % 50);
    return audio;
}

// What an untouched ID3v2Tag record writes behind the frames of its texts.
std::string GenreAndTrack(std::string_view genre = "(255)", std::string_view track = "0")
{
    return Frame3("TCON", genre) + Frame3("TRCK", track);
}

class SaveTag : public testing::Test
{
protected:
    // A song of these bytes whose tags have just been read.
    void Song(std::string_view bytes)
    {
        tests::WriteFile(m_path, bytes);
        m_pass = m_old = ReadPass(m_path);
    }

    bool Save(bool writeID3v1, bool writeID3v2, ui::Label *label = nullptr)
    {
        return metadata::SaveTag(m_pass.v1, m_pass.v2, m_old.v1, m_old.v2, m_path, writeID3v1,
                                 writeID3v2, label);
    }

    // The image that the pass's ID3v1 record builds.
    std::string Image()
    {
        metadata::ID3v1Tag tag = m_pass.v1;
        return metadata::BuildID3v1Tag(tag);
    }

    void ExpectSong(const std::string &want, const char *what = "")
    {
        EXPECT_TRUE(ReadFile(m_path) == want) << what;
        EXPECT_FALSE(fs::exists(m_path + ".bck")) << what;
        EXPECT_EQ(m_desk.boxes, std::vector<std::string>()) << what;
        EXPECT_EQ(std::distance(fs::directory_iterator(m_desk.music.Path()), {}), 1) << what;
    }

    tests::SongDesk m_desk;
    std::string m_path = m_desk.music / "song.mp3";
    Pass m_pass, m_old;
};

TEST_F(SaveTag, TitleOverAnOldTag)
{
    const std::string picture = Frame3("APIC", Z("image/png\0\x03\0") + std::string(100, 'p'));
    const std::string padding(64, '\0');
    const std::string old =
        Frame3("TIT2", "Old") + picture + Frame3("TCON", "(17)") + Frame3("TRCK", "3") + padding;
    Song(Tag(3, old) + Audio() + Tag1("One", "", "", "", "", 3, 17));
    m_pass.v2.Title = "New";
    m_pass.v2.Genre = "Rock";
    EXPECT_TRUE(Save(true, true));
    ExpectSong(Tag(3, Frame3("TIT2", "New") + Frame3("TCON", "(17)Rock") + Frame3("TRCK", "3") +
                          picture + padding) +
               Audio() + Tag1("One", "", "", "", "", 3, 17));
}

TEST_F(SaveTag, NothingChanged)
{
    const std::string bytes =
        Tag(3, Frame3("TIT2", "Title") + GenreAndTrack("(17)Rock", "3") + std::string(10, '\0')) +
        Audio() + Tag1("One", "", "", "", "", 3, 17);
    Song(bytes);
    const auto before = fs::last_write_time(m_path);
    m_pass.v2.Genre = m_old.v2.Genre = "Rock";
    EXPECT_FALSE(Save(true, true));
    EXPECT_EQ(fs::last_write_time(m_path), before);
    ExpectSong(bytes);
    EXPECT_EQ(m_desk.pointers,
              (std::vector{platform::Pointer::Hourglass, platform::Pointer::Normal}));
}

TEST_F(SaveTag, OnlyTheID3v1TagChanges)
{
    const std::string start =
        Tag(3, Frame3("TIT2", "Title") + GenreAndTrack("(17)Rock", "3")) + Audio();
    Song(start + Tag1("One", "", "", "", "", 3, 17));
    m_pass.v2.Genre = m_old.v2.Genre = "Rock";
    m_pass.v1.Title = "Other";
    EXPECT_TRUE(Save(true, true));
    ExpectSong(start + Tag1("Other", "", "", "", "", 3, 17));
}

TEST_F(SaveTag, AddingAnID3v1TagAloneKeepsEveryByte)
{
    Song(Audio());
    m_pass.v1.Title = "New";
    EXPECT_TRUE(Save(true, false)); // nothing to take away in front: the short way
    ExpectSong(Audio() + Tag1("New", "", "", "", "", 0, 255));
}

TEST_F(SaveTag, NewID3v2TagWhereThereWasNoneLosesTenBytesOfAudio)
{
    Song(Audio());
    m_pass.v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    const std::string audio = Audio();
    ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack()) +
               audio.substr(0, audio.size() - 10));
}

TEST_F(SaveTag, NewTagsWhereThereWasAnID3v1TagLoseTenBytesOfAudio)
{
    Song(Audio() + Tag1("One", "", "", "", "", 3, 17));
    m_pass.v2.Title = "New";
    EXPECT_TRUE(Save(true, true));
    const std::string audio = Audio();
    ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack()) +
               audio.substr(0, audio.size() - 10) + Tag1("One", "", "", "", "", 3, 17));
}

TEST_F(SaveTag, UncheckedTagsLeaveTheFile)
{
    const std::string body = Frame3("TIT2", "Title") + std::string(30, '\0');
    const std::string image = Tag1("One", "", "", "", "", 3, 17);
    Song(Tag(3, body) + Audio() + image);
    EXPECT_TRUE(Save(false, false));
    ExpectSong(Audio(), "both");
    Song(Tag(3, body) + Audio() + image);
    EXPECT_TRUE(Save(true, false));
    ExpectSong(Audio() + image, "ID3v2");
    Song(Tag(3, Frame3("TIT2", "Title") + GenreAndTrack()) + Audio() + image);
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, Frame3("TIT2", "Title") + GenreAndTrack("(0)")) + Audio(), "ID3v1");
}

TEST_F(SaveTag, AnUncheckedID3v2TagThatIsNotThereIsUnchanged)
{
    Song(Audio() + Tag1("One", "", "", "", "", 3, 17));
    EXPECT_FALSE(Save(true, false));
    EXPECT_TRUE(Save(false, false)); // the long way, for the ID3v1 tag's sake
    const std::string audio = Audio();
    ExpectSong(audio.substr(0, audio.size() - 10));
}

// The image that the module holds is an earlier file's, and differs from none.
TEST_F(SaveTag, NeitherTagAndAnEarlierImageShortensTheAudioByTen)
{
    tests::WriteFile(m_desk.program / "earlier.mp3", Audio() + Tag1("One", "", "", "", "", 3, 17));
    ReadPass(m_desk.program / "earlier.mp3");
    Song(Audio());
    ASSERT_EQ(metadata::RawID3v1Image().size(), 128u);
    EXPECT_TRUE(Save(false, false));
    const std::string audio = Audio();
    ExpectSong(audio.substr(0, audio.size() - 10));
}

TEST_F(SaveTag, AnEarlierFilesImageNeverCostsAudio)
{
    tests::WriteFile(m_desk.program / "earlier.mp3", Audio() + Tag1("One", "", "", "", "", 3, 17));
    ReadPass(m_desk.program / "earlier.mp3");
    Song(Audio());
    m_pass.v1.Title = "New";
    EXPECT_TRUE(Save(true, false));
    ExpectSong(Audio() + Tag1("New", "", "", "", "", 0, 255));
}

TEST_F(SaveTag, ClearedFields)
{
    const std::string rest = Frame3("PRIV", "kept");
    const std::string old = Frame3("TIT2", "T") + Frame3("TPE1", "A") + Frame3("TALB", "L") +
                            Frame3("TYER", "1999") + Frame3("COMM", Z("eng\0Words")) +
                            Frame3("USLT", Z("eng\0La")) + rest;
    Song(Tag(3, old) + Audio());
    m_pass.v2.Title = m_pass.v2.Artist = m_pass.v2.Album = m_pass.v2.Year = m_pass.v2.Comment =
        m_pass.v2.Lyrics = "";
    EXPECT_TRUE(Save(false, true));
    // The comment's data stays as loose bytes.
    ExpectSong(Tag(3, GenreAndTrack() + Z("eng\0Words") + rest) + Audio());
}

TEST_F(SaveTag, AClearedFieldThatHadNoFrameIsAChange)
{
    const std::string bytes = Tag(3, GenreAndTrack()) + Audio();
    Song(bytes);
    m_pass.v2.Genre = m_old.v2.Genre = "-1";
    m_old.v2.Title = "only in the record";
    EXPECT_TRUE(Save(false, true));
    ExpectSong(bytes);
}

TEST_F(SaveTag, AChangedComment)
{
    const std::string old = Frame3("COMM", Z("eng\0old"));
    Song(Tag(3, old) + Audio());
    m_pass.v2.Comment = "new";
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, Frame3("COMM", Z("eng\0new")) + GenreAndTrack() + old) + Audio());
    EXPECT_EQ(ReadPass(m_path).v2.Comment, "new");
}

// A genre as it is read is a number in text form, which has no number of its own; and "255" is the
// text of number 0. The tag editor puts names in their place.
TEST_F(SaveTag, AGenreAsItWasRead)
{
    Song(Tag(3, Frame3("TCON", "(17)Rock") + Frame3("TRCK", "0")) + Audio());
    EXPECT_EQ(m_pass.v2.Genre, "17");
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, GenreAndTrack("(255)Rock")) + Audio());
    m_pass = m_old = ReadPass(m_path);
    EXPECT_EQ(m_pass.v2.Genre, "255");
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, GenreAndTrack("(0)")) + Audio());
}

TEST_F(SaveTag, ClearedGenreIsWrittenAllTheSame)
{
    Song(Tag(3, Frame3("TCON", "Pop") + Frame3("TRCK", "0")) + Audio());
    m_pass.v2.Genre = "";
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, GenreAndTrack()) + Audio());
}

TEST_F(SaveTag, Version2BodyUnderAVersion3Header)
{
    const std::string body = Z("TT2\0\0\x06\0Title") + std::string(20, '\0');
    Song(Tag(2, body) + Audio());
    m_pass.v2 = {};
    m_old.v2 = {};
    m_pass.v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack() + body) + Audio());
}

TEST_F(SaveTag, ATagThatClaimsTooMuchStaysAsAudio)
{
    const std::string bytes = "ID3" + Z("\x03\0\0\x7F\x7F\x7F\x7F") + Audio();
    Song(bytes);
    m_pass.v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack()) +
               bytes.substr(0, bytes.size() - 10));
}

TEST_F(SaveTag, FilesTooShortForTheWayAreLeft)
{
    for (const std::string &bytes :
         {std::string(), std::string("short"), Tag(3, Frame3("TIT2", "x")).substr(0, 20),
          Tag(3, Frame3("TIT2", "x")).substr(0, 17)}) {
        Song(bytes);
        m_pass.v2.Title = "New";
        Save(false, true);
        EXPECT_TRUE(m_desk.boxes.empty() ||
                    m_desk.boxes == std::vector<std::string>{"Invalid procedure call or argument"});
        m_desk.boxes.clear();
        if (ReadFile(m_path) != bytes)
            ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack()) + bytes);
    }
}

TEST_F(SaveTag, LargeTags)
{
    const std::string picture = Frame3("APIC", std::string(20 << 20, 'p'));
    Song(Tag(3, Frame3("TIT2", "Old") + picture + std::string(1000, '\0')) + Audio(300'000));
    m_pass.v2.Title = std::string(10'000, 't');
    m_pass.v2.Lyrics = std::string(1 << 20, 'l');
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, Frame3("TIT2", m_pass.v2.Title) + Frame3("TCON", "(255)") +
                          Frame3("USLT", Z("\0\0\0\0") + m_pass.v2.Lyrics) + Frame3("TRCK", "0") +
                          picture + std::string(1000, '\0')) +
               Audio(300'000));
}

TEST_F(SaveTag, WordsInTheirOrder)
{
    std::vector<std::string> words;
    ui::Label label;
    m_desk.onEvents = [&] {
        if (words.empty() || words.back() != label.Caption())
            words.push_back(label.Caption());
    };
    shell::TheGlobals().BackUpFiles = true;
    shell::TheGlobals().UpdateDBAfterEditing = true;
    Song(Audio());
    m_pass.v2.Title = "New";
    EXPECT_TRUE(Save(true, true, &label));
    EXPECT_EQ(words, (std::vector<std::string>{
                         "", "Creating the ID3v1 Tag", "Creating the ID3v2 Tag",
                         "Backing-Up the MP3", "Processing the MP3", "Reading the whole MP3 file",
                         "Writing the new MP3 file", "Updating the Database information"}));

    words.clear();
    label.SetCaption("");
    shell::TheGlobals().BackUpFiles = false;
    shell::TheGlobals().UpdateDBAfterEditing = false;
    Song(Audio());
    m_pass.v1.Title = "New";
    EXPECT_TRUE(Save(true, false, &label));
    EXPECT_EQ(words,
              (std::vector<std::string>{"", "Creating the ID3v1 Tag", "Processing the MP3"}));
}

TEST_F(SaveTag, TheBackupIsMadeAndReplaced)
{
    shell::TheGlobals().BackUpFiles = true;
    const std::string backup = m_desk.program / "Backup/song.mp3";
    for (const char *title : {"One", "Two"}) {
        const std::string bytes = Tag(3, Frame3("TIT2", "Old") + GenreAndTrack()) + Audio() + title;
        Song(bytes);
        m_pass.v2.Title = title;
        m_pass.v2.Genre = "-1";
        EXPECT_TRUE(Save(false, true));
        EXPECT_TRUE(ReadFile(backup) == bytes);
        ExpectSong(Tag(3, Frame3("TIT2", title) + GenreAndTrack()) + Audio() + title);
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(m_desk.program / "Backup"), {}), 1);
}

TEST_F(SaveTag, ASongInTheBackupFolderIsNotItsOwnBackup)
{
    shell::TheGlobals().BackUpFiles = true;
    m_path = m_desk.program / "Backup/song.mp3";
    Song(Audio());
    m_pass.v1.Title = "New";
    EXPECT_TRUE(Save(true, false));
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{"Permission denied"});
    EXPECT_TRUE(ReadFile(m_path) == Audio() + Tag1("New", "", "", "", "", 0, 255));
}

TEST_F(SaveTag, TheCatalogueAndThePlayerAreCalledInTheirPlaces)
{
    std::vector<std::string> calls;
    auto &hooks = metadata::TheTagWriterHooks();
    hooks.updateCatalogue = [&](const metadata::ID3v2Tag &tag, const std::string &path) {
        calls.push_back("catalogue " + tag.Title + " " + tag.Genre + " " + path);
        EXPECT_TRUE(fs::exists(m_path + ".bck"));
    };
    hooks.releasePlayingFile = [&](const std::string &path, std::int32_t &state,
                                   std::int32_t &position) -> std::string {
        calls.push_back("release " + path);
        EXPECT_EQ(ReadPass(m_path).v2.Title, "");
        state = 3;
        position = 4567;
        return "current";
    };
    hooks.restorePlayingFile = [&](const std::string &current, const std::string &path,
                                   std::int32_t state, std::int32_t position) {
        calls.push_back("restore " + current + " " + path + " " + std::to_string(state) + " " +
                        std::to_string(position));
        EXPECT_EQ(ReadPass(m_path).v2.Title, "New");
        EXPECT_GT(m_desk.SecondsOfDay(), 1001); // a whole second has passed
    };
    Song(Audio());
    m_pass.v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    EXPECT_EQ(calls, (std::vector<std::string>{"release " + m_path,
                                               "restore current " + m_path + " 3 4567"}));
    calls.clear();
    shell::TheGlobals().UpdateDBAfterEditing = true;
    Song(Audio());
    m_pass.v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0], "catalogue New 255 " + m_path);
}

TEST_F(SaveTag, AFailingCallIsToldAndTheNextStepGoesOn)
{
    auto &hooks = metadata::TheTagWriterHooks();
    shell::TheGlobals().UpdateDBAfterEditing = true;
    hooks.updateCatalogue = [](const metadata::ID3v2Tag &, const std::string &) {
        throw runtime::RuntimeError(1000, "No catalogue");
    };
    hooks.releasePlayingFile = [](const std::string &, std::int32_t &,
                                  std::int32_t &) -> std::string {
        throw runtime::RuntimeError(runtime::kFileNotFound); // passed over
    };
    Song(Audio());
    m_pass.v1.Title = "New";
    EXPECT_TRUE(Save(true, false));
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{"No catalogue"});
    EXPECT_TRUE(ReadFile(m_path) == Audio() + Tag1("New", "", "", "", "", 0, 255));
}

TEST_F(SaveTag, TheWaitEndsAtMidnight)
{
    m_desk.secondsAtStart = 86'399.5;
    Song(Audio());
    m_pass.v1.Title = "New";
    m_desk.onEvents = [&] {
        if (m_desk.SecondsOfDay() >= 86'400)
            m_desk.secondsAtStart = -static_cast<double>(m_desk.steadyMs) / 1000;
    };
    EXPECT_TRUE(Save(true, false));
    EXPECT_LE(m_desk.steadyMs, 520);
    m_desk.onEvents = nullptr;
    ExpectSong(Audio() + Tag1("New", "", "", "", "", 0, 255));
}

// --- the state belongs to a file -------------------------------------------------------------

TEST_F(SaveTag, AnotherSongReadAtEveryYield)
{
    const std::string other = m_desk.program / "other.mp3";
    tests::WriteFile(other, Tag(3, Frame3("TIT2", "Other") + std::string(777, 'x')) + Audio(900) +
                                Tag1("Other", "", "", "", "", 9, 9));
    m_desk.onEvents = [&] { ReadPass(other); };
    shell::TheGlobals().BackUpFiles = true;
    const std::string old = Frame3("TIT2", "Old") + Frame3("PRIV", "kept");
    const std::string image = Tag1("One", "", "", "", "", 3, 17);
    Song(Tag(3, old) + Audio() + image);
    ReadPass(other); // also between the two
    m_pass.v2.Title = "New";
    EXPECT_TRUE(Save(true, true));
    ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack() + Frame3("PRIV", "kept")) + Audio() +
               image);
    EXPECT_TRUE(ReadPass(m_path).v2.Title == "New");
    ReadPass(other);
    m_pass.v1.Title = "Two";
    m_old = m_pass = ReadPass(m_path);
    m_pass.v1.Title = "Two";
    EXPECT_TRUE(Save(true, false)); // the ID3v2 tag goes: the long way
    ExpectSong(Audio() + Tag1("Two", "", "", "", "", 3, 17));
}

TEST_F(SaveTag, TheSameRecordAsOldAndNewAfterAnotherSong)
{
    tests::WriteFile(m_desk.program / "other.mp3", Audio());
    Song(Tag(3, Frame3("USLT", Z("eng\0old"))) + Audio());
    m_pass.v2.Lyrics = "new";
    ReadPass(m_desk.program / "other.mp3");
    EXPECT_TRUE(metadata::SaveTag(m_pass.v1, m_pass.v2, m_pass.v1, m_pass.v2, m_path, false, true,
                                  nullptr));
    ExpectSong(
        Tag(3, Frame3("TCON", "(255)") + Frame3("USLT", Z("\0\0\0\0new")) + Frame3("TRCK", "0")) +
        Audio());
}

TEST_F(SaveTag, ManyOtherSongsLaterTheTagsDecide)
{
    Song(Tag(3, Frame3("TIT2", "Old")) + Audio());
    for (int i = 0; i < 100; ++i)
        ReadPass(m_desk.program / std::to_string(i));
    m_pass.v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack()) + Audio());

    Song(Tag(3, Frame3("TIT2", "Old")) + Audio());
    tests::WriteFile(m_path, Tag(3, Frame3("TIT2", "Changed")) + Audio());
    for (int i = 0; i < 100; ++i)
        ReadPass(m_desk.program / std::to_string(i));
    m_pass.v2.Title = "New";
    EXPECT_FALSE(Save(false, true));
    EXPECT_EQ(m_desk.boxes.size(), 1u);
    EXPECT_TRUE(ReadFile(m_path) == Tag(3, Frame3("TIT2", "Changed")) + Audio());
}

// A program that changes the song `atYield` yields into the edit (0 = before it).
TEST_F(SaveTag, ASongChangedInBetweenIsNotOverwritten)
{
    tests::WriteFile(m_desk.program / "other.mp3", Audio());
    shell::TheGlobals().BackUpFiles = true;
    const std::string changed = Tag(3, Frame3("TIT2", "Theirs")) + Audio(6000);
    int told = 0;
    for (const bool otherBetween : {false, true})
        for (int atYield = 0; atYield < 200; ++atYield) {
            Song(Tag(3, Frame3("TIT2", "Old")) + Audio());
            m_desk.boxes.clear();
            m_desk.yields = 0;
            m_desk.onEvents = [&] {
                if (m_desk.yields == atYield)
                    tests::WriteFile(m_path, changed);
            };
            if (otherBetween)
                ReadPass(m_desk.program / "other.mp3");
            if (atYield == 0)
                tests::WriteFile(m_path, changed);
            m_pass.v2.Title = "New";
            const bool result = Save(false, true);
            m_desk.onEvents = nullptr;
            EXPECT_FALSE(fs::exists(m_path + ".bck"));
            if (m_desk.yields < atYield)
                break;
            if (result) // changed when all was done
                continue;
            ++told;
            ASSERT_EQ(m_desk.boxes.size(), 1u) << atYield;
            EXPECT_TRUE(m_desk.boxes[0].find("was changed by another program") !=
                        std::string::npos);
            EXPECT_TRUE(ReadFile(m_path) == changed) << atYield;
        }
    EXPECT_GT(told, 100);
}

TEST_F(SaveTag, ASongThatIsGoneOrCannotBeRead)
{
    Song(Audio());
    fs::remove(m_path);
    m_pass.v2.Title = "New";
    EXPECT_FALSE(Save(false, true));
    EXPECT_EQ(m_desk.boxes.size(), 1u);
    EXPECT_FALSE(fs::exists(m_path));
    ReadPass(m_path);
    EXPECT_FALSE(Save(false, true));
    EXPECT_EQ(m_desk.boxes.back(), "No such file or directory");
    fs::create_directory(m_path);
    ReadPass(m_path);
    EXPECT_FALSE(Save(false, true));
    EXPECT_EQ(m_desk.boxes.back(), "Is a directory");
}

} // namespace

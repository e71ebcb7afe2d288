// The steps of an edit between the file before and the file after: words, backup, waits, changes
// of the song in between.
#include "metadata/id3v1.h"
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "tests/metadata/songedit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace
{

using tests::Audio;
using tests::Frame3;
using tests::GenreAndTrack;
using tests::ReadFile;
using tests::ReadPass;
using tests::Tag;
using tests::Tag1;
using tests::Z;

class SaveTagSteps : public tests::SongEdit
{
};

TEST_F(SaveTagSteps, WordsInTheirOrder)
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

TEST_F(SaveTagSteps, TheBackupIsMadeAndReplaced)
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

TEST_F(SaveTagSteps, ASongInTheBackupFolderIsNotItsOwnBackup)
{
    shell::TheGlobals().BackUpFiles = true;
    m_path = m_desk.program / "Backup/song.mp3";
    Song(Audio());
    m_pass.v1.Title = "New";
    EXPECT_TRUE(Save(true, false));
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{"Permission denied"});
    EXPECT_TRUE(ReadFile(m_path) == Audio() + Tag1("New", "", "", "", "", 0, 255));
}

TEST_F(SaveTagSteps, TheCatalogueAndThePlayerAreCalledInTheirPlaces)
{
    std::vector<std::string> calls;
    double start = m_desk.SecondsOfDay();
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
        EXPECT_GT(m_desk.SecondsOfDay(), std::floor(start) + 1); // to the next second, no longer
        EXPECT_LT(m_desk.SecondsOfDay(), std::floor(start) + 1.1);
    };
    Song(Audio());
    m_pass.v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    EXPECT_EQ(calls, (std::vector<std::string>{"release " + m_path,
                                               "restore current " + m_path + " 3 4567"}));
    calls.clear();
    start = m_desk.SecondsOfDay();
    shell::TheGlobals().UpdateDBAfterEditing = true;
    Song(Audio());
    m_pass.v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0], "catalogue New 255 " + m_path);
}

TEST_F(SaveTagSteps, AFailingCallIsToldAndTheNextStepGoesOn)
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

TEST_F(SaveTagSteps, TheWaitEndsAtMidnight)
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

TEST_F(SaveTagSteps, ThePointerWaitsFromTheFirstYieldToTheLast)
{
    std::vector<platform::Pointer> atYield;
    m_desk.onEvents = [&] { atYield.push_back(m_desk.pointers.back()); };
    Song(Audio());
    EXPECT_FALSE(Save(false, false)); // nothing to do
    EXPECT_EQ(atYield, (std::vector{platform::Pointer::Hourglass, platform::Pointer::Normal}));
}

// --- the state belongs to a file -------------------------------------------------------------

TEST_F(SaveTagSteps, AnotherSongReadAtEveryYield)
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

TEST_F(SaveTagSteps, TheSameRecordAsOldAndNewAfterAnotherSong)
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

TEST_F(SaveTagSteps, ManyOtherSongsLaterTheTagsDecide)
{
    Song(Tag(3, Frame3("TIT2", "Old")) + Audio());
    for (int i = 0; i < 100; ++i)
        ReadPass(m_desk.program / std::to_string(i));
    m_pass.v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    ExpectSong(Tag(3, Frame3("TIT2", "New") + GenreAndTrack()) + Audio());

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
        const std::string changed = Tag(3, c.changed) + Audio();
        Song(Tag(3, c.before) + Audio());
        tests::WriteFile(m_path, changed);
        for (int i = 0; i < 100; ++i)
            ReadPass(m_desk.program / std::to_string(i));
        m_pass.v2.Title = "New";
        m_desk.boxes.clear();
        EXPECT_FALSE(Save(false, true));
        EXPECT_EQ(m_desk.boxes.size(), 1u);
        EXPECT_TRUE(ReadFile(m_path) == changed);
    }
}

// A program that changes the song `atYield` yields into the edit (0 = before it).
TEST_F(SaveTagSteps, ASongChangedInBetweenIsNotOverwritten)
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
            EXPECT_TRUE(ReadFile(m_path) == changed) << atYield;
            if (result) // changed when all was done
                continue;
            ++told;
            ASSERT_EQ(m_desk.boxes.size(), 1u) << atYield;
            EXPECT_TRUE(m_desk.boxes[0].find("was changed by another program") !=
                        std::string::npos);
        }
    EXPECT_GT(told, 100);
}

// Before the copy is written nothing of the edit has gone anywhere, the catalogue included.
TEST_F(SaveTagSteps, ASongChangedBeforeItsCopyIsWrittenStaysInTheCatalogueAsItIs)
{
    shell::TheGlobals().BackUpFiles = true;
    shell::TheGlobals().UpdateDBAfterEditing = true;
    int updates = 0;
    metadata::TheTagWriterHooks().updateCatalogue = [&](const metadata::ID3v2Tag &,
                                                        const std::string &) { ++updates; };
    const std::string changed = Audio(300); // shorter than what is to be copied
    for (const std::string_view step :
         {"Creating the ID3v1 Tag", "Creating the ID3v2 Tag", "Backing-Up the MP3",
          "Processing the MP3", "Reading the whole MP3 file", "Writing the new MP3 file"}) {
        SCOPED_TRACE(step);
        ui::Label label;
        m_desk.boxes.clear();
        m_desk.onEvents = nullptr;
        Song(Tag(3, Frame3("TIT2", "Old")) + Audio());
        m_desk.onEvents = [&] {
            if (label.Caption() == step)
                tests::WriteFile(m_path, changed);
        };
        m_pass.v2.Title = "New";
        EXPECT_FALSE(Save(true, true, &label));
        ASSERT_EQ(m_desk.boxes.size(), 1u);
        EXPECT_NE(m_desk.boxes[0].find("was changed by another program"), std::string::npos);
        EXPECT_TRUE(ReadFile(m_path) == changed);
        EXPECT_FALSE(fs::exists(m_path + ".bck"));
        EXPECT_EQ(updates, 0);
    }
}

// Another edit of the same song puts its own ".bck" there, `atYield` yields into this one.
TEST_F(SaveTagSteps, TheCopyOfAnotherEditIsNeitherTakenNorDeleted)
{
    const std::string before = Tag(3, Frame3("TIT2", "Old")) + Audio();
    int told = 0;
    for (int atYield = 1; atYield < 400; ++atYield) {
        SCOPED_TRACE(atYield);
        fs::remove(m_path + ".bck");
        Song(before);
        m_desk.boxes.clear();
        m_desk.yields = 0;
        bool ours = false; // our own copy stood there
        m_desk.onEvents = [&] {
            if (m_desk.yields != atYield)
                return;
            ours = fs::exists(m_path + ".bck");
            tests::WriteFile(m_path + ".their", "theirs");
            fs::rename(m_path + ".their", m_path + ".bck");
        };
        m_pass.v2.Title = "New";
        const bool result = Save(false, true);
        m_desk.onEvents = nullptr;
        if (m_desk.yields < atYield)
            break;
        if (result) {
            EXPECT_TRUE(ReadFile(m_path) != "theirs");
            EXPECT_TRUE(m_desk.boxes.empty());
            continue;
        }
        ++told;
        EXPECT_TRUE(ours);
        ASSERT_EQ(m_desk.boxes.size(), 1u);
        EXPECT_TRUE(m_desk.boxes[0].find("is being edited by another program") !=
                    std::string::npos);
        EXPECT_TRUE(ReadFile(m_path) == before);
        EXPECT_EQ(ReadFile(m_path + ".bck"), "theirs");
    }
    EXPECT_GT(told, 50);
}

TEST_F(SaveTagSteps, ASongThatIsGoneOrCannotBeRead)
{
    Song(Audio());
    fs::remove(m_path);
    m_pass.v2.Title = "New";
    EXPECT_FALSE(Save(false, true));
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{m_path + ": No such file or directory"});
    EXPECT_FALSE(fs::exists(m_path));
    ReadPass(m_path);
    EXPECT_FALSE(Save(false, true));
    EXPECT_EQ(m_desk.boxes.back(), m_path + ": No such file or directory");
    fs::create_directory(m_path);
    ReadPass(m_path);
    EXPECT_FALSE(Save(false, true));
    EXPECT_EQ(m_desk.boxes.back(), m_path + ": Is a directory");
}

// Its new version is then the only copy there is, and stays.
TEST_F(SaveTagSteps, ASongThatGoesWhileItsCopyWaits)
{
    Song(Audio());
    m_desk.onEvents = [&] {
        if (fs::exists(m_path + ".bck"))
            fs::remove(m_path);
    };
    m_pass.v1.Title = "New";
    EXPECT_FALSE(Save(true, false));
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{m_path + ": No such file or directory"});
    EXPECT_FALSE(fs::exists(m_path));
    EXPECT_TRUE(ReadFile(m_path + ".bck") == Audio() + Tag1("New", "", "", "", "", 0, 255));
}

} // namespace

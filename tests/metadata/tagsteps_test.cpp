// The steps of an edit between the file before and the file after: words, backup, waits, calls.
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "tests/metadata/songedit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

namespace fs = std::filesystem;

namespace tests
{

namespace
{

using metadata::ReadSongInfo;

class SaveTagSteps : public SongEdit
{
};

TEST_F(SaveTagSteps, WordsInTheirOrder)
{
    std::vector<std::string> words;
    ui::Label label;
    m_desk.onYield = [&] {
        if (words.empty() || words.back() != label.Caption())
            words.push_back(label.Caption());
    };
    shell::TheGlobals().BackUpFiles = true;
    shell::TheGlobals().UpdateDBAfterEditing = true;
    Song(AudioBytes());
    m_pass.id3v2.Title = "New";
    EXPECT_TRUE(Save(true, true, &label));
    EXPECT_EQ(words, (std::vector<std::string>{
                         "", "Creating the ID3v1 Tag", "Creating the ID3v2 Tag",
                         "Backing-Up the MP3", "Processing the MP3", "Reading the whole MP3 file",
                         "Writing the new MP3 file", "Updating the Database information"}));

    words.clear();
    label.SetCaption("");
    shell::TheGlobals().BackUpFiles = false;
    shell::TheGlobals().UpdateDBAfterEditing = false;
    Song(AudioBytes());
    m_pass.id3v1.Title = "New";
    EXPECT_TRUE(Save(true, false, &label));
    EXPECT_EQ(words,
              (std::vector<std::string>{"", "Creating the ID3v1 Tag", "Processing the MP3"}));
}

TEST_F(SaveTagSteps, TheBackupIsMadeAndReplaced)
{
    shell::TheGlobals().BackUpFiles = true;
    const std::string backup = m_desk.program / "Backup/song.mp3";
    for (const char *title : {"One", "Two"}) {
        const std::string bytes =
            Tag(3, Frame3("TIT2", "Old") + GenreAndTrack()) + AudioBytes() + title;
        Song(bytes);
        m_pass.id3v2.Title = title;
        m_pass.id3v2.Genre = "-1";
        EXPECT_TRUE(Save(false, true));
        EXPECT_TRUE(ReadFile(backup) == bytes);
        ExpectSong(Tag(3, Frame3("TIT2", title) + GenreAndTrack()) + AudioBytes() + title);
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(m_desk.program / "Backup"), {}), 1);
}

TEST_F(SaveTagSteps, ASongInTheBackupFolderIsNotItsOwnBackup)
{
    shell::TheGlobals().BackUpFiles = true;
    m_path = m_desk.program / "Backup/song.mp3";
    Song(AudioBytes());
    m_pass.id3v1.Title = "New";
    EXPECT_TRUE(Save(true, false));
    EXPECT_EQ(m_desk.boxes,
              std::vector<std::string>{"Backup of " + m_path + ": Permission denied"});
    EXPECT_TRUE(ReadFile(m_path) == AudioBytes() + Tag1("New", "", "", "", "", 0, 255));
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
        EXPECT_EQ(ReadSongInfo(m_path).id3v2.Title, "");
        state = 3;
        position = 4567;
        return "current";
    };
    hooks.restorePlayingFile = [&](const std::string &current, const std::string &path,
                                   std::int32_t state, std::int32_t position) {
        calls.push_back("restore " + current + " " + path + " " + std::to_string(state) + " " +
                        std::to_string(position));
        EXPECT_EQ(ReadSongInfo(m_path).id3v2.Title, "New");
        EXPECT_GT(m_desk.SecondsOfDay(), std::floor(start) + 1); // to the next second, no longer
        EXPECT_LT(m_desk.SecondsOfDay(), std::floor(start) + 1.1);
    };
    Song(AudioBytes());
    m_pass.id3v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    EXPECT_EQ(calls, (std::vector<std::string>{"release " + m_path,
                                               "restore current " + m_path + " 3 4567"}));
    calls.clear();
    start = m_desk.SecondsOfDay();
    shell::TheGlobals().UpdateDBAfterEditing = true;
    Song(AudioBytes());
    m_pass.id3v2.Title = "New";
    EXPECT_TRUE(Save(false, true));
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0], "catalogue New 255 " + m_path);
}

TEST_F(SaveTagSteps, AFailingCallIsReportedAndTheNextStepRuns)
{
    auto &hooks = metadata::TheTagWriterHooks();
    shell::TheGlobals().UpdateDBAfterEditing = true;
    hooks.updateCatalogue = [](const metadata::ID3v2Tag &, const std::string &) {
        throw runtime::RuntimeError(1000, "No catalogue");
    };
    hooks.releasePlayingFile = [](const std::string &, std::int32_t &,
                                  std::int32_t &) -> std::string {
        throw runtime::RuntimeError(runtime::kFileNotFound); // ignored
    };
    Song(AudioBytes());
    m_pass.id3v1.Title = "New";
    EXPECT_TRUE(Save(true, false));
    EXPECT_EQ(m_desk.boxes, std::vector<std::string>{"No catalogue"});
    EXPECT_TRUE(ReadFile(m_path) == AudioBytes() + Tag1("New", "", "", "", "", 0, 255));
}

TEST_F(SaveTagSteps, TheWaitEndsAtMidnight)
{
    m_desk.secondsAtStart = 86'399.5;
    Song(AudioBytes());
    m_pass.id3v1.Title = "New";
    m_desk.onYield = [&] {
        if (m_desk.SecondsOfDay() >= 86'400)
            m_desk.secondsAtStart = -static_cast<double>(m_desk.steadyMs) / 1000;
    };
    EXPECT_TRUE(Save(true, false));
    EXPECT_LE(m_desk.steadyMs, 520);
    m_desk.onYield = nullptr;
    ExpectSong(AudioBytes() + Tag1("New", "", "", "", "", 0, 255));
}

TEST_F(SaveTagSteps, ThePointerWaitsFromTheFirstYieldToTheLast)
{
    std::vector<platform::Pointer> atYield;
    m_desk.onYield = [&] { atYield.push_back(m_desk.pointers.back()); };
    Song(AudioBytes());
    EXPECT_FALSE(Save(false, false)); // nothing to do
    EXPECT_EQ(atYield, (std::vector{platform::Pointer::Hourglass, platform::Pointer::Normal}));
}

} // namespace

} // namespace tests

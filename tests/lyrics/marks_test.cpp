#include "lyrics/drafts.h"
#include "lyrics/lyricsform.h"
#include "platform/endrequest.h"
#include "tests/lyrics/lyricsfixture.h"
#include "tests/metadata/faultyfiles.h"

#include <gtest/gtest.h>

#include <csignal>

using tests::kPlay;
using tests::kStop;

namespace
{

using lyrics::LyricsForm;
using platform::Answer;
using tests::Commands;
using tests::Enqueued;
using tests::kTwoLines;
using tests::LyricsIn;
using Lines = std::vector<std::string>;

using Marks = tests::LyricsFormFixture;

TEST_F(Marks, SavesTheTextOfTheLastTest)
{
    const std::string song = Setting(form, "One\r\nTwo\r\n");
    form.Lyrics.SetText(kTwoLines);
    form.cmdTest.Click();
    form.cmdSave.Click();
    EXPECT_EQ(LyricsIn(song), kTwoLines);
    EXPECT_FALSE(lyrics::HasUnsavedMarks(form));
    EXPECT_EQ(desktop.boxes.size(), 0U);
}

// Lines that end with LF alone get their marks where CR LF does, and nothing counts as changed
// before a mark is set.
TEST_F(Marks, LinesThatEndWithOneCharacterGetMarks)
{
    Setting(form, "One\nTwo\nThree\n");
    EXPECT_FALSE(lyrics::HasUnsavedMarks(form));
    EXPECT_EQ(form.Lyrics.Text(), "One\r\nTwo\r\nThree\r\n");
    form.Lyrics.Select(10, 0);
    Play(65);
    form.cmdSetIt.Click();
    EXPECT_EQ(form.Lyrics.Text(), "One\r\nTwo\r\n[01:05]Three\r\n");
    EXPECT_TRUE(lyrics::HasUnsavedMarks(form));
}

TEST_F(Marks, SavesBothTagsIntoAFileWithoutAny)
{
    const std::string song = Song("bare.mp3");
    tests::WriteFile(song, tests::Audio());
    lyrics::SetTimes(form, song);
    form.Lyrics.SetText(kTwoLines);
    form.cmdTest.Click();
    form.cmdSave.Click();
    const std::string bytes = tests::ReadFile(song);
    EXPECT_EQ(bytes.substr(0, 3), "ID3");
    EXPECT_EQ(bytes.substr(bytes.size() - 128, 3), "TAG");
    EXPECT_EQ(LyricsIn(song), kTwoLines);
}

TEST_F(Marks, SavesAnEmptyTextWithoutATest)
{
    const std::string song = Setting(form, "One\r\n");
    form.Lyrics.SetText(kTwoLines);
    form.tmrDraft.Fire();
    form.cmdSave.Click();
    EXPECT_EQ(LyricsIn(song), "One\r\n"); // the frame that was there stays
    EXPECT_TRUE(lyrics::HasUnsavedMarks(form));
    EXPECT_EQ(lyrics::ReadDraft(song), kTwoLines);
    EXPECT_EQ(tests::ReadFile(song).substr(tests::ReadFile(song).size() - 128, 3), "TAG");
}

TEST_F(Marks, TheDraftFollowsTheChanges)
{
    const std::string song = Setting(form, "One\r\n");
    form.tmrDraft.Fire();
    EXPECT_EQ(lyrics::ReadDraft(song), std::nullopt); // the file has the same text
    form.Lyrics.Replace(0, 0, "[0:01]");
    EXPECT_TRUE(form.tmrDraft.Enabled());
    EXPECT_LT(form.tmrDraft.IntervalMs(), 2000);
    form.tmrDraft.Fire();
    EXPECT_FALSE(form.tmrDraft.Enabled());
    EXPECT_EQ(lyrics::ReadDraft(song), "[0:01]One\r\n");

    form.cmdTest.Click(); // the box loses its marks, the draft does not
    EXPECT_EQ(form.Lyrics.Text(), "One\r\n");
    form.tmrDraft.Fire();
    EXPECT_EQ(lyrics::ReadDraft(song), "[0:01]One\r\n");
    EXPECT_TRUE(lyrics::HasUnsavedMarks(form));
    form.cmdPause.Click();
    form.tmrDraft.Fire();
    EXPECT_EQ(lyrics::ReadDraft(song), "[0:01]One\r\n");
    form.Lyrics.SetText("[0:02]One\r\n"); // typed while the test is paused
    form.tmrDraft.Fire();
    EXPECT_EQ(lyrics::ReadDraft(song), "[0:02]One\r\n");
    form.Lyrics.SetText("One\r\n"); // again the text of the file as it was read
    form.tmrDraft.Fire();
    EXPECT_EQ(lyrics::ReadDraft(song), "One\r\n");
    EXPECT_TRUE(lyrics::MayClose(form));
    EXPECT_EQ(lyrics::ReadDraft(song), std::nullopt);
}

TEST_F(Marks, TheDraftIsDeletedWhenTheFileHasTheText)
{
    const std::string song = Setting(form, "One\r\n");
    form.Lyrics.SetText("[0:01]One\r\n");
    form.tmrDraft.Fire();
    form.cmdTest.Click();
    form.cmdTest.Click();
    form.Lyrics.SetText("[0:02]One\r\n"); // the newest marks are not those of the test
    form.cmdSave.Click();
    EXPECT_EQ(LyricsIn(song), "[0:01]One\r\n");
    EXPECT_EQ(lyrics::ReadDraft(song), "[0:02]One\r\n");
    form.cmdTest.Click(); // back to those of the test
    form.cmdSave.Click();
    EXPECT_EQ(lyrics::ReadDraft(song), std::nullopt);
}

TEST_F(Marks, ASaveThatFailsKeepsTheDraft)
{
    const std::string song = Setting(form, "One\r\n");
    form.Lyrics.SetText(kTwoLines);
    form.tmrDraft.Fire();
    form.cmdTest.Click();
    tests::FaultyFiles files;
    files.createReason = EACCES;
    platform::TheMachine().files = &files;
    desktop.ExpectBox("Permission denied"); // the backup, then the song
    desktop.ExpectBox("Permission denied");
    form.cmdSave.Click();
    platform::TheMachine().files = &platform::SystemFiles();
    EXPECT_EQ(LyricsIn(song), "One\r\n");
    EXPECT_TRUE(lyrics::HasUnsavedMarks(form));
    EXPECT_EQ(lyrics::ReadDraft(song), kTwoLines);
    EXPECT_EQ(form.MarkedText, kTwoLines);
}

TEST_F(Marks, ADraftIsOffered)
{
    const std::string song = WriteSong("song.mp3", "One\r\n");
    lyrics::WriteDraft(song, kTwoLines);
    desktop.ExpectBox("changes that were not saved", Answer::No);
    lyrics::SetTimes(form, song);
    EXPECT_EQ(form.Lyrics.Text(), "One\r\n");
    form.tmrDraft.Fire();
    EXPECT_EQ(lyrics::ReadDraft(song), kTwoLines); // kept until the text changes
    EXPECT_TRUE(lyrics::MayClose(form));
    EXPECT_EQ(lyrics::ReadDraft(song), kTwoLines);

    LyricsForm again;
    desktop.ExpectBox("changes that were not saved", Answer::Yes);
    lyrics::SetTimes(again, song);
    EXPECT_EQ(again.Lyrics.Text(), kTwoLines);
    EXPECT_TRUE(lyrics::HasUnsavedMarks(again));
    EXPECT_EQ(LyricsIn(song), "One\r\n");
}

TEST_F(Marks, ADraftThatTheFileHoldsIsNotOffered)
{
    const std::string song = WriteSong("song.mp3", kTwoLines);
    lyrics::WriteDraft(song, kTwoLines);
    lyrics::SetTimes(form, song);
    EXPECT_EQ(lyrics::ReadDraft(song), std::nullopt);
    EXPECT_EQ(form.Lyrics.Text(), kTwoLines);
}

// The question lets timers run; none of them may replace the draft by the text of the file.
TEST_F(Marks, TheOfferedDraftStaysWhileTheQuestionIsUp)
{
    struct Waiting : tests::ScriptedDesktop {
        Answer MessageBox(std::string_view text, platform::Buttons buttons, std::string_view title,
                          platform::BoxIcon icon) override
        {
            meanwhile();
            return ScriptedDesktop::MessageBox(text, buttons, title, icon);
        }
        std::function<void()> meanwhile;
    } waiting;
    const std::string song = WriteSong("song.mp3", "One\r\n");
    lyrics::WriteDraft(song, kTwoLines);
    waiting.ExpectBox("changes that were not saved", Answer::Yes);
    waiting.meanwhile = [&] {
        form.tmrDraft.Fire();
        EXPECT_EQ(lyrics::ReadDraft(song), kTwoLines);
        EXPECT_FALSE(lyrics::MayClose(form));
    };
    lyrics::SetTimes(form, song);
    EXPECT_EQ(form.Lyrics.Text(), kTwoLines);
}

TEST_F(Marks, ADraftThatCannotBeKeptIsReportedOnceAndTriedAgain)
{
    const std::string song = Setting(form, "One\r\n");
    form.Lyrics.SetText(kTwoLines);
    tests::FaultyFiles files;
    files.createReason = ENOSPC;
    platform::TheMachine().files = &files;
    form.tmrDraft.Fire();
    ASSERT_TRUE(form.failure.has_value());
    EXPECT_EQ(form.failure->number, runtime::kDiskFull);
    EXPECT_NE(form.failure->description.find("could not be kept"), std::string::npos);
    EXPECT_THROW(form.tmrReport.Fire(), runtime::RuntimeError);
    EXPECT_TRUE(form.tmrDraft.Enabled());
    form.tmrDraft.Fire(); // still full, and reported already
    EXPECT_FALSE(form.failure.has_value());
    EXPECT_TRUE(form.tmrDraft.Enabled());
    platform::TheMachine().files = &platform::SystemFiles();
    form.tmrDraft.Fire();
    EXPECT_FALSE(form.tmrDraft.Enabled());
    EXPECT_EQ(lyrics::ReadDraft(song), kTwoLines);
}

// --- closing

TEST_F(Marks, ClosingAsksForUnsavedMarks)
{
    const std::string song = Setting(form, "One\r\n");
    EXPECT_TRUE(lyrics::MayClose(form)); // nothing was changed
    form.Lyrics.SetText(kTwoLines);
    form.tmrDraft.Fire();

    desktop.ExpectBox("not saved", Answer::Cancel);
    EXPECT_FALSE(lyrics::MayClose(form));
    EXPECT_EQ(desktop.boxes.back().buttons, platform::Buttons::SaveDiscardCancel);
    desktop.ExpectBox("not saved", Answer::Discard);
    EXPECT_TRUE(lyrics::MayClose(form));
    EXPECT_EQ(LyricsIn(song), "One\r\n");
    EXPECT_EQ(lyrics::ReadDraft(song), kTwoLines); // only the same text in the file removes it

    desktop.ExpectBox("not saved", Answer::Save); // tested or not
    EXPECT_TRUE(lyrics::MayClose(form));
    EXPECT_EQ(LyricsIn(song), kTwoLines);
    EXPECT_EQ(lyrics::ReadDraft(song), std::nullopt);
}

TEST_F(Marks, ClosingWhileATestRunsSavesTheMarkedText)
{
    const std::string song = Setting(form, "One\r\n");
    form.Lyrics.SetText(kTwoLines);
    form.cmdTest.Click();
    desktop.ExpectBox("not saved", Answer::Save);
    EXPECT_TRUE(lyrics::MayClose(form));
    EXPECT_EQ(LyricsIn(song), kTwoLines);
}

TEST_F(Marks, ClosingStaysOpenWhereTheSaveFails)
{
    Setting(form, "One\r\n");
    form.Lyrics.SetText(kTwoLines);
    tests::FaultyFiles files;
    files.createReason = EACCES;
    platform::TheMachine().files = &files;
    desktop.ExpectBox("not saved", Answer::Save);
    desktop.ExpectBox("Permission denied");
    desktop.ExpectBox("Permission denied");
    EXPECT_FALSE(lyrics::MayClose(form));
    platform::TheMachine().files = &platform::SystemFiles();
}

TEST_F(Marks, AFollowingWindowClosesUnasked)
{
    lyrics::FollowLyrics(form, "", kTwoLines);
    form.Lyrics.SetText("typed");
    EXPECT_TRUE(lyrics::MayClose(form));
}

TEST_F(Marks, TheEndOfTheSessionKeepsTheDraftUnasked)
{
    const std::string song = Setting(form, "One\r\n");
    form.Lyrics.SetText(kTwoLines);
    platform::RequestEnd(SIGTERM);
    EXPECT_TRUE(lyrics::MayClose(form));
    platform::RequestEnd(0);
    EXPECT_EQ(lyrics::ReadDraft(song), kTwoLines);
    EXPECT_EQ(desktop.boxes.size(), 0U);
}

// Enqueueing lets events run: the window stays, and a second press does nothing.
TEST_F(Marks, WhileAButtonWorks)
{
    const std::string song = Setting(form, kTwoLines);
    int calls = 0;
    player.onEnqueue = [&] {
        ++calls;
        EXPECT_FALSE(lyrics::MayClose(form));
        form.cmdTest.Click();
        form.cmdPause.Click();
        form.cmdSave.Click();
    };
    form.cmdTest.Click();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(Commands(player), (Lines{kStop, Enqueued(song), kPlay}));
    EXPECT_EQ(form.cmdPause.Caption(), ";");
}

} // namespace

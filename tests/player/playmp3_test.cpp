#include "browser/commands.h"
#include "browser/form/formpopup.h"
#include "player/install.h"
#include "player/playmp3.h"
#include "tests/browser/formfixture.h"
#include "tests/support/recordingplayer.h"

using tests::kPause;
using tests::kPlay;
using tests::kStop;

namespace
{

using Lines = std::vector<std::string>;

// Drives on which the medium with the song can be missing.
struct MediaDrives : tests::FakeDrives {
    bool IsMediumMissing(const std::string &) override { return missing; }
    bool missing = false;
};

class PlayMP3 : public tests::FormTest
{
protected:
    PlayMP3()
    {
        port.SetPlaylist("#EXTM3U\r\n/0.mp3\r\n/1.mp3\r\n");
        port.Answer(104, 0);
        port.Answer(124, 2);
        port.onEnqueue = [this] { port.Answer(124, 3); };
        player::Install();
        browser::MainForm &form = Loaded();
        form.LV.SetSubItemKeys({"Title", "Label", "Path"});
        AddRow(form.LV, "/0", "STICK", "/0.mp3");
        AddRow(form.LV, "/1", "", "/1.mp3");
    }
    ~PlayMP3() override { player::ResetPlayMP3(); }

    static void AddRow(ui::KeyedList &list, std::string_view key, std::string_view label,
                       std::string_view path)
    {
        const std::string_view cells[] = {"title", label, path};
        list.SelectOnly(list.AddRow(key, "", "", cells));
    }

    void Play(const std::string &path) { player::PlayMP3File(path, Form().LV); }

    Lines Orders()
    {
        Lines orders;
        for (const std::string &line : port.Received())
            if (line.starts_with("273") || line.starts_with("copy") || line.ends_with(" 121") ||
                line.starts_with("start"))
                orders.push_back(line);
        return orders;
    }

    tests::RecordingPlayer port;
    MediaDrives media;
};

TEST_F(PlayMP3, ASongOfTheListIsSelectedAndPlayed)
{
    Play("/1.MP3");
    EXPECT_EQ(Orders(), (Lines{"1024 1 121", kPlay}));
    port.Answer(104, 1);
    Play("/0.mp3");
    EXPECT_EQ(Orders(), (Lines{kStop, "1024 0 121", kPlay}));
    port.Answer(104, 3); // a paused player is not stopped
    Play("/0.mp3");
    EXPECT_EQ(Orders(), (Lines{"1024 0 121", kPlay}));
}

TEST_F(PlayMP3, ANewSongIsAddedAndOnePastItSelected)
{
    Play("/new.mp3");
    EXPECT_EQ(Orders(), (Lines{"copy 100 9 /new.mp3", "1024 3 121", kPlay}));
}

TEST_F(PlayMP3, ASongThatIsOnlyTheBeginningOfAListedPath)
{
    Play("/1");
    EXPECT_EQ(Orders(), (Lines{"1024 -1 121", kPlay}));
}

TEST_F(PlayMP3, ASongThatThePlayerRefusesIsNotPlayed)
{
    port.refusesFiles = true;
    EXPECT_THROW(Play("/new.mp3"), runtime::RuntimeError);
    EXPECT_EQ(Orders(), Lines{"copy 100 9 /new.mp3"});
    Play("/0.mp3"); // and the next one is
    EXPECT_EQ(Orders(), (Lines{"1024 0 121", kPlay}));
}

TEST_F(PlayMP3, ThePlayerIsStartedAndWaitedFor)
{
    port.window = 0;
    desktop.onYield = [this] { port.window = clock.steadyMs >= 3000 ? 9 : 0; };
    Play("/0.mp3");
    EXPECT_EQ(Orders(), (Lines{"start " + (port.folder / "player") + " 2", "1024 0 121", kPlay}));
    EXPECT_GE(clock.steadyMs, 3000);
    EXPECT_LT(clock.steadyMs, 3100);
}

TEST_F(PlayMP3, AfterThreeRoundsItDoesNotAnswer)
{
    port.window = 0;
    Form().SB.SetText("Playing", "Not Playing...");
    std::string early, shown;
    desktop.onYield = [&] {
        (clock.steadyMs < 1000 ? early : shown) = Form().SB.Panel("Playing").text;
    };
    try {
        Play("/0.mp3");
        ADD_FAILURE();
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.description, "The player Recorder does not answer.");
    }
    EXPECT_EQ(Orders(), Lines(3, "start " + (port.folder / "player") + " 2"));
    EXPECT_EQ(clock.steadyMs, 30'000);
    EXPECT_EQ(early, "Not Playing..."); // a wait is shown only after a second
    EXPECT_EQ(shown, "Waiting for Recorder...");
    EXPECT_EQ(Form().SB.Panel("Playing").text, "Not Playing...");
}

TEST_F(PlayMP3, APlayerThatIsNotInstalledSaysSoAtOnce)
{
    port.window = 0;
    port.command.clear();
    port.onStart = [] { throw runtime::RuntimeError(runtime::kFileNotFound, "install it"); };
    EXPECT_THROW(Play("/0.mp3"), runtime::RuntimeError);
    EXPECT_EQ(Orders(), Lines{"start  2"});
    EXPECT_EQ(clock.steadyMs, 0);
}

TEST_F(PlayMP3, AnotherSongMeanwhileReplacesTheFirst)
{
    port.window = 0;
    int round = 0;
    desktop.onYield = [&] {
        if (++round == 5)
            Play("/1.mp3");
        if (round == 8)
            port.window = 9;
    };
    Play("/0.mp3");
    const Lines orders = Orders();
    EXPECT_EQ(Lines(orders.end() - 2, orders.end()), (Lines{"1024 1 121", kPlay}));
    EXPECT_EQ(std::count(orders.begin(), orders.end(), kPlay), 1);
}

TEST_F(PlayMP3, TheEndOfTheProgramEndsTheWait)
{
    port.window = 0;
    desktop.onYield = [] { player::EndPlaying(); };
    Play("/0.mp3");
    EXPECT_LE(clock.steadyMs, 20);
    port.window = 9;
    Play("/1.mp3"); // nothing is played any more
    EXPECT_EQ(Orders().size(), 1U);
}

TEST_F(PlayMP3, ADiskThatIsNotInIsAskedForWithItsLabel)
{
    media.type = platform::DriveType::CdRom;
    Form().LV.SelectOnly(Form().LV.Find("/0"));
    Play("/0.mp3");
    EXPECT_EQ(desktop.boxes,
              std::vector<std::string>{
                  "You have to insert the CD-ROM labeled 'STICK' to play this MP3."});
    EXPECT_EQ(Orders(), Lines());
    Form().LV.SelectOnly(Form().LV.Find("/1"));
    media.type = platform::DriveType::Fixed;
    media.missing = true;
    Play("/1.mp3");
    EXPECT_EQ(desktop.boxes.back(),
              "You have to insert the Removable labeled '' to play this MP3.");
    EXPECT_EQ(Orders(), Lines());
}

TEST_F(PlayMP3, ADiskThatIsInIsNotAskedFor)
{
    for (const platform::DriveType type :
         {platform::DriveType::Unknown, platform::DriveType::NoRoot, platform::DriveType::Removable,
          platform::DriveType::Remote, platform::DriveType::CdRom, platform::DriveType::RamDisk}) {
        media.type = type;
        tests::WriteFile(folder / "song.mp3", "x");
        Play(folder / "song.mp3");
        EXPECT_EQ(desktop.boxes.size(), 0U);
        EXPECT_EQ(Orders().back(), kPlay);
        Play(folder / "none.mp3");
        EXPECT_EQ(desktop.boxes.size(), 1U);
        EXPECT_EQ(Orders(), Lines());
        desktop.boxes.clear();
    }
    media.type = platform::DriveType::Fixed; // for a fixed disk the player reports the missing file
    Play(folder / "none.mp3");
    EXPECT_EQ(desktop.boxes.size(), 0U);
    EXPECT_EQ(Orders().back(), kPlay);
}

TEST_F(PlayMP3, ThePanelIsRefreshedOnBothWaysOut)
{
    browser::MainForm &form = Form();
    form.ShowSelectedItems.SetEnabled(false);
    form.LV.SelectOnly(form.LV.Find("/1"));
    form.WebItemName.SetCaption("old");
    Play("/1.mp3");
    EXPECT_NE(form.WebItemName.Caption(), "old");
    form.WebItemName.SetCaption("old");
    media.missing = true;
    Play("/none.mp3");
    EXPECT_NE(form.WebItemName.Caption(), "old");
}

TEST_F(PlayMP3, PopupAndDoubleClick)
{
    browser::MainForm &form = Form();
    EXPECT_TRUE(browser::CanRun("cp_Play"));
    player::IsWinampRunning();
    form.LV.SelectOnly(form.LV.Find("/1"));
    browser::ClickPopup(form, "Play");
    EXPECT_EQ(Orders(), (Lines{"1024 1 121", kPlay}));
    browser::ClickPopup(form, "Pause");
    EXPECT_EQ(Orders(), Lines{kPause});
    browser::ClickPopup(form, "Stop");
    EXPECT_EQ(Orders(), Lines{kStop});
    browser::ItemClick(form, form.LV);
    EXPECT_EQ(Orders(), (Lines{"1024 1 121", kPlay}));
    ui::KeyedList results;
    results.SetSubItemKeys({"Title", "Label", "Path"});
    AddRow(results, "/0", "", "/0.mp3");
    form.searchList = &results;
    form.PopupFromSearch = true;
    browser::ClickPopup(form, "Play"); // the row of the list on which the popup was opened
    EXPECT_EQ(Orders(), (Lines{"1024 0 121", kPlay}));
    form.searchList = nullptr;
}

TEST_F(PlayMP3, TheRowThatSaysThatNothingWasFound)
{
    browser::MainForm &form = Form();
    form.LV.ClearRows();
    form.LV.SetSubItemKeys({"Title"});
    const std::string_view words = "No items found.";
    form.LV.SelectOnly(form.LV.AddRow("/0", "", "", {&words, 1}));
    browser::ItemClick(form, form.LV);
    browser::ClickPopup(form, "Play");
    EXPECT_EQ(port.Received(), Lines());
}

TEST_F(PlayMP3, RefreshListDeletesAndWritesAnew)
{
    Form().tmrRefreshList.Fire();
    EXPECT_EQ(port.Received(), (Lines{"find Winamp v1.x", "1024 0 120"}));
    EXPECT_FALSE(std::filesystem::exists(port.Playlist()));
    port.window = 0;
    port.SetPlaylist("#EXTM3U\r\n");
    Form().tmrRefreshList.Fire(); // without a player its file stays
    EXPECT_EQ(port.Received(), (Lines{"find Winamp v1.x", "1024 0 120"}));
    EXPECT_TRUE(std::filesystem::exists(port.Playlist()));
    platform::TheMachine().player = nullptr;
    Form().tmrRefreshList.Fire();
    platform::TheMachine().player = &port;
}

} // namespace

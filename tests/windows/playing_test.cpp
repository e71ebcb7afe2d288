// The program's windows and the real player: a song is played, followed, paused, sought and edited
// by mouse and keys.
#include "browser/form/commandstate.h"
#include "catalogue/edittags.h"
#include "metadata/tagwriter.h"
#include "platform/player/audacious.h"
#include "platform/posix/systemclock.h"
#include "player/install.h"
#include "player/nowplaying.h"
#include "player/playing.h"
#include "player/playmp3.h"
#include "player/winampmod.h"
#include "tagedit/editcommands.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/realplayer.h"
#include "tests/windows/mainwindowfixture.h"
#include "ui/qt/form.h"

#include <QLineEdit>
#include <QMenu>
#include <QSlider>
#include <cstdio>

namespace tests
{

namespace
{

constexpr int kPatience = 60'000; // of a machine with much to do, ms
constexpr int kSeconds = 200;     // of a song

class Playing : public MainWindowTest
{
protected:
    Playing()
    {
        platform::TheMachine().clock = &systemClock;
        platform::TheMachine().player = &port;
        metadata::TagWriterHooks &writer = metadata::TheTagWriterHooks();
        writer.updateCatalogue = catalogue::UpdateEditedTags;
        writer.releasePlayingFile = player::ReleasePlayingFile;
        writer.restorePlayingFile = player::RestorePlayingFile;
    }
    ~Playing() override
    {
        ui::CloseAll();
        Settle(); // closed windows are deleted by the next event
        metadata::TheTagWriterHooks() = {};
        player::ResetPlayMP3();
        player::ResetNowPlaying();
        platform::TheMachine().player = nullptr;
        platform::TheMachine().clock = &clock;
    }

    // The main window with two songs, and the player's commands.
    void ShowSongs()
    {
        for (const char *name : {"one", "two"})
            WriteFile(Song(std::string(name) + ".mp3"),
                      Id3v2(TextFrame("TIT2", name) + TextFrame("TPE1", "Artist")) +
                          ReadFile(real.Song("silence.mp3", kSeconds)) +
                          Id3v1({.title = name, .artist = "Artist"}));
        Start();
        player::Install();
        tagedit::Install();
        browser::UpdateCommands(Form());
        catalogue::ListRefresh(false);
        browser::LoadTreeView(Form(), "");
        Form().TV.SetExpanded(Form().TV.Find("ByArtist"), true);
        Form().TreeJustExpanded = false;
        Form().TV.ClickText(Form().TV.Find("#ARTIST"));
        ASSERT_EQ(Form().LV.Count(), 2);
        Form().tmr_Playing.event = [this] { Tick(); };
    }

    // A tick of the monitor: notes how many of them passed between the song and its panel.
    void Tick()
    {
        ++ticks;
        if (began == 0 && real.IsUp() && real.Status() == "playing")
            began = ticks;
        player::tmr_Playing_Timer();
        if (shown == 0 && began != 0 && Panel("Playing").starts_with("Playing:  "))
            shown = ticks;
    }

    std::string Panel(std::string_view key) { return Form().SB.Panel(key).text; }
    bool WaitForPanel(const std::string &text)
    {
        const bool came = tests::WaitUntil([&] { return Panel("Playing") == text; }, kPatience);
        EXPECT_TRUE(came) << Panel("Playing") << ", the player is " << real.Status();
        return came;
    }
    bool WaitForStatus(const char *status)
    {
        return tests::WaitUntil([&] { return real.Status() == status; }, kPatience);
    }

    // The place of the row with this title among those that show.
    int RowOf(const std::string &title)
    {
        for (int i = 0; i < 2; ++i)
            if (Form().LV.SubItem(Form().LV.RowAt(i), "Title") == title)
                return i;
        ADD_FAILURE() << title;
        return 0;
    }
    void DoubleClickSong(const std::string &title)
    {
        began = shown = 0;
        DoubleClickAt(*LV().viewport(), RowAt(RowOf(title)));
    }

    void ChooseInPopup(const QString &caption)
    {
        ClickAt(*LV().viewport(), RowAt(0), Qt::RightButton);
        auto *popup = Find<QMenu>(*window, "Pop");
        ASSERT_TRUE(tests::WaitUntil([popup] { return popup->isVisible(); }, kPatience));
        for (QAction *action : popup->actions())
            if (action->text().remove(QLatin1Char('&')).startsWith(caption)) {
                ClickAt(*popup, popup->actionGeometry(action).center());
                return;
            }
        ADD_FAILURE() << caption.toStdString();
    }

    RealPlayer real;
    platform::posix::SystemClock systemClock;
    platform::player::AudaciousPlayer port{5000}; // of a machine with much to do
    ui::qt::FormWindows host;
    int ticks = 0, began = 0, shown = 0;
};

TEST_F(Playing, DoubleClickPauseStop)
{
    ShowSongs();
    EXPECT_FALSE(real.IsThere());
    DoubleClickSong("one"); // starts the player
    ASSERT_TRUE(WaitForPanel("Playing:  Artist - one"));
    EXPECT_EQ(real.Status(), "playing");
    EXPECT_LE(shown - began, 4) << "ticks of 250 ms: a second";
    EXPECT_TRUE(
        tests::WaitUntil([&] { return Panel("PlayingStatus").ends_with(" / 03:20"); }, kPatience));
    KeepScreenshot(*window, "main-playing");

    ChooseInPopup(QStringLiteral("Pause"));
    ASSERT_TRUE(WaitForPanel("Playing:  Artist - one (paused)"));
    EXPECT_EQ(real.Status(), "paused");
    ChooseInPopup(QStringLiteral("Pause"));
    ASSERT_TRUE(WaitForPanel("Playing:  Artist - one"));
    DoubleClickSong("two");
    ASSERT_TRUE(WaitForPanel("Playing:  Artist - two"));
    ChooseInPopup(QStringLiteral("Stop"));
    ASSERT_TRUE(WaitForPanel("Not Playing..."));
    EXPECT_EQ(Panel("PlayingStatus"), "00:00 / 00:00");
    EXPECT_EQ(real.Status(), "stopped");
    EXPECT_EQ(real.Length(), 2);
    DoubleClickSong("one"); // it is in the list by now
    ASSERT_TRUE(WaitForPanel("Playing:  Artist - one"));
    EXPECT_EQ(real.Length(), 2);
}

TEST_F(Playing, ADragOfTheSeekBar)
{
    ShowSongs();
    DoubleClickSong("one");
    ASSERT_TRUE(WaitForPanel("Playing:  Artist - one"));
    ChooseMenu("mnuTools", "submnuSongControls");
    QWidget *controls = WaitForWindow("frmControls", kPatience);
    ASSERT_NE(controls, nullptr);
    auto *bar = Find<QSlider>(*controls, "HScroll");
    ASSERT_TRUE(tests::WaitUntil([&] { return bar->maximum() == kSeconds; }, kPatience));
    const int half = bar->width() / 2, middle = bar->height() / 2;
    Drag(*bar, {8, middle}, {half, middle});
    ASSERT_TRUE(tests::WaitUntil([&] { return real.Time() > 80'000; }, kPatience));
    EXPECT_LT(real.Time(), 160'000U);
    EXPECT_EQ(real.Status(), "playing");
    EXPECT_TRUE(tests::WaitUntil([&] { return bar->value() > 80; }, kPatience)); // it follows
    KeepScreenshot(*controls, "frmControls-playing");
    ASSERT_TRUE(WaitForPanel("Playing:  Artist - one")); // the drag has stopped the song
    Click(*Find(*controls, "cmdSong(2)"));
    ASSERT_TRUE(WaitForPanel("Playing:  Artist - one (paused)"));
}

TEST_F(Playing, AnEditOfTheSongThatPlays)
{
    ShowSongs();
    DoubleClickSong("one");
    ASSERT_TRUE(WaitForPanel("Playing:  Artist - one"));
    player::JumpToTime(60, 0);
    ASSERT_TRUE(tests::WaitUntil([&] { return real.Time() > 60'000; }, kPatience));
    std::uint32_t before = 0;
    WhenModal(
        [&](QWidget &editor) {
            auto *title = Find<QLineEdit>(editor, "txtTitle(2)");
            title->setFocus();
            PressKey("Ctrl+A");
            TypeText("Changed");
            before = real.Time();
            Click(*Find(editor, "cmdOk"));
        },
        kPatience);
    PressKey("Alt+3");
    ASSERT_TRUE(WaitForStatus("playing"));
    ASSERT_TRUE(tests::WaitUntil([&] { return real.Time() >= 59'000; }, kPatience));
    const std::uint32_t after = real.Time();
    std::printf("position before the edit %u ms, after it %u ms\n", before, after);
    EXPECT_GE(after + 600, before); // to the second
    EXPECT_EQ(player::GetCurrentSongPath(), Song("one.mp3"));
    EXPECT_EQ(Form().LV.SubItem(Form().LV.RowAt(RowOf("Changed")), "Title"), "Changed");
    // The panel is written anew when a tick has seen the song stopped; the edit may be quicker.
    ChooseInPopup(QStringLiteral("Stop"));
    ASSERT_TRUE(WaitForPanel("Not Playing..."));
    player::PlayTrack();
    ASSERT_TRUE(WaitForPanel("Playing:  Artist - Changed"));
}

TEST_F(Playing, ARegenerationIsNotDisturbed)
{
    ShowSongs();
    DoubleClickSong("one");
    ASSERT_TRUE(WaitForPanel("Playing:  Artist - one"));
    const std::vector<std::string> rows = Rows();
    for (int round = 0; round < 3; ++round) {
        catalogue::ListRefresh(false);
        const int now = ticks;
        EXPECT_TRUE(WaitUntil([&] { return ticks > now; }));
        EXPECT_EQ(Rows(), rows);
    }
    EXPECT_EQ(real.Status(), "playing");
    EXPECT_EQ(Panel("Playing"), "Playing:  Artist - one");
}

} // namespace

} // namespace tests

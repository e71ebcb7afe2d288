#include "player/controlsform.h"
#include "tests/support/fakeforms.h"
#include "tests/support/recordingplayer.h"
#include "tests/support/scripteddesktop.h"

using tests::kPlay;
using tests::kStop;

namespace
{

using Lines = std::vector<std::string>;

class Controls : public testing::Test
{
protected:
    Controls()
    {
        player::IsWinampRunning();
        port.Answer(105, 205, 1);
        port.Answer(105, 61'500);
        ui::Show(form);
        port.Received();
    }
    ~Controls() override { ui::Close(form); }

    Lines Orders() { return port.Orders(); }

    // What the user does with the thumb, as the toolkit's bar reports it.
    void Grasp() { form.HScroll.thumbHeld = true; }
    void Move() { form.HScroll.thumbMoved(); }
    void LetGo(int value)
    {
        form.HScroll.thumbHeld = false;
        form.HScroll.thumbReleased();
        form.HScroll.SetValue(value);
    }

    tests::ScriptedDesktop desktop;
    tests::RecordingPlayer port;
    tests::FakeForms host;
    player::ControlsForm form;
};

TEST_F(Controls, TheButtonsSendTheirMessages)
{
    const char *const messages[] = {"273 40044 0", "273 40045 0", "273 40046 0", "273 40047 0",
                                    "273 40048 0"};
    for (std::size_t i = 0; i < form.cmdSong.size(); ++i) {
        form.cmdSong[i].Click();
        EXPECT_EQ(port.Received(), Lines{messages[i]});
    }
    form.cmdShuffle.Click();
    EXPECT_EQ(port.Received(), (Lines{"front 9", "key 115 116 0", "front 3"}));
}

TEST_F(Controls, Captions)
{
    EXPECT_EQ(form.Title(), "Song's controls");
    EXPECT_EQ(form.cmdShuffle.Caption(), "Shuffle");
    std::string signs;
    for (const ui::Button &button : form.cmdSong) {
        signs += button.Caption();
        EXPECT_NE(button.Image(), "");
        EXPECT_NE(button.ToolTip(), "");
    }
    EXPECT_EQ(signs, "94;<:");
    EXPECT_NE(form.HScroll.ToolTip(), "");
}

TEST_F(Controls, TheBarFollowsTheTimes)
{
    EXPECT_EQ(form.HScroll.Max(), 205); // from the start
    EXPECT_EQ(form.HScroll.Value(), 62);
    port.Answer(105, 63'400);
    EXPECT_TRUE(form.tmrUpdate.Enabled());
    EXPECT_EQ(form.tmrUpdate.IntervalMs(), 1000);
    EXPECT_FALSE(form.tmrStopDragging.Enabled());
    EXPECT_EQ(form.tmrStopDragging.IntervalMs(), 250);
    form.tmrUpdate.Fire();
    EXPECT_EQ(form.HScroll.Max(), 205);
    EXPECT_EQ(form.HScroll.Value(), 63);
    EXPECT_EQ(Orders(), Lines());
    port.Answer(105, 5999, 1);
    port.Answer(105, 5'999'000);
    form.tmrUpdate.Fire();
    EXPECT_EQ(form.HScroll.Max(), 5999);
    EXPECT_EQ(form.HScroll.Value(), 5999);
    port.Answer(105, 0, 1);
    port.Answer(105, 0);
    form.tmrUpdate.Fire();
    EXPECT_EQ(form.HScroll.Max(), 0);
}

// Its results 0 are no answers: the bar does not move, and no key seeks from 0.
TEST_F(Controls, APlayerThatDoesNotAnswerMovesNothing)
{
    port.silent = true;
    port.Answer(105, 0, 1);
    port.Answer(105, 0);
    form.tmrUpdate.Fire();
    EXPECT_EQ(form.HScroll.Max(), 205);
    EXPECT_EQ(form.HScroll.Value(), 62);
    EXPECT_TRUE(form.onKeyDown(ui::Key{39}));
    EXPECT_EQ(Orders(), Lines());
    port.silent = false;
    port.Answer(105, 205, 1);
    port.Answer(105, 70'000);
    form.tmrUpdate.Fire();
    EXPECT_EQ(form.HScroll.Value(), 70);
}

TEST_F(Controls, AQuickDragSeeksToItsValue)
{
    form.tmrUpdate.Fire();
    Grasp();
    Move();
    Move();
    EXPECT_EQ(Orders(), (Lines{kStop, kStop}));
    EXPECT_TRUE(form.Dragging);
    LetGo(120); // within the 250 ms
    EXPECT_EQ(Orders(), Lines());
    port.Answer(105, 0); // a stopped player is at 0
    form.tmrUpdate.Fire();
    EXPECT_EQ(Orders(), Lines());
    form.tmrStopDragging.Fire();
    EXPECT_EQ(Orders(), (Lines{kPlay, "1024 120000 106"}));
    EXPECT_FALSE(form.tmrStopDragging.Enabled());
    EXPECT_FALSE(form.Dragging);
    EXPECT_FALSE(form.SeekPending);
    port.Answer(105, 121'000);
    form.tmrUpdate.Fire();
    EXPECT_EQ(form.HScroll.Value(), 121);
    EXPECT_EQ(Orders(), Lines());
}

TEST_F(Controls, AThumbThatIsHeldIsNotMovedAway)
{
    form.tmrUpdate.Fire();
    Grasp();
    Move();
    form.tmrStopDragging.Fire();
    EXPECT_TRUE(form.SeekPending);
    port.Answer(105, 0);
    form.tmrUpdate.Fire();
    form.tmrUpdate.Fire();
    EXPECT_EQ(form.HScroll.Value(), 62);
    EXPECT_EQ(Orders(), Lines{kStop});
    LetGo(150);
    EXPECT_EQ(Orders(), (Lines{kPlay, "1024 150000 106"}));
    EXPECT_FALSE(form.tmrStopDragging.Enabled());
}

TEST_F(Controls, ADragThatEndsWhereItBegan)
{
    form.tmrUpdate.Fire();
    Grasp();
    Move();
    LetGo(62);
    form.tmrStopDragging.Fire();
    EXPECT_EQ(Orders(), (Lines{kStop, kPlay, "1024 62000 106"}));
}

TEST_F(Controls, AClickOnTheTrackSendsNothing)
{
    form.tmrUpdate.Fire();
    form.HScroll.SetValue(100);
    EXPECT_EQ(Orders(), Lines());
    Grasp();
    LetGo(100);
    EXPECT_EQ(Orders(), Lines());
    form.tmrUpdate.Fire(); // and the thumb is put back
    EXPECT_EQ(form.HScroll.Value(), 62);
    EXPECT_EQ(Orders(), Lines());
}

TEST_F(Controls, KeysSeekWithoutTheEvents)
{
    constexpr ui::Key kLeft{37}, kRight{39};
    int scrolls = 0, changes = 0;
    form.HScroll.thumbMoved = [&] { ++scrolls; };
    form.HScroll.valueChanged = [&] { ++changes; };
    EXPECT_TRUE(form.onKeyDown(kRight));
    EXPECT_EQ(Orders(), Lines{"1024 67000 106"});
    EXPECT_TRUE(form.onKeyDown({39, false, true, false})); // with Ctrl as well
    EXPECT_EQ(Orders(), Lines{"1024 67000 106"});
    EXPECT_TRUE(form.onKeyDown(kLeft));
    EXPECT_EQ(Orders(), Lines{"1024 57000 106"});
    port.Answer(105, 2'000);
    EXPECT_TRUE(form.onKeyDown(kLeft));
    EXPECT_EQ(Orders(), Lines{"1024 0 106"});
    port.Answer(105, 203'000);
    EXPECT_TRUE(form.onKeyDown(kRight));
    EXPECT_EQ(Orders(), Lines{"1024 205000 106"}); // not into the next song
    for (const ui::Key &other : {ui::Key{39, true}, ui::Key{37, false, false, true}, ui::Key{38}})
        EXPECT_FALSE(form.onKeyDown(other));
    EXPECT_EQ(Orders(), Lines());
    EXPECT_EQ(scrolls + changes, 0);
    EXPECT_FALSE(form.Dragging);
    EXPECT_FALSE(form.SeekPending);
}

TEST_F(Controls, KeysSeekWhereTheLengthIsNotKnown)
{
    port.Answer(105, 0, 1);
    form.tmrUpdate.Fire();
    EXPECT_TRUE(form.onKeyDown(ui::Key{39}));
    EXPECT_EQ(Orders(), Lines{"1024 67000 106"});
}

TEST_F(Controls, WithoutAPlayerNothingHappens)
{
    player::WinampWindow = 0; // no window was found
    ui::Close(form);
    ui::Show(form);
    EXPECT_EQ(form.HScroll.Max(), 0);
    for (const ui::Button &button : form.cmdSong)
        button.Click();
    Grasp();
    Move();
    LetGo(0);
    form.tmrStopDragging.Fire();
    form.tmrUpdate.Fire();
    EXPECT_EQ(form.HScroll.Value(), 0);
    for (const std::string &line : Orders())
        EXPECT_TRUE(line.ends_with(" to 0")) << line; // the window that is not there
}

TEST_F(Controls, ClosingEndsTheTimers)
{
    Grasp(); // the window may close while the user holds the thumb
    Move();
    ui::Close(form);
    EXPECT_FALSE(form.tmrUpdate.Enabled());
    EXPECT_FALSE(form.tmrStopDragging.Enabled());
    ui::Show(form);
    EXPECT_FALSE(form.Dragging);
    EXPECT_FALSE(form.HScroll.thumbHeld);
    EXPECT_TRUE(form.tmrUpdate.Enabled());
}

TEST_F(Controls, TheCommandShowsOneWindow)
{
    ui::Close(form);
    player::submnuSongControls_Click();
    player::submnuSongControls_Click();
    ASSERT_EQ(host.Forms().size(), 1U);
    EXPECT_EQ(host.Forms()[0]->name, "frmControls");
    player::ForgetControls();
    EXPECT_EQ(host.Forms().size(), 0U);
    player::ForgetControls(); // nothing is left to forget
}

} // namespace

// The window of the song's controls with mouse and keys; its player records the calls.
#include "player/controlsform.h"
#include "tests/support/memorysettings.h"
#include "tests/support/recordingplayer.h"
#include "tests/support/scripteddesktop.h"
#include "tests/windows/bench.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTest>
#include <cstdio>

namespace tests
{

using tests::kPlay;
using tests::kStop;

namespace
{

using Lines = std::vector<std::string>;

class ControlsScaled : public testing::Test
{
protected:
    ControlsScaled()
    {
        player::IsWinampRunning();
        port.Answer(105, 200, 1);
        port.Answer(105, 50'000);
        ui::Show(form);
        window = host.WindowOf(form);
        ShowAndActivate(*window);
        bar = Find<QSlider>(*window, "HScroll");
        // A stopped player is at 0.
        port.onCall = [this](const std::string &line) {
            if (line == kStop)
                port.Answer(105, 0);
        };
        Orders();
    }
    ~ControlsScaled() override
    {
        ui::CloseAll();
        Settle(); // closed windows are deleted by the next event
    }

    Lines Orders() { return port.Orders(); }

    // The middle of the thumb.
    QPoint Thumb() const
    {
        QStyleOptionSlider option;
        option.initFrom(bar);
        option.minimum = bar->minimum();
        option.maximum = bar->maximum();
        option.sliderPosition = bar->sliderPosition();
        option.sliderValue = bar->value();
        option.orientation = Qt::Horizontal;
        return bar->style()
            ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, bar)
            .center();
    }

    // The middle of the thumb at three quarters of the song.
    QPoint Later() const { return {bar->width() * 3 / 4, Thumb().y()}; }

    // The seek that follows a drag: `orders` are stops, then one play and one seek, in seconds.
    static void ExpectSeek(const Lines &orders, int from, int to)
    {
        ASSERT_GE(orders.size(), 3U);
        for (std::size_t i = 0; i + 2 < orders.size(); ++i)
            EXPECT_EQ(orders[i], kStop);
        EXPECT_EQ(orders[orders.size() - 2], kPlay);
        int ms = -1;
        ASSERT_EQ(std::sscanf(orders.back().c_str(), "1024 %d 106", &ms), 1) << orders.back();
        EXPECT_EQ(ms % 1000, 0);
        EXPECT_GE(ms / 1000, from);
        EXPECT_LE(ms / 1000, to);
    }

    bool WaitForSeek(Lines &orders)
    {
        return WaitUntil([&] {
            for (std::string &line : Orders())
                orders.push_back(std::move(line));
            return !orders.empty() && orders.back().ends_with(" 106");
        });
    }

    ScriptedDesktop desktop;
    MemorySettings settings;
    RecordingPlayer port;
    player::ControlsForm form;
    ui::qt::FormWindows host;
    QWidget *window = nullptr;
    QSlider *bar = nullptr;
};

TEST_F(ControlsScaled, TheButtons)
{
    KeepScreenshot(*window, "frmControls");
    const char *const messages[] = {"273 40044 0", kPlay, "273 40046 0", kStop, "273 40048 0"};
    for (std::size_t i = 0; i < std::size(messages); ++i) {
        Click(*Find(*window, ("cmdSong(" + std::to_string(i) + ")").c_str()));
        EXPECT_EQ(Orders(), Lines{messages[i]});
    }
    Click(*Find(*window, "cmdShuffle"));
    EXPECT_EQ(Orders(), (Lines{"front 9", "key 115 116 0", "front 3"}));
    EXPECT_FALSE(Find<QPushButton>(*window, "cmdShuffle")->isCheckable()); // its state is not known
    Find(*window, "cmdSong(1)")->setFocus();
    PressKey("Space");
    EXPECT_EQ(Orders(), Lines{kPlay});
}

TEST_F(ControlsScaled, TheBarFollowsTheSong)
{
    EXPECT_EQ(bar->maximum(), 200);
    EXPECT_EQ(bar->value(), 50);
    port.Answer(105, 80'000);
    EXPECT_TRUE(WaitUntil([&] { return bar->value() == 80; }));
    EXPECT_EQ(Orders(), Lines());
}

TEST_F(ControlsScaled, ADragSeeks)
{
    Drag(*bar, Thumb(), Later());
    Lines orders;
    ASSERT_TRUE(WaitForSeek(orders));
    ExpectSeek(orders, 140, 160);
    AwaitTicks(form.tmrUpdate, 2); // they change nothing more
    EXPECT_EQ(Orders(), Lines());
    EXPECT_EQ(bar->value(), 0);
}

TEST_F(ControlsScaled, AThumbThatIsHeldDoesNotMove)
{
    QWindow *top = window->windowHandle();
    const auto at = [&](QPoint place) { return bar->mapTo(window, place); };
    const QPoint start = at(Thumb()), end = at(Later());
    QTest::mousePress(top, Qt::LeftButton, {}, start);
    QTest::mouseMove(top, (start + end) / 2);
    QTest::mouseMove(top, end);
    ASSERT_TRUE(WaitUntil([&] { return form.SeekPending; }));
    const int held = bar->sliderPosition();
    EXPECT_GE(held, 140);
    AwaitTicks(form.tmrUpdate, 2); // the player is at 0 meanwhile
    EXPECT_EQ(bar->sliderPosition(), held);
    for (const std::string &line : Orders())
        EXPECT_EQ(line, kStop);
    QTest::mouseRelease(top, Qt::LeftButton, {}, end);
    Lines orders;
    ASSERT_TRUE(WaitForSeek(orders));
    orders.insert(orders.begin(), kStop);
    ExpectSeek(orders, held, held);
}

TEST_F(ControlsScaled, ADragBackToItsStartSeeksThere)
{
    QWindow *top = window->windowHandle();
    const QPoint start = bar->mapTo(window, Thumb());
    QTest::mousePress(top, Qt::LeftButton, {}, start);
    QTest::mouseMove(top, start + QPoint(60, 0));
    QTest::mouseMove(top, start);
    QTest::mouseRelease(top, Qt::LeftButton, {}, start);
    Lines orders;
    ASSERT_TRUE(WaitForSeek(orders));
    ExpectSeek(orders, 50, 50);
}

TEST_F(ControlsScaled, AClickBesideTheThumbSendsNothing)
{
    ClickAt(*bar, Later());
    EXPECT_NE(bar->value(), 50);
    EXPECT_TRUE(WaitUntil([&] { return bar->value() == 50; })); // it is set back
    ClickAt(*bar, Thumb());                                     // nor does one on it
    ClickAt(*bar, Later(), Qt::MiddleButton);
    EXPECT_TRUE(WaitUntil([&] { return bar->value() == 50; }));
    EXPECT_EQ(Orders(), Lines());
}

TEST_F(ControlsScaled, ArrowsSeekWhateverHasTheKeyboard)
{
    for (const char *name : {"HScroll", "cmdSong(0)", "cmdShuffle"}) {
        Find(*window, name)->setFocus();
        PressKey("Right");
        PressKey("Ctrl+Left");
        EXPECT_EQ(Orders(), (Lines{"1024 55000 106", "1024 45000 106"})) << name;
        EXPECT_EQ(bar->value(), 50);
    }
    PressKey("Escape");
    EXPECT_TRUE(WaitUntil([&] { return !form.Visible(); }));
    EXPECT_FALSE(form.tmrUpdate.Enabled());
}

} // namespace

} // namespace tests

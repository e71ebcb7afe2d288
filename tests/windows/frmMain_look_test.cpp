// The main window's look: names for screen readers, themes, scales, small and large contents.
#include "browser/webpanel.h"
#include "platform/qt/theme.h"
#include "tests/windows/accessibility.h"
#include "tests/windows/awaitplace.h"
#include "tests/windows/look.h"
#include "tests/windows/mainwindowfixture.h"

#include <gtest/gtest.h>

#include <QAbstractAnimation>
#include <QWheelEvent>
#include <ctime>

namespace tests
{

namespace
{

class MainWindowScaled : public MainWindowTest
{
protected:
    // Rows of the artist's list, and their node in the tree.
    void Fill(int count)
    {
        constexpr const char *kTitles[] = {"So What",
                                           "Freddie Freeloader",
                                           "Blue in Green",
                                           "All Blues",
                                           "Waltz for Debby & Friends",
                                           "A title that goes on and on until it cannot fit"};
        for (int i = 0; i < count; ++i) {
            const std::vector<catalogue::Value> values = {
                std::string(kTitles[i % 6]),
                std::string("Miles Davis"),
                std::string("Kind of Blue"),
                std::string("1959"),
                std::string("Modal"),
                std::string("Jazz"),
                std::string(),
                Song("Kind of Blue/" + std::to_string(i) + ".mp3"),
                std::int64_t{0}};
            catalogue::DataAccess->ExecuteSQL("AddMP3", catalogue::kStoredInsert, values);
        }
        browser::LoadTreeView(Form(), "");
        Form().TV.SetExpanded(Form().TV.Find("ByArtist"), true);
        Form().TreeJustExpanded = false;
        Form().TV.ClickText(Form().TV.Find("#MILES DAVIS"));
        Form().LV.SelectOnly(2);
        Form().LV.onClick();
        Settle();
    }
};

TEST_F(MainWindowScaled, LightAndDark)
{
    Start();
    Fill(40);
    KeepScreenshot(*window, "main-light");
    QImage light;
    ASSERT_TRUE(WaitUntil([&] { // all is painted
        light = Screenshot(*window);
        return Stays([&] { return Screenshot(*window) == light; }, 250);
    }));
    platform::qt::ApplyPalette(true);
    KeepScreenshot(*window, "main-dark");
    EXPECT_NE(Screenshot(*window), light);
    platform::qt::ApplyPalette(false);
    EXPECT_TRUE(WaitUntil([&] { return Screenshot(*window) == light; }))
        << "the theme changes back without a trace";
}

TEST_F(MainWindowScaled, EveryControlHasAName)
{
    Start();
    Fill(20);
    EXPECT_EQ(NamelessControls(*window), std::vector<std::string>{});
}

TEST_F(MainWindowScaled, EachLanguageInASmallWindow)
{
    const auto open = [this] {
        Start();
        Fill(20);
        window->resize(790, 520);
        AwaitPlace(*window);
        return window.get();
    };
    CheckLook("main-small", open, [this] { Leave(); });
}

TEST_F(MainWindowScaled, NothingOverlapsAndAllFillsTheWindow)
{
    Start();
    Fill(40);
    for (const QSize size : {QSize(800, 560), QSize(1000, 640)}) {
        window->resize(size);
        AwaitPlace(*window);
        const QWidget &status = *Find(*window, "SB");
        EXPECT_EQ(status.geometry().bottom(), window->centralWidget()->height() - 1);
        EXPECT_NEAR(TV().geometry().bottom() + 1, status.y(), 1);
        EXPECT_NEAR(Find(*window, "pctBorders")->geometry().bottom() + 1, status.y(), 1);
        EXPECT_NEAR(Find(*window, "pctBorders")->geometry().right() + 1,
                    window->centralWidget()->width(), 2);
        EXPECT_GE(Find(*window, "TBAddress")->y() + 4,
                  Find(*window, "TB")->geometry().bottom() - 4);
        const QWidget &scroll = *Find(*window, "vsbBack");
        EXPECT_GE(LV().x(), scroll.isVisible() ? scroll.geometry().right() : 0);
    }
}

// An event that runs while the form yields could destroy what the window's own layout is using.
TEST_F(MainWindowScaled, TheFormYieldsWhenTheWindowsOwnLayoutIsDone)
{
    Start();
    Fill(3);
    int yields = 0, atWork = 0;
    desktop.doEvents = [&] {
        ++yields;
        for (const auto *step : window->centralWidget()->findChildren<QAbstractAnimation *>())
            atWork += step->state() == QAbstractAnimation::Running ? 1 : 0;
    };
    for (const int width : {900, 800, 1000})
        window->resize(width, 600);
    window->menuBar()->setMinimumHeight(60);
    AwaitPlace(*window);
    desktop.doEvents = [] { QApplication::processEvents(); };
    EXPECT_GE(yields, 4);
    EXPECT_EQ(atWork, 0);
    EXPECT_EQ(Find(*window, "SB")->geometry().bottom(), window->centralWidget()->height() - 1);
}

TEST_F(MainWindowScaled, PanelScrollsByItsBar)
{
    Start();
    Fill(3);
    window->resize(800, 330);
    AwaitPlace(*window);
    auto *scroll = Find<QScrollBar>(*window, "vsbBack");
    ASSERT_TRUE(WaitUntil([&] { return scroll->isVisible(); }));
    scroll->setValue(scroll->maximum());
    EXPECT_LT(Find(*window, "pctWeb")->y(), 0);
    EXPECT_TRUE(LV().hasFocus()) << "the wheel goes on working";
    window->resize(800, 900);
    AwaitPlace(*window);
    EXPECT_TRUE(WaitUntil([&] { return !scroll->isVisible(); }));
    EXPECT_EQ(Find(*window, "pctWeb")->y(), 0);
}

// Songs with extreme titles: no click freezes the window.
TEST_F(MainWindowScaled, AMegabyteInTheTitleShowsAtOnce)
{
    Start();
    Fill(3);
    const std::vector<std::string> texts = {
        std::string(1'000'000, 'x'), std::string(1'000'000, '&'), std::string(1'000'000, '\r'),
        std::string(1'000'000, ' ') + "x"};
    for (const std::string &text : texts) {
        Form().LV.SetSubItem(Form().LV.SelectedItem(), "Title", text);
        const std::clock_t start = std::clock();
        browser::ShowSelectedItemInfo(Form().LV, Form());
        window->repaint();
        const double ms = 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        EXPECT_LT(ms, 100) << text.substr(0, 1);
    }
}

TEST_F(MainWindowScaled, TheWheelOverThePanelMovesItsTextByLines)
{
    Start();
    Fill(3);
    window->resize(800, 330);
    AwaitPlace(*window);
    ASSERT_TRUE(WaitUntil([&] { return Find(*window, "vsbBack")->isVisible(); }));
    QWidget &panel = *Find(*window, "pctWeb");
    const int line = window->fontMetrics().lineSpacing();
    const auto turn = [](QWidget &over, int eighths) {
        QWheelEvent event(over.rect().center(), over.mapToGlobal(over.rect().center()), {},
                          {0, eighths}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&over, &event);
    };
    turn(panel, -40); // a third of a notch is one of its three lines
    EXPECT_NEAR(panel.y(), -line, 1);
    turn(*Find(*window, "vsbBack"), -40);
    EXPECT_NEAR(panel.y(), -2 * line, 1);
    turn(panel, 240);
    EXPECT_EQ(panel.y(), 0);
    turn(panel, -120'000);
    EXPECT_EQ(panel.y(), -ui::PixelsOfTwips(Form().vsbBack.Max()));
}

} // namespace

} // namespace tests

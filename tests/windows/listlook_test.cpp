// What the list view shows: columns, texts, tips, the hint, and when it is painted.
#include "tests/windows/accessibility.h"
#include "tests/windows/listviewfixture.h"
#include "tests/windows/paintcounter.h"

#include <QElapsedTimer>
#include <QHeaderView>
#include <QHelpEvent>
#include <QToolTip>
#include <algorithm>

namespace
{

using tests::ListViewTest;
using tests::PaintCounter;

TEST_F(ListViewTest, WidthsPositionsAndHiddenColumns)
{
    EXPECT_EQ(view.header()->sectionSize(1), 160);
    list.SetColumnWidth("Title", 0);
    EXPECT_TRUE(view.header()->isSectionHidden(1));
    list.SetColumnWidth("Title", 1507);
    EXPECT_FALSE(view.header()->isSectionHidden(1));
    EXPECT_EQ(view.header()->sectionSize(1), 100);
    EXPECT_EQ(list.Columns()[1].widthTwips, 1507); // not rounded to pixels
    list.SetColumnPosition("Path", 2);
    EXPECT_EQ(view.header()->visualIndex(2), 1);
    Fill();
    EXPECT_EQ(view.header()->visualIndex(2), 2);
}

TEST_F(ListViewTest, CutTextHasATipThatShowsItUnchanged)
{
    const std::string title = "<b>Live</b> & a title that is much too long for its column";
    const std::string_view cells[] = {title, "/music/x.mp3"};
    list.AddRow("/9", "", "MP3", cells);
    tests::Settle();
    for (const auto &[row, visible] : {std::pair(4, true), std::pair(1, false)}) {
        QToolTip::hideText();
        ASSERT_TRUE(tests::WaitUntil([] { return !QToolTip::isVisible(); }));
        QHelpEvent help(QEvent::ToolTip, Row(row), view.viewport()->mapToGlobal(Row(row)));
        QApplication::sendEvent(view.viewport(), &help);
        EXPECT_EQ(QToolTip::isVisible(), visible) << row;
        if (visible) {
            EXPECT_TRUE(
                QToolTip::text().contains(QLatin1String("&lt;b&gt;Live&lt;/b&gt; &amp; a title")));
        }
    }
}

TEST_F(ListViewTest, ADimmedRowIsGreyAndItsTipSaysWhy)
{
    list.SetDimmedTip("The file is not there.");
    list.SetDimmed(1, true);
    tests::Settle();
    const QColor grey = view.palette().color(QPalette::Disabled, QPalette::Text);
    ASSERT_NE(grey, view.palette().color(QPalette::Active, QPalette::Text));
    const auto colour = [this](int row) {
        return view.Model().index(row, 1).data(Qt::ForegroundRole);
    };
    EXPECT_EQ(colour(1).value<QBrush>().color(), grey);
    EXPECT_FALSE(colour(0).isValid());
    const auto description = [this](int row) {
        return view.Model().index(row, 1).data(Qt::AccessibleDescriptionRole).toString();
    };
    EXPECT_EQ(description(1), QLatin1String("The file is not there."));
    EXPECT_EQ(description(0), QString());
    QHelpEvent help(QEvent::ToolTip, Row(1), view.viewport()->mapToGlobal(Row(1)));
    QApplication::sendEvent(view.viewport(), &help);
    EXPECT_TRUE(QToolTip::isVisible());
    EXPECT_TRUE(QToolTip::text().contains(QLatin1String("The file is not there.")));
    QToolTip::hideText();
}

TEST_F(ListViewTest, APartOfItsPlaceIsLeftToAnotherControl)
{
    const int whole = view.width(), left = view.x();
    view.SetLeftInset(16);
    EXPECT_EQ(view.width(), whole - 16);
    EXPECT_EQ(view.x(), left + 16);
    list.SetPlace({0, 0, 8400, 4500}); // 40 pixels less
    EXPECT_EQ(view.width(), whole - 40 - 16);
    view.SetLeftInset(0);
    EXPECT_EQ(view.width(), whole - 40);
}

TEST_F(ListViewTest, TextsAreShownUnchangedOnOneLine)
{
    const std::string_view cells[] = {"<b>Live</b> & more\r\nsecond line", "/music/x.mp3"};
    list.AddRow("/9", "", "MP3", cells);
    EXPECT_EQ(view.Model().index(4, 1).data().toString(),
              QStringLiteral("<b>Live</b> & more  second line"));
}

TEST_F(ListViewTest, HintIsShownWhileThereIsNoRow)
{
    list.ClearRows();
    list.SetHint("Nothing here yet");
    EXPECT_TRUE(tests::WaitUntil(
        [this] { return view.accessibleDescription() == QStringLiteral("Nothing here yet"); }));
    const QImage with = tests::Screenshot(view);
    list.SetHint("");
    EXPECT_TRUE(tests::WaitUntil([&] { return with != tests::Screenshot(view); }));
}

TEST_F(ListViewTest, AChangedHintIsPaintedOnlyWhileThereIsNoRow)
{
    const PaintCounter counter(*view.viewport());
    const int before = counter.AtRest();
    list.SetHint("Reading your music: 1 of 2");
    EXPECT_EQ(counter.AtRest(), before);
    list.ClearRows();
    const int empty = counter.AtRest();
    EXPECT_GT(empty, before);
    list.SetHint("Reading your music: 2 of 2");
    EXPECT_TRUE(tests::WaitUntil([&] { return counter.paints > empty; }));
}

// A regeneration changes the hint at each song and lets events run.
TEST_F(ListViewTest, ManyHintsArePaintedAFewTimesAndTheLastOneIsShown)
{
    constexpr int kFrameMs = 30; // 40, and the timer may be early
    list.ClearRows();
    const PaintCounter counter(*view.viewport());
    const int before = counter.AtRest();
    QElapsedTimer time;
    time.start();
    for (int song = 0; song < 500; ++song) {
        list.SetHint("Reading your music: " + std::to_string(song));
        QCoreApplication::processEvents();
    }
    EXPECT_LE(counter.paints - before, time.elapsed() / kFrameMs + 2);
    list.SetHint("Done");
    const int many = counter.paints;
    EXPECT_TRUE(tests::WaitUntil([&] {
        return counter.paints > many && view.accessibleDescription() == QStringLiteral("Done");
    }));
}

TEST_F(ListViewTest, OldRowsStayOnTheScreenDuringAFill)
{
    const QImage before = tests::Screenshot(view);
    view.viewport()->update(); // as a click has it
    {
        const ui::ListUpdate update(list);
        list.ClearRows();
        list.ClearColumns();
        view.update();
        view.viewport()->update();
        view.header()->viewport()->update();
        EXPECT_EQ(tests::Screenshot(view), before);
    }
    EXPECT_NE(tests::Screenshot(view), before);
}

TEST_F(ListViewTest, EveryCellHasAName)
{
    const std::string_view cells[] = {"Untitled", ""};
    list.AddRow("/9", "", "MP3", cells);
    EXPECT_EQ(tests::NamelessControls(view), std::vector<std::string>{});
}

TEST_F(ListViewTest, TheFillerTakesTheWidthThatIsLeft)
{
    list.AddColumn("Non", "", 500);
    const auto filler = [&] { return view.header()->sectionSize(3); };
    EXPECT_EQ(view.header()->length(), view.viewport()->width());
    EXPECT_EQ(list.Columns().back().widthTwips, 500); // the width in the list is unchanged
    list.SetColumnWidth("Title", 20000);
    EXPECT_EQ(filler(), ui::PixelsOfTwips(500));
    list.SetColumnWidth("Title", 0);
    EXPECT_EQ(view.header()->length(), view.viewport()->width());
    view.header()->resizeSection(2, 100); // by the user
    EXPECT_EQ(view.header()->length(), view.viewport()->width());
    EXPECT_EQ(list.Columns()[2].widthTwips, ui::TwipsOfPixels(100));
}

TEST_F(ListViewTest, WithoutHeadersTheLastColumnTakesTheWidthThatIsLeft)
{
    const int width = list.Columns().back().widthTwips;
    EXPECT_LT(view.header()->length(), view.viewport()->width());
    list.HideHeaders(true);
    EXPECT_EQ(view.header()->length(), view.viewport()->width());
    EXPECT_EQ(list.Columns().back().widthTwips, width); // unchanged
}

TEST_F(ListViewTest, EmptyCellsAreDrawnInGreyWords)
{
    view.Model().textOfEmpty = [](const std::string &key) {
        return key == "Title" ? QStringLiteral("(none)") : QString();
    };
    const std::string_view cells[] = {"", ""};
    list.AddRow("/9", "", "MP3", cells);
    const QModelIndex title = view.Model().index(4, 1);
    EXPECT_EQ(title.data().toString(), QString()); // the text stays empty
    EXPECT_EQ(title.data(Qt::AccessibleTextRole).toString(), QStringLiteral("(none)"));
    EXPECT_EQ(view.Model().index(4, 2).data(Qt::AccessibleTextRole).toString(),
              QStringLiteral("Path"));
    const auto inkOf = [&](const QModelIndex &index) {
        const QImage picture = view.viewport()->grab(view.visualRect(index)).toImage();
        const QColor paper = view.palette().color(QPalette::Base);
        int darkest = 255;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                darkest = std::min(darkest, picture.pixelColor(x, y).lightness());
        return paper.lightness() - darkest;
    };
    EXPECT_GT(inkOf(title), 40);                              // something is drawn
    EXPECT_LT(inkOf(title), inkOf(view.Model().index(0, 1))); // fainter than a title
}

TEST_F(ListViewTest, ACutHeaderHasATip)
{
    const auto tipOf = [&](int column) {
        return view.Model().headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString();
    };
    EXPECT_EQ(tipOf(1), QString());
    list.SetColumnWidth("Title", 200);
    EXPECT_TRUE(tipOf(1).contains(QLatin1String("Title")));
    EXPECT_EQ(tipOf(2), QString());
}

} // namespace

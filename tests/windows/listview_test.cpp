#include "tests/windows/bench.h"
#include "ui/qt/views/listview.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMimeData>
#include <QProcess>
#include <QScrollBar>
#include <QToolTip>
#include <QUrl>
#include <QWheelEvent>
#include <algorithm>

namespace
{

// A list of songs; every event is written down.
class ListViewTest : public testing::Test
{
protected:
    ListViewTest() : view(list, nullptr)
    {
        view.setObjectName(QStringLiteral("LV"));
        view.setAccessibleName(QStringLiteral("LV"));
        view.Model().nameOfRow = [this](ui::RowId row) {
            return QString::fromUtf8(list.SubItemAt(row, 1).data());
        };
        view.Model().fileOfRow = [this](ui::RowId row) {
            return std::string(list.SubItem(row, "Path"));
        };
        list.SetPlace({0, 0, 9000, 4500});
        list.onClick = [this] { events += "Click;"; };
        list.onItemClick = [this] { events += "ItemClick;"; };
        list.onDblClick = [this] { events += "DblClick;"; };
        list.onColumnClick = [this](int column) {
            events += "ColumnClick " + std::to_string(column) + ";";
            list.SetSort(column - 1, list.SortKey() == column - 1 && !list.Descending());
        };
        view.onMenuAsked = [this](ui::RowId row, QPoint, bool byKey) {
            events += "Menu " + std::to_string(row) + (byKey ? " by key;" : ";");
        };
        Fill();
    }

    void Fill()
    {
        const ui::ListUpdate update(list);
        list.ClearColumns();
        list.ClearRows();
        list.AddColumn("Icon", "", 450);
        list.AddColumn("Title", "Title", 2400);
        list.AddColumn("Path", "Path", 3000);
        list.SetSubItemKeys({"Title", "Path"});
        int number = 0;
        for (const char *title : {"Waltz for Debby", "All Blues", "So What", "Blue in Green"}) {
            const std::string path = "/music/" + std::string(title) + ".mp3";
            const std::string_view cells[] = {title, path};
            list.AddRow("/" + std::to_string(number++), "", "MP3", cells);
        }
    }

    void SetUp() override
    {
        tests::ShowAndActivate(view);
        events.clear();
    }

    QPoint Row(int displayIndex)
    {
        return view.visualRect(view.Model().index(displayIndex, 1)).center();
    }
    std::string Selection()
    {
        std::string keys;
        for (int i = 0; i < list.Count(); ++i)
            if (list.IsSelected(list.RowAt(i)))
                keys += std::string(list.Key(list.RowAt(i)));
        return keys;
    }

    ui::KeyedList list;
    ui::qt::ListView view;
    std::string events;
};

TEST_F(ListViewTest, ClickOnARowIsItemClickThenClick)
{
    tests::ClickAt(*view.viewport(), Row(1));
    EXPECT_EQ(events, "ItemClick;Click;");
    EXPECT_EQ(Selection(), "/1");
    EXPECT_EQ(list.SelectedItem(), 1);
}

TEST_F(ListViewTest, SelectingARowLeavesTheColumnsWhereTheyAre)
{
    list.SetPlace({0, 0, 1800, 4500}); // the second column is half in view, the third not at all
    tests::Settle();
    ASSERT_GT(view.horizontalScrollBar()->maximum(), 0);
    const QRect row = view.visualRect(view.Model().index(1, 1));
    tests::ClickAt(*view.viewport(), {row.left() + 20, row.center().y()});
    EXPECT_EQ(Selection(), "/1");
    EXPECT_EQ(view.horizontalScrollBar()->value(), 0);
    tests::PressKey("Down");
    EXPECT_EQ(view.horizontalScrollBar()->value(), 0);
    view.horizontalScrollBar()->setValue(30);
    tests::PressKey("End");
    EXPECT_EQ(view.horizontalScrollBar()->value(), 30);
}

TEST_F(ListViewTest, ClickBesideTheRowsDeselects)
{
    tests::ClickAt(*view.viewport(), Row(1));
    events.clear();
    tests::ClickAt(*view.viewport(), {20, view.viewport()->height() - 5});
    EXPECT_EQ(events, "Click;");
    EXPECT_EQ(Selection(), "");
    EXPECT_EQ(list.SelectedItem(), ui::kNoRow);
}

TEST_F(ListViewTest, KeysSelectAndExtend)
{
    tests::ClickAt(*view.viewport(), Row(0));
    events.clear();
    tests::PressKey("Down");
    EXPECT_EQ(events, "ItemClick;Click;");
    EXPECT_EQ(Selection(), "/1");
    tests::PressKey("Shift+Down");
    EXPECT_EQ(Selection(), "/1/2");
    tests::PressKey("Ctrl+A");
    EXPECT_EQ(list.SelectedCount(), 4);
}

TEST_F(ListViewTest, DoubleClickAndEnter)
{
    tests::DoubleClickAt(*view.viewport(), Row(2));
    EXPECT_EQ(events, "ItemClick;Click;DblClick;");
    events.clear();
    tests::PressKey("Return");
    EXPECT_EQ(events, "DblClick;");
    events.clear();
    tests::PressKey("Ctrl+Return");
    EXPECT_EQ(events, "");
    list.SetSelection({}, ui::kNoRow);
    tests::PressKey("Return");
    EXPECT_EQ(events, "");
}

TEST_F(ListViewTest, HeaderSortsAndShowsItsArrow)
{
    const QHeaderView &header = *view.header();
    EXPECT_FALSE(header.isSortIndicatorShown()); // nothing is sorted yet
    const QPoint title(header.sectionViewportPosition(1) + 20, header.height() / 2);
    tests::ClickAt(*header.viewport(), title);
    EXPECT_EQ(events, "ColumnClick 2;");
    EXPECT_EQ(view.Model().index(0, 1).data().toString(), QStringLiteral("All Blues"));
    EXPECT_TRUE(header.isSortIndicatorShown());
    EXPECT_EQ(header.sortIndicatorSection(), 1);
    EXPECT_EQ(header.sortIndicatorOrder(), Qt::AscendingOrder);
    tests::EndDoubleClick();
    tests::ClickAt(*header.viewport(), title);
    EXPECT_EQ(view.Model().index(0, 1).data().toString(), QStringLiteral("Waltz for Debby"));
    EXPECT_EQ(header.sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(ListViewTest, SortingKeepsTheSelection)
{
    tests::ClickAt(*view.viewport(), Row(2));
    list.SetSort(1, false);
    EXPECT_EQ(Selection(), "/2");
    EXPECT_TRUE(view.selectionModel()->isRowSelected(list.DisplayIndex(2), {}));
}

TEST_F(ListViewTest, WidthsPositionsAndHiddenColumns)
{
    EXPECT_EQ(view.header()->sectionSize(1), 160);
    list.SetColumnWidth("Title", 0);
    EXPECT_TRUE(view.header()->isSectionHidden(1));
    list.SetColumnWidth("Title", 1507);
    EXPECT_FALSE(view.header()->isSectionHidden(1));
    EXPECT_EQ(view.header()->sectionSize(1), 100);
    EXPECT_EQ(list.Columns()[1].widthTwips, 1507); // not what the pixels make of it
    list.SetColumnPosition("Path", 2);
    EXPECT_EQ(view.header()->visualIndex(2), 1);
    Fill();
    EXPECT_EQ(view.header()->visualIndex(2), 2);
}

TEST_F(ListViewTest, DraggingAHeadersEdgeSetsTheColumnsWidth)
{
    const QHeaderView &header = *view.header();
    const int edge = header.sectionViewportPosition(1) + header.sectionSize(1) - 1;
    tests::Drag(*header.viewport(), {edge, 8}, {edge + 40, 8});
    EXPECT_NEAR(list.Columns()[1].widthTwips, 2400 + 40 * 15, 45);
    EXPECT_EQ(events, "");
}

TEST_F(ListViewTest, RightButtonAndMenuKeyAskForTheMenu)
{
    tests::ClickAt(*view.viewport(), Row(3), Qt::RightButton);
    EXPECT_EQ(events, "Menu 3;");
    events.clear();
    tests::ClickAt(*view.viewport(), {20, view.viewport()->height() - 5}, Qt::RightButton);
    EXPECT_EQ(events, "Menu -1;");
    tests::ClickAt(*view.viewport(), Row(1));
    events.clear();
    // The window system itself makes the request out of the key.
    QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("key"), QStringLiteral("Menu")});
    EXPECT_TRUE(tests::WaitUntil([this] { return !events.empty(); }));
    EXPECT_EQ(events, "Menu 1 by key;");
    events.clear();
    tests::PressKey("Shift+F10");
    EXPECT_EQ(events, "Menu 1 by key;");
}

TEST_F(ListViewTest, TypingFindsARowByItsFirstVisibleText)
{
    view.setFocus();
    tests::TypeText("bl");
    EXPECT_EQ(Selection(), "/3");
    EXPECT_EQ(events, "ItemClick;Click;"); // the second letter stays on the row
    tests::EndTypedWord();
    const std::string_view cells[] = {"Body and Soul", "/music/body.mp3"};
    list.AddRow("/4", "", "MP3", cells);
    list.SelectOnly(3);
    tests::TypeText("b");
    EXPECT_EQ(Selection(), "/4"); // the next one
    tests::TypeText("b");
    EXPECT_EQ(Selection(), "/3"); // the same letter again begins at the top
    list.SetColumnWidth("Title", 0);
    tests::EndTypedWord();
    tests::TypeText("/music/so");
    EXPECT_EQ(Selection(), "/2");
}

TEST_F(ListViewTest, SelectionFromCodeShows)
{
    list.SelectOnly(2);
    EXPECT_TRUE(view.selectionModel()->isRowSelected(2, {}));
    list.SetSelected(0, true);
    EXPECT_TRUE(view.selectionModel()->isRowSelected(0, {}));
    EXPECT_FALSE(view.selectionModel()->isRowSelected(1, {}));
    EXPECT_TRUE(view.selectionModel()->isRowSelected(2, {}));
    EXPECT_FALSE(view.selectionModel()->isRowSelected(3, {}));
    EXPECT_EQ(view.currentIndex().row(), 0);
    list.DeselectAll();
    EXPECT_FALSE(view.selectionModel()->hasSelection());
    EXPECT_EQ(events, "");
}

TEST_F(ListViewTest, WheelAndScrollBarReportThatTheRowsMove)
{
    std::string told;
    view.onScrolled = [&](bool byWheel) { told += byWheel ? "wheel " : "bar "; };
    list.SetPlace({0, 0, 9000, 1200}); // fewer pixels than four rows need
    tests::Settle();
    QScrollBar &bar = *view.verticalScrollBar();
    ASSERT_GT(bar.maximum(), 0);
    // Below the handle: a page down, with the handle left where it is.
    tests::ClickAt(bar, {bar.width() / 2, bar.height() - bar.width() - 3});
    EXPECT_EQ(told.substr(0, 4), "bar ");
    EXPECT_GT(bar.value(), 0);
    told.clear();
    view.verticalScrollBar()->setValue(0); // from code
    EXPECT_EQ(told, "");
    QWheelEvent wheel(view.viewport()->rect().center(),
                      view.viewport()->mapToGlobal(view.viewport()->rect().center()), {}, {0, -120},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.viewport(), &wheel);
    EXPECT_EQ(told.substr(0, 6), "wheel ");
    EXPECT_GT(bar.value(), 0);
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

TEST_F(ListViewTest, TheSelectedRowIsScrolledIntoView)
{
    list.SetPlace({0, 0, 9000, 1200}); // fewer pixels than four rows need
    tests::Settle();
    list.SelectOnly(3);
    EXPECT_TRUE(view.viewport()->rect().contains(Row(3)));
    list.SelectOnly(0);
    EXPECT_TRUE(view.viewport()->rect().contains(Row(0)));
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

TEST_F(ListViewTest, FilesAreDraggedAsAddressesOfTheirBytes)
{
    const std::string_view cells[] = {"Caf\xE9", "/music/Caf\xE9 #1.mp3"};
    list.AddRow("/9", "", "MP3", cells);
    const std::unique_ptr<QMimeData> data(view.Model().mimeData(
        {view.Model().index(4, 0), view.Model().index(4, 1), view.Model().index(0, 0)}));
    ASSERT_NE(data, nullptr);
    ASSERT_EQ(data->urls().size(), 2);
    EXPECT_EQ(data->urls()[0].toEncoded(), "file:///music/Caf%E9%20%231.mp3");
    EXPECT_EQ(view.Model().supportedDragActions(), Qt::CopyAction);
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
    EXPECT_EQ(view.accessibleDescription(), QStringLiteral("Nothing here yet"));
    const QImage with = tests::Screenshot(view);
    list.SetHint("");
    EXPECT_NE(with, tests::Screenshot(view));
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

// The selected rows, in the order that shows: as text in the visible columns, and as files.
TEST_F(ListViewTest, CtrlCCopiesTheSelectedRows)
{
    tests::ClickAt(*view.viewport(), Row(0));
    view.setFocus();
    tests::PressKey("Shift+Down");
    list.SetColumnPosition("Path", 2);
    tests::PressKey("Ctrl+C");
    const QMimeData &copied = *QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(copied.text(), QStringLiteral("/music/Waltz for Debby.mp3\tWaltz for Debby\n"
                                            "/music/All Blues.mp3\tAll Blues"));
    ASSERT_EQ(copied.urls().size(), 2);
    EXPECT_EQ(copied.urls()[1].toLocalFile(), QStringLiteral("/music/All Blues.mp3"));
    EXPECT_EQ(copied.data(QStringLiteral("x-special/gnome-copied-files")),
              "copy\nfile:///music/Waltz%20for%20Debby.mp3\nfile:///music/All%20Blues.mp3");
    QGuiApplication::clipboard()->setText(QStringLiteral("mine"));
    list.DeselectAll();
    tests::PressKey("Ctrl+C"); // nothing to copy
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("mine"));
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

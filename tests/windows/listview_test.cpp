// The list view under mouse and keys.
#include "tests/windows/listviewfixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMimeData>
#include <QProcess>
#include <QScrollBar>
#include <QUrl>
#include <QWheelEvent>
#include <memory>

namespace
{

using tests::ListViewTest;

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
    // The window system turns the key into the request for a menu.
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
    const ui::RowId rows[] = {0, 2};
    list.SetSelection(rows, 0);
    EXPECT_TRUE(view.selectionModel()->isRowSelected(0, {}));
    EXPECT_FALSE(view.selectionModel()->isRowSelected(1, {}));
    EXPECT_TRUE(view.selectionModel()->isRowSelected(2, {}));
    EXPECT_FALSE(view.selectionModel()->isRowSelected(3, {}));
    EXPECT_EQ(view.currentIndex().row(), 0);
    list.SetSelection({}, list.SelectedItem());
    EXPECT_FALSE(view.selectionModel()->hasSelection());
    EXPECT_EQ(events, "");
}

TEST_F(ListViewTest, WheelAndScrollBarReportThatTheRowsMove)
{
    std::string scrolls;
    view.onScrolled = [&](bool byWheel) { scrolls += byWheel ? "wheel " : "bar "; };
    list.SetPlace({0, 0, 9000, 1200}); // fewer pixels than four rows need
    tests::Settle();
    QScrollBar &bar = *view.verticalScrollBar();
    ASSERT_GT(bar.maximum(), 0);
    // A click below the handle scrolls by a page; the handle is not dragged.
    tests::ClickAt(bar, {bar.width() / 2, bar.height() - bar.width() - 3});
    EXPECT_EQ(scrolls.substr(0, 4), "bar ");
    EXPECT_GT(bar.value(), 0);
    scrolls.clear();
    view.verticalScrollBar()->setValue(0); // from code
    EXPECT_EQ(scrolls, "");
    QWheelEvent wheel(view.viewport()->rect().center(),
                      view.viewport()->mapToGlobal(view.viewport()->rect().center()), {}, {0, -120},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.viewport(), &wheel);
    EXPECT_EQ(scrolls.substr(0, 6), "wheel ");
    EXPECT_GT(bar.value(), 0);
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
    list.SetSelection({}, list.SelectedItem());
    tests::PressKey("Ctrl+C"); // nothing to copy
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("mine"));
}

} // namespace

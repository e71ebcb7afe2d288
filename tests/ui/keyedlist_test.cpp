#include "runtime/error.h"
#include "ui/controls/inputs/keyedlist.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

namespace
{

using ui::KeyedList;
using ui::kNoRow;
using ui::RowId;

void AddTitle(KeyedList &list, std::string_view title)
{
    list.AddRow("/" + std::to_string(list.Count()), "", "MP3", {&title, 1});
}

std::string Shown(const KeyedList &list, int number = 1)
{
    std::string shown;
    for (int i = 0; i < list.Count(); ++i)
        shown.append(list.SubItemAt(list.RowAt(i), number)).append("|");
    return shown;
}

std::string Positions(const KeyedList &list)
{
    std::vector<const ui::ListColumn *> columns;
    for (const auto &column : list.Columns())
        columns.push_back(&column);
    std::sort(columns.begin(), columns.end(),
              [](auto *a, auto *b) { return a->position < b->position; });
    std::string keys;
    for (const auto *column : columns)
        keys.append(column->key).append(" ");
    return keys;
}

TEST(KeyedList, ColumnsByKeyWidthAndPosition)
{
    KeyedList list;
    for (const char *key : {"Icon", "Title", "Artist", "Path", "Non"})
        list.AddColumn(key, key, 100);
    EXPECT_THROW(list.AddColumn("Path", "again", 1), runtime::RuntimeError);
    list.SetColumnWidth("Title", 0);
    EXPECT_EQ(list.Columns()[1].widthTwips, 0);
    EXPECT_THROW(list.SetColumnWidth("List", 0), runtime::RuntimeError);
    list.SetColumnPosition("Path", 2);
    EXPECT_EQ(Positions(list), "Icon Path Title Artist Non ");
    EXPECT_EQ(list.Columns()[3].key, "Path"); // its number, and so its sub-item, stay
    list.SetColumnPosition("Path", 2);        // the second call changes nothing
    EXPECT_EQ(Positions(list), "Icon Path Title Artist Non ");
    list.SetColumnPosition("Icon", 99);
    EXPECT_EQ(Positions(list), "Path Title Artist Non Icon ");
}

// What the window is notified of when single cells and marks change: not more than needed.
TEST(KeyedList, CellsAndDimmedRows)
{
    KeyedList list;
    list.SetSubItemKeys({"Title"});
    for (const char *title : {"b", "a"})
        AddTitle(list, title);
    std::string signals;
    list.rowsAboutToChange = [&] { signals += "rows "; };
    list.listChanged = [&](ui::ListChange change) {
        signals += change == ui::ListChange::Cells ? "cells " : "other ";
    };
    EXPECT_FALSE(list.IsDimmed(0));
    list.SetDimmed(0, true);
    EXPECT_TRUE(list.IsDimmed(0));
    EXPECT_FALSE(list.IsDimmed(1));
    list.SetDimmed(0, true); // nothing new
    list.SetSubItem(1, "Title", "c");
    EXPECT_EQ(signals, "cells cells ");
    list.SetSort(1, false);
    signals.clear();
    list.SetSubItem(0, "Title", "d"); // now the order depends on it
    EXPECT_EQ(signals, "rows ");
    EXPECT_EQ(Shown(list), "c|d|");
    EXPECT_THROW(list.SetDimmed(2, true), runtime::RuntimeError);
    list.SetDimmedTip("gone");
    EXPECT_EQ(list.DimmedTip(), "gone");
    list.ClearRows();
    AddTitle(list, "new");
    EXPECT_FALSE(list.IsDimmed(0));
}

TEST(KeyedList, RowsAndSubItems)
{
    KeyedList list;
    list.SetSubItemKeys({"Title", "Artist"});
    const std::string_view cells[] = {"One", "Abba"};
    const RowId row = list.AddRow("/0", "main", "MP3", cells);
    EXPECT_EQ(list.Key(row), "/0");
    EXPECT_EQ(list.Text(row), "main");
    EXPECT_EQ(list.Image(row), "MP3");
    EXPECT_EQ(list.SubItem(row, "Artist"), "Abba");
    EXPECT_EQ(list.SubItemAt(row, 1), "One");
    EXPECT_EQ(list.SubItemAt(row, 3), "");
    EXPECT_EQ(list.SubItemCount(row), 2);
    EXPECT_THROW(list.SubItem(row, "Path"), runtime::RuntimeError);
    EXPECT_THROW(list.SubItem(5, "Title"), runtime::RuntimeError);
    EXPECT_THROW(list.AddRow("/0", "", "", {}), runtime::RuntimeError);
    EXPECT_EQ(list.Count(), 1);
    EXPECT_EQ(list.Find("/0"), row);
    EXPECT_EQ(list.Find("/1"), kNoRow);
    list.SetSubItem(row, "Title", "A longer one");
    EXPECT_EQ(list.SubItem(row, "Title"), "A longer one");
    EXPECT_EQ(list.SubItem(row, "Artist"), "Abba");
}

TEST(KeyedList, ClearingRowsTakesKeysAndSelectionWithIt)
{
    KeyedList list;
    list.SetSubItemKeys({"Title"});
    AddTitle(list, "One");
    list.SelectOnly(0);
    const auto clearCount = list.ClearCount();
    list.ClearRows();
    EXPECT_NE(list.ClearCount(), clearCount);
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.SelectedItem(), kNoRow);
    EXPECT_EQ(list.SelectedCount(), 0);
    AddTitle(list, "One");
    EXPECT_THROW(list.SubItem(0, "Title"), runtime::RuntimeError);
}

TEST(KeyedList, RemovingARow)
{
    KeyedList list;
    for (const char *title : {"a", "b", "c"})
        AddTitle(list, title);
    list.SelectOnly(2);
    list.RemoveRow(1);
    EXPECT_EQ(Shown(list), "a|c|");
    EXPECT_EQ(list.Find("/1"), kNoRow);
    EXPECT_EQ(list.Find("/2"), 1);
    EXPECT_EQ(list.SelectedItem(), 1);
    EXPECT_EQ(list.SelectedCount(), 1);
    list.RemoveRow(1);
    EXPECT_EQ(list.SelectedItem(), kNoRow);
    EXPECT_EQ(list.SelectedCount(), 0);
    EXPECT_THROW(list.RemoveRow(1), runtime::RuntimeError);
}

TEST(KeyedList, SortsWithoutCaseAccentsBesideTheirLetterNumbersAsText)
{
    const struct {
        const char *name;
        std::vector<const char *> texts;
        bool descending;
        const char *shown;
    } cases[] = {
        {"case does not count, equal rows keep their order",
         {"b", "A", "B", "a"},
         false,
         "A|a|b|B|"},
        {"descending keeps that order too", {"b", "A", "B", "a"}, true, "b|B|A|a|"},
        {"accents",
         {"Ez", "\u00C9a", "F", "Ea", "e", "\u00E9"},
         false,
         "e|\u00E9|Ea|\u00C9a|Ez|F|"},
        {"numbers as text", {"10", "9", "1", ""}, false, "|1|10|9|"},
        {"no UTF-8", {"b", "\xE9", "a"}, false, "a|b|\xE9|"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        KeyedList list;
        for (const char *text : c.texts)
            AddTitle(list, text);
        list.SetSort(1, c.descending);
        EXPECT_EQ(Shown(list), c.shown);
    }
}

TEST(KeyedList, ManyEqualRowsKeepTheirOrderToo)
{
    for (const bool descending : {false, true}) {
        KeyedList list;
        list.SetSort(1, descending);
        {
            const ui::ListUpdate update(list);
            for (int i = 0; i < 200; ++i)
                AddTitle(list, i % 2 == 0 ? "a" : "B");
        }
        for (int i = 1; i < 200; ++i) {
            if (i != 100) {
                EXPECT_EQ(list.RowAt(i), list.RowAt(i - 1) + 2) << i;
            }
        }
        EXPECT_EQ(list.RowAt(0), descending ? 1 : 0);
    }
}

TEST(KeyedList, StaysSortedWhenFilledAgain)
{
    KeyedList list;
    list.SetSort(1, false);
    {
        const ui::ListUpdate update(list);
        for (const char *title : {"c", "a", "b"})
            AddTitle(list, title);
    }
    EXPECT_EQ(Shown(list), "a|b|c|");
    EXPECT_EQ(list.SubItemAt(0, 1), "c"); // row numbers stay
    EXPECT_EQ(list.DisplayIndex(0), 2);
    list.SetSort(0, false); // main texts are empty: the order of adding
    EXPECT_EQ(Shown(list), "c|a|b|");
    list.SetSort(7, true); // a sub-item that no row has
    EXPECT_EQ(Shown(list), "c|a|b|");
}

TEST(KeyedList, MultipleSelectionAndFocus)
{
    KeyedList list;
    for (const char *title : {"a", "b", "c"})
        AddTitle(list, title);
    const RowId ends[] = {0, 2, 2};
    list.SetSelection(ends, 2);
    EXPECT_EQ(list.SelectedCount(), 2);
    EXPECT_EQ(list.SelectedItem(), 2);
    list.SelectOnly(2);
    EXPECT_EQ(list.SelectedCount(), 1);
    EXPECT_FALSE(list.IsSelected(0));
    list.SetSelection({}, 2);
    EXPECT_EQ(list.SelectedCount(), 0);
    EXPECT_EQ(list.SelectedItem(), 2);
    const RowId rows[] = {0, 1, 1};
    list.SetSelection(rows, 1);
    EXPECT_EQ(list.SelectedCount(), 2);
    EXPECT_TRUE(list.IsSelected(0));
    EXPECT_FALSE(list.IsSelected(2));
    EXPECT_THROW(list.IsSelected(3), runtime::RuntimeError);
}

TEST(KeyedList, AnUpdateNotifiesTheWidgetOnce)
{
    KeyedList list;
    std::string signals;
    list.rowsAboutToChange = [&] { signals += "about "; };
    list.rowsChanged = [&] { signals += "changed "; };
    list.listChanged = [&](ui::ListChange) { signals += "change "; };
    {
        const ui::ListUpdate update(list);
        list.ClearRows();
        list.ClearColumns();
        list.AddColumn("Icon", "", 1);
        AddTitle(list, "a");
        list.SetSort(1, true);
    }
    EXPECT_EQ(signals, "about changed ");
    list.SetSort(1, false);
    EXPECT_EQ(signals, "about changed change ");
}

// A guard against a cost that grows faster than the rows; the limit is far above what it takes.
TEST(KeyedList, TenThousandRowsSortWithinTheTimeOfAClick)
{
    KeyedList list;
    {
        const ui::ListUpdate update(list);
        for (int i = 0; i < 10'000; ++i)
            AddTitle(list, "T\u00EFtle number " + std::to_string(i * 7919 % 10'000));
    }
    const auto start = std::chrono::steady_clock::now();
    list.SetSort(1, true);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_EQ(list.SubItemAt(list.RowAt(0), 1), "T\u00EFtle number 9999");
}

} // namespace

// tests/windows/listviewfixture.h - a list view with some songs.
#pragma once

#include "tests/windows/bench.h"
#include "ui/qt/views/listview.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace tests
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
        ShowAndActivate(view);
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

} // namespace tests

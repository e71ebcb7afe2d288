// tests/browser/itemlistfixture.h - the main form with a small library, and what its list shows.
#pragma once

#include "tests/browser/formfixture.h"

namespace tests
{

class ItemListTest : public FormTest
{
protected:
    browser::MainForm &Library()
    {
        Add({"One", "Abba", "Arrival", "1976", "", "Pop", "/m/a/one.mp3"});
        Add({"Two", "Abba", "Arrival", "1976", "c", "Pop", "/m/a/two.mp3"});
        Add({"Three", "Blur", "", "", "", "", "/m/a/sub/three.mp3"});
        AddPlayList("mine");
        browser::MainForm &form = Loaded();
        browser::LoadTreeView(form, "");
        form.TreeJustExpanded = false; // as after a first move of the user
        return form;
    }

    // The columns by position: key and width.
    std::string Columns()
    {
        std::string columns;
        for (int position = 1; position <= 99; ++position)
            for (const ui::ListColumn &column : Form().LV.Columns())
                if (column.position == position)
                    columns.append(column.key + "=" + std::to_string(column.widthTwips) + " ");
        return columns;
    }

    catalogue::RecordsetPtr AllRecords()
    {
        return catalogue::Records(
            catalogue::DataAccess->ExecuteSQL("SELECT * FROM MP3s", catalogue::kSelect));
    }

    // Adds a row with the key "mark", which every click that changes the list removes.
    void MarkList()
    {
        Form().LV.ClearRows();
        Form().LV.AddRow("mark", "", "", {});
    }
};

} // namespace tests

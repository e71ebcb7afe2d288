// tests/playlists/listsfixture.h - the main form with play lists on a fresh catalogue.
#pragma once

#include "browser/itemlist.h"
#include "platform/endrequest.h"
#include "playlists/install.h"
#include "playlists/lists.h"
#include "tests/browser/formfixture.h"

#include <chrono>
#include <string>
#include <thread>
#include <vector>

namespace tests
{

class ListsTest : public FormTest
{
protected:
    ListsTest() { WriteFile(list, "#EXTM3U\r\n#EXTINF:1,One\r\none.mp3\r\n"); }
    ~ListsTest() override
    {
        playlists::StopLooking();
        platform::RequestEnd(0);
    }

    browser::MainForm &WithTree()
    {
        playlists::Install();
        browser::MainForm &form = Loaded();
        browser::LoadTreeView(form, "");
        form.TreeJustExpanded = false;
        return form;
    }

    void Store(const std::string &name, const std::string &path)
    {
        const std::vector<catalogue::Value> values = {name, path};
        catalogue::DataAccess->ExecuteSQL("INSERT INTO Lists VALUES(?, ?)", catalogue::kInsert,
                                          values);
        ASSERT_TRUE(catalogue::DataAccess->Succeeded) << catalogue::DataAccess->ErrorMessage;
    }

    // Name and path of each list in the catalogue.
    std::string Stored()
    {
        std::string stored;
        const auto records = catalogue::Records(catalogue::DataAccess->ExecuteSQL(
            "SELECT * FROM Lists ORDER BY LIST_Name", catalogue::kSelect));
        for (; !records->AtEnd(); records->MoveNext())
            stored.append(records->Text(0)).append("=").append(records->Text(1)).append(" ");
        return stored;
    }

    // Opens the list with this content.
    browser::MainForm &Opened(const std::string &content)
    {
        WriteFile(list, content);
        Store("mine", list);
        browser::MainForm &form = WithTree();
        Click("&mine");
        return form;
    }

    // The rows: key, name and path; the list's folder is "~/", a dimmed row has "-" before it.
    std::string Entries()
    {
        std::string rows;
        const ui::KeyedList &lv = Form().LV;
        for (ui::RowId row = 0; row < lv.Count(); ++row)
            rows += std::string(lv.IsDimmed(row) ? "-" : "") + std::string(lv.Key(row)) + "|" +
                    std::string(lv.SubItem(row, "Denomination")) + "|" +
                    runtime::Replace(lv.SubItem(row, "Path"), folder.Path() + "/", "~/") + "; ";
        return rows;
    }

    // Lets the disk answer for every row.
    void LetLook()
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (Form().tmrListFiles.Enabled() && std::chrono::steady_clock::now() < end) {
            Form().tmrListFiles.Fire();
            std::this_thread::yield();
        }
        ASSERT_FALSE(Form().tmrListFiles.Enabled());
    }

    const std::string list = folder / "Best of.m3u";
};

} // namespace tests

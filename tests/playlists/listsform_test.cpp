#include "browser/commands.h"
#include "browser/form/commandstate.h"
#include "playlists/install.h"
#include "playlists/listsform.h"
#include "tests/browser/formfixture.h"
#include "tests/support/fakeforms.h"

#include <filesystem>

namespace
{

using playlists::ListsForm;

class ListsWindow : public tests::FormTest
{
protected:
    void Shown(const std::function<void(ListsForm &)> &script)
    {
        playlists::Install();
        browser::MainForm &form = Loaded();
        browser::LoadTreeView(form, "");
        forms.scripts.push_back([script](ui::Form &window) {
            auto *lists = dynamic_cast<ListsForm *>(&window);
            ASSERT_NE(lists, nullptr);
            script(*lists);
        });
        browser::RunCommand(form, "submnuRemovePlayList");
    }

    static std::string Names(const ListsForm &window)
    {
        std::string names;
        for (ui::RowId row = 0; row < window.LV.Count(); ++row)
            names += std::string(window.LV.Key(row)) + "=" + std::string(window.LV.Text(row)) + " ";
        return names;
    }

    tests::FakeForms forms;
};

TEST_F(ListsWindow, ShowsTheListsByName)
{
    for (const char *name : {"two", "a & b", "one"})
        AddPlayList(name);
    Shown([](ListsForm &window) {
        EXPECT_EQ(window.name, "frmLists");
        EXPECT_EQ(window.Title(), "Remove PlayList");
        EXPECT_EQ(window.cmdRemove.Caption(), "&Remove");
        EXPECT_EQ(window.cmdDone.Caption(), "&Done");
        EXPECT_EQ(Names(window), "A1=a & b A2=one A3=two ");
        ASSERT_EQ(window.LV.Columns().size(), 1u);
        EXPECT_EQ(window.LV.Columns()[0].key, "Unique");
        EXPECT_EQ(window.LV.Columns()[0].caption, "");
        EXPECT_EQ(window.LV.Columns()[0].widthTwips, 2000);
        EXPECT_TRUE(window.LV.HeadersHidden());
        EXPECT_EQ(window.LV.Image(0), "M3U");
        EXPECT_TRUE(window.cmdRemove.Enabled());
        window.cmdDone.Click();
        EXPECT_FALSE(window.Visible());
    });
}

TEST_F(ListsWindow, RemovesTheSelectedOneFromCatalogueTreeAndWindow)
{
    AddPlayList("a & b");
    AddPlayList("other");
    Shown([this](ListsForm &window) {
        window.LV.SelectOnly(window.LV.Find("A1"));
        window.cmdRemove.Click();
        EXPECT_EQ(Names(window), "A2=other ");
        EXPECT_EQ(Keys("ByList"), "&other ");
        EXPECT_EQ(window.LV.SelectedItem(), window.LV.Find("A2")); // the next one
        window.LV.SetSelection({}, ui::kNoRow);
        window.cmdRemove.Click(); // nothing is selected
        EXPECT_EQ(Names(window), "A2=other ");
        window.LV.SelectOnly(window.LV.Find("A2"));
        window.cmdRemove.Click();
        EXPECT_EQ(Names(window), "");
        EXPECT_TRUE(window.cmdRemove.Enabled()); // until the window is filled again
    });
    EXPECT_EQ(Keys("ByList"), "");
    forms.scripts.push_back([](ui::Form &window) {
        EXPECT_FALSE(static_cast<ListsForm &>(window).cmdRemove.Enabled());
    });
    browser::RunCommand(Form(), "submnuRemovePlayList");
}

TEST_F(ListsWindow, WhatTheCatalogueRefusesStays)
{
    AddPlayList("mine");
    Shown([this](ListsForm &window) {
        std::filesystem::rename(folder / "app/MP3s.mdb", folder / "gone.mdb");
        catalogue::CloseCatalogue();
        window.cmdRemove.Click();
        EXPECT_EQ(desktop.boxes.size(), 1u);
        EXPECT_EQ(Names(window), "A1=mine ");
        EXPECT_EQ(Keys("ByList"), "&mine ");
    });
}

TEST_F(ListsWindow, AnEmptyRegistryDisablesRemove)
{
    Shown([](ListsForm &window) {
        EXPECT_EQ(window.LV.Count(), 0);
        EXPECT_FALSE(window.cmdRemove.Enabled());
    });
}

} // namespace

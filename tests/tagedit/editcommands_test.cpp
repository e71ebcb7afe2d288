// The commands that open the editor, and the row after an edit.
#include "browser/form/formpopup.h"
#include "browser/itemlist.h"
#include "catalogue/addfile.h"
#include "catalogue/adoclass.h"
#include "catalogue/edittags.h"
#include "metadata/tagwriter.h"
#include "runtime/error.h"
#include "tagedit/editcommands.h"
#include "tagedit/tageditor.h"
#include "tests/support/fakeforms.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/memorysettings.h"
#include "tests/support/mp3bytes.h"

namespace
{

class EditCommands : public tests::LibraryFixture
{
protected:
    EditCommands()
    {
        browser::ResetMainForm();
        tagedit::Install();
        metadata::TheTagWriterHooks().updateCatalogue = catalogue::UpdateEditedTags;
        desktop.doEvents = [this] { clock.now.second = (clock.now.second + 1) % 60; };
    }
    ~EditCommands() override
    {
        metadata::TheTagWriterHooks() = {};
        browser::ResetMainForm();
    }

    browser::MainForm &Form() { return browser::frmMain(); }

    // Writes the song, adds it to the catalogue and lists all rows; the first is selected.
    void Catalogued(const std::string &name, const std::string &bytes)
    {
        tests::WriteFile(Song(name), bytes);
        std::string reason;
        ASSERT_NE(catalogue::AddOrUpdateMP3(Song(name), reason), catalogue::kFailed);
        const auto records = catalogue::Records(catalogue::DataAccess->ExecuteSQL(
            "SELECT * FROM MP3s ORDER BY Path", catalogue::kSelect));
        ASSERT_TRUE(browser::FillItemList(Form().LV, *records));
        Form().LV.SelectOnly(0);
    }

    // The sub-items of a row in the order of the columns, without its path.
    std::string Row(ui::RowId row)
    {
        std::string texts;
        for (const char *key : {"Title", "Artist", "Album", "Year", "Comment", "Genre"})
            texts.append(Form().LV.SubItem(row, key)).append("|");
        return texts;
    }

    static std::string Tagged(std::string_view title)
    {
        return tests::Id3v2(tests::TextFrame("TIT2", title) + tests::TextFrame("TPE1", "Artist") +
                            tests::TextFrame("TCON", "(17)Rock")) +
               tests::Audio();
    }

    static tagedit::TagEditor &Editor(ui::Form &form)
    {
        return static_cast<tagedit::TagEditor &>(form);
    }

    tests::FakeForms forms;
    tests::MemorySettings settings;
};

TEST_F(EditCommands, AnEditReachesFileCatalogueAndRow)
{
    Catalogued("one.mp3", Tagged("One"));
    forms.scripts.push_back([&](ui::Form &form) {
        EXPECT_EQ(form.name, "frmEditTag");
        EXPECT_EQ(Editor(form).File, Song("one.mp3"));
        tagedit::Column &column = Editor(form).At(tagedit::kID3v2);
        column.txtTitle.SetText("Señor");
        column.txtArtist.SetText("");
        column.cmbGenre.SetText("Mi genero");
        Editor(form).At(tagedit::kID3v1).txtArtist.SetText("Of the first tag");
        Editor(form).cmdOk.Click();
        EXPECT_FALSE(form.Loaded());
    });
    browser::RunHandler("submnuFileInfo");
    EXPECT_EQ(Row(0), "Señor|Of the first tag||||Mi genero|");
    EXPECT_EQ(Rows(), std::vector<std::string>{"Señor|||||Mi genero||~/one.mp3||0"});
    EXPECT_NE(tests::ReadFile(Song("one.mp3")).find("Se\xF1or"), std::string::npos);
}

TEST_F(EditCommands, CancelWritesNothing)
{
    Catalogued("one.mp3", Tagged("One"));
    const std::string before = Row(0);
    forms.scripts.push_back([&](ui::Form &form) {
        Editor(form).At(tagedit::kID3v2).txtTitle.SetText("New");
        Editor(form).cmdCancel.Click();
        EXPECT_FALSE(form.Loaded());
    });
    browser::RunHandler("submnuFileInfo");
    EXPECT_EQ(Row(0), before);
    EXPECT_EQ(tests::ReadFile(Song("one.mp3")), Tagged("One"));
}

TEST_F(EditCommands, TheSelectedRowIsSetWhicheverFileWasEdited)
{
    Catalogued("one.mp3", Tagged("One"));
    tests::WriteFile(Song("other.mp3"), Tagged("Other"));
    desktop.ExpectOpen("Select the MP3 file", Song("other.mp3"));
    forms.scripts.push_back([&](ui::Form &form) { Editor(form).cmdOk.Click(); });
    browser::RunHandler("submnuTagEditor");
    EXPECT_EQ(desktop.opens[0].filters[0].caption, "MP3 Files");
    EXPECT_EQ(Row(0), "Other|Artist||||Rock|");
    desktop.ExpectOpen("", std::nullopt);
    browser::RunHandler("submnuTagEditor");
}

TEST_F(EditCommands, OnAnyOtherRowNothingOpens)
{
    browser::RunHandler("submnuFileInfo");
    Catalogued("one.mp3", Tagged("One"));
    const auto none = catalogue::Records(catalogue::DataAccess->ExecuteSQL(
        "SELECT * FROM MP3s WHERE Path = 'x'", catalogue::kSelect));
    ASSERT_TRUE(browser::FillItemList(Form().LV, *none)); // the warning row
    Form().LV.SelectOnly(0);
    browser::RunHandler("submnuFileInfo");
    browser::RunHandler("cp_Info");
    const std::string_view folderRow = "Folder";
    Form().LV.ClearRows();
    Form().LV.AddRow("#Artist", "", "", {&folderRow, 1});
    Form().LV.SelectOnly(0);
    browser::RunHandler("submnuFileInfo");
    tagedit::ShowEdited(Form(), {}, {});
    EXPECT_EQ(Form().LV.SubItemAt(0, 1), "Folder");
}

TEST_F(EditCommands, ThePopupOfTheSearchWindowEditsItsRow)
{
    Catalogued("one.mp3", Tagged("One"));
    Catalogued("two.mp3", Tagged("Two"));
    ui::KeyedList found;
    const auto records = catalogue::Records(catalogue::DataAccess->ExecuteSQL(
        "SELECT * FROM MP3s ORDER BY Path DESC", catalogue::kSelect));
    ASSERT_TRUE(browser::FillItemList(found, *records));
    found.SelectOnly(0);
    Form().searchList = &found;
    Form().PopupFromSearch = true;
    std::vector<std::string> files;
    for (int i = 0; i < 2; ++i)
        forms.scripts.push_back([&](ui::Form &form) { files.push_back(Editor(form).File); });
    browser::ClickPopup(Form(), "Info");
    browser::RunHandler("submnuFileInfo");
    EXPECT_EQ(files, (std::vector<std::string>{Song("two.mp3"), Song("one.mp3")}));
    Form().searchList = nullptr;
}

TEST_F(EditCommands, AFileThatVanishedIsReported)
{
    Catalogued("one.mp3", Tagged("One"));
    std::filesystem::remove(Song("one.mp3"));
    try {
        browser::RunHandler("submnuFileInfo");
        ADD_FAILURE() << "no error";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kFileNotFound);
        EXPECT_TRUE(error.description.starts_with(Song("one.mp3")));
    }
}

TEST_F(EditCommands, WhileItSavesTheWindowStays)
{
    Catalogued("one.mp3", Tagged("One"));
    int asked = 0;
    forms.scripts.push_back([&](ui::Form &form) {
        desktop.doEvents = [&] {
            clock.now.second = (clock.now.second + 1) % 60;
            ++asked;
            EXPECT_FALSE(ui::AskToClose(form));
            Editor(form).cmdCancel.Click();
            EXPECT_TRUE(form.Loaded());
            EXPECT_FALSE(Editor(form).At(tagedit::kID3v2).ID3Info.Enabled());
        };
        Editor(form).At(tagedit::kID3v2).txtTitle.SetText("New");
        Editor(form).cmdOk.Click();
        desktop.doEvents = nullptr;
        EXPECT_FALSE(form.Loaded());
    });
    browser::RunHandler("submnuFileInfo");
    EXPECT_GT(asked, 2);
    EXPECT_EQ(Row(0), "New|Artist||||Rock|");
}

} // namespace

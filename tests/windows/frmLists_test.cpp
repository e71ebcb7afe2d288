// Play lists in the real windows: the window that removes them by keys, and an open one of which
// some files are not there.
#include "browser/commands.h"
#include "browser/form/commandstate.h"
#include "platform/qt/theme.h"
#include "playlists/install.h"
#include "playlists/lists.h"
#include "shell/globals.h"
#include "tests/windows/mainwindowfixture.h"
#include "ui/qt/form.h"

#include <QBrush>
#include <QPushButton>

namespace
{

class PlayListsScaled : public tests::MainWindowTest
{
protected:
    ~PlayListsScaled() override { playlists::StopLooking(); }

    // The main window with these lists, whose files are called by their names.
    void Open(const std::vector<std::string> &names)
    {
        OpenCatalogue();
        for (const std::string &name : names) {
            const std::vector<catalogue::Value> values = {name, folder / (name + ".m3u")};
            catalogue::DataAccess->ExecuteSQL("INSERT INTO Lists VALUES(?, ?)", catalogue::kInsert,
                                              values);
            ASSERT_TRUE(catalogue::DataAccess->Succeeded);
        }
        Start();
        playlists::Install();
        browser::UpdateCommands(Form());
    }

    std::string Stored()
    {
        std::string stored;
        for (const std::string &name : playlists::PlayListNames())
            stored += name + " ";
        return stored;
    }

    // A list of three songs, of which only the first one's file is there.
    void OpenListWithMissingFiles()
    {
        tests::WriteFile(Song("here.mp3"), "song");
        tests::WriteFile(
            folder / "mine.m3u",
            "#EXTM3U\r\n#EXTINF:215,Here - is one\r\n" + Song("HERE.MP3") +
                "\r\n#EXTINF:1,Gone - with the wind\r\nMusic\\gone.mp3\r\n"
                "D:\\Songs\\A name that goes on for longer than its column is wide.mp3\r\n");
        Open({"mine"});
        for (const char *key : {"ByList"})
            ClickExpander(key);
        ClickNode("&mine");
        ASSERT_TRUE(tests::WaitUntil([this] { return Form().LV.Count() == 3; }));
        ASSERT_TRUE(tests::WaitUntil([this] { return !Form().tmrListFiles.Enabled(); }));
    }

    // The colour of a row's text.
    QColor ColourOf(int row)
    {
        const QVariant colour = LV().Model().index(row, 1).data(Qt::ForegroundRole);
        return colour.isValid() ? colour.value<QBrush>().color()
                                : LV().palette().color(QPalette::Text);
    }

    ui::qt::FormWindows host;
};

TEST_F(PlayListsScaled, RemovesByKeysAlone)
{
    Open({"A & B", "one", "two"});
    tests::WhenModal([this](QWidget &modal) {
        EXPECT_EQ(modal.objectName(), QLatin1String("frmLists"));
        auto &remove = *tests::Find<QPushButton>(modal, "cmdRemove");
        auto &rows = *static_cast<ui::qt::ListView *>(tests::Find(modal, "LV"));
        EXPECT_TRUE(rows.hasFocus());
        EXPECT_EQ(rows.visualRect(rows.Model().index(0, 0)).right(), rows.viewport()->width() - 1);
        tests::KeepScreenshot(modal, "frmLists-window");
        tests::PressKey("Down");
        tests::PressKey("Alt+R");
        ASSERT_TRUE(tests::WaitUntil([&] { return rows.Model().rowCount() == 2; }));
        EXPECT_EQ(Stored(), "A & B two ");
        EXPECT_EQ(Form().TV.Find("&one"), ui::kNoNode);
        // The next one is selected: the keys go on.
        ASSERT_TRUE(tests::WaitUntil([&] { return remove.isEnabled() && !remove.isDown(); }));
        tests::PressKey("Alt+R");
        ASSERT_TRUE(tests::WaitUntil([&] { return rows.Model().rowCount() == 1; }));
        EXPECT_EQ(Stored(), "A & B ");
        tests::PressKey("Escape");
    });
    browser::RunCommand(Form(), "submnuRemovePlayList");
    EXPECT_NE(Form().TV.Find("&A & B"), ui::kNoNode);
}

TEST_F(PlayListsScaled, AnEmptyRegistryHasNothingToRemove)
{
    Open({});
    tests::WhenModal([](QWidget &modal) {
        EXPECT_FALSE(tests::Find(modal, "cmdRemove")->isEnabled());
        tests::PressKey("Alt+D");
    });
    browser::RunCommand(Form(), "submnuRemovePlayList");
}

TEST_F(PlayListsScaled, AnOpenListShowsWhichFilesAreNotThere)
{
    OpenListWithMissingFiles();
    EXPECT_FALSE(Form().LV.IsDimmed(0));
    EXPECT_EQ(Cell(0, 2), Song("here.mp3")); // as it is spelled on the disk
    EXPECT_TRUE(Form().LV.IsDimmed(1));
    EXPECT_TRUE(Form().LV.IsDimmed(2));
    tests::ClickAt(*LV().viewport(), RowAt(1));
    ASSERT_TRUE(WaitForText("lblInfo", "Gone - with the wind"));
    tests::KeepScreenshot(*window, "frmMain-playlist");
    EXPECT_NE(ColourOf(0), ColourOf(1)); // the grey of what is not there
    EXPECT_EQ(LV().Model().index(1, 1).data(Qt::ToolTipRole).toString(),
              QStringLiteral("The file is not there."));
}

TEST_F(PlayListsScaled, AnOpenListInGermanAndInTheDark)
{
    shell::TheGlobals().LanguageFilePath = QUENLIN_SHIPPED_TEXTS "/Deutsch.qlt";
    platform::qt::ApplyPalette(true);
    OpenListWithMissingFiles();
    tests::ClickAt(*LV().viewport(), RowAt(1));
    ASSERT_TRUE(WaitForText("lblInfo", "Gone - with the wind"));
    tests::KeepScreenshot(*window, "frmMain-playlist-Deutsch-dark");
    EXPECT_EQ(LV().Model().index(1, 1).data(Qt::ToolTipRole).toString(),
              QStringLiteral("Die Datei ist nicht vorhanden."));
    EXPECT_EQ(LV().Model().headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(),
              QStringLiteral("Bezeichnung"));
    // Both colours can be read on the dark background, and are different.
    const int background = LV().palette().color(QPalette::Base).lightness();
    EXPECT_GT(ColourOf(1).lightness(), background + 60);
    EXPECT_GT(ColourOf(0).lightness(), ColourOf(1).lightness() + 30);
    platform::qt::ApplyPalette(false);
    shell::TheGlobals().LanguageFilePath.clear();
}

} // namespace

#include "playlists/m3u.h"
#include "tests/playlists/listsfixture.h"
#include "tests/support/recordingplayer.h"

#include <sys/stat.h>

#include <filesystem>

namespace
{

using browser::MainForm;
using platform::Pointer;
using Texts = std::vector<std::string>;

class Lists : public tests::ListsTest
{
};

// --- Showing one.

TEST_F(Lists, AClickOnTheNodeShowsTheEntries)
{
    MainForm &form = Opened("#EXTM3U\r\n#EXTINF:12,Abba - One, two\r\none.mp3\r\nsub\\two.MP3\r\n"
                            "C:\\a.mp3\r\n\\\\server\\b.mp3\r\n\\m\\c.mp3\r\n/m/d.mp3\r\n");
    EXPECT_EQ(Entries(), "/0|Abba - One, two|~/one.mp3; /1|sub\\two|~/sub\\two.MP3; "
                         "/2|C:\\a|C:\\a.mp3; /3|\\\\server\\b|\\\\server\\b.mp3; "
                         "/4|\\m\\c|\\m\\c.mp3; /5|/m/d|/m/d.mp3; ");
    std::string columns;
    for (const ui::ListColumn &column : form.LV.Columns())
        columns +=
            column.key + "=" + column.caption + "," + std::to_string(column.widthTwips) + " ";
    EXPECT_EQ(columns, "Icon=,450 Denomination=Denomination,2400 Path=Path,2000 Non=,500 ");
    EXPECT_EQ(form.LV.Image(0), "MP3");
    EXPECT_EQ(form.ImgIcon.Image(), "M3U");
    EXPECT_FALSE(form.ImgOthers[0].Visible());
    EXPECT_EQ(desktop.pointers.back(), Pointer::Normal);
    EXPECT_NE(std::count(desktop.pointers.begin(), desktop.pointers.end(), Pointer::Hourglass), 0);
    EXPECT_EQ(form.WEPath.Caption(), "MP3/PlayLists/mine");
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Lists, OneBackSlashIsThePlayersDriveAndNotThatOfTheList)
{
    tests::RecordingPlayer player;
    for (const auto &[command, path] :
         {std::pair{"\"C:/Player/player.exe\" \"%1\"", "C:\\m\\c.mp3"},
          std::pair{"\"/opt/player/player\" \"%1\"", "\\m\\c.mp3"}}) {
        player.command = command;
        Opened("#EXTM3U\r\n\\m\\c.mp3\r\n");
        EXPECT_EQ(Form().LV.SubItem(0, "Path"), path);
        ASSERT_TRUE(playlists::RemovePlayList(Form(), "mine"));
    }
}

TEST_F(Lists, WhatIsNoListIsReportedWithinASecond)
{
    ASSERT_EQ(mkfifo((folder / "pipe.m3u").c_str(), 0600), 0);
    tests::WriteFile(folder / "large.m3u", "#EXTM3U\r\na.mp3\r\n");
    std::filesystem::resize_file(folder / "large.m3u", playlists::kMaxListBytes + 1);
    tests::WriteFile(folder / "nuls.m3u", std::string(1000000, '\0'));
    std::filesystem::create_directory(folder / "folder.m3u");
    const Texts names = {"pipe", "large", "nuls", "folder", "absent"};
    for (const std::string &name : names)
        Store(name, folder / (name + ".m3u"));
    WithTree();
    for (const std::string &name : names) {
        SCOPED_TRACE(name);
        desktop.boxes.clear();
        const auto before = clock.steadyMs;
        Click("&" + name);
        EXPECT_EQ(desktop.boxes, Texts{"The playlist is not ready"});
        EXPECT_LE(clock.steadyMs - before, 1000);
        EXPECT_EQ(Form().LV.Count(), 0);
        EXPECT_FALSE(Form().tmrListFiles.Enabled());
    }
}

TEST_F(Lists, OnlyTheHeadShowsAnEmptyList)
{
    MainForm &form = Opened("#EXTM3U");
    EXPECT_EQ(form.LV.Count(), 0);
    EXPECT_EQ(form.LV.Columns().size(), 4u);
    EXPECT_TRUE(desktop.boxes.empty());
    LetLook();
}

TEST_F(Lists, AnEntryThatIsNoMP3LeavesTheListEmpty)
{
    MainForm &form = Opened("#EXTM3U\r\none.mp3\r\ntwo.ogg\r\n");
    EXPECT_EQ(form.LV.Count(), 0);
    EXPECT_EQ(form.LV.Columns().size(), 4u);
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Lists, AListThatCannotBeReadIsReportedOnceAndNothingElse)
{
    Add({"One", "Abba", "", "", "", "", "/m/one.mp3"});
    Store("mine", folder / "gone.m3u");
    Store("folder", folder.Path());
    Store("nuls", folder / "nuls.m3u");
    tests::WriteFile(folder / "nuls.m3u", std::string(10, '\0'));
    MainForm &form = WithTree();
    form.TV.ClickText(form.TV.Find("#ABBA"));
    const std::string before = ShownRows();
    for (const char *key : {"&mine", "&folder", "&nuls"}) {
        desktop.boxes.clear();
        Click(key);
        EXPECT_EQ(desktop.boxes, Texts{"The playlist is not ready"});
        EXPECT_EQ(ShownRows(), before);
        EXPECT_EQ(desktop.pointers.back(), Pointer::Normal);
        EXPECT_EQ(form.ImgIcon.Image(), "MP3");
    }
    ASSERT_TRUE(playlists::RemovePlayList(form, "other"));
    catalogue::DataAccess->ExecuteSQL("DELETE FROM Lists", catalogue::kDelete);
    desktop.boxes.clear();
    Click("&mine"); // another process took it away
    EXPECT_EQ(desktop.boxes, Texts{"The playlist is not ready"});
}

TEST_F(Lists, TheFileIsReadAfreshAtEachClick)
{
    Opened("#EXTM3U\r\none.mp3\r\n");
    EXPECT_EQ(Entries(), "/0|one|~/one.mp3; ");
    tests::WriteFile(list, "#EXTM3U\r\ntwo.mp3\r\n");
    Click("&mine");
    EXPECT_EQ(Entries(), "/0|two|~/two.mp3; ");
}

TEST_F(Lists, ListsInTheCodePageAndInUtf8)
{
    Opened("\xEF\xBB\xBF#EXTM3U\r\n#EXTINF:1,\xC3\x91u\r\n\xC3\xB1.mp3\r\n");
    EXPECT_EQ(Entries(), "/0|Ñu|~/ñ.mp3; ");
    tests::WriteFile(list, "#EXTM3U\r\n#EXTINF:1,\xD1u\r\n\xF1.mp3\r\n");
    tests::WriteFile(folder / "ñ.mp3", "song");
    Click("&mine");
    EXPECT_EQ(Entries(), "/0|Ñu|~/\xF1.mp3; ");
    LetLook();
    EXPECT_EQ(Entries(), "/0|Ñu|~/ñ.mp3; ");
    tests::WriteFile(folder / "\xF1.mp3", "song"); // the bytes of the list are tried first
    Click("&mine");
    LetLook();
    EXPECT_EQ(Entries(), "/0|Ñu|~/\xF1.mp3; ");
}

TEST_F(Lists, RowsLearnFromTheDiskWhereTheirFilesAre)
{
    tests::WriteFile(folder / "Sub/Two.mp3", "song");
    tests::WriteFile(folder / "one.mp3", "song");
    MainForm &form = Opened("#EXTM3U\r\none.mp3\r\nsub\\TWO.MP3\r\ngone.mp3\r\nC:\\x\\y.mp3\r\n");
    EXPECT_TRUE(form.tmrListFiles.Enabled());
    LetLook();
    EXPECT_EQ(Entries(), "/0|one|~/one.mp3; /1|sub\\TWO|~/Sub/Two.mp3; -/2|gone|~/gone.mp3; "
                         "-/3|C:\\x\\y|C:\\x\\y.mp3; ");
    EXPECT_EQ(form.LV.DimmedTip(), "The file is not there.");
}

// The name loses its "%" to the separator, and the path gets it; the file is found all the same.
TEST_F(Lists, ANameThatEndsWithAPercentSign)
{
    tests::WriteFile(folder / "one.mp3", "song");
    Opened("#EXTM3U\r\n#EXTINF:1,100%\r\none.mp3\r\n");
    EXPECT_EQ(Entries(), "/0|100|~/%one.mp3; ");
    LetLook();
    EXPECT_EQ(Entries(), "/0|100|~/one.mp3; ");
}

TEST_F(Lists, ResultsForAnOlderListAreDropped)
{
    Add({"One", "Abba", "", "", "", "", "/m/one.mp3"});
    MainForm &form = Opened("#EXTM3U\r\ngone.mp3\r\n");
    form.TV.ClickText(form.TV.Find("#ABBA"));
    LetLook();
    ASSERT_EQ(form.LV.Count(), 1);
    EXPECT_FALSE(form.LV.IsDimmed(0));
}

TEST_F(Lists, FoundPathsKeepTheOrderByPath)
{
    tests::WriteFile(folder / "B.mp3", "song");
    MainForm &form = Opened("#EXTM3U\r\nx\\..\\b.mp3\r\na.mp3\r\n");
    form.LV.SetSort(2, false);
    LetLook();
    EXPECT_EQ(form.LV.RowAt(0), 1);
}

TEST_F(Lists, ANewerClickWhileTheListIsReadHasTheLastWord)
{
    Add({"One", "Abba", "", "", "", "", "/m/one.mp3"});
    Store("mine", list);
    MainForm &form = WithTree();
    bool clicked = false;
    desktop.onYield = [&] {
        if (!std::exchange(clicked, true))
            form.TV.MoveTo(form.TV.Find("#ABBA"));
    };
    form.TV.MoveTo(form.TV.Find("&mine"));
    EXPECT_TRUE(clicked);
    EXPECT_EQ(ShownRows(), "/0:One ");
    EXPECT_EQ(form.WEPath.Caption(), "MP3/By Artist/Abba");
}

TEST_F(Lists, AnotherListThatIsOpenedMeanwhileHasTheLastWord)
{
    tests::WriteFile(folder / "other.m3u", "other.mp3");
    Store("mine", folder / "absent.m3u");
    Store("other", folder / "other.m3u");
    MainForm &form = WithTree();
    bool clicked = false;
    desktop.onYield = [&] {
        if (!std::exchange(clicked, true))
            form.TV.MoveTo(form.TV.Find("&other"));
    };
    form.TV.MoveTo(form.TV.Find("&mine"));
    EXPECT_TRUE(clicked);
    EXPECT_EQ(Entries(), "/0|other|~/other.mp3; ");
    EXPECT_TRUE(desktop.boxes.empty()); // nobody waits for the first one any more
}

TEST_F(Lists, ADoubleClickPlaysTheFileThatWasFound)
{
    tests::WriteFile(folder / "Sub/Two.mp3", "song");
    MainForm &form = Opened("#EXTM3U\r\nsub\\two.mp3\r\n");
    LetLook();
    std::string played;
    browser::RegisterItemKind("/",
                              [&](const std::string &path, ui::KeyedList &) { played = path; });
    form.LV.SelectOnly(0);
    form.LV.onDblClick();
    EXPECT_EQ(played, folder / "Sub/Two.mp3");
}

TEST_F(Lists, FiftyThousandEntriesWithin300Milliseconds)
{
    std::string content = "#EXTM3U\r\n";
    for (int i = 0; i < 50000; ++i)
        content += "#EXTINF:215,Artist " + std::to_string(i % 700) + " - Song " +
                   std::to_string(i) + "\r\nMusic\\Artist\\" + std::to_string(i) + ".mp3\r\n";
    const auto begin = std::chrono::steady_clock::now();
    Opened(content);
    const auto took = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(Form().LV.Count(), 50000);
    EXPECT_EQ(Form().LV.SubItem(49999, "Denomination"), "Artist 299 - Song 49999");
    const long long milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(took).count();
    RecordProperty("milliseconds", std::to_string(milliseconds));
    EXPECT_LT(milliseconds, 3000); // 300 on an idle machine without sanitizers
}

} // namespace

#include "browser/commands.h"
#include "runtime/error.h"
#include "tests/support/errorof.h"
#include "ui/controls/inputs/keyedlist.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace
{

using namespace browser;

const MenuLine *Find(std::string_view name)
{
    const auto lines = MenuLines();
    const auto found = std::find_if(lines.begin(), lines.end(),
                                    [&](const MenuLine &line) { return line.name == name; });
    return found == lines.end() ? nullptr : &*found;
}

TEST(MenuLines, NamesAreUniqueAndParentsComeFirst)
{
    std::set<std::string_view> seen;
    for (const MenuLine &line : MenuLines()) {
        EXPECT_TRUE(line.parent.empty() || seen.contains(line.parent)) << line.name;
        EXPECT_TRUE(seen.insert(line.name).second) << line.name;
        if (!line.parent.empty() && !line.parent.starts_with("mnu")) {
            EXPECT_TRUE(Find(line.parent)->submenu) << line.name;
        }
    }
    EXPECT_EQ(seen.size(), 41U);
}

// A line of the table as one text: name, parent, caption, shortcut, then "off", "checked", "sub".
std::string Row(const MenuLine &line)
{
    std::string row;
    for (const std::string_view cell : {line.name, line.parent, line.caption, line.shortcut})
        row.append(cell).append("|");
    return row + (line.enabled ? "" : "off") + (line.checked ? "checked" : "") +
           (line.submenu ? "sub" : "");
}

TEST(MenuLines, RowByRow)
{
    const char *const rows[] = {
        "mnuFile||&File||",
        "submnuAddFile|mnuFile|&Add File||",
        "submnuTagEditor|mnuFile|&Tag Editor||",
        "submnuFileHyphen|mnuFile|-||",
        "submnuFileInfo|mnuFile|&File Info             Alt+3||off",
        "submnuDuplicateEntry|mnuFile|&Duplicate entry||off",
        "submnuRename|mnuFile|&Rename File||off",
        "submnuExport|mnuFile|&Export file||off",
        "g|mnuFile|-||",
        "submnuPlayList|mnuFile|&PlayList||sub",
        "submnuAddPlayList|submnuPlayList|&Add Playlist||",
        "submnuRemovePlayList|submnuPlayList|&Remove PlayList||",
        "j|mnuFile|-||",
        "submnuExit|mnuFile|&Quit|Ctrl+Q|",
        "mnuTools||&Tools||",
        "submnuShowLyricsCurrentSong|mnuTools|Show &Lyrics Current Song||",
        "submnuSongControls|mnuTools|Song's &Controls||",
        "h|mnuTools|-||",
        "submnuRegenerateDatabase|mnuTools|&Regenerate Database||",
        "submnuRefreshTree|mnuTools|Refresh &Tree||",
        "submnuhyphen|mnuTools|-||",
        "submnuSearch|mnuTools|&Search||",
        "submnuhyphen1|mnuTools|-||",
        "submnuWebStyle|mnuTools|WebStyle||checked",
        "submnuPreferences|mnuTools|&Preferences||",
        "submnuToolsHyphen|mnuTools|-||",
        "submnuNewerVersion|mnuTools|Check the existence of a newer &version||",
        "mnuHelp||&Help||",
        "submnuShowHelp|mnuHelp|Contents|F1|",
        "hyp1|mnuHelp|-||",
        "submnuTechSupport|mnuHelp|Technical Support||",
        "submnuForums|mnuHelp|Online &Forums||",
        "submnuTutorials|mnuHelp|Online &Tutorials||",
        "hyp2|mnuHelp|-||",
        "submnuTips|mnuHelp|&Tips||",
        "submnuSetLanguage|mnuHelp|&Language||sub",
        "submnuEnglish|submnuSetLanguage|English||",
        "hyLang|submnuSetLanguage|-||",
        "submnuLng(0)|submnuSetLanguage|||",
        "submnuHelpHyphen1|mnuHelp|-||",
        "submnuAbout|mnuHelp|&About||",
    };
    ASSERT_EQ(MenuLines().size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i)
        EXPECT_EQ(Row(MenuLines()[i]), rows[i]);
}

TEST(ToolButtons, RowByRowInGroups)
{
    const char *const rows[] = {
        "submnuAddFile|Add file|MP3",
        "||",
        "submnuFileInfo|File Info|FileInfo",
        "submnuDuplicateEntry|Duplicate Entry|DuplicateMP3",
        "submnuRename|Rename File|Rename",
        "submnuExport|Export File|Export",
        "||",
        "submnuShowLyricsCurrentSong|Show &Lyrics Current Song|Lyrics",
        "submnuSongControls|Song's Controls|Controls",
        "||",
        "submnuSearch|Search|Search",
        "||",
        "submnuExit|Quit|Exit",
    };
    ASSERT_EQ(ToolButtons().size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const ToolButton &button = ToolButtons()[i];
        std::string row;
        row.append(button.key).append("|").append(button.tooltip).append("|").append(button.image);
        EXPECT_EQ(row, rows[i]);
        if (!button.key.empty()) {
            EXPECT_NE(Find(button.key), nullptr) << button.key;
        }
    }
}

TEST(MenuImages, EachEntryHasItsOwn)
{
    std::string images;
    for (const MenuImage &image : MenuImages()) {
        EXPECT_NE(Find(image.name), nullptr) << image.name;
        images.append(image.image).append("=").append(image.name.substr(6)).append(" ");
    }
    EXPECT_EQ(images,
              "MP3=AddFile TechSupport=TechSupport Rename=Rename Search=Search FileInfo=FileInfo "
              "VerCheck=NewerVersion Tip=Tips TreeView=RefreshTree DuplicateMP3=DuplicateEntry "
              "PlayList=PlayList Add=AddPlayList Remove=RemovePlayList Help=ShowHelp "
              "Lyrics=ShowLyricsCurrentSong Export=Export FileInfo=TagEditor Controls=SongControls "
              "Exit=Exit ");
}

TEST(FileCommands, AreTheFourThatNeedAFile)
{
    std::string names;
    for (const std::string_view name : FileCommands())
        names.append(name).append(" ");
    EXPECT_EQ(names, "submnuFileInfo submnuDuplicateEntry submnuExport submnuRename ");
}

TEST(PopupLines, RowByRow)
{
    const char *const rows[] = {
        "FileOptions|File Options|fOptions|",
        "FileInfo|&File Info|Info|FileInfo",
        "ExportFile|&Export file|Export|Export",
        "RenameFile|&Rename file|Rename|Rename",
        "DuplicateEntry|&Duplicate entry|Duplicate|DuplicateMP3",
        "ControlOptions|Control Options|fOptions|",
        "PlaySong|&Play Song|Play|Play",
        "PauseSong|Pa&use Song|Pause|Pause",
        "StopSong|&Stop Song|Stop|Stop",
    };
    ASSERT_EQ(PopupLines().size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        std::string row;
        for (const std::string_view cell :
             {PopupLines()[i].languageKey, PopupLines()[i].caption, PopupLines()[i].key})
            row.append(cell).append("|");
        EXPECT_EQ(row.append(PopupLines()[i].image), rows[i]);
    }
}

TEST(PopupLines, RenameSharesTheCommandOfExport)
{
    std::string keys;
    for (const PopupLine &line : PopupLines())
        keys.append(line.IsTitle() ? "-" : "").append(line.key).append(" ");
    EXPECT_EQ(keys, "-fOptions Info Export Rename Duplicate -fOptions Play Pause Stop ");
    EXPECT_EQ(PopupLines()[2].command, PopupLines()[3].command);
}

class Registry : public testing::Test
{
protected:
    ~Registry() override { ForgetRegistrations(); }
};

TEST_F(Registry, WhatIsRegisteredCanRunWhateverTheCaseOfItsName)
{
    int ran = 0;
    EXPECT_FALSE(IsRegistered("submnuSearch"));
    EXPECT_FALSE(CanRun("submnuSearch"));
    EXPECT_EQ(tests::ErrorOf([] { RunHandler("submnuSearch"); }), runtime::kMemberNotFound);
    RegisterCommand("submnuSearch", [&] { ++ran; });
    for (const char *name : {"submnuSearch", "SUBMNUSEARCH", "submnusearch"}) {
        EXPECT_TRUE(IsRegistered(name)) << name;
        EXPECT_TRUE(CanRun(name)) << name;
        RunHandler(name);
    }
    EXPECT_EQ(ran, 3);
    EXPECT_FALSE(CanRun("submnuSearc"));
    ForgetRegistrations();
    EXPECT_FALSE(CanRun("submnuSearch"));
}

TEST_F(Registry, AskedEachTimeWhetherItCanRun)
{
    bool can = false;
    RegisterCommand(
        "cp_Pause", [] {}, [&] { return can; });
    EXPECT_TRUE(IsRegistered("cp_Pause"));
    EXPECT_FALSE(CanRun("cp_Pause"));
    can = true;
    EXPECT_TRUE(CanRun("cp_Pause"));
}

TEST_F(Registry, TheSecondRegistrationReplacesTheFirstEvenWhileThatRuns)
{
    std::string ran;
    RegisterCommand("submnuTips", [&] {
        RegisterCommand("submnuTips", [&] { ran += "second "; });
        ran += "first ";
    });
    RunHandler("submnuTips");
    RunHandler("submnuTips");
    EXPECT_EQ(ran, "first second ");
}

TEST_F(Registry, TakesOnlyNamesThatTheTablesHave)
{
    for (const MenuLine &line : MenuLines())
        EXPECT_EQ(tests::ErrorOf([&] { RegisterCommand(line.name, [] {}); }), 0) << line.name;
    for (const PopupLine &line : PopupLines()) {
        EXPECT_EQ(tests::ErrorOf([&] { RegisterCommand(line.command, [] {}); }) == 0,
                  !line.IsTitle())
            << line.key;
    }
    EXPECT_EQ(tests::ErrorOf([] { RegisterCommand("submnuLng(7)", [] {}); }), 0);
    for (const char *name : {"submnuNoSuch", "cp_Rename", "", "Search"})
        EXPECT_EQ(tests::ErrorOf([&] { RegisterCommand(name, [] {}); }), runtime::kMemberNotFound)
            << name;
}

TEST_F(Registry, KindsOfItemsAreOpenedByWhoRegistered)
{
    EXPECT_FALSE(OpenerOf("/"));
    std::string opened;
    RegisterItemKind("/", [&](const std::string &value, ui::KeyedList &) { opened = value; });
    ui::KeyedList list;
    OpenerOf("/")("/m/one.mp3", list);
    EXPECT_EQ(opened, "/m/one.mp3");
    EXPECT_FALSE(OpenerOf("&"));
    for (const char *marker : {"x", "", "/x", "&name"})
        EXPECT_EQ(tests::ErrorOf([&] { RegisterItemKind(marker, {}); }), runtime::kMemberNotFound)
            << marker;
    ForgetRegistrations();
    EXPECT_FALSE(OpenerOf("/"));
}

} // namespace

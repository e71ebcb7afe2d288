#include "shell/preferences/folderlook.h"
#include "shell/preferences/newfolder.h"
#include "tests/shell/preferencesfixture.h"

#include <gtest/gtest.h>

#include <filesystem>
namespace
{

using tests::PreferencesTest;
using tests::Texts;

TEST_F(PreferencesTest, EnterOpensTheTreeAtTheTypedFolder)
{
    Store(folder / "other");
    Open();
    EXPECT_FALSE(shell::txtPath_KeyPress(pref, 'x'));
    pref.txtPath.SetText(folder / "music/abba/");
    EXPECT_TRUE(shell::txtPath_KeyPress(pref, 13));
    EXPECT_EQ(pref.DirList, folder / "music/abba");
    EXPECT_EQ(pref.txtPath.Text(), folder / "music/abba");
    EXPECT_EQ(pref.dirTree->PathOf(pref.tvwDirTree.Selected()), folder / "music/abba");
    EXPECT_EQ(ListRows(), Texts{"two.mp3"});
    EXPECT_EQ(catalogue::MP3s().Path(), folder / "music/abba");
    EXPECT_EQ(unloads, 0);               // Enter never presses OK
    pref.txtPath.SetText("../../other"); // from the process's current folder
    GTEST_ASSERT_EQ(folders.CurrentFolder(), folder / "other");
    pref.txtPath.SetText("../music");
    EXPECT_TRUE(shell::txtPath_KeyPress(pref, 13));
    EXPECT_EQ(pref.DirList, folder / "music");
    pref.txtPath.SetText("  ");
    EXPECT_TRUE(shell::txtPath_KeyPress(pref, 13));
    EXPECT_EQ(pref.txtPath.Text(), folder / "music");
}

TEST_F(PreferencesTest, ATypedFolderThatIsNotThere)
{
    Store(folder / "music");
    Open();
    pref.txtPath.SetText(folder / "absent");
    try {
        shell::txtPath_KeyPress(pref, 13);
        FAIL() << "no error";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kPathNotFound);
        EXPECT_EQ(error.description, folder / "absent: Path not found");
    }
    EXPECT_EQ(pref.DirList, folder / "music");
    EXPECT_EQ(pref.txtPath.Text(), folder / "absent");
    shell::txtPath_LostFocus(pref); // reports nothing
    EXPECT_EQ(pref.txtPath.Text(), folder / "absent");
    EXPECT_THROW(shell::cmdOk_Click(pref), runtime::RuntimeError); // but OK does
    EXPECT_EQ(settings.writes, Texts());
    EXPECT_EQ(unloads, 0);
}

TEST_F(PreferencesTest, LeavingTheBoxCountsAsEnter)
{
    Store(folder / "music");
    Open();
    pref.txtPath.SetText(folder / "other");
    shell::txtPath_LostFocus(pref);
    EXPECT_EQ(pref.DirList, folder / "other");
    EXPECT_EQ(ListRows(), Texts{"three.mp3"});
}

TEST_F(PreferencesTest, AStoredFolderThatIsMissingStaysStored)
{
    Store(folder / "other/gone/deeper");
    Open();
    EXPECT_EQ(pref.DirList, folder / "other");
    EXPECT_EQ(pref.dirTree->PathOf(pref.tvwDirTree.Selected()), folder / "other");
    const int runs = Runs();
    pref.chkAutoCheck.SetChecked(true);
    shell::cmdOk_Click(pref);
    EXPECT_EQ(Runs(), runs);
    EXPECT_EQ(Stored(), folder / "other/gone/deeper");
    EXPECT_EQ(shell::TheGlobals().MP3Directory, folder / "other/gone/deeper");
    EXPECT_TRUE(shell::TheGlobals().AutoCheckNewerVersion);
    ClickFolder(folder.Path()); // but what the user chooses counts
    ClickFolder(folder / "music");
    shell::cmdOk_Click(pref);
    EXPECT_EQ(Runs(), runs + 1);
    EXPECT_EQ(Stored(), folder / "music");
}

TEST_F(PreferencesTest, StartFolderTable)
{
    const struct {
        const char *name;
        std::string stored, music;
        bool empty;
        std::string want;
        bool standIn;
    } cases[] = {
        {"stored", folder / "other", folder / "music", false, folder / "other", false},
        {"stored with a separator", folder / "other/", folder / "music", true, folder / "other",
         false},
        {"missing", folder / "a/b", folder / "music", true, folder.Path(), true},
        {"missing from the root on", "/no such folder/b", folder / "music", true, "/", true},
        {"of another system", "C:\\", folder / "music", true, folder / "music", true},
        {"none, a newcomer", "", folder / "music", true, folder / "music", false},
        {"none, but songs", "", folder / "music", false, folder / "music", true},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        folders.music = c.music;
        shell::SavePreference("MP3 Directory", c.stored);
        catalogue::DataAccess->ExecuteSQL("DELETE FROM MP3s", catalogue::kDetect);
        if (!c.empty)
            Add({"T", "A", "B", "1999", "", "Pop", "/x.mp3"});
        const shell::StartFolder start = shell::FindStartFolder();
        EXPECT_EQ(start.path, c.want);
        EXPECT_EQ(start.isSubstitute, c.standIn);
    }
}

TEST_F(PreferencesTest, ANewcomersOkReadsTheMusicFolder)
{
    Open();
    EXPECT_EQ(pref.DirList, folder / "music");
    shell::cmdOk_Click(pref);
    EXPECT_EQ(Stored(), folder / "music");
    EXPECT_NE(Form().TV.Find("@ONE"), ui::kNoNode);
    EXPECT_NE(Form().TV.Find("@TWO"), ui::kNoNode);
}

TEST_F(PreferencesTest, SongsWithoutAStoredFolderAreNotReadByOk)
{
    Add({"T", "A", "B", "1999", "", "Pop", "/x.mp3"});
    Open();
    const int runs = Runs();
    shell::cmdOk_Click(pref);
    EXPECT_EQ(Runs(), runs);
    EXPECT_EQ(Stored(), ""); // still none
}

TEST_F(PreferencesTest, TheCommandDoesTheSecondRunOfAnOkWithoutEffect)
{
    Store(folder / "music");
    shell::submnuPreferences_Click([this] {
        Open();
        pref.txtPath.SetText(folder / "other");
        shell::cmdOk_Click(pref);
        shell::UnloadPreferences(pref);
    });
    EXPECT_EQ(shell::TheGlobals().MP3Directory, folder / "other");
    EXPECT_TRUE(catalogue::LastRegeneration().skipped);
    EXPECT_EQ(catalogue::LastRegeneration().files, 1);
    EXPECT_TRUE(Form().TV.Enabled() && Form().LV.Enabled());
    EXPECT_FALSE(Form().PBar.Visible());
    EXPECT_EQ(Form().SB.Panel("Playing").text, "This folder has been done in this run.");
    EXPECT_NE(Form().TV.Find("@THREE"), ui::kNoNode);
}

TEST_F(PreferencesTest, TheCommandRunsWhereOnlyTheLetterCaseDiffers)
{
    AddSong("Music/four.mp3", "Four");
    Store(folder / "music");
    shell::submnuPreferences_Click([this] {
        Open();
        pref.txtPath.SetText(folder / "Music");
        shell::cmdOk_Click(pref);
        shell::UnloadPreferences(pref);
    });
    EXPECT_EQ(shell::TheGlobals().MP3Directory, folder / "Music");
    EXPECT_FALSE(catalogue::LastRegeneration().skipped);
    EXPECT_NE(Form().TV.Find("@FOUR"), ui::kNoNode);
}

TEST_F(PreferencesTest, TheCommandDoesNothingMoreAfterCancel)
{
    Store(folder / "music");
    const int runs = Runs();
    shell::submnuPreferences_Click([this] {
        Open();
        pref.txtPath.SetText(folder / "other");
        shell::txtPath_LostFocus(pref);
        shell::cmdCancel_Click(pref);
        shell::UnloadPreferences(pref);
    });
    EXPECT_EQ(Runs(), runs);
    EXPECT_EQ(Form().TV.Count(), 0); // not loaded either
}

TEST_F(PreferencesTest, ADiskThatDoesNotAnswerIsGivenUp)
{
    Store(folder / "music");
    Open();
    folders.silent = {folder / "other"};
    bool choice = true;
    desktop.onYield = [&] { choice = pref.cmdOk.Enabled(); };
    const std::int64_t from = clock.steadyMs;
    pref.txtPath.SetText(folder / "other");
    EXPECT_THROW(shell::txtPath_KeyPress(pref, 13), runtime::RuntimeError);
    EXPECT_LE(clock.steadyMs - from, 2100);
    EXPECT_FALSE(choice);
    EXPECT_TRUE(pref.cmdOk.Enabled());
    EXPECT_EQ(pref.DirList, folder / "music");
}

TEST_F(PreferencesTest, AStoredFolderThatDoesNotAnswerIsWaitedForOnce)
{
    Store(folder / "music/abba/deep/deeper");
    folders.silent = {folder / "music", folder / "music/abba", folder / "music/abba/deep",
                      folder / "music/abba/deep/deeper"};
    bool again = false;
    desktop.onYield = [&] {
        shell::submnuPreferences_Click([&] { again = true; }); // the menu lives meanwhile
    };
    const std::int64_t from = clock.steadyMs;
    shell::submnuPreferences_Click([this] {
        Open();
        shell::UnloadPreferences(pref);
    });
    EXPECT_FALSE(again) << "a second window";
    EXPECT_GE(clock.steadyMs - from, 2000);
    EXPECT_LE(clock.steadyMs - from, 3000) << "the folders above it were waited for as long";
    EXPECT_EQ(pref.DirList, folder.Path());
    EXPECT_EQ(Stored(), folder / "music/abba/deep/deeper");
}

TEST_F(PreferencesTest, CancelEndsTheWaitForADiskQuietly)
{
    Store(folder / "music");
    Open();
    folders.silent = {folder / "other"};
    bool cancelled = false;
    desktop.onYield = [&] {
        if (!std::exchange(cancelled, true))
            shell::cmdCancel_Click(pref);
    };
    const std::int64_t from = clock.steadyMs;
    pref.txtPath.SetText(folder / "other");
    EXPECT_NO_THROW(shell::cmdOk_Click(pref));
    EXPECT_TRUE(cancelled);
    EXPECT_LT(clock.steadyMs - from, 500);
    EXPECT_EQ(unloads, 0) << "not in the middle of the wait";
    pref.tmrUnload.Fire();
    EXPECT_EQ(unloads, 1);
    EXPECT_EQ(Stored(), folder / "music");
    EXPECT_TRUE(settings.writes.empty());
}

TEST_F(PreferencesTest, CancelIsRefusedWhileItsRegenerationRuns)
{
    Store(folder / "music");
    Open();
    bool cancelled = false;
    desktop.onYield = [&] {
        if (catalogue::IsRegenerating() && !std::exchange(cancelled, true)) {
            shell::cmdCancel_Click(pref);
            EXPECT_EQ(unloads, 0);
        }
    };
    pref.txtPath.SetText(folder / "other");
    shell::cmdApply_Click(pref);
    EXPECT_TRUE(cancelled);
    EXPECT_EQ(unloads, 0);
    EXPECT_EQ(Stored(), folder / "other");
}

TEST_F(PreferencesTest, ClosingEndsTheWaitForADisk)
{
    Store(folder / "music");
    Open();
    ClickFolder(folder.Path());
    folders.silent = {folder / "other"};
    bool asked = false;
    desktop.onYield = [&] {
        if (!std::exchange(asked, true)) {
            EXPECT_FALSE(shell::MayUnloadPreferences(pref));
        }
    };
    const std::int64_t from = clock.steadyMs;
    pref.tvwDirTree.ClickExpander(pref.dirTree->FindPath(folder / "other"));
    ClickFolder(folder / "other");
    EXPECT_TRUE(asked);
    EXPECT_LT(clock.steadyMs - from, 2500);
    pref.tmrUnload.Fire();
    EXPECT_EQ(unloads, 1);
}

TEST_F(PreferencesTest, EndingTheProgramEndsTheRunAndKeepsTheRest)
{
    AddSong("other/four.mp3", "Four");
    Store(folder / "music");
    Open();
    pref.txtPath.SetText(folder / "other");
    desktop.onYield = [] {
        if (catalogue::LastRegeneration().files == 1)
            catalogue::StopRegeneration();
    };
    shell::cmdOk_Click(pref);
    EXPECT_TRUE(catalogue::LastRegeneration().stopped);
    EXPECT_EQ(catalogue::LastRegeneration().files, 1);
    EXPECT_EQ(Form().TV.Count(), 0); // the tree of a program that ends is not loaded
    EXPECT_EQ(unloads, 1);
    EXPECT_EQ(Stored(), folder / "other");
}

// --- New folder ------------------------------------------------------------------------------

// What the tree's popup offers on a folder.
std::vector<std::string> PopupOf(const shell::PreferencesForm &pref, ui::NodeId node)
{
    std::vector<std::string> captions;
    for (const auto &entry : pref.tvwDirTree.popupOf(node))
        captions.push_back(entry.caption);
    return captions;
}

TEST_F(PreferencesTest, ANewFolderIsMadeInTheSelectedOne)
{
    Store(folder / "other");
    Open();
    const ui::NodeId music = pref.dirTree->FindPath(folder / "music");
    EXPECT_EQ(PopupOf(pref, music), Texts{"&New folder..."});
    EXPECT_EQ(PopupOf(pref, pref.tvwDirTree.Find("root")), Texts{}); // the computer is no folder
    ClickFolder(folder / "music");
    desktop.input = "Zed & ñ";
    pref.tvwDirTree.popupOf(music).front().run();
    EXPECT_EQ(desktop.inputs,
              (Texts{"Type the name of the new folder|Folder Name|New Folder Name"}));
    EXPECT_TRUE(std::filesystem::is_directory(folder / "music/Zed & ñ"));
    const ui::NodeId made = pref.dirTree->FindPath(folder / "music/Zed & ñ");
    ASSERT_NE(made, ui::kNoNode);
    EXPECT_EQ(pref.tvwDirTree.Parent(made), music);
    EXPECT_TRUE(pref.tvwDirTree.Expanded(music));
    desktop.input = "Middle"; // sorted among the others
    shell::NewFolder(*pref.dirTree, pref.tvwDirTree);
    Texts children;
    for (const ui::NodeId child : pref.tvwDirTree.Children(music))
        children.emplace_back(pref.tvwDirTree.Text(child));
    EXPECT_EQ(children, (Texts{"abba", "Middle", "Zed & ñ"}));
    EXPECT_EQ(pref.DirList, folder / "music");
}

TEST_F(PreferencesTest, ANewFolderThatCannotBeMade)
{
    Store(folder / "music");
    Open();
    for (const auto &nothing : {std::optional<std::string>(), std::optional<std::string>("")}) {
        desktop.input = nothing;
        shell::NewFolder(*pref.dirTree, pref.tvwDirTree);
    }
    const struct {
        const char *name;
        int number;
    } cases[] = {
        {"abba", runtime::kFileExists},
        {"one.mp3", runtime::kFileExists},
        {"no/such", runtime::kFileNotFound},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        desktop.input = c.name;
        try {
            shell::NewFolder(*pref.dirTree, pref.tvwDirTree);
            ADD_FAILURE() << "no error";
        } catch (const runtime::RuntimeError &error) {
            EXPECT_EQ(error.number, c.number);
            EXPECT_TRUE(error.description.starts_with(folder / "music" + "/" + c.name));
        }
    }
    EXPECT_EQ(tests::ReadFile(folder / "music/one.mp3").empty(), false);
    pref.tvwDirTree.Select(pref.tvwDirTree.Find("root"));
    shell::NewFolder(*pref.dirTree, pref.tvwDirTree); // asks nothing
    EXPECT_EQ(desktop.inputs.size(), 5U);
}

} // namespace

#include "tests/shell/preferencesfixture.h"

#include <gtest/gtest.h>

#include <filesystem>
namespace
{

namespace fs = std::filesystem;
using tests::PreferencesTest;
using tests::Texts;

TEST_F(PreferencesTest, LoadReadsItsKeysInOrder)
{
    Store(folder / "music");
    shell::SavePreference("RefreshAtStartUp", "1");
    shell::SavePreference("Back Up Files", "0");
    shell::SavePreference("Delete Before Append", "7"); // any number but 0 is true
    shell::SavePreference("Load Album", "0");
    settings.reads.clear();
    Open();
    Texts keys;
    for (const std::string &read : settings.reads)
        keys.push_back(read.substr(read.find('/') + 1));
    EXPECT_EQ(keys,
              (Texts{"RefreshAtStartUp", "MP3 Directory", "Back Up Files",
                     "Update DB after editing", "Show Lyrics automatically", "Delete Before Append",
                     "AutoCheckNewerVersion", "Load Title", "Load Artist", "Load Album",
                     "Load Year", "Load Comment", "Load Genre", "Load List"}));
    EXPECT_TRUE(pref.Reload.Checked());
    EXPECT_FALSE(pref.chkDoBackUp.Checked());
    EXPECT_TRUE(pref.chkUpdateDB.Checked());
    EXPECT_TRUE(pref.chkAutoShow.Checked());
    EXPECT_TRUE(pref.chkDeleteTable.Checked());
    EXPECT_FALSE(pref.chkAutoCheck.Checked());
    for (std::size_t field = 0; field < pref.LoadTreeOpt.size(); field++)
        EXPECT_EQ(pref.LoadTreeOpt[field].Checked(), field != 2) << field;
}

TEST_F(PreferencesTest, CaptionsAreEnglishWithoutALanguageFile)
{
    Open();
    EXPECT_EQ(pref.frmMP3.Caption(), "MP3 Directory");
    EXPECT_EQ(pref.frmSeekBy.Caption(), "Seek By");
    EXPECT_EQ(pref.frmEditingTags.Caption(), "Editing Tags");
    EXPECT_EQ(pref.frmAutomatic.Caption(), "Automatic");
    EXPECT_EQ(pref.chkDeleteTable.Caption(), "Delete table before append");
    EXPECT_EQ(pref.chkAutoCheck.Caption(), "Check for newer version at startup");
    EXPECT_EQ(pref.LoadTreeOpt[6].Caption(), "List");
}

TEST_F(PreferencesTest, CaptionsComeFromTheLanguageFile)
{
    tests::WriteFile(folder / "X.qlt", "[Preferences]\nControls=Kontrolle\nMP3Directory=Ordner\n"
                                       "OkButton=&Gut\nGenerateDBAtStartup=Neu\n"
                                       "[ColumnHeaders]\nArtist=Interpret\nControls=falsch\n");
    shell::TheGlobals().LanguageFilePath = folder / "X.qlt";
    Open();
    EXPECT_EQ(pref.frmSeekBy.Caption(), "Kontrolle");
    EXPECT_EQ(pref.frmMP3.Caption(), "Ordner");
    EXPECT_EQ(pref.cmdOk.Caption(), "&Gut");
    EXPECT_EQ(pref.Reload.Caption(), "Neu");
    EXPECT_EQ(pref.LoadTreeOpt[1].Caption(), "Interpret");
    EXPECT_EQ(pref.LoadTreeOpt[0].Caption(), "Title");
}

TEST_F(PreferencesTest, OpensTheTreeDownToTheStoredFolder)
{
    Store(folder / "music/abba");
    const std::string before = folders.CurrentFolder();
    Open();
    EXPECT_EQ(pref.DirList, folder / "music/abba");
    EXPECT_EQ(pref.txtPath.Text(), folder / "music/abba");
    EXPECT_EQ(catalogue::MP3s().Path(), folder / "music/abba");
    EXPECT_EQ(catalogue::Dirs().Path(), "");
    EXPECT_EQ(folders.CurrentFolder(), folder / "music/abba");
    EXPECT_EQ(pref.dirTree->PathOf(pref.tvwDirTree.Selected()), folder / "music/abba");
    for (ui::NodeId up = pref.tvwDirTree.Parent(pref.tvwDirTree.Selected()); up != ui::kNoNode;
         up = pref.tvwDirTree.Parent(up))
        EXPECT_TRUE(pref.tvwDirTree.Expanded(up));
    EXPECT_EQ(ListRows(), Texts{"two.mp3"});
    shell::UnloadPreferences(pref);
    EXPECT_EQ(folders.CurrentFolder(), before);
}

TEST_F(PreferencesTest, ApplyChangesNothingWhereNothingWasChosen)
{
    Store(folder / "music");
    Open();
    const int runs = Runs();
    shell::cmdApply_Click(pref);
    EXPECT_EQ(Runs(), runs);
    EXPECT_EQ(
        settings.writes,
        (Texts{"RefreshAtStartUp=0", "MP3 Directory=" + (folder / "music"), "Back Up Files=1",
               "Update DB after editing=1", "Show Lyrics automatically=1", "Delete Before Append=0",
               "AutoCheckNewerVersion=0", "Load Title=1", "Load Artist=1", "Load Album=1",
               "Load Year=1", "Load Comment=1", "Load Genre=1", "Load List=1"}));
    EXPECT_EQ(unloads, 0);
}

TEST_F(PreferencesTest, AClickMovesMP3sAndNeverDirs)
{
    Store(folder / "music");
    Open();
    ClickFolder(folder.Path());
    ClickFolder(folder / "other");
    EXPECT_EQ(pref.DirList, folder / "other");
    EXPECT_EQ(pref.txtPath.Text(), folder / "other");
    EXPECT_EQ(catalogue::MP3s().Path(), folder / "other");
    EXPECT_EQ(catalogue::Dirs().Path(), "");
    EXPECT_EQ(ListRows(), Texts()); // a click empties the list
    EXPECT_EQ(pref.LV.Hint(), "MP3 files in this folder: 1");
    ClickFolder(folder.Path());
    EXPECT_EQ(pref.LV.Hint(),
              "No MP3 files in this folder itself. Its sub-folders are searched too.");
    ClickFolder(folder / "other");
    shell::cmdCancel_Click(pref);
    EXPECT_EQ(unloads, 1);
    shell::UnloadPreferences(pref);
    EXPECT_EQ(catalogue::MP3s().Path(), folder / "other");
    EXPECT_EQ(Stored(), folder / "music");
    EXPECT_EQ(shell::TheGlobals().MP3Directory, folder / "music");
}

TEST_F(PreferencesTest, ComputerAndDesktopLeaveTheFolder)
{
    Store(folder / "music");
    folders.music.clear();
    Open();
    pref.tvwDirTree.ClickText(1);
    EXPECT_EQ(pref.DirList, folder / "music");
    pref.tvwDirTree.ClickText(0);
    EXPECT_EQ(pref.DirList, folder / "music");
}

TEST_F(PreferencesTest, AFolderThatCannotBeReadBringsTheSelectionBack)
{
    Store(folder / "music");
    Open();
    ClickFolder(folder.Path());
    const std::string gone = folder / "other";
    fs::remove_all(gone);
    ClickFolder(gone);
    EXPECT_EQ(pref.DirList, folder.Path());
    EXPECT_EQ(pref.txtPath.Text(), folder.Path());
    EXPECT_EQ(catalogue::MP3s().Path(), folder.Path());
    EXPECT_EQ(pref.dirTree->PathOf(pref.tvwDirTree.Selected()), folder.Path());
}

TEST_F(PreferencesTest, ANewFolderRegeneratesFirstThenStores)
{
    Store(folder / "music");
    Open();
    pref.chkDeleteTable.SetChecked(true);
    pref.chkDoBackUp.SetChecked(false);
    ClickFolder(folder.Path());
    ClickFolder(folder / "other");
    Texts atRun;
    bool disabled = false, shown = false, mayUnload = true;
    std::string line;
    desktop.onYield = [&] {
        if (!catalogue::IsRegenerating())
            return;
        atRun = settings.writes;
        EXPECT_EQ(shell::TheGlobals().MP3Directory, folder / "other");
        EXPECT_TRUE(shell::TheGlobals().DeleteBeforeAppend);
        EXPECT_TRUE(shell::TheGlobals().BackUpFiles);
        disabled = !pref.tvwDirTree.Enabled() && !pref.txtPath.Enabled() && !pref.cmdOk.Enabled() &&
                   !pref.cmdApply.Enabled();
        shown = pref.PBar.Visible() && pref.lblProgress.Visible();
        mayUnload = shell::MayUnloadPreferences(pref);
        if (!pref.lblProgress.Caption().empty())
            line = pref.lblProgress.Caption();
        shell::cmdOk_Click(pref); // does nothing now
        shell::cmdApply_Click(pref);
        EXPECT_EQ(unloads, 0);
    };
    shell::cmdApply_Click(pref);
    EXPECT_EQ(atRun, Texts());
    EXPECT_TRUE(disabled);
    EXPECT_TRUE(shown);
    EXPECT_FALSE(mayUnload);
    EXPECT_EQ(line, "Adding: three.mp3");
    EXPECT_TRUE(pref.tvwDirTree.Enabled() && pref.txtPath.Enabled() && pref.cmdOk.Enabled() &&
                pref.cmdApply.Enabled());
    EXPECT_FALSE(pref.PBar.Visible() || pref.lblProgress.Visible());
    EXPECT_EQ(Stored(), folder / "other");
    EXPECT_FALSE(shell::TheGlobals().BackUpFiles);
    EXPECT_NE(Form().TV.Find("@THREE"), ui::kNoNode); // the tree was loaded
    EXPECT_TRUE(shell::MayUnloadPreferences(pref));
}

TEST_F(PreferencesTest, LetterCaseAloneRegeneratesNothingHere)
{
    fs::create_directories(folder / "Music"); // beside "music"
    Store(folder / "music");
    Open();
    ClickFolder(folder.Path());
    ClickFolder(folder / "Music");
    const int runs = Runs();
    shell::cmdApply_Click(pref);
    EXPECT_EQ(Runs(), runs);
    EXPECT_EQ(shell::TheGlobals().MP3Directory, folder / "music");
    EXPECT_EQ(Stored(), folder / "Music"); // the exact path
}

TEST_F(PreferencesTest, ApplyThenOkRebuildsNothingMore)
{
    Store(folder / "music");
    Open();
    ClickFolder(folder.Path());
    ClickFolder(folder / "other");
    shell::cmdApply_Click(pref);
    const int runs = Runs();
    const ui::NodeId nodes = Form().TV.Count();
    Form().TV.Add(ui::kNoNode, "mark", "mark"); // a rebuilt tree would lose it
    shell::cmdOk_Click(pref);
    EXPECT_EQ(Runs(), runs);
    EXPECT_EQ(Form().TV.Count(), nodes + 1);
    EXPECT_EQ(unloads, 1);
}

TEST_F(PreferencesTest, AFieldTurnedOffIsRemovedAtOnceAndOnAgainIsLast)
{
    Store(folder / "music");
    browser::LoadTreeView(Form(), "");
    Open();
    pref.LoadTreeOpt[0].SetChecked(false);
    shell::cmdApply_Click(pref);
    EXPECT_EQ(Form().TV.Find("ByTitle"), ui::kNoNode);
    EXPECT_NE(Form().TV.Find("ByArtist"), ui::kNoNode);
    EXPECT_FALSE(shell::TheGlobals().LoadField[0]);
    pref.LoadTreeOpt[0].SetChecked(true);
    settings.writes.clear();
    shell::cmdApply_Click(pref);
    const std::vector<ui::NodeId> &groups = Form().TV.Children(Form().TV.Find("MP3s"));
    EXPECT_EQ(Form().TV.Key(groups.back()), "ByTitle");
    EXPECT_EQ(settings.writes.size(), 14u); // unchanged flags are written too
    EXPECT_TRUE(std::ranges::find(settings.writes, "Load Path=1") == settings.writes.end());
}

TEST_F(PreferencesTest, AFailedRunLeavesTheFormerValues)
{
    Store(folder / "music");
    Open();
    pref.chkDeleteTable.SetChecked(true);
    ClickFolder(folder.Path());
    ClickFolder(folder / "other");
    fs::remove_all(folder / "other");
    EXPECT_THROW(shell::cmdOk_Click(pref), runtime::RuntimeError);
    EXPECT_EQ(shell::TheGlobals().MP3Directory, folder / "music");
    EXPECT_FALSE(shell::TheGlobals().DeleteBeforeAppend);
    EXPECT_EQ(Stored(), folder / "music");
    EXPECT_EQ(settings.writes, Texts());
    EXPECT_EQ(unloads, 0);
    EXPECT_TRUE(pref.cmdOk.Enabled() && pref.tvwDirTree.Enabled());
    EXPECT_TRUE(Form().TV.Enabled() && Form().LV.Enabled());
}

TEST_F(PreferencesTest, AFailedStoreLeavesTheFormerValues)
{
    Store(folder / "music");
    for (const char *key :
         {"RefreshAtStartUp", "MP3 Directory", "Delete Before Append", "Load Title", "Load List"}) {
        SCOPED_TRACE(key);
        catalogue::Dirs().Clear();
        Store(folder / "music");
        shell::TheGlobals().DeleteBeforeAppend = false;
        settings.failing.clear();
        shell::PreferencesForm form;
        shell::LoadPreferences(form);
        form.txtPath.SetText(folder / "other");
        form.chkDeleteTable.SetChecked(true);
        settings.failing = key;
        EXPECT_THROW(shell::cmdApply_Click(form), runtime::RuntimeError);
        settings.failing.clear();
        EXPECT_EQ(shell::TheGlobals().MP3Directory, folder / "music");
        EXPECT_FALSE(shell::TheGlobals().DeleteBeforeAppend);
        shell::UnloadPreferences(form);
    }
}

} // namespace

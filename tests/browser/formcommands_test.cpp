// The main form's commands: dispatch, states, captions, languages, pages.
#include "catalogue/regeneration.h"
#include "runtime/error.h"
#include "shell/preferences/unicodeoffer.h"
#include "tests/browser/formfixture.h"
#include "tests/support/scriptsongs.h"

namespace
{

using namespace browser;
using FormCommands = tests::FormTest;

bool IsLeaf(const MenuLine &line)
{
    return !line.parent.empty() && line.caption != "-" && !line.submenu;
}

TEST_F(FormCommands, AnUnregisteredCommandIsDisabledWhateverEnablesIt)
{
    MainForm &form = Loaded();
    SetFileCommandsEnabled(form, true);
    std::string enabled;
    for (const MenuLine &line : MenuLines()) {
        if (!IsLeaf(line)) { // a sub-menu without an entry that can be used is disabled too
            EXPECT_EQ(form.FindMenu(line.name)->Enabled(), line.name != "submnuPlayList")
                << line.name;
            continue;
        }
        EXPECT_EQ(form.FindMenu(line.name)->Enabled(), IsRegistered(line.name)) << line.name;
        if (!IsRegistered(line.name)) {
            EXPECT_NO_THROW(RunCommand(form, line.name)) << line.name;
        } else {
            enabled.append(line.name.substr(6)).append(" ");
        }
    }
    EXPECT_EQ(enabled, "Exit RegenerateDatabase RefreshTree WebStyle Forums Tutorials "
                       "English ");
    for (const ui::Command &button : form.buttons)
        EXPECT_EQ(button.Enabled(), button.name == "submnuExit") << button.name;
}

// Registers what the areas beside the browser register, except `forgotten`.
void RegisterAllBut(std::string_view forgotten)
{
    const auto add = [forgotten](std::string_view name) {
        if (name != forgotten)
            RegisterCommand(name, [] {});
    };
    for (const auto lines : {MenuLines(), ExtraMenuLines()})
        for (const MenuLine &line : lines)
            if (IsLeaf(line) && line.name != "submnuLng(0)")
                add(line.name);
    for (const PopupLine &line : PopupLines())
        if (!line.command.empty())
            add(line.command);
    for (const std::string_view marker : {"/", "&"})
        if (marker != forgotten)
            RegisterItemKind(marker, [](const std::string &, ui::KeyedList &) {});
    MainForm &form = frmMain();
    const std::pair<std::string_view, ui::Timer &> timers[] = {
        {"tmrRefreshList", form.tmrRefreshList},
        {"tmr_Playing", form.tmr_Playing},
        {"tmrAutoCheckVersion", form.tmrAutoCheckVersion},
        {"tmrClearAutoCheck", form.tmrClearAutoCheck},
        {"tmrListFiles", form.tmrListFiles},
    };
    for (const auto &[name, timer] : timers)
        if (name != forgotten)
            timer.event = [] {};
}

TEST_F(FormCommands, AForgottenAreaIsAnErrorAtTheStart)
{
    for (const std::string_view forgotten :
         {"", "submnuSearch", "submnuExportBookmarks", "cp_Play", "/", "&", "tmrRefreshList",
          "tmr_Playing", "tmrAutoCheckVersion", "tmrClearAutoCheck", "tmrListFiles"}) {
        SCOPED_TRACE(forgotten);
        ResetMainForm();
        RegisterAllBut(forgotten);
        MainForm &form = Loaded();
        std::string error;
        try {
            CheckRegistrations(form);
        } catch (const runtime::RuntimeError &failure) {
            EXPECT_EQ(failure.number, runtime::kMemberNotFound);
            error = failure.description;
        }
        EXPECT_EQ(error, forgotten.empty() ? "" : "Not registered: " + std::string(forgotten));
    }
}

TEST_F(FormCommands, AHiddenEntryNeedsNoHandler)
{
    RegisterAllBut("submnuNewerVersion"); // as in a program without the web
    MainForm &form = Loaded();
    EXPECT_THROW(CheckRegistrations(form), runtime::RuntimeError);
    form.FindMenu("submnuNewerVersion")->SetVisible(false);
    EXPECT_NO_THROW(CheckRegistrations(form));
}

TEST_F(FormCommands, TheMenuOfExtrasIsBuiltAfterTheOthers)
{
    bool ran = false;
    RegisterCommand("submnuExportBookmarks", [&ran] { ran = true; });
    tests::WriteFile(folder / "x.qlt", "[Menus]\nExtras=&Mehr\n[OptionMenus]\n"
                                       "ExportBookmarks=Lesezeichen\n");
    shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
    int built = 0;
    Form().extrasBuilt = [&] { ++built; };
    MainForm &form = Loaded();
    EXPECT_EQ(built, 1);
    ASSERT_NE(form.FindMenu("mnuExtras"), nullptr);
    EXPECT_EQ(form.FindMenu("mnuExtras")->Caption(), "&Mehr");
    EXPECT_EQ(form.FindMenu("submnuExportBookmarks")->Caption(), "Lesezeichen");
    EXPECT_TRUE(form.FindMenu("submnuExportBookmarks")->Enabled());
    RunCommand(form, "submnuExportBookmarks");
    EXPECT_TRUE(ran);
}

TEST_F(FormCommands, ASettingHidesTheMenuOfExtras)
{
    settings.values["Quenlin/Extras/Menu"] = "0";
    int built = 0;
    Form().extrasBuilt = [&] { ++built; };
    MainForm &form = Loaded();
    EXPECT_EQ(built, 0);
    EXPECT_EQ(form.FindMenu("mnuExtras"), nullptr);
    EXPECT_EQ(form.FindMenu("submnuExportBookmarks"), nullptr);
}

TEST_F(FormCommands, ALoadWithoutItsWindowFails)
{
    const int calls = 10;
    for (int without = 0; without < calls; ++without) {
        ResetMainForm();
        FillCalls(Form());
        MainFormCalls &c = Form().calls;
        const std::function<void()> take[calls] = {
            [&] { c.textWidth = nullptr; },     [&] { Form().placed = nullptr; },
            [&] { c.bringIntoView = nullptr; }, [&] { c.showWindow = nullptr; },
            [&] { c.showPopup = nullptr; },     [&] { c.cursor = nullptr; },
            [&] { c.popupHeights = nullptr; },  [&] { c.raisePanel = nullptr; },
            [&] { c.unloadForms = nullptr; },   [&] { c.endProgram = nullptr; }};
        take[without]();
        try {
            LoadMainForm(Form());
            ADD_FAILURE() << "loaded without call " << without;
        } catch (const runtime::RuntimeError &error) {
            EXPECT_EQ(error.number, runtime::kObjectNotSet);
        }
    }
}

TEST_F(FormCommands, TheFourFileCommandsGoTogetherWithTheirButtons)
{
    MainForm &form = Loaded();
    RegisterFileCommands();
    for (const bool on : {true, false}) {
        SetFileCommandsEnabled(form, on);
        for (const char *name :
             {"submnuFileInfo", "submnuDuplicateEntry", "submnuExport", "submnuRename"}) {
            EXPECT_EQ(form.FindMenu(name)->Enabled(), on) << name;
            EXPECT_EQ(form.FindButton(name)->Enabled(), on) << name;
        }
        UpdateCommands(form);
        EXPECT_EQ(form.FindMenu("submnuRename")->Enabled(), on);
        EXPECT_FALSE(form.FindMenu("submnuSearch")->Enabled());
        EXPECT_TRUE(form.FindButton("submnuExit")->Enabled());
    }
}

TEST_F(FormCommands, ARegisteredCommandIsEnabledByItsArea)
{
    bool can = false;
    int ran = 0;
    RegisterCommand(
        "submnuSearch", [&] { ++ran; }, [&] { return can; });
    MainForm &form = Loaded();
    EXPECT_FALSE(form.FindMenu("submnuSearch")->Enabled());
    EXPECT_FALSE(form.FindButton("submnuSearch")->Enabled());
    can = true;
    UpdateCommands(form);
    EXPECT_TRUE(form.FindMenu("submnuSearch")->Enabled());
    EXPECT_TRUE(form.FindButton("submnuSearch")->Enabled());
    RunCommand(form, "submnuSearch");
    can = false; // also without a new call of UpdateCommands
    RunCommand(form, "submnuSearch");
    EXPECT_EQ(ran, 1);
}

TEST_F(FormCommands, TheFileCommandsAreOffAfterTheLoad)
{
    for (const char *name : {"submnuExport", "submnuSearch"})
        RegisterCommand(name, [] {});
    Form().fileCommandsEnabled = true;
    MainForm &form = Loaded();
    EXPECT_FALSE(form.FindMenu("submnuExport")->Enabled());
    EXPECT_FALSE(form.FindButton("submnuExport")->Enabled());
    EXPECT_TRUE(form.FindButton("submnuSearch")->Enabled());
}

TEST_F(FormCommands, ADisabledCommandDoesNothing)
{
    MainForm &form = Loaded();
    int about = 0;
    RegisterCommand("submnuAbout", [&] { ++about; });
    form.FindMenu("submnuAbout")->SetEnabled(false);
    RunCommand(form, "submnuAbout");
    EXPECT_EQ(about, 0);
}

TEST_F(FormCommands, TheLanguageWalk)
{
    tests::WriteFile(folder / "x.qlt",
                     "[Menus]\nFile=&Datei\n[OptionMenus]\nFileInfo=  &Info & mehr      Alt+3\n"
                     "Exit=&Ende\nSearch=\n[PopUpMenu]\nFileOptions=Dateien\nStopSong=S&top\n");
    shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
    MainForm &form = Loaded();
    EXPECT_EQ(form.FindMenu("mnuFile")->Caption(), "&Datei");
    EXPECT_EQ(form.FindMenu("mnuTools")->Caption(), "&Tools");
    EXPECT_EQ(form.FindMenu("submnuFileInfo")->Caption(), "&Info & mehr      Alt+3");
    EXPECT_EQ(form.FindButton("submnuFileInfo")->Caption(), "Info  mehr");
    EXPECT_EQ(form.FindButton("submnuExit")->Caption(), "Ende");
    EXPECT_EQ(form.FindMenu("submnuSearch")->Caption(), ""); // an empty value blanks it
    EXPECT_EQ(form.FindButton("submnuShowLyricsCurrentSong")->Caption(),
              "Show Lyrics Current Song");
    EXPECT_EQ(form.FindMenu("submnuFileHyphen")->Caption(), "-");
    EXPECT_EQ(form.FindMenu("g")->Caption(), "-");
    ASSERT_EQ(form.cp.size(), 9U);
    EXPECT_EQ(form.cp[0].caption, "-Dateien");
    EXPECT_EQ(form.cp[8].caption, "S&top");
}

TEST_F(FormCommands, InEnglishTheTooltipLosesMarkAndShortcut)
{
    MainForm &form = Loaded();
    EXPECT_EQ(form.FindButton("submnuFileInfo")->Caption(), "File Info");
    EXPECT_EQ(form.FindButton("submnuExit")->Caption(), "Quit");
}

TEST_F(FormCommands, CommandsAreFoundByNameWithoutRegardToCase)
{
    MainForm &form = Loaded();
    int about = 0;
    RegisterCommand("submnuAbout", [&] { ++about; });
    UpdateCommands(form);
    RunCommand(form, "submnuAbout");
    RunCommand(form, "SUBMNUABOUT");
    EXPECT_EQ(about, 2);
    try {
        RunCommand(form, "submnuNoSuch");
        FAIL() << "no error";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kMemberNotFound);
    }
}

TEST_F(FormCommands, AltAnd3IsTheOnlyKey)
{
    MainForm &form = Loaded();
    int opened = 0;
    EXPECT_TRUE(Form_KeyDown(form, '3', true)); // nothing registered it
    RegisterCommand("submnuFileInfo", [&] { ++opened; });
    EXPECT_TRUE(Form_KeyDown(form, '3', true)); // also while its entry is disabled
    EXPECT_EQ(opened, 1);
    EXPECT_FALSE(Form_KeyDown(form, '3', false));
    EXPECT_FALSE(Form_KeyDown(form, '4', true));
    EXPECT_EQ(opened, 1);
}

TEST_F(FormCommands, TheLanguageMenu)
{
    MainForm &form = Loaded();
    BuildLanguageMenu(form, {});
    EXPECT_FALSE(form.FindMenu("hyLang")->Visible());
    EXPECT_FALSE(form.FindMenu("submnuLng(0)")->Visible());
    BuildLanguageMenu(form, {"Deutsch", "A & B"});
    EXPECT_TRUE(form.FindMenu("hyLang")->Visible());
    EXPECT_EQ(form.FindMenu("submnuLng(0)")->Caption(), "Deutsch");
    EXPECT_EQ(form.FindMenu("submnuLng(1)")->Caption(), "A && B");
    EXPECT_TRUE(form.FindMenu("submnuLng(1)")->Visible());
    RunCommand(form, "submnuLng(1)");
    EXPECT_EQ(Setting("Preferences", "Language"), "A & B.qlt");
    RunCommand(form, "submnuEnglish");
    EXPECT_EQ(Setting("Preferences", "Language"), "none");
    RunCommand(form, "submnuEnglish"); // nothing to delete: the box is shown nevertheless
    ASSERT_EQ(desktop.boxes.size(), 3U);
    EXPECT_EQ(desktop.boxes[2], "The new language you set would start working the next time you "
                                "run this app.");
}

TEST_F(FormCommands, ALanguageEntryIsAddedOnlyAfterOneWithACaption)
{
    MainForm &form = Loaded();
    BuildLanguageMenu(form, {"", "Deutsch", "Español"}); // the first is that of a file ".qlt"
    EXPECT_EQ(form.FindMenu("submnuLng(0)")->Caption(), "Deutsch");
    EXPECT_EQ(form.FindMenu("submnuLng(1)")->Caption(), "Español");
    EXPECT_EQ(form.FindMenu("submnuLng(2)"), nullptr);
    RunCommand(form, "submnuLng(0)");
    EXPECT_EQ(Setting("Preferences", "Language"), "Deutsch.qlt");
}

TEST_F(FormCommands, PagesOpenBelowTheStoredAddress)
{
    MainForm &form = Loaded();
    RunCommand(form, "submnuForums");
    RunCommand(form, "submnuTutorials");
    ASSERT_EQ(desktop.opened.size(), 2U);
    const auto records = catalogue::Records(
        catalogue::DataAccess->ExecuteSQL("SELECT URL2Check FROM Validations", catalogue::kSelect));
    const std::string address(records->Text("URL2Check"));
    EXPECT_TRUE(address.ends_with("/")) << address;
    EXPECT_EQ(desktop.opened[0], address + "Forums/default.asp");
    EXPECT_EQ(desktop.opened[1], address + "Tutorial%20Index.asp");
    desktop.canOpen = false;
    RunCommand(form, "submnuForums");
    EXPECT_EQ(desktop.boxes, std::vector<std::string>{});
    EXPECT_EQ(desktop.clipboard, desktop.opened[0]);
    EXPECT_EQ(form.SB.Panel("Playing").text, "Nothing opens this. The text is on the clipboard.");
}

TEST_F(FormCommands, EndingTheProgramBeforeAPageIsKnownOpensNone)
{
    for (const int at : {1, 2}) {
        SCOPED_TRACE(at);
        ResetMainForm();
        OpenCatalogue();
        MainForm &form = Loaded();
        int yields = 0, ended = 0;
        form.calls.endProgram = [&] { ++ended; };
        desktop.onYield = [&] {
            if (++yields == at)
                RunCommand(form, "submnuExit");
        };
        RunCommand(form, "submnuForums");
        desktop.onYield = nullptr;
        EXPECT_EQ(ended, 1);
        EXPECT_TRUE(desktop.opened.empty());
    }
}

TEST_F(FormCommands, UnicodeTagsAreToggledStoredAndReadAnewWhereTheUserWants)
{
    tests::WriteFile(Song("new.mp3"), tests::SongBytes(tests::kJapanese));
    shell::TheGlobals().MP3Directory = Music();
    MainForm &form = Loaded();
    const ui::Command &entry = *form.FindMenu("submnuUnicodeTags");
    EXPECT_EQ(entry.Caption(), "Read &Unicode tags");
    EXPECT_TRUE(entry.Enabled());
    EXPECT_FALSE(entry.Checked());
    EXPECT_TRUE(shell::IsUnicodeOfferDue());

    RunCommand(form, "submnuUnicodeTags"); // No to the question
    EXPECT_EQ(desktop.boxes,
              std::vector<std::string>{"The catalogue shows the texts as they were read before. "
                                       "Would you like to regenerate the database now?"});
    EXPECT_TRUE(entry.Checked());
    EXPECT_TRUE(shell::TheGlobals().UnicodeTags);
    EXPECT_EQ(Setting("Extras", "UnicodeTags"), "1");
    EXPECT_TRUE(Rows().empty());

    desktop.yesOrNo = platform::Answer::Yes;
    RunCommand(form, "submnuUnicodeTags");
    EXPECT_FALSE(entry.Checked());
    EXPECT_FALSE(shell::TheGlobals().UnicodeTags);
    EXPECT_EQ(Setting("Extras", "UnicodeTags"), "0");
    EXPECT_EQ(Keys("ByTitle"), "@ ")
        << "as read with Unicode tags off, without an offer to turn them on";
    EXPECT_FALSE(shell::IsUnicodeOfferDue());

    RunCommand(form, "submnuUnicodeTags");
    EXPECT_TRUE(entry.Checked());
    EXPECT_EQ(Keys("ByTitle"), "@桜の花 ");
    RunCommand(form, "submnuUnicodeTags"); // and back
    EXPECT_EQ(Keys("ByTitle"), "@ ");
}

TEST_F(FormCommands, TheWayOfReadingStaysDuringARegeneration)
{
    tests::WriteFile(Song("new.mp3"), tests::SongBytes(tests::kJapanese));
    shell::TheGlobals().MP3Directory = Music();
    MainForm &form = Loaded();
    int looks = 0;
    desktop.onYield = [&] {
        if (!catalogue::IsRegenerating())
            return;
        ++looks;
        RunCommand(form, "submnuUnicodeTags");
        EXPECT_FALSE(shell::TheGlobals().UnicodeTags);
    };
    shell::NoteUnicodeChoice();
    RunCommand(form, "submnuRegenerateDatabase");
    EXPECT_GT(looks, 0);
    EXPECT_FALSE(shell::TheGlobals().UnicodeTags);
}

TEST_F(FormCommands, WebStyleIsToggledStoredAndLaidOut)
{
    MainForm &form = Loaded();
    RunCommand(form, "submnuWebStyle");
    EXPECT_FALSE(form.WebStyleOn);
    EXPECT_FALSE(shell::TheGlobals().WebStyle);
    EXPECT_FALSE(form.pctWeb.Visible());
    EXPECT_EQ(form.LV.Left(), -45);
    EXPECT_EQ(Setting("Preferences", "WebStyle"), "0");
    RunCommand(form, "submnuWebStyle");
    EXPECT_TRUE(form.pctWeb.Visible());
    EXPECT_EQ(Setting("Preferences", "WebStyle"), "1");
    for (const bool on : {false, true}) {
        shell::TheGlobals().WebStyle = on;
        form.WEPath.SetCaption("MP3/By Title");
        ApplyPreferences(form);
        EXPECT_EQ(form.FindMenu("submnuWebStyle")->Checked(), on);
        EXPECT_EQ(form.WebStyleOn, on);
        EXPECT_EQ(form.WEPath.Caption(), "");
    }
}

} // namespace

#include "runtime/error.h"
#include "shell/splash.h"
#include "tests/browser/formfixture.h"

namespace
{

using namespace browser;
using MainFormTest = tests::FormTest;

TEST_F(MainFormTest, LoadingLeavesAnEmptyPanelAndDisabledFileCommands)
{
    MainForm &form = Form();
    int checks = 0;
    form.calls.tmrAutoCheckVersion = [&] { ++checks; };
    for (ui::Label *label :
         {&form.lblWebFolder, &form.WebToolTip, &form.WebItemName, &form.lblInfo})
        label->SetCaption("as designed");
    form.ImgIcon.SetImage("MP3");
    form.ImgOthers[0].SetVisible(true);
    Loaded();
    EXPECT_EQ(checks, 1);
    EXPECT_EQ(form.WebItemName.Caption() + form.WebItemType.Caption() + form.lblInfo.Caption() +
                  form.lblWebFolder.Caption() + form.WebToolTip.Caption(),
              "");
    EXPECT_FALSE(form.ImgIcon.HasPicture());
    EXPECT_FALSE(form.ImgOthers[0].Visible());
    EXPECT_TRUE(form.ShowSelectedItems.Enabled());
    EXPECT_EQ(form.lblAddress.Caption(), "Address");
    EXPECT_EQ(form.WEPath.Left(), form.lblAddress.Left() + 700 + 200); // 7 characters of 100
    EXPECT_TRUE(form.listHooked);
    EXPECT_EQ(form.logo->Caption, "Quenlin");
    EXPECT_EQ(form.logo->StartColor(), 0U);
    EXPECT_EQ(form.logo->EndColor(), 0xFF0000U);
    EXPECT_TRUE(form.logo->hasImageList);
    EXPECT_EQ(form.logo->IconIndex, 4);
    for (const auto name : FileCommands())
        EXPECT_FALSE(form.FindButton(name)->Enabled()) << name;
}

TEST_F(MainFormTest, WhatIsNotBuiltStaysDisabledWhateverEnablesIt)
{
    MainForm &form = Loaded();
    SetFileCommandsEnabled(form, true);
    for (const auto name : CommandsNotBuilt()) {
        if (const ui::Command *entry = form.FindMenu(name); entry != nullptr) {
            EXPECT_FALSE(entry->Enabled()) << name;
        }
        if (const ui::Command *button = form.FindButton(name); button != nullptr) {
            EXPECT_FALSE(button->Enabled()) << name;
        }
        EXPECT_NO_THROW(RunCommand(form, name)) << name;
    }
    for (const PopupEntry &entry : form.cp)
        EXPECT_EQ(entry.enabled, entry.key == "fOptions") << entry.key;
    // Every command that is enabled has code behind it.
    for (const MenuLine &line : MenuLines()) {
        const bool command = !line.parent.empty() && line.caption != "-" && !line.submenu;
        if (command && form.FindMenu(line.name)->Enabled() && line.name != "submnuLng(0)") {
            EXPECT_TRUE(form.handlers.contains(std::string(line.name) + "_Click")) << line.name;
        }
    }
}

TEST_F(MainFormTest, TheFourFileCommandsGoTogetherWithTheirButtons)
{
    MainForm &form = Loaded();
    form.notBuilt.clear();
    form.FindMenu("submnuSearch")->SetEnabled(false);
    for (const bool on : {true, false}) {
        SetFileCommandsEnabled(form, on);
        for (const char *name :
             {"submnuFileInfo", "submnuDuplicateEntry", "submnuExport", "submnuRename"}) {
            EXPECT_EQ(form.FindMenu(name)->Enabled(), on) << name;
            EXPECT_EQ(form.FindButton(name)->Enabled(), on) << name;
        }
        EXPECT_FALSE(form.FindMenu("submnuSearch")->Enabled());
        EXPECT_TRUE(form.FindButton("submnuExit")->Enabled());
    }
}

TEST_F(MainFormTest, ADisabledCommandDoesNothing)
{
    MainForm &form = Loaded();
    int about = 0;
    form.calls.showAbout = [&] { ++about; };
    form.FindMenu("submnuAbout")->SetEnabled(false);
    RunCommand(form, "submnuAbout");
    EXPECT_EQ(about, 0);
}

TEST_F(MainFormTest, TheTimersOfLaterPartsCallWhatIsGivenThem)
{
    MainForm &form = Loaded();
    form.tmrAutoCheckVersion.SetEnabled(true);
    form.tmrRefreshList.Fire(); // nobody is there yet
    form.tmrAutoCheckVersion.Fire();
    std::string ran;
    form.calls.writePlaylist = [&] { ran += "playlist "; };
    form.calls.tmrAutoCheckVersion = [&] { ran += "version "; };
    form.tmrRefreshList.Fire();
    form.tmrAutoCheckVersion.Fire();
    EXPECT_EQ(ran, "playlist version ");
}

TEST_F(MainFormTest, AResizeLaysOutThenWrapsThePanelsText)
{
    MainForm &form = Loaded();
    std::string order;
    form.calls.placed = [&] { order += "layout "; };
    form.lblInfo.measureHeight = [&](const ui::Label &) {
        order += "wrap ";
        return 200;
    };
    ResizeMainForm(form);
    EXPECT_TRUE(order.starts_with("layout wrap")) << order;
    order.clear();
    form.minimised = true;
    ResizeMainForm(form);
    EXPECT_EQ(order, "");
}

TEST_F(MainFormTest, TheLanguageWalk)
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

TEST_F(MainFormTest, InEnglishTheTooltipLosesMarkAndShortcut)
{
    MainForm &form = Loaded();
    EXPECT_EQ(form.FindButton("submnuFileInfo")->Caption(), "File Info");
    EXPECT_EQ(form.FindButton("submnuExit")->Caption(), "Quit");
}

TEST_F(MainFormTest, CommandsAreFoundByNameWithoutRegardToCase)
{
    MainForm &form = Loaded();
    int about = 0;
    form.calls.showAbout = [&] { ++about; };
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

TEST_F(MainFormTest, AltAnd3IsTheOnlyKey)
{
    MainForm &form = Loaded();
    int opened = 0;
    form.handlers["submnuFileInfo_Click"] = [&] { ++opened; };
    EXPECT_TRUE(Form_KeyDown(form, '3', true));
    EXPECT_EQ(opened, 0); // not built
    form.notBuilt.clear();
    EXPECT_TRUE(Form_KeyDown(form, '3', true)); // also while its entry is disabled
    EXPECT_EQ(opened, 1);
    EXPECT_FALSE(Form_KeyDown(form, '3', false));
    EXPECT_FALSE(Form_KeyDown(form, '4', true));
    EXPECT_EQ(opened, 1);
}

TEST_F(MainFormTest, TheLanguageMenu)
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
    RunCommand(form, "submnuEnglish"); // nothing to delete: told all the same
    ASSERT_EQ(desktop.boxes.size(), 3U);
    EXPECT_EQ(desktop.boxes[2], "The new language you set would start working the next time you "
                                "run this app.");
}

TEST_F(MainFormTest, ALanguageEntryComesOnlyBehindOneWithACaption)
{
    MainForm &form = Loaded();
    BuildLanguageMenu(form, {"", "Deutsch", "Español"}); // the first is that of a file ".qlt"
    EXPECT_EQ(form.FindMenu("submnuLng(0)")->Caption(), "Deutsch");
    EXPECT_EQ(form.FindMenu("submnuLng(1)")->Caption(), "Español");
    EXPECT_EQ(form.FindMenu("submnuLng(2)"), nullptr);
    RunCommand(form, "submnuLng(0)");
    EXPECT_EQ(Setting("Preferences", "Language"), "Deutsch.qlt");
}

TEST_F(MainFormTest, PagesOpenBelowTheStoredAddress)
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
    shell::TheGlobals().HelpFilePath = folder / "Brandolet.hlp";
    RunCommand(form, "submnuShowHelp");
    EXPECT_EQ(desktop.opened[2], folder / "Brandolet.hlp");
    desktop.canOpen = false;
    EXPECT_THROW(RunCommand(form, "submnuShowHelp"), runtime::RuntimeError);
}

TEST_F(MainFormTest, EndingTheProgramBeforeAPageIsKnownOpensNone)
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

TEST_F(MainFormTest, WebStyleIsToggledStoredAndLaidOut)
{
    MainForm &form = Loaded();
    RunCommand(form, "submnuWebStyle");
    EXPECT_FALSE(form.WebStyleOn);
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

TEST_F(MainFormTest, AFullLayoutIsSavedAfterOneYield)
{
    MainForm &form = Loaded();
    shell::TheGlobals().InitialTVWidth = 3333;
    form.window = {10, 20, 12150, 7350};
    form.scaleWidth = 12000;
    desktop.yields = 0;
    desktop.onYield = [&] { EXPECT_EQ(Setting("Last Safe Configuration", "Width"), "none"); };
    ReDrawForm(form);
    EXPECT_EQ(desktop.yields, 1);
    const std::pair<const char *, const char *> want[] = {{"Width", "12150"},
                                                          {"Height", "7350"},
                                                          {"Top", "20"},
                                                          {"Left", "10"},
                                                          {"Initial TV Width", "3333"}};
    for (const auto &[key, value] : want)
        EXPECT_EQ(Setting("Last Safe Configuration", key), value) << key;
    EXPECT_EQ(Setting("Preferences", "Initial TV Width"), "3333");
    EXPECT_EQ(Setting("Preferences", "Width"), "none");

    desktop.onYield = nullptr;
    shell::TheGlobals().InitialTVWidth = -1; // impossible: the last safe one comes back
    ReDrawForm(form);
    EXPECT_EQ(form.TV.Width(), 3333);
}

TEST_F(MainFormTest, AMinimisedOrImpossibleWindowSavesNothing)
{
    MainForm &form = Loaded();
    form.minimised = true;
    ReDrawForm(form);
    form.minimised = false;
    form.window.height = 500;
    ReDrawForm(form);
    EXPECT_EQ(Setting("Last Safe Configuration", "Width"), "none");
}

TEST_F(MainFormTest, TheSplitter)
{
    MainForm &form = Loaded();
    ReDrawForm(form);
    Separator_MouseMove(form, 500); // not pressed
    EXPECT_EQ(form.TV.Width(), 3000);
    Separator_MouseDown(form);
    desktop.onYield = [&] { EXPECT_FALSE(form.SeparatorDragging); };
    Separator_MouseMove(form, 500);
    EXPECT_EQ(form.TV.Width(), 3500);
    EXPECT_TRUE(form.SeparatorDragging);
    Separator_MouseMove(form, -99999);
    EXPECT_EQ(form.TV.Width(), 0);
    Separator_MouseMove(form, 99999);
    EXPECT_EQ(form.Separator.Left(), form.scaleWidth - form.Separator.Width());
    desktop.onYield = [&] { Separator_MouseUp(form); }; // released while it was laid out
    Separator_MouseMove(form, -6000);
    EXPECT_FALSE(form.SeparatorDragging);
}

TEST_F(MainFormTest, PanelsAndTimersAsTheyAreMade)
{
    MainForm &form = Form();
    std::string panels;
    for (const ui::StatusPanel &panel : form.SB.Panels())
        panels += panel.key + " ";
    EXPECT_EQ(panels, "Playing PlayingStatus Blank About ");
    EXPECT_FALSE(form.SB.Panel("About").text.empty());
    EXPECT_EQ(form.ShowSelectedItems.IntervalMs(), 150);
    EXPECT_EQ(form.tmrRefreshList.IntervalMs(), 30000);
    EXPECT_EQ(form.tmr_Playing.IntervalMs(), 250);
    EXPECT_EQ(form.tmrAutoCheckVersion.IntervalMs(), 60000);
    EXPECT_EQ(form.tmrClearAutoCheck.IntervalMs(), 45000);
    EXPECT_TRUE(form.tmrRefreshList.Enabled());
    EXPECT_FALSE(form.tmr_Playing.Enabled()); // the splash's end starts it
    EXPECT_FALSE(form.SeparatorDragging);
}

TEST_F(MainFormTest, StartUpSizesTheWindowAroundTreeAndList)
{
    MainForm &form = Loaded();
    form.TV.SetVisible(false);
    form.LV.SetVisible(false);
    form.TBAddress.SetEnabled(false);
    form.TV.SetPlace({0, 1090, 3000, 4000});
    form.LV.SetPlace({2735, -45, 6000, 3900});
    ShowTreeAndList(form);
    EXPECT_TRUE(form.TV.Visible() && form.LV.Visible() && form.TBAddress.Enabled());
    EXPECT_EQ(form.window.width, 8935);  // 2735 + 6000 + 200
    EXPECT_EQ(form.window.height, 5590); // 1090 + 4000 + 500
}

TEST_F(MainFormTest, ListMessagesRaiseThePanelWhileHooked)
{
    MainForm &form = Loaded();
    int raised = 0;
    form.calls.raisePanel = [&] { ++raised; };
    for (const int message : {0x20A, 0x115, 0x114, 0x100})
        ListMessage(form, message);
    EXPECT_EQ(raised, 2);
    UnhookList(form);
    ListMessage(form, 0x20A);
    EXPECT_EQ(raised, 2);
}

TEST_F(MainFormTest, TheProgressBarIsLaidOverItsPanelOnce)
{
    MainForm &form = Loaded();
    form.statusBarArea.SetPlace({0, 6000, 12000, 345});
    ShowProgressBar(form);
    EXPECT_EQ(form.pbarArea.Place(), (ui::Rect{5040, 40, 1420, 305}));
    EXPECT_FALSE(form.SB.Panel("PlayingStatus").autoSize);
    form.SB.SetWidth("Playing", 1000);
    ShowProgressBar(form);
    EXPECT_EQ(form.pbarArea.Left(), 5040);
}

TEST_F(MainFormTest, TheSplashsEndPlacesAndShowsTheWindow)
{
    MainForm &form = Loaded();
    settings.values["Quenlin/Preferences/Left"] = "9000";
    settings.values["Quenlin/Preferences/Width"] = "10000";
    settings.values["Quenlin/Preferences/Height"] = "no number";
    std::string order;
    form.calls.bringIntoView = [](const ui::Rect &stored) {
        EXPECT_EQ(stored, (ui::Rect{9000, 465, 10000, 7350}));
        return ui::Rect{5000, 465, 10000, 7350};
    };
    form.calls.showWindow = [&] { order += "window "; };
    form.calls.showTips = [&] { order += "tips "; };
    form.calls.placed = [&] { order += "layout "; };
    shell::UnloadSplash(shell::kAboutHeight, [&] { ShowMainForm(form); });
    EXPECT_EQ(order, ""); // the about box leaves the window alone
    shell::UnloadSplash(shell::kSplashHeight, [&] { ShowMainForm(form); });
    EXPECT_EQ(order, "window tips layout ");
    EXPECT_EQ(form.window, (ui::Rect{5000, 465, 10000, 7350})); // as the screens allow
    EXPECT_EQ(form.lblWebFolder.Caption(), "Quenlin");
    EXPECT_EQ(form.ImgIcon.Image(), "MP3");
    EXPECT_TRUE(form.ImgOthers[0].Visible());
    EXPECT_TRUE(form.tmr_Playing.Enabled());

    settings.values["Quenlin/Preferences/Show Tips at Startup"] = "0";
    order.clear();
    ShowMainForm(form);
    EXPECT_EQ(order, "window layout ");
    settings.values["Quenlin/Preferences/Show Tips at Startup"] = "no number";
    order.clear();
    ShowMainForm(form);
    EXPECT_EQ(order, "window tips layout ");
}

TEST_F(MainFormTest, ClosingSavesThePlacementAndEndsInOrder)
{
    MainForm &form = Loaded();
    form.window = {11, 22, 3333, 4444};
    shell::TheGlobals().InitialTVWidth = 555;
    std::string order;
    form.calls.unloadForms = [&] {
        EXPECT_EQ(catalogue::DataAccess, nullptr);
        EXPECT_EQ(form.logo, nullptr);
        EXPECT_FALSE(form.listHooked);
        order += "forms ";
    };
    form.calls.endProgram = [&] { order += "end"; };
    settings.onWrite = [&] { // before anything is released, with the list already let go
        EXPECT_FALSE(form.listHooked);
        EXPECT_NE(form.logo, nullptr);
        EXPECT_FALSE(form.cp.empty());
        EXPECT_NE(catalogue::DataAccess, nullptr);
    };
    RunCommand(form, "submnuExit");
    settings.onWrite = nullptr;
    EXPECT_TRUE(form.cp.empty());
    EXPECT_EQ(order, "forms end");
    const std::pair<const char *, const char *> want[] = {{"Width", "3333"},
                                                          {"Height", "4444"},
                                                          {"Top", "22"},
                                                          {"Left", "11"},
                                                          {"Initial TV Width", "555"}};
    for (const auto &[key, value] : want)
        EXPECT_EQ(Setting("Preferences", key), value) << key;
    EXPECT_EQ(Setting("Last Safe Configuration", "Width"), "none");
}

TEST_F(MainFormTest, ASecondRegenerationOfAFolderLeavesTreeAndListDisabled)
{
    std::filesystem::create_directory(folder / "music");
    shell::TheGlobals().MP3Directory = folder / "music";
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    RunCommand(form, "submnuRegenerateDatabase");
    EXPECT_TRUE(form.TV.Enabled() && form.LV.Enabled());
    EXPECT_FALSE(form.PBar.Visible());
    RunCommand(form, "submnuRegenerateDatabase");
    EXPECT_FALSE(form.TV.Enabled() || form.LV.Enabled());
    EXPECT_TRUE(form.PBar.Visible());
}

TEST_F(MainFormTest, ClosingDuringARegenerationEndsItAtTheNextFile)
{
    std::filesystem::create_directory(folder / "music");
    for (const char *name : {"music/1.mp3", "music/2.mp3", "music/3.mp3"})
        tests::WriteFile(folder / name, "no tag");
    shell::TheGlobals().MP3Directory = folder / "music";
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    int ended = 0;
    form.calls.endProgram = [&] { ++ended; };
    bool asked = false;
    desktop.onYield = [&] {
        if (!asked && form.SB.Panel("Playing").text.starts_with("Adding: ")) {
            asked = true;
            RunCommand(form, "submnuExit");
            EXPECT_EQ(ended, 0); // not in the middle of the run
        }
    };
    RunCommand(form, "submnuRegenerateDatabase");
    EXPECT_TRUE(asked);
    EXPECT_EQ(ended, 1);
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST(Splash, RolesTextsAndPlace)
{
    EXPECT_EQ(shell::LookOfSplash(false).height, 4980);
    EXPECT_TRUE(shell::LookOfSplash(false).progressVisible);
    EXPECT_FALSE(shell::LookOfSplash(false).keyPreview);
    EXPECT_EQ(shell::LookOfSplash(true).height, 6015);
    EXPECT_FALSE(shell::LookOfSplash(true).progressVisible);
    EXPECT_TRUE(shell::LookOfSplash(true).keyPreview);
    EXPECT_EQ(shell::LookOfSplash(true).width, 7485);
    EXPECT_EQ(shell::VersionCaption(1, 6, 9), "Ver.:1.6.9");
    EXPECT_EQ(shell::Centred(7485, 4980, {0, 300, 15000, 12000}),
              (ui::Rect{3757, 3810, 7485, 4980}));
    EXPECT_TRUE(shell::SupportMailAddress().starts_with("mailto:"));
}

TEST_F(MainFormTest, ALanguageFileCreditsItsTranslator)
{
    EXPECT_EQ(shell::LoadSplashTexts().translator, "");
    tests::WriteFile(folder / "x.qlt", "[TranslationInfo]\nTranslator=Ana\nTranslatedBy=Por\n"
                                       "Title=Traducci\u00F3n\n[Splash]\nOkButton=&Bien\n");
    shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
    const shell::SplashTexts texts = shell::LoadSplashTexts();
    EXPECT_EQ(texts.translator, "Ana");
    EXPECT_EQ(texts.translatedBy, "Por");
    EXPECT_EQ(texts.title, "Traducci\u00F3n");
    EXPECT_EQ(texts.okButton, "&Bien");
    EXPECT_EQ(texts.historyButton, "&History");
}

} // namespace

#include "catalogue/regeneration.h"
#include "runtime/error.h"
#include "shell/settings.h"
#include "shell/startup/splashform.h"
#include "tests/browser/formfixture.h"
#include "tests/support/fakeforms.h"

#include <filesystem>

namespace
{

using namespace browser;
using MainFormTest = tests::FormTest;

TEST_F(MainFormTest, LoadingLeavesAnEmptyPanelAndDisabledFileCommands)
{
    MainForm &form = Form();
    int checks = 0;
    form.tmrAutoCheckVersion.event = [&] { ++checks; };
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

TEST_F(MainFormTest, TheSplashsEndPlacesAndShowsTheWindow)
{
    MainForm &form = Loaded();
    settings.values["Quenlin/Preferences/Left"] = "9000";
    settings.values["Quenlin/Preferences/Width"] = "10000";
    settings.values["Quenlin/Preferences/Height"] = "no number";
    shell::ForgetReportedSettings();
    std::string order;
    form.calls.bringIntoView = [](const ui::Rect &stored) {
        EXPECT_EQ(stored, (ui::Rect{9000, 465, 10000, 7350}));
        return ui::Rect{5000, 465, 10000, 7350};
    };
    form.calls.showWindow = [&] { order += "window "; };
    RegisterCommand("submnuTips", [&] { order += "tips "; });
    form.placed = [&] { order += "layout "; };
    for (const int height : {shell::kAboutHeight, shell::kSplashHeight - 1})
        shell::UnloadSplash(height, [&] { ShowMainForm(form); });
    EXPECT_EQ(order, ""); // the about box does not change the window
    shell::UnloadSplash(shell::kSplashHeight, [&] { ShowMainForm(form); });
    EXPECT_EQ(order, "window tips layout ");
    EXPECT_EQ(form.window, (ui::Rect{5000, 465, 10000, 7350})); // as the screens allow
    EXPECT_EQ(form.scaleWidth, 9850);
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
    ASSERT_EQ(desktop.boxes.size(), 2U) << "each is reported once";
    EXPECT_NE(desktop.boxes[0].find("Height=no number"), std::string::npos);
    EXPECT_NE(desktop.boxes[1].find("Show Tips at Startup=no number"), std::string::npos);
    shell::ForgetReportedSettings();
}

TEST_F(MainFormTest, ClosingAsksTheOtherWindowsFirst)
{
    struct Draft : ui::Form {
        Draft() : Form("frmDraft", {}) {}
    };
    tests::FakeForms host;
    Draft draft;
    ui::Show(draft);
    bool may = false;
    draft.mayClose = [&] { return may; };
    MainForm &form = Form();
    int ended = 0;
    form.calls.endProgram = [&] { ++ended; };
    Loaded();
    RunCommand(form, "submnuExit");
    EXPECT_EQ(ended, 0);
    EXPECT_TRUE(form.listHooked) << "nothing of the unload was done";
    EXPECT_TRUE(draft.Visible());
    may = true;
    RunCommand(form, "submnuExit");
    EXPECT_EQ(ended, 1);
    EXPECT_FALSE(draft.Loaded());
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
    settings.onWrite = [&] { // before anything is released, but after UnhookList
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

TEST_F(MainFormTest, ASecondRegenerationOfAFolderLeavesALivingWindow)
{
    std::filesystem::create_directory(folder / "music");
    shell::TheGlobals().MP3Directory = folder / "music";
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    RunCommand(form, "submnuRegenerateDatabase");
    EXPECT_TRUE(form.TV.Enabled() && form.LV.Enabled());
    EXPECT_FALSE(form.PBar.Visible());
    form.TV.SetEnabled(false); // as a run that does nothing leaves them
    form.LV.SetEnabled(false);
    form.PBar.SetVisible(true);
    RunCommand(form, "submnuRegenerateDatabase");
    EXPECT_TRUE(form.TV.Enabled() && form.LV.Enabled());
    EXPECT_FALSE(form.PBar.Visible());
}

TEST_F(MainFormTest, ARegenerationEmptiesTheListAndIsNotBegunTwice)
{
    std::filesystem::create_directory(folder / "music");
    tests::WriteFile(folder / "music/1.mp3", "no tag");
    shell::TheGlobals().MP3Directory = folder / "music";
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    form.LV.AddRow("/0", "", "", {});
    bool walking = false;
    int trees = 0; // each filling of the tree begins with this line
    shell::TheGlobals().lblProgress.captionChanged = [&] {
        trees += shell::TheGlobals().lblProgress.Caption() == "Adding Title information...";
    };
    desktop.onYield = [&] {
        if (catalogue::IsRegenerating() && !std::exchange(walking, true)) {
            RunCommand(form, "submnuRegenerateDatabase");
            EXPECT_EQ(trees, 0);
        }
    };
    RunCommand(form, "submnuRegenerateDatabase");
    EXPECT_TRUE(walking);
    EXPECT_EQ(trees, 1);
    EXPECT_EQ(form.LV.Count(), 0);
}

TEST_F(MainFormTest, ClosingDuringARegenerationThatFailsEndsAsWell)
{
    shell::TheGlobals().MP3Directory = folder / "absent";
    MainForm &form = Loaded();
    int ended = 0;
    form.calls.endProgram = [&] { ++ended; };
    desktop.onYield = [&] {
        if (catalogue::IsRegenerating() && !form.closePending)
            RunCommand(form, "submnuExit");
    };
    EXPECT_THROW(RunCommand(form, "submnuRegenerateDatabase"), runtime::RuntimeError);
    EXPECT_EQ(ended, 1);
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

TEST_F(MainFormTest, TheSplashsRoles)
{
    tests::FakeForms forms;
    shell::SplashForm form(nullptr);
    form.ShowSplash(false);
    EXPECT_EQ(form.size.height, 4980);
    EXPECT_TRUE(shell::TheGlobals().lblProgress.Visible());
    EXPECT_FALSE(form.About.Visible());
    EXPECT_FALSE(ui::AskToClose(form)); // Escape, or the window manager
    ui::Close(form);
    form.ShowSplash(true);
    EXPECT_EQ(form.size.height, 6015);
    EXPECT_EQ(form.size.width, 7485);
    EXPECT_FALSE(shell::TheGlobals().lblProgress.Visible());
    EXPECT_TRUE(form.About.Visible());
    EXPECT_TRUE(form.centred);
    EXPECT_TRUE(ui::AskToClose(form));
    EXPECT_EQ(shell::VersionCaption(1, 6, 9), "Ver.:1.6.9");
    EXPECT_TRUE(shell::SupportMailAddress().starts_with("mailto:"));
}

TEST_F(MainFormTest, TheSplashsCreditsComeFromTheLanguageFile)
{
    tests::FakeForms forms;
    shell::SplashForm form(nullptr);
    form.ShowSplash(true);
    EXPECT_FALSE(form.frmTranslation.Visible());
    EXPECT_EQ(form.lblProgrammed.Caption() + "|" + form.lblMail.Caption() + "|" +
                  form.lblICQ.Caption() + "|" + form.cmdHistory.Caption() + "|" +
                  form.cmdLicences.Caption() + "|" + form.cmdOk.Caption(),
              "Programmed by|E-mail:|ICQ:|&History|&Licences|&Ok");
    ui::Close(form);
    tests::WriteFile(folder / "x.qlt", "[TranslationInfo]\nTranslator=Ana & Bo\nTranslatedBy=Por\n"
                                       "Title=Traducci\u00F3n\n");
    shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
    form.ShowSplash(true);
    EXPECT_TRUE(form.frmTranslation.Visible());
    EXPECT_EQ(form.frmTranslation.Caption() + "|" + form.lblTranslatedBy.Caption() + "|" +
                  form.lblTranslator.Caption(),
              "Traducci\u00F3n|Por|Ana && Bo");
    const int besideCredits = shell::TheGlobals().lblProgress.Width();
    EXPECT_LT(besideCredits, form.frmTranslation.Left());
    ui::Close(form);
    shell::TheGlobals().LanguageFilePath.clear();
    form.ShowSplash(false);
    EXPECT_GT(shell::TheGlobals().lblProgress.Width(), besideCredits);
}

} // namespace

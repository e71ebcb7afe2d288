#include "platform/machine.h"
#include "platform/qt/qtwindows.h"
#include "platform/qt/theme.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "shell/progress.h"
#include "shell/startup/frmSplash.h"
#include "tests/support/memorysettings.h"
#include "tests/support/scripteddesktop.h"
#include "tests/support/testfolder.h"
#include "tests/windows/bench.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QWindow>

namespace tests
{

namespace
{

class SplashScaled : public testing::Test
{
protected:
    SplashScaled()
    {
        desktop.doEvents = [this] {
            ++yields;
            QApplication::processEvents();
        };
        platform::TheMachine().windows = &windows;
        shell::TheGlobals() = shell::Globals{};
        splash = new shell::frmSplash([this] { ++mainForms; });
    }
    ~SplashScaled() override
    {
        delete splash.data();
        platform::TheMachine().windows = nullptr;
        shell::TheGlobals() = shell::Globals{};
    }

    bool IsGone()
    {
        return WaitUntil([this] { return splash == nullptr; });
    }

    TestFolder folder;
    MemorySettings settings;
    ScriptedDesktop desktop;
    platform::qt::QtWindows windows;
    QPointer<shell::frmSplash> splash;
    int mainForms = 0;
    int yields = 0;
};

TEST_F(SplashScaled, SplashShowsTheProgressAndBringsTheMainFormUp)
{
    splash->ShowSplash(false);
    EXPECT_EQ(splash->size(), QSize(7485 / 15, 4980 / 15));
    EXPECT_EQ(Find<QLabel>(*splash, "LabVers")->text(), QStringLiteral("Ver.:1.6.9"));
    const int before = yields;
    shell::ShowProgress("Adding Title && Artist information...");
    EXPECT_EQ(yields, before + 1);
    shell::TheGlobals().lblProgress.SetCaption("Adding Title && Artist information...");
    EXPECT_EQ(yields, before + 1) << "a caption alone lets no event run";
    EXPECT_EQ(Find<QLabel>(*splash, "lblProgress")->text(),
              QStringLiteral("Adding Title & Artist information..."));
    KeepScreenshot(*splash, "splash");
    QTest::keyClick(splash.data(), Qt::Key_Escape);
    EXPECT_TRUE(splash->isVisible()) << "keys reach only the about box";
    EXPECT_FALSE(splash->windowHandle()->close());
    EXPECT_TRUE(splash->isVisible()) << "the start is still under way";
    splash->CloseIt.SetEnabled(true);
    EXPECT_EQ(mainForms, 0);
    EXPECT_TRUE(IsGone());
    EXPECT_EQ(mainForms, 1);
}

TEST_F(SplashScaled, AboutBoxLeavesTheMainFormAlone)
{
    splash->ShowSplash(true);
    EXPECT_EQ(splash->size(), QSize(7485 / 15, 6015 / 15));
    EXPECT_FALSE(Find(*splash, "lblProgress")->isVisible());
    EXPECT_FALSE(Find(*splash, "cmdHistory")->isEnabled());
    EXPECT_EQ(Find<QLabel>(*splash, "lblICQ")->text(), QStringLiteral("ICQ:"));
    EXPECT_EQ(Find(*splash, "lblICQ")->isVisible(), !shell::kContactNumber.empty());
    EXPECT_EQ(Find(*splash, "Label5")->isVisible(), !shell::kContactNumber.empty());
    ShowAndActivate(*splash);
    KeepScreenshot(*splash, "about");
    Click(*Find(*splash, "lblEmail"));
    ASSERT_EQ(desktop.addresses.size(), 1U);
    EXPECT_EQ(desktop.addresses[0], "mailto:" + std::string(shell::kSupportAddress));
    EXPECT_EQ(desktop.folders[0], "C:\\");
    Click(*Find(*splash, "cmdOk"));
    EXPECT_TRUE(IsGone());
    EXPECT_EQ(mainForms, 0);
}

TEST_F(SplashScaled, EnterPressesTheButtonWithTheFocus)
{
    int histories = 0, licences = 0;
    delete splash.data();
    splash = new shell::frmSplash(
        {}, [&] { ++histories; }, [&] { ++licences; });
    splash->ShowSplash(true);
    ShowAndActivate(*splash);
    Find(*splash, "cmdHistory")->setFocus();
    PressKey("Return");
    EXPECT_TRUE(WaitUntil([&] { return histories == 1; }));
    ASSERT_FALSE(splash.isNull());
    ShowAndActivate(*splash);
    Find(*splash, "cmdLicences")->setFocus();
    PressKey("Return");
    EXPECT_TRUE(WaitUntil([&] { return licences == 1; }));
    EXPECT_EQ(histories, 1);
    ASSERT_FALSE(splash.isNull());
    ShowAndActivate(*splash);
    Find(*splash, "cmdOk")->setFocus();
    PressKey("Return");
    EXPECT_TRUE(IsGone());
}

TEST_F(SplashScaled, EscapeEndsTheAboutBox)
{
    splash->ShowSplash(true);
    ShowAndActivate(*splash);
    PressKey("Escape");
    EXPECT_TRUE(IsGone());
}

TEST_F(SplashScaled, TranslationIsCreditedInBothRoles)
{
    WriteFile(folder / "x.qlt", "[TranslationInfo]\nTitle=Translation\nTranslatedBy=Translated by\n"
                                "Translator=Anna <b>Example</b>\n");
    shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
    delete splash.data();
    splash = new shell::frmSplash({});
    splash->ShowSplash(false);
    EXPECT_TRUE(Find(*splash, "frmTranslation")->isVisible());
    splash->CloseIt.SetEnabled(true);
    splash->close();
    ASSERT_TRUE(IsGone());
    splash = new shell::frmSplash({});
    splash->ShowSplash(true);
    ShowAndActivate(*splash);
    EXPECT_EQ(Find<QLabel>(*splash, "lblTranslator")->text(),
              QStringLiteral("Anna <b>Example</b>"));
    KeepScreenshot(*splash, "about-translated");
    platform::qt::ApplyPalette(true);
    LetRun(100);
    EXPECT_EQ(Find(*splash, "lblEmail")->palette().color(QPalette::ButtonText),
              QGuiApplication::palette().color(QPalette::Link));
    KeepScreenshot(*splash, "about-dark");
    platform::qt::ApplyPalette(false);
}

TEST_F(SplashScaled, DoesNotShowOverAModalWindow)
{
    QDialog modal;
    modal.setModal(true);
    modal.show();
    LetRun(50);
    try {
        splash->ShowSplash(true);
        ADD_FAILURE() << "it showed";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kNonModalOverModal);
    }
}

TEST_F(SplashScaled, EveryControlHasAName)
{
    splash->ShowSplash(true);
    ShowAndActivate(*splash);
    EXPECT_EQ(NamelessControls(*splash), std::vector<std::string>{});
}

} // namespace

} // namespace tests

#include "platform/machine.h"
#include "platform/qt/qtwindows.h"
#include "platform/qt/theme.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "shell/progress.h"
#include "shell/startup/splashform.h"
#include "tests/support/memorysettings.h"
#include "tests/support/scripteddesktop.h"
#include "tests/support/testfolder.h"
#include "tests/windows/accessibility.h"
#include "tests/windows/bench.h"
#include "tests/windows/paintcounter.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
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
        Make([this] { ++mainForms; });
    }
    ~SplashScaled() override
    {
        shell::EndSplash(std::move(form));
        Settle(); // closed windows are deleted by the next event
        platform::TheMachine().windows = nullptr;
        shell::TheGlobals() = shell::Globals{};
    }

    void Make(std::function<void()> showMainForm = {}, std::function<void()> showHistory = {},
              std::function<void()> showLicences = {})
    {
        shell::EndSplash(std::move(form));
        form = std::make_unique<shell::SplashForm>(std::move(showMainForm), std::move(showHistory),
                                                   std::move(showLicences));
    }

    QWidget &Shown(bool about)
    {
        form->ShowSplash(about);
        QWidget *window = host.WindowOf(*form);
        ShowAndActivate(*window);
        return *window;
    }

    bool IsGone()
    {
        return WaitUntil([this] { return !form->Loaded() && host.Forms().empty(); });
    }

    TestFolder folder;
    MemorySettings settings;
    ScriptedDesktop desktop;
    platform::qt::QtWindows windows;
    ui::qt::FormWindows host;
    std::unique_ptr<shell::SplashForm> form;
    int mainForms = 0;
    int yields = 0;
};

TEST_F(SplashScaled, SplashShowsTheProgressAndBringsTheMainFormUp)
{
    QWidget &splash = Shown(false);
    EXPECT_EQ(splash.size(), QSize(7485 / 15, 4980 / 15));
    EXPECT_TRUE(splash.windowFlags().testFlag(Qt::FramelessWindowHint));
    const QPoint off = splash.geometry().center() - splash.screen()->availableGeometry().center();
    EXPECT_LE(off.manhattanLength(), 2) << "in the middle of the screen";
    EXPECT_EQ(Find<QLabel>(splash, "LabVers(0)")->text(), QStringLiteral("Ver.:1.6.9"));
    const int before = yields;
    shell::ShowProgress("Adding Title && Artist information...");
    EXPECT_EQ(yields, before + 1);
    shell::TheGlobals().lblProgress.SetCaption("Adding Title && Artist information...");
    EXPECT_EQ(yields, before + 1) << "a caption alone lets no event run";
    EXPECT_EQ(Find<QLabel>(splash, "lblProgress")->text(),
              QStringLiteral("Adding Title & Artist information..."));
    KeepScreenshot(splash, "splash");
    QTest::keyClick(&splash, Qt::Key_Escape);
    EXPECT_TRUE(splash.isVisible()) << "keys reach only the about box";
    EXPECT_FALSE(splash.windowHandle()->close());
    EXPECT_TRUE(splash.isVisible()) << "the start is still under way";
    form->CloseIt.SetEnabled(true);
    EXPECT_EQ(mainForms, 0);
    EXPECT_TRUE(IsGone());
    EXPECT_EQ(mainForms, 1);
}

// A regeneration at the start shows the same words at each song.
TEST_F(SplashScaled, TheSameProgressIsNotPaintedAgain)
{
    QWidget &splash = Shown(false);
    const PaintCounter counter(*Find<QLabel>(splash, "lblProgress"));
    shell::ShowProgress("Adding new MP3...");
    const int before = counter.AtRest();
    for (int song = 0; song < 100; ++song)
        shell::ShowProgress("Adding new MP3...");
    EXPECT_EQ(counter.AtRest(), before);
    shell::TheGlobals().lblProgress.SetCaption("Updating data...");
    EXPECT_GT(counter.paints, before) << "at once, without events";
    form->CloseIt.SetEnabled(true);
    EXPECT_TRUE(IsGone());
}

TEST_F(SplashScaled, AboutBoxLeavesTheMainFormAlone)
{
    QWidget &about = Shown(true);
    EXPECT_EQ(about.size(), QSize(7485 / 15, 6015 / 15));
    EXPECT_FALSE(Find(about, "lblProgress")->isVisible());
    EXPECT_FALSE(Find(about, "cmdHistory")->isEnabled());
    EXPECT_EQ(Find<QLabel>(about, "lblICQ")->text(), QStringLiteral("ICQ:"));
    EXPECT_EQ(Find(about, "lblICQ")->isVisible(), !shell::kContactNumber.empty());
    EXPECT_EQ(Find(about, "Label5")->isVisible(), !shell::kContactNumber.empty());
    KeepScreenshot(about, "about");
    Click(*Find(about, "lblEmail"));
    ASSERT_EQ(desktop.addresses.size(), 1U);
    EXPECT_EQ(desktop.addresses[0], "mailto:" + std::string(shell::kSupportAddress));
    EXPECT_EQ(desktop.folders[0], "C:\\");
    Click(*Find(about, "cmdOk"));
    EXPECT_TRUE(IsGone());
    EXPECT_EQ(mainForms, 0);
}

TEST_F(SplashScaled, EnterPressesTheButtonWithTheFocus)
{
    int histories = 0, licences = 0;
    Make(
        {}, [&] { ++histories; }, [&] { ++licences; });
    QWidget &about = Shown(true);
    EXPECT_TRUE(Find(about, "cmdOk")->hasFocus());
    Find(about, "cmdHistory")->setFocus();
    PressKey("Return");
    EXPECT_TRUE(WaitUntil([&] { return histories == 1; }));
    ASSERT_TRUE(form->Visible());
    Find(about, "cmdLicences")->setFocus();
    PressKey("Return");
    EXPECT_TRUE(WaitUntil([&] { return licences == 1; }));
    EXPECT_EQ(histories, 1);
    ASSERT_TRUE(form->Visible());
    Find(about, "cmdOk")->setFocus();
    PressKey("Return");
    EXPECT_TRUE(IsGone());
}

TEST_F(SplashScaled, EscapeEndsTheAboutBox)
{
    Shown(true);
    PressKey("Escape");
    EXPECT_TRUE(IsGone());
}

TEST_F(SplashScaled, TranslationIsCreditedInBothRoles)
{
    WriteFile(folder / "x.qlt", "[TranslationInfo]\nTitle=Translation\nTranslatedBy=Translated by\n"
                                "Translator=Anna & <b>Bo</b>\n");
    shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
    QWidget &splash = Shown(false);
    EXPECT_TRUE(Find(splash, "frmTranslation")->isVisible());
    KeepScreenshot(splash, "splash-translated");
    form->CloseIt.SetEnabled(true);
    ASSERT_TRUE(IsGone());
    Make();
    QWidget &about = Shown(true);
    EXPECT_EQ(Find<QGroupBox>(about, "frmTranslation")->title(), QStringLiteral("Translation"));
    EXPECT_EQ(Find<QLabel>(about, "lblTranslatedBy")->text(), QStringLiteral("Translated by"));
    EXPECT_EQ(Find<QLabel>(about, "lblTranslator")->text(), QStringLiteral("Anna & <b>Bo</b>"));
    KeepScreenshot(about, "about-translated");
    platform::qt::ApplyPalette(true);
    Settle();
    EXPECT_EQ(Find(about, "lblEmail")->palette().color(QPalette::ButtonText),
              QGuiApplication::palette().color(QPalette::Link));
    KeepScreenshot(about, "about-dark");
    platform::qt::ApplyPalette(false);
}

TEST_F(SplashScaled, DoesNotShowOverAModalWindow)
{
    QDialog modal;
    modal.setModal(true);
    modal.show();
    Settle();
    try {
        form->ShowSplash(true);
        ADD_FAILURE() << "it showed";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kNonModalOverModal);
    }
}

TEST_F(SplashScaled, EveryControlHasAName)
{
    EXPECT_EQ(NamelessControls(Shown(true)), std::vector<std::string>{});
}

} // namespace

} // namespace tests

#include "shell/globals.h"
#include "shell/progress.h"
#include "tests/support/scripteddesktop.h"

#include <gtest/gtest.h>

namespace
{

class Progress : public testing::Test
{
protected:
    ~Progress() override { shell::TheGlobals().lblProgress = {}; }

    tests::ScriptedDesktop desktop;
    ui::Label &line = shell::TheGlobals().lblProgress;
};

TEST_F(Progress, ACaptionAloneLetsNoEventRun)
{
    line.SetCaption("Reading");
    EXPECT_EQ(desktop.yields, 0);
}

TEST_F(Progress, IsShownBeforeEventsRunOnce)
{
    desktop.doEvents = [this] { EXPECT_EQ(line.Caption(), "Reading"); };
    shell::ShowProgress("Reading");
    EXPECT_EQ(desktop.yields, 1);
}

TEST_F(Progress, IsShownInTheLineThatIsGiven)
{
    ui::Label other;
    shell::ShowProgress("Reading", &other);
    EXPECT_EQ(other.Caption(), "Reading");
    EXPECT_EQ(line.Caption(), "");
    EXPECT_EQ(desktop.yields, 1);
    shell::ShowProgress("Writing", nullptr);
    EXPECT_EQ(other.Caption(), "Reading");
    EXPECT_EQ(line.Caption(), "");
    EXPECT_EQ(desktop.yields, 2);
}

TEST_F(Progress, TextsOfTheLanguageFile)
{
    shell::ShowProgressText("Updating data...", "UpdatingData");
    EXPECT_EQ(line.Caption(), "Updating data...");
    EXPECT_EQ(desktop.yields, 1);
}

} // namespace

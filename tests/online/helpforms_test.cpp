#include "browser/commands.h"
#include "browser/mainform.h"
#include "online/techsupportform.h"
#include "online/tipform.h"
#include "shell/apppath.h"
#include "shell/settings.h"
#include "tests/support/fakeforms.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/memorysettings.h"

#include <gtest/gtest.h>

namespace
{

struct HelpForms : tests::LibraryFixture {
    tests::FakeForms forms;
    tests::MemorySettings settings;
};

TEST_F(HelpForms, TipsShowAndGoOn)
{
    tests::WriteFile(shell::AppFile("TIPOFDAY.TXT"), "one & two\n");
    online::TipForm form;
    ui::Show(form);
    EXPECT_EQ(form.Title(), "Tip of the day");
    EXPECT_EQ(form.lblTipText.Caption(), "one && two"); // a caption has "&" doubled
    EXPECT_TRUE(form.chkLoadTipsAtStartup.Checked());
    form.lblTipText.SetCaption("");
    form.cmdNextTip.Click();
    EXPECT_EQ(form.lblTipText.Caption(), "one && two");
    form.cmdOk.Click();
    EXPECT_FALSE(form.Visible());
}

TEST_F(HelpForms, TheBoxIsSavedAtOnce)
{
    online::TipForm form;
    ui::Show(form);
    form.chkLoadTipsAtStartup.SetChecked(false);
    EXPECT_EQ(shell::GetPreference("Show Tips at Startup"), "0");
    ui::Close(form);
    ui::Show(form);
    EXPECT_FALSE(form.chkLoadTipsAtStartup.Checked());
}

TEST_F(HelpForms, WithoutAFileTheWindowSaysSo)
{
    online::TipForm form;
    ui::Show(form);
    EXPECT_EQ(form.lblTipText.Caption(),
              "... that you can download the tips file from the web site?");
    form.cmdNextTip.Click(); // nothing new
    EXPECT_EQ(form.lblTipText.Caption(),
              "... that you can download the tips file from the web site?");
}

TEST_F(HelpForms, AnEmptyFileLeavesTheText)
{
    tests::WriteFile(shell::AppFile("TIPOFDAY.TXT"), "");
    online::TipForm form;
    ui::Show(form);
    EXPECT_EQ(form.lblTipText.Caption(), "");
    form.cmdNextTip.Click();
    EXPECT_EQ(form.lblTipText.Caption(), "");
}

TEST_F(HelpForms, SupportLeadsToItsPages)
{
    online::TechSupportForm form;
    std::vector<std::string> ran;
    browser::RegisterCommand("submnuForums", [&] { ran.emplace_back("forums"); });
    browser::RegisterCommand("submnuTutorials", [&] { ran.emplace_back("tutorials"); });
    ui::Show(form);
    EXPECT_EQ(form.Title(), "Technical Support");
    EXPECT_EQ(form.lblTechSupport.Caption(), "Technical Support");
    EXPECT_FALSE(form.lblICQ.Visible()); // there is no number
    form.lblVisitForums.Click();
    form.Picture2.Click();
    form.lblVisitTutorials.Click();
    EXPECT_EQ(ran, (std::vector<std::string>{"forums", "forums", "tutorials"}));
    form.lblEmail.Click();
    EXPECT_EQ(desktop.addresses, std::vector<std::string>{"mailto:support@quenlin.example"});
    EXPECT_EQ(desktop.folders, std::vector<std::string>{"C:\\"});
    browser::ResetMainForm();
}

} // namespace

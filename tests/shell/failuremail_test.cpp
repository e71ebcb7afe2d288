// The mail about a failure: its address, the report, what the system is called.
#include "platform/machine.h"
#include "platform/systeminfo.h"
#include "shell/openaddress.h"
#include "shell/preferences/failuremail.h"
#include "tests/support/scripteddesktop.h"

#include <gtest/gtest.h>

namespace
{

struct FakeSystem : platform::SystemInfo {
    FakeSystem() : before(platform::TheMachine().system) { platform::TheMachine().system = this; }
    ~FakeSystem() override { platform::TheMachine().system = before; }
    FakeSystem(const FakeSystem &) = delete;
    FakeSystem &operator=(const FakeSystem &) = delete;
    std::string Name() override { return name; }

    std::string name = "Some OS 12";
    platform::SystemInfo *before;
};

// A desktop on which nothing opens.
struct NoOpener : tests::ScriptedDesktop {
    bool OpenAddress(const std::string &address, const std::string &folder) override
    {
        ScriptedDesktop::OpenAddress(address, folder);
        return false;
    }
};

constexpr std::string_view kHead = "mailto:support@quenlin.example?Subject=Bug@Quenlin&Body=";

TEST(BugReportAddress, TurnsCarriageReturnsOnly)
{
    EXPECT_EQ(shell::BugReportAddress(""), kHead);
    EXPECT_EQ(shell::BugReportAddress("a & b?c=50%\nd \"é\""),
              std::string(kHead) + "a & b?c=50%\nd \"é\"");
    EXPECT_EQ(shell::BugReportAddress("\ra\r\rb\r"), std::string(kHead) + "%0Aa%0A%0Ab%0A");
}

TEST(EmailBugReport, MailsTheClipboard)
{
    tests::ScriptedDesktop desktop;
    desktop.clipboard = "one\rtwo";
    shell::EmailBugReport();
    EXPECT_EQ(desktop.addresses, std::vector<std::string>{std::string(kHead) + "one%0Atwo"});
    EXPECT_EQ(desktop.folders, std::vector<std::string>{"C:\\"});
    EXPECT_EQ(desktop.clipboard, "one\rtwo");
}

TEST(EmailBugReport, WithoutAMailProgramTheStatusLineSaysSo)
{
    NoOpener desktop;
    std::vector<std::string> lines;
    shell::TheStatusLine() = [&](std::string_view words) { lines.emplace_back(words); };
    desktop.clipboard = "one\rtwo";
    shell::EmailBugReport();
    EXPECT_EQ(lines, std::vector<std::string>{"Nothing opens this. The text is on the clipboard."});
    EXPECT_EQ(desktop.clipboard, "one\rtwo"); // all of the report
    shell::OpenAddress("http://a.example/", "");
    EXPECT_EQ(lines.size(), 2U);
    EXPECT_EQ(desktop.clipboard, "http://a.example/");
    shell::TheStatusLine() = nullptr;
    shell::EmailBugReport(); // there is no status line: no box either
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST(SystemInfoText, ThreeLines)
{
    FakeSystem system;
    EXPECT_EQ(shell::GetSystemInfoText(),
              "OS = Some OS 12\rIE = Version de IE desconocida\rQuenlin = 1.6.9");
    system.name.clear();
    EXPECT_EQ(shell::GetWindowsVersionName(), "Versión de Windows desconocida");
    std::int32_t major = 1;
    std::int32_t minor = 2;
    std::int32_t build = 3;
    EXPECT_EQ(shell::GetIEVersion(major, minor, build), "Version de IE desconocida");
    EXPECT_EQ(major, 0);
    EXPECT_EQ(minor, 0);
    EXPECT_EQ(build, 0);
}

TEST(ComposeBugReport, HasItsParts)
{
    FakeSystem system;
    EXPECT_EQ(shell::ComposeBugReport("I clicked", "No such file\r"),
              "System Info:\rOS = Some OS 12\rIE = Version de IE desconocida\rQuenlin = 1.6.9\r"
              "Actions:\rI clicked\rError(s) Raised:\rNo such file\r");
}

} // namespace

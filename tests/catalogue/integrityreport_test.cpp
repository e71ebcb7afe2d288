#include "catalogue/regeneration.h"
#include "catalogue/regeneration/integrityreport.h"
#include "runtime/error.h"
#include "shell/apppath.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace
{

const std::string kHeading =
    "   This file was created with Quenlin (By Orvald Tamsin)\r\n"
    "\r\n"
    "   If you have any suggestion, comment, bug report, or whatever,\r\n"
    "you can send me an email to support@quenlin.example\r\n"
    "-----------------------------------------------------------------------\r\n"
    "\r\n"
    "\r\n";

struct Report : testing::Test {
    tests::TestFolder folder;
    std::string before = shell::GetAppPath();

    Report() { shell::SetAppPath(folder.Path()); }
    ~Report() override { shell::SetAppPath(before); }

    std::string Written() const
    {
        return tests::ReadFile(folder / "Quenlin - MP3s' Intregity Report.qrp");
    }
};

TEST_F(Report, WithoutEntriesSaysSuccess)
{
    catalogue::IntegrityReport report(catalogue::ReportPath());
    report.Close(true, "/music", "21.11.2026 01:04:50");
    EXPECT_EQ(Written(), kHeading + "  Quenlin succeded getting the information of each file\r\n"
                                    "\r\n\r\n"
                                    "Directory: /music\r\n"
                                    "Date of creation: 21.11.2026 01:04:50\r\n");
}

TEST_F(Report, HasAnEntryForEachFileThatLacksATag)
{
    catalogue::IntegrityReport report(catalogue::ReportPath());
    EXPECT_TRUE(report.LogTagFailure("/m/none.mp3", false, false));
    EXPECT_TRUE(report.LogTagFailure("/m/first\n'\xE9.mp3", true, false));
    EXPECT_TRUE(report.LogTagFailure("/m/second.mp3", false, true));
    EXPECT_FALSE(report.LogTagFailure("/m/both.mp3", true, true));
    report.Close(false, "/m", "now");
    EXPECT_EQ(Written(), kHeading + "  /m/none.mp3\r\n"
                                    "  Quenlin could not get any information for this file.\r\n"
                                    "\r\n"
                                    "  /m/first\\x0a'\xE9.mp3\r\n"
                                    "  Quenlin could not get the ID3v2 information\r\n"
                                    "\r\n"
                                    "  /m/second.mp3\r\n"
                                    "  Quenlin could not get the ID3v1 information\r\n"
                                    "\r\n"
                                    "\r\n\r\n"
                                    "Directory: /m\r\n"
                                    "Date of creation: now\r\n");
}

TEST_F(Report, IsWrittenFreshOnEachRun)
{
    {
        catalogue::IntegrityReport report(catalogue::ReportPath());
        report.LogTagFailure("/m/old.mp3", false, false);
    }
    EXPECT_NE(Written().find("old.mp3"), std::string::npos);
    catalogue::IntegrityReport report(catalogue::ReportPath());
    EXPECT_EQ(Written(), kHeading);
}

TEST_F(Report, KeepsAllEntriesOfALongRun)
{
    {
        catalogue::IntegrityReport report(catalogue::ReportPath());
        for (int i = 0; i < 5000; i++)
            report.LogTagFailure("/m/" + std::to_string(i) + ".mp3", false, false);
    }
    const std::string written = Written();
    std::size_t at = 0;
    for (int i = 0; i < 5000; i++) {
        at = written.find("  /m/" + std::to_string(i) + ".mp3\r\n", at);
        ASSERT_NE(at, std::string::npos) << i;
    }
}

TEST_F(Report, HasEachEntryAtOnceAndAgainAfterItWasDeleted)
{
    catalogue::IntegrityReport report(catalogue::ReportPath());
    report.LogTagFailure("/m/1.mp3", false, false);
    EXPECT_NE(Written().find("/m/1.mp3"), std::string::npos) << "a kill now loses nothing";
    std::filesystem::remove(catalogue::ReportPath());
    report.LogTagFailure("/m/2.mp3", true, false);
    EXPECT_EQ(Written(), "  /m/2.mp3\r\n  Quenlin could not get the ID3v2 information\r\n\r\n");
}

TEST_F(Report, ThatCannotBeWrittenIsAnError)
{
    std::filesystem::create_directory(catalogue::ReportPath());
    try {
        const catalogue::IntegrityReport report(catalogue::ReportPath());
        ADD_FAILURE();
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kPathFileAccess);
        EXPECT_EQ(error.description, catalogue::ReportPath() + ": Is a directory");
    }
}

} // namespace

#include "online/version/webvrchk.h"
#include "tests/online/recordedweb.h"

#include <gtest/gtest.h>

namespace
{

using online::WebVrChk;
using Log = std::vector<std::string>;

// A check that writes its events down.
struct LoggedCheck : WebVrChk {
    LoggedCheck()
    {
        version = "1.6.9";
        address = "https://example.org/VersionInfo.txt";
        base = "https://example.org/";
        newerVersion = [this](const std::string &from, const std::string &text) {
            log.push_back("newer " + from + " " + text);
        };
        noNewerVersion = [this] { log.emplace_back("none"); };
        error = [this](std::int32_t code) { log.push_back("error " + std::to_string(code)); };
    }
    Log log;
};

TEST(WebVrChk, ComparesByItsSubject)
{
    const std::string newTools = "1.6.6:2004\r\nQuenlin 1.7.0\r\n";
    const std::string newDatabase = "1.6.6:2004\r\n1.6.7:2005\r\nQuenlin 1.6.9\r\n";
    const struct {
        const char *name;
        WebVrChk::Subject subject;
        std::string version, file;
        Log want;
    } cases[] = {
        {"newer tool",
         WebVrChk::Subject::Program,
         "1.6.9",
         newTools,
         {"newer https://example.org/ " + newTools}},
        {"the database's line does not count for tools",
         WebVrChk::Subject::Program,
         "1.6.9",
         newDatabase,
         {"none"}},
        {"newer database",
         WebVrChk::Subject::Database,
         "1.6.6",
         newDatabase,
         {"newer https://example.org/ " + newDatabase}},
        {"the last line counts, not the highest",
         WebVrChk::Subject::Database,
         "1.6.6",
         "1.9.9:a\r\n1.6.6:b\r\n",
         {"none"}},
        {"an empty file", WebVrChk::Subject::Program, "1.6.9", "", {"none"}},
        {"no second block", WebVrChk::Subject::Program, "1.6.9", "1.7:2004", {"none"}},
        {"a page instead of the file",
         WebVrChk::Subject::Program,
         "1.6.9",
         "<html>\r\n<body>",
         {"none"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        tests::RecordedWeb web;
        LoggedCheck check;
        check.subject = c.subject;
        check.version = c.version;
        check.Start();
        EXPECT_EQ(web.addresses, (Log{"https://example.org/VersionInfo.txt"}));
        EXPECT_EQ(check.log, Log{}); // later, not inside Start
        web.Answer(c.file);
        EXPECT_EQ(check.log, c.want);
    }
}

TEST(WebVrChk, NoAnswerIsAnError)
{
    tests::RecordedWeb web;
    LoggedCheck check;
    check.Start();
    web.Answer(std::nullopt);
    EXPECT_EQ(check.log, Log{"error -2"});
}

TEST(WebVrChk, WithoutAWebThereIsAnError)
{
    LoggedCheck check;
    check.Start();
    EXPECT_EQ(check.log, Log{"error -2"});
}

TEST(WebVrChk, AnotherStartGivesTheFirstUp)
{
    tests::RecordedWeb web;
    LoggedCheck check;
    check.Start();
    check.address = "https://example.org/Other.txt";
    check.Start();
    EXPECT_EQ(web.dropped, 1);
    web.Answer("");
    EXPECT_EQ(check.log, Log{"none"});
}

TEST(WebVrChk, AHandlerMayDropIt)
{
    tests::RecordedWeb web;
    auto check = std::make_unique<LoggedCheck>();
    int events = 0;
    check->noNewerVersion = [&] {
        check.reset();
        ++events;
    };
    check->Start();
    web.Answer("");
    EXPECT_EQ(events, 1);
    EXPECT_EQ(check, nullptr);
}

} // namespace

// The shipped language files, read by the program's own reader.
#include "shell/globals.h"
#include "shell/language.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace
{

class ShippedLanguage : public testing::TestWithParam<const char *>
{
protected:
    std::string File() const { return std::string(QUENLIN_SOURCE "/assets/shipped/") + GetParam(); }
    void SetUp() override { shell::TheGlobals().LanguageFilePath = File(); }
    void TearDown() override { shell::TheGlobals() = shell::Globals(); }
};

TEST_P(ShippedLanguage, EveryEntryIsReadUnchanged)
{
    std::istringstream lines(tests::ReadFile(File()));
    std::string section;
    int entries = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == ';')
            continue;
        if (line[0] == '[') {
            section = line.substr(1, line.size() - 2);
            continue;
        }
        const std::size_t equals = line.find('=');
        ASSERT_NE(equals, std::string::npos) << line;
        EXPECT_EQ(shell::GetLanguageText("absent", line.substr(0, equals), section),
                  line.substr(equals + 1));
        ++entries;
    }
    EXPECT_GT(entries, 190);
}

TEST_P(ShippedLanguage, TheGroupOfAFieldIsPutTogether)
{
    const std::string caption = shell::GetFolderGroupCaption("Title");
    EXPECT_NE(caption, "By Title");
    EXPECT_NE(caption.find(shell::GetLanguageText("Title", "Title", "ColumnHeaders")),
              std::string::npos);
    EXPECT_EQ(caption.find('$'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(All, ShippedLanguage, testing::Values("Deutsch.qlt", "Español.qlt"));

} // namespace

#include "platform/inireader.h"
#include "runtime/codepage.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <optional>

namespace
{

std::optional<std::string> Found(std::string_view text, std::string_view section,
                                 std::string_view key)
{
    const auto value = platform::FindIniValue(platform::ParseIni(text), section, key);
    return value ? std::optional(std::string(*value)) : std::nullopt;
}

TEST(FindIniValue, Table)
{
    const std::optional<std::string> none;
    const struct {
        const char *name;
        std::string_view text;
        std::optional<std::string> want;
    } cases[] = {
        {"plain", "[S]\nk=v\n", "v"},
        {"no line end", "[S]\nk=v", "v"},
        {"CR LF", "[S]\r\nk=v\r\n", "v"},
        {"CR alone", "[S]\rk=v\r", "v"},
        {"section in another case", "[s]\nk=v", "v"},
        {"key in another case", "[S]\nK=v", "v"},
        {"blanks everywhere", "  [ S ]  \n\t k \t=\t v \t\n", "v"},
        {"text behind the bracket", "[S] rest\nk=v", "v"},
        {"first entry wins", "[S]\nk=1\nk=2", "1"},
        {"first section wins", "[S]\nk=1\n[T]\n[S]\nk=2", "1"},
        {"second section of a name is not looked at", "[S]\na=1\n[T]\nx=1\n[S]\nk=2", none},
        {"another section's key", "[T]\nk=1\n[S]\nx=2", none},
        {"key before any section", "k=1\n[S]\n", none},
        {"comment", "[S]\n;k=1\n ; k=2\nk=3", "3"},
        {"bad lines are skipped", "[S]\nk\nnonsense\n[open\nk=v", "v"},
        {"value with an equals sign", "[S]\nk=a=b", "a=b"},
        {"value with a semicolon", "[S]\nk=a ; b", "a ; b"},
        {"empty value", "[S]\nk=\n", ""},
        {"blank value", "[S]\nk=   \n", ""},
        {"double quotes", "[S]\nk=\" v \"", " v "},
        {"single quotes", "[S]\nk=' v '", " v "},
        {"only one pair", "[S]\nk=\"\"v\"\"", "\"v\""},
        {"mixed quotes stay", "[S]\nk=\"v'", "\"v'"},
        {"one quote alone stays", "[S]\nk=\"", "\""},
        {"quotes around nothing", "[S]\nk=\"\"", ""},
        {"section like a value", "[S]\nx=[T]\nk=v", "v"},
        {"empty text", "", none},
        {"key is a part of another", "[S]\nkk=1\nk=2", "2"},
        {"blank in a key", "[S]\nk k=1\nk=2", "2"},
        {"NUL inside", std::string_view("[S]\nk=a\0b", 9), std::string("a\0b", 3)},
        {"break marks stay", "[S]\nk=a%0Ab", "a%0Ab"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Found(c.text, "S", "k"), c.want);
    }
}

TEST(FindIniValue, ACommentHoldsNoEntry)
{
    EXPECT_EQ(Found("[S]\n;k=1\n ; k=2", "S", ";k"), std::nullopt);
    EXPECT_EQ(Found("[S]\n;k=1\n ; k=2", "S", "; k"), std::nullopt);
}

TEST(FindIniValue, ComparesLettersBeyondAscii)
{
    EXPECT_EQ(Found("[ÑANDÚ]\nÉ=1", "ñandú", "é"), "1");
}

TEST(FindIniValue, StaysInsideEveryTruncation)
{
    const std::string whole = "[S]\r\n;c\r\nk=\"v\"\r\n[T]\r\nx=";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const std::string text = whole.substr(
            0,
            length); // a memory block of its own, so that the sanitizer notices reading beyond it
        const auto value = Found(text, "S", "k");
        EXPECT_EQ(value.has_value(), length > whole.find('=')) << length;
    }
}

class ReadIniText : public ::testing::Test
{
protected:
    std::optional<std::string> Read(std::string_view bytes, std::size_t maxCharacters = 199)
    {
        tests::WriteFile(folder / "a.qlt", bytes);
        return platform::ReadIniText(folder / "a.qlt", "S", "k", maxCharacters);
    }

    tests::TestFolder folder;
};

TEST_F(ReadIniText, CutsToTheNumberOfCharacters)
{
    EXPECT_EQ(Read("[S]\nk=" + std::string(250, 'x')), std::string(199, 'x'));
    EXPECT_EQ(Read("[S]\nk=" + std::string(199, 'x')), std::string(199, 'x'));
    EXPECT_EQ(Read("[S]\nk=éèê", 2), "éè"); // characters, not bytes
    EXPECT_EQ(Read("[S]\nk=\"" + std::string(250, 'x') + "\""), std::string(199, 'x'));
}

TEST_F(ReadIniText, TakesTheCodePageWhereTheFileIsNoUtf8)
{
    EXPECT_EQ(Read("[S]\nk=Canci\xF3n"), "Canción");
    EXPECT_EQ(Read("[S]\nk=Canción"), "Canción");
    runtime::UseCodePage(1251);
    EXPECT_EQ(Read("[S]\nk=\xCF\xE5\xF1\xED\xFF"), "Песня");
    runtime::UseCodePage(1252);
}

TEST_F(ReadIniText, PassesOverAByteOrderMark)
{
    EXPECT_EQ(Read("\xEF\xBB\xBF[S]\nk=v"), "v");
}

TEST_F(ReadIniText, GivesNothingForWhatIsNoFile)
{
    EXPECT_EQ(platform::ReadIniText(folder / "absent", "S", "k", 199), std::nullopt);
    EXPECT_EQ(platform::ReadIniText(folder.Path(), "S", "k", 199), std::nullopt);
    EXPECT_EQ(platform::ReadIniText(folder.Path() + "/", "S", "k", 199), std::nullopt);
    EXPECT_EQ(platform::ReadIniText("", "S", "k", 199), std::nullopt);
    EXPECT_EQ(Read(""), std::nullopt);
}

TEST_F(ReadIniText, DoesNotWaitForAFifo)
{
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(platform::ReadIniText(folder / "pipe", "S", "k", 199), std::nullopt);
}

TEST_F(ReadIniText, LooksAtTheBeginningOfAHugeFile)
{
    tests::WriteFile(folder / "huge.qlt", "[S]\nk=v\n");
    ASSERT_EQ(truncate((folder / "huge.qlt").c_str(), off_t{5} << 30), 0);
    EXPECT_EQ(platform::ReadIniText(folder / "huge.qlt", "S", "k", 199), "v");
    EXPECT_EQ(platform::ReadIniText(folder / "huge.qlt", "S", "other", 199), std::nullopt);
}

TEST_F(ReadIniText, SeesAnEditOfAnOldFile)
{
    using namespace std::chrono_literals;
    const auto file = folder / "a.qlt";
    const auto age = [&](std::chrono::seconds by) {
        std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - by);
    };
    EXPECT_EQ(Read("[S]\nk=1"), "1");
    age(60s);
    EXPECT_EQ(platform::ReadIniText(file, "S", "k", 199), "1");
    EXPECT_EQ(platform::ReadIniText(file, "s", "K", 199), "1");
    EXPECT_EQ(Read("[S]\nk=2"), "2") << "the same size";
    age(60s);
    EXPECT_EQ(platform::ReadIniText(file, "S", "k", 199), "2");
    std::filesystem::remove(file);
    EXPECT_EQ(platform::ReadIniText(file, "S", "k", 199), std::nullopt);
}

TEST_F(ReadIniText, SeesEveryEditOfMany)
{
    for (int i = 1000; i < 1500; ++i) // several within one tick of the file system's clock
        ASSERT_EQ(Read("[S]\nk=" + std::to_string(i)), std::to_string(i));
}

// A file that was made when the build was configured: one that a test makes has not settled yet,
// and no program can set back the time of a file's last change.
const std::string kSettled = QUENLIN_SETTLED_FILE;

TEST_F(ReadIniText, DoesNotOpenASettledFileTwice)
{
    EXPECT_EQ(platform::ReadIniText(kSettled, "S", "other", 199), "1");
    struct rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const struct rlimit none = {0, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0); // nothing can be opened
    const auto again = platform::ReadIniText(kSettled, "s", "OTHER", 199);
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(again, "1");
}

TEST_F(ReadIniText, ReadsASettledFileAgainInAnotherCodePage)
{
    EXPECT_EQ(platform::ReadIniText(kSettled, "S", "k", 199), "ñ");
    runtime::UseCodePage(1251);
    EXPECT_EQ(platform::ReadIniText(kSettled, "S", "k", 199), "с");
    runtime::UseCodePage(1252);
    EXPECT_EQ(platform::ReadIniText(kSettled, "S", "k", 199), "ñ");
}

} // namespace

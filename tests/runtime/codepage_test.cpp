#include "runtime/codepage.h"

#include <gtest/gtest.h>

using namespace runtime;

namespace
{

constexpr int kPages[] = {1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258, 874};

struct RestoreCodePage {
    ~RestoreCodePage() { UseCodePage(1252); }
};

} // namespace

TEST(CodePage, EveryByteSurvivesInEveryPage)
{
    const RestoreCodePage restore;
    for (const int page : kPages) {
        UseCodePage(page);
        ASSERT_EQ(CodePage(), page);
        std::string bytes;
        for (int b = 0; b < 256; ++b)
            bytes.push_back(static_cast<char>(b));
        EXPECT_EQ(BytesOfText(TextOfBytes(bytes)), bytes) << page;
    }
}

TEST(CodePage, Characters)
{
    const RestoreCodePage restore;
    EXPECT_EQ(TextOfBytes("caf\xe9 \x80 \x81"), "café € \xc2\x81");
    EXPECT_EQ(BytesOfText("山x"), "?x");
    EXPECT_EQ(BytesOfText("\xff"), "\xff");
    UseCodePage(1251);
    EXPECT_EQ(TextOfBytes("\xc4"), "Д");
    UseCodePage(4711);
    EXPECT_EQ(CodePage(), 1252);
}

TEST(CodePageOfLocale, Table)
{
    EXPECT_EQ(CodePageOfLocale("en_US.UTF-8"), 1252);
    EXPECT_EQ(CodePageOfLocale("cs_CZ.UTF-8"), 1250);
    EXPECT_EQ(CodePageOfLocale("ru"), 1251);
    EXPECT_EQ(CodePageOfLocale("sr_RS@latin"), 1250);
    EXPECT_EQ(CodePageOfLocale("C"), 1252);
    EXPECT_EQ(CodePageOfLocale(""), 1252);
}

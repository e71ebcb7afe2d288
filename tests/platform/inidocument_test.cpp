#include "platform/inidocument.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace
{

using platform::IniDocument;

TEST(IniDocument, BringsOddTextsBack)
{
    const std::string odd[] = {"",
                               "plain",
                               " leading",
                               "trailing ",
                               "a\nb",
                               "a\r\nb",
                               std::string("a\0b", 3),
                               std::string("\0", 1),
                               "\"quoted\"",
                               "\"",
                               "it's",
                               "C:\\",
                               "\\n",
                               "a=b",
                               "[s]",
                               ";c",
                               "#c",
                               "]",
                               "/m\xFFsic/\x80",
                               "\t",
                               "\x7F",
                               "ñandú"};
    for (const std::string &section : odd)
        for (const std::string &key : odd)
            for (const std::string &value : odd) {
                IniDocument document("[Other]\nx=1\n");
                document.Set(section, key, value);
                const IniDocument again(document.Text());
                ASSERT_EQ(again.Find(section, key), value) << document.Text();
                ASSERT_EQ(again.Find("Other", "x"), "1") << document.Text();
            }
}

TEST(IniDocument, BringsRandomTextsBack)
{
    std::mt19937 random(1);
    for (int round = 0; round < 3000; ++round) {
        std::string text[3];
        for (std::string &one : text)
            for (auto length = random() % 12; length > 0; --length)
                one.push_back("\"\\=[];# \n\r\0nx0aA\xFF"[random() % 17]);
        IniDocument document("");
        document.Set(text[0], text[1], text[2]);
        ASSERT_EQ(IniDocument(document.Text()).Find(text[0], text[1]), text[2]) << document.Text();
    }
}

TEST(IniDocument, KeepsWhatItDoesNotKnow)
{
    IniDocument document("; mine\n\n[A]\nx=1\n# note\nnonsense\n\n[B]\ny=2\n");
    document.Set("A", "x", "3");
    document.Set("A", "z", "4");
    document.Set("C", "n", "5");
    document.Remove("B", "y");
    EXPECT_EQ(document.Text(), "; mine\n\n[A]\nx=3\n# note\nnonsense\nz=4\n\n[B]\n[C]\nn=5\n");
}

TEST(IniDocument, KeepsAByteOrderMarkAndReadsTheTextAfterIt)
{
    IniDocument document("\xEF\xBB\xBF[A]\r\nx=1\r\n");
    EXPECT_EQ(document.Find("A", "x"), "1");
    document.Set("A", "y", "2");
    EXPECT_EQ(document.Text(), "\xEF\xBB\xBF[A]\r\nx=1\r\ny=2\n");
}

TEST(IniDocument, ComparesNamesWithoutCaseAndTakesTheFirst)
{
    IniDocument document("[a]\nKey=1\nkey=2\n[A]\nother=3\n");
    EXPECT_EQ(document.Find("A", "KEY"), "1");
    EXPECT_EQ(document.Find("a", "OTHER"), "3");
    document.Set("A", "KEY", "9");
    EXPECT_EQ(document.Find("a", "key"), "9");
    document.Remove("a", "key");
    EXPECT_EQ(document.Find("a", "key"), std::nullopt);
    EXPECT_EQ(document.Find("a", "other"), "3");
}

TEST(IniDocument, ReadsDamagedLinesWithoutHarm)
{
    const std::string whole = "[\"a\\x41\"]\n\"k\\x4\\\"\"=\"v\\n\\\\\"\n";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const std::string text = whole.substr(0, length);
        const IniDocument document(text);
        EXPECT_EQ(document.Text(), text.empty() || text.ends_with('\n') ? text : text + "\n");
    }
}

} // namespace

#include "ui/qt/qttext.h"

#include <gtest/gtest.h>

namespace
{

using namespace std::string_view_literals;

struct Case {
    const char *name;
    std::string_view text;
    const char *want;
};

TEST(QtText, Labels)
{
    constexpr Case cases[] = {
        {"plain", "So What", "So What"},
        {"doubled ampersand", "Waltz && Debby", "Waltz & Debby"},
        {"mark of an access key", "&Quit", "Quit"},
        {"four ampersands", "a &&&& b", "a && b"},
        {"markup stays", "<b>Live</b>", "<b>Live</b>"},
        {"carriage returns", "one\rtwo\r\nthree", "one\ntwo\nthree"},
        {"trailing NUL of a tag", "Bach\0"sv, "Bach"},
        {"a tab parts words", "So\tWhat", "So What"},
        {"letters beyond ASCII", "Éire", "Éire"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(ui::qt::FromQt(ui::qt::LabelText(c.text)), c.want) << c.name;
}

TEST(QtText, MenuEntries)
{
    constexpr Case cases[] = {
        {"shortcut inside the caption", "&File Info             Alt+3", "&File Info\tAlt+3"},
        {"no shortcut", "&Add File", "&Add File"},
        {"a tab cannot fake a shortcut", "Deutsch\tCtrl+Q", "Deutsch Ctrl+Q"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(ui::qt::FromQt(ui::qt::MenuText(c.text)), c.want) << c.name;
}

TEST(QtText, OneLine)
{
    constexpr Case cases[] = {
        {"line breaks", "one\r\ntwo", "one  two"},
        {"trailing NUL of a tag", "Bach\0"sv, "Bach"},
        {"marks of other places stay", "a && b", "a && b"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(ui::qt::FromQt(ui::qt::OneLineText(c.text)), c.want) << c.name;
    EXPECT_EQ(ui::qt::OneLineText(std::string(5000, 'x')).size(), 2000);
}

TEST(QtText, Tips)
{
    EXPECT_EQ(ui::qt::FromQt(ui::qt::TipText(QStringLiteral("<b> & \n"))),
              "<qt>&lt;b&gt; &amp; <br></qt>");
    EXPECT_TRUE(ui::qt::TipText({}).isEmpty());
}

} // namespace

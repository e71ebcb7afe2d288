#include "ui/qt/qttext.h"
#include "ui/qt/views/rowdelegate.h"

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

// A text that looks like another one has a tip that shows the difference.
TEST(QtText, OddCharacters)
{
    constexpr Case cases[] = {
        {"nothing odd", "So What? \u00C9 \u4E16 & <b>", ""},
        {"no-break space", "a\u00A0b", "a[U+00A0]b"},
        {"zero width", "a\u200Bb", "a[U+200B]b"},
        {"tab and line end", "a\tb\r", "a[U+0009]b[U+000D]"},
        {"combining mark", "Cafe\u0301", "Cafe[U+0301]"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(ui::qt::FromQt(ui::qt::OddCharactersShown(c.text)), c.want) << c.name;
}

TEST(QtText, APathKeepsItsName)
{
    const QFontMetrics metrics{QFont()};
    const QString path = QStringLiteral("/srv/users/Music/A band with a name/An album/Song.mp3");
    EXPECT_EQ(ui::qt::ElidedPath(path, metrics, metrics.horizontalAdvance(path)), path);
    for (const QString &kept :
         {QStringLiteral("/srv/users/Music…/Song.mp3"), QStringLiteral("/…/Song.mp3")}) {
        const int width = metrics.horizontalAdvance(kept);
        const QString shown = ui::qt::ElidedPath(path, metrics, width);
        EXPECT_TRUE(shown.endsWith(QLatin1String("/Song.mp3"))) << shown.toStdString();
        EXPECT_TRUE(shown.contains(QChar(0x2026))) << shown.toStdString();
        EXPECT_LE(metrics.horizontalAdvance(shown), width);
    }
    const QString narrow =
        ui::qt::ElidedPath(path, metrics, metrics.horizontalAdvance(QStringLiteral("Son…mp3")));
    EXPECT_TRUE(narrow.startsWith(QLatin1Char('S'))) << narrow.toStdString();
    EXPECT_TRUE(narrow.endsWith(QLatin1Char('3'))) << narrow.toStdString();
}

} // namespace

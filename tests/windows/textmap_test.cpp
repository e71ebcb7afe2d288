#include "ui/qt/textmap.h"

#include <gtest/gtest.h>

namespace
{

TEST(TextMap, PlacesOfTextAndWidget)
{
    using namespace ui::qt;
    const std::string text = "\u00C1\r\nb\rc\n\U0001F3B5d";
    const QString shown = ShownText(text, true);
    EXPECT_EQ(shown, QStringLiteral("\u00C1\nb\nc\n\U0001F3B5d"));
    const struct {
        int position, shown;
    } places[] = {{0, 0}, {1, 1}, {3, 2}, {4, 3}, {5, 4}, {6, 5}, {7, 6}, {8, 8}, {9, 9}};
    for (const auto &p : places) {
        EXPECT_EQ(ShownPosition(text, true, p.position), p.shown) << p.position;
        EXPECT_EQ(TextPosition(text, true, p.shown), p.position) << p.shown;
    }
    EXPECT_EQ(ShownPosition(text, true, 2), 1) << "inside a CR LF";
    EXPECT_EQ(TextPosition(text, true, 7), 7) << "inside a pair of surrogates";
    EXPECT_EQ(ShownPosition(text, true, 99), 9);
    EXPECT_EQ(ShownText("a\r\nb\tc", false), QStringLiteral("a  b c"));
}

TEST(TextMap, AnEditChangesOnlyWhatTheUserChanged)
{
    using namespace ui::qt;
    const struct {
        const char *name;
        std::string text;
        QString shown;
        int caret;
        std::string want;
    } cases[] = {
        {"nothing", "a\rb\nc", QStringLiteral("a\nb\nc"), 0, "a\rb\nc"},
        {"a letter", "a\rb\nc", QStringLiteral("a\nbx\nc"), 4, "a\rbx\nc"},
        {"a line", "a\rb", QStringLiteral("a\nn\nb"), 4, "a\rn\r\nb"},
        {"a break before a break", "a\rb", QStringLiteral("a\n\nb"), 2, "a\r\n\rb"},
        {"a break after a break", "a\rb", QStringLiteral("a\n\nb"), 3, "a\r\r\nb"},
        {"a break goes", "a\r\nb", QStringLiteral("ab"), 1, "ab"},
        {"all goes", "a\r\nb", QString(), 0, ""},
        {"from nothing", "", QStringLiteral("x\ny"), 3, "x\r\ny"},
        {"one of two equal letters", "aab", QStringLiteral("ab"), 0, "ab"},
        {"a caret that is nowhere", "ab", QStringLiteral("axb"), 99, "axb"},
        {"a note beside a note", "\U0001F3B5", QStringLiteral("\U0001F3B5\U0001F3B6"), 4,
         "\U0001F3B5\U0001F3B6"},
        {"a note of a pair", "\U0001F3B5\U0001F3B6", QStringLiteral("\U0001F3B6"), 0, "\U0001F3B6"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(EditedText(c.text, true, c.shown, c.caret), c.want) << c.name;
}

} // namespace

// The information panel's labels: any text is wrapped in a time that grows no faster than the text.
#include "ui/qt/widgets/pagelabel.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QTextLayout>
#include <cmath>
#include <ctime>
#include <functional>
#include <random>

namespace
{

constexpr int kWidth = 168; // pixels of the panel's labels

// The height of `text` as one layout of the toolkit has it.
int HeightOfOneLayout(QString text, int width, const QFont &font)
{
    text.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    qreal height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        height += line.height() * 1.15;
    }
    layout.endLayout();
    return static_cast<int>(std::ceil(height));
}

// `count` of the characters that `pick` returns.
QString Made(qsizetype count, const std::function<char32_t(std::mt19937 &)> &pick)
{
    std::mt19937 random(1);
    QString text;
    while (text.size() < count) {
        const char32_t character = pick(random);
        text += QString::fromUcs4(&character, 1);
    }
    return text;
}

char32_t OneOf(std::u32string_view characters, std::mt19937 &random)
{
    return characters[random() % characters.size()];
}

struct Kind {
    const char *name;
    std::function<char32_t(std::mt19937 &)> pick;
    // False: a line has more characters than are laid out at once, or depends on the line before.
    bool linesAreApart = true;
};

const std::vector<Kind> &Kinds()
{
    static const std::vector<Kind> kinds = {
        {"no blank", [](auto &) { return U'x'; }},
        {"words", [](auto &random) { return OneOf(U"abcdefgh  ", random); }},
        {"blanks", [](auto &) { return U' '; }, false},
        {"line ends", [](auto &) { return U'\n'; }},
        {"captions", [](auto &random) { return OneOf(U"a:  \n\n", random); }},
        {"accents that take no room", [](auto &) { return U'\u0301'; }, false},
        {"joiners", [](auto &random) { return OneOf(U"\u200B\u200D\uFEFF\u2060", random); }, false},
        {"narrow", [](auto &) { return U'i'; }},
        {"Chinese", [](auto &random) { return char32_t(0x4E00 + random() % 20000); }},
        {"Arabic", [](auto &random) { return char32_t(0x621 + random() % 40); }},
        {"Devanagari", [](auto &random) { return char32_t(0x905 + random() % 70); }, false},
        {"pictures", [](auto &random) { return char32_t(0x1F300 + random() % 700); }},
        {"both directions",
         [](auto &random) { return OneOf(U"ab \u05D0\u05D1\u202E\u202C", random); }},
        {"any byte", [](auto &random) { return char32_t(1 + random() % 255); }, false},
    };
    return kinds;
}

class PageLabelTime : public testing::TestWithParam<int>
{
};

// The milliseconds of the processor that it takes to measure `text` and to paint the head of it.
double PaintingTime(const QString &text, int &height)
{
    QWidget window;
    ui::qt::PageLabel label(&window);
    label.SetFaintCaptions(true);
    const std::clock_t start = std::clock();
    height = label.HeightFor(text, kWidth);
    label.setGeometry(0, 0, kWidth, height);
    label.setText(text);
    QImage picture(kWidth, 1200, QImage::Format_RGB32);
    label.render(&picture, {}, QRegion(0, 0, kWidth, 1200));
    return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// A megabyte takes at most 100 ms more than its first 20 KB, which fill the picture as well: what
// the toolkit needs for a picture full of coloured characters is not the label's.
TEST_P(PageLabelTime, AMegabyteOfAnyText)
{
    const Kind &kind = Kinds()[static_cast<std::size_t>(GetParam())];
    const QString text = Made(1'000'000, kind.pick);
    int height = 0;
    PaintingTime(text.left(20'000), height); // reads the fonts from the disk
    const double head = PaintingTime(text.left(20'000), height);
    const double whole = PaintingTime(text, height);
    EXPECT_LT(whole, 100 + head) << kind.name;
    EXPECT_GT(height, 2 * 2184) << kind.name << ": beyond what the bar can scroll to";
    RecordProperty("ms", std::to_string(whole));
}

std::string NameOf(const testing::TestParamInfo<int> &info)
{
    std::string name = Kinds()[static_cast<std::size_t>(info.param)].name;
    name.erase(std::remove(name.begin(), name.end(), ' '), name.end());
    return name;
}

INSTANTIATE_TEST_SUITE_P(Kinds, PageLabelTime, testing::Range(0, static_cast<int>(Kinds().size())),
                         NameOf);

// The lines are the same as in one layout of the whole text.
TEST(PageLabel, WrapsAsOneLayoutDoes)
{
    QWidget window;
    const ui::qt::PageLabel label(&window);
    std::vector<QString> texts = {
        QString(), QStringLiteral("One line"), QStringLiteral("Two\nlines"),
        QStringLiteral("\n\nafter empty ones\n\n"), QStringLiteral("ends with a line end\n")};
    for (const Kind &kind : Kinds())
        if (kind.linesAreApart)
            texts.push_back(Made(1500, kind.pick));
    for (const QString &text : texts)
        for (const int width : {90, kWidth, 400}) {
            const int wanted = HeightOfOneLayout(text, width, label.font());
            if (wanted > 6000)
                continue; // more than is laid out
            EXPECT_EQ(label.HeightFor(text, width), wanted)
                << text.left(20).toStdString() << " " << width;
        }
}

// A translator writes it so that a number stays with its word; the panel is narrow.
TEST(PageLabel, ALineEndsAtANoBreakSpaceAndNotInsideAWord)
{
    ui::qt::PageLabel label(nullptr);
    const QString apart = QStringLiteral("123456 morceaux sélectionnés");
    QString together = apart;
    together.replace(QLatin1Char(' '), QChar(QChar::Nbsp));
    const int line = label.HeightFor(QStringLiteral("1"), kWidth);
    const int width = label.fontMetrics().horizontalAdvance(QStringLiteral("sélectionnés")) + 4;
    EXPECT_EQ(label.HeightFor(apart, width), label.HeightFor(together, width));
    EXPECT_GE(label.HeightFor(together, width), 3 * (line - 1)) << "a word a line";
}

} // namespace

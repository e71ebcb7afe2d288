// Texts of other scripts in rows and on the panel: where a text that is cut has its dots, how high
// its row is, in which direction a line begins.
#include "tests/windows/bench.h"
#include "ui/qt/views/listview.h"
#include "ui/qt/widgets/pagelabel.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QHeaderView>
#include <QMimeData>
#include <algorithm>
#include <set>

namespace
{

const std::string kHebrew = "שלום עולם שלום עולם שלום עולם שלום עולם שלום עולם";
const std::string kLatin = "Freddie Freeloader, Blue in Green, All Blues, Flamenco";

// The ink of a picture, whose first point is paper.
class Ink
{
public:
    explicit Ink(QImage picture) : m_picture(std::move(picture)), m_paper(m_picture.pixel(0, 0)) {}

    // The upper end of the ink in some columns of points; the picture's height where there is none.
    int Top(int from, int to) const
    {
        for (int y = 0; y < m_picture.height(); ++y)
            for (int x = std::max(from, 0); x < std::min(to, m_picture.width()); ++x)
                if (IsInk(x, y))
                    return y;
        return m_picture.height();
    }
    int Top() const { return Top(0, m_picture.width()); }
    int Bottom() const // of all of it, the first line of points below
    {
        for (int y = m_picture.height(); y > 0; --y)
            for (int x = 0; x < m_picture.width(); ++x)
                if (IsInk(x, y - 1))
                    return y;
        return 0;
    }
    int Left() const
    {
        int x = 0;
        while (x < m_picture.width() && Top(x, x + 1) == m_picture.height())
            ++x;
        return x;
    }
    int Right() const // the first column after all ink
    {
        int x = m_picture.width();
        while (x > 0 && Top(x - 1, x) == m_picture.height())
            --x;
        return x;
    }

private:
    bool IsInk(int x, int y) const
    {
        return std::abs(qGray(m_picture.pixel(x, y)) - qGray(m_paper)) > 60;
    }

    QImage m_picture;
    QRgb m_paper;
};

class RowsOfOtherScripts : public testing::Test
{
protected:
    RowsOfOtherScripts() : view(list, nullptr)
    {
        list.AddColumn("Icon", "", 450);
        list.AddColumn("Title", "Title", 2400);
        list.AddColumn("Path", "Path", 3000);
        list.SetSubItemKeys({"Title", "Path"});
        list.SetPlace({0, 0, 9000, 6000});
        view.resize(600, 400);
    }

    void Show(const std::vector<std::string> &titles)
    {
        int number = 0;
        for (const std::string &title : titles) {
            const std::string path = "/music/" + title + ".mp3";
            const std::string_view cells[] = {title, path};
            list.AddRow("/" + std::to_string(number++), "", "MP3", cells);
        }
        tests::ShowAndActivate(view);
    }

    QRect Place(int row) { return view.visualRect(view.Model().index(row, 1)); }
    Ink Cell(int row) { return Ink(view.viewport()->grab(Place(row)).toImage()); }

    ui::KeyedList list;
    ui::qt::ListView view;
};

TEST_F(RowsOfOtherScripts, ATextThatIsCutHasItsDotsWhereItEnds)
{
    Show({kHebrew, kLatin, "שלום", "Blues"});
    const int dots = view.fontMetrics().horizontalAdvance(QChar(0x2026)) - 2;
    const int middle = Place(0).height() / 2;
    const Ink hebrew = Cell(0), latin = Cell(1);
    EXPECT_GT(hebrew.Top(hebrew.Left(), hebrew.Left() + dots), middle) << "dots at the left";
    EXPECT_LT(hebrew.Top(hebrew.Right() - dots, hebrew.Right()), middle) << "letters at the right";
    EXPECT_LT(latin.Top(latin.Left(), latin.Left() + dots), middle);
    EXPECT_GT(latin.Top(latin.Right() - dots, latin.Right()), middle);
    // A text with room begins where all begin: the columns are the window's.
    EXPECT_NEAR(Cell(2).Left(), Cell(3).Left(), 4);
    EXPECT_EQ(view.Model().index(0, 1).data().toString().toStdString(), kHebrew);
}

TEST_F(RowsOfOtherScripts, ASentencesEndIsAtTheLeft)
{
    Show({"שלום.", "שלום"});
    EXPECT_GT(Cell(0).Top(Cell(0).Left(), Cell(0).Left() + 2), Place(0).height() / 2)
        << "the full stop";
    EXPECT_GT(Cell(0).Right(), Cell(1).Right());
}

TEST_F(RowsOfOtherScripts, EveryRowIsAsHighAsTheOthersAndCutsNothing)
{
    Show({"Blues", "桜の花", "한국어", "نسم علينا", "😀🎵 Party 👩‍🎤", "Ἄνδρα ỆǺ gjpq"});
    std::set<int> heights;
    for (int row = 0; row < list.Count(); ++row) {
        heights.insert(Place(row).height());
        const Ink cell = Cell(row);
        EXPECT_GE(cell.Top(), 1) << row;
        EXPECT_LE(cell.Bottom(), Place(row).height() - 1) << row;
    }
    EXPECT_EQ(heights.size(), 1U);
}

TEST_F(RowsOfOtherScripts, TheirFilesAreCopiedAsAddresses)
{
    view.Model().fileOfRow = [this](ui::RowId row) {
        return std::string(list.SubItem(row, "Path"));
    };
    Show({"桜 😀", "نسم"});
    tests::ClickAt(*view.viewport(), Place(0).center());
    tests::PressKey("Ctrl+A");
    tests::PressKey("Ctrl+C");
    const QMimeData *copied = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(copied->data(QStringLiteral("x-special/gnome-copied-files")),
              "copy\nfile:///music/%E6%A1%9C%20%F0%9F%98%80.mp3\n"
              "file:///music/%D9%86%D8%B3%D9%85.mp3");
    EXPECT_EQ(copied->text().toStdString(), "桜 😀\t/music/桜 😀.mp3\nنسم\t/music/نسم.mp3");
}

// The label of the panel, with this text, on its paper.
Ink Page(const QString &text, bool hasCaptions)
{
    QWidget window;
    ui::qt::PageLabel label(&window);
    label.SetFaintCaptions(hasCaptions);
    label.setText(text);
    label.resize(300, label.HeightFor(text, 300));
    QImage picture(label.size(), QImage::Format_RGB32);
    picture.fill(label.palette().color(QPalette::Base));
    label.render(&picture, {}, {}, {});
    return Ink(picture);
}

// Low Hebrew letters and high Latin ones show on which side a text begins.
TEST(PageOfOtherScripts, ALineOfNamesBeginsAtTheLeftWhateverItsFirstLetter)
{
    const auto isLowLetterFirst = [](const Ink &ink) {
        return ink.Top(ink.Left(), ink.Left() + 3) > ink.Top(ink.Right() - 3, ink.Right());
    };
    EXPECT_TRUE(isLowLetterFirst(Page(QStringLiteral("\nייייי - llll"), true)));
    EXPECT_FALSE(isLowLetterFirst(Page(QStringLiteral("ייייי - llll"), false)))
        << "a title has the direction of its first letter";
}

} // namespace

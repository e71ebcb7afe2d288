// The program's own look, pixel by pixel: what must be seen on dark and on light.
#include "platform/qt/ownstyle.h"
#include "platform/qt/theme.h"
#include "tests/windows/bench.h"
#include "ui/qt/icons.h"
#include "ui/qt/widgets/pagepanel.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QMenu>
#include <QProgressBar>
#include <QRadioButton>
#include <QStyleOption>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <set>

namespace tests
{

namespace
{

// The relative luminance of a colour, 0 to 1. Source: the Web Content Accessibility Guidelines 2.1.
double Luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

// 1 (the same) to 21 (black on white).
double Contrast(const QColor &a, const QColor &b)
{
    const double first = Luminance(a) + 0.05, second = Luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

// The highest contrast with `background` that a pixel of the picture's part has.
double HighestContrast(const QImage &picture, const QRect &part, const QColor &background)
{
    double highest = 1;
    const QRect within = part & picture.rect();
    for (int y = within.top(); y <= within.bottom(); ++y)
        for (int x = within.left(); x <= within.right(); ++x)
            if (const QColor colour = picture.pixelColor(x, y); colour.alpha() > 128)
                highest = std::max(highest, Contrast(colour, background));
    return highest;
}

// On dark and on light; the pixels of a screen without a scale.
class OwnLook : public testing::TestWithParam<bool>
{
protected:
    OwnLook() { platform::qt::ApplyPalette(GetParam()); }
    ~OwnLook() override { platform::qt::ApplyPalette(false); }

    static QPalette Palette() { return QApplication::palette(); }
    static QColor Background() { return Palette().color(QPalette::Window); }
};

TEST_P(OwnLook, AnEmptyBoxIsSeen)
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    std::vector<QAbstractButton *> boxes{new QCheckBox(&window), new QRadioButton(&window)};
    for (QAbstractButton *box : boxes)
        layout->addWidget(box);
    window.resize(60, 80);
    const QImage picture = window.grab().toImage();
    for (const QAbstractButton *box : boxes)
        EXPECT_GE(HighestContrast(picture, box->geometry(), Background()), 3)
            << box->metaObject()->className();
}

TEST_P(OwnLook, ADisabledIconHasTheContrastOfItsText)
{
    const QColor faint = Palette().color(QPalette::Disabled, QPalette::WindowText);
    for (const char *key : {"FileInfo", "Export", "Rename", "MP3"}) {
        const QIcon icon = ui::qt::Icon(key);
        ASSERT_FALSE(icon.isNull()) << key;
        const QImage disabled = icon.pixmap(QSize(24, 24), 1.0, QIcon::Disabled).toImage();
        const QImage enabled = icon.pixmap(QSize(24, 24), 1.0, QIcon::Normal).toImage();
        EXPECT_NEAR(HighestContrast(disabled, disabled.rect(), Background()),
                    Contrast(faint, Background()), 0.7)
            << key;
        EXPECT_GT(HighestContrast(enabled, enabled.rect(), Background()),
                  Contrast(faint, Background()) + 2)
            << key;
    }
}

TEST_P(OwnLook, AMenuHasABorderAndItsRulesAreSeen)
{
    QMenu menu;
    menu.addAction(QStringLiteral("First"));
    menu.addSection(QStringLiteral("Title"));
    menu.addAction(QStringLiteral("Second"));
    QAction *rule = menu.addSeparator();
    menu.addAction(QStringLiteral("Third"));
    menu.resize(menu.sizeHint());
    const QImage picture = menu.grab().toImage();
    const QColor within = Palette().color(QPalette::Base);
    for (const QPoint at : {QPoint(0, 5), QPoint(picture.width() - 1, 5), QPoint(5, 0),
                            QPoint(5, picture.height() - 1)}) {
        EXPECT_GE(Contrast(picture.pixelColor(at), within), 1.7) << at.x() << "," << at.y();
        EXPECT_GE(Contrast(picture.pixelColor(at), Background()), 1.6) << at.x() << "," << at.y();
    }
    const QRect line = menu.actionGeometry(rule).adjusted(10, 0, -10, 0);
    EXPECT_GE(HighestContrast(picture, line, within), 1.7);
    EXPECT_GE(HighestContrast(picture, menu.actionGeometry(menu.actions().at(1)), within), 4.5)
        << "the title is text";
}

TEST_P(OwnLook, TheIconOfASelectedEntryIsTheDrawingForItsBackground)
{
    QMenu menu;
    QAction *entry = menu.addAction(ui::qt::Icon("open"), QStringLiteral("Open"));
    menu.resize(menu.sizeHint());
    menu.popup(QPoint(0, 0));
    menu.setActiveAction(entry);
    ASSERT_TRUE(WaitUntil([&] { return menu.isVisible(); }));
    const QImage picture = menu.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QImage wanted = QIcon(QStringLiteral(":/icons/dark/open.svg"))
                              .pixmap(QSize(16, 16), 1.0)
                              .toImage()
                              .convertToFormat(QImage::Format_ARGB32);
    // The most frequent colour of the drawing that covers what is below it.
    std::set<QRgb> colours;
    for (int y = 0; y < wanted.height(); ++y)
        for (int x = 0; x < wanted.width(); ++x)
            if (qAlpha(wanted.pixel(x, y)) == 255)
                colours.insert(wanted.pixel(x, y));
    ASSERT_FALSE(colours.empty());
    int found = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width() / 2; ++x)
            found += colours.contains(picture.pixel(x, y)) ? 1 : 0;
    EXPECT_GT(found, 20);
    menu.hide();
}

TEST_P(OwnLook, ASelectedRowHasOneColour)
{
    QTreeWidget tree;
    auto *parent = new QTreeWidgetItem(&tree, {QStringLiteral("A")});
    auto *child = new QTreeWidgetItem(parent, {QStringLiteral("i")});
    tree.expandAll();
    tree.setCurrentItem(child);
    tree.resize(200, 120);
    ShowAndActivate(tree);
    tree.setFocus();
    const QImage picture = tree.viewport()->grab().toImage();
    const QRect row = tree.visualItemRect(child);
    const QColor wanted = Palette().color(QPalette::Active, QPalette::Highlight);
    for (const int y : {row.top() + 2, row.center().y(), row.bottom() - 2})
        for (const int x : {2, row.left() + 60, row.right() - 2})
            EXPECT_EQ(picture.pixelColor(x, y).name(), wanted.name()) << x << "," << y;
}

TEST_P(OwnLook, TheBarIsThinAndKeepsItsColour)
{
    QProgressBar bar;
    bar.setRange(0, 100);
    bar.setValue(50);
    bar.setTextVisible(false);
    EXPECT_LE(bar.sizeHint().height(), 8);
    bar.resize(100, 20);
    const QColor blue = Palette().color(QPalette::Active, QPalette::Highlight);
    const QImage picture = bar.grab().toImage(); // of a window that is not active
    EXPECT_EQ(picture.pixelColor(25, 10).name(), blue.name());
    EXPECT_NE(picture.pixelColor(75, 10).name(), blue.name());
    EXPECT_EQ(picture.pixelColor(25, 2).name(), Background().name()) << "thin";
    QWidget page;
    auto &rule = *new ui::qt::PageRule(&page);
    rule.resize(100, 4);
    EXPECT_LT(Contrast(rule.grab().toImage().pixelColor(9, 0), blue), 1.2);
}

INSTANTIATE_TEST_SUITE_P(LightAndDark, OwnLook, testing::Bool(),
                         [](const auto &dark) { return dark.param ? "Dark" : "Light"; });

} // namespace

} // namespace tests

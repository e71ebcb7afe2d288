// Every icon that a key names is in the resources, has a drawing, can be distinguished from the
// background, and exists for light and dark desktops.
#include <gtest/gtest.h>

#include <QColor>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>
#include <cmath>

namespace
{

constexpr const char *kKeys[] = {
    // the tree, the list and the panel
    "MP3", "M3U", "closed", "open", "Warning",
    // the folder tree
    "desk", "desktop", "hard", "floppy", "net", "cdrom",
    // menus, toolbar and popup
    "FileInfo", "DuplicateMP3", "Rename", "Export", "Lyrics", "Controls", "Search", "Exit",
    "TechSupport", "VerCheck", "Tip", "TreeView", "PlayList", "Add", "Remove", "Help", "Play",
    "Pause", "Stop",
    // the song controls and the lyrics' times
    "Previous", "Next", "Shuffle", "Save", "Test", "Close",
    // the support window and the history
    "Forum", "Tutorial", "Mail", "BugFix", "New", "Changed", "Removed"};

QImage Draw(const QString &resource, int size)
{
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QSvgRenderer renderer(resource);
    EXPECT_TRUE(renderer.isValid()) << resource.toStdString();
    renderer.render(&painter, QRectF(0, 0, size, size));
    return image;
}

// The share of pixels that an icon covers, and the strongest contrast of one of them with
// `background` (ratio of luminances as accessibility guidelines count it, 1 to 21).
struct Look {
    double covered = 0;
    double contrast = 1;
};

double Luminance(const QColor &colour)
{
    const auto linear = [](double c) {
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

Look LookAt(const QImage &image, const QColor &background)
{
    Look look;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() < 40)
                continue;
            look.covered += 1.0 / (image.width() * image.height());
            if (pixel.alpha() < 200)
                continue;
            const double a = Luminance(pixel) + 0.05;
            const double b = Luminance(background) + 0.05;
            look.contrast = std::max(look.contrast, a > b ? a / b : b / a);
        }
    return look;
}

TEST(Icons, EveryKeyIsDrawnForBothDesktops)
{
    for (const char *key : kKeys)
        for (const char *theme : {"light", "dark"}) {
            const QString name =
                QStringLiteral(":/icons/%1/%2.svg").arg(QLatin1String(theme), QLatin1String(key));
            SCOPED_TRACE(name.toStdString());
            ASSERT_TRUE(QFile::exists(name));
            for (const int size : {16, 24, 48}) {
                const Look look =
                    LookAt(Draw(name, size),
                           *theme == 'd' ? QColor(0x23, 0x26, 0x29) : QColor(0xf6, 0xf6, 0xf6));
                EXPECT_GT(look.covered, 0.07) << size;
                EXPECT_LT(look.covered, 0.95) << size;
                EXPECT_GT(look.contrast, 3.0) << size;
            }
        }
}

TEST(Icons, NoTwoLookTheSame)
{
    QList<QImage> seen;
    for (const char *key : kKeys) {
        const QImage image =
            Draw(QStringLiteral(":/icons/light/%1.svg").arg(QLatin1String(key)), 16);
        EXPECT_FALSE(seen.contains(image)) << key;
        seen.append(image);
    }
}

TEST(Icons, ThePicturesAreThere)
{
    for (const char *name : {":/icons/app.svg", ":/pictures/splash.svg",
                             ":/pictures/page-light.svg", ":/pictures/page-dark.svg"})
        EXPECT_GT(LookAt(Draw(QLatin1String(name), 64), Qt::black).covered, 0.3) << name;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        const QString file = QStringLiteral(QUENLIN_SOURCE "/assets/pictures/app-%1.png").arg(size);
        EXPECT_EQ(QImage(file).size(), QSize(size, size)) << size;
    }
}

} // namespace

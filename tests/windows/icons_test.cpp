// The icons that are borrowed from the desktop.
#include "tests/support/testfolder.h"
#include "ui/qt/icons.h"

#include <gtest/gtest.h>

#include <QIcon>
#include <QPixmap>

namespace
{

// A desktop whose icon theme has a red icon for MP3 files, a green one for any sound and a blue one
// for the files of any application.
class DesktopIcons : public testing::Test
{
protected:
    DesktopIcons()
    {
        tests::WriteFile(folder / "some/index.theme", "[Icon Theme]\nName=Some\nDirectories=16\n\n"
                                                      "[16]\nSize=16\nType=Fixed\n");
        tests::WriteFile(folder / "none/index.theme", "[Icon Theme]\nName=None\nDirectories=\n");
        std::filesystem::create_directory(folder / "some/16");
        const std::pair<const char *, Qt::GlobalColor> icons[] = {
            {"audio-mpeg", Qt::red},
            {"audio-x-generic", Qt::green},
            {"application-x-generic", Qt::blue}};
        for (const auto &[icon, colour] : icons) {
            QPixmap picture(16, 16);
            picture.fill(colour);
            EXPECT_TRUE(picture.save(QString::fromStdString(folder / "some/16/" + icon + ".png")));
        }
        QIcon::setThemeSearchPaths({QString::fromStdString(folder.Path())});
        QIcon::setFallbackSearchPaths({});
    }
    ~DesktopIcons() override
    {
        ui::qt::ForgetDesktopIcons();
        QIcon::setThemeName(name);
        QIcon::setThemeSearchPaths(paths);
        QIcon::setFallbackSearchPaths(fallbacks);
    }

    static QImage Shown(const char *key) { return ui::qt::Icon(key).pixmap(16).toImage(); }
    static QColor ColourOf(const char *key) { return Shown(key).pixelColor(8, 8); }

    const QString name = QIcon::themeName();
    const QStringList paths = QIcon::themeSearchPaths();
    const QStringList fallbacks = QIcon::fallbackSearchPaths();
    tests::TestFolder folder;
};

TEST_F(DesktopIcons, TakeTheProgramsOwnPlaceUnderTheExtensionInUpperCase)
{
    QIcon::setThemeName(QStringLiteral("some"));
    const QImage own = Shown("MP3"), other = Shown("FileInfo");
    EXPECT_TRUE(ui::qt::AddDesktopIcon(".mp3"));
    EXPECT_TRUE(ui::qt::AddDesktopIcon(".m3u"));
    EXPECT_EQ(ColourOf("MP3"), QColor(Qt::red));
    EXPECT_EQ(ColourOf("M3U"), QColor(Qt::green)); // there is no icon for it
    EXPECT_EQ(Shown("FileInfo"), other);
    ui::qt::ForgetDesktopIcons();
    EXPECT_EQ(Shown("MP3"), own);
}

TEST_F(DesktopIcons, WithoutOneTheProgramsOwnStays)
{
    QIcon::setThemeName(QStringLiteral("none"));
    const QImage own = Shown("MP3");
    EXPECT_FALSE(own.isNull());
    EXPECT_FALSE(ui::qt::AddDesktopIcon(".mp3"));
    EXPECT_EQ(Shown("MP3"), own);
}

} // namespace

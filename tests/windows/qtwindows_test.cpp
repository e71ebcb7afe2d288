// The window system's port on a real display.
#include "platform/qt/qtwindows.h"
#include "platform/qt/theme.h"
#include "runtime/error.h"
#include "tests/windows/bench.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QScreen>

namespace
{

TEST(QtWindowsTest, NonModalWindowOverAModalOneIsRefused)
{
    platform::qt::QtWindows windows;
    EXPECT_NO_THROW(windows.CheckNonModal());
    QDialog dialog;
    dialog.setModal(true);
    tests::ShowAndActivate(dialog);
    try {
        windows.CheckNonModal();
        ADD_FAILURE() << "not refused";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, 401);
    }
    dialog.close();
    EXPECT_NO_THROW(windows.CheckNonModal());
}

TEST(QtWindowsScaled, ScreensAreReportedInTwipsWhateverTheScale)
{
    platform::qt::QtWindows windows;
    EXPECT_TRUE(windows.KnowsPlaces());
    const std::vector<platform::Placement> screens = windows.Screens();
    ASSERT_EQ(screens.size(), 1u);
    EXPECT_EQ(screens[0], (platform::Placement{0, 0, 1600 * 15, 1000 * 15}));
}

TEST(QtWindowsTest, DarkAsThePaletteIs)
{
    platform::qt::QtWindows windows;
    platform::qt::ApplyPalette(true);
    EXPECT_TRUE(windows.IsDark());
    platform::qt::ApplyPalette(false);
    EXPECT_FALSE(windows.IsDark());
}

} // namespace

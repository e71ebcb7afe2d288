// The main program of every test of windows: one application for all tests of the program.
#include "platform/qt/theme.h"

#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    // Listing the tests happens at build time, without a display.
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quenlin"));
    QApplication::setQuitOnLastWindowClosed(false);
    platform::qt::ApplyPalette(false);
    return RUN_ALL_TESTS();
}

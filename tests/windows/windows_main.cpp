// The main program of every test of windows: one application for all tests of the program.
#include "platform/qt/application.h"
#include "platform/qt/theme.h"

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    // Listing the tests happens at build time, without a display.
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    platform::qt::Application application(argc, argv);
    application.showError = [](const runtime::RuntimeError &error) {
        ADD_FAILURE() << "an error that no handler took: " << error.number << " " << error.what();
    };
    QApplication::setApplicationName(QStringLiteral("Quenlin"));
    QApplication::setQuitOnLastWindowClosed(false);
    platform::qt::ApplyPalette(false);
    return RUN_ALL_TESTS();
}

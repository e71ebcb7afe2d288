// The look of the search window: each shipped language, light and dark, at 100, 150 and 200
// percent.
#include "browser/mainform.h"
#include "platform/machine.h"
#include "platform/qt/qtwindows.h"
#include "search/frmSearch.h"
#include "shell/globals.h"
#include "tests/support/fakeports.h"
#include "tests/support/memorysettings.h"
#include "tests/support/scripteddesktop.h"
#include "tests/windows/bench.h"
#include "tests/windows/look.h"

#include <gtest/gtest.h>

namespace tests
{

namespace
{

class SearchLookScaled : public testing::Test
{
protected:
    SearchLookScaled() { platform::TheMachine().windows = &windows; }
    ~SearchLookScaled() override
    {
        search::ResetSearchForm();
        browser::ResetMainForm();
        platform::TheMachine().windows = nullptr;
        shell::TheGlobals() = shell::Globals{};
    }

    FakeClock clock;
    ScriptedDesktop desktop;
    MemorySettings settings;
    platform::qt::QtWindows windows;
};

TEST_F(SearchLookScaled, SearchWindow)
{
    std::unique_ptr<search::frmSearchWindow> window;
    const auto close = [&] {
        window.reset();
        search::ResetSearchForm();
        browser::ResetMainForm();
    };
    for (const bool paneShown : {true, false}) {
        const auto open = [&]() -> QWidget * {
            search::SearchForm &form = search::frmSearch();
            search::LoadSearchForm(form);
            window = std::make_unique<search::frmSearchWindow>(form);
            window->show();
            LetRun(30);
            if (!paneShown)
                search::ShowOptionsPane(form, false);
            return window.get();
        };
        CheckLook(paneShown ? "frmSearch" : "frmSearch_closed", open, close);
    }
}

} // namespace

} // namespace tests

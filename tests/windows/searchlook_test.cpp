// The look of the search window and of the window of play lists: each shipped language, light and
// dark, at 100 and 200 percent.
#include "browser/mainform.h"
#include "platform/machine.h"
#include "platform/qt/qtwindows.h"
#include "playlists/listsform.h"
#include "search/frmSearch.h"
#include "shell/globals.h"
#include "tests/support/fakeports.h"
#include "tests/support/memorysettings.h"
#include "tests/support/scripteddesktop.h"
#include "tests/windows/bench.h"
#include "tests/windows/look.h"
#include "ui/qt/form.h"

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
    ui::qt::FormWindows host;
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

TEST_F(SearchLookScaled, WindowOfPlayLists)
{
    std::unique_ptr<playlists::ListsForm> form;
    const auto open = [&] {
        form = std::make_unique<playlists::ListsForm>(browser::frmMain());
        form->LV.AddColumn("Unique", "", 2000);
        form->LV.HideHeaders(true);
        for (const char *name :
             {"A & B", "one", "A name that is much longer than the list is wide, so"})
            form->LV.AddRow("A" + std::string(name), name, "M3U", {});
        form->LV.SelectOnly(0);
        ui::Show(*form);
        return host.WindowOf(*form);
    };
    const auto close = [&] {
        ui::Close(*form);
        ui::Retire(std::move(form));
    };
    CheckLook("frmLists", open, close);
}

} // namespace

} // namespace tests

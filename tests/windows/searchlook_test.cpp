// The look of the search window: empty, with rows, without its pane; in each shipped language,
// light and dark, in three fonts, at 100, 150 and 200 percent.
#include "browser/mainform.h"
#include "browser/webpanel.h"
#include "platform/machine.h"
#include "platform/qt/qtwindows.h"
#include "search/frmSearch.h"
#include "shell/globals.h"
#include "shell/language.h"
#include "tests/support/fakeports.h"
#include "tests/support/memorysettings.h"
#include "tests/support/scripteddesktop.h"
#include "tests/windows/bench.h"
#include "tests/windows/look.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <utility>

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

enum class Contents { Empty, Filled, PaneClosed };

// Some rows, of which three are selected; the panel names them.
void Fill(search::SearchForm &form)
{
    form.options.txtToFind.SetText("love ");
    search::cmdAll_Click(form, 1);
    constexpr struct {
        const char *key;
        int width;
    } kColumns[] = {{"Icon", 450},  {"Title", 2400},   {"Artist", 2400}, {"Album", 2400},
                    {"Year", 800},  {"Comment", 1200}, {"Genre", 900},   {"Label", 1000},
                    {"Path", 2000}, {"Non", 500}};
    for (const auto &[key, width] : kColumns)
        form.ListView.AddColumn(
            key,
            width == 450 || width == 500 ? "" : shell::GetLanguageText(key, key, "ColumnHeaders"),
            width);
    form.ListView.SetSubItemKeys(
        {"Title", "Artist", "Album", "Year", "Comment", "Genre", "Label", "Path"});
    for (int i = 0; i < 40; ++i) {
        const std::string title =
            i % 3 == 0 ? "Love & <b>Pain</b>" : "A title that is longer than its column is wide";
        const std::array<std::string_view, 8> cells = {title,  "\u00D1and\u00FA", "Live",
                                                       "1961", "no comment",      "Jazz",
                                                       "DISK", "/music/love.mp3"};
        form.ListView.AddRow("/" + std::to_string(i), "", "MP3", cells);
    }
    const ui::RowId rows[] = {1, 2, 3}; // few lines, which need no scroll bar
    form.ListView.SetSelection(rows, 1);
    browser::ShowSelectionSummary(form.ListView, form);
    form.SBar.SetText("Items", "40 " + shell::GetLanguageText("Item(s)", "Items", "Search"));
}

std::unique_ptr<search::frmSearchWindow> ShownWindow(Contents contents)
{
    search::SearchForm &form = search::frmSearch();
    search::LoadSearchForm(form);
    auto window = std::make_unique<search::frmSearchWindow>(form);
    window->Present();
    Settle();
    if (contents == Contents::PaneClosed)
        search::ShowOptionsPane(form, false);
    if (contents == Contents::Filled)
        Fill(form);
    return window;
}

TEST_F(SearchLookScaled, InEachLanguageAndTheme)
{
    std::unique_ptr<search::frmSearchWindow> window;
    const auto close = [&] {
        window.reset();
        search::ResetSearchForm();
        browser::ResetMainForm();
    };
    const std::pair<const char *, Contents> kinds[] = {{"frmSearch", Contents::Empty},
                                                       {"frmSearch_filled", Contents::Filled},
                                                       {"frmSearch_closed", Contents::PaneClosed}};
    for (const auto &[name, contents] : kinds) {
        const auto open = [&, shown = contents]() -> QWidget * {
            window = ShownWindow(shown);
            EXPECT_GE(Find(*window, "pctWebLine")->y(),
                      Find(*window, "lblWebFolder")->geometry().bottom());
            return window.get();
        };
        CheckLook(name, open, close);
    }
}

TEST_F(SearchLookScaled, InEachFontFamily)
{
    tests::InEachFontFamily([] {
        EXPECT_EQ(LookProblems(*ShownWindow(Contents::Filled)), std::vector<std::string>{});
        search::ResetSearchForm();
        browser::ResetMainForm();
    });
}

} // namespace

} // namespace tests

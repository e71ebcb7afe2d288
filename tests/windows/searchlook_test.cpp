// The look of the search window: empty, with rows, without its pane; in each shipped language,
// light and dark, in three fonts, at 100, 150 and 200 percent.
#include "browser/mainform.h"
#include "browser/webpanel.h"
#include "platform/machine.h"
#include "platform/qt/qtwindows.h"
#include "search/frmSearch.h"
#include "search/searchform.h"
#include "shell/globals.h"
#include "shell/language.h"
#include "tests/support/fakeports.h"
#include "tests/support/memorysettings.h"
#include "tests/support/scripteddesktop.h"
#include "tests/windows/bench.h"
#include "tests/windows/look.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>

namespace tests
{

namespace
{

class SearchLookScaled : public testing::Test
{
protected:
    SearchLookScaled()
    {
        platform::TheMachine().windows = &windows;
        search::RegisterSearchWidgets();
    }
    ~SearchLookScaled() override
    {
        search::ForgetSearch();
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

QWidget *ShownWindow(const ui::qt::FormWindows &host, Contents contents)
{
    search::ShowSearch();
    search::SearchForm &form = search::frmSearch();
    Settle();
    if (contents == Contents::PaneClosed)
        search::ShowOptionsPane(form, false);
    if (contents == Contents::Filled)
        Fill(form);
    return host.WindowOf(form);
}

TEST_F(SearchLookScaled, InEachLanguageAndTheme)
{
    const auto close = [] {
        search::ForgetSearch();
        browser::ResetMainForm();
    };
    const std::pair<const char *, Contents> kinds[] = {{"frmSearch", Contents::Empty},
                                                       {"frmSearch_filled", Contents::Filled},
                                                       {"frmSearch_closed", Contents::PaneClosed}};
    for (const auto &[name, contents] : kinds) {
        const auto open = [this, shown = contents] {
            QWidget *window = ShownWindow(host, shown);
            EXPECT_GE(Find(*window, "pctWebLine")->y(),
                      Find(*window, "lblWebFolder")->geometry().bottom());
            return window;
        };
        CheckLook(name, open, close);
    }
}

TEST_F(SearchLookScaled, InEachFontFamily)
{
    tests::InEachFontFamily([this] {
        EXPECT_EQ(LookProblems(*ShownWindow(host, Contents::Filled)), std::vector<std::string>{});
        search::ForgetSearch();
        browser::ResetMainForm();
        Settle(); // the closed window is deleted by the next event
    });
}

} // namespace

} // namespace tests

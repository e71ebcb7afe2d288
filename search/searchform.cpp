#include "search/searchform.h"

#include "browser/form/formpopup.h"
#include "browser/itemlist.h"
#include "browser/mainform.h"
#include "browser/webpanel.h"
#include "catalogue/adoclass.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "platform/waiting.h"
#include "runtime/error.h"
#include "runtime/numbers.h"
#include "shell/language.h"
#include "shell/settings.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace search
{

namespace
{

using catalogue::DataAccess;

constexpr std::string_view kSection = "Search";
constexpr std::string_view kPanel = "Items";

std::unique_ptr<SearchForm> &TheForm()
{
    static std::unique_ptr<SearchForm> form;
    return form;
}

void ShowCount(SearchForm &form, std::int64_t count)
{
    form.SBar.SetText(kPanel, std::to_string(count) + " " +
                                  shell::GetLanguageText("Item(s)", "Items", kSection));
}

int StoredPaneWidth()
{
    const std::string text = shell::GetSetting(shell::kWindowsSize, "Initial TreeView Width");
    const double width = runtime::LeadingNumber(text);
    return text.empty() || width > 1e6 ? -1 : std::max(0, runtime::RoundToInt32(width));
}

int WindowWidth(const SearchForm &form)
{
    return form.size.width + kFrameWidth;
}

LayoutState StateOf(const SearchForm &form)
{
    LayoutState s{browser::PlacesOf(form, form.ListView)};
    s.minimised = form.minimised;
    s.windowWidth = WindowWidth(form);
    s.windowHeight = form.size.height + kFrameHeight;
    s.scaleWidth = form.size.width;
    s.statusBarHeight = form.SBar.Height();
    s.webStyle = form.WebStyleOn;
    s.paneShown = form.pctCloseTree.Visible();
    s.storedPaneWidth = StoredPaneWidth();
    s.paneWidth = form.PaneWidth;
    s.closeTree = form.pctCloseTree.Place();
    s.closeTreeFrame = form.frmCloseTree.Place();
    s.closeLabel = form.lblCloseTree.Place();
    s.optionsWindow = form.options.window.Place();
    s.separator = form.Separator.Place();
    return s;
}

void Apply(SearchForm &form, const LayoutState &s)
{
    form.PaneWidth = s.paneWidth;
    form.pctCloseTree.SetPlace(s.closeTree);
    form.frmCloseTree.SetPlace(s.closeTreeFrame);
    form.lblCloseTree.SetPlace(s.closeLabel);
    form.pctOptions.SetPlace(s.options);
    form.pctOptions.SetVisible(s.optionsVisible);
    form.options.window.SetPlace(s.optionsWindow);
    form.options.txtToFind.SetWidth(s.inputWidth);
    form.options.cmbType.SetWidth(s.inputWidth);
    form.Separator.SetPlace(s.separator);
    form.SBar.SetWidth(kPanel, s.firstPanelWidth);
    browser::SetPlaces(form, form.ListView, s);
}

Criteria CriteriaOf(const SearchOptions &options)
{
    Criteria criteria;
    criteria.text = options.txtToFind.Text();
    criteria.type = options.cmbType.ListIndex();
    for (std::size_t i = 0; i < kFields.size(); ++i)
        criteria.ticked[i] = options.chkField[i].Checked();
    return criteria;
}

// Form_Load of the window and of its pane.
void Load(SearchForm &form)
{
    LoadOptions(form.options);
    form.WebStyleOn = true;
    form.PaneWidth = kDesignPaneWidth;
    form.WebItemType.SetCaption(
        shell::GetLanguageText("Type the criteria to look for.", "CriteriaToLookFor", kSection));
    form.WebItemName.SetCaption("");
    form.WebToolTip.SetCaption("");
    form.lblInfo.SetCaption("");
    ShowCount(form, 0);
    form.lblWebFolder.SetCaption(
        shell::GetLanguageText("Search Results", "SearchResults", kSection));
}

void BindWindow(SearchForm &form)
{
    form.onLoad = [&form] { Load(form); };
    form.onResize = [&form] {
        const int height = form.SBar.Height();
        form.SBar.SetPlace({0, form.size.height - height, form.size.width, height});
        if (form.Visible())
            ResizeSearchForm(form);
        else
            ReDrawForm(form);
    };
    form.onVisibility = [&form] {
        browser::frmMain().searchList = form.Visible() ? &form.ListView : nullptr;
        if (form.Visible())
            PrepareSearch(form);
    };
    // Another program may have changed the catalogue meanwhile.
    form.onActivate = [&form] { PrepareSearch(form); };
    form.onKeyDown = [&form](const ui::Key &key) {
        const bool isFind = key.code == 'F' && key.ctrl && !key.alt && !key.shift;
        if (isFind)
            GoToOptionsPane(form);
        return isFind;
    };
}

void BindEvents(SearchForm &form)
{
    browser::BindPanelEvents(form.ListView, form);
    form.ReDrawForm = [&form] { ReDrawForm(form); };
    form.lblCloseTree.onClick = [&form] { ShowOptionsPane(form, false); };
    form.Separator.pressed = [&form] { Separator_MouseDown(form); };
    form.Separator.moved = [&form](double mouseX) {
        Separator_MouseMove(form, static_cast<int>(mouseX));
    };
    form.Separator.released = [&form] { Separator_MouseUp(form); };
    form.ListView.onItemClick = [&form] {
        form.ObjClicked = &form.ListView;
        browser::SetPanelTextVisible(true, form);
        form.ShowSelectedItems.SetEnabled(true);
    };
    form.ListView.onDblClick = [&form] { browser::ItemClick(browser::frmMain(), form.ListView); };
    browser::SortAtHeaderClicks(form.ListView);
    form.tmrReadAhead.event = [&form] {
        constexpr std::int64_t kSliceMs = 8; // too short to be noticed
        const bool hasMore =
            form.Visible() && DataAccess != nullptr && DataAccess->ReadAheadForSearches(kSliceMs);
        form.tmrReadAhead.SetEnabled(hasMore);
    };
    form.options.cmdAll[0].onClick = [&form] { cmdAll_Click(form, 0); };
    form.options.cmdAll[1].onClick = [&form] { cmdAll_Click(form, 1); };
    form.options.cmdSearch.onClick = [&form] { cmdSearch_Click(form); };
}

// Waits until half a second after the nearest whole second. The wait also ends when the clock is
// set back, and at midnight, when the seconds of the day start again at 0.
void WaitForWholeSecond()
{
    platform::Clock &clock = *platform::TheMachine().clock;
    const double clicked = clock.SecondsOfDay();
    const double end = std::nearbyint(clicked) + 0.5;
    constexpr std::int64_t kLongestMs = 1500;
    static_cast<void>(platform::WaitUntil(
        [&] { return clock.SecondsOfDay() >= end || clock.SecondsOfDay() < clicked; }, kLongestMs));
}

} // namespace

SearchForm::SearchForm()
{
    BindWindow(*this);
    BindEvents(*this);
}

SearchForm &frmSearch()
{
    if (TheForm() == nullptr)
        TheForm() = std::make_unique<SearchForm>();
    return *TheForm();
}

void ForgetSearch()
{
    if (TheForm() != nullptr && ui::TheFormHost() != nullptr) {
        ui::Close(*TheForm());
        ui::Retire(std::move(TheForm()));
    }
    TheForm().reset();
}

void ShowSearch()
{
    SearchForm &form = frmSearch();
    ui::Show(form);
    if (form.pctCloseTree.Visible())
        form.options.txtToFind.SetFocus();
}

void PrepareSearch(SearchForm &form)
{
    form.tmrReadAhead.SetEnabled(true);
}

void ReDrawForm(SearchForm &form)
{
    LayoutState state = StateOf(form);
    if (state.minimised)
        return;
    PlanLayout(state);
    Apply(form, state);
    platform::TheDesktop().DoEvents();
}

void ResizeSearchForm(SearchForm &form)
{
    if (!form.Visible())
        return;
    try {
        form.PaneWidth = PaneWidthWithin(form.PaneWidth, WindowWidth(form));
        form.vsbBack.ResetValue();
        ReDrawForm(form);
        browser::ClearSearchPanel(form.ListView, form, form.ObjClicked != nullptr);
        browser::AdjustPanelScroll(form.ListView, form);
        platform::TheDesktop().DoEvents();
    } catch (const runtime::RuntimeError &) {
        // When a layout is impossible, everything stays where it is.
    }
}

void ShowOptionsPane(SearchForm &form, bool show)
{
    form.pctCloseTree.SetVisible(show);
    form.Separator.SetVisible(show);
    ReDrawForm(form);
    if (show && form.pctCloseTree.Width() != form.PaneWidth)
        ReDrawForm(form); // the title gets the width of the pane, which is visible again
}

void GoToOptionsPane(SearchForm &form)
{
    if (!form.pctCloseTree.Visible())
        ShowOptionsPane(form, true);
    form.options.txtToFind.SetFocus();
    form.options.txtToFind.SelectAll();
}

void Separator_MouseDown(SearchForm &form)
{
    form.separatorDragging = true;
}

void Separator_MouseMove(SearchForm &form, int mouseX)
{
    if (!form.separatorDragging)
        return;
    const int width = PaneWidthOfDrag(StateOf(form), mouseX);
    if (width == form.PaneWidth)
        return;
    form.PaneWidth = width;
    form.separatorDragging = false;
    form.separatorReleased = false;
    ReDrawForm(form);
    browser::AdjustPanelScroll(form.ListView, form);
    form.separatorDragging = !form.separatorReleased;
}

void Separator_MouseUp(SearchForm &form)
{
    form.separatorDragging = false;
    form.separatorReleased = true;
}

void cmdAll_Click(SearchForm &form, int index)
{
    for (ui::CheckBox &box : form.options.chkField)
        box.SetChecked(index != 0);
}

void cmdSearch_Click(SearchForm &form)
{
    const Search search = BuildSearch(CriteriaOf(form.options));
    form.options.txtToFind.SetText(search.text);
    if (!search.HasField()) {
        platform::TheDesktop().MessageBox("You didn't select any field to look into");
        return;
    }
    if (DataAccess == nullptr)
        return;
    const std::uint64_t number = ++form.searches;
    form.tmrReadAhead.SetEnabled(false); // this search comes first
    const auto records = catalogue::Records(
        catalogue::ExecuteWithValues(search.statement, catalogue::kSelect, search.params));
    if (DataAccess == nullptr || records == nullptr || number != form.searches)
        return; // the program has ended, or another search has begun, while events ran
    if (!DataAccess->Succeeded) {
        const std::string words = DataAccess->ErrorMessage;
        platform::TheDesktop().MessageBox(words);
    }
    const bool filled =
        browser::FillItemList(form.ListView, *records, [&form] { return form.Visible(); });
    PrepareSearch(form);
    if (!filled || !form.Visible())
        return;
    ShowCount(form, records->RecordCount());
    platform::TheDesktop().SetPointer(platform::Pointer::Normal);
    platform::TheDesktop().DoEvents();
}

void ListView_MouseDown(SearchForm &form, int button, bool shift, bool ctrl)
{
    constexpr int kLeft = 1, kRight = 2;
    if (button == kLeft && !shift && !ctrl) {
        form.ShowSelectedItems.SetEnabled(false);
    } else if (button == kLeft) {
        if (ctrl && !shift)
            WaitForWholeSecond();
        form.ShowSelectedItems.SetEnabled(true);
    } else if (button == kRight) {
        browser::OpenPopup(browser::frmMain(), form.ListView);
    }
}

} // namespace search

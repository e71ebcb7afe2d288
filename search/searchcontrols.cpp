#include "search/searchcontrols.h"

#include "shell/language.h"

#include <algorithm>
#include <string>

namespace search
{

namespace
{

constexpr std::string_view kSection = "Search";

constexpr ui::Caption kCaptions[] = {
    {"", kSection, "Search", "Search"},
    {"lblFolders", kSection, "Search", "Search"},
    {"lblCloseTree", kSection, "ClosePane", "Close the pane", ui::Caption::Of::ToolTip},
    {"lblCloseTree", kSection, "ClosePane", "Close the pane", ui::Caption::Of::SpokenName},
    {"lblToFind", kSection, "TextToFind", "Text to find"},
    {"lblTypeOfSearch", kSection, "TypeOfSearch", "Type of search"},
    {"cmdAll(0)", kSection, "UnCheckAll", "&Uncheck All"},
    {"cmdAll(1)", kSection, "CheckAll", "&Check All"},
    {"cmdSearch", kSection, "SearchButton", "&Search"},
    {"ListView", kSection, "SearchResults", "Search Results", ui::Caption::Of::SpokenName},
    {"Separator", "Spoken", "PaneSplitter", "Width of the search pane",
     ui::Caption::Of::SpokenName},
};

constexpr int kWidth = 11000, kHeight = 7200;          // twips, with the frame; see layout.h
constexpr int kLeastWidth = 6300, kLeastHeight = 3900; // inside the frame
constexpr int kMargin = 100;                           // beside the controls of the pane

// The row of the title is as high as the font and its button need.
void MeasureTitle(SearchControls &form)
{
    const ui::Rect button = form.lblCloseTree.NeededSize();
    const int side = std::max(button.width, button.height);
    const int line = form.SBar.NeededSize().height;
    const int height = std::max(line, side + 60);
    form.pctCloseTree.SetHeight(height);
    form.frmCloseTree.SetHeight(height);
    form.lblFolders.SetPlace({kMargin, 75, form.lblFolders.Width(), height - 75});
    form.lblCloseTree.SetPlace({form.lblCloseTree.Left(), 30, side, side});
    form.SBar.SetHeight(line);
}

void AddOptions(SearchControls &form)
{
    SearchOptions &options = form.options;
    options.window.bordered = false;
    options.cmbType.canNarrow = true;
    form.Add("frmSearchOptions", options.window, {.in = &form.pctOptions});
    const auto add = [&](std::string_view name, auto &control, ui::NamingLabel label = {}) {
        form.Add(name, control, {.in = &options.window, .label = label});
    };
    add("lblToFind", options.lblToFind);
    add("txtToFind", options.txtToFind, &options.lblToFind);
    add("lblTypeOfSearch", options.lblTypeOfSearch);
    add("cmbType", options.cmbType, &options.lblTypeOfSearch);
    for (std::size_t i = 0; i < options.chkField.size(); ++i)
        add("chkField(" + std::to_string(i) + ")", options.chkField[i]);
    for (std::size_t i = 0; i < options.cmdAll.size(); ++i)
        add("cmdAll(" + std::to_string(i) + ")", options.cmdAll[i]);
    add("cmdSearch", options.cmdSearch);
    ui::Layout column = ui::Column(
        {options.lblToFind, options.txtToFind, options.lblTypeOfSearch, options.cmbType});
    for (ui::CheckBox &box : options.chkField)
        column.parts.emplace_back(box);
    for (ui::Button &button : options.cmdAll)
        column.parts.emplace_back(button);
    column.parts.emplace_back(options.cmdSearch);
    column.parts.push_back(ui::Room());
    form.insides.push_back(ui::Inside(options.window, column, kMargin));
}

// The order is that of the Tab key.
void AddControls(SearchControls &form)
{
    form.pctCloseTree.bordered = form.frmCloseTree.bordered = false;
    form.lblFolders.bold = true;
    form.lblCloseTree.isFlat = true;
    form.pctOptions.scrolls = true;
    form.Add("pctCloseTree", form.pctCloseTree);
    form.Add("frmCloseTree", form.frmCloseTree, {.in = &form.pctCloseTree});
    form.Add("lblFolders", form.lblFolders, {.in = &form.frmCloseTree});
    form.Add("lblCloseTree", form.lblCloseTree, {.in = &form.frmCloseTree});
    form.Add("pctOptions", form.pctOptions);
    AddOptions(form);
    form.Add("pctBorders", form.pctBorders);
    form.Add("ListView", form.ListView);
    form.Add("Separator", form.Separator);
    form.Add("pctWeb", form.pctWeb);
    form.Add("SBar", form.SBar);
    form.Add("ShowSelectedItems", form.ShowSelectedItems);
    form.Add("tmrReadAhead", form.tmrReadAhead);
}

} // namespace

SearchControls::SearchControls() : Form("frmSearch", kCaptions)
{
    AddControls(*this);
    ListView.SetPlace({2730, -45, 5000, 4000});
    size = {0, 0, kWidth - kFrameWidth, kHeight - kFrameHeight};
    leastSize = {0, 0, kLeastWidth, kLeastHeight};
    resizable = hidesOnClose = isIndependent = true;
    acceptButton = &options.cmdSearch;
    acceptsIn = &pctOptions;
    firstFocus = &options.txtToFind;
    onMeasure = [this] { MeasureTitle(*this); };
}

void LoadOptions(SearchOptions &options)
{
    const auto text = [](std::string_view words, std::string_view key) {
        return shell::GetLanguageText(words, key, kSection);
    };
    options.cmbType.SetItems({text("Any Words (OR)", "AnyWords"),
                              text("All Words (AND)", "AllWords"),
                              text("Exact Phrase", "ExactPhrase")});
    options.cmbType.SetListIndex(kAnyWords);
    for (std::size_t i = 0; i < kFields.size(); ++i)
        options.chkField[i].SetCaption(
            shell::GetLanguageText(kFields[i], kFields[i], "ColumnHeaders"));
}

} // namespace search

#include "browser/webpanel.h"

#include "browser/itemkinds.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "runtime/utf8.h"
#include "shell/language.h"

#include <map>

namespace browser
{

namespace
{

constexpr int kInfoWidth = 2515; // twips
constexpr std::size_t kLongestFieldText =
    1200; // the most characters of a field that the panel shows

struct State {
    int InfoLabelTop = 0; // the top of lblInfo when ClearSearchPanel was first called
};
State &TheState()
{
    static State state;
    return state;
}

std::string PluralSelected()
{
    return shell::GetLanguageText("s selected.", "PluralSelected", "Status");
}

// The visible fields of a row: caption, text, an empty line.
std::string FieldsOfRow(const ui::KeyedList &list, ui::RowId row)
{
    std::string info;
    const auto &columns = list.Columns();
    for (std::size_t column = 1; column < columns.size(); ++column) {
        // The column with number column + 1 shows the sub-item with the number `column`.
        const std::string_view text = list.SubItemAt(row, static_cast<int>(column));
        if (text.empty() || columns[column].widthTwips <= 0)
            continue;
        const std::string_view shown = runtime::LeftCharacters(text, kLongestFieldText);
        info.append(columns[column].caption).append(": ").append(shown);
        if (shown.size() < text.size())
            info.append("\r ...");
        info.append("\r\n\r\n");
    }
    return info;
}

// What the panel shows for several selected rows; collected in one pass.
struct Selection {
    int count = 0;
    std::string names;
    std::string kind;
    std::vector<ui::RowId> rows;
};

// The words for the kinds, by marker, so that the language file is read once for each kind.
class TypeWords
{
public:
    const std::string &Of(std::string_view key, bool plural)
    {
        const ItemKind *kind = KindOfKey(key);
        const auto [at, isNew] = m_words.try_emplace({kind, plural});
        if (isNew)
            at->second = GetItemTypeText(key, plural);
        return at->second;
    }

private:
    std::map<std::pair<const ItemKind *, bool>, std::string> m_words;
};

Selection GatherSelection(const ui::KeyedList &list, TypeWords &words)
{
    Selection selection;
    for (int index = 0; index < list.Count(); ++index) {
        const ui::RowId row = list.RowAt(index);
        if (!list.IsSelected(row))
            continue;
        if (++selection.count > 1)
            selection.names.push_back('\r');
        selection.names.append(list.Text(row));
        const std::string &type = words.Of(list.Key(row), selection.count > 1);
        if (selection.kind.empty() || selection.kind != type)
            selection.kind = runtime::LowerText(type);
        selection.rows.push_back(row);
    }
    return selection;
}

// One line for each row. The kind is compared with its English word, so in another language each
// row shows its first sub-item.
std::string LinesOfSelection(const ui::KeyedList &list, const Selection &selection,
                             TypeWords &words)
{
    std::string lines = "\r";
    for (const ui::RowId row : selection.rows) {
        try {
            if (words.Of(list.Key(row), false) == "MP3 File") {
                const std::string_view artist = list.SubItem(row, "Artist");
                lines.append(artist).append(" - ").append(list.SubItem(row, "Title"));
            } else {
                lines.append(list.SubItemAt(row, 1));
            }
        } catch (const runtime::RuntimeError &) {
            // A row without these sub-items (an entry of a play list) shows its first one.
            lines.append(list.SubItemAt(row, 1));
        }
        lines.push_back('\r');
    }
    return lines;
}

void PlacePanelText(PanelForm &form)
{
    form.WebItemName.SetTop(form.pctWebLine.Top() + form.pctWebLine.Height() + 30);
    form.WebItemType.SetTop(form.WebItemName.Place().Bottom());
    form.WebToolTip.SetTop(form.WebItemType.Place().Bottom());
}

} // namespace

void ShowSelectedItemInfo(ui::KeyedList &list, PanelForm &form)
{
    const bool pending = form.ShowSelectedItems.Enabled();
    const ui::RowId row = pending ? ui::kNoRow : list.SelectedItem();
    std::string name;
    if (row != ui::kNoRow) {
        try {
            name = list.SubItem(row, "Title");
        } catch (const runtime::RuntimeError &) {
            // A row without a title has no name in the panel.
        }
    }
    form.WebItemName.SetCaption(ui::CaptionOf(name));
    form.WebItemType.SetCaption(
        row == ui::kNoRow ? "" : ui::CaptionOf(GetItemTypeText(list.Key(row), false)));
    form.WebToolTip.SetVisible(false);
    PlacePanelText(form);
    if (form.lblInfo.Caption().find(PluralSelected()) == std::string::npos) {
        form.lblInfo.SetWidth(kInfoWidth);
        form.lblInfo.SetTop(form.WebToolTip.Place().Bottom());
        form.lblInfo.SetCaption(row == ui::kNoRow ? "" : ui::CaptionOf(FieldsOfRow(list, row)));
    }
    if (pending)
        form.lblInfo.SetCaption("");
    AdjustPanelScroll(list, form);
}

void ShowSelectionSummary(ui::KeyedList &list, PanelForm &form)
{
    form.ShowSelectedItems.SetEnabled(false);
    TypeWords words;
    const Selection selection = GatherSelection(list, words);
    if (selection.count == 1)
        ShowSelectedItemInfo(list, form);
    if (selection.count == 0) {
        form.lblInfo.SetCaption("");
        AdjustPanelScroll(list, form);
    }
    if (selection.count < 2)
        return;
    form.WebToolTip.SetVisible(false);
    form.WebItemType.SetCaption(ui::CaptionOf(std::to_string(selection.count) + " " +
                                              selection.kind + PluralSelected() + "\r\r" +
                                              selection.names));
    form.lblInfo.SetCaption(ui::CaptionOf(LinesOfSelection(list, selection, words)));
    AdjustPanelScroll(list, form);
    form.WebItemName.SetCaption("");
}

void SetPanelTextVisible(bool show, PanelForm &form)
{
    form.lblInfo.SetVisible(show);
    form.WebItemName.SetVisible(show);
    if (!form.WebToolTip.Caption().empty())
        form.WebToolTip.SetVisible(show);
    if (!show)
        form.vsbBack.SetVisible(false);
    form.lblInfo.SetCaption("");
    form.WebItemName.SetCaption("");
    form.WebToolTip.SetCaption("");
    if (form.ReDrawForm)
        form.ReDrawForm();
}

void AdjustPanelScroll(ui::KeyedList &list, PanelForm &form)
{
    if (!form.WebStyleOn)
        return;
    const int bottom = form.lblInfo.Place().Bottom();
    if (bottom < form.pctWeb.Height()) {
        form.vsbBack.SetVisible(false);
        form.vsbBack.ResetValue();
        form.pctWeb.SetPlace({form.pctWeb.Left(), 0, form.pctWeb.Width(), list.Height()});
        return;
    }
    form.pctWeb.SetHeight(bottom);
    form.vsbBack.SetVisible(true);
    form.vsbBack.SetLeft(form.pctWeb.Width());
    const int max = ScrollMax(form.pctWeb.Height(), list.Height());
    form.vsbBack.SetMax(max);
    if (max > 0)
        form.vsbBack.SetLargeChange(runtime::RoundToInt16(max / 10.0));
    if (max / 100.0 > 0.3)
        form.vsbBack.SetSmallChange(runtime::RoundToInt16(max / 100.0));
}

PanelPlaces PlacesOf(const PanelForm &form, const ui::KeyedList &list)
{
    return {form.pctBorders.Place(),    form.pctWeb.Place(),
            form.pctWeb.Visible(),      list.Place(),
            form.vsbBack.Height(),      form.vsbBack.Max(),
            form.vsbBack.LargeChange(), form.vsbBack.SmallChange()};
}

void SetPlaces(PanelForm &form, ui::KeyedList &list, const PanelPlaces &places)
{
    form.pctBorders.SetPlace(places.borders);
    if (places.panel.top == 0)
        form.vsbBack.ResetValue();
    form.pctWeb.SetPlace(places.panel);
    form.pctWeb.SetVisible(places.panelVisible);
    if (!places.panelVisible)
        form.vsbBack.SetVisible(false);
    list.SetPlace(places.list);
    form.vsbBack.SetHeight(places.scrollHeight);
    form.vsbBack.SetMax(places.scrollMax);
    form.vsbBack.SetLargeChange(places.scrollLargeChange);
    form.vsbBack.SetSmallChange(places.scrollSmallChange);
    ui::Notify(form.placed);
}

void ClearSearchPanel(ui::KeyedList &list, PanelForm &form, bool clicked)
{
    int &infoLabelTop = TheState().InfoLabelTop;
    if (infoLabelTop == 0)
        infoLabelTop = form.lblInfo.Top();
    form.pctWeb.SetHeight(list.Height());
    form.WebItemName.SetCaption("");
    const std::string criteria =
        shell::GetLanguageText("Type the criteria to look for.", "CriteriaToLookFor", "Search");
    form.WebItemType.SetCaption(form.WebItemType.Caption() == criteria ? "" : criteria);
    form.WebToolTip.SetVisible(false);
    form.WebToolTip.SetCaption("");
    platform::TheMachine().desktop->DoEvents();
    SetPanelTextVisible(clicked, form);
    if (clicked) {
        form.WebToolTip.SetCaption("");
        const bool hasToolTip = !form.WebToolTip.Caption().empty();
        form.lblInfo.SetTop(hasToolTip ? form.WebToolTip.Place().Bottom() + 90 : infoLabelTop);
    }
    const bool lineVisible = form.pctWebLine.Visible();
    form.pctWebLine.SetVisible(false);
    form.pctWebLine.SetTop(form.lblWebFolder.Place().Bottom() + 30);
    form.pctWebLine.SetVisible(lineVisible);
    platform::TheMachine().desktop->DoEvents();
}

void ResetInfoLabelTop()
{
    TheState() = State{};
}

void LoadOtherImages(bool show, PanelForm &form)
{
    if (!form.ImgIcon.HasPicture()) {
        for (ui::Picture &other : form.ImgOthers)
            other.SetVisible(false);
        return;
    }
    int step = 0;
    for (ui::Picture &other : form.ImgOthers) {
        ++step;
        other.SetImage(form.ImgIcon.Image());
        other.SetPlace({form.ImgIcon.Left() + 100 * step, form.ImgIcon.Top() - 50 * step,
                        other.Width(), other.Height()});
        other.SetVisible(show);
    }
}

void DoubleAmpersands(ui::Label &label)
{
    // The flag prevents doubling again when this handler itself changes the caption.
    label.captionChanged = [&label, inProgress = false]() mutable {
        if (inProgress)
            return;
        inProgress = true;
        label.SetCaption(ui::CaptionOf(label.Caption()));
        inProgress = false;
    };
}

void BindPanelEvents(ui::KeyedList &list, PanelForm &form)
{
    DoubleAmpersands(form.lblWebFolder);
    form.lblWebFolder.captionChanged = [&form, doubled = form.lblWebFolder.captionChanged] {
        doubled();
        if (!form.lblWebFolder.Caption().empty())
            form.pctWebLine.SetTop(form.lblWebFolder.Place().Bottom());
    };
    form.vsbBack.valueChanged = [&form] {
        form.pctWeb.SetTop(-form.vsbBack.Value());
        if (form.focusList)
            form.focusList();
    };
    form.ShowSelectedItems.event = [&list, &form] { ShowSelectionSummary(list, form); };
}

} // namespace browser

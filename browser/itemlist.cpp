#include "browser/itemlist.h"

#include "browser/form/commandstate.h"
#include "browser/itemkinds.h"
#include "browser/webpanel.h"
#include "catalogue/adoclass.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/keyindex.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "shell/language.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <utility>

namespace browser
{

namespace
{

constexpr std::array<std::string_view, 8> kSubItems = {"Title",   "Artist", "Album", "Year",
                                                       "Comment", "Genre",  "Label", "Path"};
constexpr std::array<std::string_view, 8> kRecordFields = {
    "title", "Artist", "Album", "Year", "Comment", "Genre", "Disk_Label", "Path"};
constexpr std::array<int, 8> kWidths = {2400, 2400, 2400, 800, 1200, 900, 1000, 2000}; // twips
constexpr int kRowsBetweenYields = 50; // see FillItemList
// When there are many rows, the first ones are shown at once, the others when all have been added.
constexpr int kRowsShownFirst = 100, kRowsOfALongFill = 2000;

std::string ColumnCaption(std::string_view key)
{
    return shell::GetLanguageText(key, key, "ColumnHeaders");
}

void AddFileColumns(ui::KeyedList &list)
{
    list.ClearColumns();
    list.AddColumn("Icon", "", 450);
    for (std::size_t i = 0; i < kSubItems.size(); ++i)
        list.AddColumn(kSubItems[i], ColumnCaption(kSubItems[i]), kWidths[i]);
    list.AddColumn("Non", "", 500);
}

void ShowWarning(ui::KeyedList &list)
{
    const std::string words = shell::GetLanguageText("No items found.", "NoItemsFound", "Search");
    const std::string_view cell = words;
    list.AddRow("/0", "", "", {&cell, 1});
    list.ClearColumns();
    list.AddColumn("Icon", "", 450);
    list.AddColumn("Warning", shell::GetLanguageText("Warning", "Warning", "Search"), 2400);
}

// Adds the rows of a result, each path once.
class FileRows
{
public:
    FileRows(ui::KeyedList &list, catalogue::Recordset &records) : m_list(list), m_records(records)
    {
        for (std::size_t i = 0; i < kRecordFields.size(); ++i)
            m_columns[i] = records.FindField(kRecordFields[i]);
    }

    int Count() const { return m_count; }

    // Adds the current record. A search for any of several words can return a song several times.
    void Add()
    {
        for (std::size_t i = 0; i < m_columns.size(); ++i)
            m_texts[i] = m_columns[i] < 0 ? std::string_view{} : m_records.Text(m_columns[i]);
        if (!IsNewPath())
            return;
        const std::string key = "/" + std::to_string(m_count);
        std::array<std::string_view, kSubItems.size()> cells;
        std::copy(m_texts.begin(), m_texts.end(), cells.begin());
        m_list.AddRow(key, "", "MP3", cells);
        m_bytes += key.size();
        for (const std::string &text : m_texts)
            m_bytes += text.size();
        if (++m_count == kRowsMeasured)
            Reserve();
    }

private:
    static constexpr int kRowsMeasured = 1000; // from these the memory for all rows is estimated

    // The path in upper case is compared with those of the rows with the same hash, so that only
    // the list has a copy of the paths.
    bool IsNewPath()
    {
        m_upper.clear();
        runtime::AppendUpperText(m_texts.back(), m_upper);
        const std::uint32_t hash = runtime::KeyIndex::HashOf(m_upper);
        const auto pathOf = [this](std::int32_t row) {
            return runtime::UpperText(m_list.SubItemAt(row, kPathSubItem));
        };
        const bool isNew = m_paths.Find(m_upper, hash, pathOf) == runtime::KeyIndex::kNone;
        if (isNew)
            m_paths.Insert(m_list.Count(), hash);
        return isNew;
    }

    void Reserve()
    {
        const auto rows = static_cast<std::size_t>(m_records.RecordCount());
        constexpr std::size_t kCells =
            kSubItems.size() + 2; // key and main text are before the sub-items
        m_list.Reserve(rows, kCells, m_bytes / kRowsMeasured * (rows + rows / 8));
    }

    static constexpr int kPathSubItem = static_cast<int>(kSubItems.size());
    ui::KeyedList &m_list;
    catalogue::Recordset &m_records;
    std::array<int, kRecordFields.size()> m_columns{};
    std::array<std::string, kRecordFields.size()> m_texts;
    std::string m_upper;       // the current path
    runtime::KeyIndex m_paths; // of the rows, in upper case
    std::size_t m_bytes = 0;   // total length of the texts in all rows
    int m_count = 0;
};

void Yield()
{
    platform::TheMachine().desktop->DoEvents();
}

void SetPointer(platform::Pointer pointer)
{
    platform::TheMachine().desktop->SetPointer(pointer);
}

// What was clicked; read before anything changes.
struct Clicked {
    bool inTree = false;
    std::string key;
    std::string text;              // the text of a node, or the first sub-item of a row
    ui::NodeId node = ui::kNoNode; // the tree node of that key
    std::string fullPath;          // of that node; empty when there is none
};

Clicked ClickedOf(const MainForm &form, bool inTree, std::string_view key, std::string_view text)
{
    Clicked clicked;
    clicked.inTree = inTree;
    clicked.key = key;
    clicked.text = text;
    clicked.node = form.TV.Find(key);
    if (clicked.node != ui::kNoNode)
        clicked.fullPath = form.TV.FullPath(clicked.node);
    return clicked;
}

// Resets the flags that a click on a node's expander has set. Returns: true when this click must be
// ignored.
bool ConsumeTreeFlags(MainForm &form)
{
    const ui::NodeId node = form.TV.Selected();
    const bool collapsed = std::exchange(form.TreeJustCollapsed, false);
    if (collapsed && !form.TV.Children(node).empty() && !form.TV.Expanded(node))
        return true;
    return std::exchange(form.TreeJustExpanded, false);
}

// A click on the text of a node raises two events; the first one has already listed the rows.
bool IsShown(const MainForm &form, const Clicked &clicked)
{
    return clicked.inTree && form.TV.Gesture() != 0 && form.shown.gesture == form.TV.Gesture() &&
           form.shown.key == clicked.key && form.shown.clearCount == form.LV.ClearCount();
}

void RememberShown(MainForm &form, const Clicked &clicked)
{
    form.shown = {form.TV.Gesture(), clicked.key, form.LV.ClearCount(), form.ImgIcon.Image()};
}

void ShowPile(MainForm &form)
{
    form.ImgIcon.SetImage("MP3");
    LoadOtherImages(true, form);
}

// Empties the panel: as long as the timer is enabled, it shows no selection.
void ShowNoSelection(MainForm &form)
{
    form.ShowSelectedItems.SetEnabled(true);
    ShowSelectedItemInfo(form.LV, form);
    form.ShowSelectedItems.SetEnabled(false);
}

void OpenFile(ui::KeyedList &list)
{
    const OpenItem play = OpenerOf(kFileMarker);
    const std::string path = SelectedPath(list);
    if (!path.empty() && play)
        play(path, list);
}

void ShowGroup(MainForm &form, ui::KeyedList &target, const Clicked &clicked)
{
    // "By" comes before the field; the root has no field, and its name is its key.
    const std::size_t fieldAt = clicked.key == kRootKey ? 0 : 2;
    const std::string field = clicked.key.substr(std::min(fieldAt, clicked.key.size()));
    if (!IsShown(form, clicked)) {
        const ui::ListUpdate update(target);
        target.ClearColumns();
        target.AddColumn("Icon", "", 300);
        target.AddColumn("Title", ColumnCaption(field), 3200);
        ShowItems(form, clicked.node, target);
        RememberShown(form, clicked);
    }
    form.WEPath.SetCaption(clicked.fullPath);
    ShowPile(form);
    form.lblWebFolder.SetCaption("");
    ShowNoSelection(form);
    form.lblWebFolder.SetCaption(shell::GetFolderGroupCaption(field));
}

// Null when the program has ended, which can happen while events run during a click.
catalogue::RecordsetPtr RecordsOfValue(std::string_view field, std::string_view value)
{
    if (catalogue::DataAccess == nullptr)
        return nullptr;
    catalogue::Params params = catalogue::Value(std::string(value));
    if (field == "Path") {
        // The files in the folder itself, not those in its sub-folders.
        const std::string inFolder = std::string(value) + "%";
        params = std::vector<catalogue::Value>{inFolder, inFolder + runtime::PathSeparator + "%"};
    }
    return catalogue::Records(catalogue::DataAccess->ExecuteSQL("SEL_By" + std::string(field),
                                                                catalogue::kStoredSelect, params));
}

// Lists the files with a value. Returns: false when a later click has filled the list meanwhile.
bool ShowValue(MainForm &form, std::string_view field, const Clicked &clicked)
{
    catalogue::RecordsetPtr records;
    const bool shown = IsShown(form, clicked);
    if (!shown)
        records = RecordsOfValue(field, WithoutMarker(clicked.key));
    if (!clicked.inTree) {
        form.lblWebFolder.SetCaption(clicked.text);
        form.WEPath.SetCaption(clicked.fullPath);
    }
    if (records != nullptr && !FillItemList(form.LV, *records))
        return false;
    if (!shown)
        RememberShown(form, clicked);
    ShowNoSelection(form);
    if (!clicked.inTree)
        ShowPile(form);
    return true;
}

// Lists the entries of a play list. Returns: false when a later click has filled the list
// meanwhile.
bool ShowPlayList(MainForm &form, const Clicked &clicked)
{
    const OpenItem show = OpenerOf(KindOfField("List").marker);
    if (!show) {
        const ui::ListUpdate update(form.LV);
        form.LV.ClearColumns();
        form.LV.ClearRows();
        return true;
    }
    if (IsShown(form, clicked)) {
        // The pile of icons is hidden when the list could be opened, else shown.
        form.ImgIcon.SetImage(form.shown.image);
        LoadOtherImages(form.shown.image != "M3U", form);
        return true;
    }
    const std::uint64_t clearCount = form.LV.ClearCount();
    const MainForm::Shown before = form.shown;
    show(std::string(WithoutMarker(clicked.key)), form.LV);
    if (form.shown != before)
        return false;
    RememberShown(form, clicked);
    if (form.LV.ClearCount() != clearCount)
        ShowNoSelection(form);
    return true;
}

// The column whose value is the same in all rows is hidden; for a folder, the paths come first.
void AdjustColumns(MainForm &form, std::string_view field)
{
    try {
        if (field == "Path")
            form.LV.SetColumnPosition("Path", 2);
        else
            form.LV.SetColumnWidth(field, 0);
    } catch (const runtime::RuntimeError &) {
        // The view with the warning and a play list have no such column.
    }
}

void HandleClick(MainForm &form, ui::KeyedList &list, const Clicked &clicked)
{
    const ItemKind *kind = KindOfKey(clicked.key);
    if (clicked.inTree)
        form.lblWebFolder.SetCaption(clicked.text);
    const ui::NodeId selected = form.TV.Selected();
    if (selected != ui::kNoNode && !form.TV.Key(selected).starts_with("By"))
        ShowPile(form);
    if (kind == nullptr || kind->field.empty()) {
        if (clicked.key.starts_with(kFileMarker))
            OpenFile(list);
        else
            ShowGroup(form, list, clicked);
        return;
    }
    const bool isShown =
        kind->field == "List" ? ShowPlayList(form, clicked) : ShowValue(form, kind->field, clicked);
    if (!isShown)
        return;
    const std::uint64_t clearCount = form.LV.ClearCount();
    SetPointer(platform::Pointer::Normal);
    Yield();
    if (form.LV.ClearCount() != clearCount)
        return;
    AdjustColumns(form, kind->field);
    form.WEPath.SetCaption(clicked.fullPath);
}

} // namespace

void ItemClick(MainForm &form, ui::KeyedTree &tree)
{
    SetFileCommandsEnabled(form, false);
    const ui::NodeId node = tree.Selected();
    if (node == ui::kNoNode || ConsumeTreeFlags(form))
        return;
    // A path without a separator is in the root.
    if (tree.FullPath(node).find(tree.pathSeparator) == std::string::npos)
        return;
    HandleClick(form, form.LV, ClickedOf(form, true, tree.Key(node), tree.Text(node)));
}

void ItemClick(MainForm &form, ui::KeyedList &list)
{
    SetFileCommandsEnabled(form, false);
    const ui::RowId row = list.SelectedItem();
    if (row == ui::kNoRow)
        return;
    HandleClick(form, list, ClickedOf(form, false, list.Key(row), list.SubItemAt(row, 1)));
}

void ShowItems(MainForm &form, ui::NodeId node, ui::KeyedList &list)
{
    if (node == ui::kNoNode || form.TV.Key(node) == "Configuration")
        return;
    const ui::ListUpdate update(list);
    list.ClearRows();
    list.SetSubItemKeys({"Title"});
    for (const ui::NodeId child : form.TV.Children(node)) {
        const std::string_view text = form.TV.Text(child);
        list.AddRow(form.TV.Key(child), "", form.TV.Image(child), {&text, 1});
    }
}

bool FillItemList(ui::KeyedList &list, catalogue::Recordset &records,
                  const std::function<bool()> &ownerVisible)
{
    auto update = std::make_unique<ui::ListUpdate>(list);
    list.ClearRows();
    AddFileColumns(list);
    if (records.AtEnd()) {
        ShowWarning(list);
        return true;
    }
    list.SetSubItemKeys({kSubItems.begin(), kSubItems.end()});
    const std::uint64_t clearCount = list.ClearCount();
    records.MoveFirst();
    SetPointer(platform::Pointer::Hourglass);
    Yield();
    try {
        FileRows rows(list, records);
        bool firstShown = records.RecordCount() <= kRowsOfALongFill;
        for (; !records.AtEnd() && list.ClearCount() == clearCount; records.MoveNext()) {
            rows.Add();
            if (rows.Count() == kRowsShownFirst && !std::exchange(firstShown, true)) {
                update.reset();
                Yield();
                update = std::make_unique<ui::ListUpdate>(list);
            }
            if (rows.Count() % kRowsBetweenYields == 0)
                Yield();
            if (ownerVisible && !ownerVisible()) {
                SetPointer(platform::Pointer::Normal);
                return false;
            }
        }
    } catch (const runtime::RuntimeError &) { // a record that cannot be read
        SetPointer(platform::Pointer::Normal);
        throw;
    }
    if (list.ClearCount() != clearCount)
        return false;
    SetPointer(platform::Pointer::Normal);
    Yield();
    return list.ClearCount() == clearCount;
}

void BindListEvents(MainForm &form)
{
    const auto selectionMoved = [&form] {
        SetPanelTextVisible(true, form);
        form.ShowSelectedItems.SetEnabled(true);
    };
    form.LV.onClick = [&form, selectionMoved] {
        const ui::RowId row = form.LV.SelectedItem();
        SetFileCommandsEnabled(form,
                               row != ui::kNoRow && form.LV.Key(row).starts_with(kFileMarker));
        selectionMoved();
    };
    form.LV.onItemClick = selectionMoved;
    form.LV.onDblClick = [&form] { ItemClick(form, form.LV); };
    form.LV.onHintClick = [&form] { RunCommand(form, "submnuPreferences"); };
    SortAtHeaderClicks(form.LV);
}

void SortAtHeaderClicks(ui::KeyedList &list)
{
    list.onColumnClick = [&list](int column) {
        const bool sorted = list.SortKey() == column - 1;
        list.SetSort(column - 1, sorted != list.Descending());
    };
}

std::string SelectedPath(const ui::KeyedList &list)
{
    const ui::RowId row = list.SelectedItem();
    return row == ui::kNoRow ? std::string() : PathOfRow(list, row);
}

std::string PathOfRow(const ui::KeyedList &list, ui::RowId row)
{
    if (!list.Key(row).starts_with(kFileMarker))
        return {};
    try {
        return std::string(list.SubItem(row, "Path"));
    } catch (const runtime::RuntimeError &) {
        return {};
    }
}

} // namespace browser

// ui/controls/inputs/keyedlist.h - a list of rows in columns: columns by key, rows by key,
// sub-items by number or by key, sorting, multiple selection. Texts (UTF-8) are kept in one block.
#pragma once

#include "runtime/keyindex.h"
#include "ui/controls/area.h"
#include "ui/controls/inputs/update.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ui
{

// The number of a row, from 0 in the order of adding; sorting does not change it. It is valid until
// the rows are cleared or one is removed.
using RowId = std::int32_t;
inline constexpr RowId kNoRow = -1;

struct ListColumn {
    std::string key;
    std::string caption;
    int widthTwips = 0;
    int position = 0; // one-based, from left to right
};

// What has changed in a list, for the window.
enum class ListChange { Columns, Order, Selection, Cells };

class KeyedList : public Area
{
public:
    // --- Columns. The one-based column c shows the main text of a row for c = 1, else sub-item c -
    // 1, also after it was moved to another position.
    void ClearColumns();
    // Errors: kDuplicateKey when the key exists.
    void AddColumn(std::string_view key, std::string_view caption, int widthTwips);
    const std::vector<ListColumn> &Columns() const { return m_columns; }
    // Errors of both: kSubscriptOutOfRange for an unknown key.
    void SetColumnWidth(std::string_view key, int widthTwips);
    void SetColumnPosition(std::string_view key, int position); // the others fill the gap

    // The columns stay when their headers are hidden.
    bool HeadersHidden() const { return m_headersHidden; }
    void HideHeaders(bool hide) { Assign(m_headersHidden, hide); }

    // --- Rows.
    void ClearRows(); // also removes the keys of the sub-items and the selection
    // Names sub-items 1, 2, ... of every row.
    void SetSubItemKeys(std::vector<std::string> keys) { m_subItemKeys = std::move(keys); }
    // Adds a row. Errors: kDuplicateKey when the key exists.
    RowId AddRow(std::string_view key, std::string_view text, std::string_view image,
                 std::span<const std::string_view> subItems);
    // Reserves memory for `rows` rows of `cells` texts each (key, main text, sub-items), `bytes` in
    // total.
    void Reserve(std::size_t rows, std::size_t cells, std::size_t bytes);
    // Errors: kSubscriptOutOfRange for an unknown row.
    void RemoveRow(RowId row);
    RowId Count() const { return static_cast<RowId>(m_rows.size()); }
    RowId Find(std::string_view key) const; // kNoRow when absent

    // Texts of one row. The views are valid until the rows change.
    // Errors: kSubscriptOutOfRange for an unknown row or sub-item key.
    std::string_view Key(RowId row) const { return Cell(row, 0); }
    std::string_view Text(RowId row) const { return Cell(row, 1); }
    std::string_view Image(RowId row) const { return m_images[At(row).image]; }
    int SubItemCount(RowId row) const { return static_cast<int>(At(row).cells) - 2; }
    std::string_view SubItem(RowId row, std::string_view key) const;
    // By one-based number; empty when the row has fewer sub-items.
    std::string_view SubItemAt(RowId row, int number) const;
    // Changes one text. When the rows are sorted by this sub-item, they are sorted again.
    void SetSubItem(RowId row, std::string_view key, std::string_view text);

    // A dimmed row is for something that does not exist now; `DimmedTip` says what.
    bool IsDimmed(RowId row) const { return At(row).dimmed; }
    void SetDimmed(RowId row, bool dimmed);
    const std::string &DimmedTip() const { return m_dimmedTip; }
    void SetDimmedTip(std::string_view tip) { m_dimmedTip = tip; }

    // How often the rows have been cleared. After a yield a procedure compares it to see whether
    // the rows are new.
    std::uint64_t ClearCount() const { return m_clearCount; }

    // --- Order. The rows are always sorted by sub-item `SortKey()` (0 = main text); equal rows
    // stay in the order of adding. The order of texts is that of runtime/collation.h. A display
    // index is the zero-based place of a row in that order. RowAt expects a valid one; DisplayIndex
    // fails with kSubscriptOutOfRange for an unknown row.
    int SortKey() const { return m_sortKey; }
    bool Descending() const { return m_descending; }
    void SetSort(int sortKey, bool descending);
    RowId RowAt(int displayIndex) const { return m_order[static_cast<std::size_t>(displayIndex)]; }
    int DisplayIndex(RowId row) const;

    // --- Selection. `SelectedItem` is the row with the focus, kNoRow when there is none; others
    // can be selected too.
    RowId SelectedItem() const { return m_focus; }
    bool IsSelected(RowId row) const { return At(row).selected; }
    int SelectedCount() const { return m_selectedCount; }
    void SelectOnly(RowId row);
    // The user has changed the selection; `focus` is one of the rows or kNoRow.
    void SetSelection(std::span<const RowId> selected, RowId focus);

    // From the first Begin to the last End the window shows the former rows and reads nothing;
    // sorting is done at the end. Use ListUpdate.
    void BeginUpdate();
    void EndUpdate();
    bool Updating() const { return m_updating > 0; }

    // A text that the window shows when there are no rows; empty for none. With a `buttonCaption` a
    // button is shown below it; a click on it raises `onHintClick`.
    const std::string &Hint() const { return m_hint; }
    const std::string &HintButton() const { return m_hintButton; }
    void SetHint(std::string_view hint, std::string_view buttonCaption = {})
    {
        Assign(m_hintButton, std::string(buttonCaption));
        Assign(m_hint, std::string(hint));
    }
    std::function<void()> onHintClick;

    // The events. A column's number is one-based.
    std::function<void()> onClick, onDblClick, onItemClick;
    std::function<void(int column)> onColumnClick;

    // For the widget: the rows are about to change; they have changed (all numbers are new);
    // something else has changed.
    std::function<void()> rowsAboutToChange, rowsChanged;
    std::function<void(ListChange)> listChanged;

private:
    struct Row {
        std::uint32_t firstCell; // in m_cells: key, main text, sub-items
        std::uint32_t cells;
        std::uint8_t image;
        bool selected;
        bool dimmed;
    };
    struct Piece {
        std::uint64_t at; // offset in m_block
        std::uint32_t length;
    };

    const Row &At(RowId row) const;
    std::string_view Cell(RowId row, std::uint32_t number) const;
    void AppendCell(std::string_view text);
    std::uint8_t ImageNumber(std::string_view key);
    ListColumn &ColumnByKey(std::string_view key);
    int SubItemNumber(std::string_view key) const;
    void Sort();
    void NotifyOf(ListChange change);

    std::vector<ListColumn> m_columns;
    std::vector<std::string> m_subItemKeys;
    std::string m_block;
    std::vector<Piece> m_cells;
    std::vector<Row> m_rows;
    std::vector<RowId> m_order;
    std::vector<std::string> m_images{std::string()};
    runtime::KeyIndex m_index;
    std::string m_hint, m_hintButton, m_dimmedTip;
    bool m_headersHidden = false;
    RowId m_focus = kNoRow;
    int m_selectedCount = 0;
    int m_sortKey = 0;
    bool m_descending = false;
    int m_updating = 0;
    std::uint64_t m_clearCount = 0;
};

using ListUpdate = Update<KeyedList>;

} // namespace ui

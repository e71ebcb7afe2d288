#include "ui/controls/inputs/keyedlist.h"

#include "runtime/collation.h"
#include "runtime/error.h"

#include <algorithm>
#include <numeric>

namespace ui
{

void KeyedList::ClearColumns()
{
    m_columns.clear();
    NotifyOf(ListChange::Columns);
}

void KeyedList::AddColumn(std::string_view key, std::string_view caption, int widthTwips)
{
    for (const ListColumn &column : m_columns)
        if (column.key == key)
            throw runtime::RuntimeError(runtime::kDuplicateKey);
    m_columns.push_back({std::string(key), std::string(caption), widthTwips,
                         static_cast<int>(m_columns.size()) + 1});
    NotifyOf(ListChange::Columns);
}

ListColumn &KeyedList::ColumnByKey(std::string_view key)
{
    for (ListColumn &column : m_columns)
        if (column.key == key)
            return column;
    throw runtime::RuntimeError(runtime::kSubscriptOutOfRange);
}

void KeyedList::SetColumnWidth(std::string_view key, int widthTwips)
{
    ColumnByKey(key).widthTwips = widthTwips;
    NotifyOf(ListChange::Columns);
}

void KeyedList::SetColumnPosition(std::string_view key, int position)
{
    ListColumn &moved = ColumnByKey(key);
    const int from = moved.position;
    const int to = std::clamp(position, 1, static_cast<int>(m_columns.size()));
    for (ListColumn &column : m_columns) {
        if (column.position > from && column.position <= to)
            --column.position;
        else if (column.position < from && column.position >= to)
            ++column.position;
    }
    moved.position = to;
    NotifyOf(ListChange::Columns);
}

void KeyedList::ClearRows()
{
    ListUpdate update(*this);
    m_subItemKeys.clear();
    m_block.clear();
    m_cells.clear();
    m_rows.clear();
    m_order.clear();
    m_index.Clear();
    m_focus = kNoRow;
    m_selectedCount = 0;
    ++m_clearCount;
}

RowId KeyedList::AddRow(std::string_view key, std::string_view text, std::string_view image,
                        std::span<const std::string_view> subItems)
{
    const std::uint32_t hash = runtime::KeyIndex::HashOf(key);
    if (m_index.Find(key, hash, [this](RowId row) { return Key(row); }) != kNoRow)
        throw runtime::RuntimeError(runtime::kDuplicateKey);
    ListUpdate update(*this);
    const RowId row = Count();
    m_rows.push_back({static_cast<std::uint32_t>(m_cells.size()),
                      static_cast<std::uint32_t>(subItems.size() + 2), ImageNumber(image), false,
                      false});
    AppendCell(key);
    AppendCell(text);
    for (const std::string_view subItem : subItems)
        AppendCell(subItem);
    m_order.push_back(row);
    m_index.Insert(row, hash);
    return row;
}

void KeyedList::AppendCell(std::string_view text)
{
    m_cells.push_back({m_block.size(), static_cast<std::uint32_t>(text.size())});
    m_block.append(text);
}

void KeyedList::Reserve(std::size_t rows, std::size_t cells, std::size_t bytes)
{
    m_rows.reserve(rows);
    m_order.reserve(rows);
    m_cells.reserve(rows * cells);
    m_block.reserve(bytes);
}

void KeyedList::RemoveRow(RowId row)
{
    static_cast<void>(At(row));
    ListUpdate update(*this);
    m_selectedCount -= IsSelected(row) ? 1 : 0;
    m_rows.erase(m_rows.begin() + row);
    m_order.resize(m_rows.size());
    m_focus = m_focus == row ? kNoRow : m_focus > row ? m_focus - 1 : m_focus;
    m_index.Clear();
    for (RowId left = 0; left < Count(); ++left)
        m_index.Insert(left, runtime::KeyIndex::HashOf(Key(left)));
}

RowId KeyedList::Find(std::string_view key) const
{
    return m_index.Find(key, runtime::KeyIndex::HashOf(key),
                        [this](RowId row) { return Key(row); });
}

const KeyedList::Row &KeyedList::At(RowId row) const
{
    if (row < 0 || row >= Count())
        throw runtime::RuntimeError(runtime::kSubscriptOutOfRange);
    return m_rows[static_cast<std::size_t>(row)];
}

std::string_view KeyedList::Cell(RowId row, std::uint32_t number) const
{
    const Row &at = At(row);
    if (number >= at.cells)
        return {};
    const Piece &piece = m_cells[at.firstCell + number];
    return std::string_view(m_block).substr(piece.at, piece.length);
}

int KeyedList::SubItemNumber(std::string_view key) const
{
    const auto found = std::find(m_subItemKeys.begin(), m_subItemKeys.end(), key);
    if (found == m_subItemKeys.end())
        throw runtime::RuntimeError(runtime::kSubscriptOutOfRange);
    return static_cast<int>(found - m_subItemKeys.begin()) + 1;
}

std::string_view KeyedList::SubItem(RowId row, std::string_view key) const
{
    return SubItemAt(row, SubItemNumber(key));
}

std::string_view KeyedList::SubItemAt(RowId row, int number) const
{
    return number < 1 ? std::string_view{} : Cell(row, static_cast<std::uint32_t>(number) + 1);
}

void KeyedList::SetSubItem(RowId row, std::string_view key, std::string_view text)
{
    const int number = SubItemNumber(key);
    if (number > SubItemCount(row))
        throw runtime::RuntimeError(runtime::kSubscriptOutOfRange);
    const auto write = [&] {
        m_cells[At(row).firstCell + static_cast<std::uint32_t>(number) + 1] = {
            m_block.size(), static_cast<std::uint32_t>(text.size())};
        m_block.append(text);
    };
    if (number == m_sortKey) {
        const ListUpdate update(*this);
        write();
    } else {
        write();
        NotifyOf(ListChange::Cells);
    }
}

void KeyedList::SetDimmed(RowId row, bool dimmed)
{
    if (IsDimmed(row) == dimmed)
        return;
    m_rows[static_cast<std::size_t>(row)].dimmed = dimmed;
    NotifyOf(ListChange::Cells);
}

std::uint8_t KeyedList::ImageNumber(std::string_view key)
{
    const auto number = std::find(m_images.begin(), m_images.end(), key) - m_images.begin();
    if (static_cast<std::size_t>(number) == m_images.size())
        m_images.emplace_back(key);
    return static_cast<std::uint8_t>(number);
}

void KeyedList::SetSort(int sortKey, bool descending)
{
    m_sortKey = sortKey;
    m_descending = descending;
    if (Updating())
        return;
    Sort();
    NotifyOf(ListChange::Order);
}

// Each row's sort key is made once, not for each comparison.
void KeyedList::Sort()
{
    std::iota(m_order.begin(), m_order.end(), 0);
    const auto text = [&](RowId row) {
        return Cell(row, static_cast<std::uint32_t>(m_sortKey) + 1);
    };
    std::vector<std::string> keys;
    keys.reserve(m_rows.size());
    const auto order = [&](RowId first, RowId second) {
        return runtime::CollateKeyed(keys[static_cast<std::size_t>(first)], text(first),
                                     keys[static_cast<std::size_t>(second)], text(second));
    };
    bool allEqual = true;
    for (const RowId row : m_order) {
        keys.push_back(runtime::SortKey(text(row)));
        allEqual = allEqual && order(row, 0) == 0;
    }
    if (allEqual)
        return;
    std::stable_sort(m_order.begin(), m_order.end(), [&](RowId first, RowId second) {
        return m_descending ? order(second, first) < 0 : order(first, second) < 0;
    });
}

int KeyedList::DisplayIndex(RowId row) const
{
    static_cast<void>(At(row));
    return static_cast<int>(std::find(m_order.begin(), m_order.end(), row) - m_order.begin());
}

void KeyedList::SelectOnly(RowId row)
{
    SetSelection({&row, 1}, row);
}

void KeyedList::SetSelection(std::span<const RowId> selected, RowId focus)
{
    for (Row &row : m_rows)
        row.selected = false;
    m_selectedCount = 0;
    for (const RowId row : selected) {
        static_cast<void>(At(row));
        m_selectedCount += IsSelected(row) ? 0 : 1;
        m_rows[static_cast<std::size_t>(row)].selected = true;
    }
    m_focus = focus;
    NotifyOf(ListChange::Selection);
}

void KeyedList::BeginUpdate()
{
    if (m_updating == 0 && rowsAboutToChange)
        rowsAboutToChange(); // the old rows can still be read
    ++m_updating;
}

void KeyedList::EndUpdate()
{
    if (--m_updating > 0)
        return;
    Sort();
    if (rowsChanged)
        rowsChanged();
}

void KeyedList::NotifyOf(ListChange change)
{
    if (listChanged && !Updating())
        listChanged(change);
}

} // namespace ui

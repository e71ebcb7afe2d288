// tests/browser/listselection.h - selects rows of a list, as a user does.
#pragma once

#include "ui/controls/inputs/keyedlist.h"

#include <numeric>
#include <vector>

namespace tests
{

// Selects all rows; the last one gets the focus.
inline void SelectAll(ui::KeyedList &list)
{
    std::vector<ui::RowId> rows(static_cast<std::size_t>(list.Count()));
    std::iota(rows.begin(), rows.end(), 0);
    list.SetSelection(rows, rows.empty() ? ui::kNoRow : rows.back());
}

} // namespace tests

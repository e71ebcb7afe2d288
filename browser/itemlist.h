// browser/itemlist.h - the contents of the list LV: the values of a group, the files of a value, a
// play list, or a warning; and the procedure that handles all clicks in the tree and in lists.
#pragma once

#include "browser/mainform.h"
#include "catalogue/recordset.h"

#include <functional>

namespace browser
{

// Handles a click on the selected node of the tree, or a double click on the selected row of a
// list. The row of a file is played; any other item is listed in LV. Yields while it fills the
// list.
void ItemClick(MainForm &form, ui::KeyedTree &tree);
void ItemClick(MainForm &form, ui::KeyedList &list);

// The view with one field: a row for each child of the node, with the child's key, text and image.
void ShowItems(MainForm &form, ui::NodeId node, ui::KeyedList &list);

// The view of files: sets the columns and adds one row for each path (compared in upper case) with
// the keys "/0", "/1", ...; shows the warning when the result is empty. Yields every 50 rows. If
// `ownerVisible` is given (search window), it is called after each row, and false ends the filling.
// Returns: false when the filling was ended in that way, or because the rows were cleared in a
// yield.
// Errors: those of a record that cannot be read; the rows before it stay.
bool FillItemList(ui::KeyedList &list, catalogue::Recordset &records,
                  const std::function<bool()> &ownerVisible = {});

// Sets the handlers of the list's events: Click, ItemClick, DblClick, ColumnClick.
void BindListEvents(MainForm &form);

// Sets the handler of ColumnClick: a click on a header sorts the rows by that column, a second one
// in the opposite order.
void SortAtHeaderClicks(ui::KeyedList &list);

// The path of a file's row; empty for any other row (a folder, the warning).
std::string PathOfRow(const ui::KeyedList &list, ui::RowId row);

// The path of the selected row, if it is a file's; else empty (no selection, a folder, the
// warning).
std::string SelectedPath(const ui::KeyedList &list);

} // namespace browser

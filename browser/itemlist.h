// browser/itemlist.h - what the list LV shows: the values of a group, the files of a value, a play
// list, or a warning; and the one routine that handles clicks in tree and lists.
#pragma once

#include "browser/mainform.h"
#include "catalogue/recordset.h"

#include <functional>

namespace browser
{

// A click on the tree's selected node, or a double click on a list's selected row. A row of a file
// is played; anything else is listed in LV. Yields while it fills.
void ItemClick(MainForm &form, ui::KeyedTree &tree);
void ItemClick(MainForm &form, ui::KeyedList &list);

// The one-field view: a row for each child of the node, with the child's key, text and image.
void ShowItems(MainForm &form, ui::NodeId node, ui::KeyedList &list);

// The file view: columns, and one row per path (compared in upper case) with the keys "/0", "/1",
// ...; for an empty result the warning view. Yields every 50 rows. `ownerVisible` is asked after
// each row where given (the search window): false ends the fill.
// Returns: false when the fill was ended, by that or because the rows were cleared in a yield.
// Errors:  those of a record that cannot be read; the rows before it stay.
bool FillItemList(ui::KeyedList &list, catalogue::Recordset &records,
                  const std::function<bool()> &ownerVisible = {});

// Binds the list's events: Click, ItemClick, DblClick, ColumnClick.
void BindListEvents(MainForm &form);

// The path of a file's row; empty for any other (a folder, the warning row).
std::string PathOfRow(const ui::KeyedList &list, ui::RowId row);

// The path of a list's selected file row; empty when there is none (no selection, a folder, the
// warning row).
std::string SelectedPath(const ui::KeyedList &list);

} // namespace browser

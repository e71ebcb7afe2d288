// browser/fieldtree.h - the tree TV: the root, a group for each field, a node for each value in the
// catalogue.
#pragma once

#include "browser/itemkinds.h"
#include "browser/mainform.h"

#include <string_view>

namespace browser
{

// Builds the whole tree again when the field name is empty; otherwise updates the group and values
// of that field.
// `fieldName`: one of shell::FieldNames. Statements let events run.
// Errors: kDuplicateKey when a group exists that is to be added, kSubscriptOutOfRange when one is
// missing that is to be removed.
void LoadTreeView(MainForm &form, std::string_view fieldName);

// Adds the value nodes of all loaded fields, or of `fieldName`. `sql` is the statement without its
// ORDER BY. Each field is named on the splash's progress line. A value that has a node already and
// a statement that fails are skipped; the reason of the last failure is then in
// `form.catalogueError`.
void FillFieldTree(MainForm &form, std::string_view sql, std::string_view fieldName);

// submnuRefreshTree: collapses the root, then builds the tree again.
void RefreshTree(MainForm &form);

// Sets the handlers of the tree's events: Collapse, Expand, NodeClick, Click.
void BindTreeEvents(MainForm &form);

} // namespace browser

// browser/fieldtree.h - the catalogue by field in the tree TV: root, groups, one node for each
// value.
#pragma once

#include "browser/itemkinds.h"
#include "browser/mainform.h"

#include <string_view>

namespace browser
{

// Rebuilds the whole tree for an empty field name; else brings that field's group and values up to
// date. Errors: kDuplicateKey when a group that the tree has is added again, kSubscriptOutOfRange
// when one that it does not have is removed.
void LoadTreeView(MainForm &form, std::string_view fieldName);

// Fills the value nodes of all loaded fields, or of `fieldName`. `sql` is the statement without its
// order. Shows each field on the splash's progress line. A value that has its node already, and a
// statement that fails, are passed over.
void FillFieldTree(MainForm &form, std::string_view sql, std::string_view fieldName);

// submnuRefreshTree: collapses the root, then rebuilds.
void RefreshTree(MainForm &form);

// Binds the tree's events: Collapse, Expand, NodeClick, Click.
void BindTreeEvents(MainForm &form);

} // namespace browser

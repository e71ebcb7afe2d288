// browser/fieldtree.h - the catalogue by field in the tree TV: root, groups, one node a value; and
// the markers, the first character of every key of tree and list.
#pragma once

#include "browser/mainform.h"

#include <string>
#include <string_view>

namespace browser
{

inline constexpr std::string_view kRootKey = "MP3s";
inline constexpr std::string_view kFileMarker = "/";

// One kind of item: its marker (one character, UTF-8), its field, and its word in `ItemType`.
struct ItemKind {
    std::string_view marker;
    std::string_view field; // empty for a file
    std::string_view wordKey;
    std::string_view word; // English
};

// The kind that a key's first character tells; null for any other ("By..." and the root too).
const ItemKind *KindOfKey(std::string_view key);

// A key without its first character.
std::string_view WithoutMarker(std::string_view key);

// The word for the key's kind in the user's language, with "s" behind key and default for a
// plural; empty for a key of no kind.
std::string GetItemTypeText(std::string_view key, bool plural);

// Rebuilds the whole tree for an empty field name; else brings that field's group and values up to
// date. Errors: kDuplicateKey when a group that stands there is added again, kSubscriptOutOfRange
// when one that does not stand there is removed.
void LoadTreeView(MainForm &form, std::string_view fieldName);

// Fills the value nodes of all loaded fields, or of `fieldName`. `sql` is the statement without its
// order. Shows each field on the splash's progress line. A value whose node stands there, and a
// statement that fails, are passed over.
void FillFieldTree(MainForm &form, std::string_view sql, std::string_view fieldName);

// submnuRefreshTree: collapses the root, then rebuilds.
void RefreshTree(MainForm &form);

// Binds the tree's events: Collapse, Expand, NodeClick, Click.
void BindTreeEvents(MainForm &form);

} // namespace browser

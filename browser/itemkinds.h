// browser/itemkinds.h - the kinds of items in the tree and in lists: their markers (the first
// character of every key), their fields, and the words for them. No state.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace browser
{

inline constexpr std::string_view kRootKey = "MP3s"; // of the tree
inline constexpr std::string_view kFileMarker = "/"; // of the rows that are files

// One kind of item: its marker (one character of UTF-8), its field, and the word for it in the
// section `ItemType`.
struct ItemKind {
    std::string_view marker;
    std::string_view field; // empty for a file
    std::string_view wordKey;
    std::string_view word; // English
};

// The kind of a key, by its first character; null when it is not a marker (the keys "By..." and the
// root).
const ItemKind *KindOfKey(std::string_view key);

// A key without its first character.
std::string_view WithoutMarker(std::string_view key);

// The word for the kind of a key in the user's language; for the plural, "s" is appended to the key
// and to the default. Empty for a key without a kind.
std::string GetItemTypeText(std::string_view key, bool plural);

// The text that is shown in place of an empty one: "(none)" in the user's language.
std::string TextOfNone();

// The kind of the values of a field. Errors: kSubscriptOutOfRange for an unknown field.
const ItemKind &KindOfField(std::string_view field);

} // namespace browser

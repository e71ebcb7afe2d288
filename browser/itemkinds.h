// browser/itemkinds.h - the kinds of items in tree and lists: their markers (the first character of
// every key), their fields, and their words. No state.
#pragma once

#include <span>
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

// The kind of a key, by its first character; null for any other ("By..." and the root too).
const ItemKind *KindOfKey(std::string_view key);

// A key without its first character.
std::string_view WithoutMarker(std::string_view key);

// The word for the key's kind in the user's language, with "s" after key and default for a
// plural; empty for a key of no kind.
std::string GetItemTypeText(std::string_view key, bool plural);

// What stands in place of an empty text: "(none)" in the user's language.
std::string TextOfNone();

// The kind of a field's values. Errors: kSubscriptOutOfRange for a name that is no field.
const ItemKind &KindOfField(std::string_view field);

} // namespace browser

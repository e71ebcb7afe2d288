#include "browser/itemkinds.h"

#include "runtime/error.h"
#include "shell/language.h"

#include <algorithm>

namespace browser
{

namespace
{

constexpr ItemKind kItemKinds[] = {
    {"/", "", "MP3File", "MP3 File"},
    {"@", "Title", "TitleFolder", "Title Folder"},
    {"#", "Artist", "ArtistFolder", "Artist Folder"},
    {"~", "Album", "AlbumFolder", "Album Folder"},
    {"?", "Year", "YearFolder", "Year Folder"},
    {"!", "Comment", "CommentFolder", "Comment Folder"},
    {"\u00A1", "Genre", "GenreFolder", "Genre Folder"},
    {"\u00BF", "Path", "PathFolder", "Path Folder"},
    {"&", "List", "PlayListFile", "PlayList File"},
};

} // namespace

const ItemKind *KindOfKey(std::string_view key)
{
    for (const ItemKind &kind : kItemKinds)
        if (key.starts_with(kind.marker))
            return &kind;
    return nullptr;
}

std::string_view WithoutMarker(std::string_view key)
{
    const ItemKind *kind = KindOfKey(key);
    return key.substr(kind != nullptr ? kind->marker.size() : std::min<std::size_t>(1, key.size()));
}

std::string GetItemTypeText(std::string_view key, bool plural)
{
    const ItemKind *kind = KindOfKey(key);
    if (kind == nullptr)
        return {};
    const std::string_view end = plural ? "s" : "";
    return shell::GetLanguageText(std::string(kind->word).append(end),
                                  std::string(kind->wordKey).append(end), "ItemType");
}

std::string TextOfNone()
{
    return shell::GetLanguageText("(none)", "None", "ItemType");
}

const ItemKind &KindOfField(std::string_view field)
{
    for (const ItemKind &kind : kItemKinds)
        if (kind.field == field && !field.empty())
            return kind;
    throw runtime::RuntimeError(runtime::kSubscriptOutOfRange);
}

} // namespace browser

#include "metadata/tagtext.h"

#include "metadata/genres.h"
#include "runtime/codepage.h"
#include "runtime/text.h"
#include "shell/globals.h"

#include <optional>

namespace metadata
{

TextKind KindInUse()
{
    return shell::TheGlobals().UnicodeTags ? TextKind::Utf8 : TextKind::FileBytes;
}

std::string TextOf(TextKind kind, std::string_view field)
{
    return kind == TextKind::Utf8 ? std::string(field) : runtime::TextOfBytes(field);
}

std::string FieldOf(TextKind kind, std::string_view utf8)
{
    return kind == TextKind::Utf8 ? std::string(utf8) : runtime::BytesOfText(utf8);
}

std::string GenreField(const ID3v2Tag &tag)
{
    if (tag.kind == TextKind::FileBytes)
        return GenreName(tag.Genre);
    return tag.Genre == "-1" ? std::string() : tag.Genre;
}

void ChangeKind(ID3v2Tag &tag, TextKind kind)
{
    if (tag.kind == kind)
        return;
    tag.Genre = GenreField(tag);
    for (std::string *field :
         {&tag.Title, &tag.Artist, &tag.Album, &tag.Year, &tag.Comment, &tag.Genre, &tag.Lyrics})
        *field = FieldOf(kind, TextOf(tag.kind, *field));
    if (tag.Genre.empty())
        tag.Genre = "-1";
    tag.kind = kind;
}

std::string UsedText(std::string_view field)
{
    return std::string(runtime::StripTrailingNulls(runtime::Trim(field)));
}

std::string GenreWords(const ID3v1Tag &tag)
{
    return tag.Genre == 0 ? std::string(kGenreNames[0]) : GenreName(tag.Genre);
}

ID3v2Tag TextsOf(const ID3v1Tag &tag)
{
    ID3v2Tag texts;
    texts.kind = TextKind::Utf8;
    texts.Header = UsedText(tag.Header);
    texts.Title = runtime::TextOfBytes(UsedText(tag.Title));
    texts.Artist = runtime::TextOfBytes(UsedText(tag.Artist));
    texts.Album = runtime::TextOfBytes(UsedText(tag.Album));
    texts.Year = runtime::TextOfBytes(UsedText(tag.Year));
    texts.Comment = runtime::TextOfBytes(UsedText(tag.Comment));
    texts.Genre = GenreWords(tag);
    texts.Track = tag.Track;
    return texts;
}

void TakeTexts(const unicode::TagTexts &texts, ID3v2Tag &tag)
{
    const auto set = [](std::string &field, const std::optional<std::string> &text) {
        if (text)
            field = *text;
    };
    set(tag.Title, texts.title);
    set(tag.Artist, texts.artist);
    set(tag.Album, texts.album);
    set(tag.Year, texts.year);
    set(tag.Comment, texts.comment);
    set(tag.Lyrics, texts.lyrics);
    if (texts.genre)
        tag.Genre = unicode::GenreInWords(*texts.genre);
    if (texts.track)
        tag.Track = *texts.track;
}

void FillFromID3v1(const ID3v1Tag &from, ID3v2Tag &to)
{
    if (to.kind != TextKind::Utf8)
        return;
    const ID3v2Tag old = TextsOf(from);
    for (const auto field : {&ID3v2Tag::Title, &ID3v2Tag::Artist, &ID3v2Tag::Album, &ID3v2Tag::Year,
                             &ID3v2Tag::Comment})
        if ((to.*field).empty())
            to.*field = old.*field;
    if (GenreField(to).empty())
        to.Genre = old.Genre;
    if (to.Track == 0)
        to.Track = old.Track;
}

} // namespace metadata

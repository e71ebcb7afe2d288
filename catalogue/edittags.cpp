#include "catalogue/edittags.h"

#include "catalogue/adoclass.h"
#include "metadata/tagtext.h"
#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/utf8.h"

#include <utility>

namespace catalogue
{

namespace
{

// Runs the query. Returns: the words of a failure, or an empty text.
std::string Update(const std::string &query, const std::vector<Value> &values)
{
    DataAccess->ExecuteSQL(query, kStoredUpdate, values, "?");
    return DataAccess->Succeeded ? std::string() : DataAccess->ErrorMessage;
}

// The first `count` characters of a field.
std::string_view LeftOfField(std::string_view field, metadata::TextKind kind, std::size_t count)
{
    if (field.size() <= count)
        return field;
    return kind == metadata::TextKind::Utf8 ? runtime::LeftCharacters(field, count)
                                            : field.substr(0, count);
}

void CopyTag(const metadata::ID3v1Tag &from, metadata::ID3v2Tag &to)
{
    if (to.kind == metadata::TextKind::Utf8) {
        std::string lyrics = std::move(to.Lyrics);
        to = metadata::TextsOf(from);
        to.Lyrics = std::move(lyrics);
        return;
    }
    using metadata::UsedText;
    to.Artist = UsedText(from.Artist);
    to.Album = UsedText(from.Album);
    to.Comment = UsedText(from.Comment);
    to.Genre = runtime::NumberText(from.Genre);
    to.Header = UsedText(from.Header);
    to.Title = UsedText(from.Title);
    to.Track = from.Track;
    to.Year = UsedText(from.Year);
}

} // namespace

void PutTagsTogether(metadata::SongInfo &song)
{
    if (song.hasID3v1 && !song.hasID3v2)
        CopyTag(song.id3v1, song.id3v2);
    else if (song.hasID3v1)
        metadata::FillFromID3v1(song.id3v1, song.id3v2);
}

std::string TagValue(const std::string &field, metadata::TextKind kind)
{
    return metadata::TextOf(kind, LeftOfField(field, kind, kLongestText));
}

std::vector<Value> TagValues(const metadata::ID3v2Tag &tag, const std::string &genre)
{
    std::vector<Value> values;
    values.reserve(11); // with what a statement adds
    for (const std::string *field :
         {&tag.Title, &tag.Artist, &tag.Album, &tag.Year, &tag.Comment, &genre})
        values.emplace_back(TagValue(*field, tag.kind));
    values.emplace_back(metadata::TextOf(tag.kind, tag.Lyrics));
    return values;
}

void UpdateEditedTags(const metadata::ID3v2Tag &tag, const std::string &path)
{
    std::vector<Value> values = TagValues(tag, metadata::GenreField(tag));
    values.emplace_back(path);
    std::string failure = Update("Edit1", values);
    values.erase(values.begin() + 1); // the artist
    const std::string second = Update("Edit2", values);
    if (failure.empty())
        failure = second;
    if (!failure.empty())
        throw runtime::RuntimeError(runtime::kDeviceIoError, failure);
}

} // namespace catalogue

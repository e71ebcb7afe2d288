#include "catalogue/edittags.h"

#include "catalogue/adoclass.h"
#include "metadata/genres.h"
#include "runtime/codepage.h"
#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

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

} // namespace

std::string UsedText(std::string_view field)
{
    return std::string(runtime::StripTrailingNulls(runtime::Trim(field)));
}

void CopyTag(const metadata::ID3v1Tag &from, metadata::ID3v2Tag &to)
{
    to.Artist = UsedText(from.Artist);
    to.Album = UsedText(from.Album);
    to.Comment = UsedText(from.Comment);
    to.Genre = runtime::NumberText(from.Genre);
    to.Header = UsedText(from.Header);
    to.Title = UsedText(from.Title);
    to.Track = from.Track;
    to.Year = UsedText(from.Year);
}

std::vector<Value> TagValues(const metadata::ID3v2Tag &tag, const std::string &genre)
{
    std::vector<Value> values;
    values.reserve(9);
    for (const std::string *bytes :
         {&tag.Title, &tag.Artist, &tag.Album, &tag.Year, &tag.Comment, &genre})
        values.emplace_back(
            runtime::TextOfBytes(std::string_view(*bytes).substr(0, kLongestTextBytes)));
    values.emplace_back(runtime::TextOfBytes(tag.Lyrics));
    return values;
}

void UpdateEditedTags(const metadata::ID3v2Tag &tag, const std::string &path)
{
    std::vector<Value> values = TagValues(tag, metadata::GenreName(tag.Genre));
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

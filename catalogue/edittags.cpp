#include "catalogue/edittags.h"

#include "catalogue/adoclass.h"
#include "metadata/genres.h"
#include "runtime/codepage.h"

namespace catalogue
{

std::vector<Value> TagValues(const metadata::ID3v2Tag &tag, const std::string &genre)
{
    std::vector<Value> values;
    values.reserve(8);
    for (const std::string *bytes :
         {&tag.Title, &tag.Artist, &tag.Album, &tag.Year, &tag.Comment, &genre, &tag.Lyrics})
        values.emplace_back(runtime::TextOfBytes(*bytes));
    return values;
}

void UpdateEditedTags(const metadata::ID3v2Tag &tag, const std::string &path)
{
    std::vector<Value> values = TagValues(tag, metadata::GenreName(tag.Genre));
    values.emplace_back(path);
    DataAccess->ExecuteSQL("Edit1", kStoredUpdate, values, "?");
    values.erase(values.begin() + 1); // the artist
    DataAccess->ExecuteSQL("Edit2", kStoredUpdate, values, "?");
}

} // namespace catalogue

#include "metadata/id3v1.h"

#include "runtime/text.h"

namespace metadata
{

namespace
{

constexpr std::size_t kTextBytes = 30;
constexpr std::size_t kYearBytes = 4;
constexpr std::size_t kReadCommentBytes = 29;
constexpr std::size_t kBuiltCommentBytes = 28;

std::string Padded(std::string_view text, std::size_t width, char filler)
{
    std::string padded(text.substr(0, width));
    padded.resize(width, filler);
    return padded;
}

// Removes the first `width` characters from `image` and puts them into `field`.
void TakeField(std::string_view &image, std::size_t width, std::string &field)
{
    field = runtime::Trim(image.substr(0, width));
    field.resize(width, ' ');
    image.remove_prefix(width);
}

// The field as it is written into a tag, `used` characters long. Leaves `field` trimmed and padded
// to `width`.
std::string BuiltField(std::string &field, std::size_t used, std::size_t width)
{
    const std::string text(runtime::Trim(runtime::Left(field, static_cast<long long>(used))));
    field = Padded(text, width, ' ');
    return Padded(text, used, '\0');
}

} // namespace

void ReadID3v1Fields(std::string_view image, ID3v1Tag &tag)
{
    std::string whole; // of a tag that was cut off
    if (image.size() < kID3v1Bytes)
        whole = Padded(image, kID3v1Bytes, '\0');
    std::string_view rest = whole.empty() ? image : whole;
    rest.remove_prefix(3);
    TakeField(rest, kTextBytes, tag.Title);
    TakeField(rest, kTextBytes, tag.Artist);
    TakeField(rest, kTextBytes, tag.Album);
    TakeField(rest, kYearBytes, tag.Year);
    TakeField(rest, kReadCommentBytes, tag.Comment);
    tag.Track = static_cast<std::uint8_t>(rest[0]);
    tag.Genre = static_cast<std::uint8_t>(rest[1]);
}

std::string BuildID3v1Tag(ID3v1Tag &tag)
{
    if (tag.Genre == -1)
        tag.Genre = 255;
    std::string image = "TAG";
    image += BuiltField(tag.Title, kTextBytes, kTextBytes);
    image += BuiltField(tag.Artist, kTextBytes, kTextBytes);
    image += BuiltField(tag.Album, kTextBytes, kTextBytes);
    image += BuiltField(tag.Year, kYearBytes, kYearBytes);
    image += BuiltField(tag.Comment, kBuiltCommentBytes, kReadCommentBytes);
    image += '\0';
    image += static_cast<char>(tag.Track);
    image += static_cast<char>(tag.Genre & 0xFF);
    return image;
}

} // namespace metadata

#include "metadata/id3v1.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>

namespace
{

using metadata::BuildID3v1Tag;
using metadata::ID3v1Tag;
using tests::Tag1;
using tests::Z;

std::string Wide(std::string text, std::size_t width, char filler = ' ')
{
    text.resize(width, filler);
    return text;
}

ID3v1Tag FieldsOf(std::string_view image)
{
    ID3v1Tag tag;
    metadata::ReadID3v1Fields(image, tag);
    return tag;
}

TEST(ReadID3v1Fields, BlankPaddedFields)
{
    const ID3v1Tag tag = FieldsOf(Tag1("Title", "Artist", "Album", "1999", "Comment", 7, 17, ' '));
    EXPECT_EQ(tag.Header, "");
    EXPECT_EQ(tag.Title, Wide("Title", 30));
    EXPECT_EQ(tag.Artist, Wide("Artist", 30));
    EXPECT_EQ(tag.Album, Wide("Album", 30));
    EXPECT_EQ(tag.Year, "1999");
    EXPECT_EQ(tag.Comment, Wide("Comment", 29));
    EXPECT_EQ(tag.Track, 7);
    EXPECT_EQ(tag.Genre, 17);
}

TEST(ReadID3v1Fields, NulsStayAndBlanksGo)
{
    const ID3v1Tag tag = FieldsOf(Tag1(Z("  A\0 "), "B", "", "1", Z(" \0"), 255, 255));
    EXPECT_EQ(tag.Title, Wide(Z("A\0 ") + std::string(25, '\0'), 30));
    EXPECT_EQ(tag.Artist, "B" + std::string(29, '\0'));
    EXPECT_EQ(tag.Album, std::string(30, '\0'));
    EXPECT_EQ(tag.Year, Z("1\0\0\0"));
    EXPECT_EQ(tag.Comment, std::string(28, '\0') + " ");
    EXPECT_EQ(tag.Track, 255);
    EXPECT_EQ(tag.Genre, 255);
}

TEST(ReadID3v1Fields, ThirtiethCharacterOfTheCommentIsTheTrack)
{
    const ID3v1Tag tag = FieldsOf(Tag1("", "", "", "", "012345678901234567890123456789", '9', 0));
    EXPECT_EQ(tag.Comment, "01234567890123456789012345678");
    EXPECT_EQ(tag.Track, '9');
}

TEST(ReadID3v1Fields, EveryTruncationReadsAsNuls)
{
    const std::string image(128, 'x');
    for (std::size_t length = 0; length <= image.size(); ++length) {
        const ID3v1Tag tag = FieldsOf(image.substr(0, length));
        EXPECT_EQ(tag.Genre, length >= 128 ? 'x' : 0) << length;
        EXPECT_EQ(tag.Track, length >= 127 ? 'x' : 0) << length;
        EXPECT_EQ(tag.Comment.size(), 29u);
    }
}

TEST(BuildID3v1Tag, LayoutOfTheImage)
{
    ID3v1Tag tag{"", " Title ", "Artist", "Album", "1999", "Comment", 17, 7};
    EXPECT_EQ(BuildID3v1Tag(tag), "TAG" + Wide("Title", 30, '\0') + Wide("Artist", 30, '\0') +
                                      Wide("Album", 30, '\0') + "1999" + Wide("Comment", 28, '\0') +
                                      Z("\0\x07\x11"));
    EXPECT_EQ(tag.Title, Wide("Title", 30));
    EXPECT_EQ(tag.Comment, Wide("Comment", 29));
}

TEST(BuildID3v1Tag, CutsBeforeItTrims)
{
    ID3v1Tag tag;
    tag.Title = std::string(29, ' ') + "ab"; // the 30th character is "a"
    tag.Year = "  19999";
    tag.Comment = "01234567890123456789012345678";
    const std::string image = BuildID3v1Tag(tag);
    EXPECT_EQ(image.substr(3, 30), "a" + std::string(29, '\0'));
    EXPECT_EQ(image.substr(93, 4), Z("19\0\0"));
    EXPECT_EQ(image.substr(97, 29), Z("0123456789012345678901234567\0"));
    EXPECT_EQ(tag.Comment, "0123456789012345678901234567 ");
}

TEST(BuildID3v1Tag, GenreOfNoTagIs255)
{
    ID3v1Tag tag;
    tag.Genre = -1;
    EXPECT_EQ(BuildID3v1Tag(tag)[127], '\xFF');
    EXPECT_EQ(tag.Genre, 255);
}

TEST(BuildID3v1Tag, AlwaysHasItsLengthAndIsReadBack)
{
    for (std::size_t length = 0; length < 70; ++length) {
        ID3v1Tag tag;
        tag.Title = tag.Artist = tag.Album = tag.Year = tag.Comment = std::string(length, 'q');
        tag.Track = static_cast<std::uint8_t>(length);
        tag.Genre = static_cast<std::int16_t>(length);
        const std::string image = BuildID3v1Tag(tag);
        ASSERT_EQ(image.size(), 128u);
        ID3v1Tag again = FieldsOf(image);
        EXPECT_EQ(BuildID3v1Tag(again), image);
    }
}

} // namespace

#include "metadata/id3v2.h"
#include "runtime/error.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>

#include <climits>

namespace
{

using metadata::ID3v2Tag;
using tests::Frame3;
using tests::Number256;
using tests::Z;

ID3v2Tag FramesOf(std::string_view body, int majorVersion = 3)
{
    ID3v2Tag tag;
    tag.Genre = "-1";
    metadata::ReadID3v2Frames(body, majorVersion, tag);
    return tag;
}

// A version 3 frame with any size in its header.
std::string Sized(std::string_view identifier, unsigned size, std::string_view data)
{
    return std::string(identifier) + Number256(size) + Z("\0\0\0") + std::string(data);
}

TEST(BytesToNumber, Table)
{
    const struct {
        std::string text;
        int base, want;
    } cases[] = {{Z("\0\0\0\0"), 128, 0},       {Z("\0\0\x01\x02"), 128, 130},
                 {Z("\0\0\x01\x02"), 256, 258}, {"\xFF\xFF\xFF\xFF", 128, 255 * 2113665},
                 {Z("\0\0\0\xFF"), 128, 255},   {"\x7F\xFF\xFF\xFF", 256, INT_MAX},
                 {Z("\0\0\0\x01zz"), 256, 1}};
    for (const auto &c : cases)
        EXPECT_EQ(metadata::BytesToNumber(c.text, c.base), c.want);
}

TEST(BytesToNumber, Failures)
{
    const auto failure = [](std::string_view text) {
        try {
            (void)metadata::BytesToNumber(text, 256);
        } catch (const runtime::RuntimeError &error) {
            return error.number;
        }
        return 0;
    };
    EXPECT_EQ(failure("\x80"), 5);
    EXPECT_EQ(failure(""), 5);
    EXPECT_EQ(failure(Z("\x80\0\0\0")), 6);
}

TEST(IsFrameUnreadable, Table)
{
    const std::string plain = "TIT2" + Z("\0\0\0\x05\0\0") + "xabcd";
    std::string flags = plain;
    const struct {
        int flag, version;
        bool want;
    } cases[] = {{0x00, 3, false}, {0x80, 3, true},  {0x40, 3, true}, {0xC0, 3, true},
                 {0x3F, 3, false}, {0x80, 2, false}, {0x80, 4, false}};
    for (const auto &c : cases) {
        flags[9] = static_cast<char>(c.flag);
        EXPECT_EQ(metadata::IsFrameUnreadable(1, flags, c.version), c.want) << c.flag;
    }
    EXPECT_FALSE(metadata::IsFrameUnreadable(1, "TIT2", 3)); // no such byte
}

TEST(ReadID3v2Frames, AllFields)
{
    const ID3v2Tag tag = FramesOf(
        Frame3("TIT2", "Title") + Frame3("TPE1", "Artist") + Frame3("TALB", "Album") +
        Frame3("TYER", "1999") + Frame3("TCON", "(17)Rock") + Frame3("TRCK", "7") +
        Frame3("COMM", Z("eng\0Words")) + Frame3("USLT", Z("eng\0La la")) + std::string(100, '\0'));
    EXPECT_EQ(tag, (ID3v2Tag{"", "Title", "Artist", "Album", "1999", "Words", "17", 7, "La la"}));
}

TEST(ReadID3v2Frames, AbsentFramesLeaveTheFields)
{
    const ID3v2Tag held{"h", "t", "a", "l", "y", "c", "g", 9, "w"};
    ID3v2Tag tag = held;
    metadata::ReadID3v2Frames(std::string(50, 'x'), 3, tag);
    EXPECT_EQ(tag, held);
    metadata::ReadID3v2Frames("", 3, tag);
    EXPECT_EQ(tag, held);
}

TEST(ReadID3v2Frames, OtherVersionsReadNothing)
{
    const std::string body = Frame3("TIT2", "Title") + "TT2xxxxxxxxxx";
    for (const int version : {0, 1, 4, 5, 255})
        EXPECT_EQ(FramesOf(body, version), (ID3v2Tag{"", "", "", "", "", "", "-1", 0, ""}))
            << version;
}

TEST(ReadID3v2Frames, Genre)
{
    const struct {
        std::string data;
        std::string_view want;
    } cases[] = {{"(17)Rock", "17"}, {"(17)", "17"},  {"(13)", "13"},   {"(RX)", "0"},
                 {"(", "0"},         {"( 8)", "8"},   {"(-1)", "-1"},   {"(4.5)", "4.5"},
                 {"Pop", "Pop"},     {"pop", "pop"},  {"17", "17"},     {"17 Rock", "17 Rock"},
                 {"0", "0"},         {"0 Rock", "0"}, {" Pop", "0"},    {"-", "0"},
                 {"\xC9t\xE9", "0"}, {"[x]", "0"},    {"{x}", "0"},     {"@", "0"},
                 {"", "255"},        {"-1", "-1"},    {"Acid", "Acid"}, {"acid", "acid"},
                 {"Zouk", "Zouk"},   {"zouk", "zouk"}};
    for (const auto &c : cases)
        EXPECT_EQ(FramesOf(Frame3("TCON", c.data)).Genre, c.want) << c.data;
    EXPECT_EQ(FramesOf(Frame3("TCON", Z("Pop\0"))).Genre, Z("Pop\0"));
    EXPECT_EQ(FramesOf(Frame3("TCON", "(" + std::string(400, '9'))).Genre, "-1"); // no such number
}

TEST(ReadID3v2Frames, AGenreThatIsTooSmallANumberIsZero)
{
    const std::string small = "0." + std::string(330, '0') + "1";
    EXPECT_EQ(FramesOf(Frame3("TCON", small)).Genre, "0");
    EXPECT_EQ(FramesOf(Frame3("TCON", "(" + small + ")")).Genre, "0");
    EXPECT_EQ(FramesOf(Frame3("TCON", "1e-400")).Genre, "1e-400");
    EXPECT_EQ(FramesOf(Frame3("TCON", "(-0)")).Genre, "0");
    EXPECT_EQ(FramesOf(Frame3("TCON", "(-" + small + ")")).Genre, "0");
}

TEST(ReadID3v2Frames, GenreWithoutAUsableText)
{
    EXPECT_EQ(FramesOf(Sized("TCON", 0, "Pop")).Genre,
              "255"); // the text cannot be read and is empty
    EXPECT_EQ(FramesOf(Frame3("TCON", "Pop", Z("\0\x80"))).Genre, "-1");
}

TEST(ReadID3v2Frames, Track)
{
    const struct {
        std::string data;
        int want;
    } cases[] = {{"7", 7},         {"7/12", 5},  {" 12 ", 12}, {"", 5},     {"x", 5},
                 {"32767", 32767}, {"32768", 5}, {"-1", -1},   {"2.5", 2},  {"3.5", 4},
                 {Z("7\0"), 5},    {"0", 0},     {"1E2", 100}, {"1e999", 5}};
    for (const auto &c : cases) {
        ID3v2Tag tag;
        tag.Track = 5;
        metadata::ReadID3v2Frames(Frame3("TRCK", c.data), 3, tag);
        EXPECT_EQ(tag.Track, c.want) << c.data;
    }
}

TEST(ReadID3v2Frames, FirstMatchWinsWhereverItIs)
{
    EXPECT_EQ(FramesOf(Frame3("COMM", Z("eng\0TIT2") + Z("\0\0\0\x04\0\0\0abcdef")) +
                       Frame3("TIT2", "True title"))
                  .Title,
              "abc");
    EXPECT_EQ(FramesOf(Frame3("TIT2", "One") + Frame3("TIT2", "Two")).Title, "One");
    EXPECT_EQ(FramesOf("TTIT2" + Frame3("TIT2", "One").substr(4)).Title, "One");
}

TEST(ReadID3v2Frames, TextPassesThroughUnchanged)
{
    EXPECT_EQ(FramesOf(Frame3("TIT2", Z("\xFF\xFE"
                                        "A\0B\0\0\0")))
                  .Title,
              Z("\xFF\xFE"
                "A\0B\0\0\0"));
}

TEST(ReadID3v2Frames, Comments)
{
    const std::string described = Frame3("COMM", Z("engID3v1 Comment\0old"));
    const std::string plain = Frame3("COMM", Z("eng\0new"));
    EXPECT_EQ(FramesOf(described).Comment, "");
    EXPECT_EQ(FramesOf(described + plain).Comment, "new");
    EXPECT_EQ(FramesOf(plain + Frame3("COMM", Z("deu\0third"))).Comment, "new");
    EXPECT_EQ(FramesOf(Frame3("COMM", Z("\xFF\xFF\xFF\0any"))).Comment, "any");
    EXPECT_EQ(FramesOf(described + plain + std::string(50, 'p')).Comment,
              "new"); // by the size in its own header
    EXPECT_EQ(FramesOf(Frame3("COMM", Z("eng\0"))).Comment, "");
}

// The search continues one character after the identifier, not after its frame.
TEST(ReadID3v2Frames, ACommentInsideTheHeaderOfAnother)
{
    std::string inner = Frame3("COMM", Z("eng\0new"));
    inner[10] = 'x'; // where the outer one has its description
    EXPECT_EQ(FramesOf("COMM" + inner).Comment, "new");
}

TEST(ReadID3v2Frames, TheFirstCommentDecidesWhetherThereIsOne)
{
    const std::string plain = Frame3("COMM", Z("eng\0new"));
    EXPECT_EQ(FramesOf(Frame3("COMM", Z("engX\0old"), Z("\0\x80")) + plain).Comment, "");
    EXPECT_EQ(FramesOf(Sized("COMM", 0x80000000, Z("engX\0old")) + plain).Comment, "");
    // The flags of the later frame are not read; only its size counts.
    EXPECT_EQ(FramesOf(Frame3("COMM", Z("engX\0old")) + Frame3("COMM", Z("eng\0new"), Z("\0\x80")))
                  .Comment,
              "new");
}

TEST(ReadID3v2Frames, LyricsIgnoreTheirDescription)
{
    EXPECT_EQ(FramesOf(Frame3("USLT", Z("eng\0La la"))).Lyrics, "La la");
    EXPECT_EQ(FramesOf(Frame3("USLT", Z("engdesc\0La la"))).Lyrics, Z("esc\0La la"));
    const std::string megabyte(1 << 20, 'l');
    EXPECT_EQ(FramesOf(Frame3("USLT", Z("eng\0") + megabyte)).Lyrics, megabyte);
}

TEST(ReadID3v2Frames, UnreadableFramesLeaveTheField)
{
    for (const std::string &flags : {Z("\0\x80"), Z("\0\x40")}) {
        ID3v2Tag tag;
        tag.Title = tag.Lyrics = tag.Comment = "held";
        metadata::ReadID3v2Frames(Frame3("TIT2", "x", flags) + Frame3("USLT", Z("eng\0y"), flags) +
                                      Frame3("COMM", Z("eng\0z"), flags),
                                  3, tag);
        EXPECT_EQ(tag.Title, "held");
        EXPECT_EQ(tag.Lyrics, "held");
        EXPECT_EQ(tag.Comment, "held");
    }
}

TEST(ReadID3v2Frames, SizeOfZeroLeavesTheField)
{
    ID3v2Tag tag;
    tag.Title = "held";
    metadata::ReadID3v2Frames(Sized("TIT2", 0, "abc"), 3, tag);
    EXPECT_EQ(tag.Title, "held");
    metadata::ReadID3v2Frames(Sized("TIT2", 1, "abc"), 3, tag);
    EXPECT_EQ(tag.Title, "");
}

TEST(ReadID3v2Frames, SizeThatDoesNotFitKeepsTheFieldBeforesLength)
{
    // The order is title, album, artist, year.
    const std::string body = Sized("TIT2", 4, "abcdef") + Sized("TALB", 0xFFFFFFFF, "ghijkl") +
                             Sized("TPE1", 0x80000000, "mnopqr");
    const ID3v2Tag tag = FramesOf(body);
    EXPECT_EQ(tag.Title, "abc");
    EXPECT_EQ(tag.Album, "ghi");
    EXPECT_EQ(tag.Artist, "mno");
}

// Title, album, artist, year, genre, track, comment, lyrics: each gets the length of the one before
// it, wherever the frames are.
TEST(ReadID3v2Frames, TheOrderOfTheFields)
{
    constexpr unsigned kNone = 0xFFFFFFFF;
    const auto both = [](std::string_view before, std::string_view field) {
        return FramesOf(Sized(field, kNone, "123456789") + Sized(before, 4, "abcdef"));
    };
    EXPECT_EQ(both("TIT2", "TALB").Album, "123");
    EXPECT_EQ(both("TALB", "TPE1").Artist, "123");
    EXPECT_EQ(both("TPE1", "TYER").Year, "123");
    EXPECT_EQ(both("TYER", "TCON").Genre, "123");
    EXPECT_EQ(both("TCON", "TRCK").Track, 123);
    const std::string three = Sized("USLT", kNone, Z("eng\0qrstuvwxyz")) +
                              Sized("COMM", 9, Z("eng\0words")) + Sized("TRCK", 7, "1");
    EXPECT_EQ(FramesOf(three).Lyrics, "qrst");
    EXPECT_EQ(FramesOf(Sized("USLT", kNone, Z("eng\0qrstuvwxyz")) + Sized("TRCK", 7, "1")).Lyrics,
              "qr");
}

TEST(ReadID3v2Frames, FrameCutOffByTheEndOfTheBody)
{
    EXPECT_EQ(FramesOf(Sized("TIT2", 100, "abc")).Title, "abc");
    EXPECT_EQ(FramesOf(Sized("TIT2", INT_MAX, "abc")).Title, "abc");
    ID3v2Tag tag;
    tag.Album = "held";
    metadata::ReadID3v2Frames("TALB", 3, tag);
    EXPECT_EQ(tag.Album, ""); // nothing is there, and nothing failed
    tag.Album = "held";
    metadata::ReadID3v2Frames(Sized("TIT2", 0, "x") + "TALB", 3, tag);
    EXPECT_EQ(tag.Album, "held"); // the length is still the title's -1
}

TEST(ReadID3v2Frames, Version2RunsToTheEndOfTheBody)
{
    const std::string body = Z("TT2\0\0\x06\0Title") + Z("TOA\0\0\x07\0Artist");
    const ID3v2Tag tag = FramesOf(body, 2);
    EXPECT_EQ(tag.Title, Z("TitleTOA\0\0\x07\0Artist"));
    EXPECT_EQ(tag.Artist, "Artist");
    // The empty identifier is found at the start: the lyrics are the text from the twelfth
    // character on.
    EXPECT_EQ(tag.Lyrics, body.substr(11));
}

TEST(ReadID3v2Frames, Version2Identifiers)
{
    const auto frame = [](const char *identifier, const char *text) {
        return FramesOf(identifier + Z("\0\0\x05\0") + text, 2);
    };
    EXPECT_EQ(frame("TAL", "Album").Album, "Album");
    EXPECT_EQ(frame("TYE", "1999").Year, "1999");
    EXPECT_EQ(frame("TCO", "(17)").Genre, "17");
    EXPECT_EQ(frame("TRK", "12").Track, 12);
    EXPECT_EQ(frame("TT1", "Title").Title, "");
}

TEST(ReadID3v2Frames, Version2SizeThatDoesNotFit)
{
    // A frame of 0x80 characters or more: the four characters exceed 32 bits, the length stays 0.
    const ID3v2Tag tag = FramesOf(Z("TT2\0\0\x90\0Title"), 2);
    EXPECT_EQ(tag.Title, "");
}

TEST(ReadID3v2Frames, Version2Comment)
{
    EXPECT_EQ(FramesOf(Z("COM\0\0\x09\0eng\0Words"), 2).Comment, "Words");
    EXPECT_EQ(FramesOf(Z("COM\0\0\x09\0engX\0Words"), 2).Comment, "");
}

TEST(GeometryOf, Table)
{
    for (const auto [version, size, text] :
         {std::array{2, 5, 7}, {3, 4, 11}, {4, 0, 0}, {0, 0, 0}}) {
        EXPECT_EQ(metadata::GeometryOf(version).sizeOffset, size);
        EXPECT_EQ(metadata::GeometryOf(version).textOffset, text);
    }
}

} // namespace

#include "metadata/id3v2.h"
#include "metadata/tagframes.h"
#include "runtime/error.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>

#include <random>

namespace
{

using metadata::BuildID3v2Tag;
using metadata::ID3v2Tag;
using tests::Frame3;
using tests::Tag;
using tests::Z;

std::string Removed(std::string body, std::string_view identifier, int majorVersion = 3)
{
    const std::string returned = metadata::RemoveFrame(body, identifier, majorVersion);
    EXPECT_EQ(returned, body);
    return body;
}

// A tag with nothing but its genre and no track.
ID3v2Tag Untracked(std::string_view genre = "-1")
{
    ID3v2Tag tag;
    tag.Genre = genre;
    tag.Track = -1;
    return tag;
}

TEST(NumberToBytes, Table)
{
    const struct {
        std::int64_t value;
        int base;
        std::string want;
    } cases[] = {{0, 256, Z("\0\0\0\0")},
                 {258, 256, Z("\0\0\1\2")},
                 {0x7FFFFFFF, 256, "\x7F\xFF\xFF\xFF"},
                 {130, 128, Z("\0\0\1\2")},
                 {0xFFFFFFFF, 256, "\xFF\xFF\xFF\xFF"},
                 {200LL << 21, 128, Z("\xC8\0\0\0")},
                 {(256LL << 21) - 1, 128, "\xFF\x7F\x7F\x7F"}};
    for (const auto &c : cases) {
        EXPECT_EQ(metadata::NumberToBytes(c.value, c.base), c.want) << c.value;
        const auto back = metadata::FindNumber(c.want, c.base);
        EXPECT_EQ(back, c.value > 0x7FFFFFFF ? std::nullopt : std::optional(c.value)) << c.value;
    }
    EXPECT_THROW((void)metadata::NumberToBytes(256LL << 21, 128), runtime::RuntimeError);
    EXPECT_THROW((void)metadata::NumberToBytes(1LL << 32, 256), runtime::RuntimeError);
    EXPECT_THROW((void)metadata::NumberToBytes(-1LL << 32, 256), runtime::RuntimeError);
}

TEST(AppendFrame, Layout)
{
    std::string frames = "before";
    metadata::AppendFrame(frames, "TIT2", "abc");
    EXPECT_EQ(frames, Z("beforeTIT2\0\0\0\x04\0\0\0abc"));
    metadata::AppendFrame(frames, "USLT", "");
    EXPECT_EQ(frames, Z("beforeTIT2\0\0\0\x04\0\0\0abcUSLT\0\0\0\x01\0\0\0"));
}

TEST(RemoveFrame, CutsTheFirstOneOnly)
{
    const std::string one = Frame3("TIT2", "One");
    const std::string two = Frame3("TIT2", "Two");
    EXPECT_EQ(Removed("a" + one + "b" + two + "c", "TIT2"), "ab" + two + "c");
    EXPECT_EQ(Removed("a" + one, "TPE1"), "a" + one);
    EXPECT_EQ(Removed("", "TIT2"), "");
}

TEST(RemoveFrame, SizesAtTheirEnds)
{
    const std::string head = "aTIT2";
    EXPECT_EQ(Removed(head + Z("\0\0\0\0\0\0") + "xyz", "TIT2"), "axyz"); // 10 characters
    EXPECT_EQ(Removed(head + Z("\0\0\0\x04\0\0\0") + "xyz", "TIT2"), "a");
    for (const std::string &past : {head + Z("\0\0\0\x05\0\0\0") + "xyz", // by one
                                    head + Z("\x7F\xFF\xFF\xFF\0\0\0") + "xyz",
                                    head + Z("\0\0\0\0")}) // the flags are missing
        EXPECT_EQ(Removed(past, "TIT2"), "a");
    for (const std::string &stays : {head + Z("\x80\0\0\0\0\0\0") + "xyz", // no 32-bit number
                                     head + Z("\0\0"), head})              // no four characters
        EXPECT_EQ(Removed(stays, "TIT2"), stays);
}

TEST(RemoveFrame, OtherVersionsCutTheBodyOff)
{
    for (const int version : {0, 1, 4, 255}) {
        EXPECT_EQ(Removed("abc" + Frame3("TIT2", "x") + "def", "TIT2", version), "abc");
        EXPECT_EQ(Removed("abcTIT2", "TIT2", version), "abc");
        EXPECT_EQ(Removed("abc", "TIT2", version), "abc");
        EXPECT_EQ(Removed(Frame3("COMM", Z("eng\0x")), "COMM", version),
                  Frame3("COMM", Z("eng\0x")));
    }
}

TEST(RemoveFrame, Version2Geometry)
{
    // The sixth to the ninth character are the size; the text begins with the eighth.
    EXPECT_EQ(Removed("aTIT2x" + Z("\0\0\0\x02") + "bcdef", "TIT2", 2), "a\x02"
                                                                        "bcdef");
    EXPECT_EQ(Removed("aTIT2x" + Z("\0\0\0\x07") + "bcdef", "TIT2", 2), "af");
    const std::string longer = "aTIT2x" + Z("\0\0\0\x09") + "bcdef";
    EXPECT_EQ(Removed(longer, "TIT2", 2), "a");
}

TEST(RemoveFrame, CommentsLoseTheirHeadersOnly)
{
    const std::string plain = Frame3("COMM", Z("eng\0old"));
    const std::string described = Frame3("COMM", Z("engdesc\0old"));
    EXPECT_EQ(Removed("a" + plain + "b", "COMM"), "a" + Z("eng\0old") + "b");
    EXPECT_EQ(Removed(described, "COMM"), described);
    EXPECT_EQ(Removed(plain + described + plain, "COMM"),
              Z("eng\0old") + described + Z("eng\0old"));
    EXPECT_EQ(Removed("COMM", "COMM"), "COMM");
    EXPECT_EQ(Removed(plain.substr(0, 14), "COMM"), plain.substr(0, 14)); // no description at all
    EXPECT_EQ(Removed(plain.substr(0, 15), "COMM"), Z("eng\0"));
}

TEST(RemoveFrame, TheCommentSearchContinuesAfterTheCut)
{
    // The data begins with another frame, whose first character is where the search continued.
    const std::string inner = Z("COMM\0\0\0\x02\0\0\0abc\0");
    std::string body = Z("COMM\0\0\0\x14\0\0\0") + inner;
    body[14] = '\0'; // the inner identifier's last letter is the outer description
    EXPECT_EQ(Removed(body, "COMM"), body.substr(11));
    EXPECT_EQ(Removed(Z("COMM\0\0\0\x14\0\0\0abc\0") + inner, "COMM"), Z("abc\0") + Z("abc\0"));
}

TEST(RemoveFrame, ManyCommentsTakeNoTime)
{
    std::string body;
    for (int i = 0; i < 500'000; ++i)
        body += Frame3("COMM", Z("eng\0"));
    EXPECT_EQ(Removed(std::move(body), "COMM").size(), 500'000u * 4);
}

TEST(BuildID3v2Tag, AllFieldsInTheirOrder)
{
    ID3v2Tag tag{"", "Title", "Artist", "Album", "1999", "Words", "Rock", 7, "La la"};
    EXPECT_EQ(BuildID3v2Tag("", tag, 3),
              Tag(3, Frame3("COMM", Z("eng\0Words")) + Frame3("TIT2", "Title") +
                         Frame3("TPE1", "Artist") + Frame3("TALB", "Album") +
                         Frame3("TYER", "1999") + Frame3("TCON", "(17)Rock") +
                         Frame3("USLT", Z("\0\0\0\0La la")) + Frame3("TRCK", "7")));
    EXPECT_EQ(tag.Genre, "Rock");
}

TEST(BuildID3v2Tag, EmptyFieldsWriteNothingButTheGenre)
{
    ID3v2Tag tag = Untracked();
    EXPECT_EQ(BuildID3v2Tag("", tag, 3), Tag(3, Frame3("TCON", "(255)")));
    EXPECT_EQ(tag.Genre, "255");
}

TEST(BuildID3v2Tag, Genres)
{
    const struct {
        std::string_view genre, want;
    } cases[] = {{"-1", "(255)"},      {"-1.0", "(255)"},   {"Rock", "(17)Rock"},
                 {"rock", "(17)rock"}, {"17", "(255)Rock"}, {"Mi genero", "(255)Mi genero"},
                 {"256", "(255)"},     {"", "(255)"},       {"Blues", "(255)Blues"},
                 {"255", "(0)"},       {"0", "(255)255"},   {"126", "(255)"}};
    for (const auto &c : cases) {
        ID3v2Tag tag = Untracked(c.genre);
        EXPECT_EQ(BuildID3v2Tag("", tag, 3), Tag(3, Frame3("TCON", c.want))) << c.genre;
    }
}

TEST(BuildID3v2Tag, TracksFromZeroOn)
{
    const struct {
        std::int16_t track;
        std::string want;
    } cases[] = {{-1, ""}, {-5, ""}, {0, Frame3("TRCK", "0")}, {32767, Frame3("TRCK", "32767")}};
    for (const auto &c : cases) {
        ID3v2Tag tag = Untracked();
        tag.Track = c.track;
        EXPECT_EQ(BuildID3v2Tag("", tag, 3), Tag(3, Frame3("TCON", "(255)") + c.want));
    }
}

TEST(BuildID3v2Tag, ReplacedFramesLeaveTheOldBody)
{
    const std::string picture = Frame3("APIC", Z("image/png\0\x03\0") + std::string(100, 'p'));
    const std::string padding(64, '\0');
    const std::string kept = picture + Frame3("TPE1", "Stays") + Frame3("TALB", "Stays") +
                             Frame3("TYER", "1999") + Frame3("USLT", Z("eng\0Stays"), Z("\0\x80"));
    ID3v2Tag tag = Untracked("Rock");
    tag.Title = "New";
    EXPECT_EQ(BuildID3v2Tag(Frame3("TIT2", "Old") + kept + Frame3("TCON", "Pop") +
                                Frame3("TRCK", "3") + padding,
                            tag, 3),
              Tag(3, Frame3("TIT2", "New") + Frame3("TCON", "(17)Rock") + kept +
                         Frame3("TRCK", "3") + padding));
}

TEST(BuildID3v2Tag, TheOldCommentStaysAfterTheNewOne)
{
    const std::string old = Frame3("COMM", Z("eng\0old"));
    ID3v2Tag tag = Untracked();
    tag.Comment = "new";
    const std::string built = BuildID3v2Tag(old, tag, 3);
    EXPECT_EQ(built, Tag(3, Frame3("COMM", Z("eng\0new")) + Frame3("TCON", "(255)") + old));
    ID3v2Tag read;
    metadata::ReadID3v2Frames(built.substr(10), 3, read);
    EXPECT_EQ(read.Comment, "new");
}

TEST(BuildID3v2Tag, Version2BodyStaysUnderAVersion3Header)
{
    const std::string body = Z("TT2\0\0\x06\0Title");
    ID3v2Tag tag = Untracked();
    tag.Title = "New";
    EXPECT_EQ(BuildID3v2Tag(body, tag, 2),
              Tag(3, Frame3("TIT2", "New") + Frame3("TCON", "(255)") + body));
}

TEST(BuildID3v2Tag, Version4BodyEndsWhereTheFirstReplacedFrameStood)
{
    ID3v2Tag tag = Untracked();
    tag.Title = "New";
    EXPECT_EQ(BuildID3v2Tag("keep" + Frame3("TIT2", "Old") + "rest", tag, 4),
              Tag(3, Frame3("TIT2", "New") + Frame3("TCON", "(255)") + "keep"));
}

TEST(BuildID3v2Tag, LongTexts)
{
    ID3v2Tag tag = Untracked();
    tag.Title = std::string(10'000, 't');
    tag.Lyrics = std::string(1 << 20, 'l');
    const std::string body = Frame3("APIC", std::string(20 << 20, 'p'));
    const std::string built = BuildID3v2Tag(body, tag, 3);
    EXPECT_TRUE(built == Tag(3, Frame3("TIT2", tag.Title) + Frame3("TCON", "(255)") +
                                    Frame3("USLT", Z("\0\0\0\0") + tag.Lyrics) + body));
}

// What was written is read again: any fields, over any old body of complete frames.
TEST(BuildID3v2Tag, IsReadBack)
{
    std::mt19937 random(7);
    const auto text = [&] {
        std::string result;
        for (auto length = random() % 20; length > 0; --length)
            result += static_cast<char>('a' + random() % 26);
        return result;
    };
    for (int round = 0; round < 500; ++round) {
        ID3v2Tag tag{"", text(), text(), text(), text(), text(), "Rock", 0, text()};
        tag.Track = static_cast<std::int16_t>(random() % 100);
        const std::string body = random() % 2 ? Frame3("PRIV", text()) + std::string(9, '\0') : "";
        const std::string built = BuildID3v2Tag(body, tag, 3);
        ID3v2Tag read;
        metadata::ReadID3v2Frames(built.substr(10), 3, read);
        tag.Genre = "17";
        EXPECT_EQ(read, tag);
        EXPECT_TRUE(built.ends_with(body));
    }
}

} // namespace

#include "metadata/unicode/framelist.h"
#include "tests/metadata/unicode/tagbytes.h"
#include "tests/metadata/unicode/taginmemory.h"

#include <gtest/gtest.h>

using namespace metadata::unicode;
using namespace std::string_literals;
using namespace std::string_view_literals;

namespace tests
{

namespace
{

// "TIT2=abc TPE1=-": the frames with their contents; "-" for one that cannot be read.
std::string Listed(const std::string &tag)
{
    const auto header = ReadTagHeader(tag);
    if (!header)
        return "no tag";
    std::string text;
    const FrameList list = ReadFrames(*header, tag);
    for (const auto &frame : list.frames)
        text += (text.empty() ? "" : " ") + std::string(frame.id) + "=" +
                FrameContent(frame).value_or("-");
    return text;
}

} // namespace

TEST(ReadTagHeader, Table)
{
    const struct {
        const char *name;
        std::string_view bytes;
        std::int64_t wantBody; // -1 = no header
    } cases[] = {
        {"empty", "", -1},
        {"too short", "ID3\x03\0\0\0\0\0"sv, -1},
        {"version 1", "ID3\x01\0\0\0\0\0\x05"sv, -1},
        {"version 2", "ID3\x02\0\0\0\0\0\x05"sv, 5},
        {"version 3", "ID3\x03\0\0\0\0\x01\x00"sv, 128},
        {"version 4", "ID3\x04\0\0\x7F\x7F\x7F\x7F"sv, 0x0FFFFFFF},
        {"version 5", "ID3\x05\0\0\0\0\0\x05"sv, -1},
        {"a plain size", "ID3\x03\0\0\0\0\0\x80"sv, 128},
        {"the largest plain size", "ID3\x03\0\0\xFF\xFF\xFF\xFF"sv, 0xFFFFFFFF},
        {"other letters", "id3\x03\0\0\0\0\0\x05"sv, -1},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const auto header = ReadTagHeader(c.bytes);
        EXPECT_EQ(header ? header->bodyBytes : -1, c.wantBody);
    }
    EXPECT_TRUE(ReadTagFooter("3DI\x04\0\x10\0\0\0\x05"sv).has_value());
    EXPECT_FALSE(ReadTagFooter("3DI\x03\0\x10\0\0\0\x05"sv).has_value());
    EXPECT_FALSE(ReadTagFooter("ID3\x04\0\x10\0\0\0\x05"sv).has_value());
}

TEST(ReadFrames, Versions)
{
    EXPECT_EQ(Listed(TagOf(2, Frame22("TT2", "abc") + Frame22("PIC", "x") + Frame22("TP1", "d"))),
              "TIT2=abc PIC=x TPE1=d");
    EXPECT_EQ(Listed(TagOf(3, Frame23("TIT2", "abc") + Frame23("TPE1", "d"))), "TIT2=abc TPE1=d");
    EXPECT_EQ(Listed(TagOf(4, Frame24("TIT2", "abc") + Frame24("TPE1", "d"))), "TIT2=abc TPE1=d");
    EXPECT_EQ(Listed(TagOf(3, Frame23("TT2\0"sv, "abc") + Frame23("TP1 ", "d"))),
              "TIT2=abc TPE1=d");
    EXPECT_EQ(Listed(TagOf(2, Frame22("TT2", "abc"), 0x40)), ""); // the whole tag is compressed
}

TEST(ReadFrames, EndsAtPaddingAndDamage)
{
    const std::string first = Frame23("TIT2", "abc");
    const std::string second = Frame23("TPE1", "d");
    EXPECT_EQ(Listed(TagOf(3, first + std::string(20, '\0') + second)), "TIT2=abc");
    EXPECT_EQ(Listed(TagOf(3, first + "tpe1" + second)), "TIT2=abc");
    EXPECT_EQ(Listed(TagOf(3, first + "TPE1" + BigEndian(99, 4) + "\0\0d"s)), "TIT2=abc");
    EXPECT_EQ(Listed(TagOf(3, first + "TPE1" + BigEndian(0xFFFFFFFF, 4) + "\0\0d"s)), "TIT2=abc");
    EXPECT_EQ(Listed(TagOf(3, Frame23("TIT2", "") + second)), "TIT2= TPE1=d");
    const std::string whole = TagOf(3, first + second);
    for (std::size_t size = 10; size < whole.size(); ++size) {
        SCOPED_TRACE(size);
        EXPECT_EQ(Listed(whole.substr(0, size)), size < 23 ? "" : "TIT2=abc");
    }
}

TEST(ReadFrames, ExtendedHeader)
{
    const std::string frame23 = Frame23("TIT2", "abc");
    EXPECT_EQ(Listed(TagOf(3, BigEndian(6, 4) + std::string(6, '\0') + frame23, 0x40)), "TIT2=abc");
    EXPECT_EQ(Listed(TagOf(3, BigEndian(10, 4) + std::string(10, '\0') + frame23, 0x40)),
              "TIT2=abc");
    EXPECT_EQ(Listed(TagOf(3, BigEndian(0xFFFFFFFF, 4) + std::string(6, '\0') + frame23, 0x40)),
              "");
    EXPECT_EQ(Listed(TagOf(3, "\0\0"s, 0x40)), "");
    // The header announces it, but it is missing.
    EXPECT_EQ(Listed(TagOf(3, frame23, 0x40)), "TIT2=abc");
    const std::string frame24 = Frame24("TIT2", "abc");
    EXPECT_EQ(Listed(TagOf(4, frame24, 0x40)), "TIT2=abc");
    // With a CRC of five bytes and restrictions of one (2.4, section 3.2, flags c and d).
    EXPECT_EQ(
        Listed(TagOf(4, BigEndian(14, 4, 7) + "\x01\x30\x05\0\0\0\0\x01\x01\xFF"s + frame24, 0x40)),
        "TIT2=abc");
    EXPECT_EQ(Listed(TagOf(4, BigEndian(6, 4, 7) + "\x01\0"s + frame24, 0x40)), "TIT2=abc");
    const std::string update = TagOf(4, BigEndian(7, 4, 7) + "\x01\x40\0"s + frame24, 0x40);
    EXPECT_EQ(Listed(update), "TIT2=abc");
    EXPECT_TRUE(ReadFrames(*ReadTagHeader(update), update).isUpdate);
    EXPECT_EQ(Listed(TagOf(4, BigEndian(5, 4, 7) + "\x01\0"s + frame24, 0x40)), "");
}

TEST(ReadFrames, Unsynchronised)
{
    const std::string frame = Frame23("TIT2", "a\xFF\xE0");
    // The size in the frame is that before the extra NUL was put in (2.3), in the tag that after
    // it.
    const std::string stored = frame.substr(0, frame.size() - 1) + "\0\xE0"s;
    EXPECT_EQ(Listed(TagOf(3, stored + Frame23("TPE1", "d"), 0x80)), "TIT2=a\xFF\xE0 TPE1=d");
    EXPECT_EQ(Listed(TagOf(2, Frame22("TT2", "x\xFF\0"sv), 0x80)), ""); // one byte shorter after it
    const std::string in24 = Frame24("TIT2", "a\xFF\0\xE0"sv, 0x02) + Frame24("TPE1", "d");
    EXPECT_EQ(Listed(TagOf(4, in24)), "TIT2=a\xFF\xE0 TPE1=d");
    EXPECT_EQ(Listed(TagOf(4, Frame24("TIT2", "a\xFF\0\xE0"sv), 0x80)), "TIT2=a\xFF\xE0");
    EXPECT_EQ(Resynchronise("\xFF\0\0\xFF\0"sv), "\xFF\0\xFF"sv);
    EXPECT_EQ(Resynchronise("\xFF"), "\xFF");
}

TEST(ReadFrames, PlainSizesInVersion4)
{
    const std::string longText(200, 'x');
    const auto plain = [](std::string_view name, std::string_view data) {
        return std::string(name) + BigEndian(static_cast<std::uint32_t>(data.size()), 4) + "\0\0"s +
               std::string(data);
    };
    const std::string mixed = plain("TIT2", longText) + plain("TPE1", "d");
    EXPECT_EQ(Listed(TagOf(4, mixed)), "TIT2=" + longText + " TPE1=d");
    EXPECT_EQ(Listed(TagOf(4, plain("TIT2", longText))), "TIT2=" + longText);
    EXPECT_EQ(Listed(TagOf(4, plain("TIT2", longText) + std::string(9, '\0'))), "TIT2=" + longText);
    EXPECT_EQ(Listed(TagOf(4, Frame24("TIT2", longText) + Frame24("TPE1", "d"))),
              "TIT2=" + longText + " TPE1=d");
}

TEST(FrameContent, Flags)
{
    const std::string packed = Packed("abc");
    const std::string length23 = BigEndian(3, 4);
    const std::string length24 = BigEndian(3, 4, 7);
    const struct {
        const char *name;
        std::string tag;
        std::string want;
    } cases[] = {
        {"2.3 grouped", TagOf(3, Frame23("TIT2", "gabc", 0x20)), "TIT2=abc"},
        {"2.3 packed", TagOf(3, Frame23("TIT2", length23 + packed, '\x80')), "TIT2=abc"},
        {"2.3 packed, grouped", TagOf(3, Frame23("TIT2", length23 + "g" + packed, '\xA0')),
         "TIT2=abc"},
        {"2.3 encrypted", TagOf(3, Frame23("TIT2", "eabc", 0x40)), "TIT2=-"},
        {"2.3 packed, damaged", TagOf(3, Frame23("TIT2", length23 + "abc", '\x80')), "TIT2=-"},
        {"2.3 packed, cut", TagOf(3, Frame23("TIT2", length23 + packed.substr(0, 6), '\x80')),
         "TIT2=-"},
        {"2.3 too short for its flags", TagOf(3, Frame23("TIT2", "ab", '\x80')), "TIT2=-"},
        {"2.4 grouped", TagOf(4, Frame24("TIT2", "gabc", 0x40)), "TIT2=abc"},
        {"2.4 with its length", TagOf(4, Frame24("TIT2", length24 + "abc", 0x01)), "TIT2=abc"},
        {"2.4 packed", TagOf(4, Frame24("TIT2", length24 + packed, 0x09)), "TIT2=abc"},
        {"2.4 encrypted", TagOf(4, Frame24("TIT2", "eabc", 0x04)), "TIT2=-"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Listed(c.tag), c.want);
    }
}

TEST(FrameContent, ABombIsNotUnpacked)
{
    const std::string bomb = BigEndian(3, 4, 7) + Packed(std::string(kMaxUnpackedBytes + 1, '\0'));
    EXPECT_EQ(Listed(TagOf(4, Frame24("TIT2", bomb, 0x09))), "TIT2=-");
    const std::string largest = BigEndian(3, 4, 7) + Packed(std::string(kMaxUnpackedBytes, 'x'));
    EXPECT_EQ(Listed(TagOf(4, Frame24("TIT2", largest, 0x09))).size(), kMaxUnpackedBytes + 5);
}

} // namespace tests

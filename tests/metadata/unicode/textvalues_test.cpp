#include "metadata/unicode/textvalues.h"

#include <gtest/gtest.h>

using metadata::unicode::CutAtTerminator;
using metadata::unicode::DecodeText;
using metadata::unicode::DecodeValues;
using metadata::unicode::Encoding;
using metadata::unicode::EncodingOf;
using namespace std::string_view_literals;

TEST(DecodeText, Table)
{
    const struct {
        const char *name;
        Encoding encoding;
        std::string_view bytes;
        std::string_view want;
    } cases[] = {
        {"nothing", Encoding::Latin1, "", ""},
        {"ASCII", Encoding::Latin1, "abc", "abc"},
        {"Latin-1", Encoding::Latin1, "ni\xF1o", "niño"},
        {"a byte that the code page adds", Encoding::Latin1, "\x80", "€"},
        {"UTF-8 where Latin-1 is said", Encoding::Latin1, "ni\xC3\xB1o", "niño"},
        {"almost UTF-8 is Latin-1", Encoding::Latin1, "\xC3\xB1\xF1", "Ã±ñ"},
        {"low byte first", Encoding::Utf16, "\xFF\xFE\x42\x30"sv, "あ"},
        {"high byte first", Encoding::Utf16, "\xFE\xFF\x30\x42"sv, "あ"},
        {"no mark, low byte first", Encoding::Utf16, "a\0b\0"sv, "ab"},
        {"no mark, high byte first", Encoding::Utf16, "\0a\0b"sv, "ab"},
        {"no mark and no hint", Encoding::Utf16, "\x42\x30"sv, "あ"},
        {"two units", Encoding::Utf16, "\xFF\xFE\x3D\xD8\x00\xDE"sv, "😀"},
        {"a high surrogate alone", Encoding::Utf16Be, "\xD8\x3D\0a"sv, "\uFFFDa"},
        {"a low surrogate alone", Encoding::Utf16Be, "\xDE\x00\0a"sv, "\uFFFDa"},
        {"a high surrogate at the end", Encoding::Utf16Be, "\xD8\x3D"sv, "\uFFFD"},
        {"an odd last byte", Encoding::Utf16Be, "\0ab"sv, "a"},
        {"without a mark by its kind", Encoding::Utf16Be, "\x30\x42"sv, "あ"},
        {"a mark where none belongs", Encoding::Utf16Be, "\xFF\xFE\x42\x30"sv, "あ"},
        {"UTF-8", Encoding::Utf8, "\xE3\x81\x82", "あ"},
        {"UTF-8 with a mark", Encoding::Utf8, "\xEF\xBB\xBF\xE3\x81\x82", "あ"},
        {"no UTF-8 where it is said", Encoding::Utf8, "ni\xF1o", "niño"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(DecodeText(c.encoding, c.bytes), c.want);
    }
}

TEST(DecodeText, EncodingOfAnyByte)
{
    for (int byte = 0; byte < 256; ++byte)
        EXPECT_EQ(static_cast<int>(EncodingOf(static_cast<unsigned char>(byte))),
                  byte > 3 ? 0 : byte);
}

TEST(CutAtTerminator, Table)
{
    const struct {
        const char *name;
        Encoding encoding;
        std::string_view bytes;
        std::string_view text;
        std::string_view rest;
    } cases[] = {
        {"one byte", Encoding::Latin1, "ab\0cd"sv, "ab", "cd"},
        {"none", Encoding::Utf8, "ab", "ab", ""},
        {"at once", Encoding::Latin1, "\0x"sv, "", "x"},
        {"two bytes", Encoding::Utf16, "a\0\0\0b\0"sv, "a\0"sv, "b\0"sv},
        {"two NULs of two characters", Encoding::Utf16Be, "\x01\0\0\x02\0\0x"sv, "\x01\0\0\x02"sv,
         "x"},
        {"half a terminator at the end", Encoding::Utf16, "a\0\0"sv, "a\0\0"sv, ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const auto cut = CutAtTerminator(c.encoding, c.bytes);
        EXPECT_EQ(cut.text, c.text);
        EXPECT_EQ(cut.rest, c.rest);
    }
}

TEST(DecodeValues, Table)
{
    using Values = std::vector<std::string>;
    EXPECT_EQ(DecodeValues(Encoding::Latin1, ""), Values{});
    EXPECT_EQ(DecodeValues(Encoding::Latin1, "one\0"sv), Values{"one"});
    EXPECT_EQ(DecodeValues(Encoding::Latin1, "one\0\0two"sv), (Values{"one", "two"}));
    EXPECT_EQ(DecodeValues(Encoding::Utf8, "ん\0é"sv), (Values{"ん", "é"}));
    EXPECT_EQ(DecodeValues(Encoding::Utf16, "\xFE\xFF\0a\0\0\xFF\xFE\x62\0"sv), (Values{"a", "b"}));
    EXPECT_EQ(DecodeValues(Encoding::Utf16, "\xFE\xFF\0a\0\0\0b"sv), (Values{"a", "b"}));
}

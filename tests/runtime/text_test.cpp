#include "runtime/error.h"
#include "runtime/text.h"

#include <gtest/gtest.h>
#include <utf8proc.h>

#include <array>
#include <cerrno>

using namespace runtime;

TEST(Mid, Table)
{
    constexpr struct {
        const char *name;
        std::string_view text;
        long long start, count;
        std::string_view want;
    } cases[] = {
        {"inside", "abcdef", 2, 3, "bcd"},  {"past the end", "abc", 2, 9, "bc"},
        {"starts behind", "abc", 4, 1, ""}, {"nothing", "abc", 1, 0, ""},
        {"empty text", "", 1, 5, ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Mid(c.text, c.start, c.count), c.want);
    }
    EXPECT_THROW(Mid("abc", 0, 1), RuntimeError);
    EXPECT_THROW(Mid("abc", 1, -1), RuntimeError);
}

TEST(InStr, Table)
{
    constexpr struct {
        const char *name;
        long long start;
        std::string_view text, needle;
        long long want;
    } cases[] = {
        {"first of two", 1, "abcabc", "bc", 2},
        {"second", 3, "abcabc", "bc", 5},
        {"none", 1, "abc", "x", 0},
        {"case counts", 1, "abc", "B", 0},
        {"empty needle", 1, "abc", "", 1},
        {"empty needle later", 3, "abc", "", 3},
        {"empty text", 1, "", "", 0},
        {"start behind", 4, "abc", "", 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(InStr(c.start, c.text, c.needle), c.want);
    }
    EXPECT_THROW(InStr(0, "abc", "a"), RuntimeError);
    EXPECT_EQ(InStr(1, std::string_view("a\0b", 3), std::string_view("\0b", 2)), 2);
}

TEST(Trim, CutsBlanksOnly)
{
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim("\ta\n"), "\ta\n");
    EXPECT_EQ(Trim(std::string_view(" a\0 ", 4)), std::string_view("a\0", 2));
}

TEST(StripTrailingNulls, Table)
{
    EXPECT_EQ(StripTrailingNulls(std::string_view("ab\0\0", 4)), "ab");
    EXPECT_EQ(StripTrailingNulls(std::string_view("a\0b", 3)), std::string_view("a\0b", 3));
    EXPECT_EQ(StripTrailingNulls(std::string_view("\0\0", 2)), "");
    EXPECT_EQ(StripTrailingNulls(""), "");
}

TEST(Replace, Table)
{
    EXPECT_EQ(Replace("a'b''c", "'", "''"), "a''b''''c");
    EXPECT_EQ(Replace("abc", "", "x"), "abc");
    EXPECT_EQ(Replace("aaa", "aa", "b"), "ba");
    EXPECT_EQ(ReplaceFirst("? ?", "?", "1"), "1 ?");
    EXPECT_EQ(ReplaceFirst("abc", "x", "1"), "abc");
}

TEST(WithCrLf, Table)
{
    constexpr struct {
        const char *name;
        std::string_view text, want;
    } cases[] = {
        {"empty", "", ""},
        {"no line end", "a", "a"},
        {"CR LF stays", "a\r\nb\r\n", "a\r\nb\r\n"},
        {"LF alone", "a\n\nb\n", "a\r\n\r\nb\r\n"},
        {"CR alone", "\ra\r\rb", "\r\na\r\n\r\nb"},
        {"mixed", "\n\r\r\n\n", "\r\n\r\n\r\n\r\n"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(WithCrLf(c.text), c.want) << c.name;
}

TEST(Split, Table)
{
    EXPECT_EQ(Split("a,b,,c", ","), (std::vector<std::string>{"a", "b", "", "c"}));
    EXPECT_EQ(Split("abc", ","), (std::vector<std::string>{"abc"}));
    EXPECT_TRUE(Split("", ",").empty());
}

namespace
{

std::string Encoded(utf8proc_int32_t codePoint)
{
    std::array<utf8proc_uint8_t, 4> bytes{};
    const auto length = utf8proc_encode_char(codePoint, bytes.data());
    return {reinterpret_cast<const char *>(bytes.data()), static_cast<std::size_t>(length)};
}

// Character by character; what is no valid UTF-8 stays.
std::string PlainUpper(std::string_view text)
{
    std::string upper;
    while (!text.empty()) {
        utf8proc_int32_t codePoint = 0;
        const auto length =
            utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t *>(text.data()),
                             static_cast<utf8proc_ssize_t>(text.size()), &codePoint);
        if (length > 0)
            upper += Encoded(utf8proc_toupper(codePoint));
        else
            upper += text[0];
        text.remove_prefix(length > 0 ? static_cast<std::size_t>(length) : 1);
    }
    return upper;
}

} // namespace

TEST(UpperText, EveryCharacter)
{
    for (utf8proc_int32_t codePoint = 0; codePoint < 0x110000; ++codePoint) {
        if (codePoint >= 0xD800 && codePoint < 0xE000)
            continue; // surrogates are no characters
        const std::string text = Encoded(codePoint);
        ASSERT_EQ(UpperText(text), Encoded(utf8proc_toupper(codePoint))) << codePoint;
    }
}

TEST(UpperText, EveryPairOfBytesAmongLetters)
{
    for (int first = 0; first < 256; ++first)
        for (int second = 0; second < 256; ++second) {
            const std::string pair{static_cast<char>(first), static_cast<char>(second)};
            for (const std::string &text : {pair, "eight letters" + pair + "and eight more"})
                ASSERT_EQ(UpperText(text), PlainUpper(text)) << first << " " << second;
        }
    std::string behind = "abc";
    AppendUpperText("d\u00F1", behind);
    EXPECT_EQ(behind, "abcD\u00D1");
}

TEST(UpperText, OneCharacterForOne)
{
    constexpr struct {
        const char *name;
        std::string_view text, want;
    } cases[] = {
        {"ascii", "abc-9Z", "ABC-9Z"},
        {"spanish", "ñandú", "ÑANDÚ"},
        {"one for one", "straße", "STRAẞE"},
        {"cyrillic", "Дмитрий", "ДМИТРИЙ"},
        {"broken utf-8 stays",
         "\xff"
         "a\xc3",
         "\xff"
         "A\xc3"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(UpperText(c.text), c.want);
    }
    EXPECT_TRUE(EqualText("ñandú", "ÑANDÚ"));
    EXPECT_FALSE(EqualText("nandu", "ÑANDÚ"));
}

TEST(IsUtf8, Table)
{
    EXPECT_TRUE(IsUtf8("abc ñ 山"));
    EXPECT_FALSE(IsUtf8("a\xffz"));
    EXPECT_FALSE(IsUtf8("\xc0\x80"));     // overlong NUL
    EXPECT_FALSE(IsUtf8("\xed\xa0\x80")); // surrogate
}

TEST(ShownText, Table)
{
    const struct {
        const char *name;
        std::string_view text, want;
    } cases[] = {
        {"plain", "A na\xC3\xAFve (song).mp3", "A na\xC3\xAFve (song).mp3"},
        {"escape", "a\x1B[2J", "a\\x1b[2J"},
        {"lines", "a\r\nb\tc", "a\\x0d\\x0ab\\x09c"},
        {"nul and delete", std::string_view("\0\x7F", 2), "\\x00\\x7f"},
        {"C1 in UTF-8",
         "\xC2\x9B"
         "1m\xC2\xA0",
         "\\xc2\\x9b1m\xC2\xA0"},
        {"C1 as one byte",
         "\x9B"
         "1m",
         "\\x9b1m"},
        {"no UTF-8", "latin\xE9.mp3", "latin\xE9.mp3"},
        {"cut character", "\xE2\x82", "\xE2\\x82"},
        {"empty", "", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(runtime::ShownText(c.text), c.want);
    }
    EXPECT_EQ(runtime::ShownLines("a\r\nb\tc\x1B"), "a\r\nb\tc\\x1b");
    EXPECT_EQ(runtime::FileError(2, "a\nb").description, "a\\x0ab: No such file or directory");
    EXPECT_EQ(runtime::FileError(ENOMEM).number, runtime::kOutOfMemory);
    EXPECT_EQ(runtime::FileError(ENOMEM).description, "Out of memory");
}

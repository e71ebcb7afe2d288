#include "runtime/collation.h"

#include "runtime/text.h"
#include "runtime/utf8.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>

namespace runtime
{

namespace
{

int Sign(int value)
{
    return (value > 0) - (value < 0);
}

bool IsMark(utf8proc_int32_t codePoint)
{
    const auto category = utf8proc_category(codePoint);
    return category == UTF8PROC_CATEGORY_MN || category == UTF8PROC_CATEGORY_ME;
}

// Appends the base letters of one character, in upper case and without marks.
void AppendBaseLetters(utf8proc_int32_t codePoint, std::string &key)
{
    constexpr auto kDecompose =
        static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | UTF8PROC_STABLE);
    std::array<utf8proc_int32_t, 8> letters{};
    int lastBoundClass = 0;
    const auto count = utf8proc_decompose_char(
        codePoint, letters.data(), static_cast<int>(letters.size()), kDecompose, &lastBoundClass);
    if (count < 0 || count > static_cast<utf8proc_ssize_t>(letters.size()))
        return AppendCharacter(utf8proc_toupper(codePoint), key);
    for (utf8proc_ssize_t i = 0; i < count; ++i)
        if (const auto letter = letters[static_cast<std::size_t>(i)]; !IsMark(letter))
            AppendCharacter(utf8proc_toupper(letter), key);
}

int CollateSlowly(std::string_view first, std::string_view second)
{
    return CollateKeyed(SortKey(first), first, SortKey(second), second);
}

} // namespace

void MakeSortKey(std::string_view text, std::string &key)
{
    key.clear();
    while (!text.empty()) {
        const std::size_t ascii = AsciiLength(text);
        AppendUpperAscii(text.substr(0, ascii), key);
        text.remove_prefix(ascii);
        if (text.empty())
            break;
        utf8proc_int32_t codePoint = 0;
        const int length = NextCharacter(text, codePoint);
        if (length > 0)
            AppendBaseLetters(codePoint, key);
        else
            key += text[0]; // not valid UTF-8: the byte is kept
        text.remove_prefix(static_cast<std::size_t>(std::max(length, 1)));
    }
}

std::string SortKey(std::string_view text)
{
    std::string key;
    MakeSortKey(text, key);
    return key;
}

int CollateKeyed(std::string_view firstKey, std::string_view first, std::string_view secondKey,
                 std::string_view second)
{
    if (const int order = firstKey.compare(secondKey); order != 0)
        return Sign(order);
    if (first == second || (IsAscii(first) && IsAscii(second)))
        return 0; // the key of an ASCII text is its upper case
    return Sign(UpperText(first).compare(UpperText(second)));
}

int CollateText(std::string_view first, std::string_view second)
{
    const auto common = std::min(first.size(), second.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (((first[i] | second[i]) & 0x80) != 0)
            return CollateSlowly(first, second);
        const char a = UpperAscii(first[i]), b = UpperAscii(second[i]);
        if (a != b) // the keys are equal up to here and differ in this letter
            return a < b ? -1 : 1;
    }
    if (IsAscii(first.substr(common)) && IsAscii(second.substr(common)))
        return (first.size() > second.size()) - (first.size() < second.size());
    return CollateSlowly(first, second);
}

} // namespace runtime

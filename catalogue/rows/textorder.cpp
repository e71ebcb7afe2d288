#include "catalogue/rows/textorder.h"

#include "runtime/text.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace catalogue
{

namespace
{

// Units of a folded pattern that no byte has.
constexpr char16_t kAny = 0x100;
constexpr char16_t kOne = 0x101;

constexpr std::array<unsigned char, 256> MakeUpperTable()
{
    std::array<unsigned char, 256> table{};
    for (int i = 0; i < 256; ++i)
        table[static_cast<std::size_t>(i)] =
            static_cast<unsigned char>(i >= 'a' && i <= 'z' ? i - 'a' + 'A' : i);
    return table;
}

constexpr auto kUpper = MakeUpperTable();

unsigned char UpperByte(char c)
{
    return kUpper[static_cast<unsigned char>(c)];
}

bool IsAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

int Sign(int value)
{
    return (value > 0) - (value < 0);
}

void AppendCodePoint(utf8proc_int32_t codePoint, std::string &out)
{
    std::array<utf8proc_uint8_t, 4> bytes{};
    const auto length = utf8proc_encode_char(codePoint, bytes.data());
    out.append(reinterpret_cast<const char *>(bytes.data()), static_cast<std::size_t>(length));
}

bool IsMark(utf8proc_int32_t codePoint)
{
    const auto category = utf8proc_category(codePoint);
    return category == UTF8PROC_CATEGORY_MN || category == UTF8PROC_CATEGORY_ME;
}

// The letters of one character without their marks, in upper case.
void AppendBaseLetters(utf8proc_int32_t codePoint, std::string &key)
{
    constexpr auto kDecompose =
        static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | UTF8PROC_STABLE);
    std::array<utf8proc_int32_t, 8> letters{};
    int lastBoundClass = 0;
    const auto count = utf8proc_decompose_char(
        codePoint, letters.data(), static_cast<int>(letters.size()), kDecompose, &lastBoundClass);
    if (count < 0 || count > static_cast<utf8proc_ssize_t>(letters.size()))
        return AppendCodePoint(utf8proc_toupper(codePoint), key);
    for (utf8proc_ssize_t i = 0; i < count; ++i)
        if (const auto letter = letters[static_cast<std::size_t>(i)]; !IsMark(letter))
            AppendCodePoint(utf8proc_toupper(letter), key);
}

int CollateSlowly(std::string_view first, std::string_view second)
{
    const int order = SortKey(first).compare(SortKey(second));
    return Sign(order != 0 ? order : runtime::UpperText(first).compare(runtime::UpperText(second)));
}

} // namespace

void MakeSortKey(std::string_view text, std::string &key)
{
    key.clear();
    for (std::size_t at = 0; at < text.size();) {
        if (static_cast<unsigned char>(text[at]) < 0x80) {
            key += static_cast<char>(UpperByte(text[at++]));
            continue;
        }
        utf8proc_int32_t codePoint = -1;
        const auto length =
            utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t *>(text.data() + at),
                             static_cast<utf8proc_ssize_t>(text.size() - at), &codePoint);
        if (length <= 0 || codePoint < 0) {
            key += text[at++]; // no valid UTF-8: the byte stands for itself
            continue;
        }
        AppendBaseLetters(codePoint, key);
        at += static_cast<std::size_t>(length);
    }
}

std::string SortKey(std::string_view text)
{
    std::string key;
    MakeSortKey(text, key);
    return key;
}

int CollateText(std::string_view first, std::string_view second)
{
    const auto common = std::min(first.size(), second.size());
    for (std::size_t i = 0; i < common; ++i) {
        const auto a = static_cast<unsigned char>(first[i]);
        const auto b = static_cast<unsigned char>(second[i]);
        if ((a | b) >= 0x80)
            return CollateSlowly(first, second);
        if (kUpper[a] != kUpper[b]) // the keys are equal up to here and differ in this letter
            return kUpper[a] < kUpper[b] ? -1 : 1;
    }
    if (IsAscii(first.substr(common)) && IsAscii(second.substr(common)))
        return (first.size() > second.size()) - (first.size() < second.size());
    return CollateSlowly(first, second);
}

bool SameTrimmed(std::string_view first, std::string_view second)
{
    first = runtime::Trim(first);
    second = runtime::Trim(second);
    const auto common = std::min(first.size(), second.size());
    for (std::size_t i = 0; i < common; ++i) {
        if ((static_cast<unsigned char>(first[i]) | static_cast<unsigned char>(second[i])) >= 0x80)
            return runtime::EqualText(first, second);
        if (UpperByte(first[i]) != UpperByte(second[i]))
            return false;
    }
    return first.size() == second.size();
}

LikePattern::LikePattern(std::string_view pattern, std::string_view escape)
{
    std::string plain; // characters that stand for themselves, up to the next wildcard
    const auto flush = [&] {
        for (const char c : runtime::UpperText(plain))
            m_folded += static_cast<unsigned char>(c);
        plain.clear();
    };
    for (std::size_t at = 0; at < pattern.size(); ++at) {
        if (!escape.empty() && pattern.substr(at).starts_with(escape)) {
            at += escape.size();
            if (at < pattern.size())
                plain += pattern[at];
        } else if (pattern[at] == '%' || pattern[at] == '_') {
            flush();
            m_folded += pattern[at] == '%' ? kAny : kOne;
        } else {
            plain += pattern[at];
        }
    }
    flush();
    const auto isAsciiUnit = [](char16_t unit) { return unit < 0x80; };
    m_isContains = m_folded.size() >= 2 && m_folded.front() == kAny && m_folded.back() == kAny &&
                   std::all_of(m_folded.begin() + 1, m_folded.end() - 1, isAsciiUnit);
    if (m_isContains)
        m_needle.assign(m_folded.begin() + 1, m_folded.end() - 1);
}

bool LikePattern::Matches(std::string_view text) const
{
    if (m_isContains && IsAscii(text))
        return Contains(text);
    return MatchesFolded(runtime::UpperText(text));
}

bool LikePattern::Contains(std::string_view asciiText) const
{
    const auto isSame = [](char a, char b) { return UpperByte(a) == UpperByte(b); };
    return std::search(asciiText.begin(), asciiText.end(), m_needle.begin(), m_needle.end(),
                       isSame) != asciiText.end() ||
           m_needle.empty();
}

bool LikePattern::MatchesFolded(std::string_view folded) const
{
    // The usual walk with one place to come back to: behind the last "%" seen.
    const std::u16string_view pattern = m_folded;
    std::size_t p = 0, t = 0, backPattern = std::string_view::npos, backText = 0;
    while (t < folded.size()) {
        if (p < pattern.size() && pattern[p] == kAny) {
            backPattern = ++p;
            backText = t;
        } else if (p < pattern.size() && pattern[p] == kOne) {
            ++p;
            ++t;
            while (t < folded.size() && (static_cast<unsigned char>(folded[t]) & 0xC0) == 0x80)
                ++t; // the rest of one character
        } else if (p < pattern.size() && pattern[p] == static_cast<unsigned char>(folded[t])) {
            ++p;
            ++t;
        } else if (backPattern != std::string_view::npos) {
            p = backPattern;
            t = ++backText;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == kAny)
        ++p;
    return p == pattern.size();
}

} // namespace catalogue

#include "catalogue/rows/textmatch.h"

#include "runtime/text.h"

#include <algorithm>

namespace catalogue
{

namespace
{

// Units of a folded pattern that no byte has.
constexpr char16_t kAny = 0x100;
constexpr char16_t kOne = 0x101;

} // namespace

bool SameTrimmed(std::string_view first, std::string_view second)
{
    first = runtime::Trim(first);
    second = runtime::Trim(second);
    const auto common = std::min(first.size(), second.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (((first[i] | second[i]) & 0x80) != 0)
            return runtime::EqualText(first, second);
        if (runtime::UpperAscii(first[i]) != runtime::UpperAscii(second[i]))
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
    if (m_isContains && runtime::IsAscii(text))
        return Contains(text);
    return MatchesFolded(runtime::UpperText(text));
}

bool LikePattern::Contains(std::string_view asciiText) const
{
    const auto isSame = [](char a, char b) {
        return runtime::UpperAscii(a) == runtime::UpperAscii(b);
    };
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

#include "catalogue/rows/textmatch.h"

#include "runtime/text.h"
#include "runtime/utf8.h"

#include <algorithm>

namespace catalogue
{

namespace
{

// Values for the wildcards in a folded pattern; no byte has them.
constexpr char16_t kAny = 0x100;
constexpr char16_t kOne = 0x101;

// The longest run of units that are bytes, as these bytes.
std::string LongestPieceOf(std::u16string_view folded)
{
    std::string longest, piece;
    for (const char16_t unit : folded) {
        if (unit >= kAny) {
            piece.clear();
            continue;
        }
        piece += static_cast<char>(static_cast<unsigned char>(unit));
        if (piece.size() > longest.size())
            longest = piece;
    }
    return longest;
}

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
    std::string plain; // characters that match themselves, up to the next wildcard
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
            const char16_t unit = pattern[at] == '%' ? kAny : kOne;
            if (unit == kOne || m_folded.empty() || m_folded.back() != kAny)
                m_folded += unit; // several "%" in a row mean the same as one
        } else {
            plain += pattern[at];
        }
    }
    flush();
    m_piece = ByteSearch(LongestPieceOf(m_folded));
    const std::string &piece = m_piece.Needle();
    const std::u16string any(1, kAny);
    m_isContains = m_folded == any || (m_folded.size() == piece.size() + 2 &&
                                       m_folded.front() == kAny && m_folded.back() == kAny);
    m_isAsciiPiece = runtime::IsAscii(piece);
    if (m_isAsciiPiece)
        m_asciiPiece = ByteSearch(piece, LetterCase::IgnoredInAscii);
    // Two letters outside of ASCII have their upper case in it: the dotless i and the long s.
    m_hasForeignLower = piece.find_first_of("IS") != std::string::npos;
}

bool LikePattern::Matches(std::string_view text) const
{
    if (m_isContains && m_isAsciiPiece) {
        if (m_asciiPiece.Find(text) != ByteSearch::kNone)
            return true;
        if (!m_hasForeignLower || runtime::IsAscii(text))
            return false;
    }
    if (!m_isAsciiPiece && runtime::IsAscii(text))
        return false; // its upper case is ASCII too
    return MatchesUpper(runtime::UpperText(text));
}

bool LikePattern::MatchesUpper(std::string_view folded) const
{
    if (m_isContains)
        return m_piece.Find(folded) != ByteSearch::kNone;
    // The usual algorithm, which goes back only to the last "%".
    const std::u16string_view pattern = m_folded;
    std::size_t p = 0, t = 0, backPattern = std::string_view::npos, backText = 0;
    while (t < folded.size()) {
        if (p < pattern.size() && pattern[p] == kAny) {
            backPattern = ++p;
            backText = t;
        } else if (p < pattern.size() && pattern[p] == kOne) {
            ++p;
            ++t;
            while (t < folded.size() && runtime::ContinuesCharacter(folded[t]))
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

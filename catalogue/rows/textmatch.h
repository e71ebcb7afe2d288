// catalogue/rows/textmatch.h - how conditions of the catalogue match text: without regard to letter
// case, one character to one. UTF-8 of any length, NULs and bytes that are no valid UTF-8 included.
// No state.
#pragma once

#include "catalogue/rows/bytesearch.h"

#include <string>
#include <string_view>

namespace catalogue
{

// Whether the texts are equal in upper case and without blanks at both ends (blanks only, no tabs).
bool SameTrimmed(std::string_view first, std::string_view second);

// A pattern of LIKE, folded once: "%" matches any characters, "_" one, all others match
// themselves without regard to letter case. The character after the escape character, if there is
// one, matches only itself.
class LikePattern
{
public:
    explicit LikePattern(std::string_view pattern, std::string_view escape = {});

    // Whether the whole `text` matches the pattern.
    [[nodiscard]] bool Matches(std::string_view text) const;

    // The same for a text that is in upper case already (runtime::UpperText).
    [[nodiscard]] bool MatchesUpper(std::string_view upper) const;

    // The longest piece without a wildcard, in upper case: a text that does not contain it does not
    // match.
    [[nodiscard]] const ByteSearch &LongestPiece() const { return m_piece; }

    // Whether every text that contains this piece matches.
    [[nodiscard]] bool IsContains() const { return m_isContains; }

private:
    std::u16string m_folded; // one unit for each byte in upper case, and one for each wildcard
    ByteSearch m_piece;
    ByteSearch m_asciiPiece; // the same without regard to ASCII letter case, for texts as they are
    bool m_isContains = false;
    bool m_isAsciiPiece = false;
    bool m_hasForeignLower = false; // a letter of the piece has a lower case outside of ASCII too
};

} // namespace catalogue

// catalogue/rows/textmatch.h - how conditions of the catalogue match text: without regard to letter
// case, one character to one. UTF-8 of any length, NULs and bytes that are no valid UTF-8 included.
// No state.
#pragma once

#include <string>
#include <string_view>

namespace catalogue
{

// Whether the trimmed, upper-cased texts are equal, blanks alone being trimmed.
bool SameTrimmed(std::string_view first, std::string_view second);

// A pattern of LIKE, folded once: "%" matches any characters, "_" one, all others match
// themselves without regard to letter case. What follows the escape character, if there is one, is
// matched as it is.
class LikePattern
{
public:
    explicit LikePattern(std::string_view pattern, std::string_view escape = {});

    // Whether the whole of `text` is as the pattern says.
    [[nodiscard]] bool Matches(std::string_view text) const;

private:
    [[nodiscard]] bool MatchesFolded(std::string_view folded) const;
    [[nodiscard]] bool Contains(std::string_view asciiText) const;

    std::u16string m_folded; // one unit per upper-cased byte, and units of their own for wildcards
    std::string m_needle;    // the text between the "%" of "%needle%", when it is that and ASCII
    bool m_isContains = false;
};

} // namespace catalogue

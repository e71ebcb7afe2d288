// catalogue/rows/textorder.h - how the catalogue compares text: without regard to letter case, one
// character to one, with accented letters beside their plain ones when sorting. UTF-8 of any
// length, NULs and bytes that are no valid UTF-8 included. No state.
#pragma once

#include <string>
#include <string_view>

namespace catalogue
{

// The key by which `text` sorts, compared byte by byte: its upper-cased letters without their
// marks. CollateText tells texts of one key apart.
std::string SortKey(std::string_view text);

// The same, into `key`, whose memory is used again.
void MakeSortKey(std::string_view text, std::string &key);

// The catalogue's order: by SortKey, then by the upper-cased texts (so that "Eric" comes before
// "Éric"). Returns: below 0, 0 for texts that differ at most in letter case, above 0. It is the
// collation of statements: "=" and DISTINCT take "ñandú" and "ÑANDÚ" for one.
int CollateText(std::string_view first, std::string_view second);

// Whether the trimmed, upper-cased texts are equal, blanks alone being trimmed.
bool SameTrimmed(std::string_view first, std::string_view second);

// A pattern of LIKE, folded once: "%" stands for any characters, "_" for one, the rest for itself
// without regard to letter case. With an escape character, what follows it stands for itself.
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

// catalogue/rows/bytesearch.h - finds one text inside others, many bytes at a time. It compares
// bytes, not characters: letter case is ignored for ASCII letters only, or not at all.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace catalogue
{

enum class LetterCase { Counts, IgnoredInAscii };

class ByteSearch
{
public:
    static constexpr std::size_t kNone = std::string_view::npos;

    // `needle`: the bytes to find; may be empty.
    explicit ByteSearch(std::string needle = {}, LetterCase letterCase = LetterCase::Counts);

    [[nodiscard]] const std::string &Needle() const { return m_needle; }

    // The first offset at or after `from` where the needle is in `text`; kNone when there is none.
    // An empty needle is found at `from`, unless that is after the end.
    [[nodiscard]] std::size_t Find(std::string_view text, std::size_t from = 0) const;

private:
    [[nodiscard]] bool IsAt(const char *place) const;
    [[nodiscard]] std::size_t FindOneByOne(std::string_view text, std::size_t from) const;

    std::string m_needle;
    LetterCase m_letterCase;
    // The two bytes of the needle that are searched first: the two that are least frequent in
    // texts.
    std::size_t m_firstProbe = 0, m_secondProbe = 0;
};

} // namespace catalogue

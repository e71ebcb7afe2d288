#include "tagedit/genrelist.h"

#include "metadata/genres.h"
#include "runtime/text.h"
#include "runtime/utf8.h"

#include <algorithm>

namespace tagedit
{

namespace
{

constexpr int kLastGenre = 125; // "Dance Hall"

bool BeginsWith(const std::string &entry, const std::string &upperLetter)
{
    return entry != "genre" && runtime::UpperText(runtime::LeftCharacters(entry, 1)) == upperLetter;
}

int FindFrom(const std::vector<std::string> &entries, std::size_t first,
             const std::string &upperLetter)
{
    for (std::size_t i = first; i < entries.size(); ++i)
        if (BeginsWith(entries[i], upperLetter))
            return static_cast<int>(i);
    return -1;
}

} // namespace

std::vector<std::string> GenreEntries()
{
    std::vector<std::string> entries;
    entries.reserve(kLastGenre + 2);
    for (int number = -1; number < kLastGenre; ++number)
        entries.push_back(metadata::GenreName(number));
    std::sort(entries.begin(), entries.end());
    return entries;
}

int FindNextEntry(const std::vector<std::string> &entries, int index, std::string_view letter)
{
    if (letter.empty())
        return -1;
    const std::string upperLetter = runtime::UpperText(letter);
    const int next = FindFrom(entries, static_cast<std::size_t>(index) + 1, upperLetter);
    return next >= 0 ? next : FindFrom(entries, 1, upperLetter);
}

} // namespace tagedit

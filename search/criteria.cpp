#include "search/criteria.h"

#include "runtime/utf8.h"

#include <algorithm>

namespace search
{

namespace
{

using catalogue::Value;

void CutLast(std::string &text, std::size_t count)
{
    text.resize(text.size() - std::min(count, text.size()));
}

// The words of a text, which blanks separate. The text after the last blank counts only if it has
// at least two characters.
std::vector<std::string> WordsOf(std::string_view text)
{
    std::vector<std::string> words;
    for (;;) {
        std::size_t blank = text.find(' ');
        if (blank == std::string_view::npos && runtime::CountCharacters(text) >= 2)
            blank = text.size();
        if (blank == std::string_view::npos)
            return words;
        words.emplace_back(text.substr(0, blank));
        text.remove_prefix(std::min(blank + 1, text.size()));
    }
}

// Adds the terms of one field for a list of words, with `between` between them.
void AddTerms(Search &search, std::string_view field, const std::vector<std::string> &words,
              std::string_view between)
{
    for (const std::string &word : words) {
        search.statement.append(field).append(" LIKE ?").append(between);
        search.params.emplace_back("%" + word + "%");
    }
}

} // namespace

Search BuildSearch(const Criteria &criteria)
{
    constexpr std::string_view kOr = " OR ", kAnd = " AND ";
    Search search;
    search.statement = "SELECT *\rFROM MP3s\rWHERE ";
    search.text = criteria.text.empty() ? "%" : criteria.text;
    const std::string phrase = criteria.text.empty() ? "%" : "%" + criteria.text + "%";
    if (search.text.find(' ') == std::string::npos)
        search.text += ' ';
    const std::vector<std::string> words = WordsOf(search.text);
    for (std::size_t i = 0; i < kFields.size(); ++i) {
        if (!criteria.ticked[i])
            continue;
        if (criteria.type == kAnyWords) {
            AddTerms(search, kFields[i], words, kOr);
        } else if (criteria.type == kAllWords) {
            search.statement += "(";
            AddTerms(search, kFields[i], words, kAnd);
            CutLast(search.statement, kAnd.size());
            search.statement.append(")").append(kOr);
        } else {
            search.statement.append(kFields[i]).append(" LIKE ?").append(kOr);
            search.params.emplace_back(phrase);
        }
    }
    CutLast(search.statement, kOr.size()); // if no field is checked, this cuts a part of "WHERE "
    return search;
}

} // namespace search

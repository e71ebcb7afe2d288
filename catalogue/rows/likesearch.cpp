#include "catalogue/rows/likesearch.h"

#include "runtime/text.h"

#include <algorithm>

namespace catalogue
{

std::optional<LikeSearch> MakeLikeSearch(const LikeCondition &condition,
                                         const std::vector<std::string_view> &texts,
                                         const std::vector<std::string> &columns)
{
    LikeSearch search;
    search.root = condition.root;
    for (const std::string &name : condition.columns) {
        const auto column =
            std::find_if(columns.begin(), columns.end(),
                         [&](const std::string &one) { return runtime::EqualAscii(one, name); });
        if (column == columns.end())
            return std::nullopt;
        const auto known = std::find(search.columns.begin(), search.columns.end(), *column);
        search.columnOf.push_back(static_cast<std::size_t>(known - search.columns.begin()));
        if (known == search.columns.end())
            search.columns.push_back(*column);
    }
    for (const std::string_view text : texts)
        search.patterns.emplace_back(text);
    return search;
}

} // namespace catalogue

#include "catalogue/rows/textpool.h"

#include "runtime/collation.h"
#include "runtime/numbers.h"

#include <algorithm>
#include <cstring>

namespace catalogue
{

namespace
{

constexpr std::size_t kChunkBytes = 64 * 1024;

// A text that is being ranked: the first eight bytes of its key as a number, and the key.
struct Sortable {
    std::uint64_t start;
    std::string_view key;
    std::uint32_t number;
};

std::uint64_t StartOf(std::string_view key)
{
    std::uint64_t start = 0;
    for (std::size_t i = 0; i < 8; ++i)
        start = start << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0u);
    return start;
}

std::size_t CommonStart(const std::vector<Sortable> &texts)
{
    if (texts.empty())
        return 0;
    const auto first = texts[0].key;
    std::size_t common = first.size();
    for (const auto &text : texts) {
        const auto length = std::min(common, text.key.size());
        const auto differs = std::mismatch(
            first.begin(), first.begin() + static_cast<std::ptrdiff_t>(length), text.key.begin());
        common = static_cast<std::size_t>(differs.first - first.begin());
    }
    return common;
}

} // namespace

TextPool::TextPool() : m_texts{{}} {}

std::string_view TextPool::Keep(std::string_view text)
{
    if (m_chunks.empty() || m_chunks.back().size() + text.size() > m_chunks.back().capacity())
        m_chunks.emplace_back().reserve(std::max(kChunkBytes, text.size()));
    auto &chunk = m_chunks.back();
    const auto at = chunk.size();
    chunk.append(text);
    return std::string_view(chunk).substr(at);
}

std::uint32_t TextPool::Add(std::string_view text)
{
    if (m_last != kNull && m_texts[m_last] == text)
        return m_last;
    const auto hash = runtime::KeyIndex::HashOf(text);
    const auto known = m_index.Find(
        text, hash, [this](std::int32_t number) { return At(static_cast<std::uint32_t>(number)); });
    if (known != runtime::KeyIndex::kNone)
        return m_last = static_cast<std::uint32_t>(known);
    m_last = static_cast<std::uint32_t>(m_texts.size());
    m_texts.push_back(Keep(text));
    m_index.Insert(static_cast<std::int32_t>(m_last), hash);
    return m_last;
}

void TextPool::Finish()
{
    m_index = {};
}

std::vector<std::uint32_t> TextPool::Ranks(bool asNumbers) const
{
    std::deque<std::string> chunks; // the keys
    std::string key;
    std::vector<Sortable> texts;
    texts.reserve(m_texts.size());
    for (std::uint32_t number = 1; number < m_texts.size(); ++number) {
        runtime::MakeSortKey(m_texts[number], key);
        if (chunks.empty() || chunks.back().size() + key.size() > chunks.back().capacity())
            chunks.emplace_back().reserve(std::max(kChunkBytes, key.size()));
        const auto at = chunks.back().size();
        chunks.back().append(key);
        texts.push_back({0, std::string_view(chunks.back()).substr(at), number});
    }
    const auto common = CommonStart(texts);
    for (auto &text : texts)
        text.start = StartOf(text.key.substr(common));
    const auto comesFirst = [&](const Sortable &a, const Sortable &b) {
        if (asNumbers)
            return runtime::LeadingNumber(a.key) < runtime::LeadingNumber(b.key);
        if (a.start != b.start)
            return a.start < b.start;
        return runtime::CollateKeyed(a.key, m_texts[a.number], b.key, m_texts[b.number]) < 0;
    };
    std::sort(texts.begin(), texts.end(), comesFirst);
    std::vector<std::uint32_t> ranks(m_texts.size());
    std::uint32_t rank = 0;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        rank += i == 0 || comesFirst(texts[i - 1], texts[i]) ? 1 : 0;
        ranks[texts[i].number] = rank;
    }
    return ranks;
}

} // namespace catalogue

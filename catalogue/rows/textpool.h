// catalogue/rows/textpool.h - the different texts of a column, each stored once, and their order. A
// column of 100,000 artists has a few thousand different texts: these are sorted, not the rows.
#pragma once

#include "runtime/keyindex.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue
{

class TextPool
{
public:
    static constexpr std::uint32_t kNull = 0; // the number of a null

    TextPool();

    // The number of `text`; texts with equal bytes have the same one.
    std::uint32_t Add(std::string_view text);

    // The text of a number, empty for kNull; stays valid as long as the pool.
    [[nodiscard]] std::string_view At(std::uint32_t number) const { return m_texts[number]; }
    [[nodiscard]] std::size_t Count() const { return m_texts.size(); }

    // For each number its rank in the catalogue's order, from 0; texts that compare equal have the
    // same rank, and a null comes first. `asNumbers`: sorted by their numeric values.
    [[nodiscard]] std::vector<std::uint32_t> Ranks(bool asNumbers) const;

    // Frees the memory that only Add needs; Add must not be called any more.
    void Finish();

private:
    std::string_view Keep(std::string_view text);

    std::vector<std::string_view> m_texts; // into m_chunks
    runtime::KeyIndex m_index;             // of the texts, by their bytes
    std::deque<std::string> m_chunks;      // never reallocated once begun
    std::uint32_t m_last = kNull;          // of the last text: equal texts often follow each other
};

} // namespace catalogue

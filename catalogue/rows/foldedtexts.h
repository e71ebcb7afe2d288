// catalogue/rows/foldedtexts.h - the texts of all rows in upper case, one column behind the other,
// in a file without a name: what a condition of LIKE alone is answered from, faster than the engine
// reads its rows. Read in pieces of time; it is dropped when the catalogue has changed.
#pragma once

#include "catalogue/rows/likesearch.h"
#include "catalogue/sqlite/scratchfile.h"
#include "catalogue/sqlite/sqlitehandle.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue
{

// Which rows, one bit each, in the order of the table.
class RowBits
{
public:
    explicit RowBits(std::size_t rows) : m_words((rows + 63) / 64) {}
    void Set(std::size_t row) { m_words[row / 64] |= std::uint64_t{1} << row % 64; }
    [[nodiscard]] bool Has(std::size_t row) const
    {
        return (m_words[row / 64] >> row % 64 & 1) != 0;
    }
    void And(const RowBits &other);
    void Or(const RowBits &other);
    [[nodiscard]] const std::vector<std::uint64_t> &Words() const { return m_words; }

private:
    std::vector<std::uint64_t> m_words;
};

class FoldedTexts
{
public:
    // The columns that are kept.
    static constexpr std::array<std::string_view, 8> kColumns = {
        "Title", "Artist", "Album", "Year", "Comment", "Genre", "Path", "Lyrics"};
    static constexpr std::uint64_t kMostBytes = 512u << 20; // a catalogue with more is not kept

    // `handle` is this object's alone: what it reports of changes is what others did. `folder` is
    // where the file is.
    FoldedTexts(std::shared_ptr<SqliteHandle> handle, const std::string &folder);

    // Reads rows for about `budgetMs`.
    // Returns: whether there is more to read. False when all is there, and when it cannot be: the
    //          disk is full, the catalogue was changed meanwhile.
    bool ReadSome(std::int64_t budgetMs);

    // Whether all rows were read and nobody has changed the catalogue since.
    [[nodiscard]] bool IsCurrent();

    // Whether it was given up: it will never be current.
    [[nodiscard]] bool IsGivenUp() const { return m_state == State::GivenUp; }

    // The numbers of the rows that the search finds, ascending. Only while current.
    // Returns: nullopt when a column is not kept, or the file cannot be read.
    [[nodiscard]] std::optional<std::vector<std::int64_t>> Find(const LikeSearch &search) const;

private:
    enum class State { Reading, Complete, GivenUp };

    // Texts of neighbouring rows in the file, one behind the other.
    struct Block {
        std::uint64_t offset = 0;
        std::uint32_t bytes = 0;
        std::size_t firstRow = 0, lastRow = 0; // the last one excluded
    };
    struct Column {
        std::vector<Block> blocks;
        std::vector<std::uint32_t> ends; // of each row's text, within its block
        std::vector<std::size_t> nulls;  // rows, ascending
        std::string open;                // the block that grows
    };
    struct Wanted; // a term's pattern and what it found

    void ReadRows(std::int64_t untilMs);
    [[nodiscard]] bool AddRow(sqlite3_stmt *row);
    [[nodiscard]] bool CloseBlock(Column &column);
    [[nodiscard]] bool FindInColumn(const Column &column, std::vector<Wanted *> &wanted) const;
    static void FindInBlock(const Column &column, const Block &block, std::string_view texts,
                            Wanted &wanted);
    [[nodiscard]] RowBits Evaluate(const LikeNode &node, const std::vector<Wanted> &wanted) const;

    std::shared_ptr<SqliteHandle> m_handle;
    ScratchFile m_file;
    State m_state = State::Reading;
    std::int64_t m_version = -1; // of the data, when the reading began
    std::array<Column, kColumns.size()> m_columns;
    std::vector<std::int64_t> m_rows; // their numbers in the table
};

} // namespace catalogue

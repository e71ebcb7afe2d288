// catalogue/rows/foldedtexts.h - the texts of all rows in upper case, column by column, in a
// temporary file. Conditions that consist of LIKE alone are searched in it, which is faster than
// reading the rows with SQLite. It is filled in short pieces of work, and discarded when the
// catalogue has changed.
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

// A set of rows, one bit for each, in the order of the table.
class RowBits
{
public:
    explicit RowBits(std::size_t rows) : m_words((rows + 63) / 64) {}
    void Set(std::size_t row) { m_words[row / 64] |= std::uint64_t{1} << row % 64; }
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
    static constexpr std::uint64_t kMostBytes = 512u << 20; // a larger catalogue is not kept

    // `handle` is used by this object only, so every change that it reports was made by others.
    // `folder` is the folder of the temporary file.
    FoldedTexts(std::shared_ptr<SqliteHandle> handle, const std::string &folder);

    // Reads rows for about `budgetMs`.
    // Returns: whether there is more to read. False when all rows have been read, and when that is
    //          impossible: the disk is full, the catalogue was changed meanwhile.
    bool ReadSome(std::int64_t budgetMs);

    // Whether all rows have been read and the catalogue has not changed since.
    [[nodiscard]] bool IsCurrent();

    // Whether the reading was given up: IsCurrent will never be true.
    [[nodiscard]] bool IsGivenUp() const { return m_state == State::GivenUp; }

    // The numbers of the rows that the search finds, ascending. Only while current.
    // Returns: nullopt when a column is not kept, or the file cannot be read.
    [[nodiscard]] std::optional<std::vector<std::int64_t>> Find(const LikeSearch &search) const;

private:
    enum class State { Reading, Complete, GivenUp };

    // Texts of neighbouring rows in the file, one after the other.
    struct Block {
        std::uint64_t offset = 0;
        std::uint32_t bytes = 0;
        std::size_t firstRow = 0, lastRow = 0; // the last one excluded
    };
    struct Column {
        std::vector<Block> blocks;
        std::vector<std::uint32_t> ends; // the end of each row's text in its block
        std::vector<std::size_t> nulls;  // rows, ascending
        std::string open;                // the block that is being filled
    };
    struct Wanted; // a term's pattern and the rows found

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

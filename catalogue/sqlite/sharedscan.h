// catalogue/sqlite/sharedscan.h - one walk over MP3s for several statements, each of which sorts
// all rows by another column.
//
// Measured at a start with 100,000 songs, which reads six columns of the table and then the index
// of the paths: 9,600 reads of the file; 41,300 with a walk for each column.
#pragma once

#include "catalogue/rows/lazyrows.h"
#include "catalogue/sql/statementtext.h"
#include "catalogue/sqlite/sqlitehandle.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace catalogue
{

class SharedScan
{
public:
    // `handle` never writes, so every change that it reports was made by others. `columns`: those
    // by which the statements will sort.
    SharedScan(std::shared_ptr<SqliteHandle> handle, const std::vector<std::string> &columns);

    // Reads all columns that have not been taken, unless they have been read and the catalogue has
    // not changed since.
    // Returns: whether Take may have the rows of `query`. False when it is another kind of query,
    //          and when the reading has failed: it is not tried again, each statement then reads
    //          for itself and reports its own failure.
    bool Read(const RowQuery &query);

    // The rows with the column of `query`, for which Read has returned true. A snapshot that began
    // after Read, and has read already, has the same rows.
    // Returns: nullopt when the catalogue has changed since Read.
    std::optional<FoundRows> Take(const RowQuery &query);

private:
    [[nodiscard]] std::optional<std::ptrdiff_t> PlaceOf(const RowQuery &query) const;
    void GiveUp();

    std::shared_ptr<SqliteHandle> m_handle;
    RowQuery m_wanted;           // all rows, with the columns that have not been taken
    std::int64_t m_version = -1; // of the data that was read; -1 when none was
    FoundRows m_found;           // its keys are the columns of m_wanted
};

} // namespace catalogue

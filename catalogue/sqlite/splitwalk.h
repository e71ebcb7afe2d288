// catalogue/sqlite/splitwalk.h - finds the rows that a search of LIKE alone selects in the table
// itself, in both halves of the table at the same time. No state.
#pragma once

#include "catalogue/rows/likesearch.h"
#include "catalogue/sqlite/sqlitehandle.h"

#include <cstdint>
#include <vector>

namespace catalogue
{

// A range of row numbers in MP3s, both included; that of an empty table contains none.
struct RowRange {
    std::int64_t first = 0, last = -1;
};

[[nodiscard]] RowRange RowsOfMP3s(SqliteHandle &handle);

// Whether there are so many rows, and processors, that two halves take less time than the whole.
[[nodiscard]] bool IsWorthSplitting(const RowRange &rows);

// The numbers of the rows that the search finds, ascending. Both handles must be in a transaction
// that reads the same state of the catalogue. The second one is used by a helper thread, which ends
// before this returns.
// Errors: ProviderFailure.
[[nodiscard]] std::vector<std::int64_t> FindInHalves(SqliteHandle &first, SqliteHandle &second,
                                                     const RowRange &rows,
                                                     const LikeSearch &search);

} // namespace catalogue

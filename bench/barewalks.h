// bench/barewalks.h - the floor for reading a whole catalogue in the orders of the field tree.
#pragma once

#include "bench/timing.h"
#include "shell/globals.h"

#include <sqlite3.h>

#include <cstddef>
#include <string>

namespace bench
{

struct Walked {
    double ms = 0;
    std::size_t bytes = 0; // of all texts together
};

// Reads all rows and columns of the catalogue `file` seven times through SQLite's own interface,
// sorted by one field after the other (all but "List") in SQLite's own order.
[[nodiscard]] inline Walked BareWalks(const std::string &file)
{
    Walked walked;
    sqlite3 *db = nullptr;
    sqlite3_open(file.c_str(), &db);
    const Stopwatch watch;
    for (const std::string field : shell::FieldNames) {
        if (field == "List")
            continue;
        sqlite3_stmt *statement = nullptr;
        sqlite3_prepare_v2(db, ("SELECT * FROM MP3s ORDER BY " + field).c_str(), -1, &statement,
                           nullptr);
        const int columns = sqlite3_column_count(statement);
        while (sqlite3_step(statement) == SQLITE_ROW)
            for (int i = 0; i < columns; ++i)
                if (sqlite3_column_text(statement, i) != nullptr)
                    walked.bytes += static_cast<std::size_t>(sqlite3_column_bytes(statement, i));
        sqlite3_finalize(statement);
    }
    walked.ms = watch.Ms();
    sqlite3_close(db);
    return walked;
}

} // namespace bench

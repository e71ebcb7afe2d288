// catalogue/sqlite/sqlitehandle.h - one SQLite connection as the catalogue uses it: it keeps its
// prepared statements, has the program's text functions, and allows only reading and writing rows.
// A statement that writes may contain no query, function or recursion. A statement that is still
// running when the program has to end is interrupted.
#pragma once

#include "catalogue/provider.h"

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace catalogue
{

using ColumnNames = std::shared_ptr<const std::vector<std::string>>; // shared by results

// A prepared statement and the names of its columns.
struct Prepared {
    sqlite3_stmt *statement = nullptr; // owned by the handle
    ColumnNames columns;               // never null
};

class SqliteHandle
{
public:
    // Opens the file, which must exist, for reading and writing.
    // Errors: ProviderFailure; kGenericFailure when it is no database or damaged in its first page.
    explicit SqliteHandle(const std::string &path);
    ~SqliteHandle();
    SqliteHandle(const SqliteHandle &) = delete;
    SqliteHandle &operator=(const SqliteHandle &) = delete;

    [[nodiscard]] sqlite3 *Db() const { return m_db; }

    // The statement for `sql`, prepared at its first use and kept. Its parameters can be bound.
    // Errors: ProviderFailure, also when there is text after the statement.
    const Prepared &Prepare(std::string_view sql);

    // Runs a statement of the provider itself (a pragma, BEGIN, a view). Returns: SQLite's code.
    int RunOwn(const char *sql);

    // Throws ProviderFailure for the SQLite code `code`, with the connection's words.
    [[noreturn]] void Throw(int code) const;

    // The columns of MP3s as the table spells them, in their order; empty when there is no table.
    const std::vector<std::string> &ColumnsOfMP3s();

    // Whether readers keep their snapshot while another connection writes.
    [[nodiscard]] bool HasSnapshots() const { return m_isWal; }

    // False: a lock is reported at once. True (the initial value): SQLite waits for it. Returns:
    // the former value.
    bool WaitForLocks(bool on) { return std::exchange(m_waits, on); }

    // True: the connection keeps only as many pages as fit into a processor's cache. For a walk
    // that reads each page once. Returns: the former value, at first false.
    bool KeepFewPages(bool on);

    // Frees the pages that the connection keeps and does not use now.
    void ReleasePages() { sqlite3_db_release_memory(m_db); }

    // A number from SQLite that differs from an earlier one of the same handle when another
    // connection has committed a change since. -1 when it is not known.
    [[nodiscard]] std::int64_t DataVersion();

    // The first bytes of the file as it is now, read through SQLite's own open file: closing
    // another descriptor would drop the locks of the process. Fewer than `count` when the file is
    // shorter.
    std::string ReadStart(int count) const;
    [[nodiscard]] std::int64_t FileSize() const;

private:
    void SetUp();
    int ReadFirstPage();
    bool KeepsALog();
    static int Busy(void *self, int count);
    static int Progress(void *self);
    static int Authorize(void *self, int action, const char *first, const char *second,
                         const char *database, const char *origin);

    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const
        {
            // Where statements differ. Texts with the same hash are compared.
            constexpr std::size_t kEnd = 48;
            const std::size_t rest = text.size() > kEnd ? text.size() - kEnd : 0;
            return text.size() ^ std::hash<std::string_view>{}(text.substr(rest));
        }
    };

    sqlite3 *m_db = nullptr;
    std::unordered_map<std::string, Prepared, Hash, std::equal_to<>> m_prepared;
    std::vector<std::string> m_mp3Columns;
    bool m_isWal = false;
    bool m_waits = true;
    bool m_keepsFewPages = false;
    bool m_isOwn = false;    // a statement of the provider itself is running
    bool m_mayQuery = false; // the statement under preparation is a SELECT
    std::int64_t m_busySinceMs = 0;
    std::int64_t m_endAskedMs = 0; // when a running statement noticed that the program is to end
};

// While one exists, the connection keeps few pages (SqliteHandle::KeepFewPages).
class FewPages
{
public:
    explicit FewPages(SqliteHandle &handle) : m_handle(handle), m_before(handle.KeepFewPages(true))
    {
    }
    ~FewPages() { m_handle.KeepFewPages(m_before); }
    FewPages(const FewPages &) = delete;
    FewPages &operator=(const FewPages &) = delete;

private:
    SqliteHandle &m_handle;
    bool m_before;
};

// Resets the statement and clears its bindings in the destructor.
class StatementUse
{
public:
    explicit StatementUse(sqlite3_stmt *statement) : m_statement(statement) {}
    ~StatementUse()
    {
        sqlite3_reset(m_statement);
        sqlite3_clear_bindings(m_statement);
    }
    StatementUse(const StatementUse &) = delete;
    StatementUse &operator=(const StatementUse &) = delete;

private:
    sqlite3_stmt *m_statement;
};

// Binds a text, or a value, to a parameter (from 1) without a copy: it must exist until the
// statement has run.
void BindText(sqlite3_stmt *statement, int parameter, std::string_view text);
void BindValue(sqlite3_stmt *statement, int parameter, const Value &value);

// The text of a column of the current row, NULs included; empty, without data, for a null and for
// the empty text.
std::string_view ColumnText(sqlite3_stmt *statement, int column);

} // namespace catalogue

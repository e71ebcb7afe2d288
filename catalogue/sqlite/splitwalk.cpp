#include "catalogue/sqlite/splitwalk.h"

#include "catalogue/sqlite/sqlitefunctions.h"
#include "platform/helperthread.h"

#include <future>
#include <memory>
#include <new>
#include <string>
#include <thread>

namespace catalogue
{

namespace
{

constexpr std::uint64_t kLeastRows = 10000; // a walk over fewer takes milliseconds

// The rows of one part of the table. The thread of the caller constructs and destroys it; only Run
// may be called on another thread.
class Part
{
public:
    Part(SqliteHandle &handle, const RowRange &rows, const LikeSearch &search)
        : m_handle(handle), m_statement(handle
                                            .Prepare("SELECT rowid FROM main.MP3s NOT INDEXED "
                                                     "WHERE rowid BETWEEN ?2 AND ?3 AND " +
                                                     LikeSearchCall(search) + " ORDER BY rowid")
                                            .statement),
          m_use(m_statement), m_few(handle)
    {
        BindLikeSearch(m_statement, 1, search);
        sqlite3_bind_int64(m_statement, 2, rows.first);
        sqlite3_bind_int64(m_statement, 3, rows.last);
    }

    void Run() noexcept
    {
        try {
            while ((m_code = sqlite3_step(m_statement)) == SQLITE_ROW)
                m_found.push_back(sqlite3_column_int64(m_statement, 0));
        } catch (const std::bad_alloc &) {
            m_code = SQLITE_NOMEM;
        }
    }

    // The numbers of the rows. Errors: ProviderFailure when Run has failed.
    [[nodiscard]] const std::vector<std::int64_t> &Found() const
    {
        if (m_code != SQLITE_DONE)
            m_handle.Throw(m_code);
        return m_found;
    }

private:
    SqliteHandle &m_handle;
    sqlite3_stmt *m_statement; // owned by the handle
    StatementUse m_use;
    FewPages m_few;
    int m_code = SQLITE_OK;
    std::vector<std::int64_t> m_found;
};

} // namespace

RowRange RowsOfMP3s(SqliteHandle &handle)
{
    auto *statement =
        handle.Prepare("SELECT (SELECT MIN(rowid) FROM main.MP3s), MAX(rowid) FROM main.MP3s")
            .statement;
    const StatementUse use(statement);
    const int code = sqlite3_step(statement);
    if (code != SQLITE_ROW)
        handle.Throw(code);
    if (sqlite3_column_type(statement, 0) == SQLITE_NULL)
        return {};
    return {sqlite3_column_int64(statement, 0), sqlite3_column_int64(statement, 1)};
}

bool IsWorthSplitting(const RowRange &rows)
{
    const auto distance =
        static_cast<std::uint64_t>(rows.last) - static_cast<std::uint64_t>(rows.first);
    return rows.first <= rows.last && distance >= kLeastRows &&
           std::thread::hardware_concurrency() > 1;
}

std::vector<std::int64_t> FindInHalves(SqliteHandle &first, SqliteHandle &second,
                                       const RowRange &rows, const LikeSearch &search)
{
    const auto half =
        (static_cast<std::uint64_t>(rows.last) - static_cast<std::uint64_t>(rows.first)) / 2;
    const auto middle = static_cast<std::int64_t>(static_cast<std::uint64_t>(rows.first) + half);
    Part lower(first, {rows.first, middle}, search);
    Part upper(second, {middle + 1, rows.last}, search);
    // The helper owns the promise too, because it may still be inside set_value when the wait ends.
    const auto hasEnded = std::make_shared<std::promise<void>>();
    const std::future<void> end = hasEnded->get_future();
    const bool hasHelper = platform::StartHelperThread([&upper, hasEnded] {
        upper.Run();
        hasEnded->set_value();
    });
    lower.Run();
    if (hasHelper)
        end.wait();
    else
        upper.Run();
    std::vector<std::int64_t> found = lower.Found();
    found.insert(found.end(), upper.Found().begin(), upper.Found().end());
    return found;
}

} // namespace catalogue

// catalogue/rows/laterows.h - a result that holds the numbers of its rows in their order, and reads
// a column only when it is asked for, over its own connection and snapshot. Nobody can tell it from
// a copy: it copies itself whole before its snapshot grows old and before the catalogue closes.
#pragma once

#include "catalogue/rows/rowtable.h"
#include "catalogue/rows/textpool.h"
#include "catalogue/sql/statementtext.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace catalogue
{

// A connection inside a read transaction; `release` takes it back when it is done with.
struct Snapshot {
    std::shared_ptr<SqliteHandle> handle;
    std::function<void(std::shared_ptr<SqliteHandle>)> release;

    Snapshot(std::shared_ptr<SqliteHandle> h,
             std::function<void(std::shared_ptr<SqliteHandle>)> giveBack);
    ~Snapshot();
    Snapshot(const Snapshot &) = delete;
    Snapshot &operator=(const Snapshot &) = delete;
};

using Binding = std::function<void(sqlite3_stmt *)>; // binds a statement's parameters

class LateRecordset : public RecordsetBase
{
public:
    // Runs the query: finds the rows, sorts them, keeps the columns that they are sorted by.
    // Errors: ProviderFailure.
    LateRecordset(std::unique_ptr<Snapshot> snapshot, const RowQuery &query, const Binding &bind,
                  ColumnNames columns);
    ~LateRecordset() override;
    LateRecordset(const LateRecordset &) = delete;
    LateRecordset &operator=(const LateRecordset &) = delete;

    std::int64_t RecordCount() const override { return static_cast<std::int64_t>(m_rows.size()); }

    // As the base says; besides, kDeviceIoError where the file turns out damaged.
    std::string_view Text(int index) const override;
    bool IsNull(int index) const override;

    // Whether every name in the order is a column.
    static bool CanSort(const RowQuery &query, const std::vector<std::string> &columns);

    // Lets each living one copy itself that is `ageMs` old or older.
    static void CopyAll(std::int64_t ageMs);

private:
    struct KeyColumn {
        int field = 0;
        bool descending = false;
        TextPool texts;
        std::vector<std::uint32_t> numbers; // of each row's text, in the result's order
    };

    void FindRows(const RowQuery &query, const Binding &bind);
    void SortRows();
    void Load() const;
    void CopyWhole();
    void TryCopyWhole();
    [[nodiscard]] const KeyColumn *KeyFor(int field) const;

    std::unique_ptr<Snapshot> m_snapshot; // null once copied
    std::vector<std::int64_t> m_rows;     // their numbers in the table
    std::vector<KeyColumn> m_keys;
    std::optional<RowTable> m_table; // once copied
    sqlite3_stmt *m_reader = nullptr;
    mutable std::int64_t m_loaded = -1; // the position that m_reader stands at
    std::int64_t m_bornMs;
};

} // namespace catalogue

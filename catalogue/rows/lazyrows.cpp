#include "catalogue/rows/lazyrows.h"

#include "catalogue/machineclock.h"
#include "runtime/error.h"
#include "runtime/text.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace catalogue
{

namespace
{

// The results that have not copied themselves yet; each adds and removes itself.
std::vector<LazyRecordset *> &OpenRecordsets()
{
    static auto *recordsets = new std::vector<LazyRecordset *>; // outlives every result
    return *recordsets;
}

int IndexOf(const std::vector<std::string> &columns, std::string_view name)
{
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (runtime::EqualAscii(columns[i], name))
            return static_cast<int>(i);
    return -1;
}

} // namespace

Snapshot::Snapshot(std::shared_ptr<SqliteHandle> h,
                   std::function<void(std::shared_ptr<SqliteHandle>)> giveBack)
    : handle(std::move(h)), release(std::move(giveBack))
{
    if (const int code = handle->RunOwn("BEGIN"); code != SQLITE_OK)
        handle->Throw(code);
}

Snapshot::~Snapshot()
{
    handle->RunOwn("COMMIT");
    release(std::move(handle));
}

LazyRecordset::LazyRecordset(std::unique_ptr<Snapshot> snapshot, const RowQuery &query,
                             const Binding &bind, ColumnNames columns)
    : RecordsetBase(std::move(columns)), m_snapshot(std::move(snapshot)), m_createdMs(MachineMs())
{
    FindRows(query, bind);
    SortRows();
    Begin();
}

LazyRecordset::LazyRecordset(std::unique_ptr<Snapshot> snapshot, std::vector<std::int64_t> rows,
                             ColumnNames columns)
    : RecordsetBase(std::move(columns)), m_snapshot(std::move(snapshot)), m_rows(std::move(rows)),
      m_createdMs(MachineMs())
{
    Begin();
}

void LazyRecordset::Begin()
{
    m_reader = m_snapshot->handle
                   ->Prepare("SELECT *, rowid FROM main.MP3s WHERE rowid >= ?1 ORDER BY rowid")
                   .statement;
    OpenRecordsets().push_back(this);
}

LazyRecordset::~LazyRecordset()
{
    std::erase(OpenRecordsets(), this);
    if (m_snapshot)
        sqlite3_reset(m_reader);
}

bool LazyRecordset::CanSort(const RowQuery &query, const std::vector<std::string> &columns)
{
    return std::all_of(query.order.begin(), query.order.end(),
                       [&](const OrderTerm &term) { return IndexOf(columns, term.column) >= 0; });
}

void LazyRecordset::FindRows(const RowQuery &query, const Binding &bind)
{
    // Without a condition the table itself is read, or the index of a column that has one.
    std::string sql = query.condition.empty() ? "SELECT rowid" : "SELECT RowNo";
    for (const auto &term : query.order) {
        const int field = IndexOf(*m_columns, term.column);
        m_keys.push_back({field, term.descending, {}, {}});
        sql += ", \"" + (*m_columns)[static_cast<std::size_t>(field)] + '"';
    }
    if (query.condition.empty())
        sql += " FROM main.MP3s";
    else
        sql += " FROM " + std::string(kRowView) + " AS MP3s WHERE " + query.condition;
    SqliteHandle &handle = *m_snapshot->handle;
    auto *statement = handle.Prepare(sql).statement;
    const StatementUse use(statement);
    bind(statement);
    int code = SQLITE_OK;
    while ((code = sqlite3_step(statement)) == SQLITE_ROW) {
        m_rows.push_back(sqlite3_column_int64(statement, 0));
        int column = 0;
        for (auto &key : m_keys) {
            const bool isNull = sqlite3_column_type(statement, ++column) == SQLITE_NULL;
            key.numbers.push_back(isNull ? TextPool::kNull
                                         : key.texts.Add(ColumnText(statement, column)));
        }
    }
    if (code != SQLITE_DONE)
        handle.Throw(code);
}

// Sorts the rows by the ranks of their keys; rows that compare equal keep the order in which they
// were found.
void LazyRecordset::SortRows()
{
    if (m_keys.empty()) { // the order in which they were added
        std::sort(m_rows.begin(), m_rows.end());
        return;
    }
    std::vector<std::vector<std::uint32_t>> ranks; // per key and row
    for (auto &key : m_keys) {
        const auto &name = (*m_columns)[static_cast<std::size_t>(key.field)];
        auto rankOf = key.texts.Ranks(name == "Duplicated");
        key.texts.Finish();
        auto &ofRows = ranks.emplace_back(m_rows.size());
        for (std::size_t row = 0; row < m_rows.size(); ++row)
            ofRows[row] = key.descending ? ~rankOf[key.numbers[row]] : rankOf[key.numbers[row]];
    }
    std::vector<std::uint32_t> order(m_rows.size());
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        for (const auto &ofRows : ranks)
            if (ofRows[a] != ofRows[b])
                return ofRows[a] < ofRows[b];
        return false;
    });
    const auto arrange = [&](auto &values) {
        auto sorted = values;
        for (std::size_t i = 0; i < order.size(); ++i)
            sorted[i] = values[order[i]];
        values = std::move(sorted);
    };
    arrange(m_rows);
    for (auto &key : m_keys)
        arrange(key.numbers);
}

const LazyRecordset::KeyColumn *LazyRecordset::KeyFor(int field) const
{
    for (const auto &key : m_keys)
        if (key.field == field)
            return &key;
    return nullptr;
}

void LazyRecordset::Load() const
{
    if (m_loaded == m_position)
        return;
    const std::int64_t wanted = m_rows[static_cast<std::size_t>(m_position)];
    const auto rowRead = [this] { return sqlite3_column_int64(m_reader, FieldCount()); };
    // A row that is only a few rows later is reached by stepping, which costs less than a new
    // search.
    constexpr std::int64_t kNear = 4;
    const bool isNear = m_loaded >= 0 && wanted > rowRead() && wanted - rowRead() <= kNear;
    m_loaded = -1;
    if (!isNear) {
        sqlite3_reset(m_reader);
        sqlite3_bind_int64(m_reader, 1, wanted);
    }
    int code = sqlite3_step(m_reader);
    while (code == SQLITE_ROW && rowRead() < wanted)
        code = sqlite3_step(m_reader);
    if (code != SQLITE_ROW || rowRead() != wanted)
        throw runtime::RuntimeError(runtime::kDeviceIoError,
                                    sqlite3_errmsg(m_snapshot->handle->Db()));
    m_loaded = m_position;
}

std::string_view LazyRecordset::Text(int index) const
{
    CheckField(index);
    if (const auto *key = KeyFor(index))
        return key->texts.At(key->numbers[static_cast<std::size_t>(m_position)]);
    if (m_table)
        return m_table->Text(m_position, index);
    Load();
    return ColumnText(m_reader, index);
}

bool LazyRecordset::IsNull(int index) const
{
    CheckField(index);
    if (const auto *key = KeyFor(index))
        return key->numbers[static_cast<std::size_t>(m_position)] == TextPool::kNull;
    if (m_table)
        return m_table->IsNull(m_position, index);
    Load();
    return sqlite3_column_type(m_reader, index) == SQLITE_NULL;
}

void LazyRecordset::CopyWhole()
{
    if (!m_snapshot)
        return;
    RowTable table(FieldCount());
    const auto position = std::exchange(m_position, 0);
    for (; !AtEnd(); ++m_position) {
        Load();
        table.AppendRow(m_reader);
    }
    m_position = position;
    m_table = std::move(table);
    sqlite3_reset(m_reader);
    m_snapshot.reset();
}

// If a page is damaged, the snapshot is kept, and reading that row throws the error.
void LazyRecordset::TryCopyWhole()
{
    const auto position = m_position;
    try {
        CopyWhole();
    } catch (const runtime::RuntimeError &) {
        m_position = position;
    }
}

void LazyRecordset::CopyAll(std::int64_t ageMs)
{
    if (OpenRecordsets().empty())
        return;
    const auto now = MachineMs();
    for (auto *recordset : OpenRecordsets())
        if (recordset->m_snapshot && now - recordset->m_createdMs >= ageMs)
            recordset->TryCopyWhole();
}

} // namespace catalogue

#include "catalogue/rows/lazyrows.h"

#include "catalogue/machineclock.h"
#include "runtime/error.h"
#include "runtime/text.h"

#include <algorithm>
#include <numeric>
#include <optional>
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

FoundRows FindRows(SqliteHandle &handle, const RowQuery &query,
                   const std::vector<std::string> &columns, const Binding &bind)
{
    FoundRows found;
    // Without a condition the table itself is read, or the index of a column that has one.
    const bool isWalk = query.condition.empty();
    std::string sql = isWalk ? "SELECT rowid" : "SELECT RowNo";
    for (const auto &term : query.order) {
        const int field = IndexOf(columns, term.column);
        found.keys.push_back({field, term.descending, {}, {}});
        sql += ", \"" + columns[static_cast<std::size_t>(field)] + '"';
    }
    if (isWalk)
        sql += " FROM main.MP3s";
    else
        sql += " FROM " + std::string(kRowView) + " AS MP3s WHERE " + query.condition;
    std::optional<FewPages> few;
    if (isWalk)
        few.emplace(handle);
    auto *statement = handle.Prepare(sql).statement;
    const StatementUse use(statement);
    bind(statement);
    int code = SQLITE_OK;
    while ((code = sqlite3_step(statement)) == SQLITE_ROW) {
        found.rows.push_back(sqlite3_column_int64(statement, 0));
        int column = 0;
        for (auto &key : found.keys) {
            const auto text = ColumnText(statement, ++column);
            const bool isNull =
                text.empty() && sqlite3_column_type(statement, column) == SQLITE_NULL;
            key.numbers.push_back(isNull ? TextPool::kNull : key.texts.Add(text));
        }
    }
    if (code != SQLITE_DONE)
        handle.Throw(code);
    for (auto &key : found.keys)
        key.texts.Finish();
    return found;
}

LazyRecordset::LazyRecordset(std::unique_ptr<Snapshot> snapshot, FoundRows found,
                             ColumnNames columns)
    : RecordsetBase(std::move(columns)), m_snapshot(std::move(snapshot)),
      m_rows(std::move(found.rows)), m_keys(std::move(found.keys)), m_createdMs(MachineMs())
{
    SortRows();
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

// Sorts the rows by one key after the other, the most important one last: each pass counts how many
// rows have each rank, and keeps the order of rows of the same one.
void LazyRecordset::SortRows()
{
    if (m_keys.empty()) { // the order in which they were added
        if (!std::ranges::is_sorted(m_rows))
            std::ranges::sort(m_rows);
        return;
    }
    std::vector<std::uint32_t> order(m_rows.size()), sorted(m_rows.size()), begins;
    std::iota(order.begin(), order.end(), 0u);
    for (auto at = m_keys.rbegin(); at != m_keys.rend(); ++at) {
        const FoundRows::Key &key = *at;
        const auto &name = (*m_columns)[static_cast<std::size_t>(key.field)];
        auto ranks = key.texts.Ranks(name == "Duplicated");
        const auto ranksUsed = static_cast<std::uint32_t>(ranks.size());
        if (key.descending)
            for (auto &rank : ranks)
                rank = ranksUsed - rank;
        begins.assign(ranksUsed + 2, 0);
        for (const auto number : key.numbers)
            ++begins[ranks[number] + 1];
        std::partial_sum(begins.begin(), begins.end(), begins.begin());
        for (const auto row : order)
            sorted[begins[ranks[key.numbers[row]]]++] = row;
        order.swap(sorted);
    }
    const auto arrange = [&](auto &values) {
        auto arranged = values;
        for (std::size_t i = 0; i < order.size(); ++i)
            arranged[i] = values[order[i]];
        values = std::move(arranged);
    };
    arrange(m_rows);
    for (auto &key : m_keys)
        arrange(key.numbers);
}

const FoundRows::Key *LazyRecordset::KeyFor(int field) const
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

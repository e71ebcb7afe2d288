#include "catalogue/sqlite/sqliteprovider.h"

#include "catalogue/comparedrows.h"
#include "catalogue/params.h"
#include "catalogue/sqlite/cataloguefile.h"
#include "catalogue/sqlite/opengroup.h"
#include "catalogue/sqlite/splitwalk.h"
#include "catalogue/sqlite/sqlitefunctions.h"
#include "runtime/paths.h"
#include "runtime/text.h"

#include <algorithm>
#include <set>
#include <utility>

namespace catalogue
{

namespace
{

// A lazy result of this age or older copies its rows when another statement runs.
constexpr std::int64_t kLazyMs = 5000;

// The snapshot of a transaction begins with its first read.
constexpr const char *kBeginReading = "SELECT 1 FROM main.sqlite_schema LIMIT 1";

const std::string kRootMark(1, runtime::PathSeparator);

// Whether the values are a full path and no exclusion: the rows of that file are found by the
// index.
bool IsWholePath(const std::vector<Value> &values)
{
    if (values.size() < 2)
        return false;
    const auto *path = std::get_if<std::string>(&values[0]);
    const auto *excluded = std::get_if<std::string>(&values[1]);
    return path != nullptr && excluded != nullptr && path->starts_with(kRootMark) &&
           *excluded == kNoExclusion;
}

// Whether a translation can be used for each statement with the same words and places of values.
bool IsIndependentOf(const Statement &statement, const Translated &translated)
{
    constexpr std::size_t kLongestKept = 1000; // bytes
    return !statement.values.empty() && statement.text.size() <= kLongestKept &&
           translated.unquoted.empty() &&
           std::ranges::all_of(translated.parameters, [](const Parameter &parameter) {
               return parameter.valueIndex.has_value();
           });
}

RecordsetPtr StepAll(SqliteHandle &handle, std::string_view sql, const Binding &bind)
{
    const Prepared prepared = handle.Prepare(sql);
    const StatementUse use(prepared.statement);
    bind(prepared.statement);
    RowTable table(static_cast<int>(prepared.columns->size()));
    int code = SQLITE_OK;
    while ((code = sqlite3_step(prepared.statement)) == SQLITE_ROW)
        table.AppendRow(prepared.statement);
    if (code != SQLITE_DONE)
        handle.Throw(code);
    if (prepared.columns->empty())
        return MakeClosedRecordset();
    return std::make_shared<CopiedRecordset>(prepared.columns, std::move(table));
}

// The texts of a plain statement's parameters; nullopt when one of them is not a text.
std::optional<std::vector<std::string_view>> TextsOf(const Translated &translated,
                                                     const Statement &statement)
{
    std::vector<std::string_view> texts;
    for (const Parameter &parameter : translated.parameters) {
        if (!parameter.valueIndex) {
            texts.push_back(parameter.literal);
            continue;
        }
        const Value &value = statement.values[*parameter.valueIndex].value;
        if (const auto *text = std::get_if<std::string>(&value))
            texts.emplace_back(*text);
        else
            return std::nullopt;
    }
    return texts;
}

class SqliteConnection final : public Connection
{
public:
    explicit SqliteConnection(std::shared_ptr<CatalogueFile> file) : m_file(std::move(file)) {}
    ~SqliteConnection() override { Close(); }

    bool IsOpen() const override { return m_file != nullptr; }
    void Close() override;
    RecordsetPtr Run(const Statement &statement) override;
    RecordsetPtr RunStored(std::string_view name, const std::vector<Value> &values) override;
    bool ReadAheadForSearches(std::int64_t budgetMs) override;
    void ShareScan(const std::vector<std::string> &columns) override;
    void Begin() override;
    void Commit() override;
    void RollBack() override;

private:
    RecordsetPtr RunTranslated(const Translated &statement, const Binding &bind);
    RecordsetPtr SearchTexts(const Translated &translated, const Statement &statement);
    std::optional<std::vector<std::int64_t>>
    WalkInHalves(SqliteHandle &handle, std::int64_t version, const LikeSearch &search);
    RecordsetPtr Read(const Translated &statement, const Binding &bind);
    RecordsetPtr ReadShared(const RowQuery &query, const ColumnNames &names);
    RecordsetPtr Write(std::string_view sql, const Binding &bind);
    RecordsetPtr RunInGroup(std::string_view sql, const Binding &bind);
    RecordsetPtr ReadPath(const std::string &sql, const Binding &bind);
    std::shared_ptr<SqliteHandle> TakeOwnHandle();

    std::shared_ptr<CatalogueFile> m_file;     // null once closed
    std::shared_ptr<SqliteHandle> m_ownHandle; // only while this connection has a transaction open
};

void SqliteConnection::Close()
{
    if (m_ownHandle)
        RollBack();
    m_file.reset();
}

RecordsetPtr SqliteConnection::Run(const Statement &statement)
{
    const std::shared_ptr<CatalogueFile> file = m_file; // owns the translation that it caches
    const Translated *cached = file->FindTranslation(statement);
    std::optional<Translated> fresh;
    const Translated &translated =
        cached != nullptr ? *cached : fresh.emplace(TranslateStatement(statement));
    if (translated.hasOpenMarker)
        throw ProviderFailure(kStatementFailure,
                              "No value given for one or more required parameters.");
    if (fresh && IsIndependentOf(statement, *fresh))
        file->CacheTranslation(statement, *fresh);
    if (auto records = SearchTexts(translated, statement))
        return records;
    return RunTranslated(translated, [&](sqlite3_stmt *target) {
        const auto count = static_cast<std::size_t>(sqlite3_bind_parameter_count(target));
        for (std::size_t i = 0; i < translated.parameters.size() && i < count; ++i) {
            const Parameter &parameter = translated.parameters[i];
            const int number = static_cast<int>(i) + 1;
            if (parameter.valueIndex)
                BindValue(target, number, statement.values[*parameter.valueIndex].value);
            else
                BindText(target, number, parameter.literal);
        }
    });
}

// The rows of a plain SELECT whose condition is LIKE alone: found in the texts that were read
// ahead, else by reading the table once. Null for any other statement.
RecordsetPtr SqliteConnection::SearchTexts(const Translated &translated, const Statement &statement)
{
    const RowQuery &query = translated.rows;
    if (m_ownHandle || !translated.isRowQuery || !query.likes || !m_file->Main().HasSnapshots())
        return nullptr;
    const auto texts = TextsOf(translated, statement);
    const auto &columns = m_file->Main().ColumnsOfMP3s();
    const auto search = texts ? MakeLikeSearch(*query.likes, *texts, columns) : std::nullopt;
    if (!search || !LazyRecordset::CanSort(query, columns))
        return nullptr;
    CloseOpenGroup();
    const ColumnNames names =
        m_file->Main().Prepare("SELECT * FROM main.MP3s WHERE rowid = ?1").columns;
    const std::int64_t version = m_file->Main().DataVersion();
    auto snapshot = m_file->TakeSnapshot();
    snapshot->handle->ColumnsOfMP3s();
    snapshot->handle->RunOwn(kBeginReading); // it must not be newer than the texts
    if (query.order.empty()) {
        auto rows = m_file->FindTexts(*search);
        if (!rows)
            rows = WalkInHalves(*snapshot->handle, version, *search);
        if (rows)
            return std::make_shared<LazyRecordset>(std::move(snapshot),
                                                   FoundRows{std::move(*rows), {}}, names);
    }
    auto found =
        FindRows(*snapshot->handle, RowQuery{LikeSearchCall(*search), {}, query.order}, *names,
                 [&](sqlite3_stmt *target) { BindLikeSearch(target, 1, *search); });
    return std::make_shared<LazyRecordset>(std::move(snapshot), std::move(found), names);
}

// The rows that the search finds in the table itself, which two threads read. `handle` is inside
// its snapshot; `version` is the version of the data before that was taken.
// Returns: nullopt when reading with one thread takes no longer, and when the data was changed
// before the second connection had its snapshot.
std::optional<std::vector<std::int64_t>>
SqliteConnection::WalkInHalves(SqliteHandle &handle, std::int64_t version, const LikeSearch &search)
{
    const RowRange rows = RowsOfMP3s(handle);
    if (version < 0 || !IsWorthSplitting(rows))
        return std::nullopt;
    const auto second = m_file->TakeSnapshot();
    second->handle->RunOwn(kBeginReading);
    if (m_file->Main().DataVersion() != version)
        return std::nullopt;
    return FindInHalves(handle, *second->handle, rows, search);
}

bool SqliteConnection::ReadAheadForSearches(std::int64_t budgetMs)
{
    return m_file != nullptr && m_file->ReadTextsAhead(budgetMs);
}

void SqliteConnection::ShareScan(const std::vector<std::string> &columns)
{
    if (m_file != nullptr)
        m_file->ShareScan(columns);
}

RecordsetPtr SqliteConnection::RunStored(std::string_view name, const std::vector<Value> &values)
{
    const StoredQuery &query = m_file->Query(name);
    const auto bind = [&](sqlite3_stmt *target) {
        const auto count = static_cast<std::size_t>(sqlite3_bind_parameter_count(target));
        if (values.size() < count)
            throw ProviderFailure(kStatementFailure,
                                  "No value given for one or more required parameters.");
        for (std::size_t i = 0; i < count; ++i)
            BindValue(target, static_cast<int>(i) + 1, values[i]);
    };
    if (!query.wholePath.empty() && IsWholePath(values)) {
        const std::string &comparing = values.size() == 2 + kComparedColumns     ? query.comparing
                                       : values.size() == 2 + kFingerprintValues ? query.recognising
                                                                                 : query.wholePath;
        return ReadPath(comparing.empty() ? query.wholePath : comparing, bind);
    }
    return RunTranslated(query.statement, bind);
}

RecordsetPtr SqliteConnection::RunTranslated(const Translated &statement, const Binding &bind)
{
    return statement.verb == Verb::Select ? Read(statement, bind) : Write(statement.sql, bind);
}

// The rows of one path. Inside a step this look-up begins the transaction in which the row is
// written.
RecordsetPtr SqliteConnection::ReadPath(const std::string &sql, const Binding &bind)
{
    if (m_ownHandle)
        return StepAll(*m_ownHandle, sql, bind);
    if (joinsGroup)
        return RunInGroup(sql, bind);
    CloseOpenGroup();
    return StepAll(m_file->Main(), sql, bind);
}

RecordsetPtr SqliteConnection::Read(const Translated &statement, const Binding &bind)
{
    CloseOpenGroup();
    SqliteHandle &handle = m_ownHandle ? *m_ownHandle : m_file->Main();
    const auto &columns = handle.ColumnsOfMP3s(); // makes the views that the statement may name
    if (m_ownHandle || !statement.isRowQuery || !handle.HasSnapshots() ||
        !LazyRecordset::CanSort(statement.rows, columns))
        return StepAll(handle, statement.sql, bind);
    const ColumnNames names = handle.Prepare("SELECT * FROM main.MP3s WHERE rowid = ?1").columns;
    if (auto records = ReadShared(statement.rows, names))
        return records;
    auto snapshot = m_file->TakeSnapshot();
    snapshot->handle->ColumnsOfMP3s();
    auto found = FindRows(*snapshot->handle, statement.rows, *names, bind);
    return std::make_shared<LazyRecordset>(std::move(snapshot), std::move(found), names);
}

// The rows of a query that shares its walk over the table with others; null for any other query.
RecordsetPtr SqliteConnection::ReadShared(const RowQuery &query, const ColumnNames &names)
{
    SharedScan *scan = m_file->Scan();
    if (scan == nullptr || !scan->Read(query))
        return nullptr;
    auto snapshot = m_file->TakeSnapshot();
    snapshot->handle->ColumnsOfMP3s();
    snapshot->handle->RunOwn(kBeginReading); // it must not be newer than what was read
    auto found = scan->Take(query);
    if (!found)
        return nullptr;
    return std::make_shared<LazyRecordset>(std::move(snapshot), std::move(*found), names);
}

RecordsetPtr SqliteConnection::Write(std::string_view sql, const Binding &bind)
{
    if (m_ownHandle)
        return StepAll(*m_ownHandle, sql, bind);
    if (joinsGroup)
        return RunInGroup(sql, bind);
    CloseOpenGroup();
    SqliteHandle &handle = m_file->Main();
    m_file->BeginWrite(handle);
    try {
        auto result = StepAll(handle, sql, bind);
        m_file->Commit(handle);
        return result;
    } catch (...) {
        m_file->RollBack(handle);
        throw;
    }
}

RecordsetPtr SqliteConnection::RunInGroup(std::string_view sql, const Binding &bind)
{
    JoinGroup(m_file);
    try {
        return StepAll(m_file->Main(), sql, bind);
    } catch (const ProviderFailure &failure) {
        StatementFailedInGroup(failure.description);
        throw;
    }
}

void SqliteConnection::Begin()
{
    CloseOpenGroup();
    auto handle = m_file->TakeHandle();
    handle->ColumnsOfMP3s(); // otherwise a roll-back would remove its views
    m_file->BeginWrite(*handle);
    m_ownHandle = std::move(handle);
}

// The connection of the open transaction, which ends.
std::shared_ptr<SqliteHandle> SqliteConnection::TakeOwnHandle()
{
    if (!m_ownHandle)
        throw ProviderFailure(kStatementFailure, "No transaction is open.");
    return std::exchange(m_ownHandle, nullptr);
}

void SqliteConnection::Commit()
{
    const auto handle = TakeOwnHandle();
    m_file->Commit(*handle);
    m_file->ReturnHandle(handle);
}

void SqliteConnection::RollBack()
{
    const auto handle = TakeOwnHandle();
    m_file->RollBack(*handle);
    m_file->ReturnHandle(handle);
}

} // namespace

Opener ResolveCatalogueFile(const std::string &connectionString)
{
    // The path may contain any character: it ends at the text that follows it, not at the next ";".
    constexpr std::string_view kSource = "Data Source=";
    const auto from = connectionString.find(kSource);
    const auto to = connectionString.rfind(";Persist Security Info");
    if (from == std::string::npos || to == std::string::npos || to < from + kSource.size())
        throw ProviderFailure(kGenericFailure, "The connection string names no file.");
    const auto at = from + kSource.size();
    // Each statement copies its opener, so it only has a pointer, which is cheap to copy. Never
    // destroyed: an opener may outlive everything else.
    static auto *paths = new std::set<std::string>;
    const std::string *path = &*paths->insert(connectionString.substr(at, to - at)).first;
    return [path] {
        LazyRecordset::CopyAll(kLazyMs);
        return std::make_shared<SqliteConnection>(CatalogueFile::At(*path));
    };
}

} // namespace catalogue

#include "catalogue/sqlite/cataloguefile.h"

#include "catalogue/comparedrows.h"
#include "catalogue/lockwait.h"
#include "platform/disk/files.h"
#include "runtime/text.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace catalogue
{

namespace
{

constexpr std::size_t kIdleHandles = 3;
constexpr std::size_t kCachedTranslations = 8;

// The files in use, by path. Never destroyed: results and connections may outlive everything else.
std::map<std::string, std::shared_ptr<CatalogueFile>> &Files()
{
    static auto *files = [] {
        (void)platform::SystemFiles(); // created first, so that it exists when the files close
        std::atexit(CatalogueFile::CloseAll);
        return new std::map<std::string, std::shared_ptr<CatalogueFile>>;
    }();
    return *files;
}

std::string FolderOf(const std::string &path)
{
    const auto name = path.rfind('/');
    return name == std::string::npos ? "." : path.substr(0, name + 1);
}

// While one exists, a lock is reported at once.
class LocksNotWaitedFor
{
public:
    explicit LocksNotWaitedFor(SqliteHandle &handle)
        : m_handle(handle), m_before(handle.WaitForLocks(false))
    {
    }
    ~LocksNotWaitedFor() { m_handle.WaitForLocks(m_before); }
    LocksNotWaitedFor(const LocksNotWaitedFor &) = delete;
    LocksNotWaitedFor &operator=(const LocksNotWaitedFor &) = delete;

private:
    SqliteHandle &m_handle;
    bool m_before;
};

// A place in the queue; the destructor gives it up.
class QueuePlace
{
public:
    explicit QueuePlace(WriteQueue &queue) : m_queue(queue) {}
    ~QueuePlace()
    {
        if (m_isIn)
            m_queue.Leave();
    }
    QueuePlace(const QueuePlace &) = delete;
    QueuePlace &operator=(const QueuePlace &) = delete;

    bool TryEnter() { return m_isIn = m_queue.TryEnter(); }

private:
    WriteQueue &m_queue;
    bool m_isIn = false;
};

std::string Quoted(const std::string &column)
{
    return '"' + runtime::Replace(column, "\"", "\"\"") + '"';
}

using Columns = std::vector<std::string>;

// The condition that a row has the texts that follow the two parameters of a look-up.
std::string ConditionOfTexts(const Columns &columns, const std::string &isDuplicate)
{
    std::string isSame;
    for (std::size_t i = 0; i < kComparedColumns; ++i) {
        // ?1 and ?2 belong to the path. A value that another program stored as bytes is compared as
        // text.
        const std::string isEqual =
            "CAST(" + Quoted(columns[i]) + " AS TEXT) COLLATE BINARY IS ?" + std::to_string(i + 3);
        isSame += isSame.empty() ? "" : " AND ";
        if (i == kArtistOfCompared)
            isSame.append("(").append(isDuplicate).append(" OR ").append(isEqual).append(")");
        else
            isSame += isEqual;
    }
    return isSame;
}

// The condition that the texts of a row have the fingerprint that follows the two parameters.
std::string ConditionOfFingerprint(const Columns &columns, const std::string & /*isDuplicate*/)
{
    std::string call = "has_fingerprint(?3, ?4";
    for (std::size_t i = 0; i < kComparedColumns; ++i)
        call.append(", ").append(Quoted(columns[i]));
    return call + ")";
}

// Makes the query `wholePath`, which selects all columns of the rows of one path, into one that
// compares these rows with the values after its two parameters (catalogue/comparedrows.h).
// `columns`: the names of the columns of MP3s. `condition(columns, isDuplicate)`: the condition, as
// SQL, that a row has these values; `isDuplicate` is the condition that it is marked as a
// duplicate. Returns: the query; the empty text when the catalogue's table or query is not the one
// that is shipped.
template <class Condition>
std::string ComparingQuery(const std::string &wholePath, const Columns &columns,
                           const Condition &condition)
{
    constexpr std::string_view kAllColumns = "SELECT * ";
    constexpr std::size_t kDuplicated = 9;
    if (!wholePath.starts_with(kAllColumns) || columns.size() <= kDuplicated)
        return {};
    const std::string isDuplicate = Quoted(columns[kDuplicated]) + " IS NOT 0";
    const auto asText = [](const std::string &isTrue) {
        return "CASE WHEN " + isTrue + " THEN '1' ELSE '0' END";
    };
    return "SELECT " + asText(isDuplicate) + ", " + asText(condition(columns, isDuplicate)) + " " +
           wholePath.substr(kAllColumns.size());
}

bool IsBusy(int code)
{
    return (code & 0xFF) == SQLITE_BUSY || (code & 0xFF) == SQLITE_LOCKED;
}

} // namespace

CatalogueFile::CatalogueFile(std::string path)
    : m_path(std::move(path)), m_identity(InspectCatalogueFile(m_path)), m_queue(m_path + "-turn"),
      m_main(std::make_unique<SqliteHandle>(m_path))
{
}

CatalogueFile::~CatalogueFile()
{
    m_isClosing = true;
    m_idle.clear();
}

std::shared_ptr<CatalogueFile> CatalogueFile::At(const std::string &path)
{
    auto &files = Files();
    if (const auto found = files.find(path); found != files.end()) {
        if (found->second->m_isWriting || found->second->IsSameFile())
            return found->second;
        found->second->AbandonConnections();
        files.erase(found);
    }
    return files.emplace(path, std::make_shared<CatalogueFile>(path)).first->second;
}

void CatalogueFile::CloseAll()
{
    LazyRecordset::CopyAll(0);
    for (auto &[path, file] : Files())
        file->m_isClosing = true;
    Files().clear();
}

bool CatalogueFile::IsSameFile() const
{
    try {
        if (IdentityOf(m_path) != m_identity)
            return false;
    } catch (const ProviderFailure &) {
        return false;
    }
    const std::string header = m_main->ReadStart(kHeaderBytes);
    return IsSoundHeader(header) && !IsCutShort(header, m_main->FileSize(), m_path);
}

// The file is missing or damaged: its connections must not write into it when they close.
void CatalogueFile::AbandonConnections()
{
    m_isClosing = true;
    sqlite3_db_config(m_main->Db(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    for (auto &handle : m_idle)
        sqlite3_db_config(handle->Db(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    if (m_reader)
        sqlite3_db_config(m_reader->Db(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    if (m_copier)
        m_copier->Abandon();
}

std::shared_ptr<SqliteHandle> CatalogueFile::TakeHandle()
{
    if (m_idle.empty())
        return std::make_shared<SqliteHandle>(m_path);
    auto handle = std::move(m_idle.back());
    m_idle.pop_back();
    return handle;
}

void CatalogueFile::ReturnHandle(std::shared_ptr<SqliteHandle> handle)
{
    if (!m_isClosing && m_idle.size() < kIdleHandles)
        m_idle.push_back(std::move(handle));
}

std::unique_ptr<Snapshot> CatalogueFile::TakeSnapshot()
{
    return std::make_unique<Snapshot>(
        TakeHandle(), [owner = weak_from_this()](std::shared_ptr<SqliteHandle> handle) {
            if (const auto file = owner.lock())
                file->ReturnHandle(std::move(handle));
        });
}

const std::shared_ptr<SqliteHandle> &CatalogueFile::Reader()
{
    if (!m_reader)
        m_reader = std::make_shared<SqliteHandle>(m_path);
    return m_reader;
}

bool CatalogueFile::ReadTextsAhead(std::int64_t budgetMs)
{
    if (m_isWriting || !m_main->HasSnapshots() || (m_texts && m_texts->IsCurrent()))
        return false;
    if (!m_texts || m_texts->IsGivenUp()) {
        m_texts.reset();
        m_texts = std::make_unique<FoldedTexts>(Reader(), FolderOf(m_path));
    }
    return m_texts->ReadSome(budgetMs);
}

std::optional<std::vector<std::int64_t>> CatalogueFile::FindTexts(const LikeSearch &search)
{
    if (!m_texts || !m_texts->IsCurrent())
        return std::nullopt;
    return m_texts->Find(search);
}

void CatalogueFile::ShareScan(const std::vector<std::string> &columns)
{
    m_scan.reset();
    if (!m_texts)
        m_reader.reset();
    if (columns.empty() || !m_main->HasSnapshots())
        return;
    m_main->ReleasePages();
    for (const auto &handle : m_idle)
        handle->ReleasePages();
    m_scan = std::make_unique<SharedScan>(Reader(), columns);
}

void CatalogueFile::BeginWrite(SqliteHandle &handle)
{
    if (m_isWriting) // this process holds the lock itself: the wait would never end
        throw ProviderFailure(kStatementFailure,
                              "A transaction of this program holds the catalogue.");
    const LocksNotWaitedFor atOnce(handle);
    int code = m_queue.IsAnotherWaiting() ? SQLITE_BUSY : handle.RunOwn("BEGIN IMMEDIATE");
    if (IsBusy(code))
        code = BeginWhenFree(handle);
    if (code != SQLITE_OK)
        handle.Throw(code);
    m_isWriting = true;
}

// Waits for this process's turn among those that wait, then until no other process writes. Events
// run meanwhile, and one of them may end the program.
int CatalogueFile::BeginWhenFree(SqliteHandle &handle)
{
    if (IsWaitingForLock())
        throw ProviderFailure(
            kStatementFailure,
            "This program waits already for another one that holds the catalogue.");
    LockWait wait;
    QueuePlace place(m_queue);
    const auto keepWaiting = [&] { return wait.KeepWaiting() && !m_isClosing; };
    bool mayWait = true;
    while (!place.TryEnter() && mayWait)
        mayWait = keepWaiting();
    int code = handle.RunOwn("BEGIN IMMEDIATE");
    while (IsBusy(code) && mayWait) {
        mayWait = keepWaiting();
        code = handle.RunOwn("BEGIN IMMEDIATE");
    }
    if (IsBusy(code))
        throw ProviderFailure(kStatementFailure,
                              m_isClosing ? "The program is about to end." : wait.FailureText());
    wait.Succeeded();
    return code;
}

void CatalogueFile::Commit(SqliteHandle &handle)
{
    m_isWriting = false;
    const int code = handle.RunOwn("COMMIT");
    if (code == SQLITE_OK)
        return;
    const ProviderFailure failure(kStatementFailure, sqlite3_errmsg(handle.Db()));
    handle.RunOwn("ROLLBACK");
    throw failure;
}

void CatalogueFile::RollBack(SqliteHandle &handle)
{
    m_isWriting = false;
    if (sqlite3_get_autocommit(handle.Db()) == 0)
        handle.RunOwn("ROLLBACK");
}

void CatalogueFile::StartCopyingLog()
{
    if (!m_main->HasSnapshots() || m_isClosing)
        return;
    if (!m_copier) {
        if (!IsSameFile())
            return;
        m_copier = std::make_unique<LogCopier>(m_path);
    }
    m_copier->Start();
}

const StoredQuery &CatalogueFile::Query(std::string_view name)
{
    const std::string key = runtime::UpperAscii(name);
    if (const auto found = m_queries.find(key); found != m_queries.end())
        return found->second;
    const auto &prepared =
        m_main->Prepare("SELECT Statement, WholePath FROM main.StoredQueries WHERE Name = ?1 "
                        "COLLATE NOCASE");
    const StatementUse use(prepared.statement);
    BindText(prepared.statement, 1, name);
    const int code = sqlite3_step(prepared.statement);
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        m_main->Throw(code);
    if (code == SQLITE_DONE)
        throw ProviderFailure(kStatementFailure,
                              "There is no stored query '" + std::string(name) + "'.");
    StoredQuery &query = m_queries[key];
    query.text = ColumnText(prepared.statement, 0);
    query.statement = TranslateStoredQuery(query.text);
    query.wholePath = TranslateStoredQuery(ColumnText(prepared.statement, 1)).sql;
    if (!query.wholePath.empty()) {
        const auto &columns = m_main->ColumnsOfMP3s();
        query.comparing = ComparingQuery(query.wholePath, columns, ConditionOfTexts);
        query.recognising = ComparingQuery(query.wholePath, columns, ConditionOfFingerprint);
    }
    return query;
}

const Translated *CatalogueFile::FindTranslation(const Statement &statement) const
{
    const auto isSame = [&](const auto &cached) {
        return cached.first.text == statement.text &&
               std::ranges::equal(cached.first.values, statement.values, {}, &PlacedValue::place,
                                  &PlacedValue::place);
    };
    const auto found = std::ranges::find_if(m_translations, isSame);
    return found == m_translations.end() ? nullptr : &found->second;
}

void CatalogueFile::CacheTranslation(const Statement &statement, const Translated &translated)
{
    if (m_translations.size() >= kCachedTranslations)
        m_translations.erase(m_translations.begin());
    Statement words(statement.text);
    for (const PlacedValue &value : statement.values)
        words.values.push_back({value.place, {}});
    m_translations.emplace_back(std::move(words), translated);
}

} // namespace catalogue

#include "catalogue/sqlite/sqlitehandle.h"

#include "catalogue/lockwait.h"
#include "catalogue/machineclock.h"
#include "catalogue/sql/statementtext.h"
#include "catalogue/sqlite/sqlitefunctions.h"
#include "platform/endrequest.h"
#include "runtime/text.h"

#include <chrono>
#include <thread>

namespace catalogue
{

namespace
{

constexpr std::size_t kPreparedKept = 64; // the program has about thirty statements

// The log is copied into the file when it has grown to this many pages (32 MiB of the catalogue as
// it ships), and at the end. Every such copy costs two flushes of the disk; a regeneration of
// 40,000 files needs one with this value.
constexpr const char *kSetUp = "PRAGMA synchronous=NORMAL;"
                               "PRAGMA wal_autocheckpoint=4096;"
                               "PRAGMA temp_store=MEMORY;"
                               "PRAGMA secure_delete=OFF;"
                               "PRAGMA trusted_schema=OFF;"
                               "PRAGMA cell_size_check=ON;";

constexpr const char *kManyPages = "PRAGMA cache_size=-8192"; // KiB
constexpr const char *kFewPages = "PRAGMA cache_size=-256";

constexpr std::string_view kQuery = "SELECT ";

// A statement that is still running this long after the end of the program was asked for is
// interrupted: it is not one of those that take milliseconds.
constexpr std::int64_t kEndLimitMs = 500;
constexpr int kStepsBetweenLooks = 20000; // steps of SQLite's virtual machine; about 200 us

// Turns off SQLite's count of its memory, which takes a lock for each piece and which the program
// does not use. Only possible before the first connection; later the call fails, which does no
// harm.
void CountNoMemory()
{
    static const int answer = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    static_cast<void>(answer);
}

bool IsGeneric(int code)
{
    return (code & 0xFF) == SQLITE_NOTADB || (code & 0xFF) == SQLITE_CORRUPT;
}

} // namespace

SqliteHandle::SqliteHandle(const std::string &path)
{
    CountNoMemory();
    // The handle is used by one thread at a time, so SQLite's own mutexes are not needed.
    constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    const int code = sqlite3_open_v2(path.c_str(), &m_db, kFlags, nullptr);
    try {
        if (code != SQLITE_OK)
            Throw(code);
        SetUp();
    } catch (...) {
        sqlite3_close_v2(m_db);
        throw;
    }
}

SqliteHandle::~SqliteHandle()
{
    for (auto &[sql, prepared] : m_prepared)
        sqlite3_finalize(prepared.statement);
    sqlite3_close_v2(m_db);
}

void SqliteHandle::SetUp()
{
    sqlite3_busy_handler(m_db, Busy, this);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    const int first = ReadFirstPage();
    if (first != SQLITE_OK)
        throw ProviderFailure(IsGeneric(first) ? kGenericFailure : kStatementFailure,
                              sqlite3_errmsg(m_db));
    if (const int code = RunOwn(kSetUp); code != SQLITE_OK)
        Throw(code);
    KeepFewPages(false);
    AddTextFunctions(m_db);
    m_isWal = KeepsALog();
    sqlite3_set_authorizer(m_db, Authorize, this);
    sqlite3_progress_handler(m_db, kStepsBetweenLooks, Progress, this);
}

// Another program may have the file locked.
int SqliteHandle::ReadFirstPage()
{
    constexpr const char *kRead = "SELECT 1 FROM sqlite_schema LIMIT 1";
    m_waits = false;
    int code = RunOwn(kRead);
    if ((code & 0xFF) == SQLITE_BUSY && !IsWaitingForLock()) {
        LockWait wait;
        while ((code & 0xFF) == SQLITE_BUSY && wait.KeepWaiting())
            code = RunOwn(kRead);
        if ((code & 0xFF) == SQLITE_BUSY)
            throw ProviderFailure(kStatementFailure, wait.FailureText());
        wait.Succeeded();
    }
    m_waits = true;
    return code;
}

// Whether the catalogue has a log. A copy that another tool made of it can be in the mode without
// one, in which readers and writers lock each other out. The mode is changed back; when this fails
// (another program uses the file, the folder is read-only), the file is used as it is.
bool SqliteHandle::KeepsALog()
{
    m_waits = false;
    m_isOwn = true;
    sqlite3_stmt *mode = nullptr;
    const bool isWal =
        sqlite3_prepare_v2(m_db, "PRAGMA journal_mode=WAL", -1, &mode, nullptr) == SQLITE_OK &&
        sqlite3_step(mode) == SQLITE_ROW && ColumnText(mode, 0) == "wal";
    sqlite3_finalize(mode);
    m_isOwn = false;
    m_waits = true;
    return isWal;
}

void SqliteHandle::Throw(int code) const
{
    const std::string words = m_db != nullptr && sqlite3_errcode(m_db) != SQLITE_OK
                                  ? sqlite3_errmsg(m_db)
                                  : sqlite3_errstr(code);
    throw ProviderFailure(kStatementFailure, words);
}

int SqliteHandle::RunOwn(const char *sql)
{
    m_isOwn = true;
    const int code = sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr);
    m_isOwn = false;
    return code;
}

const Prepared &SqliteHandle::Prepare(std::string_view sql)
{
    // SQLite itself prepares a kept statement again when the file's schema has changed.
    m_mayQuery = runtime::EqualAscii(sql.substr(0, kQuery.size()), kQuery);
    if (const auto found = m_prepared.find(sql); found != m_prepared.end())
        return found->second;
    if (m_prepared.size() >= kPreparedKept) { // statements in use are kept
        std::erase_if(m_prepared, [](auto &entry) {
            if (sqlite3_stmt_busy(entry.second.statement) != 0)
                return false;
            sqlite3_finalize(entry.second.statement);
            return true;
        });
    }
    sqlite3_stmt *statement = nullptr;
    const char *tail = nullptr;
    const int code = sqlite3_prepare_v3(m_db, sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &statement, &tail);
    if (code != SQLITE_OK)
        Throw(code);
    const std::string_view rest = sql.substr(static_cast<std::size_t>(tail - sql.data()));
    if (statement == nullptr || rest.find_first_not_of("; \t\r\n") != std::string_view::npos) {
        sqlite3_finalize(statement);
        throw ProviderFailure(kStatementFailure, statement == nullptr
                                                     ? "There is no statement in the text."
                                                     : "Characters found after end of statement.");
    }
    auto names = std::make_shared<std::vector<std::string>>();
    for (int i = 0; i < sqlite3_column_count(statement); ++i)
        names->emplace_back(sqlite3_column_name(statement, i));
    return m_prepared.emplace(sql, Prepared{statement, std::move(names)}).first->second;
}

const std::vector<std::string> &SqliteHandle::ColumnsOfMP3s()
{
    if (!m_mp3Columns.empty())
        return m_mp3Columns;
    m_isOwn = true;
    sqlite3_stmt *info = nullptr;
    if (sqlite3_prepare_v2(m_db, "SELECT name FROM pragma_table_info('MP3s')", -1, &info,
                           nullptr) == SQLITE_OK)
        while (sqlite3_step(info) == SQLITE_ROW)
            m_mp3Columns.emplace_back(ColumnText(info, 0));
    sqlite3_finalize(info);
    if (!m_mp3Columns.empty())
        AddTextViews(m_db, m_mp3Columns);
    m_isOwn = false;
    return m_mp3Columns;
}

bool SqliteHandle::KeepFewPages(bool on)
{
    RunOwn(on ? kFewPages : kManyPages);
    return std::exchange(m_keepsFewPages, on);
}

std::int64_t SqliteHandle::DataVersion()
{
    m_isOwn = true;
    sqlite3_stmt *version = nullptr;
    const bool isKnown =
        sqlite3_prepare_v2(m_db, "PRAGMA data_version", -1, &version, nullptr) == SQLITE_OK &&
        sqlite3_step(version) == SQLITE_ROW;
    const std::int64_t count = isKnown ? sqlite3_column_int64(version, 0) : -1;
    sqlite3_finalize(version);
    m_isOwn = false;
    return count;
}

int SqliteHandle::Busy(void *self, int count)
{
    auto &handle = *static_cast<SqliteHandle *>(self);
    if (!handle.m_waits)
        return 0;
    const auto now = MachineMs();
    if (count == 0)
        handle.m_busySinceMs = now;
    if (now - handle.m_busySinceMs > LockTimeoutMs() || platform::IsEndRequested())
        return 0;
    MachineSleepUs(500);
    return 1;
}

int SqliteHandle::Authorize(void *self, int action, const char *first, const char *, const char *,
                            const char *origin)
{
    const auto &handle = *static_cast<SqliteHandle *>(self);
    if (handle.m_isOwn)
        return SQLITE_OK;
    const std::string_view table = first == nullptr ? "" : first;
    switch (action) {
    case SQLITE_SELECT:
    case SQLITE_FUNCTION:
        // `origin`: the trigger or view that does it.
        return handle.m_mayQuery || origin != nullptr ? SQLITE_OK : SQLITE_DENY;
    case SQLITE_READ:
        return sqlite3_strnicmp(first, "sqlite_", 7) == 0 ? SQLITE_DENY : SQLITE_OK;
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
        return sqlite3_strnicmp(first, "sqlite_", 7) == 0 || table == "StoredQueries" ? SQLITE_DENY
                                                                                      : SQLITE_OK;
    default:
        return SQLITE_DENY;
    }
}

int SqliteHandle::Progress(void *self)
{
    auto &since = static_cast<SqliteHandle *>(self)->m_endAskedMs;
    if (!platform::IsEndRequested()) {
        since = 0;
        return 0;
    }
    const auto now = MachineMs();
    if (since == 0)
        since = now;
    return now - since > kEndLimitMs ? 1 : 0;
}

std::string SqliteHandle::ReadStart(int count) const
{
    sqlite3_file *file = nullptr;
    std::string bytes(static_cast<std::size_t>(count), '\0');
    if (sqlite3_file_control(m_db, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
        file == nullptr || file->pMethods == nullptr)
        return {};
    const int code = file->pMethods->xRead(file, bytes.data(), count, 0);
    return code == SQLITE_OK ? bytes : std::string();
}

std::int64_t SqliteHandle::FileSize() const
{
    sqlite3_file *file = nullptr;
    sqlite3_int64 size = 0;
    if (sqlite3_file_control(m_db, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
        file == nullptr || file->pMethods == nullptr)
        return 0;
    file->pMethods->xFileSize(file, &size);
    return size;
}

void BindText(sqlite3_stmt *statement, int parameter, std::string_view text)
{
    sqlite3_bind_text64(statement, parameter, text.data() == nullptr ? "" : text.data(),
                        text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

void BindValue(sqlite3_stmt *statement, int parameter, const Value &value)
{
    struct Binder {
        sqlite3_stmt *statement;
        int parameter;
        void operator()(std::monostate) const { BindText(statement, parameter, ""); }
        void operator()(const std::string &text) const { BindText(statement, parameter, text); }
        void operator()(bool flag) const { sqlite3_bind_int(statement, parameter, flag ? -1 : 0); }
        void operator()(std::int64_t number) const
        {
            sqlite3_bind_int64(statement, parameter, number);
        }
        void operator()(double number) const { sqlite3_bind_double(statement, parameter, number); }
        void operator()(const Date &date) const { BindText(statement, parameter, date.text); }
    };
    std::visit(Binder{statement, parameter}, value);
}

std::string_view ColumnText(sqlite3_stmt *statement, int column)
{
    // sqlite3_column_text would make a copy of a text, to add a NUL. A number has its text here
    // too.
    const auto *text = static_cast<const char *>(sqlite3_column_blob(statement, column));
    if (text == nullptr) // also for an empty text
        return {};
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

} // namespace catalogue

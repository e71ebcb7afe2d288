#include "catalogue/sqlite/logcopier.h"

#include "platform/helperthread.h"

#include <sqlite3.h>

#include <condition_variable>
#include <mutex>

namespace catalogue
{

// The connection is used by the helper while isRunning is true, else by the owner of the copier.
struct LogCopier::State {
    State() = default;
    ~State() { sqlite3_close_v2(db); }
    State(const State &) = delete;
    State &operator=(const State &) = delete;

    void Wait()
    {
        std::unique_lock lock(mutex);
        hasEnded.wait(lock, [this] { return !isRunning; });
    }

    sqlite3 *db = nullptr;
    bool isUsable = false;
    std::mutex mutex; // guards isRunning
    std::condition_variable hasEnded;
    bool isRunning = false;
};

// The first statement makes the connection read the log's header. It does not wait for a lock.
LogCopier::LogCopier(const std::string &path) : m_state(std::make_shared<State>())
{
    constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
    constexpr const char *kSetUp =
        "PRAGMA synchronous=NORMAL; SELECT 1 FROM main.sqlite_schema LIMIT 1";
    m_state->isUsable = sqlite3_open_v2(path.c_str(), &m_state->db, kFlags, nullptr) == SQLITE_OK &&
                        sqlite3_exec(m_state->db, kSetUp, nullptr, nullptr, nullptr) == SQLITE_OK;
}

LogCopier::~LogCopier()
{
    m_state->Wait();
    sqlite3_close_v2(m_state->db);
    m_state->db = nullptr;
}

void LogCopier::Start()
{
    const std::lock_guard lock(m_state->mutex);
    if (!m_state->isUsable || m_state->isRunning)
        return;
    m_state->isRunning = platform::StartHelperThread([state = m_state] {
        sqlite3_wal_checkpoint_v2(state->db, "main", SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
        const std::lock_guard end(state->mutex);
        state->isRunning = false;
        state->hasEnded.notify_all();
    });
}

void LogCopier::Abandon()
{
    m_state->Wait();
    m_state->isUsable = false;
    sqlite3_db_config(m_state->db, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

} // namespace catalogue

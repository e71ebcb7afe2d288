#include "catalogue/sqlite/opengroup.h"

#include "catalogue/machineclock.h"
#include "catalogue/provider.h"
#include "catalogue/sqlite/cataloguefile.h"

#include <utility>

namespace catalogue
{

namespace
{

// Calls each function that waits for the group, with the group's outcome.
void Settle(const std::string &lost)
{
    for (const auto &settled : std::exchange(TheOpenGroup().waiting, {}))
        settled(lost);
}

// Whether the last failure on this connection was caused by the disk, the memory or an
// interruption, not by the statement.
bool IsOutOfOrder(sqlite3 *db)
{
    const int code = sqlite3_errcode(db) & 0xFF;
    return code == SQLITE_FULL || code == SQLITE_IOERR || code == SQLITE_NOMEM ||
           code == SQLITE_INTERRUPT || code == SQLITE_CORRUPT || code == SQLITE_READONLY;
}

// Whether another process waits for the end of the group; checked at most once in a millisecond.
bool IsAnotherWaiting(OpenGroup &state, std::int64_t now)
{
    return std::exchange(state.askedMs, now) != now && state.file->IsAnotherWaiting();
}

} // namespace

OpenGroup &TheOpenGroup()
{
    static OpenGroup group;
    return group;
}

std::string CommitGroup()
{
    const auto file = std::exchange(TheOpenGroup().file, nullptr);
    std::string failure;
    if (file) {
        try {
            file->Commit(file->Main());
            if (MachineMs() - TheOpenGroup().sinceMs >= TheGroupLimits().groupMs)
                file->StartCopyingLog();
        } catch (const ProviderFailure &words) {
            failure = words.description;
        }
        Settle(failure);
    }
    return failure;
}

GroupLimits &TheGroupLimits()
{
    static GroupLimits limits;
    return limits;
}

void JoinGroup(const std::shared_ptr<CatalogueFile> &file)
{
    OpenGroup &state = TheOpenGroup();
    if (!state.stepFailure.empty())
        throw ProviderFailure(kStatementFailure, state.stepFailure);
    if (std::exchange(state.isRowStart, false)) {
        const auto now = MachineMs();
        state.isSlow = state.groups > 0 && now - state.lastRowMs > TheGroupLimits().slowReadMs;
        if (state.file &&
            (now - state.sinceMs >= TheGroupLimits().groupMs || IsAnotherWaiting(state, now)))
            CommitGroup();
    }
    if (state.file && state.file != file)
        CommitGroup();
    if (state.file)
        return;
    file->BeginWrite(file->Main());
    state.file = file;
    ++state.begun;
    state.sinceMs = MachineMs();
}

void StatementFailedInGroup(const std::string &description)
{
    OpenGroup &state = TheOpenGroup();
    if (!state.file)
        return;
    sqlite3 *db = state.file->Main().Db();
    const bool isUndone = sqlite3_get_autocommit(db) != 0;
    if (isUndone || IsOutOfOrder(db))
        state.stepFailure = description;
    if (!isUndone)
        return;
    const auto file = std::exchange(state.file, nullptr);
    file->RollBack(file->Main());
    Settle(description);
}

void CloseOpenGroup()
{
    CommitGroup();
}

void CloseCatalogue()
{
    CloseOpenGroup();
    CatalogueFile::CloseAll();
}

} // namespace catalogue

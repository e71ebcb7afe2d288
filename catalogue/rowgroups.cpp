#include "catalogue/rowgroups.h"

#include "catalogue/sqlite/groupstate.h"

#include <functional>
#include <utility>
#include <vector>

namespace catalogue
{

namespace
{

using Tell = std::function<void(const std::string &lost)>;

struct State {
    int groups = 0;                      // living RowGroups
    std::shared_ptr<CatalogueFile> file; // with the open group; null = none is open
    std::int64_t sinceMs = 0;            // when the open group began
    std::int64_t lastRowMs = 0;          // when the last step ended
    bool isRowStart = false;             // no statement of the step has run yet
    std::uint64_t begun = 0;             // groups so far
    bool isSlow = false;
    std::string stepFailure;   // what ended the step before its time; empty = nothing
    std::vector<Tell> waiting; // for the open group to be settled
};

State &TheState()
{
    static State state;
    return state;
}

// Tells all that wait how the group ended.
void Settle(const std::string &lost)
{
    for (const Tell &tell : std::exchange(TheState().waiting, {}))
        tell(lost);
}

// Commits the open group, if any. The words of the failure, else nothing.
std::string CommitGroup()
{
    const auto file = std::exchange(TheState().file, nullptr);
    std::string failure;
    if (file) {
        try {
            file->Commit(file->Main());
        } catch (const ProviderFailure &words) {
            failure = words.description;
        }
        Settle(failure);
    }
    return failure;
}

// Whether the last failure on this connection is one of the disk or the memory, or an interruption,
// and not of the statement.
bool IsOutOfOrder(sqlite3 *db)
{
    const int code = sqlite3_errcode(db) & 0xFF;
    return code == SQLITE_FULL || code == SQLITE_IOERR || code == SQLITE_NOMEM ||
           code == SQLITE_INTERRUPT || code == SQLITE_CORRUPT || code == SQLITE_READONLY;
}

} // namespace

GroupLimits &TheGroupLimits()
{
    static GroupLimits limits;
    return limits;
}

void JoinGroup(const std::shared_ptr<CatalogueFile> &file)
{
    State &state = TheState();
    if (!state.stepFailure.empty())
        throw ProviderFailure(kStatementFailure, state.stepFailure);
    if (std::exchange(state.isRowStart, false)) {
        const auto now = MachineMs();
        state.isSlow = state.groups > 0 && now - state.lastRowMs > TheGroupLimits().slowReadMs;
        if (state.file &&
            (now - state.sinceMs >= TheGroupLimits().groupMs || state.file->SomeoneWaits()))
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
    State &state = TheState();
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

RowGroups::RowGroups()
{
    State &state = TheState();
    if (state.groups++ == 0)
        state.lastRowMs = MachineMs();
}

RowGroups::~RowGroups()
{
    if (--TheState().groups == 0)
        CloseOpenGroup();
}

void RowGroups::WhenSettled(std::function<void(const std::string &lost)> tell)
{
    State &state = TheState();
    if (state.file)
        state.waiting.push_back(std::move(tell));
    else
        tell({});
}

void RowGroups::Close()
{
    CloseOpenGroup();
}

RowStep::RowStep(const ADOclass &access) : m_access(access)
{
    State &state = TheState();
    m_begunBefore = state.begun;
    state.isRowStart = true;
    state.stepFailure.clear();
}

RowStep::~RowStep()
{
    Finish();
}

bool RowStep::HasBegun() const
{
    return TheState().begun != m_begunBefore;
}

std::uint64_t RowStep::GroupNo() const
{
    return TheState().begun;
}

std::string RowStep::Finish()
{
    if (std::exchange(m_isFinished, true))
        return {};
    State &state = TheState();
    std::string failure = std::exchange(state.stepFailure, {});
    state.lastRowMs = MachineMs();
    const bool mayStayOpen = state.groups > 0 && !state.isSlow && !IsWaitingForLock();
    if (mayStayOpen && state.lastRowMs - state.sinceMs < TheGroupLimits().groupMs)
        return failure;
    if (std::string words = CommitGroup(); failure.empty())
        failure = std::move(words);
    state.lastRowMs = MachineMs();
    return failure;
}

JointWrites::JointWrites()
    : m_isOpen(TheState().file && TheState().file->Main().RunOwn("SAVEPOINT joint") == SQLITE_OK)
{
}

JointWrites::~JointWrites()
{
    if (m_isOpen && TheState().file)
        TheState().file->Main().RunOwn("ROLLBACK TO joint; RELEASE joint");
}

void JointWrites::Keep()
{
    if (std::exchange(m_isOpen, false) && TheState().file)
        TheState().file->Main().RunOwn("RELEASE joint");
}

platform::Answer GroupClosingDesktop::MessageBox(std::string_view text, platform::Buttons buttons,
                                                 std::string_view title, platform::BoxIcon icon)
{
    CloseOpenGroup();
    return m_inner.MessageBox(text, buttons, title, icon);
}

platform::Answer GroupClosingDesktop::MessageBoxWithDetails(std::string_view text,
                                                            std::string_view details,
                                                            platform::Buttons buttons,
                                                            std::string_view title)
{
    CloseOpenGroup();
    return m_inner.MessageBoxWithDetails(text, details, buttons, title);
}

std::optional<std::string> GroupClosingDesktop::InputBox(std::string_view prompt,
                                                         std::string_view title,
                                                         std::string_view initialText)
{
    CloseOpenGroup();
    return m_inner.InputBox(prompt, title, initialText);
}

std::optional<std::string>
GroupClosingDesktop::OpenDialog(std::string_view title,
                                const std::vector<platform::FileFilter> &filters,
                                const std::string &folder)
{
    CloseOpenGroup();
    return m_inner.OpenDialog(title, filters, folder);
}

std::optional<std::string>
GroupClosingDesktop::SaveDialog(std::string_view title,
                                const std::vector<platform::FileFilter> &filters,
                                const std::string &path)
{
    CloseOpenGroup();
    return m_inner.SaveDialog(title, filters, path);
}

bool GroupClosingDesktop::OpenAddress(const std::string &address, const std::string &workingFolder)
{
    CloseOpenGroup();
    return m_inner.OpenAddress(address, workingFolder);
}

} // namespace catalogue

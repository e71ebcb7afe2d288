#include "catalogue/rowgroups.h"

#include "catalogue/sqlite/groupstate.h"

#include <utility>

namespace catalogue
{

namespace
{

constexpr std::int64_t kGroupMs = 100; // of work that a kill may lose
// Where the files come slower than this, each row is committed at once: the catalogue is not held
// while the next one is read.
constexpr std::int64_t kSlowReadMs = 20;

struct State {
    int groups = 0;                      // RowGroups that stand
    int steps = 0;                       // RowStep that stand
    int yields = 0;                      // event loops that run inside one another
    int stepYield = 0;                   // the value of `yields` where the innermost step began
    std::shared_ptr<CatalogueFile> file; // with the open group; null = none is open
    std::int64_t sinceMs = 0;            // when the open group began
    std::int64_t lastRowMs = 0;          // when the last step ended
    int rows = 0;                        // writes in the open group
    bool isRowStart = false;             // no statement of the step has run yet
    bool isSlow = false;
    std::string failures;
};

State &TheState()
{
    static State state;
    return state;
}

void NoteLoss(const std::string &description, int rows)
{
    TheState().failures +=
        "Error: " + description + "\r\t" + std::to_string(rows) + " row(s) could not be kept\r";
}

} // namespace

YieldScope::YieldScope()
{
    ++TheState().yields;
}

YieldScope::~YieldScope()
{
    --TheState().yields;
}

bool IsInRowStep()
{
    const State &state = TheState();
    return state.steps > 0 && state.yields == state.stepYield;
}

void JoinGroup(const std::shared_ptr<CatalogueFile> &file)
{
    State &state = TheState();
    if (std::exchange(state.isRowStart, false)) {
        const auto now = MachineMs();
        state.isSlow = state.groups > 0 && now - state.lastRowMs > kSlowReadMs;
        if (state.file && (now - state.sinceMs >= kGroupMs || state.file->SomeoneWaits()))
            CloseOpenGroup();
    }
    if (state.file && state.file != file)
        CloseOpenGroup();
    if (state.file)
        return;
    file->BeginWrite(file->Main());
    state.file = file;
    state.sinceMs = MachineMs();
    state.rows = 0;
}

void WriteDoneInGroup()
{
    State &state = TheState();
    ++state.rows;
    const bool isOver =
        state.groups == 0 || state.isSlow || MachineMs() - state.sinceMs >= kGroupMs;
    if (!isOver || !state.file)
        return;
    const auto file = std::exchange(state.file, nullptr);
    try {
        file->Commit(file->Main());
    } catch (const ProviderFailure &failure) {
        if (state.rows > 1) // the statement at hand tells its own loss
            NoteLoss(failure.description, state.rows - 1);
        throw;
    }
}

void WriteFailedInGroup(const std::string &description)
{
    State &state = TheState();
    if (!state.file)
        return;
    const bool isUndone = sqlite3_get_autocommit(state.file->Main().Db()) != 0;
    if (isUndone) {
        const auto file = std::exchange(state.file, nullptr);
        file->RollBack(file->Main());
        if (state.rows > 0)
            NoteLoss(description, state.rows);
    }
}

void CloseOpenGroup()
{
    State &state = TheState();
    const auto file = std::exchange(state.file, nullptr);
    if (!file)
        return;
    try {
        file->Commit(file->Main());
    } catch (const ProviderFailure &failure) {
        if (state.rows > 0)
            NoteLoss(failure.description, state.rows);
    }
}

void CloseCatalogue()
{
    CloseOpenGroup();
    CatalogueFile::CloseAll();
}

RowGroups::RowGroups()
{
    State &state = TheState();
    if (state.groups++ == 0) {
        state.failures.clear();
        state.lastRowMs = MachineMs();
    }
}

RowGroups::~RowGroups()
{
    if (--TheState().groups == 0)
        CloseOpenGroup();
}

std::string RowGroups::Close()
{
    CloseOpenGroup();
    return std::exchange(TheState().failures, {});
}

RowStep::RowStep()
{
    State &state = TheState();
    m_outerYield = state.stepYield;
    state.stepYield = state.yields;
    state.isRowStart = true;
    ++state.steps;
}

RowStep::~RowStep()
{
    State &state = TheState();
    --state.steps;
    state.stepYield = m_outerYield;
    if (state.groups == 0)
        CloseOpenGroup();
    else
        state.lastRowMs = MachineMs();
}

platform::Answer GroupClosingDesktop::MessageBox(std::string_view text, platform::Buttons buttons,
                                                 std::string_view title, platform::BoxIcon icon)
{
    CloseOpenGroup();
    const YieldScope yielding;
    return m_inner.MessageBox(text, buttons, title, icon);
}

std::optional<std::string> GroupClosingDesktop::InputBox(std::string_view prompt,
                                                         std::string_view title,
                                                         std::string_view initialText)
{
    CloseOpenGroup();
    const YieldScope yielding;
    return m_inner.InputBox(prompt, title, initialText);
}

std::optional<std::string>
GroupClosingDesktop::OpenDialog(std::string_view title,
                                const std::vector<platform::FileFilter> &filters,
                                const std::string &folder)
{
    CloseOpenGroup();
    const YieldScope yielding;
    return m_inner.OpenDialog(title, filters, folder);
}

bool GroupClosingDesktop::OpenAddress(const std::string &address, const std::string &workingFolder)
{
    CloseOpenGroup();
    return m_inner.OpenAddress(address, workingFolder);
}

void GroupClosingDesktop::DoEvents()
{
    const YieldScope yielding;
    m_inner.DoEvents();
}

} // namespace catalogue

#include "catalogue/rowgroups.h"

#include "catalogue/machineclock.h"
#include "catalogue/sqlite/cataloguefile.h"

#include <utility>

namespace catalogue
{

RowGroups::RowGroups()
{
    OpenGroup &state = TheOpenGroup();
    if (state.groups++ == 0)
        state.lastRowMs = MachineMs();
}

RowGroups::~RowGroups()
{
    if (--TheOpenGroup().groups > 0)
        return;
    CloseOpenGroup();
    RowStep::SpareAccess().reset();
}

void RowGroups::WhenSettled(std::function<void(const std::string &lost)> settled)
{
    OpenGroup &state = TheOpenGroup();
    if (state.file)
        state.waiting.push_back(std::move(settled));
    else
        settled({});
}

void RowGroups::Close()
{
    CloseOpenGroup();
}

// The object of the last step, which the next one uses again: there is a step for each song.
RowStep::StepAccessPtr &RowStep::SpareAccess()
{
    static StepAccessPtr spare;
    return spare;
}

RowStep::RowStep(const ADOclass &access) : m_access(std::move(SpareAccess()))
{
    if (m_access == nullptr || !m_access->IsSetAs(access))
        m_access = std::make_unique<StepAccess>(access);
    OpenGroup &state = TheOpenGroup();
    m_begunBefore = state.begun;
    state.isRowStart = true;
    state.stepFailure.clear();
}

RowStep::~RowStep()
{
    Finish();
    if (TheOpenGroup().groups > 0)
        SpareAccess() = std::move(m_access);
}

bool RowStep::HasBegun() const
{
    return TheOpenGroup().begun != m_begunBefore;
}

std::uint64_t RowStep::GroupNo() const
{
    return TheOpenGroup().begun;
}

std::string RowStep::Finish()
{
    if (std::exchange(m_isFinished, true))
        return {};
    OpenGroup &state = TheOpenGroup();
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
    : m_isOpen(TheOpenGroup().file &&
               TheOpenGroup().file->Main().RunOwn("SAVEPOINT joint") == SQLITE_OK)
{
}

JointWrites::~JointWrites()
{
    if (m_isOpen && TheOpenGroup().file)
        TheOpenGroup().file->Main().RunOwn("ROLLBACK TO joint; RELEASE joint");
}

void JointWrites::Keep()
{
    if (std::exchange(m_isOpen, false) && TheOpenGroup().file)
        TheOpenGroup().file->Main().RunOwn("RELEASE joint");
}

} // namespace catalogue

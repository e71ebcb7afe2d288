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
    if (--TheOpenGroup().groups == 0)
        CloseOpenGroup();
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

RowStep::RowStep(const ADOclass &access) : m_access(access)
{
    OpenGroup &state = TheOpenGroup();
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

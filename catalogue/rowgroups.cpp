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

void RowGroups::WhenSettled(std::function<void(const std::string &lost)> tell)
{
    OpenGroup &state = TheOpenGroup();
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

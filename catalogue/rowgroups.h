// catalogue/rowgroups.h - when rows reach the disk together. A statement commits at once; only
// regeneration and batch may group the rows they add, up to 100 ms of work. A kill loses at most
// the open group, and other processes wait no longer than for the row under way. CloseOpenGroup and
// CloseCatalogue, which others call, are in catalogue/sqlite/opengroup.h.
#pragma once

#include "catalogue/adoclass.h"
#include "catalogue/lockwait.h"
#include "catalogue/sqlite/opengroup.h"
#include "platform/desktop.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace catalogue
{

// While one lives, the rows of several RowSteps are committed together. Regeneration and batch hold
// one for their whole run; one inside another changes nothing.
class RowGroups
{
public:
    RowGroups();
    ~RowGroups(); // closes the open group
    RowGroups(const RowGroups &) = delete;
    RowGroups &operator=(const RowGroups &) = delete;

    // Calls `tell` once the rows of all steps so far are settled: with the empty text when they are
    // in the catalogue, with the words of the failure when they are lost. At once where no group is
    // open, else when it is closed; calls come in the order in which they were asked for. To be
    // called after each step, so that nothing is reported before it is true. `tell` runs no
    // statement.
    void WhenSettled(std::function<void(const std::string &lost)> tell);

    // Closes the open group, so that everything is settled. To be called at the end of the run,
    // before its summary.
    void Close();

private:
    PatienceOfRun m_patience;
};

// The look-up of a path and the writes of its row, as one step for other processes. Its statements
// are those of Access(); what an event handler runs on DataAccess never belongs to it. The first
// statement waits for other processes, and may yield while it does; the others do not yield.
// Without RowGroups the end of the step commits it. Keep it short: nothing that asks, waits or
// reads an MP3 file belongs inside.
class RowStep
{
public:
    // `access`: the object whose database the step writes to.
    explicit RowStep(const ADOclass &access);
    ~RowStep(); // finishes it
    RowStep(const RowStep &) = delete;
    RowStep &operator=(const RowStep &) = delete;

    ADOclass &Access() { return m_access; }

    // Whether the step had to get the catalogue for itself: another program may have had it until
    // then. Otherwise this one has had it since an earlier step.
    [[nodiscard]] bool HasBegun() const;

    // The number of the group that the step belongs to once a statement of it has run; no two
    // groups of a process have the same.
    [[nodiscard]] std::uint64_t GroupNo() const;

    // Ends the step: commits its rows, unless they may wait in a group.
    // Returns: the words of the failure that undid the step, if any; its rows are lost then, and so
    //          are those of the steps that were waiting with it. Else the empty text.
    std::string Finish();

private:
    struct StepAccess : ADOclass {
        explicit StepAccess(const ADOclass &other) : ADOclass(InStep(), other) {}
    };

    StepAccess m_access;
    std::uint64_t m_begunBefore;
    bool m_isFinished = false;
};

// Lives inside a RowStep around writes that belong together: without Keep they are undone at its
// end, before any other process can see them.
class JointWrites
{
public:
    JointWrites();
    ~JointWrites();
    JointWrites(const JointWrites &) = delete;
    JointWrites &operator=(const JointWrites &) = delete;

    void Keep();

private:
    bool m_isOpen;
};

// A desktop that closes the open group before each box and dialog, and passes everything on. app/
// puts it around the real one. DoEvents leaves the group open: a statement of an event handler
// closes it by itself.
class GroupClosingDesktop : public platform::Desktop
{
public:
    explicit GroupClosingDesktop(platform::Desktop &inner) : m_inner(inner) {}

    platform::Answer MessageBoxWithDetails(std::string_view text, std::string_view details,
                                           platform::Buttons buttons,
                                           std::string_view title) override;
    platform::Answer MessageBox(std::string_view text, platform::Buttons buttons,
                                std::string_view title, platform::BoxIcon icon) override;
    std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                        std::string_view initialText) override;
    std::optional<std::string> OpenDialog(std::string_view title,
                                          const std::vector<platform::FileFilter> &filters,
                                          const std::string &folder) override;
    std::optional<std::string> SaveDialog(std::string_view title,
                                          const std::vector<platform::FileFilter> &filters,
                                          const std::string &path) override;
    void EmptyClipboard() override { m_inner.EmptyClipboard(); }
    void SetClipboardText(std::string_view text) override { m_inner.SetClipboardText(text); }
    std::string ClipboardText() override { return m_inner.ClipboardText(); }
    bool OpenAddress(const std::string &address, const std::string &workingFolder) override;
    bool InputWasClosed() override { return m_inner.InputWasClosed(); }
    void SetPointer(platform::Pointer pointer) override { m_inner.SetPointer(pointer); }
    void DoEvents() override { m_inner.DoEvents(); }

private:
    platform::Desktop &m_inner; // outlives this object
};

} // namespace catalogue

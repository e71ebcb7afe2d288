// catalogue/rowgroups.h - when rows are committed together. A statement commits at once; only
// regeneration and batch may group the rows that they add, for at most about 40 ms of work. A kill
// of the process loses at most the open group, and other processes wait only until the current row
// is written. CloseOpenGroup and CloseCatalogue are in catalogue/sqlite/opengroup.h.
#pragma once

#include "catalogue/adoclass.h"
#include "catalogue/lockwait.h"
#include "catalogue/sqlite/opengroup.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace catalogue
{

// While one exists, the rows of several RowSteps are committed together. Regeneration and batch
// have one during their whole run; a nested one changes nothing.
class RowGroups
{
public:
    RowGroups();
    ~RowGroups(); // commits the open group
    RowGroups(const RowGroups &) = delete;
    RowGroups &operator=(const RowGroups &) = delete;

    // Calls `settled` once the rows of all steps so far are settled: with an empty text when they
    // are in the catalogue, with the words of the failure when they are lost. At once when no group
    // is open, else when the group is committed; in the order in which it was asked for. To be
    // called after each step, so that nothing is reported before it is true. `settled` must not run
    // a statement.
    void WhenSettled(std::function<void(const std::string &lost)> settled);

    // Commits the open group, so that all rows are settled. To be called at the end of the run,
    // before its summary.
    void Close();

private:
    LockTimeoutOfRun m_lockTimeout;
};

// The look-up of a path and the writes of its row, as one step for other processes. The statements
// of Access() belong to it; those that an event handler runs on DataAccess do not. The first
// statement waits for other processes, and may yield while it waits; the others do not yield.
// Without RowGroups the end of the step commits it. A step must be short: it must not ask a
// question, wait, or read an MP3 file.
class RowStep
{
public:
    // `access`: the object whose database the step writes to.
    explicit RowStep(const ADOclass &access);
    ~RowStep(); // calls Finish
    RowStep(const RowStep &) = delete;
    RowStep &operator=(const RowStep &) = delete;

    ADOclass &Access() { return *m_access; }

    // Whether this step had to get the lock, so that another program may have had it before.
    // Otherwise this process has had it since an earlier step.
    [[nodiscard]] bool HasBegun() const;

    // The number of the group that the step belongs to, valid after its first statement. Each group
    // of a process has another number.
    [[nodiscard]] std::uint64_t GroupNo() const;

    // Ends the step: commits its rows, unless they wait in a group.
    // Returns: an empty text, or the words of the failure that undid the step; its rows are lost
    // then, and so are those of the steps that waited with it.
    std::string Finish();

private:
    struct StepAccess : ADOclass {
        explicit StepAccess(const ADOclass &other) : ADOclass(InStep(), other) {}
        using ADOclass::IsSetAs;
    };
    using StepAccessPtr = std::unique_ptr<StepAccess>;
    friend class RowGroups;
    static StepAccessPtr &SpareAccess();

    StepAccessPtr m_access;
    std::uint64_t m_begunBefore;
    bool m_isFinished = false;
};

// Inside a RowStep: writes that belong together. Without Keep they are undone by the destructor,
// before any other process can read them.
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

} // namespace catalogue

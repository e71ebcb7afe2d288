// catalogue/sqlite/opengroup.h - the open group of rows: the provider adds statements to it,
// catalogue/rowgroups.h says when there may be one.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace catalogue
{

class CatalogueFile; // catalogue/sqlite/cataloguefile.h

// When an open group is committed. A test sets other limits.
struct GroupLimits {
    // How long a group may stay open, in ms of work; a kill loses no more than that. Long enough
    // that the commit is a small part of it, short enough that the files that were read ahead last
    // for the time of a commit.
    std::int64_t groupMs = 40;
    // The longest time between two rows of a group. When files come more slowly, each row is
    // committed at once, so that the catalogue is not locked while a file is read.
    std::int64_t slowReadMs = 20;
};
GroupLimits &TheGroupLimits();

// Commits the open group of rows, if any, so that the catalogue is not locked. To be called before
// anything that may take long: a box, a dialog, a modal window, a read from a slow disk. Errors:
// none; RowGroups::WhenSettled reports them.
void CloseOpenGroup();

// Closes all connections to the catalogue; lazy results copy their rows first, and the log is
// written into the file, so that the file is complete without it. Called at each orderly end of the
// process; a later statement opens a new connection.
void CloseCatalogue();

// The state of the group; written by this module and by catalogue/rowgroups.
struct OpenGroup {
    int groups = 0;                      // RowGroups that exist
    std::shared_ptr<CatalogueFile> file; // with the open group; null = none is open
    std::int64_t sinceMs = 0;            // when the open group began
    std::int64_t askedMs = 0;            // when it was last checked whether another process waits
    std::int64_t lastRowMs = 0;          // when the last step ended
    bool isRowStart = false;             // no statement of the step has run yet
    std::uint64_t begun = 0;             // the number of groups so far
    bool isSlow = false;
    std::string stepFailure; // the failure that ended the step early; empty = none
    std::vector<std::function<void(const std::string &lost)>>
        waiting; // called when the group is settled
};
OpenGroup &TheOpenGroup();

// Commits the open group, if any. Returns: the words of the failure, otherwise the empty text.
std::string CommitGroup();

// Begins the transaction of the step on `file`, or continues in the open group. At the first
// statement of a step a group that is old, or for which another process waits, is committed first.
// Errors: ProviderFailure, also when an earlier write of the step was undone by SQLite or the disk.
void JoinGroup(const std::shared_ptr<CatalogueFile> &file);

// To be called when a statement inside the step failed. If SQLite has undone the transaction, all
// its rows are lost. If the disk or the memory is the cause, the step has failed too: its further
// statements fail with the same words. After any other failure the step continues.
void StatementFailedInGroup(const std::string &description);

} // namespace catalogue

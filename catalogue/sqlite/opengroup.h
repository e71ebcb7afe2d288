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
    std::int64_t groupMs = 100; // of work; a kill loses no more
    std::int64_t slowReadMs =
        20; // between two rows. Where files come slower, each row is committed
            // at once: the catalogue is not locked while a file is read.
};
GroupLimits &TheGroupLimits();

// Commits the open group of rows, if any, so that the catalogue is not locked. To be called before
// anything that may take long: a box, a dialog, a modal window, a read from a slow disk. Errors:
// none; RowGroups::WhenSettled reports them.
void CloseOpenGroup();

// Closes every connection to the catalogue that is kept warm; results that read late copy
// themselves first, and the log goes into the file, so that the file alone is whole. At each
// orderly end of the process; a statement afterwards opens anew.
void CloseCatalogue();

// The state of the group; written here and by catalogue/rowgroups.
struct OpenGroup {
    int groups = 0;                      // living RowGroups
    std::shared_ptr<CatalogueFile> file; // with the open group; null = none is open
    std::int64_t sinceMs = 0;            // when the open group began
    std::int64_t askedMs = 0;            // when another process was last looked for
    std::int64_t lastRowMs = 0;          // when the last step ended
    bool isRowStart = false;             // no statement of the step has run yet
    std::uint64_t begun = 0;             // groups so far
    bool isSlow = false;
    std::string stepFailure; // what ended the step before its time; empty = nothing
    std::vector<std::function<void(const std::string &lost)>>
        waiting; // for the group to be settled
};
OpenGroup &TheOpenGroup();

// Commits the open group, if any. Returns: the words of the failure, otherwise the empty text.
std::string CommitGroup();

// Begins the transaction of the step on `file`, or goes on in the open group. At the first
// statement of a step an old group, or one that another process waits for, is closed first.
// Errors: ProviderFailure, also in a step of which a write was undone by the engine or the disk.
void JoinGroup(const std::shared_ptr<CatalogueFile> &file);

// To be called when a statement inside the step failed. Where the engine undid the transaction, all
// its rows are lost. Where the disk or the memory is at fault, the step is over as well: its
// further statements fail with the same words. After any other failure the step goes on.
void StatementFailedInGroup(const std::string &description);

} // namespace catalogue

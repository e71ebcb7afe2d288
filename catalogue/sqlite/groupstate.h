// catalogue/sqlite/groupstate.h - the open group of rows, between the provider that fills it and
// rowgroups.h that says when there may be one.
#pragma once

#include "catalogue/sqlite/cataloguefile.h"

#include <memory>
#include <string>

namespace catalogue
{

// Marks that event handlers may run: a statement of theirs belongs to no RowStep around it.
class YieldScope
{
public:
    YieldScope();
    ~YieldScope();
    YieldScope(const YieldScope &) = delete;
    YieldScope &operator=(const YieldScope &) = delete;
};

// Whether the statement at hand stands in a RowStep, and not in an event handler within it.
[[nodiscard]] bool IsInRowStep();

// Begins the transaction of the step on `file`, or goes on in the open group. At the first
// statement of a step an old group, or one that another process waits for, is closed first.
// Errors: ProviderFailure.
void JoinGroup(const std::shared_ptr<CatalogueFile> &file);

// To be called when a write inside the step is done: commits at once where no RowGroups stands, or
// when the group has had its time. Errors: ProviderFailure; the rows are then not in the catalogue.
void WriteDoneInGroup();

// To be called when a write inside the step failed; the group goes on unless the engine undid it.
void WriteFailedInGroup(const std::string &description);

} // namespace catalogue

// catalogue/sqlite/groupstate.h - the open group of rows, between the provider that fills it and
// rowgroups.h that says when there may be one.
#pragma once

#include "catalogue/sqlite/cataloguefile.h"

#include <memory>
#include <string>

namespace catalogue
{

// Begins the transaction of the step on `file`, or goes on in the open group. At the first
// statement of a step an old group, or one that another process waits for, is closed first.
// Errors: ProviderFailure, also in a step of which a write was undone by the engine or the disk.
void JoinGroup(const std::shared_ptr<CatalogueFile> &file);

// To be called when a statement inside the step failed. Where the engine undid the transaction, all
// its rows are lost. Where the disk or the memory is at fault, the step is over as well: its
// further statements fail with the same words. After any other failure the step goes on.
void StatementFailedInGroup(const std::string &description);

} // namespace catalogue

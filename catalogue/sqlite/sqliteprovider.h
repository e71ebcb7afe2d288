// catalogue/sqlite/sqliteprovider.h - the engine of "Provider=Microsoft.Jet.OLEDB.4.0": the
// catalogue is an SQLite file.
#pragma once

#include "catalogue/provider.h"

#include <memory>
#include <string>

namespace catalogue
{

// Opens the file that the connection string names as "Data Source". It is never created.
// Errors: ProviderFailure, here and when the result is called.
Opener ResolveCatalogueFile(const std::string &connectionString);

} // namespace catalogue

// catalogue/sqlite/sqlitefunctions.h - what a connection to the catalogue knows beyond stock
// SQLite: the names that statementtext.h writes into a statement. The file itself names none of
// them.
#pragma once

#include <sqlite3.h>

#include <string>
#include <vector>

namespace catalogue
{

// Adds the collation, same_trimmed(a, b), upper_text(a) and the operator REGEXP (LIKE with Unicode
// letter case; with an escape as third argument).
void AddTextFunctions(sqlite3 *db);

// Adds the temporary views kTextView and kRowView over MP3s and its `columns`.
void AddTextViews(sqlite3 *db, const std::vector<std::string> &columns);

} // namespace catalogue

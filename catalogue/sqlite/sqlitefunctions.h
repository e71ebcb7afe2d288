// catalogue/sqlite/sqlitefunctions.h - what a connection to the catalogue knows beyond stock
// SQLite: the names that statementtext.h writes into a statement. The file itself names none of
// them.
#pragma once

#include "catalogue/rows/likesearch.h"

#include <sqlite3.h>

#include <string>
#include <vector>

namespace catalogue
{

// Adds the collation, same_trimmed(a, b), upper_text(a) and the operator REGEXP (LIKE with Unicode
// letter case; with an escape as third argument), and found_by_like, see BindLikeSearch.
void AddTextFunctions(sqlite3 *db);

// Binds `search` to a parameter (from 1) of a statement, which it outlives. There it is the first
// argument of found_by_like(?, column, ...), which takes the search's columns in their order and
// says whether the row is found.
void BindLikeSearch(sqlite3_stmt *statement, int parameter, const LikeSearch &search);

// The words of that call, for parameter 1.
std::string LikeSearchCall(const LikeSearch &search);

// Adds the temporary views kTextView and kRowView over MP3s and its `columns`.
void AddTextViews(sqlite3 *db, const std::vector<std::string> &columns);

} // namespace catalogue

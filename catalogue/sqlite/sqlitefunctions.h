// catalogue/sqlite/sqlitefunctions.h - adds functions to a connection to the catalogue: the names
// that statementtext.h writes into statements. The catalogue file itself uses none of them.
#pragma once

#include "catalogue/rows/likesearch.h"

#include <sqlite3.h>

#include <string>
#include <vector>

namespace catalogue
{

// Adds the collation, same_trimmed(a, b), upper_text(a), has_fingerprint(first, second, column,
// ...), which compares the texts of a row with a fingerprint (catalogue/comparedrows.h), and the
// operator REGEXP (LIKE with Unicode letter case; with an escape as third argument), and
// found_by_like, see BindLikeSearch.
void AddTextFunctions(sqlite3 *db);

// Binds `search` to a parameter (from 1) of a statement; `search` must exist until the statement
// has run. The parameter is the first argument of found_by_like(?, column, ...); the others are the
// columns of the search in their order. The function returns whether the row is found.
void BindLikeSearch(sqlite3_stmt *statement, int parameter, const LikeSearch &search);

// The words of that call, for parameter 1.
std::string LikeSearchCall(const LikeSearch &search);

// Adds the temporary views kTextView and kRowView over MP3s and its `columns`.
void AddTextViews(sqlite3 *db, const std::vector<std::string> &columns);

} // namespace catalogue

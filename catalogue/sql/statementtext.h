// catalogue/sql/statementtext.h - translates a statement of the program for SQLite. No state.
//   'text'              becomes a parameter, so that NULs and megabytes pass
//   #date#, a value     become parameters as well
//   DELETE * FROM       loses its "*"
//   [table]             alone is all of that table
//   LIKE                becomes REGEXP, an operator that SQLite leaves to the application; ours is
//                       LIKE with Unicode letter case. No built-in is overridden
//   UPPER(TRIM(a)) = UPPER(TRIM(b))  becomes same_trimmed(a, b); any other UPPER( upper_text(
//   ORDER BY name       gets the catalogue's collation
//   FROM MP3s           in a SELECT reads a view whose texts compare without regard to letter case
#pragma once

#include "catalogue/provider.h"
#include "catalogue/sql/likecondition.h"

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue
{

// The names that the provider gives its connections.
inline constexpr std::string_view kCollation = "CATALOGUE_TEXT";
inline constexpr std::string_view kTextView = "temp.TextOfMP3s"; // the columns of MP3s
inline constexpr std::string_view kRowView = "temp.RowsOfMP3s";  // RowNo, then the columns

enum class Verb { Select, Insert, Update, Delete, Other };

struct OrderTerm {
    std::string column; // as written
    bool descending = false;
};

// "SELECT * FROM MP3s", with or without a condition and an order: its rows can be found and sorted
// first, and their columns read later (catalogue/rows/lazyrows.h).
struct RowQuery {
    std::string condition;              // translated; empty when there is none
    std::optional<LikeCondition> likes; // of a plain statement whose condition is LIKE alone
    std::vector<OrderTerm> order;
};

// The value that is bound to a parameter of a translated statement.
struct Parameter {
    std::string_view literal;              // points into the statement or into `unquoted`
    std::optional<std::size_t> valueIndex; // of one of the statement's values, if it is one
};

struct Translated {
    std::string sql;
    std::vector<Parameter> parameters; // ?1, ?2, ...
    std::deque<std::string> unquoted;  // literals that contained doubled apostrophes
    Verb verb = Verb::Other;
    bool isRowQuery = false;
    bool hasOpenMarker = false; // a parameter for which the program gave no value
    RowQuery rows;              // when isRowQuery
};

// Translates a plain statement; the result must not outlive `statement`.
Translated TranslateStatement(const Statement &statement);
Translated TranslateStatement(Statement &&) = delete;

// Translates the text of a stored query: its literals stay in it and its parameters are its own.
Translated TranslateStoredQuery(std::string_view statement);

} // namespace catalogue

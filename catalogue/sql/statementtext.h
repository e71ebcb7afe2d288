// catalogue/sql/statementtext.h - turns a statement of the program into one that SQLite takes. Pure
// text work, no state.
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

// "SELECT * FROM MP3s", with or without a condition and an order: its rows can be sorted by their
// numbers, and their columns read late.
struct RowQuery {
    std::string condition;              // translated; empty when there is none
    std::optional<LikeCondition> likes; // the same of a plain statement, where it is LIKE alone
    std::vector<OrderTerm> order;
};

// What a parameter of a translated statement is bound to.
struct Parameter {
    std::string_view literal;              // points into the statement or into `unquoted`
    std::optional<std::size_t> valueIndex; // one of the statement's values instead
};

struct Translated {
    std::string sql;
    std::vector<Parameter> parameters; // ?1, ?2, ...
    std::deque<std::string> unquoted;  // literals that held doubled apostrophes
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

// catalogue/params.h - the kinds of statements and their parameters for ADOclass.
#pragma once

#include "catalogue/recordset.h"

#include <string_view>
#include <variant>
#include <vector>

namespace catalogue
{

// The kinds of statement for ExecuteSQL. kStoredQuery is added to one of the others.
enum StatementKind : int {
    kDetect = -1, // TipoConsulta finds the kind and stores it in the same argument
    kSelect = 1,
    kInsert = 2,
    kDelete = 4,
    kUpdate = 8,
    kOther = 16,
    kStoredQuery = 32,
    kStoredSelect = kStoredQuery + kSelect, // 33
    kStoredInsert = kStoredQuery + kInsert, // 34
    kStoredUpdate = kStoredQuery + kUpdate, // 40
};

// The parameters of a statement: none, one value, or an array of values from index 0.
using Params = std::variant<std::monostate, Value, std::vector<Value>>;

// The second parameter of "SEL_ByPath" when nothing is excluded: no path contains this character.
inline constexpr std::string_view kNoExclusion = "·";

// What happens to a marker when there is no value left for it: it stays in the statement, which
// then fails, or it becomes the empty text.
enum class LeftOver { Stays, IsEmpty };

// The text in a statement that is replaced by a parameter.
struct Marker {
    Marker(const char *words) : text(words) {} // NOLINT(google-explicit-constructor)
    Marker(std::string_view words,
           LeftOver rest = LeftOver::Stays) // NOLINT(google-explicit-constructor)
        : text(words), leftOver(rest)
    {
    }

    std::string_view text;
    LeftOver leftOver = LeftOver::Stays;
};

// The type of a value in a statement. The numbers are those of the first version: do not renumber.
enum class DatoType : int { Number = 5, Date = 7, Text = 8, Flag = 11 };

} // namespace catalogue

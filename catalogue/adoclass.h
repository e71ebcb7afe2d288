// catalogue/adoclass.h - the program's only road to the catalogue: runs statements and stored
// queries, and tells failure by two public members instead of exceptions. Texts are UTF-8.
#pragma once

#include "catalogue/recordset.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace catalogue
{

class Connection; // catalogue/provider.h

// The kinds of statement that ExecuteSQL takes. kStoredQuery is added to one of the others.
enum StatementKind : int {
    kDetect = -1, // by TipoConsulta; the detected kind comes back in the same argument
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

// What ExecuteSQL hands back: nothing, the result set, whether it succeeded, or a field count.
using Outcome = std::variant<std::monostate, RecordsetPtr, bool, int>;

// The result set in `outcome`; null when it holds something else.
RecordsetPtr Records(const Outcome &outcome);

} // namespace catalogue

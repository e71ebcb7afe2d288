// catalogue/provider.h - what ADOclass asks of a database engine; the engines are in
// catalogue/engines.h.
#pragma once

#include "catalogue/recordset.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace catalogue
{

// The code of the generic failure: at connect it says that the file is absent, empty, no database,
// shorter than it should be, or damaged in its first page.
inline constexpr std::uint32_t kGenericFailure = 0x80004005;
// Any other failure of the engine, and a connection string that names none.
inline constexpr std::uint32_t kStatementFailure = 0x80040E14;
inline constexpr std::uint32_t kNoProvider = 0x800A0E7A;

// A failure of the provider. ADOclass alone catches it.
struct ProviderFailure : std::exception {
    ProviderFailure(std::uint32_t failureCode, std::string words)
        : code(failureCode), description(std::move(words))
    {
    }
    const char *what() const noexcept override { return description.c_str(); }

    std::uint32_t code;
    std::string description; // UTF-8
};

// A value in a plain statement: it takes the place of the `kValuePlace` that begins at the byte
// `place` of the statement's text, and is data, whatever it holds.
struct PlacedValue {
    std::size_t place = 0;
    Value value;
};
inline constexpr std::string_view kValuePlace = "? ";

// A plain statement with its values, in the order of their places. Made by SubstituteParams; one
// without values from its words.
struct Statement {
    Statement() = default;
    explicit Statement(std::string_view words) : text(words) {}

    std::string text;
    std::vector<PlacedValue> values;
};

// One connection. Every operation throws ProviderFailure when it fails.
class Connection
{
public:
    virtual ~Connection() = default;

    // Whether statements belong to the RowStep under way (catalogue/rowgroups.h): they run in its
    // group of rows. The statements of any other connection close that group first.
    bool joinsGroup = false;

    [[nodiscard]] virtual bool IsOpen() const = 0;
    virtual void Close() = 0;

    // Runs one plain statement; its texts and values may hold any bytes. Returns an open result
    // when the statement gives columns, else a closed one.
    virtual RecordsetPtr Run(const Statement &statement) = 0;

    // Runs the stored query of that name (without regard to letter case) with its parameters.
    virtual RecordsetPtr RunStored(std::string_view name, const std::vector<Value> &values) = 0;

    // Reads ahead, for about `budgetMs`, what makes the next search for words fast.
    // Returns: whether there is more to read.
    virtual bool ReadAheadForSearches(std::int64_t /*budgetMs*/) { return false; }

    // From Begin on, other processes wait with their writes.
    virtual void Begin() = 0;
    virtual void Commit() = 0;
    virtual void RollBack() = 0;
};

// Opens a connection to one database. Errors: ProviderFailure.
using Opener = std::function<std::unique_ptr<Connection>()>;

} // namespace catalogue

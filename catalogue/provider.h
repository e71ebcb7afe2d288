// catalogue/provider.h - the interface of a database engine, used by ADOclass. catalogue/engines.h
// lists the engines.
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

// The code of the generic failure (E_FAIL). When connecting: the file is missing, empty, not a
// database, shorter than it should be, or its first page is damaged.
inline constexpr std::uint32_t kGenericFailure = 0x80004005;
// Any other failure of the engine (DB_E_ERRORSINCOMMAND), and a connection string that names no
// engine (adErrProviderNotFound).
inline constexpr std::uint32_t kStatementFailure = 0x80040E14;
inline constexpr std::uint32_t kNoProvider = 0x800A0E7A;

// A failure of the provider. Only ADOclass catches it.
struct ProviderFailure : std::exception {
    ProviderFailure(std::uint32_t failureCode, std::string words)
        : code(failureCode), description(std::move(words))
    {
    }
    const char *what() const noexcept override { return description.c_str(); }

    std::uint32_t code;
    std::string description; // UTF-8
};

// A value in a plain statement: it replaces the `kValuePlace` at byte `place` of the statement's
// text. It is data, whatever it contains.
struct PlacedValue {
    std::size_t place = 0;
    Value value;
};
inline constexpr std::string_view kValuePlace = "? ";

// A plain statement with its values, in the order of their places. SubstituteParams makes it; one
// without values can be made from its text.
struct Statement {
    Statement() = default;
    explicit Statement(std::string_view words) : text(words) {}

    std::string text;
    std::vector<PlacedValue> values;
};

// One connection. Each operation below fails with ProviderFailure.
class Connection
{
public:
    virtual ~Connection() = default;

    // Whether statements belong to the current RowStep (catalogue/rowgroups.h) and run in its group
    // of rows. A statement of any other connection commits that group first.
    bool joinsGroup = false;

    [[nodiscard]] virtual bool IsOpen() const = 0;
    virtual void Close() = 0;

    // Runs one plain statement; its text and values may contain any bytes. Returns: an open result
    // when the statement has columns, else a closed one.
    virtual RecordsetPtr Run(const Statement &statement) = 0;

    // Runs the stored query of that name (letter case ignored) with its parameters.
    virtual RecordsetPtr RunStored(std::string_view name, const std::vector<Value> &values) = 0;

    // Reads ahead, for about `budgetMs`, what makes the next search for words fast.
    // Returns: whether there is more to read.
    virtual bool ReadAheadForSearches(std::int64_t /*budgetMs*/) { return false; }

    // The coming statements that sort all songs by one of these columns may read them together;
    // without columns none may any more.
    virtual void ShareScan(const std::vector<std::string> & /*columns*/) {}

    // From Begin on, until Commit or RollBack, other processes wait before they write.
    virtual void Begin() = 0;
    virtual void Commit() = 0;
    virtual void RollBack() = 0;
};

// Opens a connection to one database. Errors: ProviderFailure.
using Opener = std::function<std::shared_ptr<Connection>()>;

} // namespace catalogue

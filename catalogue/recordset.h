// catalogue/recordset.h - values of statements and records, and the result of a query, which needs
// no connection.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace catalogue
{

// A calendar date, in a statement between "#" marks.
struct Date {
    std::string text;
};

// A parameter of a statement; the empty variant is the empty text. Texts are UTF-8 and may contain
// NULs.
using Value = std::variant<std::monostate, std::string, bool, std::int64_t, double, Date>;

// The result of a query. It needs no connection, may be used after DataAccess is destroyed, and
// does not change when the tables change later. A closed one has no fields and is at its end.
class Recordset
{
public:
    virtual ~Recordset() = default;

    // False for the result of a failed statement.
    [[nodiscard]] virtual bool IsOpen() const = 0;

    // Whether the position is after the last record (immediately for an empty result).
    [[nodiscard]] virtual bool AtEnd() const = 0;

    // Errors: none; in an empty result both stay at the end.
    virtual void MoveFirst() = 0;
    virtual void MoveNext() = 0;

    [[nodiscard]] virtual std::int64_t RecordCount() const = 0;

    // The one-based number of the current record; 0 at the end.
    [[nodiscard]] virtual std::int64_t Position() const = 0;

    [[nodiscard]] virtual int FieldCount() const = 0;

    // The index of the field, letter case of the name ignored; -1 when there is none. Call it once
    // when reading many records.
    [[nodiscard]] virtual int FindField(std::string_view name) const = 0;

    // The field of the current record as text; null gives the empty text. The view is valid until
    // the position changes or another field is read.
    // Errors (runtime/error.h): kSubscriptOutOfRange for an unknown field, kInvalidCall at the end.
    [[nodiscard]] virtual std::string_view Text(int index) const = 0;
    [[nodiscard]] std::string_view Text(std::string_view name) const
    {
        return Text(FindField(name));
    }

    // Whether the field is null; an empty text is not null. Errors: see Text.
    [[nodiscard]] virtual bool IsNull(int index) const = 0;
};

// Owned by everybody who received the result.
using RecordsetPtr = std::shared_ptr<Recordset>;

} // namespace catalogue

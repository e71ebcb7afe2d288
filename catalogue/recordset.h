// catalogue/recordset.h - values of statements and records, and the disconnected result of a query.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace catalogue
{

// A calendar date as a statement writes it between "#" marks.
struct Date {
    std::string text;
};

// A parameter of a statement; the empty variant is the empty text. Texts are UTF-8 and may hold
// NULs.
using Value = std::variant<std::monostate, std::string, bool, std::int64_t, double, Date>;

// The static result of a query. It needs no connection, outlives DataAccess, and keeps what it had
// when the statement ran, whatever is written later. A closed one has no fields and is at its end.
class Recordset
{
public:
    virtual ~Recordset() = default;

    // False for the result of a failed statement.
    [[nodiscard]] virtual bool IsOpen() const = 0;

    // Whether the position is after the last record (at once for an empty result).
    [[nodiscard]] virtual bool AtEnd() const = 0;

    // Errors: none; on an empty result both stay at the end.
    virtual void MoveFirst() = 0;
    virtual void MoveNext() = 0;

    [[nodiscard]] virtual std::int64_t RecordCount() const = 0;

    // The number of the current record, from 1; 0 at the end.
    [[nodiscard]] virtual std::int64_t Position() const = 0;

    [[nodiscard]] virtual int FieldCount() const = 0;

    // The name of field `index` (from 0) as the table spells it.
    // Errors: kSubscriptOutOfRange (runtime/error.h).
    [[nodiscard]] virtual std::string FieldName(int index) const = 0;

    // The field's index; names compare without regard to case. -1 when there is none. Callers with
    // many records ask once and read by index.
    [[nodiscard]] virtual int FindField(std::string_view name) const = 0;

    // The current record's field as text; a null is the empty text. The view stays valid until the
    // position moves or another field is read.
    // Errors: kSubscriptOutOfRange for an unknown field, kInvalidCall at the end.
    [[nodiscard]] virtual std::string_view Text(int index) const = 0;
    [[nodiscard]] std::string_view Text(std::string_view name) const
    {
        return Text(FindField(name));
    }

    // Whether the field is null, apart from empty. Errors: as Text.
    [[nodiscard]] virtual bool IsNull(int index) const = 0;
};

// Shared by the caller who received the result and, at most, by the copy that ADOclass handed out
// with it; there is no other owner.
using RecordsetPtr = std::shared_ptr<Recordset>;

} // namespace catalogue

// catalogue/rows/rowtable.h - the rows of a result, copied out of the engine: all bytes in one
// block.
#pragma once

#include "catalogue/recordset.h"
#include "catalogue/sqlite/sqlitehandle.h"

#include <string>
#include <vector>

namespace catalogue
{

class RowTable
{
public:
    explicit RowTable(int fields) : m_fields(fields) {}

    // Copies the current row of `statement`: its first columns, as many as the table has.
    void AppendRow(sqlite3_stmt *statement);

    [[nodiscard]] std::int64_t Rows() const { return m_rows; }

    // A field of a row; `row` and `field` count from 0 and must exist. The empty text for a null.
    [[nodiscard]] std::string_view Text(std::int64_t row, int field) const;
    [[nodiscard]] bool IsNull(std::int64_t row, int field) const;

private:
    struct Cell {
        std::size_t offset;
        std::uint32_t length; // the greatest number = null
    };
    [[nodiscard]] const Cell &At(std::int64_t row, int field) const
    {
        return m_cells[static_cast<std::size_t>(row * m_fields + field)];
    }

    int m_fields;
    std::int64_t m_rows = 0;
    std::string m_bytes;
    std::vector<Cell> m_cells;
};

// The common part of all open results: fields and position.
class RecordsetBase : public Recordset
{
public:
    explicit RecordsetBase(ColumnNames columns);

    bool IsOpen() const override { return true; }
    bool AtEnd() const override { return m_position >= RecordCount(); }
    void MoveFirst() override { m_position = 0; }
    void MoveNext() override
    {
        if (!AtEnd())
            ++m_position;
    }
    std::int64_t Position() const override { return AtEnd() ? 0 : m_position + 1; }
    int FieldCount() const override { return static_cast<int>(m_columns->size()); }
    int FindField(std::string_view name) const override;

protected:
    // Throws the errors of Text.
    void CheckField(int index) const;

    ColumnNames m_columns;
    std::int64_t m_position = 0; // from 0
};

// A result that holds all its rows.
class CopiedRecordset : public RecordsetBase
{
public:
    CopiedRecordset(ColumnNames columns, RowTable table)
        : RecordsetBase(std::move(columns)), m_table(std::move(table))
    {
    }

    std::int64_t RecordCount() const override { return m_table.Rows(); }
    std::string_view Text(int index) const override;
    bool IsNull(int index) const override;

private:
    RowTable m_table;
};

// The result of a statement that failed or gives no rows.
RecordsetPtr MakeClosedRecordset();

} // namespace catalogue

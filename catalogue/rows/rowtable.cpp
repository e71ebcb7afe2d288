#include "catalogue/rows/rowtable.h"

#include "runtime/error.h"
#include "runtime/text.h"

#include <limits>

namespace catalogue
{

namespace
{

constexpr std::uint32_t kNullLength = std::numeric_limits<std::uint32_t>::max();

// A result without a connection and without fields.
class ClosedRecordset : public Recordset
{
public:
    bool IsOpen() const override { return false; }
    bool AtEnd() const override { return true; }
    void MoveFirst() override {}
    void MoveNext() override {}
    std::int64_t RecordCount() const override { return 0; }
    std::int64_t Position() const override { return 0; }
    int FieldCount() const override { return 0; }
    int FindField(std::string_view) const override { return -1; }
    std::string_view Text(int) const override
    {
        throw runtime::RuntimeError(runtime::kSubscriptOutOfRange);
    }
    bool IsNull(int) const override { throw runtime::RuntimeError(runtime::kSubscriptOutOfRange); }
};

} // namespace

void RowTable::AppendRow(sqlite3_stmt *statement)
{
    if (m_rows == 0) { // many results have only one row
        std::size_t bytes = 0;
        for (int i = 0; i < m_fields; ++i)
            bytes += static_cast<std::size_t>(sqlite3_column_bytes(statement, i));
        m_bytes.reserve(bytes);
        m_cells.reserve(static_cast<std::size_t>(m_fields));
    }
    for (int i = 0; i < m_fields; ++i) {
        if (sqlite3_column_type(statement, i) == SQLITE_NULL) {
            m_cells.push_back({m_bytes.size(), kNullLength});
            continue;
        }
        const auto text = ColumnText(statement, i);
        m_cells.push_back({m_bytes.size(), static_cast<std::uint32_t>(text.size())});
        m_bytes.append(text);
    }
    ++m_rows;
}

std::string_view RowTable::Text(std::int64_t row, int field) const
{
    const Cell &cell = At(row, field);
    return cell.length == kNullLength ? std::string_view{}
                                      : std::string_view(m_bytes).substr(cell.offset, cell.length);
}

bool RowTable::IsNull(std::int64_t row, int field) const
{
    return At(row, field).length == kNullLength;
}

RecordsetBase::RecordsetBase(ColumnNames columns) : m_columns(std::move(columns)) {}

int RecordsetBase::FindField(std::string_view name) const
{
    for (std::size_t i = 0; i < m_columns->size(); ++i)
        if (runtime::EqualAscii((*m_columns)[i], name))
            return static_cast<int>(i);
    return -1;
}

void RecordsetBase::CheckField(int index) const
{
    if (index < 0 || index >= FieldCount())
        throw runtime::RuntimeError(runtime::kSubscriptOutOfRange);
    if (AtEnd())
        throw runtime::RuntimeError(runtime::kInvalidCall);
}

std::string_view CopiedRecordset::Text(int index) const
{
    CheckField(index);
    return m_table.Text(m_position, index);
}

bool CopiedRecordset::IsNull(int index) const
{
    CheckField(index);
    return m_table.IsNull(m_position, index);
}

RecordsetPtr MakeClosedRecordset()
{
    static const RecordsetPtr closed = std::make_shared<ClosedRecordset>(); // it has no state
    return closed;
}

} // namespace catalogue

#include "tests/support/freshcatalogue.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tests
{

using namespace catalogue;

std::string ShippedCatalogue()
{
    return QUENLIN_SHIPPED_CATALOGUE;
}

FreshCatalogue::FreshCatalogue()
{
    std::filesystem::copy_file(ShippedCatalogue(), File());
    LeadHere(access);
    access.TableName = "MP3s";
}

void FreshCatalogue::LeadHere(ADOclass &other) const
{
    other.TipoLectura = 1;
    other.DirBase = folder.Path() + "/";
    other.DataBaseName = "MP3s";
}

FreshCatalogue::~FreshCatalogue()
{
    CloseCatalogue();
}

std::vector<std::string> RowsOf(Recordset &records)
{
    std::vector<std::string> rows;
    for (; !records.AtEnd(); records.MoveNext()) {
        std::string row;
        for (int i = 0; i < records.FieldCount(); ++i) {
            row += i > 0 ? "|" : "";
            row += records.IsNull(i) ? std::string_view("NULL") : records.Text(i);
        }
        rows.push_back(row);
    }
    return rows;
}

std::vector<std::string> Column(Recordset &records, std::string_view name)
{
    std::vector<std::string> values;
    for (records.MoveFirst(); !records.AtEnd(); records.MoveNext())
        values.emplace_back(records.Text(name));
    return values;
}

std::vector<std::string> FreshCatalogue::Rows(const std::string &statement)
{
    const auto records = Records(access.ExecuteSQL(statement, kSelect));
    EXPECT_TRUE(access.Succeeded) << access.ErrorMessage;
    return RowsOf(*records);
}

std::vector<std::string> FreshCatalogue::Stored(const std::string &name, const Params &params)
{
    const auto records = Records(access.ExecuteSQL(name, kStoredSelect, params));
    EXPECT_TRUE(access.Succeeded) << access.ErrorMessage;
    return RowsOf(*records);
}

void FreshCatalogue::Add(const std::array<std::string, 8> &fields, std::int64_t duplicated)
{
    std::vector<Value> values(fields.begin(), fields.end());
    values.emplace_back(duplicated);
    access.ExecuteSQL("AddMP3", kStoredInsert, values);
    EXPECT_TRUE(access.Succeeded) << access.ErrorMessage;
}

std::string FreshCatalogue::Paths(const std::string &condition)
{
    std::string paths;
    const auto records =
        Records(access.ExecuteSQL("SELECT * FROM MP3s WHERE " + condition, kSelect));
    EXPECT_TRUE(access.Succeeded) << access.ErrorMessage;
    for (; !records->AtEnd(); records->MoveNext())
        paths += std::string(records->Text("Path")) + " ";
    return paths;
}

void FreshCatalogue::AddInStep(const std::string &path, const std::string &title)
{
    RowStep step(access);
    ADOclass &own = step.Access();
    const std::vector<Value> byPath{path, std::string(kNoExclusion)};
    const auto known = Records(own.ExecuteSQL("SEL_ByPath", kStoredSelect, byPath));
    EXPECT_TRUE(own.Succeeded) << own.ErrorMessage;
    if (!known->AtEnd())
        return;
    std::vector<Value> values(8, std::string());
    values.front() = title;
    values.back() = path;
    values.emplace_back(std::int64_t{0});
    own.ExecuteSQL("AddMP3", kStoredInsert, values);
    EXPECT_TRUE(own.Succeeded) << own.ErrorMessage;
}

void FreshCatalogue::AddPath(const std::string &path, const std::string &title)
{
    Add({title, "", "", "", "", "", "", path});
}

} // namespace tests

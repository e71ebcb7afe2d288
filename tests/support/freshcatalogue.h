// tests/support/freshcatalogue.h - the catalogue as it ships in a new folder, and ways to fill and
// read it, for tests of the engine. Tests of what uses the program's catalogue have LibraryFixture.
#pragma once

#include "catalogue/adoclass.h"
#include "catalogue/rowgroups.h"
#include "tests/support/testfolder.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace tests
{

// A copy of the shipped catalogue in a new folder, and a data access object for it.
struct FreshCatalogue {
    FreshCatalogue();
    ~FreshCatalogue();

    TestFolder folder;
    catalogue::ADOclass access;

    // Sets the connection of another object to the same catalogue.
    void LeadHere(catalogue::ADOclass &other) const;

    [[nodiscard]] std::string File() const { return folder / "MP3s.mdb"; }

    // The statement's rows, their fields joined by "|", nulls as "NULL". Fails the test when it
    // fails.
    std::vector<std::string> Rows(const std::string &statement);

    // The paths of the songs for which a condition holds, with a blank after each.
    std::string Paths(const std::string &condition);

    // The same as Rows for a stored query.
    std::vector<std::string> Stored(const std::string &name, const catalogue::Params &params);

    // Adds a row of which only title and path matter, unless the path is known, as one step.
    void AddInStep(const std::string &path, const std::string &title = "t");

    // Adds a row: Title, Artist, Album, Year, Comment, Genre, Lyrics, Path, and Duplicated.
    void Add(const std::array<std::string, 8> &fields, std::int64_t duplicated = 0);

    // Adds a row of which only title and path matter.
    void AddPath(const std::string &path, const std::string &title = "t");
};

// The fields of `records` from its position to its end, as FreshCatalogue::Rows.
std::vector<std::string> RowsOf(catalogue::Recordset &records);

// The path of the catalogue as it ships.
std::string ShippedCatalogue();

// The values of one field.
std::vector<std::string> Column(catalogue::Recordset &records, std::string_view name);

} // namespace tests

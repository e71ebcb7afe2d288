#include "tests/support/libraryfixture.h"

#include "catalogue/adoclass.h"
#include "catalogue/regeneration.h"
#include "catalogue/regeneration/walker.h"
#include "catalogue/rowgroups.h"
#include "metadata/mp3info.h"
#include "runtime/text.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "tests/support/freshcatalogue.h"

#include <sqlite3.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace tests
{

LibraryFixture::LibraryFixture() : m_music(folder / "music"), m_appPathBefore(shell::GetAppPath())
{
    fs::create_directories(m_music);
    fs::create_directories(folder / "app");
    fs::copy_file(ShippedCatalogue(), folder / "app/MP3s.mdb");
    shell::SetAppPath(folder / "app");
    shell::TheGlobals() = shell::Globals();
    shell::TheGlobals().MP3Directory = m_music;
    metadata::ResetMP3Info();
    catalogue::Dirs().Clear();
    catalogue::TheRegenerationControls() = {};
    OpenCatalogue();
}

void LibraryFixture::OpenCatalogue() const
{
    catalogue::DataAccess = std::make_unique<catalogue::ADOclass>();
    catalogue::DataAccess->DirBase = folder / "app/";
    catalogue::DataAccess->DataBaseName = "MP3s";
    catalogue::DataAccess->TableName = "MP3s";
    catalogue::DataAccess->TipoLectura = 1;
}

LibraryFixture::~LibraryFixture()
{
    catalogue::DataAccess.reset();
    catalogue::CloseCatalogue();
    catalogue::TheRegenerationControls() = {};
    catalogue::Dirs().Clear();
    shell::SetAppPath(m_appPathBefore);
    shell::TheGlobals() = shell::Globals();
}

void LibraryFixture::RunOutside(const std::string &sql) const
{
    sqlite3 *db = nullptr;
    ASSERT_EQ(sqlite3_open((folder / "app/MP3s.mdb").c_str(), &db), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(db);
    sqlite3_close(db);
}

std::vector<std::string> LibraryFixture::Rows() const
{
    const catalogue::RecordsetPtr records = catalogue::Records(
        catalogue::DataAccess->ExecuteSQL("SELECT * FROM MP3s ORDER BY rowid", catalogue::kSelect));
    std::vector<std::string> rows;
    for (; records != nullptr && !records->AtEnd(); records->MoveNext()) {
        std::string row;
        for (int field = 0; field < records->FieldCount(); field++)
            row.append(field == 0 ? "" : "|").append(records->Text(field));
        rows.push_back(runtime::Replace(row, m_music, "~"));
    }
    EXPECT_TRUE(catalogue::DataAccess->Succeeded) << catalogue::DataAccess->ErrorMessage;
    return rows;
}

} // namespace tests

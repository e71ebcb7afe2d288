#include "catalogue/provider.h"
#include "catalogue/sqlite/sqlitefile.h"
#include "tests/support/asnobody.h"
#include "tests/support/freshcatalogue.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <filesystem>

using namespace catalogue;
using namespace std::string_literals;
namespace fs = std::filesystem;

namespace
{

constexpr std::ptrdiff_t kPageBytes = 8192; // of the catalogue as it ships

constexpr const char *kNotValid = "Not ValidDataBase";

// The error of a statement on the file, and whether the file was changed.
std::string Verdict(tests::FreshCatalogue &fresh)
{
    CloseCatalogue();
    const bool isFile = fs::is_regular_file(fresh.File());
    const auto before = isFile ? tests::ReadFile(fresh.File()) : "";
    const auto outcome = fresh.access.ExecuteSQL("SELECT * FROM Validations", kDetect);
    EXPECT_EQ(Records(outcome)->IsOpen(), fresh.access.Succeeded);
    const auto message = fresh.access.ErrorMessage;
    CloseCatalogue();
    EXPECT_EQ(fs::is_regular_file(fresh.File()), isFile) << "never created";
    if (isFile) {
        EXPECT_TRUE(tests::ReadFile(fresh.File()) == before) << "never written to";
    }
    return message;
}

void FillRows(tests::FreshCatalogue &fresh, int rows)
{
    RowGroups groups;
    for (int i = 0; i < rows; ++i)
        fresh.AddInStep("/" + std::to_string(i), std::string(800, 't'));
}

// The stock engine on the same file, as another tool uses it.
struct OtherTool {
    explicit OtherTool(const std::string &file) { sqlite3_open(file.c_str(), &db); }
    ~OtherTool() { sqlite3_close(db); }
    OtherTool(const OtherTool &) = delete;
    OtherTool &operator=(const OtherTool &) = delete;

    void Run(const char *sql) const
    {
        EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(db);
    }
    sqlite3 *db = nullptr;
};

// Whether the header of the file says that it has a log: the versions in its bytes 18 and 19
// (SQLite's file format, "The Database Header").
bool SaysItKeepsALog(const std::string &file)
{
    return tests::ReadFile(file).substr(18, 2) == "\2\2";
}

} // namespace

TEST(Connect, WhatIsNoCatalogue)
{
    const struct {
        const char *name;
        void (*spoil)(const std::string &file);
    } cases[] = {
        {"absent", [](const std::string &file) { fs::remove(file); }},
        {"empty", [](const std::string &file) { tests::WriteFile(file, ""); }},
        {"a byte", [](const std::string &file) { tests::WriteFile(file, "S"); }},
        {"some text",
         [](const std::string &file) { tests::WriteFile(file, std::string(9000, 'x')); }},
        {"magic alone",
         [](const std::string &file) { tests::WriteFile(file, "SQLite format 3\0"s); }},
        {"a folder",
         [](const std::string &file) {
             fs::remove(file);
             fs::create_directory(file);
         }},
        {"a FIFO",
         [](const std::string &file) {
             fs::remove(file);
             mkfifo(file.c_str(), 0600);
         }},
        {"texts in UTF-16",
         [](const std::string &file) {
             auto bytes = tests::ReadFile(file);
             bytes[59] = '\2';
             tests::WriteFile(file, bytes);
         }},
        {"wiped header page",
         [](const std::string &file) {
             auto bytes = tests::ReadFile(file);
             std::fill_n(bytes.begin(), kPageBytes, '\0');
             tests::WriteFile(file, bytes);
         }},
        {"first page wiped behind the header",
         [](const std::string &file) {
             auto bytes = tests::ReadFile(file);
             std::fill_n(bytes.begin() + 100, 3996, '\0');
             tests::WriteFile(file, bytes);
         }},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        tests::FreshCatalogue fresh;
        c.spoil(fresh.File());
        EXPECT_EQ(Verdict(fresh), kNotValid);
        fresh.access.ExecuteSQL("SEL_ByTitle", kStoredSelect, Value("x"s));
        EXPECT_FALSE(fresh.access.Succeeded);
        EXPECT_EQ(fresh.access.ErrorMessage.substr(0, 7), "Error: ") << "the stored path says so";
    }
}

TEST(Connect, CutAnywhere)
{
    tests::FreshCatalogue fresh;
    FillRows(fresh, 30);
    CloseCatalogue();
    const auto whole = tests::ReadFile(fresh.File());
    EXPECT_EQ(Verdict(fresh), "");
    for (std::size_t size = 0; size < whole.size(); size += size < 200 ? 7 : 1777) {
        SCOPED_TRACE(size);
        tests::WriteFile(fresh.File(), whole.substr(0, size));
        EXPECT_EQ(Verdict(fresh), kNotValid);
    }
    tests::WriteFile(fresh.File(), whole.substr(0, whole.size() - 1));
    EXPECT_EQ(Verdict(fresh), kNotValid);
    tests::WriteFile(fresh.File(), whole);
    EXPECT_EQ(Verdict(fresh), "");
}

TEST(Connect, DamageWhileTheProgramRuns)
{
    tests::FreshCatalogue fresh;
    EXPECT_EQ(fresh.Rows("SELECT Version FROM Validations").size(), 1u);
    fs::rename(fresh.File(), fresh.folder / "away");
    fresh.access.ExecuteSQL("SELECT * FROM Lists", kSelect);
    EXPECT_EQ(fresh.access.ErrorMessage, kNotValid);
    fs::copy_file(tests::ShippedCatalogue(), fresh.File());
    fresh.AddPath("/new");
    EXPECT_EQ(fresh.Rows("SELECT Path FROM MP3s"), std::vector<std::string>{"/new"});
    tests::WriteFile(fresh.File(), "wiped");
    fresh.access.ExecuteSQL("SELECT * FROM Lists", kSelect);
    EXPECT_EQ(fresh.access.ErrorMessage, kNotValid);
    CloseCatalogue();
    EXPECT_EQ(tests::ReadFile(fresh.File()), "wiped");
}

TEST(Connect, DamageDeeperInsideIsReportedByItsStatement)
{
    tests::FreshCatalogue fresh;
    FillRows(fresh, 200);
    CloseCatalogue();
    auto bytes = tests::ReadFile(fresh.File());
    std::fill(bytes.end() - 20 * kPageBytes, bytes.end(), '\xAA');
    tests::WriteFile(fresh.File(), bytes);
    EXPECT_EQ(Verdict(fresh), "");
    fresh.access.ExecuteSQL("SELECT * FROM MP3s WHERE Title LIKE '%x%'", kSelect);
    EXPECT_FALSE(fresh.access.Succeeded);
    EXPECT_EQ(fresh.access.ErrorMessage.substr(0, 7), "Error: ");
}

TEST(Connect, OtherFailuresAreNotTheGenericOne)
{
    tests::FreshCatalogue fresh;
    fs::remove(fresh.File());
    // A database of another program: the table is missing.
    fs::copy_file(tests::ShippedCatalogue(), fresh.File());
    EXPECT_EQ(Verdict(fresh), "");
    fresh.access.ExecuteSQL("SELECT * FROM Nowhere", kSelect);
    EXPECT_NE(fresh.access.ErrorMessage, kNotValid);
    CloseCatalogue();
    fs::permissions(fresh.folder.Path(), fs::perms::all);
    fs::permissions(fresh.File(), fs::perms::none);
    const tests::AsNobody nobody; // root may read everything
    fresh.access.ExecuteSQL("SELECT * FROM Validations", kDetect);
    EXPECT_FALSE(fresh.access.Succeeded);
    EXPECT_NE(fresh.access.ErrorMessage, kNotValid);
}

TEST(Connect, OddFolderNames)
{
    for (const std::string name : {"a;b", "it's", "x=y;Provider=z", "50%?", "\xFF",
                                   "file:x?mode=ro", ";Persist Security Info=False"}) {
        SCOPED_TRACE(name);
        tests::FreshCatalogue fresh;
        fs::create_directory(fresh.folder / name);
        fs::copy_file(fresh.File(), fresh.folder / (name + "/MP3s.mdb"));
        fresh.access.DirBase = fresh.folder / (name + "/");
        fresh.AddPath("/1");
        CloseCatalogue();
        EXPECT_EQ(fresh.Rows("SELECT Path FROM MP3s"), std::vector<std::string>{"/1"});
    }
}

TEST(Connect, TheLastObjectLeavesTheFileAlone)
{
    const tests::TestFolder folder;
    fs::copy_file(tests::ShippedCatalogue(), folder / "MP3s.mdb");
    {
        std::vector<std::unique_ptr<ADOclass>> objects;
        for (int i = 0; i < 2; ++i) {
            auto &access = *objects.emplace_back(std::make_unique<ADOclass>());
            access.TipoLectura = 1;
            access.DirBase = folder.Path() + "/";
            access.DataBaseName = "MP3s";
            access.ExecuteSQL("INSERT INTO Lists VALUES('a', 'b')", kInsert);
        }
        objects.pop_back();
        EXPECT_TRUE(fs::exists(folder / "MP3s.mdb-wal")) << "warm for the object that is left";
    }
    EXPECT_FALSE(fs::exists(folder / "MP3s.mdb-wal"));
}

TEST(Connect, ReadsAFileWhoseLogWasLeft)
{
    // A copy of file and log while both are in use is what a killed process leaves.
    tests::FreshCatalogue fresh;
    FillRows(fresh, 100);
    tests::FreshCatalogue left;
    for (const char *end : {"", "-wal"})
        fs::copy_file(fresh.File() + end, left.File() + end, fs::copy_options::overwrite_existing);
    EXPECT_EQ(left.Rows("SELECT count(*) FROM MP3s"), std::vector<std::string>{"100"});
    CloseCatalogue();
    EXPECT_FALSE(fs::exists(left.File() + "-wal"));
    EXPECT_EQ(left.Rows("SELECT count(*) FROM MP3s"), std::vector<std::string>{"100"});
}

TEST(Connect, KilledWhileTheLogWentIntoTheFile)
{
    // The first page has the new size already; the pages after it are only in the log.
    tests::FreshCatalogue fresh;
    FillRows(fresh, 100);
    tests::FreshCatalogue left;
    const auto log = tests::ReadFile(fresh.File() + "-wal");
    CloseCatalogue();
    const auto whole = tests::ReadFile(fresh.File());
    tests::WriteFile(left.File(), whole.substr(0, 8 * kPageBytes));
    tests::WriteFile(left.File() + "-wal", log);
    EXPECT_EQ(left.Rows("SELECT count(*) FROM MP3s"), std::vector<std::string>{"100"});
    CloseCatalogue();
    fs::remove(left.File() + "-wal");
    tests::WriteFile(left.File(), whole.substr(0, 8 * kPageBytes));
    EXPECT_EQ(Verdict(left), kNotValid) << "without the log it is cut short";
}

TEST(Connect, CopyWithoutALogGetsItBack)
{
    tests::FreshCatalogue fresh;
    FillRows(fresh, 100);
    CloseCatalogue();
    OtherTool(fresh.File()).Run("PRAGMA journal_mode=DELETE");
    ASSERT_FALSE(SaysItKeepsALog(fresh.File()));
    EXPECT_EQ(fresh.Rows("SELECT count(*) FROM MP3s"), std::vector<std::string>{"100"});
    fresh.AddPath("/101");
    CloseCatalogue();
    EXPECT_TRUE(SaysItKeepsALog(fresh.File()));
    EXPECT_EQ(fresh.Rows("SELECT count(*) FROM MP3s"), std::vector<std::string>{"101"});
}

TEST(Connect, CopyWithoutALogServesWhileAnotherReadsIt)
{
    tests::FreshCatalogue fresh;
    FillRows(fresh, 100);
    CloseCatalogue();
    {
        const OtherTool reader(fresh.File());
        reader.Run("PRAGMA journal_mode=DELETE");
        reader.Run("BEGIN; SELECT count(*) FROM MP3s");
        EXPECT_EQ(fresh.Rows("SELECT count(*) FROM MP3s"), std::vector<std::string>{"100"});
        const auto held =
            Records(fresh.access.ExecuteSQL("SELECT * FROM MP3s ORDER BY Title", kSelect));
        EXPECT_EQ(held->RecordCount(), 100);
        reader.Run("COMMIT");
        EXPECT_FALSE(SaysItKeepsALog(fresh.File())) << "it was in use, and stays as it is";
        fresh.AddPath("/101");
    }
    CloseCatalogue();
    EXPECT_EQ(fresh.Rows("SELECT count(*) FROM MP3s"), std::vector<std::string>{"101"});
}

TEST(IsCutShort, PagesThatTheLogHolds)
{
    constexpr std::uint32_t kPage = 512;
    const auto number = [](std::uint32_t value) {
        std::string bytes;
        for (const int shift : {24, 16, 8, 0})
            bytes += static_cast<char>(value >> shift & 0xFF);
        return bytes;
    };
    const std::string salt = "saltsalt", stale = "SALTSALT";
    const auto frame = [&](std::uint32_t page, std::uint32_t pagesAfter, const std::string &mark) {
        return number(page) + number(pagesAfter) + mark + number(0) + number(0) +
               std::string(kPage, 'p');
    };
    const std::string head = number(0x377F0682) + number(3007000) + number(kPage) + number(0) +
                             salt + number(0) + number(0);
    std::string header(100, '\0'); // page size at 16, change counter at 24 and 92, pages at 28
    header.replace(16, 2, "\2\0"s);
    header.replace(28, 4, number(3));
    std::string unsure = header; // the counters differ, so the number of pages may be wrong
    unsure.replace(92, 4, number(7));
    const struct {
        const char *name;
        std::string header, log;
        std::int64_t pages;
        bool want;
    } cases[] = {
        {"whole", header, "", 3, false},
        {"longer", header, "", 4, false},
        {"one short", header, "", 2, true},
        {"half a page short", header, "", 3 * 512 - 1, true},
        {"the page in the log", header, head + frame(3, 3, salt), 2, false},
        {"another page in the log", header, head + frame(2, 3, salt), 2, true},
        {"frame of an earlier log", header, head + frame(3, 3, stale), 2, true},
        {"frame of no whole transaction", header, head + frame(3, 0, salt), 2, true},
        {"whole, then a beginning", header, head + frame(3, 3, salt) + frame(2, 0, salt), 2, false},
        {"the log made it shorter", header, head + frame(1, 2, salt), 2, false},
        {"counter not to be trusted", unsure, "", 2, false},
        {"nothing at all", unsure, "", 0, true},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const tests::TestFolder folder;
        if (!c.log.empty())
            tests::WriteFile(folder / "x-wal", c.log);
        const auto size = c.pages > 100 ? c.pages : c.pages * kPage;
        EXPECT_EQ(IsCutShort(c.header, size, folder / "x"), c.want);
    }
}

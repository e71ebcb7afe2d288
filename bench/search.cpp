// search_bench CATALOGUE FOLDER [judge] - the time of a search in all eight fields, in a copy of
// the catalogue: the statement before and after the texts were read ahead, directly after another
// connection has written, the engine's own LIKE, and a search for the bytes in a copy of the same
// texts in memory; and filling a list with all rows. Prints the number of rows with the times. The
// exit status is 1 when rows differ, and with "judge" also when a limit is exceeded.
#include "bench/figures.h"
#include "bench/opencopy.h"
#include "bench/timing.h"
#include "browser/itemlist.h"
#include "runtime/text.h"
#include "runtime/utf8.h"
#include "search/criteria.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace
{

using bench::MedianMs;
using bench::Stopwatch;

constexpr double kStatementMs = 50, kFillMs = 400, kMemoryMiB = 100;
constexpr std::int64_t kSliceMs = 10;
constexpr int kRounds = 7, kWrites = 5;

bool failed = false, judged = false;

void Report(const std::string &what, double value, const char *unit, double limit)
{
    failed |= bench::PrintFigure(what, value, unit, limit, judged);
}

catalogue::RecordsetPtr Search(const std::string &text)
{
    search::Criteria criteria;
    criteria.text = text;
    criteria.ticked.fill(true);
    const search::Search made = search::BuildSearch(criteria);
    return catalogue::Records(
        catalogue::ExecuteWithValues(made.statement, catalogue::kSelect, made.params));
}

// The rows that SQLite's own LIKE finds.
std::int64_t EngineRows(const std::string &file, const std::string &text)
{
    sqlite3 *db = nullptr;
    sqlite3_open(file.c_str(), &db);
    std::string sql = "SELECT rowid FROM MP3s WHERE ";
    for (const std::string_view field : search::kFields)
        sql.append(field).append(" LIKE ?1 OR ");
    sql.resize(sql.size() - 4);
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr);
    const std::string pattern = "%" + text + "%";
    sqlite3_bind_text(statement, 1, pattern.c_str(), -1, SQLITE_STATIC);
    std::int64_t rows = 0;
    while (sqlite3_step(statement) == SQLITE_ROW)
        ++rows;
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return rows;
}

// All texts of the eight fields in upper case.
std::string DumpOf(const std::string &file)
{
    sqlite3 *db = nullptr;
    sqlite3_open(file.c_str(), &db);
    std::string sql = "SELECT ";
    for (const std::string_view field : search::kFields)
        sql.append(field).append(", ");
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v2(db, (sql + "rowid FROM MP3s").c_str(), -1, &statement, nullptr);
    std::string dump;
    while (sqlite3_step(statement) == SQLITE_ROW)
        for (int i = 0; i < static_cast<int>(search::kFields.size()); ++i)
            if (const auto *text = sqlite3_column_text(statement, i); text != nullptr) {
                runtime::AppendUpperText(reinterpret_cast<const char *>(text), dump);
                dump += '\0';
            }
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return dump;
}

std::size_t TimesIn(const std::string &dump, const std::string &upper)
{
    std::size_t times = 0;
    for (const char *at = dump.data(), *end = at + dump.size();
         (at = static_cast<const char *>(memmem(at, static_cast<std::size_t>(end - at),
                                                upper.data(), upper.size()))) != nullptr;
         at += upper.size())
        ++times;
    return times;
}

void ReadAhead()
{
    const Stopwatch watch;
    int slices = 1;
    double longest = 0;
    for (bool more = true; more; ++slices) {
        const Stopwatch slice;
        more = catalogue::DataAccess->ReadAheadForSearches(kSliceMs);
        longest = std::max(longest, slice.Ms());
    }
    std::printf("texts read ahead in %.1f ms, %d slices, the longest %.1f ms\n", watch.Ms(), slices,
                longest);
}

// The words: one in most lyrics, one in no row, one in titles, and two with letters outside ASCII.
const std::vector<std::string> kWords = {"love", "xylophone", "SuMmEr",
                                         "\u043E\u0440\u043B\u043E\u0412", "DUFR\u00CANE"};

std::vector<std::int64_t> ReportTimes(const char *when)
{
    std::vector<std::int64_t> rows;
    double slowest = 0;
    for (const std::string &word : kWords) {
        std::int64_t found = 0;
        const double ms = MedianMs(kRounds, [&] { found = Search(word)->RecordCount(); });
        std::printf("    %-10s %7lld rows %7.1f ms\n", word.c_str(), static_cast<long long>(found),
                    ms);
        slowest = std::max(slowest, ms);
        rows.push_back(found);
    }
    Report("statement, " + std::string(when), slowest, "ms", kStatementMs);
    return rows;
}

void ReportFloors(const std::string &file, const std::vector<std::int64_t> &rows)
{
    const std::string dump = DumpOf(file);
    double slowestEngine = 0, slowestBytes = 0;
    for (std::size_t i = 0; i < kWords.size(); ++i) {
        std::int64_t engine = 0;
        std::size_t times = 0;
        slowestEngine = std::max(slowestEngine,
                                 MedianMs(kRounds, [&] { engine = EngineRows(file, kWords[i]); }));
        const std::string upper = runtime::UpperText(kWords[i]);
        slowestBytes =
            std::max(slowestBytes, MedianMs(kRounds, [&] { times = TimesIn(dump, upper); }));
        const bool isAscii = runtime::IsAscii(kWords[i]); // SQLite has no letter case for others
        if ((isAscii && engine != rows[i]) || (times == 0) != (rows[i] == 0)) {
            std::printf("%s: %lld rows, the engine %lld, %zu times in the dump\n",
                        kWords[i].c_str(), static_cast<long long>(rows[i]),
                        static_cast<long long>(engine), times);
            failed = true;
        }
    }
    std::printf("%-44s %8.1f ms\n%-44s %8.1f ms (%.1f MB)\n", "the engine's own LIKE",
                slowestEngine, "a byte search over a dump in memory", slowestBytes,
                static_cast<double>(dump.size()) / 1e6);
}

// Another connection adds a row, which the next search must find; several times.
void ReportAfterWrites(const std::string &file)
{
    std::vector<double> times;
    for (int written = 1; written <= kWrites; ++written) {
        sqlite3 *db = nullptr;
        sqlite3_open(file.c_str(), &db);
        sqlite3_exec(db,
                     "INSERT INTO MP3s VALUES ('a Xylophone', '', '', '', '', '', '', '/new.mp3', "
                     "'', 0)",
                     nullptr, nullptr, nullptr);
        sqlite3_close(db);
        const Stopwatch watch;
        const auto found = Search("XYLOPHONE")->RecordCount();
        times.push_back(watch.Ms());
        failed = failed || found != written;
        ReadAhead();
        failed = failed || Search("xylophone")->RecordCount() != written;
    }
    Report("the first statement after another's write", bench::Median(times), "ms", kStatementMs);
}

void ReportFill(double idleMiB)
{
    ui::KeyedList list;
    const double ms = MedianMs(kRounds, [&] { browser::FillItemList(list, *Search("")); });
    Report("a search for everything, statement and fill", ms, "ms", kFillMs);
    Report("memory above the idle program", bench::MemoryMiB("VmRSS") - idleMiB, "MiB", kMemoryMiB);
    std::printf("    %d rows\n", list.Count());
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    judged = argc > 3;
    const bench::OpenCopy copy(argv[1], argv[2]);
    const double idleMiB = bench::MemoryMiB("VmRSS");
    const auto walked = ReportTimes("nothing read ahead");
    ReadAhead();
    const auto rows = ReportTimes("texts read ahead");
    failed = failed || walked != rows;
    ReportFill(idleMiB);
    ReportFloors(copy.File(), rows);
    ReportAfterWrites(copy.File());
    return failed ? 1 : 0;
}

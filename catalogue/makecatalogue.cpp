// makecatalogue SCHEMA TARGET - the build runs this program to make the shipped catalogue. An
// existing file TARGET is never changed.
#include "metadata/genres.h"

#include <sqlite3.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace
{

// A page that changes is written to the log and later to the file. Songs take some 800 bytes each:
// larger pages write more for the edit of one song, smaller ones need twice the calls for a
// regeneration.
constexpr const char *kLayout = "PRAGMA page_size=8192; PRAGMA auto_vacuum=NONE";

bool Run(sqlite3 *db, const std::string &sql)
{
    char *words = nullptr;
    const bool succeeded = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &words) == SQLITE_OK;
    if (!succeeded)
        std::fprintf(stderr, "makecatalogue: %s\n", words != nullptr ? words : "no words");
    sqlite3_free(words);
    return succeeded;
}

bool FillGenres(sqlite3 *db)
{
    sqlite3_stmt *insert = nullptr;
    if (sqlite3_prepare_v2(db, "INSERT INTO Genre VALUES (?1, ?2)", -1, &insert, nullptr) !=
        SQLITE_OK)
        return false;
    bool succeeded = true;
    int number = 0;
    for (const auto name : metadata::kGenreNames) {
        sqlite3_bind_int(insert, 1, number++);
        sqlite3_bind_text(insert, 2, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
        succeeded = succeeded && sqlite3_step(insert) == SQLITE_DONE;
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    return succeeded;
}

// Closing the last connection deletes the log file, so that the catalogue is one complete file.
bool Make(const std::string &schema, const std::string &path)
{
    sqlite3 *db = nullptr;
    bool succeeded = sqlite3_open(path.c_str(), &db) == SQLITE_OK && Run(db, kLayout) &&
                     Run(db, "BEGIN") && Run(db, schema) && FillGenres(db) && Run(db, "COMMIT") &&
                     Run(db, "PRAGMA journal_mode=WAL") && Run(db, "VACUUM");
    return sqlite3_close(db) == SQLITE_OK && succeeded;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: makecatalogue SCHEMA TARGET\n");
        return 2;
    }
    const std::string target = argv[2];
    std::error_code failure;
    if (std::filesystem::exists(target, failure))
        return 0;
    std::ifstream in(argv[1], std::ios::binary);
    const std::string schema{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const std::string beside = target + ".new";
    std::remove(beside.c_str());
    if (schema.empty() || !Make(schema, beside)) {
        std::fprintf(stderr, "makecatalogue: could not make '%s'\n", target.c_str());
        std::remove(beside.c_str());
        return 1;
    }
    std::filesystem::create_hard_link(beside, target, failure); // never replaces an existing file
    if (failure && failure != std::errc::file_exists) {
        std::fprintf(stderr, "makecatalogue: '%s': %s\n", target.c_str(),
                     failure.message().c_str());
        return 1;
    }
    std::remove(beside.c_str());
    return 0;
}

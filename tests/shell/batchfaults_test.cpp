// A disk that fails at one call, or is full from one call on, for every call of a batch: the
// summary reports for each song what is in the catalogue.
#include "catalogue/rowgroups.h"
#include "shell/startup/batch.h"
#include "tests/support/faultycalls.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <map>

namespace fs = std::filesystem;

namespace
{

struct BatchFaults : tests::LibraryFixture {
    const std::vector<std::string> names = {"known1.mp3", "new1.mp3", "known2.mp3", "marker.mp3",
                                            "new2.mp3"};

    std::string Catalogue() const { return folder / "app/MP3s.mdb"; }

    void WriteSongs(const std::string &title) const
    {
        for (const std::string &name : names)
            tests::WriteFile(
                Song(name),
                tests::Id3v2(tests::TextFrame("TIT2", title) +
                             tests::TextFrame("TPE1", name == "marker.mp3" ? "\xB9 \xB9" : "a")) +
                    tests::Audio());
    }

    // A catalogue that knows two of the songs, by their old title.
    void Begin() const
    {
        catalogue::CloseCatalogue();
        for (const char *ending : {"", "-wal", "-shm", "-turn"})
            fs::remove(Catalogue() + ending);
        tests::WriteFile(Catalogue(), shipped);
        WriteSongs("old");
        EXPECT_TRUE(shell::RunBatch({Song("known1.mp3"), Song("known2.mp3")}));
        catalogue::CloseCatalogue();
        WriteSongs("new");
        fs::remove(folder / "app/Solution.txt");
    }

    // The titles of the rows by path, read through a separate connection.
    std::map<std::string, std::string> Titles() const
    {
        std::map<std::string, std::string> titles;
        sqlite3 *db = nullptr;
        sqlite3_stmt *rows = nullptr;
        EXPECT_EQ(sqlite3_open(Catalogue().c_str(), &db), SQLITE_OK);
        EXPECT_EQ(sqlite3_prepare_v2(db, "SELECT Path, Title FROM MP3s", -1, &rows, nullptr),
                  SQLITE_OK);
        while (sqlite3_step(rows) == SQLITE_ROW)
            EXPECT_TRUE(titles
                            .emplace(reinterpret_cast<const char *>(sqlite3_column_text(rows, 0)),
                                     reinterpret_cast<const char *>(sqlite3_column_text(rows, 1)))
                            .second);
        sqlite3_finalize(rows);
        EXPECT_EQ(sqlite3_close(db), SQLITE_OK);
        return titles;
    }

    const std::string shipped = tests::ReadFile(Catalogue());

    // Compares the summary with the rows. `isWhole`: the result of the batch.
    void Compare(bool isWhole) const
    {
        const std::string summary = tests::ReadFile(folder / "app/Solution.txt");
        const std::string said = summary.substr(0, summary.find("couldn't be added/updated:"));
        const auto titles = Titles();
        bool isAnyLost = false;
        for (const std::string &name : names) {
            SCOPED_TRACE(name);
            const bool isSaid = said.find("    " + Song(name) + "\r") != std::string::npos;
            isAnyLost |= !isSaid;
            EXPECT_NE(summary.find("    " + Song(name) + "\r"), std::string::npos) << summary;
            const auto row = titles.find(Song(name));
            const std::string want = isSaid ? "new" : name.starts_with("known") ? "old" : "";
            EXPECT_EQ(row == titles.end() ? "" : row->second, want) << summary;
        }
        EXPECT_EQ(isWhole, !isAnyLost);
    }
};

TEST_F(BatchFaults, SummaryIsTrueForEveryCallThatFails)
{
    for (const bool onwards : {false, true}) {
        bool hasFailed = true;
        int failures = 0;
        for (int failing = 1; hasFailed; failing++) {
            SCOPED_TRACE(std::to_string(failing) + (onwards ? " onwards" : ""));
            Begin();
            bool isWhole = false;
            {
                const tests::FaultyCalls calls(failing, onwards);
                std::vector<std::string> paths;
                for (const std::string &name : names)
                    paths.push_back(Song(name));
                isWhole = shell::RunBatch(paths);
                hasFailed = calls.HasFailed();
                catalogue::CloseCatalogue();
            }
            Compare(isWhole);
            failures += isWhole ? 0 : 1;
            if (HasFailure())
                return;
        }
        EXPECT_GT(failures, 5) << "the faults reached the rows";
    }
}

} // namespace

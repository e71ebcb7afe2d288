#include "catalogue/sqlite/writequeue.h"
#include "platform/machine.h"
#include "platform/waiting.h"
#include "tests/support/freshcatalogue.h"
#include "tests/support/fulldisk.h"
#include "tests/support/silentdesktop.h"
#include "tests/support/wait.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <functional>
#include <limits>
#include <optional>
#include <thread>
#include <utility>

using namespace catalogue;
using namespace std::string_literals;
using tests::SilentDesktop;
using tests::WaitUntil;

namespace
{

// Another connection's view of the file: how many rows are committed.
int Committed(const std::string &file)
{
    sqlite3 *db = nullptr;
    sqlite3_stmt *statement = nullptr;
    sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_prepare_v2(db, "SELECT count(*) FROM MP3s", -1, &statement, nullptr);
    sqlite3_step(statement);
    const int count = sqlite3_column_int(statement, 0);
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return count;
}

std::string Pragma(const std::string &file, const char *sql)
{
    sqlite3 *db = nullptr;
    sqlite3_stmt *statement = nullptr;
    sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
    sqlite3_prepare_v2(db, sql, -1, &statement, nullptr);
    sqlite3_step(statement);
    const std::string text = reinterpret_cast<const char *>(sqlite3_column_text(statement, 0));
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return text;
}

// Groups stay open however slow the machine is, unless a test sets a limit.
class RowGroupsTest : public testing::Test
{
protected:
    RowGroupsTest() { TheGroupLimits() = {kNever, kNever}; }
    ~RowGroupsTest() override { TheGroupLimits() = {}; }

private:
    static constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();
};

// A process of catalogue_writer; its output is returned at its end.
class Writer
{
public:
    Writer(const std::string &folder, int rounds, int first, int count, bool inGroups)
    {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        const std::vector<std::string> words = {QUENLIN_CATALOGUE_WRITER, folder,
                                                std::to_string(rounds),   std::to_string(first),
                                                std::to_string(count),    "group"};
        std::vector<char *> arguments;
        for (std::size_t i = 0; i < (inGroups ? 6u : 5u); ++i)
            arguments.push_back(const_cast<char *>(words[i].c_str()));
        arguments.push_back(nullptr);
        pid = fork();
        if (pid == 0) {
            dup2(ends[1], 1);
            close(ends[0]);
            close(ends[1]);
            execv(arguments[0], arguments.data());
            _exit(127);
        }
        close(ends[1]);
        m_output = ends[0];
    }

    // The longest wait of one row in milliseconds; -1 when the process failed.
    double Wait()
    {
        char text[64] = {};
        const auto got = read(m_output, text, sizeof text - 1);
        close(m_output);
        int status = 0;
        waitpid(pid, &status, 0);
        return got > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0 ? std::atof(text) : -1;
    }

    void Kill()
    {
        kill(pid, SIGKILL);
        int status = 0;
        waitpid(pid, &status, 0);
        close(m_output);
    }

    pid_t pid = 0;

private:
    int m_output = -1;
};

const std::string kNothing(kNoExclusion);

// Looks a path up as a step does.
bool IsKnown(ADOclass &access, const std::string &path)
{
    const auto records =
        Records(access.ExecuteSQL("SEL_ByPath", kStoredSelect, std::vector<Value>{path, kNothing}));
    EXPECT_TRUE(access.Succeeded) << access.ErrorMessage;
    return !records->AtEnd();
}

// Closes the group. Returns: the reported reason when its rows were lost, else an empty text.
std::string Close(RowGroups &groups)
{
    std::string words;
    groups.WhenSettled([&](const std::string &lost) { words = lost; });
    groups.Close();
    return words;
}

} // namespace

TEST_F(RowGroupsTest, RowsOutsideCommitAtOnce)
{
    tests::FreshCatalogue fresh;
    fresh.AddPath("/1");
    EXPECT_EQ(Committed(fresh.File()), 1);
    {
        RowStep step(fresh.access); // a step without RowGroups does not group
        EXPECT_FALSE(IsKnown(step.Access(), "/2"));
        const std::vector<Value> row{"t"s, ""s, ""s, ""s, ""s, ""s, ""s, "/2"s, std::int64_t{0}};
        step.Access().ExecuteSQL("AddMP3", kStoredInsert, row);
        EXPECT_TRUE(step.Access().Succeeded) << step.Access().ErrorMessage;
        EXPECT_EQ(Committed(fresh.File()), 1) << "the step is one for others";
    }
    EXPECT_EQ(Committed(fresh.File()), 2);
    const RowGroups groups;
    fresh.AddPath("/3"); // nor do groups without a step
    EXPECT_EQ(Committed(fresh.File()), 3);
}

TEST_F(RowGroupsTest, StayOpenAndCloseBeforeAnythingElse)
{
    const struct {
        const char *name;
        std::function<void(tests::FreshCatalogue &)> act;
    } cases[] = {
        {"asked for", [](auto &) { CloseOpenGroup(); }},
        {"another statement", [](auto &fresh) { fresh.Rows("SELECT * FROM Lists"); }},
        {"another write",
         [](auto &fresh) {
             fresh.access.ExecuteSQL("INSERT INTO Lists VALUES('a', 'b')", kInsert);
             EXPECT_TRUE(fresh.access.Succeeded) << fresh.access.ErrorMessage;
         }},
        {"a path looked up outside a step",
         [](auto &fresh) { EXPECT_TRUE(IsKnown(fresh.access, "/1")); }},
        {"a transaction",
         [](auto &fresh) {
             fresh.access.BeginTrans();
             fresh.access.RollBackTrans();
         }},
        {"a wait for the user",
         [](auto &) {
             platform::TheMachine().beginWait = CloseOpenGroup;
             platform::BeginWait();
             platform::TheMachine().beginWait = nullptr;
         }},
        {"a step on another file",
         [](auto &fresh) {
             tests::FreshCatalogue other; // its end closes every group
             other.AddInStep("/other");
             EXPECT_EQ(Committed(fresh.File()), 2);
         }},
        {"the end", [](auto &) { CloseCatalogue(); }},
        {"its time is up",
         [](auto &fresh) {
             TheGroupLimits().groupMs = 0;
             fresh.AddInStep("/1");
         }},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        tests::FreshCatalogue fresh;
        RowGroups groups;
        fresh.AddInStep("/1");
        fresh.AddInStep("/2");
        EXPECT_EQ(Committed(fresh.File()), 0);
        c.act(fresh);
        EXPECT_EQ(Committed(fresh.File()), 2);
        EXPECT_EQ(Close(groups), "");
    }
}

// A statement belongs to a step only if the object of the step runs it, whenever that is.
TEST_F(RowGroupsTest, AStatementOfAnotherObjectBelongsToNoStep)
{
    tests::FreshCatalogue fresh;
    const RowGroups groups;
    fresh.AddInStep("/1");
    RowStep step(fresh.access);
    EXPECT_FALSE(IsKnown(step.Access(), "/2"));
    EXPECT_EQ(Committed(fresh.File()), 0);
    fresh.AddPath("/by an event handler");
    EXPECT_EQ(Committed(fresh.File()), 2);
    EXPECT_EQ(step.Finish(), "");
    EXPECT_EQ(Committed(fresh.File()), 2);
}

TEST_F(RowGroupsTest, AWaitForTheUserHoldsNothing)
{
    tests::FreshCatalogue fresh;
    const RowGroups groups;
    fresh.AddInStep("/1");
    RowStep step(fresh.access);
    EXPECT_TRUE(IsKnown(step.Access(), "/1"));
    CloseOpenGroup(); // as before each box and each modal window
    EXPECT_EQ(Committed(fresh.File()), 1);
    fresh.AddPath("/by a modal window");
    EXPECT_EQ(Committed(fresh.File()), 2) << "it belongs to no step";
}

// A statement that a handler runs while the step waits for another process does not belong to the
// step; the program may even end in that handler.
TEST_F(RowGroupsTest, AHandlerInTheWaitOfAStepBelongsToNoStep)
{
    struct Handler : SilentDesktop {
        void DoEvents() override
        {
            if (act)
                std::exchange(act, nullptr)();
        }
        std::function<void()> act;
    };
    tests::FreshCatalogue fresh;
    Handler desktop;
    platform::TheMachine().desktop = &desktop;
    sqlite3 *other = nullptr;
    sqlite3_open(fresh.File().c_str(), &other);
    EXPECT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    std::vector<std::string> seen;
    {
        RowStep step(fresh.access);
        desktop.act = [&] {
            seen = fresh.Rows("SELECT count(*) FROM MP3s");
            EXPECT_EQ(sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
        };
        EXPECT_FALSE(IsKnown(step.Access(), "/1"));
    }
    EXPECT_EQ(seen, std::vector<std::string>{"0"});
    sqlite3_close(other);
    platform::TheMachine() = platform::Machine();
}

TEST_F(RowGroupsTest, StepThatOnlyLooksUpLetsGoAtItsEnd)
{
    tests::FreshCatalogue fresh;
    {
        RowStep step(fresh.access);
        EXPECT_FALSE(IsKnown(step.Access(), "/1"));
    }
    sqlite3 *db = nullptr;
    sqlite3_open(fresh.File().c_str(), &db);
    EXPECT_EQ(sqlite3_exec(db, "BEGIN IMMEDIATE; COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);
}

TEST_F(RowGroupsTest, SlowFilesAreNotWaitedForWithTheCatalogueHeld)
{
    tests::FreshCatalogue fresh;
    const RowGroups groups;
    TheGroupLimits().slowReadMs = -1;
    for (int i = 1; i <= 3; ++i) {
        fresh.AddInStep("/" + std::to_string(i));
        EXPECT_EQ(Committed(fresh.File()), i);
    }
}

TEST_F(RowGroupsTest, AFailedStatementLeavesTheOthersRows)
{
    tests::FreshCatalogue fresh;
    {
        RowGroups groups;
        fresh.AddInStep("/1");
        {
            RowStep step(fresh.access);
            step.Access().ExecuteSQL("INSERT INTO MP3s VALUES (1)", kInsert);
            EXPECT_FALSE(step.Access().Succeeded);
        }
        fresh.AddInStep("/2");
        EXPECT_EQ(Close(groups), "");
    }
    EXPECT_EQ(Committed(fresh.File()), 2);
}

TEST_F(RowGroupsTest, AGroupThatCannotBeKeptIsReported)
{
    tests::FreshCatalogue fresh;
    RowGroups groups;
    fresh.AddInStep("/1");
    fresh.AddInStep("/2");
    std::optional<tests::FullDisk> disk(1024);
    std::vector<std::string> lost;
    for (int i = 0; i < 2; ++i)
        groups.WhenSettled([&](const std::string &words) { lost.push_back(words); });
    EXPECT_TRUE(lost.empty()) << "nothing is said before it is true";
    groups.Close();
    fresh.access.ExecuteSQL("INSERT INTO Lists VALUES('a', 'b')", kInsert);
    const bool single = fresh.access.Succeeded;
    disk.reset();
    ASSERT_EQ(lost.size(), 2U);
    EXPECT_NE(lost[0], "");
    EXPECT_EQ(lost[1], lost[0]);
    EXPECT_FALSE(single);
    EXPECT_EQ(Committed(fresh.File()), 0);
    EXPECT_EQ(Close(groups), "") << "reported once";
    fresh.AddInStep("/3");
    EXPECT_EQ(Close(groups), "");
    EXPECT_EQ(Committed(fresh.File()), 1);
}

TEST_F(RowGroupsTest, GiveWayToOneWhoWaits)
{
    tests::FreshCatalogue fresh;
    WriteQueue other(fresh.File() + "-turn");
    const RowGroups groups;
    fresh.AddInStep("/1");
    EXPECT_EQ(Committed(fresh.File()), 0);
    ASSERT_TRUE(other.TryEnter());
    std::atomic<bool> hasLeft = false;
    std::thread leaver([&] {
        EXPECT_TRUE(WaitUntil([&] { return Committed(fresh.File()) == 1; }))
            << "the open group is committed, and no new one begun";
        hasLeft = true;
        other.Leave();
    });
    fresh.AddInStep("/2");
    EXPECT_TRUE(hasLeft);
    leaver.join();
    CloseOpenGroup();
    EXPECT_EQ(Committed(fresh.File()), 2);
}

TEST(WriteQueue, OneAtATime)
{
    tests::TestFolder folder;
    WriteQueue first(folder / "t"), second(folder / "t");
    EXPECT_FALSE(first.IsAnotherWaiting());
    EXPECT_TRUE(second.TryEnter());
    EXPECT_FALSE(second.IsAnotherWaiting()) << "it is oneself";
    EXPECT_TRUE(first.IsAnotherWaiting());
    EXPECT_FALSE(first.TryEnter());
    second.Leave();
    EXPECT_FALSE(first.IsAnotherWaiting());
    WriteQueue nowhere(folder / "absent/t");
    EXPECT_FALSE(nowhere.IsAnotherWaiting());
    EXPECT_TRUE(nowhere.TryEnter());
}

TEST(SeveralProcesses, NothingTwiceAndNothingMissing)
{
    tests::FreshCatalogue fresh;
    {
        Writer a(fresh.folder.Path(), 1, 0, 3000, true), b(fresh.folder.Path(), 1, 0, 3000, true),
            c(fresh.folder.Path(), 1, 1000, 3000, true), d(fresh.folder.Path(), 1, 0, 500, false);
        for (auto *writer : {&a, &b, &c, &d})
            EXPECT_GE(writer->Wait(), 0);
    }
    EXPECT_EQ(fresh.Rows("SELECT count(*), count(DISTINCT Path) FROM MP3s"),
              std::vector<std::string>{"4000|4000"});
    EXPECT_EQ(Pragma(fresh.File(), "PRAGMA integrity_check"), "ok");
}

TEST(SeveralProcesses, ASingleAddGetsItsTurnBesideGroups)
{
    tests::FreshCatalogue fresh;
    constexpr int kEndless = 1'000'000;
    Writer group(fresh.folder.Path(), kEndless, 0, 3000, true);
    ASSERT_TRUE(WaitUntil([&] { return Committed(fresh.File()) == 3000; }));
    Writer single(fresh.folder.Path(), 1, 100000, 100, false);
    const double longestMs = single.Wait();
    EXPECT_GE(longestMs, 0);
    EXPECT_LE(longestMs, 2000)
        << "one that takes the lock again at once would starve it for longer";
    RecordProperty("longest_ms", std::to_string(longestMs));
    EXPECT_EQ(kill(group.pid, 0), 0) << "the groups were written all the while";
    group.Kill();
    EXPECT_EQ(Committed(fresh.File()), 3100);
}

TEST(SeveralProcesses, KillLeavesCompleteRowsOnceEach)
{
    for (int round = 0; round < 12; ++round) {
        tests::FreshCatalogue fresh;
        Writer writer(fresh.folder.Path(), 1, 0, 200000, true);
        ASSERT_TRUE(WaitUntil([&] { return Committed(fresh.File()) >= round * 700; }));
        writer.Kill();
        const auto rows = fresh.Rows("SELECT count(*), count(DISTINCT Path), "
                                     "count(DISTINCT Path) - 1 - max(CAST(SUBSTR(Path, 4) AS "
                                     "INTEGER)) FROM MP3s");
        ASSERT_EQ(rows.size(), 1u);
        const auto fields = rows[0];
        const auto bar = fields.find('|');
        EXPECT_EQ(fields.substr(0, bar), fields.substr(bar + 1, bar)) << fields;
        if (fields[0] != '0') {
            EXPECT_EQ(fields.substr(fields.rfind('|') + 1), "0") << "no gap: " << fields;
        }
        CloseCatalogue();
        EXPECT_EQ(Pragma(fresh.File(), "PRAGMA integrity_check"), "ok");
        Writer again(fresh.folder.Path(), 1, 0, 2000, true);
        EXPECT_GE(again.Wait(), 0);
        EXPECT_EQ(fresh.Rows("SELECT count(*) - count(DISTINCT Path) FROM MP3s"),
                  std::vector<std::string>{"0"});
    }
}

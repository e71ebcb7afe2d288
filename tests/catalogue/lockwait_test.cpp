// Another program has the catalogue locked.
#include "catalogue/adoclass.h"
#include "catalogue/lockwait.h"
#include "catalogue/regeneration/walker.h"
#include "catalogue/rowgroups.h"
#include "platform/endrequest.h"
#include "tests/catalogue/regenerationfixture.h"

#include <sqlite3.h>

#include <chrono>
#include <csignal>
#include <functional>

using namespace catalogue;
using Clock = std::chrono::steady_clock;

namespace
{

// Another program's lock on the catalogue.
class Holder
{
public:
    explicit Holder(const std::string &file, const char *begin = "BEGIN IMMEDIATE")
    {
        EXPECT_EQ(sqlite3_open(file.c_str(), &m_db), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(m_db, begin, nullptr, nullptr, nullptr), SQLITE_OK);
    }
    ~Holder() { sqlite3_close(m_db); }
    Holder(const Holder &) = delete;
    Holder &operator=(const Holder &) = delete;

private:
    sqlite3 *m_db = nullptr;
};

struct HeldCatalogue : tests::Regeneration {
    HeldCatalogue()
    {
        const LockTimeoutOfRun asAtTheStart;
        TheLockTimeouts() = {400, 60, 100};
        TheLockWaitCalls().ShowLine = [this](std::string_view line) { lines.emplace_back(line); };
        DataAccess->ExecuteSQL("SELECT * FROM Lists", kSelect); // the file is open
        lines.clear();
        yields = desktop.yields;
    }
    ~HeldCatalogue() override
    {
        TheLockTimeouts() = {};
        TheLockWaitCalls() = {};
        platform::RequestEnd(0);
    }

    std::string File() const { return folder / "app/MP3s.mdb"; }

    static bool Insert()
    {
        DataAccess->ExecuteSQL("INSERT INTO Lists VALUES('a', 'b')", kInsert);
        return DataAccess->Succeeded;
    }

    // The milliseconds that `work` takes.
    template <class Work>
    static std::int64_t Time(const Work &work)
    {
        const auto start = Clock::now();
        work();
        return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
    }

    tests::RowList lines; // as they were shown
    int yields = 0;
};

const std::string kWaiting = "Waiting for another program that uses the catalogue...";

TEST_F(HeldCatalogue, EventsRunAndTheUserIsShownWhatIsWaitedFor)
{
    std::optional<Holder> holder(File());
    desktop.doEvents = [&] {
        if (desktop.yields == yields + 12)
            holder.reset();
    };
    EXPECT_TRUE(Insert()) << DataAccess->ErrorMessage;
    EXPECT_GE(desktop.yields, yields + 12);
    EXPECT_EQ(lines, (tests::RowList{kWaiting, ""}));
}

TEST_F(HeldCatalogue, ShortWaitShowsNothing)
{
    std::optional<Holder> holder(File());
    desktop.doEvents = [&] {
        if (desktop.yields == yields + 2)
            holder.reset();
    };
    EXPECT_TRUE(Insert()) << DataAccess->ErrorMessage;
    EXPECT_EQ(lines, tests::RowList{});
}

TEST_F(HeldCatalogue, WaitIsGivenUpWithWords)
{
    const Holder holder(File());
    const auto ms = Time([] { EXPECT_FALSE(Insert()); });
    EXPECT_GE(ms, 390);
    EXPECT_LT(ms, 900);
    EXPECT_EQ(DataAccess->ErrorMessage, "Error: Another program has held the catalogue for 0 "
                                        "seconds.\r\tINSERT INTO Lists VALUES('a', 'b')");
}

TEST_F(HeldCatalogue, EndRequestEndsTheWait)
{
    TheLockTimeouts().fullMs = 60000;
    const Holder holder(File());
    desktop.doEvents = [&] {
        if (desktop.yields == yields + 4)
            platform::RequestEnd(SIGTERM);
    };
    const auto ms = Time([] { EXPECT_FALSE(Insert()); });
    EXPECT_LT(ms, 1000);
    EXPECT_NE(DataAccess->ErrorMessage.find("the wait for it was ended"), std::string::npos);
}

// A file that another program has locked exclusively cannot even be opened.
TEST_F(HeldCatalogue, OpeningWaitsAsWell)
{
    CloseCatalogue();
    std::optional<Holder> holder;
    holder.emplace(File(),
                   "PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE; DELETE FROM Lists; COMMIT");
    const auto ms = Time([] { EXPECT_FALSE(Insert()); });
    EXPECT_GE(ms, 390);
    EXPECT_NE(DataAccess->ErrorMessage.find("Another program has held"), std::string::npos)
        << DataAccess->ErrorMessage;
    desktop.doEvents = [&] {
        if (++yields > 3)
            holder.reset();
    };
    TheLockTimeouts().laterMs = 400;
    yields = 0;
    EXPECT_TRUE(Insert()) << DataAccess->ErrorMessage;
}

TEST_F(HeldCatalogue, HandlersReadMeanwhileAndTheirWritesDoNotWaitInTheWait)
{
    std::optional<Holder> holder(File());
    int calls = 0;
    desktop.doEvents = [&] {
        if (!IsWaitingForLock())
            return;
        if (++calls == 2) {
            const auto ms = Time([] {
                DataAccess->ExecuteSQL("SEL_ByTitle", kStoredSelect, std::string("x"));
                EXPECT_TRUE(DataAccess->Succeeded) << DataAccess->ErrorMessage;
                DataAccess->ExecuteSQL("Edit1", kStoredUpdate,
                                       std::vector<Value>(8, std::string("x")));
                EXPECT_FALSE(DataAccess->Succeeded);
                EXPECT_NE(DataAccess->ErrorMessage.find("waits already"), std::string::npos);
            });
            EXPECT_LT(ms, 100);
        }
        if (calls == 4)
            holder.reset();
    };
    EXPECT_TRUE(Insert()) << DataAccess->ErrorMessage;
    EXPECT_EQ(DataAccess->ErrorMessage, "") << "a handler's failure is not this statement's";
}

TEST_F(HeldCatalogue, ProgramMayEndInTheWait)
{
    for (const bool stored : {false, true}) {
        SCOPED_TRACE(stored);
        desktop.doEvents = {};
        DataAccess = std::make_unique<ADOclass>();
        DataAccess->TipoLectura = 1;
        DataAccess->DirBase = folder / "app/";
        DataAccess->DataBaseName = "MP3s";
        Insert();
        const Holder holder(File());
        desktop.doEvents = [&] {
            if (IsWaitingForLock())
                DataAccess.reset();
        };
        const auto ms = Time([&] {
            if (stored)
                DataAccess->ExecuteSQL("Edit1", kStoredUpdate,
                                       std::vector<Value>(8, std::string("x")));
            else
                DataAccess->ExecuteSQL("DELETE FROM Lists", kDelete);
        });
        EXPECT_LT(ms, 300);
        EXPECT_EQ(DataAccess, nullptr);
    }
}

TEST_F(HeldCatalogue, AJobIsPatientOnceAndNamesEachFile)
{
    const tests::RowList names = {"a.mp3", "b.mp3", "c.mp3", "d.mp3", "e.mp3"};
    for (const std::string &name : names)
        AddSong(name);
    std::optional<Holder> holder(File());
    desktop.ExpectBox("Some files could not be added.", platform::Answer::No);
    const auto ms = Time([] { ListRefresh(false); });
    EXPECT_GE(ms, 390 + 4 * 50);
    EXPECT_LT(ms, 3 * 400);
    EXPECT_EQ(LastRegeneration().failed, 5);
    EXPECT_TRUE(LastRegeneration().rowsLost);
    for (const std::string &name : names)
        EXPECT_NE(desktop.clipboard.find(Song(name) + ": Error: Another program"),
                  std::string::npos)
            << desktop.clipboard;
    EXPECT_EQ(bar.Panel("Playing").text, "");
    const auto later = Time([] { EXPECT_FALSE(Insert()); });
    EXPECT_GE(later, 390) << "the job's impatience ends with it";
    holder.reset();
    Dirs().Clear();
    ListRefresh(false);
    EXPECT_EQ(Paths(), names);
}

TEST_F(HeldCatalogue, StoppingAJobEndsItsWait)
{
    TheLockTimeouts().fullMs = 60000;
    AddSong("a.mp3");
    AddSong("b.mp3");
    const Holder holder(File());
    desktop.doEvents = [&] {
        if (IsWaitingForLock())
            StopRegeneration();
    };
    const auto ms = Time([] { ListRefresh(false); });
    EXPECT_LT(ms, 1000);
    EXPECT_TRUE(LastRegeneration().stopped);
}

TEST_F(HeldCatalogue, EndOfTheProgramEndsTheJobAfterTheFileThatWaits)
{
    TheLockTimeouts().fullMs = 60000;
    for (const char *name : {"a.mp3", "b.mp3", "c.mp3"})
        AddSong(name);
    const Holder holder(File());
    desktop.doEvents = [] {
        if (IsWaitingForLock())
            platform::RequestEnd(SIGTERM);
    };
    const auto ms = Time([] { ListRefresh(false); });
    EXPECT_LT(ms, 1000);
    EXPECT_TRUE(LastRegeneration().stopped);
    EXPECT_EQ(LastRegeneration().files, 1);
    EXPECT_EQ(LastRegeneration().failed, 1);
}

TEST_F(HeldCatalogue, OutsideAJobTheFirstSuccessRestoresThePatience)
{
    std::optional<Holder> holder(File());
    EXPECT_FALSE(Insert());
    EXPECT_LT(Time([] { EXPECT_FALSE(Insert()); }), 300);
    int calls = 0;
    desktop.doEvents = [&] {
        if (IsWaitingForLock() && ++calls == 1)
            holder.reset();
    };
    EXPECT_TRUE(Insert());
    desktop.doEvents = {};
    holder.emplace(File());
    EXPECT_GE(Time([] { EXPECT_FALSE(Insert()); }), 390);
}

} // namespace

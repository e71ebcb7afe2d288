#include "platform/posix/disk/systemfiles.h"
#include "playlists/bookmarks.h"
#include "runtime/error.h"
#include "tests/browser/formfixture.h"
#include "tests/support/fulldisk.h"
#include "tests/support/scripteddesktop.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

namespace
{

using playlists::ExportBookmarksTo;

class Bookmarks : public tests::FormTest
{
protected:
    // The lines of the file, each followed by "|"; the line ends are the platform's.
    std::string Lines() { return runtime::Replace(tests::ReadFile(file), "\n", "|"); }

    void AddGenre(int id, const std::string &name)
    {
        catalogue::DataAccess->ExecuteSQL("DELETE FROM Genre WHERE ID = ?", catalogue::kDelete,
                                          catalogue::Value(std::int64_t{id}));
        catalogue::DataAccess->ExecuteSQL("INSERT INTO Genre VALUES(?, ?)", catalogue::kInsert,
                                          std::vector<catalogue::Value>{std::int64_t{id}, name});
        ASSERT_TRUE(catalogue::DataAccess->Succeeded) << catalogue::DataAccess->ErrorMessage;
    }

    std::size_t FilesInFolder(const std::string &path)
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path),
                                                      std::filesystem::directory_iterator()));
    }

    const std::string file = folder / "bookmarks/gen_bmark.dat";
    const bool made = std::filesystem::create_directory(folder / "bookmarks");
};

TEST_F(Bookmarks, TheWholeFile)
{
    Add({"Two", "Abba", "", "1999", "c", "Pop", "/m/2.mp3"});
    Add({"One", "ABBA", "Arrival", "1976", "c", "Pop", "/m/1.mp3"});
    Add({"One", "", "Arrival", "", "", "", "/m/3.mp3"});
    ASSERT_TRUE(ExportBookmarksTo(Loaded(), file));
    EXPECT_EQ(Lines(), "VER1|d1Title|d2One|a3/m/1.mp3|a3/m/3.mp3|d2Two|a3/m/2.mp3|"
                       "d1Artist|d2Abba|a3/m/1.mp3|a3/m/2.mp3|"
                       "d1Album|d2Arrival|a3/m/1.mp3|a3/m/3.mp3|"
                       "d1Year|d21976|a3/m/1.mp3|d21999|a3/m/2.mp3|");
    EXPECT_EQ(FilesInFolder(folder / "bookmarks"), 1u); // nothing is left beside it
}

TEST_F(Bookmarks, AnEmptyCatalogueHasItsGroups)
{
    ASSERT_TRUE(ExportBookmarksTo(Loaded(), file));
    EXPECT_EQ(Lines(), "VER1|d1Title|d1Artist|d1Album|d1Year|");
}

TEST_F(Bookmarks, ValuesKeepTheirMarksAndOneLine)
{
    Add({"It's 100% \"?\" & more", "", "", "", "", "", "/m/a'?.mp3"});
    Add({"two\r\nlines", "", "", "", "", "", "/m/b.mp3"});
    Add({"x", "", "", "", "", "", "/m/a\nd2.mp3"});
    const char *title[] = {"Title"};
    ASSERT_TRUE(ExportBookmarksTo(Loaded(), file, title));
    EXPECT_EQ(Lines(), "VER1|d1Title|d2It's 100% \"?\" & more|a3/m/a'?.mp3|d2two  lines|a3/m/b.mp3|"
                       "d2x|");
}

TEST_F(Bookmarks, GenresByTheirNumbers)
{
    AddGenre(17, "Rock");
    for (const char *genre : {"17", "999", "Pop", ""})
        Add({"t", "", "", "", "", genre, std::string("/m/") + genre + ".mp3"});
    const char *genres[] = {"Genre"};
    ASSERT_TRUE(ExportBookmarksTo(Loaded(), file, genres));
    EXPECT_EQ(Lines(), "VER1|d1Genre|d2Rock|a3/m/17.mp3|d2Unknown|a3/m/999.mp3|d2Unknown|"
                       "a3/m/Pop.mp3|");
}

TEST_F(Bookmarks, ProgressCountsEachFieldsValues)
{
    Add({"One", "Abba", "", "", "", "", "/m/1.mp3"});
    Add({"Two", "Abba", "", "", "", "", "/m/2.mp3"});
    browser::MainForm &form = Loaded();
    form.SB.SetText("Playing", "a song");
    std::vector<std::string> texts;
    std::string maxima;
    form.SB.changed = [&] {
        if (texts.empty() || texts.back() != form.SB.Panel("Playing").text)
            texts.push_back(form.SB.Panel("Playing").text);
    };
    std::int64_t highest = 0;
    form.PBar.changed = [&] {
        highest = std::max(highest, form.PBar.Value());
        EXPECT_LE(form.PBar.Value(), form.PBar.Max());
    };
    ASSERT_TRUE(ExportBookmarksTo(form, file));
    form.SB.changed = nullptr;
    form.PBar.changed = nullptr;
    EXPECT_EQ(texts.back(), "a song");
    texts.pop_back();
    std::erase(texts, "a song");
    EXPECT_EQ(texts, (std::vector<std::string>{"Saving Title", "Saving Artist", "Saving Album",
                                               "Saving Year"}));
    EXPECT_EQ(highest, 2);
    EXPECT_FALSE(form.PBar.Visible());
}

TEST_F(Bookmarks, TheFixedPathNeedsItsFolder)
{
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path());
    Add({"One", "", "", "", "", "", "/m/1.mp3"});
    browser::MainForm &form = Loaded();
    try {
        playlists::ExportBookmarks(form);
        ADD_FAILURE() << "no error";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kPathNotFound);
    }
    const std::string there = "C:\\Archivos de programa\\Winamp\\Plugins";
    std::filesystem::create_directory(there);
    playlists::ExportBookmarks(form);
    std::filesystem::current_path(before);
    EXPECT_EQ(tests::ReadFile(folder / (there + "/gen_bmark.dat")).substr(0, 13),
              "VER1\nd1Title\n");
}

enum class Fault { Error, Kill };

// Files whose n-th call that changes something fails, or before which the process is killed.
class FailingFiles : public platform::posix::SystemFilesPort
{
public:
    explicit FailingFiles(int failing, Fault fault = Fault::Error)
        : m_failing(failing), m_fault(fault), m_before(platform::TheMachine().files)
    {
        platform::TheMachine().files = this;
    }
    ~FailingFiles() override { platform::TheMachine().files = m_before; }

    int CreateBeside(const std::string &finalPath, std::string &temporaryPath) override
    {
        return Fails() ? -EACCES : SystemFilesPort::CreateBeside(finalPath, temporaryPath);
    }
    std::int64_t Write(int handle, const char *from, std::size_t count) override
    {
        return Fails() ? -ENOSPC : SystemFilesPort::Write(handle, from, count);
    }
    int Flush(int handle) override { return Fails() ? EIO : SystemFilesPort::Flush(handle); }
    int Rename(const std::string &from, const std::string &to) override
    {
        return Fails() ? EACCES : SystemFilesPort::Rename(from, to);
    }
    int calls = 0;

private:
    bool Fails()
    {
        const bool fails = ++calls == m_failing;
        if (fails && m_fault == Fault::Kill)
            kill(getpid(), SIGKILL);
        return fails;
    }
    int m_failing;
    Fault m_fault;
    platform::Files *m_before;
};

TEST_F(Bookmarks, CompleteOrUnchanged)
{
    Add({"One", "", "", "", "", "", "/m/1.mp3"});
    browser::MainForm &form = Loaded();
    tests::WriteFile(file, "old");
    int failing = 1;
    for (;; ++failing) {
        FailingFiles files(failing);
        try {
            ASSERT_TRUE(ExportBookmarksTo(form, file));
            break;
        } catch (const runtime::RuntimeError &error) {
            EXPECT_NE(error.description.find(file), std::string::npos);
        }
        EXPECT_EQ(Lines(), "old") << failing;
        EXPECT_EQ(FilesInFolder(folder / "bookmarks"), 1u) << failing;
        EXPECT_FALSE(form.PBar.Visible());
    }
    EXPECT_EQ(failing, 5); // after making, writing, flushing and renaming
    EXPECT_EQ(Lines().substr(0, 5), "VER1|");
}

TEST_F(Bookmarks, KilledAtAnyStepItIsCompleteOrUnchanged)
{
    Add({"One", "", "", "", "", "", "/m/1.mp3"});
    browser::MainForm &form = Loaded();
    ASSERT_TRUE(ExportBookmarksTo(form, file + ".whole"));
    const std::string whole = tests::ReadFile(file + ".whole");
    tests::WriteFile(file, "old");
    catalogue::CloseCatalogue(); // the other process opens it for itself
    for (int step = 1; step <= 6; ++step) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const FailingFiles files(step, Fault::Kill);
            _exit(ExportBookmarksTo(form, file) ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        const bool isKilled = WIFSIGNALED(status);
        EXPECT_EQ(isKilled, step <= 4) << step; // before making, writing, flushing and renaming
        EXPECT_EQ(isKilled ? WTERMSIG(status) : WEXITSTATUS(status), isKilled ? SIGKILL : 0);
        EXPECT_EQ(tests::ReadFile(file), isKilled ? "old" : whole) << step;
    }
}

TEST_F(Bookmarks, AFullDiskLeavesTheOldFile)
{
    for (int i = 0; i < 300; ++i)
        Add({"Title " + std::to_string(i), "", "", "", "", "", "/m/" + std::to_string(i)});
    browser::MainForm &form = Loaded();
    tests::WriteFile(file, "old");
    {
        const tests::FullDisk disk(4096);
        EXPECT_THROW(ExportBookmarksTo(form, file), runtime::RuntimeError);
    }
    EXPECT_EQ(Lines(), "old");
    EXPECT_EQ(FilesInFolder(folder / "bookmarks"), 1u);
}

TEST_F(Bookmarks, TheEndOfTheProgramEndsIt)
{
    Add({"One", "", "", "", "", "", "/m/1.mp3"});
    browser::MainForm &form = Loaded();
    desktop.onYield = [] { catalogue::DataAccess.reset(); };
    EXPECT_FALSE(ExportBookmarksTo(form, file));
    EXPECT_EQ(FilesInFolder(folder / "bookmarks"), 0u);
}

TEST_F(Bookmarks, ASecondOneDuringTheFirstDoesNothing)
{
    Add({"One", "", "", "", "", "", "/m/1.mp3"});
    browser::MainForm &form = Loaded();
    int second = 0;
    desktop.onYield = [&] { second += ExportBookmarksTo(form, file + "2") ? 1 : 0; };
    EXPECT_TRUE(ExportBookmarksTo(form, file));
    EXPECT_GT(desktop.yields, 0);
    EXPECT_EQ(second, 0);
    desktop.onYield = nullptr;
    EXPECT_TRUE(ExportBookmarksTo(form, file)); // another one later does
}

TEST_F(Bookmarks, AFailedStatementIsAnErrorAndLeavesNothing)
{
    browser::MainForm &form = Loaded();
    std::filesystem::rename(folder / "app/MP3s.mdb", folder / "gone.mdb");
    catalogue::CloseCatalogue();
    EXPECT_THROW(ExportBookmarksTo(form, file), runtime::RuntimeError);
    EXPECT_EQ(FilesInFolder(folder / "bookmarks"), 0u);
}

TEST_F(Bookmarks, TheCommandAsksForTheFile)
{
    tests::ScriptedDesktop user;
    Add({"One", "", "", "", "", "", "/m/1.mp3"});
    browser::MainForm &form = Loaded();
    user.ExpectSave("Export the bookmarks to", std::nullopt);
    playlists::AskAndExportBookmarks(form);
    EXPECT_FALSE(std::filesystem::exists(file));
    user.ExpectSave("Export the bookmarks to", file);
    playlists::AskAndExportBookmarks(form);
    EXPECT_EQ(Lines().substr(0, 5), "VER1|");
}

} // namespace

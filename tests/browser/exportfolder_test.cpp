// The window that asks for the folder of an export: its lists, its buttons, its failures.
#include "browser/exportfolder.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "tests/support/fakeforms.h"
#include "tests/support/fakeports.h"
#include "tests/support/scripteddesktop.h"
#include "tests/support/slowfolders.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace
{

// The real folders; the test sets the current one.
struct SomeFolders : tests::SlowFolders {
    std::string CurrentFolder() override { return current; }
    std::string current;
};

class ExportFolderTest : public testing::Test
{
protected:
    ExportFolderTest()
    {
        for (const char *name : {"beta", "Alpha", "Alpha/inner", ".hidden", "stick", "stick/a"})
            fs::create_directories(folder / name);
        tests::WriteFile(folder / "file.mp3", "x");
        folders.current = folder / "Alpha";
        drives.roots = {"/", folder.Path(), folder / "stick"};
    }

    // Asks for a folder; `use` is called with the window.
    std::string Ask(const std::string &start,
                    const std::function<void(browser::ExportFolder &)> &use)
    {
        forms.scripts.emplace_back(
            [&use](ui::Form &form) { use(static_cast<browser::ExportFolder &>(form)); });
        return browser::SelectDir(start);
    }

    static std::string Rows(const browser::ExportFolder &window)
    {
        std::string rows;
        for (int i = 0; i < window.Dirs.Count(); ++i)
            rows.append(window.Dirs.SubItemAt(window.Dirs.RowAt(i), 1)).append(" ");
        return rows;
    }

    static void Select(browser::ExportFolder &window, const char *name)
    {
        ASSERT_NE(window.Dirs.Find(name), ui::kNoRow) << name;
        window.Dirs.SelectOnly(window.Dirs.Find(name));
        window.Dirs.onItemClick();
    }
    static void Enter(browser::ExportFolder &window, const char *name)
    {
        Select(window, name);
        window.Dirs.onDblClick();
    }

    // Runs what must fail with this number and words that begin with `path`.
    template <class Action>
    static void ExpectError(int number, const std::string &path, Action action)
    {
        try {
            action();
            ADD_FAILURE() << "no error";
        } catch (const runtime::RuntimeError &error) {
            EXPECT_EQ(error.number, number);
            EXPECT_TRUE(error.description.starts_with(path)) << error.description;
        }
    }

    tests::TestFolder folder;
    tests::FakeClock clock;
    tests::ScriptedDesktop desktop;
    tests::FakeDrives drives;
    SomeFolders folders;
    tests::FakeForms forms;
};

TEST_F(ExportFolderTest, StartsAtTheRootOfTheDrive)
{
    const std::string answer = Ask(folder / "stick/a", [&](browser::ExportFolder &window) {
        EXPECT_EQ(window.Title(), "Select the folder");
        EXPECT_EQ(window.Drives.Items(), drives.roots);
        EXPECT_EQ(window.Drives.Text(), folder / "stick");
        EXPECT_EQ(window.Path(), folder / "stick");
        EXPECT_EQ(window.txtPath.Text(), folder / "stick");
        EXPECT_TRUE(window.txtPath.Locked());
        EXPECT_EQ(Rows(window), ".. a ");
        window.cmdOk.Click();
        EXPECT_FALSE(window.Loaded());
    });
    EXPECT_EQ(answer, folder / "stick");
    Ask("/nowhere/at/all", [&](browser::ExportFolder &window) { EXPECT_EQ(window.Path(), "/"); });
}

TEST_F(ExportFolderTest, WithoutAStartItIsWhereTheProcessIs)
{
    Ask("", [&](browser::ExportFolder &window) {
        EXPECT_EQ(window.Drives.Text(), folder.Path());
        EXPECT_EQ(window.Path(), folder / "Alpha");
        EXPECT_EQ(Rows(window), ".. inner ");
    });
    folders.current = folder / "gone";
    Ask("", [&](browser::ExportFolder &window) { EXPECT_EQ(window.Path(), folder.Path()); });
}

TEST_F(ExportFolderTest, GoesToTheFolderThatIsGiven)
{
    const std::string answer = Ask(folder / "x", [&](browser::ExportFolder &window) {
        EXPECT_EQ(Rows(window), ".. Alpha beta stick ");
        Select(window, "beta"); // a click is enough for the four buttons
        EXPECT_EQ(window.txtPath.Text(), folder / "beta");
        EXPECT_EQ(Rows(window), ".. Alpha beta stick ");
        Select(window, "..");
        EXPECT_EQ(window.Path(), folder.Path());
        Enter(window, "Alpha");
        EXPECT_EQ(window.Path(), folder / "Alpha");
        EXPECT_EQ(Rows(window), ".. inner ");
        Enter(window, "..");
        EXPECT_EQ(Rows(window), ".. Alpha beta stick ");
        EXPECT_EQ(window.Path(), folder / "Alpha"); // the folder that was open before
        Enter(window, "beta");
        EXPECT_TRUE(window.onKeyDown({8}));
        EXPECT_EQ(window.Path(), folder / "beta");
        EXPECT_FALSE(window.onKeyDown({'B'}));
        Enter(window, "stick");
        EXPECT_EQ(window.Drives.Text(), folder / "stick");
        Enter(window, "a");
        window.cmdOk.Click();
    });
    EXPECT_EQ(answer, folder / "stick/a");
}

TEST_F(ExportFolderTest, CancelledItGivesNothing)
{
    EXPECT_EQ(Ask("", [](browser::ExportFolder &window) { window.cmdCancel.Click(); }), "");
}

TEST_F(ExportFolderTest, TheDriveMovesTheFolders)
{
    Ask(folder / "x", [&](browser::ExportFolder &window) {
        window.Drives.SetListIndex(0);
        EXPECT_EQ(window.Path(), "/");
        EXPECT_EQ(window.Dirs.Find(".."), ui::kNoRow);
        EXPECT_FALSE(window.cmdDelete.Enabled()); // the root cannot be deleted
        window.onKeyDown({8});
        EXPECT_EQ(window.Path(), "/");
        window.Drives.SetListIndex(2);
        EXPECT_EQ(window.Path(), folder / "stick");
        EXPECT_TRUE(window.cmdDelete.Enabled());
        fs::remove_all(folder / "stick");
        window.Drives.SetListIndex(1);
        ExpectError(runtime::kPathNotFound, folder / "stick",
                    [&] { window.Drives.SetListIndex(2); });
        EXPECT_EQ(window.Path(), folder.Path());
        EXPECT_EQ(window.Drives.ListIndex(), 1);
    });
}

TEST_F(ExportFolderTest, NewMakesAFolder)
{
    const mode_t before = umask(027);
    const std::string answer = Ask(folder / "x", [&](browser::ExportFolder &window) {
        desktop.ExpectInput("Type the name of the new folder", "new & one");
        window.cmdCreate.Click();
        EXPECT_EQ(desktop.inputs[0].title, "Folder Name");
        EXPECT_EQ(desktop.inputs[0].initialText, "New Folder Name");
        EXPECT_EQ(Rows(window), ".. Alpha beta new & one stick ");
        EXPECT_EQ(fs::status(folder / "new & one").permissions(), fs::perms(0750));
        EXPECT_EQ(window.Path(), folder / "new & one");
        for (const auto &nothing : {std::optional<std::string>(), std::optional<std::string>("")}) {
            desktop.ExpectInput("", nothing);
            window.cmdCreate.Click();
        }
        Select(window, "..");
        desktop.ExpectInput("", "beta"); // exists already
        ExpectError(runtime::kFileExists, folder / "beta", [&] { window.cmdCreate.Click(); });
        desktop.ExpectInput("", "no/such");
        ExpectError(runtime::kFileNotFound, folder / "no/such", [&] { window.cmdCreate.Click(); });
        Select(window, "new & one");
        window.cmdOk.Click();
    });
    umask(before);
    EXPECT_EQ(answer, folder / "new & one");
}

TEST_F(ExportFolderTest, DeleteTakesAnEmptyFolderOnly)
{
    Ask(folder / "x", [&](browser::ExportFolder &window) {
        Select(window, "Alpha");
        ExpectError(runtime::kPathFileAccess, folder / "Alpha", [&] { window.cmdDelete.Click(); });
        EXPECT_TRUE(fs::exists(folder / "Alpha/inner"));
        Enter(window, "Alpha");
        Enter(window, "inner");
        window.cmdDelete.Click();
        EXPECT_FALSE(fs::exists(folder / "Alpha/inner"));
        EXPECT_EQ(window.Path(), folder / "Alpha");
        EXPECT_EQ(Rows(window), ".. ");
    });
}

TEST_F(ExportFolderTest, AFolderThatCannotBeReadIsNotEntered)
{
    Ask(folder / "x", [&](browser::ExportFolder &window) {
        fs::remove_all(folder / "Alpha");
        ExpectError(runtime::kPathNotFound, folder / "Alpha", [&] { Enter(window, "Alpha"); });
        EXPECT_EQ(Rows(window), ".. Alpha beta stick ");
    });
}

// A disk that does not answer is given up; meanwhile events run, and the controls are disabled.
TEST_F(ExportFolderTest, ADiskThatDoesNotAnswerIsGivenUp)
{
    folders.silent.insert(folder / "beta");
    Ask(folder / "x", [&](browser::ExportFolder &window) {
        int yields = 0;
        desktop.doEvents = [&] {
            ++yields;
            EXPECT_FALSE(window.Dirs.Enabled());
            EXPECT_FALSE(window.cmdOk.Enabled());
            EXPECT_FALSE(ui::AskToClose(window));
            window.Dirs.onDblClick(); // nothing begins meanwhile
        };
        ExpectError(runtime::kPathFileAccess, folder / "beta", [&] { Enter(window, "beta"); });
        desktop.doEvents = nullptr;
        EXPECT_GT(yields, 10);
        EXPECT_EQ(clock.steadyMs, 2000);
        EXPECT_TRUE(window.Dirs.Enabled() && window.cmdOk.Enabled());
        EXPECT_EQ(Rows(window), ".. Alpha beta stick ");
    });
}

} // namespace

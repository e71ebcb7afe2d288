// The export of the selected files, step by step, with its failures.
#include "browser/exportfiles.h"
#include "browser/form/formclose.h"
#include "browser/form/formcommands.h"
#include "browser/itemlist.h"
#include "catalogue/addfile.h"
#include "catalogue/adoclass.h"
#include "runtime/error.h"
#include "tests/browser/listselection.h"
#include "tests/metadata/faultyfiles.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/memorysettings.h"
#include "tests/support/mp3bytes.h"

#include <cerrno>
#include <filesystem>

namespace fs = std::filesystem;

namespace
{

// The real files, on a disk with as much room as the test sets.
class SmallDisk : public tests::FaultyFiles
{
public:
    SmallDisk() { platform::TheMachine().files = this; }
    ~SmallDisk() override { platform::TheMachine().files = &platform::SystemFiles(); }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    std::int64_t FreeBytes(const std::string &) override { return freeBytes; }

    std::int64_t freeBytes = 1'000'000'000;
};

class ExportTest : public tests::LibraryFixture
{
protected:
    ExportTest()
    {
        browser::ResetMainForm();
        fs::create_directories(Target());
    }
    ~ExportTest() override { browser::ResetMainForm(); }

    browser::MainForm &Form() { return browser::frmMain(); }
    std::string Target(const std::string &name = {}) const
    {
        return folder / (name.empty() ? "target" : "target/" + name);
    }
    static std::string Bytes(const std::string &name)
    {
        return tests::Id3v2(tests::TextFrame("TIT2", name)) + tests::Audio();
    }

    // Writes songs of these names, lists them in LV by path and selects all.
    void Listed(const std::vector<std::string> &names, ui::KeyedList *list = nullptr)
    {
        for (const std::string &name : names) {
            tests::WriteFile(Song(name), Bytes(name));
            std::string reason;
            catalogue::AddOrUpdateMP3(Song(name), reason);
        }
        ui::KeyedList &filled = list != nullptr ? *list : Form().LV;
        const auto records = catalogue::Records(catalogue::DataAccess->ExecuteSQL(
            "SELECT * FROM MP3s ORDER BY Path", catalogue::kSelect));
        ASSERT_TRUE(browser::FillItemList(filled, *records));
        tests::SelectAll(filled);
    }

    // Exports to the target; keeps what the folder window was started with.
    void Export()
    {
        browser::ExportFiles(Form(), browser::ExportList(Form()), [&](const std::string &start) {
            starts.push_back(start);
            return answer;
        });
    }

    // Checks that no export is running, as the form shows it.
    void ExpectAtRest()
    {
        EXPECT_FALSE(Form().exporting);
        EXPECT_TRUE(Form().TV.Enabled());
        EXPECT_TRUE(Form().LV.Enabled());
        EXPECT_FALSE(Form().PBar.Visible());
        EXPECT_EQ(Form().SB.Panel("Playing").text, "");
        EXPECT_EQ(Form().SB.Panel("Blank").text, "");
    }

    tests::MemorySettings settings;
    std::vector<std::string> starts;
    std::string answer = Target();
};

TEST_F(ExportTest, CopiesTheSelectedFilesInTheListsOrder)
{
    Listed({"a & b.mp3", "c.mp3", "d.mp3"});
    const ui::RowId ends[] = {0, 2};
    Form().LV.SetSelection(ends, 2);
    std::vector<std::string> seen;
    desktop.doEvents = [&] {
        if (!Form().PBar.Visible())
            return;
        EXPECT_FALSE(Form().TV.Enabled());
        EXPECT_FALSE(Form().LV.Enabled());
        EXPECT_EQ(Form().PBar.Max(), 2);
        seen.push_back(Form().SB.Panel("Playing").text + "|" + Form().SB.Panel("Blank").text + "|" +
                       std::to_string(Form().PBar.Value()));
        Form().LV.SetSelection({}, ui::kNoRow); // the export has its own copy of the paths
    };
    Export();
    EXPECT_EQ(seen, (std::vector<std::string>{"||0", "Exporting: a && b.mp3|0/2|1",
                                              "Exporting: d.mp3|1/2|2"}));
    EXPECT_EQ(tests::ReadFile(Target("a & b.mp3")), Bytes("a & b.mp3"));
    EXPECT_FALSE(fs::exists(Target("c.mp3")));
    EXPECT_EQ(tests::ReadFile(Target("d.mp3")), Bytes("d.mp3"));
    ExpectAtRest();
    EXPECT_EQ(Rows().size(), 3U); // the catalogue is as it was
    EXPECT_FALSE(Rows()[0].ends_with("1"));
}

TEST_F(ExportTest, TheLastTargetIsTheNextStart)
{
    Listed({"a.mp3"});
    Export();
    Export();
    answer.clear(); // cancelled
    Export();
    answer = Target();
    Export();
    EXPECT_EQ(starts, (std::vector<std::string>{"", Target(), Target(), ""}));
}

TEST_F(ExportTest, WithoutASelectionNothingIsCopied)
{
    Listed({"a.mp3"});
    Form().LV.SetSelection({}, ui::kNoRow);
    int shown = 0;
    desktop.doEvents = [&] { shown += Form().PBar.Visible() ? 1 : 0; };
    Export();
    EXPECT_EQ(shown, 1);
    EXPECT_TRUE(fs::is_empty(Target()));
    ExpectAtRest();
}

TEST_F(ExportTest, ASecondFileOfTheNameOverwritesTheFirst)
{
    fs::create_directories(Song("one"));
    fs::create_directories(Song("two"));
    Listed({"one/a.mp3", "two/a.mp3"});
    tests::WriteFile(Target("a.mp3"), "old");
    Export();
    EXPECT_EQ(tests::ReadFile(Target("a.mp3")), Bytes("two/a.mp3"));
    EXPECT_EQ(std::distance(fs::directory_iterator(Target()), {}), 1);
}

TEST_F(ExportTest, WorksOnTheSearchWindowsListWhileThatIsOpen)
{
    Listed({"a.mp3", "b.mp3"});
    ui::KeyedList found;
    Listed({}, &found);
    found.SelectOnly(1);
    Form().searchList = &found;
    desktop.doEvents = [&] { EXPECT_EQ(found.Enabled(), !Form().PBar.Visible()); };
    Export();
    Form().searchList = nullptr;
    EXPECT_FALSE(fs::exists(Target("a.mp3")));
    EXPECT_TRUE(fs::exists(Target("b.mp3")));
    EXPECT_TRUE(found.Enabled());
}

TEST_F(ExportTest, TheSearchWindowsListCanBeUsedAgainWhenItsWindowWasClosedMeanwhile)
{
    ui::KeyedList found;
    Listed({"a.mp3", "b.mp3"}, &found);
    Form().searchList = &found;
    desktop.doEvents = [&] { Form().searchList = nullptr; };
    Export();
    EXPECT_TRUE(fs::exists(Target("b.mp3")));
    EXPECT_TRUE(found.Enabled());
    EXPECT_EQ(&browser::ExportList(Form()), &Form().LV);
}

TEST_F(ExportTest, EscapeEndsItBetweenTwoFiles)
{
    Listed({"a.mp3", "b.mp3", "c.mp3"});
    desktop.doEvents = [&] {
        if (Form().exporting && Form().PBar.Value() == 2) {
            EXPECT_TRUE(browser::Form_KeyDown(Form(), 27, false));
        }
    };
    Export();
    EXPECT_TRUE(fs::exists(Target("b.mp3")));
    EXPECT_FALSE(fs::exists(Target("c.mp3")));
    ExpectAtRest();
    EXPECT_FALSE(browser::Form_KeyDown(Form(), 27, false)); // without an export Escape does nothing
}

TEST_F(ExportTest, ClosingTheWindowWaitsForTheFile)
{
    Listed({"a.mp3", "b.mp3"});
    int ended = 0;
    Form().calls.unloadForms = [&] { ++ended; };
    Form().calls.endProgram = [&] { ++ended; };
    desktop.doEvents = [&] {
        if (Form().exporting && Form().PBar.Value() == 1) {
            browser::CloseMainForm(Form());
            EXPECT_EQ(ended, 0);
        }
    };
    Export();
    EXPECT_EQ(ended, 2);
    EXPECT_TRUE(fs::exists(Target("a.mp3")));
    EXPECT_FALSE(fs::exists(Target("b.mp3")));
}

TEST_F(ExportTest, ASecondExportDoesNotStart)
{
    Listed({"a.mp3"});
    desktop.doEvents = [&] {
        if (Form().exporting)
            Export();
    };
    Export();
    EXPECT_EQ(starts.size(), 1U);
}

TEST_F(ExportTest, TheFirstFailureEndsIt)
{
    Listed({"a.mp3", "b.mp3", "c.mp3"});
    fs::remove(Song("b.mp3"));
    try {
        Export();
        ADD_FAILURE() << "no error";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kFileNotFound);
        EXPECT_TRUE(error.description.starts_with(Song("b.mp3"))) << error.description;
    }
    EXPECT_TRUE(fs::exists(Target("a.mp3")));
    EXPECT_FALSE(fs::exists(Target("c.mp3")));
    ExpectAtRest();
}

TEST_F(ExportTest, TheOriginalIsNeverItsOwnTarget)
{
    Listed({"a.mp3"});
    answer = Music();
    EXPECT_THROW(Export(), runtime::RuntimeError);
    EXPECT_EQ(tests::ReadFile(Song("a.mp3")), Bytes("a.mp3"));
    fs::create_directory_symlink(Music(), folder / "link");
    answer = folder / "link";
    EXPECT_THROW(Export(), runtime::RuntimeError);
    EXPECT_EQ(tests::ReadFile(Song("a.mp3")), Bytes("a.mp3"));
}

TEST_F(ExportTest, TooLittleRoomIsReportedBeforeTheFirstFile)
{
    Listed({"a.mp3", "b.mp3"});
    SmallDisk disk;
    const auto size = static_cast<std::int64_t>(Bytes("a.mp3").size());
    disk.freeBytes = 2 * size - 1;
    desktop.ExpectBox("There is too little room in " + Target() +
                      ": 0.1 MB are needed, 0.0 MB are free. Nothing was copied.");
    Export();
    EXPECT_TRUE(fs::is_empty(Target()));
    EXPECT_EQ(disk.calls, 0);
    disk.freeBytes = 2 * size;
    Export();
    EXPECT_TRUE(fs::exists(Target("b.mp3")));
    disk.freeBytes = 0; // replacing a file frees the room of the old one
    Export();
    EXPECT_EQ(desktop.boxes.size(), 1U);
    disk.freeBytes = -EIO; // the free room is not known: the copy is tried
    Export();
    EXPECT_EQ(desktop.boxes.size(), 1U);
}

// Each call that changes something fails once: a copy that has got its name is complete, any other
// does not exist or is the older one, and no other file is left in the target.
TEST_F(ExportTest, EveryFaultLeavesCompleteCopies)
{
    Listed({"a.mp3", "b.mp3"});
    for (int call = 1;; ++call) {
        SCOPED_TRACE(call);
        fs::remove_all(Target());
        fs::create_directories(Target());
        tests::WriteFile(Target("b.mp3"), "older");
        SmallDisk disk;
        disk.faultyCall = call;
        disk.reason = ENOSPC;
        std::string reported;
        try {
            Export();
        } catch (const runtime::RuntimeError &error) {
            reported = error.description;
        }
        ExpectAtRest();
        const std::size_t copied = disk.named.size();
        ASSERT_LE(copied, 2U);
        ASSERT_EQ(fs::exists(Target("a.mp3")), copied > 0);
        EXPECT_TRUE(copied == 0 || tests::ReadFile(Target("a.mp3")) == Bytes("a.mp3"));
        EXPECT_EQ(tests::ReadFile(Target("b.mp3")), copied == 2 ? Bytes("b.mp3") : "older");
        EXPECT_EQ(std::distance(fs::directory_iterator(Target()), {}), copied > 0 ? 2 : 1);
        const bool failed = disk.calls >= call && !disk.rightsFailed; // a copy may lack the rights
        EXPECT_EQ(reported.find(".mp3: ") != std::string::npos, failed) << reported;
        EXPECT_TRUE(failed || copied == 2U);
        if (disk.calls < call)
            break;
        ASSERT_LT(call, 60);
    }
    EXPECT_EQ(tests::ReadFile(Song("a.mp3")), Bytes("a.mp3"));
}

} // namespace

// The commands on one file, step by step, with their boxes and failures.
#include "browser/fieldtree.h"
#include "browser/filecommands.h"
#include "browser/form/formpopup.h"
#include "browser/itemlist.h"
#include "catalogue/addfile.h"
#include "catalogue/adoclass.h"
#include "catalogue/edittags.h"
#include "platform/posix/disk/systemfiles.h"
#include "runtime/error.h"
#include "shell/preferences/failuremail.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/memorysettings.h"
#include "tests/support/mp3bytes.h"

#include <cerrno>
#include <filesystem>

namespace fs = std::filesystem;

namespace
{

// The real files, where renaming can be made to fail and something can happen before it.
class RenamingFiles : public platform::posix::SystemFilesPort
{
public:
    RenamingFiles() { platform::TheMachine().files = this; }
    ~RenamingFiles() override { platform::TheMachine().files = &platform::SystemFiles(); }
    RenamingFiles(const RenamingFiles &) = delete;
    RenamingFiles &operator=(const RenamingFiles &) = delete;

    int RenameNew(const std::string &from, const std::string &to) override
    {
        ++calls;
        if (before)
            before();
        return calls == faultyCall ? reason : SystemFilesPort::RenameNew(from, to);
    }

    std::function<void()> before;
    int calls = 0, faultyCall = 0, reason = 0;
};

class FileCommandsTest : public tests::LibraryFixture
{
protected:
    FileCommandsTest() { browser::ResetMainForm(); }
    ~FileCommandsTest() override { browser::ResetMainForm(); }

    browser::MainForm &Form() { return browser::frmMain(); }

    static std::string Tagged(std::string_view title, std::string_view artist = "Artist")
    {
        return tests::Id3v2(tests::TextFrame("TIT2", title) + tests::TextFrame("TPE1", artist) +
                            tests::TextFrame("TCON", "(17)Rock")) +
               tests::Audio();
    }

    // Writes the song, adds it to the catalogue, lists all rows and selects the first.
    void Catalogued(const std::string &name, const std::string &bytes)
    {
        tests::WriteFile(Song(name), bytes);
        std::string reason;
        ASSERT_NE(catalogue::AddOrUpdateMP3(Song(name), reason), catalogue::kFailed) << reason;
        List();
    }

    void List()
    {
        const auto records = catalogue::Records(catalogue::DataAccess->ExecuteSQL(
            "SELECT * FROM MP3s ORDER BY Path", catalogue::kSelect));
        ASSERT_TRUE(browser::FillItemList(Form().LV, *records));
        if (Form().LV.Count() > 0)
            Form().LV.SelectOnly(0);
    }

    std::string ShownPath() { return browser::SelectedPath(Form().LV); }

    // Runs the command, which must fail with this number and a text that contains `part`.
    template <class Command>
    void ExpectError(int number, const std::string &part, Command command)
    {
        try {
            command();
            ADD_FAILURE() << "no error";
        } catch (const runtime::RuntimeError &error) {
            EXPECT_EQ(error.number, number);
            EXPECT_NE(error.description.find(part), std::string::npos) << error.description;
        }
    }

    tests::MemorySettings settings;
};

// --- Add File --------------------------------------------------------------------------------

TEST_F(FileCommandsTest, AddingANewFileRebuildsTheTree)
{
    settings.values["Quenlin/Preferences/MP3 Directory"] = Music();
    tests::WriteFile(Song("one.mp3"), Tagged("One"));
    browser::LoadTreeView(Form(), "");
    desktop.ExpectOpen("Select the MP3 file", Song("one.mp3"));
    browser::AddFile(Form());
    ASSERT_EQ(desktop.opens.size(), 1U);
    EXPECT_EQ(desktop.opens[0].folder, Music());
    ASSERT_EQ(desktop.opens[0].filters.size(), 1U);
    EXPECT_EQ(desktop.opens[0].filters[0].caption, "MP3 Files");
    EXPECT_EQ(desktop.opens[0].filters[0].pattern, "*.mp3");
    EXPECT_EQ(Rows(), std::vector<std::string>{"One|Artist||||Rock||~/one.mp3||0"});
    EXPECT_NE(Form().TV.Find("ByTitle"), ui::kNoNode);
    EXPECT_TRUE(desktop.boxes.empty());

    tests::WriteFile(Song("one.mp3"),
                     Tagged("Two")); // in the catalogue already: its row is updated
    desktop.ExpectOpen("Select the MP3 file", Song("one.mp3"));
    browser::AddFile(Form());
    EXPECT_EQ(Rows(), std::vector<std::string>{"Two|Artist||||17||~/one.mp3||0"});
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(FileCommandsTest, AddingWithoutAFileDoesNothing)
{
    for (const auto &answer : {std::optional<std::string>(), std::optional<std::string>("")}) {
        desktop.ExpectOpen("", answer);
        browser::AddFile(Form());
    }
    EXPECT_TRUE(Rows().empty());
}

TEST_F(FileCommandsTest, AddingAFileWithoutTagsShowsWhereItIsFound)
{
    tests::WriteFile(Song("bare.mp3"), tests::Audio());
    desktop.ExpectOpen("", Song("bare.mp3"));
    desktop.ExpectBox("");
    browser::AddFile(Form());
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(desktop.boxes[0].text, "No ID3's tags were found on '" + Song("bare.mp3") +
                                         "'\r\rThis means it will only be found on the path's "
                                         "node");
    EXPECT_EQ(desktop.boxes[0].icon, platform::BoxIcon::None);
    EXPECT_EQ(Rows(), std::vector<std::string>{"|||||||~/bare.mp3||0"});
}

TEST_F(FileCommandsTest, AFileThatCannotBeAddedIsMailed)
{
    const std::string gone = Song("gone.mp3");
    desktop.ExpectOpen("", gone);
    desktop.ExpectBox("", platform::Answer::Yes);
    desktop.ExpectInput("Please input as much", "I clicked\rtwice & more");
    browser::AddFile(Form());
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(desktop.boxes[0].text,
              "The file could not be added. If you think this is a bug, please\rsend me an email "
              "with the reason why it cannot be added\r\rWould you like to send me an email now?");
    ASSERT_EQ(desktop.inputs.size(), 1U);
    EXPECT_EQ(desktop.inputs[0].prompt, "Please input as much information as you can explaining "
                                        "what led you to this error");
    EXPECT_EQ(desktop.inputs[0].title, "What did you do?");
    const std::string report =
        shell::ComposeBugReport("I clicked\rtwice & more", "No such file or directory\r");
    EXPECT_EQ(desktop.clipboard, report);
    EXPECT_EQ(desktop.addresses, std::vector<std::string>{shell::BugReportAddress(report)});
}

TEST_F(FileCommandsTest, NoMailWithoutAWord)
{
    for (const auto &typed : {std::optional<std::string>(), std::optional<std::string>("")}) {
        desktop.boxes.clear();
        desktop.ExpectOpen("", Song("gone.mp3"));
        desktop.ExpectBox("could not be added", platform::Answer::Yes);
        desktop.ExpectInput("", typed);
        desktop.ExpectBox("");
        browser::AddFile(Form());
        ASSERT_EQ(desktop.boxes.size(), 2U);
        EXPECT_EQ(desktop.boxes[1].text,
                  "Sorry... You've enter no actions, I cannot guess what you've done\rto get this "
                  "error. If you want me to analyse it you should input what\ryou've done.");
        EXPECT_EQ(desktop.boxes[1].title, "No actions");
        EXPECT_EQ(desktop.boxes[1].icon, platform::BoxIcon::Exclamation);
    }
    desktop.ExpectOpen("", Song("gone.mp3"));
    desktop.ExpectBox("could not be added", platform::Answer::No);
    browser::AddFile(Form());
    EXPECT_TRUE(desktop.addresses.empty());
}

// --- Duplicate entry -------------------------------------------------------------------------

TEST_F(FileCommandsTest, ADuplicateIsASecondRowThatKeepsItsArtist)
{
    Catalogued("one.mp3", Tagged("One", "Se\xF1or"));
    desktop.ExpectInput("Type the names of the artists", "Both? & 'all'");
    desktop.ExpectBox("");
    browser::DuplicateEntry(Form().LV);
    EXPECT_EQ(desktop.inputs[0].title, "Artist' Names");
    EXPECT_EQ(desktop.inputs[0].initialText, "Señor");
    EXPECT_EQ(desktop.boxes[0].text, "The MP3 was duplicated correctly");
    EXPECT_EQ(desktop.boxes[0].title, "Success");
    EXPECT_EQ(Rows(), (std::vector<std::string>{"One|Señor||||Rock||~/one.mp3||0",
                                                "One|Both? & 'all'||||Rock||~/one.mp3||1"}));
    metadata::ID3v2Tag tag;
    tag.Title = "New";
    tag.Artist = "Other";
    tag.Genre = "17";
    catalogue::UpdateEditedTags(tag, Song("one.mp3"));
    EXPECT_EQ(Rows(), (std::vector<std::string>{"New|Other||||Rock||~/one.mp3||0",
                                                "New|Both? & 'all'||||Rock||~/one.mp3||1"}));
}

TEST_F(FileCommandsTest, ADuplicateOfAFirstTagAlone)
{
    Catalogued("one.mp3",
               tests::Audio() + tests::Id3v1({"One", "Artist", "Album", "1999", "Words", 3, 17}));
    desktop.ExpectInput("", "Artist");
    desktop.ExpectBox("correctly");
    browser::DuplicateEntry(Form().LV);
    EXPECT_EQ(Rows(), (std::vector<std::string>{"One|Artist|Album|1999|Words|Rock||~/one.mp3||0",
                                                "One|Artist|Album|1999|Words|Rock||~/one.mp3||1"}));
}

TEST_F(FileCommandsTest, ACancelledDuplicateLeavesNothing)
{
    Catalogued("one.mp3", Tagged("One"));
    for (const auto &answer : {std::optional<std::string>(), std::optional<std::string>("")}) {
        desktop.ExpectInput("", answer);
        browser::DuplicateEntry(Form().LV);
    }
    EXPECT_EQ(Rows().size(), 1U);
    EXPECT_TRUE(desktop.boxes.empty());
    Form().LV.ClearRows();
    browser::DuplicateEntry(Form().LV); // nothing selected: nothing asked
}

TEST_F(FileCommandsTest, ADuplicateThatFailsIsReported)
{
    Catalogued("one.mp3", Tagged("One"));
    catalogue::DataAccess->DataBaseName = "none";
    desktop.ExpectInput("", "Artist");
    desktop.ExpectBox("The MP3 could not be duplicated.\r\rReason:\r");
    browser::DuplicateEntry(Form().LV);
    EXPECT_EQ(desktop.boxes[0].title, "Error");
    EXPECT_FALSE(desktop.boxes[0].text.ends_with("Reason:\r"));
}

TEST_F(FileCommandsTest, AFileThatVanishedIsNotDuplicated)
{
    Catalogued("one.mp3", Tagged("One"));
    fs::remove(Song("one.mp3"));
    ExpectError(runtime::kFileNotFound, Song("one.mp3"),
                [&] { browser::DuplicateEntry(Form().LV); });
    EXPECT_EQ(Rows().size(), 1U);
}

// From the popup of the search window it works on that window's list, from the menu on the main
// one.
TEST_F(FileCommandsTest, InstalledTheyRunByName)
{
    browser::InstallFileCommands();
    for (const char *name :
         {"submnuAddFile", "submnuDuplicateEntry", "submnuRename", "submnuExport", "cp_Export"})
        EXPECT_TRUE(browser::CanRun(name)) << name;
    Catalogued("one.mp3", Tagged("One", "First"));
    Catalogued("two.mp3", Tagged("Two", "Second"));
    ui::KeyedList found;
    const auto records = catalogue::Records(
        catalogue::DataAccess->ExecuteSQL("SELECT * FROM MP3s ORDER BY Path", catalogue::kSelect));
    ASSERT_TRUE(browser::FillItemList(found, *records));
    found.SelectOnly(1);
    Form().searchList = &found;
    Form().PopupFromSearch = true;
    for (int i = 0; i < 2; ++i)
        desktop.ExpectInput("names of the artists", std::nullopt);
    browser::ClickPopup(Form(), "Duplicate");
    browser::RunHandler("submnuDuplicateEntry");
    ASSERT_EQ(desktop.inputs.size(), 2U);
    EXPECT_EQ(desktop.inputs[0].initialText, "Second");
    EXPECT_EQ(desktop.inputs[1].initialText, "First");
    Form().searchList = nullptr;
}

// --- Rename ----------------------------------------------------------------------------------

TEST_F(FileCommandsTest, RenamingMovesFileRowsAndItem)
{
    Catalogued("one.mp3", Tagged("One"));
    desktop.ExpectInput("", "Both");
    desktop.ExpectBox("correctly");
    browser::DuplicateEntry(Form().LV);
    desktop.inputs.clear();
    desktop.ExpectInput("Type the name of the new file", "what? & 'it' ñ");
    browser::RenameFile(Form());
    EXPECT_EQ(desktop.inputs[0].title, "New Name");
    EXPECT_EQ(desktop.inputs[0].initialText, "one.mp3");
    EXPECT_FALSE(fs::exists(Song("one.mp3")));
    EXPECT_EQ(tests::ReadFile(Song("what? & 'it' ñ")), Tagged("One"));
    EXPECT_EQ(Rows(), (std::vector<std::string>{"One|Artist||||Rock||~/what? & 'it' ñ||0",
                                                "One|Both||||Rock||~/what? & 'it' ñ||1"}));
    EXPECT_EQ(ShownPath(), Song("what? & 'it' ñ"));
}

TEST_F(FileCommandsTest, ANameWithASeparatorMovesTheFile)
{
    fs::create_directories(Song("sub"));
    Catalogued("one.mp3", Tagged("One"));
    desktop.ExpectInput("", "sub/two.mp3");
    browser::RenameFile(Form());
    EXPECT_TRUE(fs::exists(Song("sub/two.mp3")));
    EXPECT_EQ(Rows(), std::vector<std::string>{"One|Artist||||Rock||~/sub/two.mp3||0"});
    desktop.ExpectInput("", "none/two.mp3");
    ExpectError(runtime::kFileNotFound, Song("sub/none/two.mp3"),
                [&] { browser::RenameFile(Form()); });
    EXPECT_EQ(Rows(), std::vector<std::string>{"One|Artist||||Rock||~/sub/two.mp3||0"});
    EXPECT_EQ(ShownPath(), Song("sub/two.mp3"));
}

TEST_F(FileCommandsTest, NoNameOrTheSameOneChangesNothing)
{
    Catalogued("one.mp3", Tagged("One"));
    for (const auto &answer : {std::optional<std::string>(), std::optional<std::string>(""),
                               std::optional<std::string>("one.mp3")}) {
        desktop.ExpectInput("", answer);
        browser::RenameFile(Form());
    }
    EXPECT_EQ(tests::ReadFile(Song("one.mp3")), Tagged("One"));
    EXPECT_EQ(ShownPath(), Song("one.mp3"));
}

TEST_F(FileCommandsTest, WhatHasThatNameIsNeverOverwritten)
{
    Catalogued("one.mp3", Tagged("One"));
    tests::WriteFile(Song("two.mp3"), "theirs");
    desktop.ExpectInput("", "two.mp3");
    ExpectError(runtime::kFileExists, Song("two.mp3"), [&] { browser::RenameFile(Form()); });
    RenamingFiles files;
    files.before = [&] { tests::WriteFile(Song("three.mp3"), "just made"); };
    desktop.ExpectInput("", "three.mp3");
    ExpectError(runtime::kFileExists, Song("three.mp3"), [&] { browser::RenameFile(Form()); });
    EXPECT_EQ(tests::ReadFile(Song("one.mp3")), Tagged("One"));
    EXPECT_EQ(tests::ReadFile(Song("two.mp3")), "theirs");
    EXPECT_EQ(tests::ReadFile(Song("three.mp3")), "just made");
    EXPECT_EQ(Rows(), std::vector<std::string>{"One|Artist||||Rock||~/one.mp3||0"});
}

// On a file system that ignores letter case, the new name exists already: it is the file itself.
TEST_F(FileCommandsTest, AnotherLetterCaseOfTheSameFileIsAPlainRename)
{
    Catalogued("one.mp3", Tagged("One"));
    RenamingFiles files;
    files.faultyCall = 1;
    files.reason = EEXIST;
    files.before = [&] {
        if (!fs::exists(Song("ONE.mp3")))
            fs::create_hard_link(Song("one.mp3"), Song("ONE.mp3")); // as such a system shows it
    };
    desktop.ExpectInput("", "ONE.mp3");
    browser::RenameFile(Form());
    EXPECT_EQ(Rows(), std::vector<std::string>{"One|Artist||||Rock||~/ONE.mp3||0"});
    EXPECT_EQ(ShownPath(), Song("ONE.mp3"));
}

TEST_F(FileCommandsTest, AFailedStatementGivesTheFileItsOldNameBack)
{
    Catalogued("one.mp3", Tagged("One"));
    catalogue::DataAccess->DataBaseName = "none";
    desktop.ExpectInput("", "two.mp3");
    desktop.ExpectBox("");
    browser::RenameFile(Form());
    EXPECT_FALSE(desktop.boxes[0].text.empty());
    EXPECT_EQ(tests::ReadFile(Song("one.mp3")), Tagged("One"));
    EXPECT_FALSE(fs::exists(Song("two.mp3")));
    EXPECT_EQ(ShownPath(), Song("one.mp3"));

    RenamingFiles files; // when that fails too, the box reports both
    files.faultyCall = 2;
    files.reason = EROFS;
    desktop.ExpectInput("", "two.mp3");
    desktop.ExpectBox("");
    ExpectError(runtime::kPathFileAccess, Song("two.mp3"), [&] { browser::RenameFile(Form()); });
    EXPECT_TRUE(fs::exists(Song("two.mp3")));
}

TEST_F(FileCommandsTest, AFailedRenameLeavesTheCatalogue)
{
    Catalogued("one.mp3", Tagged("One"));
    for (const int reason : {EROFS, EACCES, ENOSPC, EIO}) {
        RenamingFiles files;
        files.faultyCall = 1;
        files.reason = reason;
        desktop.ExpectInput("", "two.mp3");
        ExpectError(runtime::FileError(reason).number, Song("one.mp3"),
                    [&] { browser::RenameFile(Form()); });
    }
    fs::remove(Song("one.mp3"));
    desktop.ExpectInput("", "two.mp3");
    ExpectError(runtime::kFileNotFound, Song("one.mp3"), [&] { browser::RenameFile(Form()); });
    EXPECT_EQ(Rows(), std::vector<std::string>{"One|Artist||||Rock||~/one.mp3||0"});
}

// The list was filled again while the name was asked for: no other row gets the path.
TEST_F(FileCommandsTest, OnlyTheRowOfTheFileGetsThePath)
{
    Catalogued("one.mp3", Tagged("One"));
    Catalogued("two.mp3", Tagged("Two"));
    RenamingFiles files;
    files.before = [&] {
        const auto records = catalogue::Records(catalogue::DataAccess->ExecuteSQL(
            "SELECT * FROM MP3s ORDER BY Path DESC", catalogue::kSelect));
        ASSERT_TRUE(browser::FillItemList(Form().LV, *records));
    };
    desktop.ExpectInput("", "three.mp3");
    browser::RenameFile(Form());
    EXPECT_EQ(Form().LV.SubItem(Form().LV.Find("/0"), "Path"), Song("two.mp3"));
    EXPECT_EQ(Rows().size(), 2U);
    EXPECT_TRUE(fs::exists(Song("three.mp3")));
}

} // namespace

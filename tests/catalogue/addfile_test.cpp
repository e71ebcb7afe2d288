#include "catalogue/addfile.h"
#include "catalogue/adoclass.h"
#include "catalogue/rowgroups.h"
#include "catalogue/sqlite/opengroup.h"
#include "runtime/codepage.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "tests/support/fulldisk.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <utility>

using catalogue::AddOrUpdateMP3;
using RowList = std::vector<std::string>;

namespace
{

std::string TwoTags(std::string_view title, std::string_view genre = "(17)")
{
    return tests::Id3v2(tests::TextFrame("TIT2", title) + tests::TextFrame("TPE1", "Artist") +
                        tests::TextFrame("TCON", genre)) +
           tests::Audio() + tests::Id3v1({.title = title, .artist = "Artist", .genre = 17});
}

struct AddFile : tests::LibraryFixture {
    std::string reason = "untouched";

    std::int16_t Add(const std::string &name) { return AddOrUpdateMP3(Song(name), reason); }
    std::int16_t Add(const std::string &name, std::string_view bytes)
    {
        tests::WriteFile(Song(name), bytes);
        return Add(name);
    }
};

TEST_F(AddFile, AddsThenUpdates)
{
    EXPECT_EQ(Add("a.mp3", TwoTags("One")), catalogue::kAdded);
    EXPECT_EQ(shell::TheGlobals().lblProgress.Caption(), "Adding new MP3...");
    EXPECT_EQ(Rows(), (RowList{"One|Artist||||Rock||~/a.mp3||0"}));
    EXPECT_EQ(Add("a.mp3", TwoTags("Two")), catalogue::kUpdated);
    EXPECT_EQ(shell::TheGlobals().lblProgress.Caption(), "Updating data...");
    EXPECT_EQ(Rows(), (RowList{"Two|Artist||||17||~/a.mp3||0"}))
        << "an update takes the genre as it stands in the tag";
    EXPECT_EQ(reason, "untouched");
}

TEST_F(AddFile, OfTwoTagsID3v2IsTaken)
{
    EXPECT_EQ(Add("a.mp3", tests::Id3v2(tests::TextFrame("TIT2", "Two")) + tests::Audio() +
                               tests::Id3v1({.title = "One", .artist = "One", .genre = 17})),
              catalogue::kAdded);
    EXPECT_EQ(Rows(), (RowList{"Two|||||"
                               "||~/a.mp3||0"}));
}

TEST_F(AddFile, ProgressInAnotherLanguage)
{
    shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
    tests::WriteFile(folder / "x.qlt", "[Progress]\nAddingNewMP3=Neu\nUpdatingData=Bekannt\n");
    EXPECT_EQ(Add("a.mp3", TwoTags("One")), catalogue::kAdded);
    EXPECT_EQ(shell::TheGlobals().lblProgress.Caption(), "Neu");
    EXPECT_EQ(Add("a.mp3"), catalogue::kUpdated);
    EXPECT_EQ(shell::TheGlobals().lblProgress.Caption(), "Bekannt");
}

TEST_F(AddFile, ID3v1AloneHasItsGenreNameFirstAndItsNumberLater)
{
    const std::string bytes = tests::Audio() + tests::Id3v1({.title = "Old",
                                                             .artist = "Who",
                                                             .album = "Where",
                                                             .year = "1999",
                                                             .comment = "Why",
                                                             .track = 3,
                                                             .genre = 13});
    EXPECT_EQ(Add("old.mp3", bytes), catalogue::kAdded);
    EXPECT_EQ(Rows(), (RowList{"Old|Who|Where|1999|Why|Pop||~/old.mp3||0"}));
    EXPECT_EQ(Add("old.mp3"), catalogue::kUpdated);
    EXPECT_EQ(Rows(), (RowList{"Old|Who|Where|1999|Why|13||~/old.mp3||0"}));
}

TEST_F(AddFile, BlanksOfAnID3v1TagStay)
{
    EXPECT_EQ(Add("b.mp3", tests::Audio() + tests::Id3v1({.title = "Padded  ", .genre = 255})),
              catalogue::kAdded);
    EXPECT_EQ(Rows(), (RowList{"Padded  |||||"
                               "||~/b.mp3||0"}));
}

// The blanks of a comment are before the layout's zero byte, so they are not trimmed.
TEST_F(AddFile, BlanksThatPadAnID3v1TagGoButForTheComments)
{
    const std::string title = "Padded" + std::string(24, ' ');
    const std::string artist = "Artist" + std::string(24, ' ');
    const std::string bytes =
        tests::Audio() + tests::Id3v1({.title = title,
                                       .artist = artist,
                                       .album = "",
                                       .year = "99  ",
                                       .comment = "Remark                      "});
    EXPECT_EQ(Add("p.mp3", bytes), catalogue::kAdded);
    EXPECT_EQ(Rows(), (RowList{"Padded|Artist||99|Remark                      "
                               "|||~/p.mp3||0"}));
}

TEST_F(AddFile, UntaggedFileIsAddedWithEmptyValuesAndReported)
{
    EXPECT_EQ(Add("none.mp3", tests::Audio()), catalogue::kUntagged);
    EXPECT_EQ(reason, "No ID3's tags were found on '" + Song("none.mp3") + "'\r");
    EXPECT_EQ(Rows(), (RowList{"||||||"
                               "|~/none.mp3||0"}));
}

TEST_F(AddFile, KnownFileThatLostItsTagsIsBlanked)
{
    EXPECT_EQ(Add("a.mp3", TwoTags("One")), catalogue::kAdded);
    EXPECT_EQ(Add("a.mp3", tests::Audio()), catalogue::kUpdated);
    EXPECT_EQ(reason, "No ID3's tags were found on '" + Song("a.mp3") + "'\r");
    EXPECT_EQ(Rows(), (RowList{"||||||"
                               "|~/a.mp3||0"}));
}

TEST_F(AddFile, NoReadableFileTouchesNoRow)
{
    EXPECT_EQ(Add("a.mp3", TwoTags("One")), catalogue::kAdded);
    std::filesystem::remove(Song("a.mp3"));
    std::filesystem::create_directory(Song("folder.mp3"));
    ASSERT_EQ(mkfifo(Song("pipe.mp3").c_str(), 0600), 0);
    EXPECT_EQ(Add("a.mp3"), catalogue::kFailed);
    EXPECT_EQ(reason, "No such file or directory\r");
    EXPECT_EQ(Add("folder.mp3"), catalogue::kFailed);
    EXPECT_EQ(reason, "Is a directory\r");
    EXPECT_EQ(Add("pipe.mp3"), catalogue::kFailed) << "a pipe is not waited for";
    EXPECT_EQ(Rows(), (RowList{"One|Artist||||Rock||~/a.mp3||0"}));
}

TEST_F(AddFile, OddPathsGoInAndAreFoundAgain)
{
    const RowList names = {
        "it's.mp3",        "two''.mp3", "qu\"ote.mp3",   "line\nbreak.mp3", "100%.mp3",
        "under_score.mp3", "what?.mp3", "latin\xE9.mp3", "caf\xC3\xA9.mp3", "; DROP TABLE MP3s.mp3",
        "[x].mp3"};
    for (const std::string &name : names) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Add(name, TwoTags("T")), catalogue::kAdded) << reason;
        EXPECT_EQ(Add(name), catalogue::kUpdated) << reason;
    }
    RowList wanted;
    for (const std::string &name : names)
        wanted.push_back("T|Artist||||17||~/" + name + "||0");
    EXPECT_EQ(Rows(), wanted);
}

TEST_F(AddFile, TextsOfTagsGoInUnharmed)
{
    const RowList titles = {"What? Who?", "Select All",   "Insert Coin", "It's 50% _off_",
                            "a\r\nb",     "', '', 0) --", "#1#"};
    for (const std::string &title : titles) {
        SCOPED_TRACE(title);
        EXPECT_EQ(Add("a.mp3", TwoTags(title)), catalogue::kAdded) << reason;
        EXPECT_EQ(Rows(), (RowList{title + "|Artist||||Rock||~/a.mp3||0"}));
        EXPECT_EQ(Add("a.mp3"), catalogue::kUpdated) << reason;
        EXPECT_EQ(Rows(), (RowList{title + "|Artist||||17||~/a.mp3||0"}));
        catalogue::DataAccess->ExecuteSQL("DELETE FROM MP3s", catalogue::kDetect);
    }
}

TEST_F(AddFile, FileBytesBecomeText)
{
    EXPECT_EQ(Add("a.mp3", TwoTags("Caf\xE9 \x80")), catalogue::kAdded);
    EXPECT_EQ(Rows(), (RowList{"Caf\xC3\xA9 \xE2\x82\xAC|Artist||||Rock||~/a.mp3||0"}));
}

// 0xB9 is the marker in the code page.
TEST_F(AddFile, MarkerInATagIsText)
{
    EXPECT_EQ(Add("a.mp3", TwoTags("x\xB9y\xB9")), catalogue::kAdded);
    EXPECT_EQ(Rows(), (RowList{"x¹y¹|Artist||||Rock||~/a.mp3||0"}));
    EXPECT_EQ(Add("a.mp3"), catalogue::kUpdated);
    EXPECT_EQ(Rows(), (RowList{"x¹y¹|Artist||||17||~/a.mp3||0"}));
    EXPECT_EQ(reason, "untouched");
}

TEST_F(AddFile, TheTextOfATagIsNeverRun)
{
    const RowList titles = {
        "\xB9, '', '', '', '', '', '', '/forged.mp3', '', 0), ('forged",
        "\xB9 || (WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
        "SELECT max(i) FROM n) || \xB9",
        "\xB9'; DELETE FROM MP3s; --"};
    for (const std::string &title : titles) {
        SCOPED_TRACE(title);
        catalogue::DataAccess->ExecuteSQL("DELETE FROM MP3s", catalogue::kDetect);
        EXPECT_EQ(Add("a.mp3", TwoTags(title)), catalogue::kAdded) << reason;
        EXPECT_EQ(Rows(), (RowList{runtime::TextOfBytes(title) + "|Artist||||Rock||~/a.mp3||0"}));
    }
}

TEST_F(AddFile, MarkerInAPathIsText)
{
    drives.type = platform::DriveType::CdRom;
    EXPECT_EQ(Add("x\xC2\xB9?.mp3", TwoTags("One")), catalogue::kAdded) << reason;
    EXPECT_EQ(Rows(), (RowList{"One|Artist||||Rock||~/x¹?.mp3|LABEL|0"}));
}

// The row is inserted and updated in one step: when the update fails, there is no row.
TEST_F(AddFile, RowThatCannotBeBroughtToItsValuesIsNotThere)
{
    sqlite3 *db = nullptr;
    ASSERT_EQ(sqlite3_open((folder / "app/MP3s.mdb").c_str(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db,
                           "CREATE TRIGGER frozen BEFORE UPDATE ON MP3s "
                           "BEGIN SELECT raise(ABORT, 'it is frozen'); END",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(db);
    EXPECT_EQ(Add("a.mp3", TwoTags("x\xB9y")), catalogue::kFailed);
    EXPECT_EQ(reason, "Error: it is frozen\r\tEdit1");
    EXPECT_EQ(Rows(), RowList{});
    EXPECT_EQ(Add("b.mp3", TwoTags("One")), catalogue::kAdded);
    EXPECT_EQ(Rows(), (RowList{"One|Artist||||Rock||~/b.mp3||0"}));
}

// An event after the step runs a statement, which commits the group, and the disk is full.
TEST_F(AddFile, RowThatIsLostRightAfterItsStepIsReported)
{
    tests::WriteFile(Song("a.mp3"), TwoTags("One"));
    std::vector<catalogue::AddOutcome> outcomes;
    const auto note = [&](const catalogue::AddOutcome &outcome) { outcomes.push_back(outcome); };
    constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();
    const auto limits = std::exchange(catalogue::TheGroupLimits(), {kNever, kNever});
    {
        catalogue::RowGroups groups;
        std::optional<tests::FullDisk> disk;
        desktop.doEvents = [&] {
            desktop.doEvents = {};
            disk.emplace(1000);
            catalogue::CloseOpenGroup();
        };
        catalogue::AddInGroup(Song("a.mp3"), groups, note);
        ASSERT_EQ(outcomes.size(), 1U);
        disk.reset();
        catalogue::AddInGroup(Song("a.mp3"), groups, note);
        EXPECT_EQ(outcomes.size(), 1U) << "not before it is true";
        catalogue::AddInGroup(Song("absent.mp3"), groups, note);
        EXPECT_EQ(outcomes.size(), 1U) << "and in their order";
    }
    catalogue::TheGroupLimits() = limits;
    ASSERT_EQ(outcomes.size(), 3U);
    EXPECT_EQ(outcomes[0].result, catalogue::kFailed);
    EXPECT_TRUE(outcomes[0].rowLost);
    EXPECT_TRUE(outcomes[0].reason.starts_with("Error: ")) << outcomes[0].reason;
    EXPECT_EQ(outcomes[1].result, catalogue::kAdded);
    EXPECT_EQ(outcomes[2].reason, "No such file or directory\r");
    EXPECT_FALSE(outcomes[2].rowLost);
    EXPECT_EQ(Rows(), (RowList{"One|Artist||||Rock||~/a.mp3||0"}));
}

TEST_F(AddFile, LongTextsAreCutButForTheLyrics)
{
    const std::string text(40000, 'x');
    EXPECT_EQ(
        Add("a.mp3", tests::Id3v2(tests::TextFrame("TIT2", text) + tests::TextFrame("TCON", text) +
                                  tests::Frame("USLT", std::string(1, '\0') + "eng" +
                                                           std::string(1, '\0') + text)) +
                         tests::Audio()),
        catalogue::kAdded);
    const std::string kept(32767, 'x');
    EXPECT_EQ(Rows(), (RowList{kept + "|||||" + kept + "|" + text + "|~/a.mp3||0"}));
    EXPECT_EQ(Add("a.mp3"), catalogue::kUpdated);
    EXPECT_EQ(Rows(), (RowList{kept + "|||||" + kept + "|" + text + "|~/a.mp3||0"}));
}

// The failure decides the result, but the later steps run: the row is added without its label.
TEST_F(AddFile, ADiskThatCannotBeAskedFailsAndTheRowIsWritten)
{
    struct : tests::FakeDrives {
        platform::DriveType TypeOf(const std::string & /*drive*/) override
        {
            throw runtime::RuntimeError(runtime::kDeviceIoError);
        }
    } failing;
    EXPECT_EQ(Add("a.mp3", TwoTags("One")), catalogue::kFailed);
    EXPECT_EQ(reason, "untouched");
    EXPECT_EQ(Rows(), (RowList{"One|Artist||||Rock||~/a.mp3||0"}));
}

TEST_F(AddFile, OnlyOtherThanFixedDisksGiveTheirLabel)
{
    drives.type = platform::DriveType::CdRom;
    EXPECT_EQ(Add("cd.mp3", TwoTags("One")), catalogue::kAdded);
    drives.label = "ANOTHER";
    EXPECT_EQ(Add("cd.mp3"), catalogue::kUpdated);
    EXPECT_EQ(Rows(), (RowList{"One|Artist||||17||~/cd.mp3|LABEL|0"})) << "the old label stays";
}

TEST_F(AddFile, UpdateKeepsTheArtistOfDuplicates)
{
    EXPECT_EQ(Add("a.mp3", TwoTags("One")), catalogue::kAdded);
    catalogue::DataAccess->ExecuteSQL(
        "AddMP3", catalogue::kStoredInsert,
        std::vector<catalogue::Value>{std::string("One"), std::string("Mine"), std::string(),
                                      std::string(), std::string(), std::string("Rock"),
                                      std::string(), Song("a.mp3"), std::int64_t{1}});
    EXPECT_EQ(Add("a.mp3", TwoTags("Two")), catalogue::kUpdated);
    EXPECT_EQ(Rows(), (RowList{"Two|Artist||||17||~/a.mp3||0", "Two|Mine||||17||~/a.mp3||1"}));
}

TEST_F(AddFile, LookUpThatBreaksOffAddsNoSecondRow)
{
    EXPECT_EQ(Add("a.mp3", TwoTags("One")), catalogue::kAdded);
    const tests::FailingPointer failing;
    EXPECT_EQ(Add("a.mp3", TwoTags("Two")), catalogue::kFailed);
    EXPECT_FALSE(failing.armed);
    EXPECT_TRUE(catalogue::DataAccess->Succeeded) << "no statement failed";
    EXPECT_EQ(reason, "untouched");
    EXPECT_EQ(Rows(), (RowList{"One|Artist||||Rock||~/a.mp3||0"}));
}

TEST_F(AddFile, FailedLookUpAddsNothing)
{
    tests::WriteFile(Song("a.mp3"), TwoTags("One"));
    catalogue::DataAccess->DataBaseName = "Absent";
    EXPECT_EQ(Add("a.mp3"), catalogue::kFailed);
    EXPECT_EQ(reason, catalogue::DataAccess->ErrorMessage);
    EXPECT_NE(reason, "");
    EXPECT_FALSE(std::filesystem::exists(folder / "app/Absent.mdb"));
}

} // namespace

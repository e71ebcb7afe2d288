// Reading a song into the catalogue while it is edited does not leave its old tags there.
#include "catalogue/addfile.h"
#include "catalogue/adoclass.h"
#include "catalogue/edittags.h"
#include "catalogue/regeneration.h"
#include "catalogue/rowgroups.h"
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "shell/globals.h"
#include "tests/catalogue/regenerationfixture.h"
#include "tests/metadata/countedfiles.h"

#include <cstdint>
#include <filesystem>
#include <functional>

using catalogue::AddOrUpdateMP3;
using tests::RowList;

namespace
{

struct EditedRows : tests::LibraryFixture {
    EditedRows()
    {
        metadata::TheTagWriterHooks() = {};
        metadata::TheTagWriterHooks().updateCatalogue = catalogue::UpdateEditedTags;
        metadata::TheTagWriterHooks().settleCatalogue = catalogue::UpdateEditedTags;
        tests::WriteFile(Song("a.mp3"), tests::Tagged("Old"));
        shell::TheGlobals().BackUpFiles = false;
    }
    ~EditedRows() override { metadata::TheTagWriterHooks() = {}; }

    void SaveTitle(const std::string &title) const
    {
        const metadata::SongInfo old = metadata::ReadSongInfo(Song("a.mp3"));
        metadata::SongInfo song = old;
        song.id3v2.Title = title;
        EXPECT_TRUE(metadata::SaveTag(song.id3v1, song.id3v2, old.id3v1, old.id3v2, Song("a.mp3"),
                                      true, true, nullptr));
    }

    std::string Title() const
    {
        const RowList rows = Rows();
        EXPECT_EQ(rows.size(), 1U);
        return rows.empty() ? "" : rows[0].substr(0, rows[0].find('|'));
    }
};

TEST_F(EditedRows, RowThatAReaderWroteBackIsSettledAgain)
{
    for (const bool isKnown : {false, true}) {
        SCOPED_TRACE(isKnown);
        std::string reason;
        if (isKnown) {
            EXPECT_EQ(AddOrUpdateMP3(Song("a.mp3"), reason), catalogue::kUpdated);
        }
        int readers = 0;
        metadata::TheTagWriterHooks().releasePlayingFile =
            [&](const std::string &path, std::int32_t &, std::int32_t &) -> std::string {
            readers++; // another program, between the row's update and the rename
            EXPECT_NE(AddOrUpdateMP3(path, reason), catalogue::kFailed);
            return {};
        };
        SaveTitle(isKnown ? "Newer" : "New");
        EXPECT_EQ(readers, 1);
        EXPECT_EQ(Title(), isKnown ? "Newer" : "New");
    }
}

TEST_F(EditedRows, NothingIsSettledWhereTheCatalogueIsLeftAlone)
{
    shell::TheGlobals().UpdateDBAfterEditing = false;
    std::string reason;
    EXPECT_EQ(AddOrUpdateMP3(Song("a.mp3"), reason), catalogue::kAdded);
    SaveTitle("New");
    EXPECT_EQ(Title(), "Old");
}

// A desktop during whose pointer changes the song is edited.
struct EditingDesktop : tests::ScriptedDesktop {
    void SetPointer(platform::Pointer wanted) override
    {
        ScriptedDesktop::SetPointer(wanted);
        if (edit && edits > 0) {
            edits--;
            edit();
        }
    }
    std::function<void()> edit;
    int edits = 0;
};

TEST_F(EditedRows, SongThatChangesBetweenItsReadingAndItsRowIsReadAgain)
{
    EditingDesktop editing;
    int number = 0;
    editing.edit = [&] {
        tests::WriteFile(Song("new"), tests::Tagged("Edit " + std::to_string(++number)));
        std::filesystem::rename(Song("new"), Song("a.mp3"));
    };
    editing.edits = 2;
    std::string reason;
    EXPECT_EQ(AddOrUpdateMP3(Song("a.mp3"), reason), catalogue::kAdded);
    EXPECT_EQ(Title(), "Edit 2");
    editing.edits = 100; // a song that changes all the time is not read without end
    EXPECT_EQ(AddOrUpdateMP3(Song("a.mp3"), reason), catalogue::kUpdated);
    EXPECT_LT(number, 20);
}

// Drives that count how often they are asked for a label.
struct CountedDrives : tests::FakeDrives {
    CountedDrives() { type = platform::DriveType::Removable; }
    std::string LabelOf(const std::string &drive) override
    {
        labels++;
        return FakeDrives::LabelOf(drive);
    }
    int labels = 0;
};

std::uint64_t GroupsSoFar()
{
    return catalogue::RowStep(*catalogue::DataAccess).GroupNo();
}

// Only when the row of the file is the first of a group can another program have changed the
// catalogue after the file was read.
TEST_F(EditedRows, AFileOfAWalkIsOpenedOnceAndAskedAboutOnceAGroup)
{
    for (int number = 0; number < 30; number++)
        tests::WriteFile(Song(std::to_string(number) + ".mp3"), tests::Tagged("x"));
    CountedDrives counted;
    tests::CountedFiles files;
    platform::TheMachine().files = &files;
    metadata::ResetMP3Info();
    const std::uint64_t before = GroupsSoFar();
    catalogue::ListRefresh(false);
    const auto groups = static_cast<int>(GroupsSoFar() - before);
    platform::TheMachine().files = &platform::SystemFiles();
    metadata::ResetMP3Info();
    EXPECT_EQ(Rows().size(), 31U);
    EXPECT_EQ(Rows()[30], "Old|||||Pop||~/a.mp3|LABEL|0");
    EXPECT_EQ(files.opens, 31);
    EXPECT_GT(groups, 0);
    EXPECT_EQ(files.identifications, groups);
    EXPECT_EQ(counted.labels, groups);
}

TEST_F(EditedRows, TheLabelIsThatOfTheMomentTheFileIsAddedAt)
{
    drives.type = platform::DriveType::Removable;
    std::string reason;
    for (const char *label : {"FIRST", "SECOND"}) {
        drives.label = label;
        tests::WriteFile(Song(label), tests::Tagged(label));
        EXPECT_EQ(AddOrUpdateMP3(Song(label), reason), catalogue::kAdded);
    }
    EXPECT_EQ(Rows(),
              (RowList{"FIRST|||||Pop||~/FIRST|FIRST|0", "SECOND|||||Pop||~/SECOND|SECOND|0"}));
}

struct KnownRows : EditedRows {
    std::uintmax_t LogBytes() const
    {
        const std::string log = folder / "app/MP3s.mdb-wal";
        return std::filesystem::exists(log) ? std::filesystem::file_size(log) : 0;
    }
};

TEST_F(KnownRows, RowsThatWouldNotChangeAreNotWritten)
{
    std::string reason;
    tests::WriteFile(Song("b.mp3"), tests::Audio() + tests::Id3v1({.title = "b", .genre = 13}));
    for (const char *name : {"a.mp3", "b.mp3"}) {
        EXPECT_EQ(AddOrUpdateMP3(Song(name), reason), catalogue::kAdded);
        EXPECT_EQ(AddOrUpdateMP3(Song(name), reason), catalogue::kUpdated);
    }
    RunOutside("INSERT INTO MP3s SELECT Title, 'Mine', Album, Year, Comment, Genre, Lyrics, Path,"
               " Disk_Label, 1 FROM MP3s");
    const RowList rows = Rows();
    ASSERT_EQ(rows.size(), 4U);
    RunOutside("CREATE TRIGGER frozen BEFORE UPDATE ON MP3s BEGIN"
               " SELECT RAISE(ABORT, 'it is frozen'); END");
    const std::uintmax_t before = LogBytes();
    EXPECT_GT(before, 0U);
    EXPECT_EQ(AddOrUpdateMP3(Song("a.mp3"), reason), catalogue::kUpdated);
    EXPECT_EQ(AddOrUpdateMP3(Song("b.mp3"), reason), catalogue::kUpdated);
    desktop.ExpectBox("There were some 'mistakes'", platform::Answer::No);
    catalogue::ListRefresh(false);
    EXPECT_EQ(catalogue::LastRegeneration().files, 2);
    EXPECT_EQ(catalogue::LastRegeneration().failed, 0);
    EXPECT_EQ(LogBytes(), before);
    EXPECT_EQ(Rows(), rows);
}

TEST_F(KnownRows, EachFieldThatDiffersInAnyRowIsWritten)
{
    std::string reason;
    EXPECT_EQ(AddOrUpdateMP3(Song("a.mp3"), reason), catalogue::kAdded);
    RunOutside("INSERT INTO MP3s SELECT Title, 'Mine', Album, Year, Comment, Genre, Lyrics, Path,"
               " Disk_Label, 1 FROM MP3s");
    const std::string own = "Old|||||Pop||~/a.mp3||0";
    const std::string duplicate = "Old|Mine||||Pop||~/a.mp3||1";
    for (const char *column : {"Title", "Artist", "Album", "Year", "Comment", "Genre", "Lyrics"}) {
        for (const char *value : {"'other'", "NULL"}) {
            for (const char *number : {"0", "1"}) {
                if (std::string_view(column) == "Artist" && std::string_view(number) == "1")
                    continue; // was entered by the user
                RunOutside(std::string("UPDATE MP3s SET ") + column + " = " + value +
                           " WHERE Duplicated = " + number);
                EXPECT_EQ(AddOrUpdateMP3(Song("a.mp3"), reason), catalogue::kUpdated);
                EXPECT_EQ(Rows(), (RowList{own, duplicate})) << column << value << number;
                EXPECT_EQ(catalogue::Records(
                              catalogue::DataAccess->ExecuteSQL(
                                  std::string("SELECT * FROM MP3s WHERE ") + column + " IS NULL",
                                  catalogue::kSelect))
                              ->RecordCount(),
                          0);
            }
        }
    }
}

} // namespace

// A walk does not open a song that an earlier walk has read and that has not changed since; nothing
// else is different.
#include "catalogue/adoclass.h"
#include "catalogue/sqlite/opengroup.h"
#include "runtime/codepage.h"
#include "tests/catalogue/knownwalk.h"
#include "tests/metadata/unicode/tagbytes.h"
#include "tests/support/freshcatalogue.h"

#include <sys/stat.h>

#include <array>

namespace fs = std::filesystem;
using tests::KnownWalk;

namespace
{

TEST_F(KnownWalk, OpensNoSongThatItKnowsAndShowsTheSame)
{
    hasMistakes = true;
    AddSong("a.mp3");
    AddSong("x/b & c.mp3");
    tests::WriteFile(Song("new.mp3"), tests::Id3v2(tests::TextFrame("TIT2", "v2")));
    tests::WriteFile(Song("none.mp3"), tests::Audio());
    tests::WriteFile(Song("old.mp3"), tests::Audio() + tests::Id3v1({.title = "v1", .genre = 13}));
    tests::WriteFile(Song("x/24.mp3"), tests::TagOf(4, tests::Frame24("TIT2", "\x03\xC3\xA9")) +
                                           tests::Id3v1({.title = "e"}));
    tests::WriteFile(Song("x/large.mp3"), "ID3\x03" + std::string(2, '\0') + "\x7F\x7F\x7F\x7F");
    const Seen first = Walk();
    EXPECT_EQ(Opened(), "24.mp3 a.mp3 b & c.mp3 large.mp3 new.mp3 none.mp3 old.mp3 ");
    const Seen second = Walk();
    EXPECT_EQ(Opened(), "24.mp3 new.mp3 old.mp3 ") << "an update writes other texts as genre";
    EXPECT_NE(second.rows, first.rows);
    const Seen third = Walk();
    EXPECT_EQ(Opened(), "");
    EXPECT_EQ(third, second);
    EXPECT_EQ(third.reported, 4);
    EXPECT_EQ(third.unicodeFiles, 1);
    EXPECT_EQ(third.files, 7);
    EXPECT_EQ(third.yields, second.yields);
    EXPECT_GT(third.yields, 7);
    EXPECT_EQ(WalkAnew(), third);
    EXPECT_EQ(Opened(), "24.mp3 a.mp3 b & c.mp3 large.mp3 new.mp3 none.mp3 old.mp3 ");
    EXPECT_EQ(Walk(), third);
    EXPECT_EQ(Opened(), "");
}

// Each case is a change after which a walk opens these songs; a walk over all of them then finds
// nothing more to do.
TEST_F(KnownWalk, ReadsWhatHasChanged)
{
    const auto run = [](const std::string &sql) {
        catalogue::DataAccess->ExecuteSQL(sql, catalogue::kDetect);
        EXPECT_TRUE(catalogue::DataAccess->Succeeded) << catalogue::DataAccess->ErrorMessage;
    };
    const std::string all = "a.mp3 b.mp3 c.mp3 ";
    const struct {
        const char *name;
        std::function<void()> change;
        std::string opened, openedLater; // by the next walk and by the one after it
    } cases[] = {
        {"nothing", [] {}, "", ""},
        {"other tags", [&] { tests::WriteFile(Song("b.mp3"), tests::Tagged("longer title")); },
         "b.mp3 ", ""},
        {"length and time of modification are the same",
         [&] { WriteSecretly("b.mp3", tests::Tagged("longer tilte")); }, "b.mp3 ", ""},
        {"other rights", [&] { Change("b.mp3", [&] { chmod(Song("b.mp3").c_str(), 0640); }); },
         "b.mp3 ", ""},
        {"another file",
         [&] {
             tests::WriteFile(Song("t"), tests::ReadFile(Song("b.mp3")));
             fs::rename(Song("t"), Song("b.mp3"));
         },
         "b.mp3 ", ""},
        {"a link to another song",
         [&] {
             fs::remove(Song("b.mp3"));
             fs::create_symlink(Song("a.mp3"), Song("b.mp3"));
         },
         "b.mp3 ", ""},
        {"its own file again",
         [&] {
             fs::remove(Song("b.mp3"));
             tests::WriteFile(Song("b.mp3"), tests::Tagged("b.mp3"));
         },
         "b.mp3 ", ""},
        {"another row",
         [&] { RunOutside("UPDATE MP3s SET Title = 'mine' WHERE Path LIKE '%a.mp3'"); }, "a.mp3 ",
         ""},
        {"a null in the row",
         [&] { RunOutside("UPDATE MP3s SET Album = NULL WHERE Path LIKE '%a.mp3'"); }, "a.mp3 ",
         ""},
        {"bytes in the row",
         [&] {
             RunOutside("UPDATE MP3s SET Title = CAST(Title AS BLOB) WHERE Path LIKE '%a.mp3'");
         },
         "a.mp3 ", "a.mp3 "},
        {"the row as it was",
         [&] {
             RunOutside("UPDATE MP3s SET Title = CAST(Title AS TEXT) WHERE Path LIKE '%a.mp3'");
         },
         "", ""},
        {"no row", [&] { RunOutside("DELETE FROM MP3s WHERE Path LIKE '%a.mp3'"); }, "a.mp3 ", ""},
        {"no row, by the program itself", [&] { run("DELETE FROM MP3s WHERE Title = 'b.mp3'"); },
         "b.mp3 ", ""},
        {"two rows",
         [&] { RunOutside("INSERT INTO MP3s SELECT * FROM MP3s WHERE Path LIKE '%c.mp3'"); }, "",
         ""},
        {"two rows, one of them another one",
         [&] {
             RunOutside(
                 "UPDATE MP3s SET Comment = 'x' WHERE rowid = (SELECT MAX(rowid) FROM MP3s)");
         },
         "c.mp3 ", ""},
        {"a duplicate",
         [&] {
             RunOutside(
                 "UPDATE MP3s SET Duplicated = 1 WHERE rowid = (SELECT MAX(rowid) FROM MP3s)");
         },
         "c.mp3 ", "c.mp3 "},
        {"no duplicate",
         [&] { RunOutside("DELETE FROM MP3s WHERE rowid = (SELECT MAX(rowid) FROM MP3s)"); },
         "c.mp3 ", ""},
        {"tags read by their frames", [] { shell::TheGlobals().UnicodeTags = true; }, all, ""},
        {"tags read as usual", [] { shell::TheGlobals().UnicodeTags = false; }, all, ""},
        {"another build",
         [&] {
             tests::WriteFile(folder / "new", "1");
             fs::rename(folder / "new", folder / "program");
         },
         all, ""},
        {"another code page", [] { runtime::UseCodePage(1250); }, all, ""},
        {"the first code page", [] { runtime::UseCodePage(1252); }, all, ""},
        {"the table is emptied first", [] { shell::TheGlobals().DeleteBeforeAppend = true; }, all,
         all},
        {"the table is kept", [] { shell::TheGlobals().DeleteBeforeAppend = false; }, "", ""},
        {"another catalogue",
         [&] {
             catalogue::DataAccess.reset();
             catalogue::CloseCatalogue();
             fs::copy_file(tests::ShippedCatalogue(), folder / "app/MP3s.mdb",
                           fs::copy_options::overwrite_existing);
             OpenCatalogue();
         },
         all, ""},
    };
    for (const char *name : {"a.mp3", "b.mp3", "c.mp3"})
        AddSong(name);
    Walk();
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        c.change();
        Walk();
        EXPECT_EQ(Opened(), c.opened);
        const Seen seen = Walk();
        EXPECT_EQ(Opened(), c.openedLater);
        EXPECT_EQ(seen.failed, 0);
        EXPECT_EQ(seen.files, 3);
        EXPECT_EQ(WalkAnew(), seen);
        EXPECT_EQ(Opened(), all);
    }
}

TEST_F(KnownWalk, ReadsSongsWhoseChangesMightNotBeSeen)
{
    AddSong("a.mp3");
    files->isTrusted = false;
    Walk();
    Walk();
    EXPECT_EQ(Opened(), "a.mp3 ") << "the file system";
    files->isTrusted = true;
    Walk();
    Walk();
    EXPECT_EQ(Opened(), "");

    fs::remove(Store());
    const auto age = [&] {
        return platform::SystemFiles().StampClockNs() - Identity("a.mp3").changedNs;
    };
    constexpr std::int64_t kSecond = 1'000'000'000;
    files->laterNs = 55 * kSecond - age(); // a loaded machine has five seconds for these two
    Walk();
    Walk();
    EXPECT_EQ(Opened(), "a.mp3 ") << "a change of less than a minute ago";
    files->laterNs = 60 * kSecond;
    Walk();
    Walk();
    EXPECT_EQ(Opened(), "");
    files->laterNs = -3600 * kSecond;
    fs::remove(Store());
    Walk();
    Walk();
    EXPECT_EQ(Opened(), "a.mp3 ") << "a change in the future";
}

TEST_F(KnownWalk, WithoutAnIdentityOfTheProgramNothingIsKept)
{
    AddSong("a.mp3");
    fs::remove(folder / "program");
    Walk();
    EXPECT_FALSE(fs::exists(Store()));
    Walk();
    EXPECT_EQ(Opened(), "a.mp3 ");
}

TEST_F(KnownWalk, SongsThatFailOrVanishAreNotKnown)
{
    AddSong("a.mp3");
    ASSERT_EQ(mkfifo(Song("pipe.mp3").c_str(), 0600), 0);
    for (int i = 0; i < 2; ++i) {
        desktop.ExpectBox("Some files could not be added", platform::Answer::No);
        hasMistakes = true;
        EXPECT_EQ(Walk().failed, 1);
    }
    EXPECT_EQ(Opened(), "pipe.mp3 ");
    fs::remove(Song("pipe.mp3"));
    hasMistakes = false;
    AddSong("b.mp3");
    Walk();
    const auto both = fs::file_size(Store());
    fs::remove(Song("b.mp3"));
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(fs::file_size(Store()), both);
        Walk();
        EXPECT_EQ(Opened(), "");
    }
    EXPECT_LT(fs::file_size(Store()), both);
}

TEST_F(KnownWalk, AWalkOverAnotherFolderForgetsNothing)
{
    AddSong("a.mp3");
    AddSong("x/b.mp3");
    Walk();
    shell::TheGlobals().MP3Directory = Song("x");
    Walk();
    EXPECT_EQ(Opened(), "");
    shell::TheGlobals().MP3Directory = Music();
    Walk();
    EXPECT_EQ(Opened(), "");
}

TEST_F(KnownWalk, ARunThatIsStoppedKeepsWhatItHasReadAndWhatWasKnown)
{
    for (const char *name : {"a.mp3", "b.mp3", "c.mp3", "d.mp3"})
        AddSong(name);
    Walk();
    for (const char *name : {"b.mp3", "d.mp3"})
        tests::WriteFile(Song(name), tests::Tagged("changed"));
    catalogue::AllowRegeneration();
    desktop.doEvents = [this] {
        if (bar.Panel("Playing").text == "Adding: c.mp3")
            catalogue::StopRegeneration();
    };
    catalogue::ListRefresh(false);
    EXPECT_TRUE(catalogue::LastRegeneration().stopped);
    Walk();
    EXPECT_EQ(Opened(), "d.mp3 ");
    Walk();
    EXPECT_EQ(Opened(), "");
}

// The first song is the one for which the walk gets the lock.
TEST_F(KnownWalk, AnEditBetweenTheLookAndTheRowIsNotMissed)
{
    for (const char *name : {"a.mp3", "b.mp3"})
        AddSong(name);
    Walk();
    const auto edit = [this](const std::string &name, bool withRow) {
        files->examined = [this, name, withRow](const std::string &examined) {
            if (examined != name)
                return;
            files->examined = {};
            Change(name, [&] { tests::WriteFile(Song(name), tests::Tagged("edited")); });
            if (withRow)
                RunOutside("UPDATE MP3s SET Title = 'edited' WHERE Path LIKE '%" + name + "'");
        };
    };
    edit("a.mp3", true);
    EXPECT_EQ(Walk().rows[0].substr(0, 7), "edited|");
    EXPECT_EQ(Opened(), "a.mp3 ");
    Walk();
    EXPECT_EQ(Opened(), "");

    tests::WriteFile(Song("a.mp3"), tests::Tagged("a.mp3"));
    Walk();
    edit("a.mp3", false);
    EXPECT_EQ(Walk().rows[0].substr(0, 7), "edited|");
    EXPECT_EQ(Opened(), "a.mp3 ");

    edit("b.mp3", false); // the lock is the walk's already: found by the next one
    EXPECT_EQ(Walk().rows[1].substr(0, 6), "b.mp3|");
    EXPECT_EQ(Walk().rows[1].substr(0, 7), "edited|");
    EXPECT_EQ(Opened(), "b.mp3 ");
}

TEST_F(KnownWalk, ALookUpThatFailsIsReportedAsForASongThatIsRead)
{
    AddSong("a.mp3");
    Walk();
    std::array<std::string, 2> errors;
    for (std::string &error : errors) {
        RunOutside("UPDATE StoredQueries SET WholePath = 'SELECT * FROM nowhere WHERE x = ?1'"
                   " WHERE Name = 'SEL_ByPath'");
        catalogue::CloseCatalogue();
        desktop.ExpectBox("Some files could not be added", platform::Answer::No);
        EXPECT_EQ(Walk().failed, 1);
        error = catalogue::LastRegeneration().errors;
        fs::remove(Store());
    }
    EXPECT_EQ(errors[0], errors[1]);
    EXPECT_NE(errors[0], "");
}

// What is in the place of the file: the walk is the same, and leaves it there.
TEST_F(KnownWalk, AnythingElseInThePlaceOfTheFileIsLeftThere)
{
    AddSong("a.mp3");
    fs::create_directories(Store() + "/x");
    Walk();
    Walk();
    EXPECT_EQ(Opened(), "a.mp3 ");
    EXPECT_TRUE(fs::is_directory(Store() + "/x"));
    fs::remove_all(Store());
    ASSERT_EQ(mkfifo(Store().c_str(), 0600), 0);
    Walk();
    Walk();
    EXPECT_EQ(Opened(), "a.mp3 ");
    EXPECT_TRUE(fs::is_fifo(Store()));
    fs::remove(Store());
    tests::WriteFile(folder / "app/elsewhere", "");
    fs::create_symlink(folder / "app/elsewhere", Store());
    Walk();
    Walk();
    EXPECT_EQ(Opened(), "");
    EXPECT_TRUE(fs::is_symlink(Store()));
    EXPECT_GT(fs::file_size(folder / "app/elsewhere"), 0U);
}

// The walks of the other tests with a helper that examines the songs ahead.
TEST_F(KnownWalk, IsTheSameWithAHelper)
{
    for (int i = 0; i < 300; ++i)
        AddSong(std::to_string(i) + ".mp3");
    tests::WriteFile(Song("x/old.mp3"), tests::Audio() + tests::Id3v1({.title = "v1"}));
    hasMistakes = true;
    Walk();
    Walk();
    const Seen usual = Walk();
    EXPECT_EQ(Opened(), "");
    tests::LaterReadAhead ahead(files);
    Use(ahead);
    EXPECT_EQ(Walk(), usual);
    EXPECT_EQ(Opened(), "");
    for (const char *name : {"0.mp3", "17.mp3", "x/old.mp3"})
        tests::WriteFile(Song(name), tests::Tagged("changed"));
    RunOutside("UPDATE MP3s SET Title = 'mine' WHERE Path LIKE '%/25.mp3'");
    hasMistakes = false;
    const Seen changed = Walk();
    EXPECT_EQ(Opened(), "0.mp3 17.mp3 25.mp3 old.mp3 ");
    EXPECT_EQ(WalkAnew().rows, changed.rows);
    Walk();
    EXPECT_EQ(Opened(), "");
    ahead.ExpectNothing();
}

} // namespace

#include "catalogue/addfile.h"
#include "catalogue/adoclass.h"
#include "catalogue/edittags.h"
#include "lyrics/lyricsimport.h"
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>

namespace
{

using RowList = std::vector<std::string>;

struct LyricsImport : tests::LibraryFixture {
    LyricsImport()
    {
        metadata::ResetMP3Info();
        metadata::TheTagWriterHooks() = {};
        metadata::TheTagWriterHooks().updateCatalogue = catalogue::UpdateEditedTags;
    }
    ~LyricsImport() override
    {
        metadata::TheTagWriterHooks() = {};
        metadata::ResetMP3Info();
    }

    // A catalogued song, whatever its name ends with.
    void Add(const std::string &name) { Add(name, kOld); }
    void Add(const std::string &name, std::string_view bytes)
    {
        tests::WriteFile(Song(name), bytes);
        std::string reason;
        ASSERT_EQ(catalogue::AddOrUpdateMP3(Song(name), reason), catalogue::kAdded);
    }

    void Duplicate(const std::string &name)
    {
        const std::string none;
        catalogue::DataAccess->ExecuteSQL(
            "AddMP3", catalogue::kStoredInsert,
            std::vector<catalogue::Value>{"One", "Mine", none, none, none, none, none, Song(name),
                                          std::int64_t{1}});
    }

    // Makes a stored query fail. To be called before every statement.
    void Break(const std::string &query) const
    {
        sqlite3 *db = nullptr;
        ASSERT_EQ(sqlite3_open((folder / "app/MP3s.mdb").c_str(), &db), SQLITE_OK);
        const std::string change =
            "UPDATE StoredQueries SET Statement = 'UPDATE Absent SET x = 1' WHERE Name = '" +
            query + "'";
        EXPECT_EQ(sqlite3_exec(db, change.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
        EXPECT_EQ(sqlite3_close(db), SQLITE_OK);
    }

    std::string Text(const std::string &name, std::string_view bytes) const
    {
        tests::WriteFile(folder / name, bytes);
        return folder / name;
    }

    const std::string kOld = tests::Id3v2(tests::TextFrame("TIT2", "One")) + tests::Audio() +
                             tests::Id3v1({.title = "One"});
    const std::string kNew =
        tests::Id3v2(tests::TextFrame("TIT2", "One") + tests::TextFrame("TCON", "(255)") +
                     tests::Frame("USLT", std::string(5, '\0') + "La\r\nla \xE9") +
                     tests::TextFrame("TRCK", "0")) +
        tests::Audio() + tests::Id3v1({.title = "One"});
};

TEST_F(LyricsImport, ServesTheSongOfAnyFolder)
{
    Add("deep/Song.mp3");
    desktop.ExpectBox("The lyrics were added correctly.");
    lyrics::AddLyricsFromTXT(Text("Song.TXT", "La\r\nla \xE9"));
    EXPECT_TRUE(tests::ReadFile(Song("deep/Song.mp3")) == kNew);
    EXPECT_EQ(Rows(), (RowList{"One||||||La\r\nla é|~/deep/Song.mp3||0"}));
}

TEST_F(LyricsImport, AnotherSongIsReadAtEveryYield)
{
    Add("Song.mp3");
    tests::WriteFile(folder / "other.mp3", tests::Id3v2(tests::TextFrame("TIT2", "Other")) +
                                               tests::Audio() + tests::Id3v1({.title = "Other"}));
    desktop.doEvents = [&] { metadata::ReadSongInfo(folder / "other.mp3"); };
    desktop.ExpectBox("The lyrics were added correctly.");
    lyrics::AddLyricsFromTXT(Text("Song.txt", "La\r\nla \xE9"));
    desktop.doEvents = nullptr;
    EXPECT_TRUE(tests::ReadFile(Song("Song.mp3")) == kNew);
}

TEST_F(LyricsImport, NoSuchSong)
{
    Add("Song.mp3");
    desktop.ExpectBox("The MP3 with similar name could not be found on the database.\rCheck the "
                      "name of the TXT and be sure that the name of \rthe file that exist on the "
                      "database are the same and retry");
    lyrics::AddLyricsFromTXT(Text("Other.txt", "x"));
    EXPECT_TRUE(tests::ReadFile(Song("Song.mp3")) == kOld);
}

TEST_F(LyricsImport, TheFirstOfSeveralRowsGetsThem)
{
    Add("a/Song.mp3");
    Add("b/Song.mp3");
    desktop.ExpectBox("The lyrics were added correctly.");
    lyrics::AddLyricsFromTXT(Text("Song.txt", "La\r\nla \xE9"));
    EXPECT_TRUE(tests::ReadFile(Song("a/Song.mp3")) == kNew);
    EXPECT_TRUE(tests::ReadFile(Song("b/Song.mp3")) == kOld);
}

// The name of the text file, and the song that it is for.
TEST_F(LyricsImport, Names)
{
    const struct {
        const char *text, *song;
        bool isServed;
    } cases[] = {{"song.txt", "SONG.Mp3", true},
                 {"Song.mp3.txt", "Song.mp3.mp3", true},
                 {"Song.mp3.txt", "Song.mp3.mp3.old", true},
                 {"Song.mp3.txt", "Song.mp3", false},
                 {"Song.txt", "Song.mp3.bak", true},
                 {"Song.txt", "My Song.mp3", false},
                 {"Song.txt", "Song 2.mp3", false},
                 {"Song.txt", "Song.mp3/Other.mp3", false},
                 {"So_g.txt", "Song.mp3", false},
                 {"It's 100%.txt", "It's 100%.mp3", true},
                 {".txt", ".mp3", true}};
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.text) + " " + c.song);
        catalogue::DataAccess->ExecuteSQL("DELETE FROM MP3s", catalogue::kDetect);
        Add(c.song);
        desktop.ExpectBox(c.isServed ? "The lyrics were added correctly."
                                     : "The MP3 with similar name could not be found");
        lyrics::AddLyricsFromTXT(Text(c.text, "La\r\nla \xE9"));
        EXPECT_TRUE(tests::ReadFile(Song(c.song)) == (c.isServed ? kNew : kOld));
        std::filesystem::remove_all(Song("Song.mp3"));
    }
}

TEST_F(LyricsImport, ProgressWordsInTheirOrder)
{
    RowList words;
    ui::Label &label = shell::TheGlobals().lblProgress;
    label.captionChanged = [&] { words.push_back(label.Caption()); };
    int yieldsBeforeTheEdit = 0;
    desktop.doEvents = [&] {
        yieldsBeforeTheEdit += words.size() == 3 && desktop.pointer == platform::Pointer::Normal;
    };
    shell::TheGlobals().BackUpFiles = false;
    shell::TheGlobals().UpdateDBAfterEditing = false;
    const RowList edit = {"Creating the ID3v1 Tag", "Creating the ID3v2 Tag", "Processing the MP3",
                          "Reading the whole MP3 file", "Writing the new MP3 file"};
    for (RowList wanted : {RowList{"Analizing file", "Reading the MP3 Information",
                                   "Reading the lyrics from the TXT"},
                           RowList{"eins", "zwei", "drei"}}) {
        Add("Song.mp3");
        words.clear();
        yieldsBeforeTheEdit = 0;
        desktop.ExpectBox("The lyrics were added correctly.");
        lyrics::AddLyricsFromTXT(Text("Song.txt", "La"));
        wanted.insert(wanted.end(), edit.begin(), edit.end()); // these have no other language
        EXPECT_EQ(words, wanted);
        EXPECT_EQ(yieldsBeforeTheEdit, 2) << "that of the progress line, and one of its own";
        EXPECT_EQ(Rows(), (RowList{"One|||||||~/Song.mp3||0"})) << "not to be updated";
        EXPECT_FALSE(std::filesystem::exists(folder / "app/Backup"));
        catalogue::DataAccess->ExecuteSQL("DELETE FROM MP3s", catalogue::kDetect);
        shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
        tests::WriteFile(folder / "x.qlt", "[Progress]\nAnalizingFile=eins\n"
                                           "ReadingMP3Information=zwei\nReadingLyricsFromTXT=drei");
    }
}

TEST_F(LyricsImport, DuplicatesGetThemAndKeepTheirArtist)
{
    Add("Song.mp3");
    Duplicate("Song.mp3");
    desktop.ExpectBox("The lyrics were added correctly.");
    lyrics::AddLyricsFromTXT(Text("Song.txt", "La"));
    EXPECT_EQ(Rows(), (RowList{"One||||||La|~/Song.mp3||0", "One|Mine|||||La|~/Song.mp3||1"}));
    EXPECT_TRUE(tests::ReadFile(folder / "app/Backup/Song.mp3") == kOld);
}

// The new tag has only the lyrics, and the row gets its values. (The last 10 bytes of the audio are
// lost, as always when a file gets its first ID3v2 tag.)
TEST_F(LyricsImport, ASongWithTheOtherTagAlone)
{
    const std::string image = tests::Id3v1({.title = "Old", .artist = "Who"});
    Add("Song.mp3", tests::Audio() + image);
    EXPECT_EQ(Rows(), (RowList{"Old|Who||||||~/Song.mp3||0"}));
    desktop.ExpectBox("The lyrics were added correctly.");
    lyrics::AddLyricsFromTXT(Text("Song.txt", "La"));
    const std::string audio = tests::Audio();
    EXPECT_TRUE(tests::ReadFile(Song("Song.mp3")) ==
                tests::Id3v2(tests::TextFrame("TCON", "(255)") +
                             tests::Frame("USLT", std::string(5, '\0') + "La") +
                             tests::TextFrame("TRCK", "0")) +
                    audio.substr(0, audio.size() - 10) + image);
    EXPECT_EQ(Rows(), (RowList{"||||||La|~/Song.mp3||0"}));
}

// The text is replaced, not appended to, and marks in it have no meaning.
TEST_F(LyricsImport, TheWholeTextIsTaken)
{
    Add("Song.mp3");
    for (const std::string &text : {std::string("[00:01]La\n[99:99"), std::string("\0\x1A\r", 3),
                                    std::string(1 << 20, 'l')}) {
        desktop.ExpectBox("The lyrics were added correctly.");
        lyrics::AddLyricsFromTXT(Text("Song.txt", text));
        EXPECT_TRUE(metadata::ReadSongInfo(Song("Song.mp3")).id3v2.Lyrics == text);
    }
}

TEST_F(LyricsImport, AnEmptyTextTakesTheLyricsAway)
{
    Add("Song.mp3");
    desktop.ExpectBox("The lyrics were added correctly.");
    lyrics::AddLyricsFromTXT(Text("Song.txt", "La"));
    desktop.ExpectBox("The lyrics were added correctly.");
    lyrics::AddLyricsFromTXT(Text("Song.txt", ""));
    EXPECT_EQ(Rows(), (RowList{"One|||||||~/Song.mp3||0"}));
    EXPECT_EQ(tests::ReadFile(Song("Song.mp3")).find("USLT"), std::string::npos);
}

TEST_F(LyricsImport, AbsentText)
{
    Add("Song.mp3");
    try {
        lyrics::AddLyricsFromTXT(folder / "Song.txt");
        ADD_FAILURE() << "nothing was thrown";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kFileNotFound);
        EXPECT_EQ(error.description, (folder / "Song.txt") + ": No such file or directory");
    }
    EXPECT_TRUE(tests::ReadFile(Song("Song.mp3")) == kOld);
}

TEST_F(LyricsImport, ASongThatDoesNotExist)
{
    Add("Song.mp3");
    std::filesystem::remove(Song("Song.mp3"));
    desktop.ExpectBox(Song("Song.mp3") + ": No such file or directory");
    desktop.ExpectBox("The lyrics couldn't be added.");
    lyrics::AddLyricsFromTXT(Text("Song.txt", "La"));
}

// One of the two queries fails, which is reported; the other one is run nevertheless.
TEST_F(LyricsImport, OwnRowThatCannotBeUpdated)
{
    Break("Edit1");
    Add("Song.mp3");
    Duplicate("Song.mp3");
    desktop.ExpectBox("\r\tEdit1");
    desktop.ExpectBox("The lyrics were added correctly.");
    lyrics::AddLyricsFromTXT(Text("Song.txt", "La"));
    EXPECT_EQ(Rows(), (RowList{"One|||||||~/Song.mp3||0", "One|Mine|||||La|~/Song.mp3||1"}));
}

TEST_F(LyricsImport, DuplicatesThatCannotBeUpdated)
{
    Break("Edit2");
    Add("Song.mp3");
    Duplicate("Song.mp3");
    desktop.ExpectBox("\r\tEdit2");
    desktop.ExpectBox("The lyrics were added correctly.");
    lyrics::AddLyricsFromTXT(Text("Song.txt", "La"));
    EXPECT_EQ(Rows(), (RowList{"One||||||La|~/Song.mp3||0", "One|Mine||||||~/Song.mp3||1"}));
}

// The catalogue is deleted while the song is rewritten: the song has its lyrics, and a box reports
// the failure.
TEST_F(LyricsImport, ACatalogueThatCannotBeWritten)
{
    Add("Song.mp3");
    desktop.doEvents = [&] {
        if (shell::TheGlobals().lblProgress.Caption() == "Creating the ID3v1 Tag")
            catalogue::DataAccess->DataBaseName = "Absent";
    };
    desktop.ExpectBox("Absent.mdb' is not there.\r\tEdit1");
    desktop.ExpectBox("The lyrics were added correctly.");
    lyrics::AddLyricsFromTXT(Text("Song.txt", "La\r\nla \xE9"));
    desktop.doEvents = nullptr;
    EXPECT_TRUE(tests::ReadFile(Song("Song.mp3")) == kNew);
}

} // namespace

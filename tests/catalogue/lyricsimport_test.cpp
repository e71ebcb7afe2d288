#include "catalogue/addfile.h"
#include "catalogue/edittags.h"
#include "catalogue/lyricsimport.h"
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>

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

    void Add(const std::string &name)
    {
        tests::WriteFile(Song(name), kOld);
        std::string reason;
        ASSERT_EQ(catalogue::AddOrUpdateMP3(Song(name), reason), catalogue::kAdded);
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
    catalogue::AddLyricsFromTXT(Text("Song.TXT", "La\r\nla \xE9"));
    EXPECT_TRUE(tests::ReadFile(Song("deep/Song.mp3")) == kNew);
    EXPECT_EQ(Rows(), (RowList{"One||||||La\r\nla é|~/deep/Song.mp3||0"}));
}

TEST_F(LyricsImport, AnotherSongIsReadAtEveryYield)
{
    Add("Song.mp3");
    tests::WriteFile(folder / "other.mp3", tests::Id3v2(tests::TextFrame("TIT2", "Other")) +
                                               tests::Audio() + tests::Id3v1({.title = "Other"}));
    desktop.doEvents = [&] {
        metadata::ID3v1Tag v1;
        metadata::ID3v2Tag v2;
        metadata::MPEGHeader header;
        bool hasV1 = false;
        bool hasV2 = false;
        metadata::GetMP3Info(folder / "other.mp3", v1, v2, header, hasV1, hasV2, false);
    };
    desktop.ExpectBox("The lyrics were added correctly.");
    catalogue::AddLyricsFromTXT(Text("Song.txt", "La\r\nla \xE9"));
    desktop.doEvents = nullptr;
    EXPECT_TRUE(tests::ReadFile(Song("Song.mp3")) == kNew);
}

TEST_F(LyricsImport, NoSuchSong)
{
    Add("Song.mp3");
    desktop.ExpectBox("The MP3 with similar name could not be found on the database.\rCheck the "
                      "name of the TXT and be sure that the name of \rthe file that exist on the "
                      "database are the same and retry");
    catalogue::AddLyricsFromTXT(Text("Other.txt", "x"));
    EXPECT_TRUE(tests::ReadFile(Song("Song.mp3")) == kOld);
}

TEST_F(LyricsImport, TheFirstOfSeveralRowsGetsThem)
{
    Add("a/Song.mp3");
    Add("b/Song.mp3");
    desktop.ExpectBox("The lyrics were added correctly.");
    catalogue::AddLyricsFromTXT(Text("Song.txt", "La\r\nla \xE9"));
    EXPECT_TRUE(tests::ReadFile(Song("a/Song.mp3")) == kNew);
    EXPECT_TRUE(tests::ReadFile(Song("b/Song.mp3")) == kOld);
}

TEST_F(LyricsImport, AnEmptyTextTakesTheLyricsAway)
{
    Add("Song.mp3");
    desktop.ExpectBox("The lyrics were added correctly.");
    catalogue::AddLyricsFromTXT(Text("Song.txt", "La"));
    desktop.ExpectBox("The lyrics were added correctly.");
    catalogue::AddLyricsFromTXT(Text("Song.txt", ""));
    EXPECT_EQ(Rows(), (RowList{"One|||||||~/Song.mp3||0"}));
    EXPECT_EQ(tests::ReadFile(Song("Song.mp3")).find("USLT"), std::string::npos);
}

TEST_F(LyricsImport, AbsentText)
{
    Add("Song.mp3");
    EXPECT_THROW(catalogue::AddLyricsFromTXT(folder / "Song.txt"), runtime::RuntimeError);
    EXPECT_TRUE(tests::ReadFile(Song("Song.mp3")) == kOld);
}

TEST_F(LyricsImport, ASongThatIsGone)
{
    Add("Song.mp3");
    std::filesystem::remove(Song("Song.mp3"));
    desktop.ExpectBox("No such file or directory");
    desktop.ExpectBox("The lyrics couldn't be added.");
    catalogue::AddLyricsFromTXT(Text("Song.txt", "La"));
}

} // namespace

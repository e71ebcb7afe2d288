#include "playlists/entryfiles.h"
#include "runtime/codepage.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

namespace
{

using playlists::FileFinder;
using playlists::ListPlace;
using playlists::PlacesOfEntry;
using Texts = std::vector<std::string>;

TEST(PlacesOfEntry, Table)
{
    const ListPlace utf8{
        "/media/stick/lists/", "/media/stick", "", {"/", "/media/f", "/mnt/d", "/mnt/f"}, true};
    const ListPlace page{"/l/", "", "", {"/"}, false};
    const struct {
        const char *name;
        const ListPlace &place;
        std::string path;
        Texts want;
    } cases[] = {
        {"a name", utf8, "a.mp3", {"/media/stick/lists/a.mp3"}},
        {"back-slashes",
         utf8,
         "x\\a.mp3",
         {"/media/stick/lists/x\\a.mp3", "/media/stick/lists/x/a.mp3"}},
        {"from the root", utf8, "/m/a.mp3", {"/m/a.mp3"}},
        {"the player's drive", utf8, "\\m\\a.mp3", {"/m/a.mp3"}},
        {"a letter that a mount goes by",
         utf8,
         "D:\\m\\a.mp3",
         {"/mnt/d/m/a.mp3", "/media/stick/m/a.mp3"}},
        {"the letter's case does not matter",
         utf8,
         "d:/m/a.mp3",
         {"/mnt/d/m/a.mp3", "/media/stick/m/a.mp3"}},
        {"a letter of two mounts",
         utf8,
         "F:\\a.mp3",
         {"/mnt/f/a.mp3", "/media/f/a.mp3", "/media/stick/a.mp3"}},
        {"a letter of no mount", utf8, "e:/m/a.mp3", {"/media/stick/m/a.mp3"}},
        {"a colon, but no letter", utf8, "1:\\a.mp3", {}},
        {"a letter without a folder", utf8, "C:a.mp3", {}},
        {"another machine", utf8, "\\\\server\\a.mp3", {"//server/a.mp3"}},
        {"a sign of the separator",
         utf8,
         "%/m/a.mp3",
         {"/media/stick/lists/%/m/a.mp3", "/m/a.mp3"}},
        {"and a letter",
         utf8,
         "%D:\\a.mp3",
         {"/media/stick/lists/%D:\\a.mp3", "/media/stick/lists/%D:/a.mp3", "/mnt/d/a.mp3",
          "/media/stick/a.mp3"}},
        {"nothing but signs", utf8, "%%", {"/media/stick/lists/%%", "/media/stick/lists/"}},
        {"nothing", utf8, "", {"/media/stick/lists/"}},
        {"the bytes before the code page", page, "\xE9.mp3", {"/l/\xE9.mp3", "/l/é.mp3"}},
        {"both with back-slashes",
         page,
         "x\\\xE9.mp3",
         {"/l/x\\\xE9.mp3", "/l/x\\é.mp3", "/l/x/\xE9.mp3", "/l/x/é.mp3"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(PlacesOfEntry(c.path, c.place), c.want);
    }
}

class Finder : public testing::Test
{
protected:
    Finder() { tests::WriteFile(folder / "Abba/Waterloo.MP3", "song"); }

    std::string Found(const std::string &name)
    {
        return finder.Find({folder / name}).value_or("none");
    }

    tests::TestFolder folder;
    FileFinder finder;
};

TEST_F(Finder, AsWrittenThenWithoutRegardToLetterCase)
{
    EXPECT_EQ(Found("Abba/Waterloo.MP3"), folder / "Abba/Waterloo.MP3");
    EXPECT_EQ(Found("abba/WATERLOO.mp3"), folder / "Abba/Waterloo.MP3");
    EXPECT_EQ(Found("abba/../ABBA//waterloo.mp3"), folder / "Abba/../Abba/Waterloo.MP3");
    EXPECT_EQ(Found("abba/water.mp3"), "none");
    EXPECT_EQ(Found("abba"), "none"); // a folder
}

TEST_F(Finder, TheNameAsWrittenBeatsAnother)
{
    tests::WriteFile(folder / "abba/waterloo.mp3", "another");
    EXPECT_EQ(Found("abba/waterloo.mp3"), folder / "abba/waterloo.mp3");
    EXPECT_EQ(Found("Abba/waterloo.mp3"), folder / "Abba/Waterloo.MP3");
    EXPECT_EQ(Found("ABBA/waterloo.mp3"), folder / "Abba/Waterloo.MP3"); // the first in order
}

TEST_F(Finder, LettersOfAllLanguagesAndNamesThatAreNoText)
{
    tests::WriteFile(folder / "ñandú.mp3", "song");
    tests::WriteFile(folder / "raw\xE9.mp3", "song");
    EXPECT_EQ(Found("ÑANDÚ.MP3"), folder / "ñandú.mp3");
    EXPECT_EQ(Found("RAW\xE9.mp3"), folder / "raw\xE9.mp3");
}

TEST_F(Finder, AnEarlierPlaceAsWrittenBeatsALaterOne)
{
    tests::WriteFile(folder / "b.mp3", "song");
    const Texts places = {folder / "B.MP3", folder / "b.mp3"};
    EXPECT_EQ(finder.Find(places), folder / "b.mp3");
    tests::WriteFile(folder / "B.MP3", "song");
    EXPECT_EQ(finder.Find(places), folder / "B.MP3");
    EXPECT_FALSE(finder.Find({}).has_value());
}

TEST(EntrySearch, ReturnsEveryEntryInOrder)
{
    const tests::TestFolder folder;
    tests::WriteFile(folder / "a.mp3", "song");
    std::vector<Texts> places;
    for (int i = 0; i < 1000; ++i)
        places.push_back({folder / (i % 2 == 0 ? "A.mp3" : "none.mp3")});
    playlists::EntrySearch search(std::move(places));
    std::vector<playlists::FoundEntry> found;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!search.Done() && std::chrono::steady_clock::now() < end) {
        for (auto &entry : search.Take())
            found.push_back(std::move(entry));
        std::this_thread::yield();
    }
    ASSERT_EQ(found.size(), 1000u);
    for (std::size_t i = 0; i < found.size(); ++i) {
        ASSERT_EQ(found[i].entry, i);
        ASSERT_EQ(found[i].path.value_or("none"), i % 2 == 0 ? folder / "a.mp3" : "none");
    }
    EXPECT_TRUE(search.Take().empty());
}

TEST(EntrySearch, EndsWithoutWaiting)
{
    for (int i = 0; i < 50; ++i) {
        const playlists::EntrySearch search(std::vector<Texts>(1000, Texts{"/nowhere/at/all.mp3"}));
        EXPECT_FALSE(search.Done());
    }
}

TEST(EntrySearch, LooksForNothingWhenTooManyThreadsWait)
{
    playlists::EntrySearch search(std::vector<Texts>(3, Texts{"/"}), 0);
    EXPECT_TRUE(search.Done());
    EXPECT_TRUE(search.Take().empty());
    // The search above has no thread.
    playlists::EntrySearch next(std::vector<Texts>(1, Texts{"/"}));
    EXPECT_FALSE(next.Done());
}

} // namespace

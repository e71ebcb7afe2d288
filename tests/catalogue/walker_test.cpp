#include "catalogue/regeneration/walker.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "tests/support/asnobody.h"
#include "tests/support/testfolder.h"
#include "tests/support/wait.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

namespace
{

using Names = std::vector<std::string>;

struct Walker : testing::Test {
    tests::TestFolder folder;
    catalogue::FolderBox dirs;
    catalogue::FileBox mp3s{dirs};

    void Make(const std::string &name) { tests::WriteFile(folder / name, "x"); }

    Names Folders() const
    {
        Names names;
        for (std::int64_t index = 0; !dirs.List(index).empty(); index++)
            names.push_back(dirs.List(index).substr(folder.Path().size() + 1));
        return names;
    }

    Names Files() const
    {
        Names names;
        for (std::int64_t index = 0; index < mp3s.ListCount(); index++)
            names.push_back(mp3s.List(index));
        return names;
    }

    // All files below the box's folder, the files of a folder before its sub-folders.
    void Walk(Names &paths)
    {
        const std::string here = dirs.Path();
        for (std::int64_t index = 0; index < mp3s.ListCount(); index++)
            paths.push_back(
                runtime::JoinPath(here, mp3s.List(index)).substr(folder.Path().size() + 1));
        for (std::int64_t index = 0; !dirs.List(index).empty(); index++) {
            dirs.SetPath(dirs.List(index));
            Walk(paths);
            dirs.SetPath(here);
        }
    }
};

void AwaitAge(const std::string &folder)
{
    EXPECT_TRUE(tests::WaitUntil([&] { return catalogue::OpenFolder(folder).WasSettled(); }));
}

int ErrorOf(catalogue::FolderBox &dirs, const std::string &path)
{
    try {
        dirs.SetPath(path);
    } catch (const runtime::RuntimeError &error) {
        return error.number;
    }
    return 0;
}

TEST_F(Walker, ListingsAreKeptAsLongAsAFolderDoesNotChange)
{
    for (const char *name : {"a/1.mp3", "a/b/2.mp3", "c/3.mp3"})
        Make(name);
    for (const char *name : {"a", "a/b", "c"})
        AwaitAge(folder / name);
    catalogue::ListingCache cache;
    dirs.UseCache(&cache);
    dirs.SetRoot(folder.Path());
    Names paths;
    Walk(paths);
    const catalogue::ListingPtr before = cache.Find(folder / "a");
    ASSERT_NE(before, nullptr);
    EXPECT_EQ(cache.Find(folder / "nowhere"), nullptr);

    Names again;
    Walk(again);
    EXPECT_EQ(again, paths);
    EXPECT_EQ(cache.Find(folder / "a"), before) << "not read a second time";

    Make("a/4.mp3");
    fs::rename(folder / "c", folder / "d");
    fs::create_directory(folder / "c");
    EXPECT_EQ(cache.Find(folder / "a"), nullptr) << "it has changed";
    EXPECT_EQ(cache.Find(folder / "c"), nullptr) << "it is another folder";
    EXPECT_EQ(cache.FindOld(folder / "a"), before);
    EXPECT_NE(cache.Find(folder / "a/b"), nullptr);
    Names changed;
    Walk(changed);
    EXPECT_EQ(changed, (Names{"a/1.mp3", "a/4.mp3", "a/b/2.mp3"}))
        << "the root's own listing is from before";
    chmod((folder / "a/b").c_str(), 0);
    EXPECT_EQ(cache.Find(folder / "a/b"), nullptr);
    chmod((folder / "a/b").c_str(), 0700);
    dirs.UseCache(nullptr);
}

TEST_F(Walker, AListingThatAChangeCouldHideInIsNotKept)
{
    catalogue::ListingCache cache;
    std::optional<catalogue::OpenFolder> young;
    ASSERT_TRUE(tests::WaitUntil([&] { // until the listing follows the change closely enough
        fs::remove_all(folder / "a");
        Make("a/1.mp3");
        young.emplace(folder / "a");
        return !young->WasSettled();
    }));
    EXPECT_TRUE(cache.Keep(young->Read(), *young));
    EXPECT_EQ(cache.FindOld(folder / "a"), nullptr);
}

TEST_F(Walker, OnlySoManyListingsAreKept)
{
    fs::create_directories(folder / "a");
    AwaitAge(folder / "a");
    catalogue::ListingCache cache;
    int kept = 0;
    for (bool isRoom = true; isRoom && kept < 100; ++kept) {
        catalogue::FolderListing large{folder / std::to_string(kept), {}, {}, {}};
        large.files.assign(10'000, std::string(52, 'n')); // 1 MB each
        const catalogue::OpenFolder open(folder / "a");
        isRoom = cache.Keep(std::make_shared<catalogue::FolderListing>(large), open);
        EXPECT_EQ(cache.FindOld(large.path) != nullptr, isRoom);
    }
    EXPECT_EQ(kept, 7);
}

TEST_F(Walker, AHelperListsFromTheEnd)
{
    Names made;
    for (int i = 10; i < 40; ++i)
        for (const char *below : {"", "/x", "/x/y", "/z"}) {
            made.push_back(folder / (std::to_string(i) + below));
            Make(std::to_string(i) + below + "/1.mp3");
        }
    fs::create_directory_symlink(folder.Path(), folder / "25/circle");
    for (const std::string &path : made)
        AwaitAge(path);
    dirs.SetRoot(folder.Path());
    const auto cache = std::make_shared<catalogue::ListingCache>();
    dirs.UseCache(cache.get());
    dirs.SetPath(folder / "10"); // the helper does not list what the walk has listed
    {
        const catalogue::ListingAhead ahead(cache, catalogue::OpenFolder(folder.Path()).Read());
        const bool helps = std::thread::hardware_concurrency() > 1;
        EXPECT_TRUE(tests::WaitUntil(
            [&] { return !helps || cache->FindOld(folder / "11/x/y") != nullptr; }));
        for (const std::string &path : made)
            EXPECT_EQ(cache->FindOld(path) != nullptr, helps && !path.starts_with(folder / "10/"))
                << path;
    }
    dirs.SetRoot(folder.Path());
    Names paths, alone;
    Walk(paths);
    dirs.UseCache(nullptr);
    dirs.SetRoot(folder.Path());
    Walk(alone);
    EXPECT_EQ(paths, alone);
    EXPECT_EQ(paths.size(), 120U);
}

TEST_F(Walker, StartsAtNoFolder)
{
    EXPECT_EQ(dirs.Path(), "");
    EXPECT_EQ(dirs.List(0), "");
    EXPECT_EQ(mp3s.ListCount(), 0);
}

TEST_F(Walker, ListsOnlyMp3FilesInAnyLetterCase)
{
    for (const char *name : {"a.mp3", "B.MP3", "c.Mp3", ".mp3", ".hidden.mp3", "d.mp33", "e.mp",
                             "f.txt", "mp3", "g.mp3.bak"})
        Make(name);
    fs::create_directory(folder / "folder.mp3");
    dirs.SetPath(folder.Path());
    EXPECT_EQ(Files(), (Names{".hidden.mp3", ".mp3", "a.mp3", "B.MP3", "c.Mp3"}));
    EXPECT_EQ(Folders(), (Names{"folder.mp3"}));
}

TEST_F(Walker, OrdersByUpperCasedNamesThenBytes)
{
    for (const char *name : {"b.mp3", "A.mp3", "a.mp3", "_.mp3", "Z.mp3", "\xC3\xB1.mp3",
                             "\xC3\x91.mp3", "\xC3\xA9.mp3", "\xFF.mp3"})
        Make(name);
    dirs.SetPath(folder.Path());
    EXPECT_EQ(Files(), (Names{"A.mp3", "a.mp3", "b.mp3", "Z.mp3", "_.mp3", "\xC3\xA9.mp3",
                              "\xC3\x91.mp3", "\xC3\xB1.mp3", "\xFF.mp3"}));
}

TEST_F(Walker, KeepsNamesWithAnyBytes)
{
    const Names odd = {"line\nbreak.mp3", "qu\"ote.mp3", "apo'strophe.mp3", "latin\xE9.mp3",
                       " blank .mp3"};
    for (const std::string &name : odd)
        Make(name);
    dirs.SetPath(folder.Path());
    Names found = Files();
    EXPECT_EQ(std::set<std::string>(found.begin(), found.end()),
              std::set<std::string>(odd.begin(), odd.end()));
}

TEST_F(Walker, CutsSeparatorsAtTheEndOfAPath)
{
    Make("sub/a.mp3");
    dirs.SetPath(folder / "sub//");
    EXPECT_EQ(dirs.Path(), folder / "sub");
    dirs.SetPath("/");
    EXPECT_EQ(dirs.Path(), "/");
    EXPECT_EQ(dirs.List(0).find("//"), std::string::npos);
}

TEST_F(Walker, VisitsFilesBeforeSubFolders)
{
    for (const char *name :
         {"z.mp3", "a/2.mp3", "a/1.mp3", "a/deep/er/3.mp3", "B/4.mp3", "c/5.txt"})
        Make(name);
    dirs.SetPath(folder.Path());
    Names paths;
    Walk(paths);
    EXPECT_EQ(paths, (Names{"z.mp3", "a/1.mp3", "a/2.mp3", "a/deep/er/3.mp3", "B/4.mp3"}));
    EXPECT_EQ(dirs.Path(), folder.Path());
}

TEST_F(Walker, LinksThatLoopEnd)
{
    Make("a/1.mp3");
    Make("b/2.mp3");
    fs::create_directory_symlink(folder.Path(), folder / "a/up");
    fs::create_directory_symlink("../b", folder / "a/other");
    fs::create_directory_symlink("../a", folder / "b/back");
    fs::create_directory_symlink(".", folder / "self");
    dirs.SetPath(folder.Path());
    Names paths;
    Walk(paths);
    EXPECT_EQ(paths, (Names{"a/1.mp3", "a/other/2.mp3"}));
    paths.clear(); // a second walk over the same box sees the same
    Walk(paths);
    EXPECT_EQ(paths, (Names{"a/1.mp3", "a/other/2.mp3"}));
}

// Each level has two links to the next one: 18 levels are 262,144 paths to one folder.
TEST_F(Walker, AFolderThatIsReachedTwiceIsWalkedOnce)
{
    constexpr int kLevels = 18;
    for (int level = 0; level <= kLevels; ++level)
        Make("pool/" + std::to_string(level) + "/song.mp3");
    for (int level = 0; level < kLevels; ++level)
        for (const char *name : {"left", "right"})
            fs::create_directory_symlink("../" + std::to_string(level + 1),
                                         folder / ("pool/" + std::to_string(level) + "/" + name));
    dirs.SetRoot(folder / "pool/0");
    Names paths;
    Walk(paths);
    EXPECT_EQ(paths.size(), kLevels + 1u);
    dirs.SetRoot(folder.Path());
    paths.clear();
    Walk(paths);
    EXPECT_EQ(paths.size(), kLevels + 1u);
}

TEST_F(Walker, AFolderThatTookThePlaceOfAnotherIsRead)
{
    Make("a/1.mp3");
    dirs.SetRoot(folder.Path());
    dirs.SetPath(folder / "a");
    dirs.SetPath(folder.Path());
    fs::rename(folder / "a", folder / "b"); // the same inode under a new name
    dirs.SetPath(folder / "b");
    EXPECT_EQ(Files(), (Names{"1.mp3"}));
}

TEST_F(Walker, BrokenLinkIsAFile)
{
    fs::create_symlink("nowhere", folder / "gone.mp3");
    dirs.SetPath(folder.Path());
    EXPECT_EQ(Files(), (Names{"gone.mp3"}));
}

TEST_F(Walker, AbsentFolderIsError76AndChangesNothing)
{
    Make("a.mp3");
    dirs.SetPath(folder.Path());
    EXPECT_EQ(ErrorOf(dirs, folder / "absent"), runtime::kPathNotFound);
    EXPECT_EQ(ErrorOf(dirs, folder / "a.mp3"), runtime::kPathNotFound);
    EXPECT_EQ(ErrorOf(dirs, ""), runtime::kPathNotFound);
    EXPECT_EQ(dirs.Path(), folder.Path());
    EXPECT_EQ(Files(), (Names{"a.mp3"}));
}

TEST_F(Walker, AnUnreadableFolderIsReportedInTheSystemsWords)
{
    Make("closed/a.mp3");
    fs::permissions(folder.Path(), fs::perms::all);
    fs::permissions(folder / "closed", fs::perms::none);
    dirs.SetPath(folder.Path());
    const tests::AsNobody nobody;
    EXPECT_EQ(ErrorOf(dirs, folder / "closed"), runtime::FileError(EACCES).number);
    EXPECT_EQ(dirs.Path(), folder.Path());
}

TEST_F(Walker, KeepsTheListingOfTheFoldersAbove)
{
    Make("a/1.mp3");
    dirs.SetPath(folder.Path());
    dirs.SetPath(folder / "a");
    Make("b/2.mp3");
    dirs.SetPath(folder.Path());
    EXPECT_EQ(Folders(), (Names{"a"}));
    dirs.SetRoot(folder.Path());
    EXPECT_EQ(Folders(), (Names{"a", "b"}));
}

TEST_F(Walker, ClearForgetsTheFolder)
{
    Make("a/1.mp3");
    dirs.SetPath(folder.Path());
    dirs.Clear();
    EXPECT_EQ(dirs.Path(), "");
    EXPECT_EQ(Folders(), Names{});
}

TEST_F(Walker, TheFileBoxFollowsTheFolderBox)
{
    Make("a/1.mp3");
    Make("2.mp3");
    dirs.SetPath(folder.Path());
    EXPECT_EQ(mp3s.Path(), folder.Path());
    dirs.SetPath(folder / "a");
    EXPECT_EQ(mp3s.Path(), folder / "a");
    EXPECT_EQ(Files(), Names{"1.mp3"});
    dirs.SetPath(folder.Path()); // up again, from the names that were kept
    EXPECT_EQ(mp3s.Path(), folder.Path());
    EXPECT_EQ(Files(), Names{"2.mp3"});
    dirs.Clear();
    EXPECT_EQ(mp3s.Path(), "");
}

TEST_F(Walker, TheFileBoxMovesAloneToo)
{
    Make("a/1.mp3");
    Make("b/2.mp3");
    Make("b/3.MP3");
    dirs.SetPath(folder / "a");
    mp3s.SetPath(folder / "b/");
    EXPECT_EQ(mp3s.Path(), folder / "b");
    EXPECT_EQ(dirs.Path(), folder / "a");
    EXPECT_EQ(Files(), (Names{"2.mp3", "3.MP3"}));
    EXPECT_EQ(mp3s.List(2), "");
    EXPECT_EQ(mp3s.List(-1), "");
    dirs.SetPath(folder / "a"); // no change, no event
    EXPECT_EQ(mp3s.Path(), folder / "b");
    dirs.SetPath(folder.Path());
    EXPECT_EQ(mp3s.Path(), folder.Path());
    mp3s.SetPath(folder / "absent");
    EXPECT_EQ(mp3s.ListCount(), 0);
    catalogue::FileBox alone;
    EXPECT_EQ(alone.ListCount(), 0);
    alone.SetPath(folder / "a");
    EXPECT_EQ(alone.List(0), "1.mp3");
}

TEST_F(Walker, LeavesTheTrashAndForeignCompanionsOut)
{
    Make(".Trash/files/1.mp3");
    Make(".Trash-1000/files/2.mp3");
    Make(".Trashy/3.mp3");
    Make(".trash/4.mp3");
    Make("...And more/5.mp3");
    Make("._Real song.mp3"); // its bytes are not those of a companion file
    tests::WriteFile(folder / "._Song.mp3", std::string("\x00\x05\x16\x07more", 8));
    tests::WriteFile(folder / "._Cut.mp3", std::string("\x00\x05\x16", 3));
    tests::WriteFile(folder / "Mark.mp3", std::string("\x00\x05\x16\x07", 4));
    tests::WriteFile(folder / ".Trash-file.mp3", "x");
    dirs.SetPath(folder.Path());
    EXPECT_EQ(Folders(), (Names{"...And more", ".trash", ".Trashy"}));
    EXPECT_EQ(Files(), (Names{".Trash-file.mp3", "._Cut.mp3", "._Real song.mp3", "Mark.mp3"}));
}

} // namespace

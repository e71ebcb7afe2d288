#include "platform/disk/userfolders.h"
#include "platform/posix/disk/systemfolders.h"
#include "tests/support/asnobody.h"
#include "tests/support/testfolder.h"
#include "tests/support/wait.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <mutex>
#include <set>

namespace
{

namespace fs = std::filesystem;
using platform::FolderAnswer;
using platform::FolderContents;
using platform::SubFolder;
using platform::posix::SystemFolders;

// A disk that answers when the test allows it.
struct HeldDisk {
    std::mutex mutex;
    std::condition_variable released;
    bool held = true;
    std::atomic<int> reads = 0;

    void Wait()
    {
        reads++;
        std::unique_lock lock(mutex);
        released.wait(lock, [this] { return !held; });
    }
    void Release()
    {
        const std::lock_guard lock(mutex);
        held = false;
        released.notify_all();
    }
};

struct SystemFoldersTest : testing::Test {
    tests::TestFolder folder;
    SystemFolders folders;

    void Make(const std::string &name) const { fs::create_directories(folder / name); }

    FolderContents List(SystemFolders &of, const std::string &path,
                        const std::vector<std::string> &leaveOut = {}) const
    {
        FolderContents contents = of.List(path, leaveOut, {});
        std::ranges::sort(contents.folders, {}, &SubFolder::name);
        std::ranges::sort(contents.files);
        return contents;
    }
};

TEST_F(SystemFoldersTest, ListsFoldersWithTheirFirstFolderAndFiles)
{
    Make("with/inner");
    Make("without");
    Make(".hidden/deep/deeper");
    Make("bytes\xFF\n");
    tests::WriteFile(folder / "song.mp3", "x");
    tests::WriteFile(folder / "with/a file", "x");
    const FolderContents contents = List(folders, folder.Path());
    EXPECT_EQ(contents.answer, FolderAnswer::Listed);
    EXPECT_EQ(contents.folders,
              (std::vector<SubFolder>{
                  {".hidden", "deep"}, {"bytes\xFF\n", ""}, {"with", "inner"}, {"without", ""}}));
    EXPECT_EQ(contents.files, std::vector<std::string>{"song.mp3"});
}

TEST_F(SystemFoldersTest, ReportsWhyAFolderCannotBeListed)
{
    std::string first = "before";
    EXPECT_EQ(List(folders, folder / "absent").answer, FolderAnswer::Missing);
    EXPECT_EQ(folders.Probe(folder / "absent", {}, {}, first), FolderAnswer::Missing);
    EXPECT_EQ(first, "");
    tests::WriteFile(folder / "file", "x");
    EXPECT_EQ(List(folders, folder / "file").answer, FolderAnswer::Missing);
    Make("closed/inner");
    chmod((folder / "closed").c_str(), 0);
    chmod(folder.Path().c_str(), 0755);
    const tests::AsNobody nobody; // root may read everything
    EXPECT_EQ(List(folders, folder / "closed").answer, FolderAnswer::Unreadable);
    EXPECT_EQ(folders.Probe(folder / "closed", {}, {}, first), FolderAnswer::Unreadable);
    EXPECT_EQ(List(folders, folder.Path()).folders, (std::vector<SubFolder>{{"closed", ""}}));
}

TEST_F(SystemFoldersTest, LeavesOutWhatIsShownElsewhere)
{
    Make("home/me/inner");
    Make("media/stick/inner");
    Make("media/other");
    const std::vector<std::string> leaveOut = {folder / "home/me", folder / "media/stick"};
    EXPECT_EQ(List(folders, folder.Path(), leaveOut).folders,
              (std::vector<SubFolder>{{"home", ""}, {"media", "other"}}));
    EXPECT_EQ(List(folders, folder / "media", leaveOut).folders,
              (std::vector<SubFolder>{{"other", ""}}));
    std::string first;
    EXPECT_EQ(folders.Probe(folder / "home", leaveOut, {}, first), FolderAnswer::Listed);
    EXPECT_EQ(first, "");
    EXPECT_EQ(folders.Probe(folder / "media", leaveOut, {}, first), FolderAnswer::Listed);
    EXPECT_EQ(first, "other");
}

TEST_F(SystemFoldersTest, LinksThatLeadBackHaveNoFolders)
{
    Make("music/album");
    fs::create_directory_symlink(folder.Path(), folder / "music/up");
    fs::create_directory_symlink(folder / "music", folder / "music/self");
    fs::create_directory_symlink(folder / "music", folder / "aside");
    fs::create_symlink(folder / "music/knot", folder / "music/knot");
    fs::create_symlink(folder / "nowhere", folder / "music/broken");
    const FolderContents contents = List(folders, folder / "music");
    EXPECT_EQ(contents.folders, (std::vector<SubFolder>{{"album", ""}, {"self", ""}, {"up", ""}}));
    EXPECT_EQ(contents.files, (std::vector<std::string>{"broken", "knot"}));
    // A link to a folder beside it is followed, once.
    const FolderContents above = List(folders, folder.Path());
    ASSERT_EQ(above.folders.size(), 2u);
    EXPECT_EQ(above.folders[0].name, "aside");
    EXPECT_NE(above.folders[0].firstFolder, "");
}

TEST_F(SystemFoldersTest, AutomountsAreListedAndNotLookedInto)
{
    Make("server/share");
    Make("plain/inner");
    SystemFolders::Places places;
    std::set<std::string> asked;
    places.isAutomount = [&asked](int, const char *name) {
        asked.insert(name);
        return std::string(name) == "server";
    };
    SystemFolders withAutomount(places);
    EXPECT_EQ(List(withAutomount, folder.Path()).folders,
              (std::vector<SubFolder>{{"plain", "inner"}, {"server", ""}}));
    EXPECT_EQ(asked, (std::set<std::string>{"plain", "server"}));
}

TEST_F(SystemFoldersTest, ADiskThatDoesNotAnswerIsGivenUpAndNotAskedTwice)
{
    Make("inner");
    const auto disk = std::make_shared<HeldDisk>();
    SystemFolders::Places places;
    places.beforeRead = [disk](const std::string &) { disk->Wait(); };
    SystemFolders held(places);
    int asked = 0;
    const auto giveUp = [&asked] { return ++asked < 3; };
    EXPECT_EQ(held.List(folder.Path(), {}, giveUp).answer, FolderAnswer::NoAnswer);
    EXPECT_EQ(asked, 3);
    std::string first;
    EXPECT_EQ(held.Probe(folder.Path(), {}, giveUp, first), FolderAnswer::NoAnswer);
    EXPECT_EQ(held.List(folder.Path(), {}, giveUp).answer, FolderAnswer::NoAnswer);
    EXPECT_EQ(asked, 3); // at once
    EXPECT_EQ(disk->reads, 1);
    disk->Release();
    FolderContents contents;
    EXPECT_TRUE(tests::WaitUntil([&] {
        contents = held.List(folder.Path(), {}, {});
        return contents.answer == FolderAnswer::Listed;
    }));
    EXPECT_EQ(contents.folders, (std::vector<SubFolder>{{"inner", ""}}));
}

TEST_F(SystemFoldersTest, NamesThatCameBeforeAFolderHangsAreKept)
{
    Make("a/inner");
    Make("b/inner");
    const auto disk = std::make_shared<HeldDisk>();
    SystemFolders::Places places;
    places.isAutomount = [disk](int, const char *) {
        disk->Wait();
        return false;
    };
    SystemFolders held(places);
    FolderContents contents = held.List(folder.Path(), {}, [disk] { return disk->reads == 0; });
    disk->Release();
    std::ranges::sort(contents.folders, {}, &SubFolder::name);
    EXPECT_EQ(contents.answer, FolderAnswer::Listed);
    EXPECT_EQ(contents.folders, (std::vector<SubFolder>{{"a", ""}, {"b", ""}}));
}

TEST_F(SystemFoldersTest, UserFoldersAsTheDesktopKeepsThem)
{
    const std::string file = folder / "user-dirs.dirs";
    tests::WriteFile(file, "# comment\n"
                           "XDG_DESKTOP_DIR=\"$HOME/My \\\"Desk\\\"/\"\n"
                           "XDG_MUSIC_DIR=\"/media/music\"\n"
                           "  XDG_VIDEOS_DIR=\"$HOME/\"  \n"
                           "XDG_BROKEN_DIR=/no/quotes\n"
                           "XDG_RELATIVE_DIR=\"relative\"\n"
                           "MUSIC=\"/x\"\n");
    SystemFolders::Places places;
    places.userFolders = file;
    SystemFolders known(places);
    const std::string home = platform::HomeFolder();
    EXPECT_EQ(known.UserFolder("DESKTOP"), home + "/My \"Desk\"");
    EXPECT_EQ(known.UserFolder("MUSIC"), "/media/music");
    EXPECT_EQ(known.UserFolder("VIDEOS"), home);
    EXPECT_EQ(known.UserFolder("BROKEN"), "");
    EXPECT_EQ(known.UserFolder("DOWNLOAD"), "");
    EXPECT_EQ(known.UserFolderPurposes(), (std::vector<std::string>{"DESKTOP", "MUSIC", "VIDEOS"}));
    places.userFolders = folder / "absent";
    EXPECT_EQ(SystemFolders(places).UserFolderPurposes(), std::vector<std::string>());
}

TEST_F(SystemFoldersTest, TheCurrentFolderKeepsTheWayThroughALink)
{
    const std::string before = folders.CurrentFolder();
    Make("real");
    fs::create_directory_symlink(folder / "real", folder / "link");
    EXPECT_FALSE(folders.SetCurrentFolder(folder / "absent"));
    EXPECT_EQ(folders.CurrentFolder(), before);
    EXPECT_TRUE(folders.SetCurrentFolder(folder / "link"));
    EXPECT_EQ(folders.CurrentFolder(), folder / "link");
    EXPECT_TRUE(fs::equivalent(fs::current_path(), folder / "real"));
    EXPECT_TRUE(folders.SetCurrentFolder(before));
}

} // namespace

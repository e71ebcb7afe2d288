#include "platform/waiting.h"
#include "tests/ui/dirtreefixture.h"

#include <gtest/gtest.h>

namespace
{

using tests::DirTree;
using tests::Texts;

TEST_F(DirTree, ExpandingFillsOnceAndSorts)
{
    for (const char *name : {"disk/z", "disk/\xC3\x89t\xC3\xA9", "disk/a", "disk/F", "disk/e"})
        Make(name);
    Load();
    const ui::NodeId disk = Node(root);
    TV.ClickText(1);
    events.clear();
    folders.listed.clear();
    TV.ClickExpander(disk);
    EXPECT_EQ(events, Texts{"ChangePath root"}); // of the selected node, not of the expanded one
    EXPECT_EQ(folders.listed, Texts{root});
    EXPECT_EQ(Children(disk), (Texts{"a", "e", "\xC3\x89t\xC3\xA9", "F", "z"}));
    for (int row = 0; const ui::NodeId child : TV.Children(disk))
        EXPECT_EQ(TV.RowInParent(child), row++);
    TV.SetExpanded(disk, false);
    folders.listed.clear();
    events.clear();
    Make("disk/new");
    TV.ClickExpander(disk);
    EXPECT_EQ(events, Texts{"ChangePath root"});
    EXPECT_TRUE(folders.listed.empty());
    EXPECT_EQ(Node(root + "/new"), ui::kNoNode);
    dirTree.LoadTV(); // forgets what was expanded
    TV.ClickExpander(Node(root));
    EXPECT_NE(Node(root + "/new"), ui::kNoNode);
}

TEST_F(DirTree, ExpandingDesktopOrComputerDoesNothing)
{
    Make("disk");
    Load();
    for (const ui::NodeId node : {1, 0}) {
        TV.SetExpanded(node, false);
        TV.ClickExpander(node);
    }
    EXPECT_EQ(events, Texts());
    EXPECT_TRUE(folders.listed.empty());
}

TEST_F(DirTree, CollapsingIsAClick)
{
    Make("disk/a/inner");
    Load();
    const ui::NodeId disk = Node(root);
    TV.ClickExpander(disk);
    TV.ClickText(Node(root + "/a"));
    events.clear();
    folders.listed.clear();
    TV.ClickExpander(disk);
    EXPECT_EQ(folders.listed, Texts{root});
    const std::string key = Key(root); // the collapsed node is selected now
    EXPECT_EQ(events, (Texts{"ChangePath " + key, "ChangePath " + key, "NodeSelected " + key}));
}

TEST_F(DirTree, FoldersThatDifferInCaseAloneAreBothListed)
{
    Make("disk/Live/upper");
    Make("disk/live/lower");
    Make("disk/LIVE");
    Load();
    TV.ClickText(Node(root));
    EXPECT_EQ(TV.Children(Node(root)).size(), 3u);
    std::set<std::string> keys;
    for (const char *name : {"/Live", "/live", "/LIVE"}) {
        const ui::NodeId node = Node(root + name);
        EXPECT_EQ(dirTree.PathOf(node), root + name);
        keys.emplace(TV.Key(node));
    }
    EXPECT_EQ(keys.size(), 3u);
    EXPECT_TRUE(keys.contains(Key(root + "/live")));
    int withPath = 0;
    for (const char *name : {"/Live", "/live", "/LIVE"})
        withPath += keys.contains(Key(root + "/live") + root + name) ? 1 : 0;
    EXPECT_EQ(withPath, 2);
    TV.ClickText(Node(root + "/live"));
    EXPECT_EQ(Children(Node(root + "/live")), Texts{"lower"});
    EXPECT_EQ(Children(Node(root + "/Live")), Texts{"upper"});
}

TEST_F(DirTree, AMountPointIsARootAndNoFolder)
{
    Make("disk/home/me/music");
    Make("disk/home/other");
    drives.roots = {root, root + "/home/me"};
    GoTo(root + "/home/me/music");
    dirTree.LoadTV();
    EXPECT_EQ(TV.Parent(Node(root + "/home/me")), 1);
    EXPECT_EQ(TV.Selected(), Node(root + "/home/me/music"));
    EXPECT_EQ(TV.Parent(TV.Selected()), Node(root + "/home/me"));
    TV.ClickText(Node(root));
    TV.ClickText(Node(root + "/home"));
    EXPECT_EQ(Children(Node(root + "/home")), Texts{"other"});
    EXPECT_EQ(dirTree.FoldersDownTo(root + "/home/me/music"),
              (Texts{root + "/home/me", root + "/home/me/music"}));
    EXPECT_EQ(dirTree.FoldersDownTo(root + "/home/mean/x"),
              (Texts{root, root + "/home", root + "/home/mean", root + "/home/mean/x"}));
    EXPECT_EQ(dirTree.FoldersDownTo("/elsewhere"), Texts());
}

TEST_F(DirTree, TheWayFromTheRootOfAll)
{
    drives.roots = {"/"};
    dirTree.ListDrives("");
    EXPECT_EQ(dirTree.FoldersDownTo("/"), Texts{"/"});
    EXPECT_EQ(dirTree.FoldersDownTo("/a/b"), (Texts{"/", "/a", "/a/b"}));
    EXPECT_EQ(dirTree.FoldersDownTo("/a/b/"), (Texts{"/", "/a", "/a/b"}));
}

TEST_F(DirTree, ADiskThatDoesNotAnswerShowsWithoutFolders)
{
    Make("disk");
    Make("dead/inner");
    drives.roots = {root, folder / "dead"};
    folders.silent = {folder / "dead"};
    bool wasDisabled = false;
    desktop.doEvents = [&] { wasDisabled |= !TV.Enabled(); };
    Load();
    EXPECT_TRUE(TV.Children(Node(folder / "dead")).empty());
    EXPECT_TRUE(wasDisabled);
    EXPECT_TRUE(TV.Enabled());
    const std::int64_t from = clock.steadyMs;
    const int yields = desktop.yields;
    TV.ClickText(Node(folder / "dead"));
    EXPECT_GE(clock.steadyMs - from, platform::kDiskLimitMs);
    EXPECT_LE(clock.steadyMs - from, platform::kDiskLimitMs + 100);
    EXPECT_GT(desktop.yields, yields);
    EXPECT_TRUE(TV.Enabled());
    EXPECT_TRUE(TV.Children(Node(folder / "dead")).empty());
    EXPECT_EQ(desktop.pointer, platform::Pointer::Normal);
}

TEST_F(DirTree, AWaitCanBeAbandoned)
{
    Make("disk");
    Make("dead");
    drives.roots = {root, folder / "dead"};
    Load();
    folders.silent = {folder / "dead"};
    desktop.doEvents = [&] {
        EXPECT_TRUE(dirTree.IsListing());
        dirTree.Abandon();
    };
    const std::int64_t from = clock.steadyMs;
    TV.ClickText(Node(folder / "dead"));
    EXPECT_LT(clock.steadyMs - from, 200);
    EXPECT_FALSE(dirTree.IsListing());
}

TEST_F(DirTree, ListingPreparesTheHostsList)
{
    Make("disk");
    tests::WriteFile(root + "/MY song.MP3", "x");
    Load();
    LV.AddRow("old", "old", {}, {});
    dirTree.ListDirs("");
    ASSERT_EQ(LV.Columns().size(), 1u);
    EXPECT_EQ(LV.Columns()[0].key, "unique");
    EXPECT_EQ(LV.Columns()[0].caption, "none");
    EXPECT_EQ(LV.Columns()[0].widthTwips, 8000);
    EXPECT_TRUE(LV.HeadersHidden());
    EXPECT_EQ(LV.Count(), 0);
    TV.ClickText(Node(root));
    EXPECT_EQ(LV.Count(), 0); // files are not listed, unless asked for
    dirTree.listFiles = true;
    TV.ClickText(Node(root));
    ASSERT_EQ(LV.Count(), 1);
    EXPECT_EQ(LV.Text(0), "My Song.mp3");
}

TEST_F(DirTree, SelectedNodeByKey)
{
    Make("disk/a");
    Load();
    dirTree.SetSelectedNode("root");
    EXPECT_EQ(TV.Selected(), 1);
    dirTree.SetSelectedNode("unknown");
    EXPECT_EQ(TV.Selected(), 1);
    EXPECT_EQ(events, Texts());
    std::vector<std::string> names;
    EXPECT_TRUE(ui::cDirTree::RegEnumValues("Shell Folders", names));
    EXPECT_EQ(names, (Texts{"DESKTOP", "MUSIC"}));
    EXPECT_FALSE(ui::cDirTree::RegEnumValues("Run", names));
    EXPECT_EQ(dirTree.GetDriveName(root), "My Disc");
    EXPECT_EQ(ui::cDirTree::GetComputerName(), "My Computer");
}

} // namespace

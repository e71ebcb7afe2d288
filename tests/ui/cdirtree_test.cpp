#include "tests/ui/dirtreefixture.h"

#include <gtest/gtest.h>

namespace
{

using tests::DirTree;
using tests::Texts;

TEST(ProperCase, Table)
{
    constexpr struct {
        const char *name;
        std::string_view text, want;
    } cases[] = {
        {"two words", "MY DISC", "My Disc"},
        {"small letters", "my disc", "My Disc"},
        {"other signs part no words", "AC-DC'S (LIVE)", "Ac-dc's (live)"},
        {"tab and line end", "a\tb\nC", "A\tB\nC"},
        {"two blanks", "a  b", "A  B"},
        {"beyond ASCII", "\xC3\xA9T\xC3\x89 \xC3\xB1U", "\xC3\x89t\xC3\xA9 \xC3\x91u"},
        {"bytes that are no text", "a\xFFZ", "A\xFFz"},
        {"empty", "", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(ui::ProperCase(c.text), c.want);
    }
}

TEST_F(DirTree, DesktopComputerAndDrives)
{
    Make("disk/first");
    Make("stick/inner");
    Make("cd");
    Make("net/share");
    Make("ram/inner");
    struct Kinds : tests::FakeDrives {
        platform::DriveType TypeOf(const std::string &drive) override { return types.at(drive); }
        std::string LabelOf(const std::string &drive) override
        {
            return drive.ends_with("/cd") ? "" : label;
        }
        std::map<std::string, platform::DriveType> types;
    } kinds;
    kinds.label = "MY DISC";
    const std::string stick = folder / "stick", cd = folder / "cd", net = folder / "net",
                      ram = folder / "ram";
    kinds.types = {{stick, platform::DriveType::Removable},
                   {root, platform::DriveType::Fixed},
                   {cd, platform::DriveType::CdRom},
                   {net, platform::DriveType::Remote},
                   {ram, platform::DriveType::RamDisk}};
    kinds.roots = {stick, root, cd, net, ram};
    desktop.pointer = platform::Pointer::Hourglass;
    const std::string firstFixed = dirTree.ListDrives("");
    EXPECT_EQ(firstFixed, "My Disc (" + root + ")");
    EXPECT_EQ(desktop.pointer, platform::Pointer::Normal);
    ASSERT_EQ(TV.Children(ui::kNoNode).size(), 1u);
    EXPECT_EQ(TV.Key(0), folder / "Desk");
    EXPECT_EQ(TV.Text(0), "Desktop");
    EXPECT_EQ(TV.Image(0), "desk");
    EXPECT_EQ(TV.SelectedImage(0), "desk");
    EXPECT_EQ(TV.Key(1), "root");
    EXPECT_EQ(TV.Text(1), "My Computer");
    EXPECT_EQ(TV.Image(1), "open"); // the desktop has no icon
    EXPECT_TRUE(TV.Expanded(0));    // the second node can be seen
    EXPECT_FALSE(TV.Expanded(1));
    EXPECT_EQ(Children(1), (Texts{"Floppy (" + stick + ")", "My Disc (" + root + ")",
                                  "(" + cd + ")", "My Disc (" + net + ")", "(" + ram + ")"}));
    Texts images, expanders;
    for (const ui::NodeId drive : TV.Children(1)) {
        images.emplace_back(TV.Image(drive));
        EXPECT_EQ(TV.Image(drive), TV.SelectedImage(drive));
        expanders.push_back(TV.Children(drive).empty() ? "-" : "+");
    }
    EXPECT_EQ(images, (Texts{"floppy", "hard", "cdrom", "net", "hard"}));
    EXPECT_EQ(expanders, (Texts{"-", "+", "-", "+", "+"}));
    EXPECT_EQ(folders.looked, (Texts{root, cd, net, ram})); // the floppy was not read
    const ui::NodeId first = TV.Children(Node(root)).front();
    EXPECT_EQ(TV.Key(first), Key(root + "/first"));
    EXPECT_EQ(TV.Text(first), "first");
    EXPECT_EQ(TV.Image(first), "closed");
    EXPECT_EQ(TV.SelectedImage(first), "open");
    EXPECT_TRUE(folders.listed.empty());
}

TEST_F(DirTree, TheComputerHasTheDesktopsIconWhereItCanBeHad)
{
    bool asked = false;
    dirTree.SetParent({&LV, nullptr, [&asked] { return asked = true; }});
    Make("disk");
    dirTree.ListDrives("");
    EXPECT_TRUE(asked);
    EXPECT_EQ(TV.Image(1), "desktop");
    EXPECT_EQ(TV.SelectedImage(1), "desktop");
}

TEST_F(DirTree, ARelativeKeyTakesTheDesktopBelowItsNode)
{
    Make("disk");
    const ui::NodeId top = TV.Add(ui::kNoNode, "top", "Top");
    dirTree.LoadTV("top");
    EXPECT_EQ(TV.Text(top), "Top");
    EXPECT_EQ(Children(top), Texts{"Desktop"});
    EXPECT_EQ(dirTree.NodesCount(), TV.Count());
    EXPECT_EQ(dirTree.Nodes(1), "Top");
    EXPECT_EQ(dirTree.Nodes(2), "Desktop");
    EXPECT_THROW(dirTree.Nodes(0), std::exception);
}

TEST_F(DirTree, LoadOpensTheTreeOnTheCurrentFolder)
{
    Make("disk/MUSIC live/abba/gold");
    Make("disk/other");
    GoTo(root + "/MUSIC live/abba");
    dirTree.LoadTV();
    const ui::NodeId abba = Node(root + "/MUSIC live/abba");
    ASSERT_NE(abba, ui::kNoNode);
    EXPECT_EQ(TV.Selected(), abba);
    EXPECT_EQ(TV.Key(abba), Key(root + "/MUSIC live/abba"));
    EXPECT_EQ(dirTree.PathOf(abba), root + "/MUSIC live/abba"); // never in another case
    EXPECT_EQ(TV.Text(abba), "abba");
    EXPECT_EQ(TV.Text(TV.Parent(abba)), "MUSIC live");
    EXPECT_TRUE(TV.Expanded(TV.Parent(abba)));
    EXPECT_FALSE(TV.Expanded(abba));
    EXPECT_EQ(Children(abba), Texts{"gold"});
    const std::string key(TV.Key(abba));
    ASSERT_GE(events.size(), 3u);
    EXPECT_EQ(Texts(events.end() - 3, events.end()),
              (Texts{"ChangePath " + key, "ChangePath " + key, "NodeSelected " + key}));
}

TEST_F(DirTree, LoadStaysAtTheFirstFixedDiskForAFolderThatIsNotThere)
{
    Make("disk/a");
    GoTo("/");
    dirTree.LoadTV();
    EXPECT_EQ(TV.Selected(), Node(root));
    EXPECT_EQ(dirTree.SelectedNode(), Key(root));
}

TEST_F(DirTree, AClickListsAndRaisesItsEventsInOrder)
{
    Make("disk/b");
    Make("disk/a/inner");
    Make("disk/C");
    Load();
    TV.ClickText(Node(root));
    const std::string key = Key(root);
    EXPECT_EQ(events, (Texts{"ChangePath " + key, "ChangePath " + key, "NodeSelected " + key}));
    EXPECT_EQ(Children(Node(root + "/a")), Texts{"inner"});
    EXPECT_TRUE(TV.Children(Node(root + "/b")).empty()); // no expander
    const ui::NodeId count = TV.Count();
    TV.ClickText(Node(root)); // adds nothing twice
    EXPECT_EQ(TV.Count(), count);
    EXPECT_EQ(lblPath.Caption(), "before");
    events.clear();
    TV.ClickText(1); // the computer
    EXPECT_EQ(events, Texts{"ChangePath root"});
    EXPECT_EQ(lblPath.Caption(), "");
    events.clear();
    lblPath.SetCaption("again");
    TV.ClickText(0); // the desktop
    EXPECT_EQ(events, Texts{"ChangePath " + (folder / "Desk")});
    EXPECT_EQ(lblPath.Caption(), "");
}

TEST_F(DirTree, TheHourglassWithAnArrowShowsWhileAClickLists)
{
    Make("disk");
    Load();
    std::vector<platform::Pointer> atEvent;
    dirTree.ChangePath = [&] { atEvent.push_back(desktop.pointer); };
    struct Seen : tests::ScriptedDesktop {
        void SetPointer(platform::Pointer wanted) override
        {
            all.push_back(wanted);
            ScriptedDesktop::SetPointer(wanted);
        }
        std::vector<platform::Pointer> all;
    } seen;
    TV.ClickText(Node(root));
    EXPECT_EQ(seen.all,
              (std::vector{platform::Pointer::ArrowHourglass, platform::Pointer::Normal}));
    EXPECT_EQ(atEvent, (std::vector{platform::Pointer::Normal, platform::Pointer::Normal}));
}

TEST_F(DirTree, ADesktopFoldersAreListedBelowTheDesktop)
{
    Make("Desk/inner");
    Make("disk");
    Load();
    TV.ClickText(0);
    EXPECT_EQ(Children(0), (Texts{"My Computer", "inner"}));
}

} // namespace

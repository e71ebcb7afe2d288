#include "runtime/error.h"
#include "ui/controls/inputs/keyedtree.h"

#include <gtest/gtest.h>

namespace
{

using ui::KeyedTree;
using ui::kNoNode;
using ui::NodeId;

struct Sample {
    KeyedTree tree;
    NodeId root, byTitle, byArtist, one, two, abba;

    Sample()
    {
        root = tree.Add(kNoNode, "MP3s", "MP3", "closed", "open");
        byTitle = tree.Add(root, "ByTitle", "By Title", "closed", "open");
        byArtist = tree.Add(root, "ByArtist", "By Artist", "closed", "open");
        one = tree.Add(byTitle, "@ONE", "One");
        two = tree.Add(byTitle, "@TWO", "TWO");
        abba = tree.Add(byArtist, "#ABBA", "Abba");
    }
};

std::string Keys(const KeyedTree &tree, NodeId parent)
{
    std::string keys;
    for (const NodeId child : tree.Children(parent))
        keys.append(tree.Key(child)).append(" ");
    return keys;
}

TEST(KeyedTree, KeepsKeyTextImagesAndOrder)
{
    Sample s;
    EXPECT_EQ(Keys(s.tree, kNoNode), "MP3s ");
    EXPECT_EQ(Keys(s.tree, s.root), "ByTitle ByArtist ");
    EXPECT_EQ(Keys(s.tree, s.byTitle), "@ONE @TWO ");
    EXPECT_TRUE(s.tree.Children(s.abba).empty());
    EXPECT_EQ(s.tree.Text(s.one), "One");
    EXPECT_EQ(s.tree.Text(s.two), "TWO"); // stored once, as the end of its key
    EXPECT_EQ(s.tree.Image(s.root), "closed");
    EXPECT_EQ(s.tree.SelectedImage(s.root), "open");
    EXPECT_EQ(s.tree.Image(s.one), "");
    EXPECT_EQ(s.tree.RowInParent(s.two), 1);
    EXPECT_EQ(s.tree.Parent(s.two), s.byTitle);
    EXPECT_EQ(s.tree.Parent(s.root), kNoNode);
}

TEST(KeyedTree, FindsByKeyAndRefusesASecondOne)
{
    Sample s;
    EXPECT_EQ(s.tree.Find("#ABBA"), s.abba);
    EXPECT_EQ(s.tree.Find("#abba"), kNoNode);
    EXPECT_EQ(s.tree.Find(""), kNoNode);
    EXPECT_EQ(s.tree.TryAdd(s.byTitle, "#ABBA", "x"), kNoNode);
    try {
        s.tree.Add(s.byTitle, "#ABBA", "x");
        FAIL() << "added twice";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kDuplicateKey);
    }
    EXPECT_EQ(Keys(s.tree, s.byTitle), "@ONE @TWO ");
    EXPECT_EQ(s.tree.Text(s.abba), "Abba");
}

TEST(KeyedTree, KeysMayHoldAnyBytes)
{
    KeyedTree tree;
    const std::string nul("@A\0B", 4);
    const NodeId first = tree.Add(kNoNode, nul, "a");
    const NodeId second = tree.Add(kNoNode, "@A", "b");
    EXPECT_EQ(tree.Find(nul), first);
    EXPECT_EQ(tree.Find("@A"), second);
    const NodeId empty = tree.Add(kNoNode, "", "");
    EXPECT_EQ(tree.Find(""), empty);
}

TEST(KeyedTree, FullPathJoinsTheTexts)
{
    Sample s;
    EXPECT_EQ(s.tree.FullPath(s.root), "MP3");
    EXPECT_EQ(s.tree.FullPath(s.one), "MP3/By Title/One");
    s.tree.pathSeparator = '\\';
    EXPECT_EQ(s.tree.FullPath(s.abba), "MP3\\By Artist\\Abba");
}

TEST(KeyedTree, RemoveTakesTheSubtreeAndKeepsTheRest)
{
    Sample s;
    s.tree.SetExpanded(s.byArtist, true);
    s.tree.Select(s.abba);
    s.tree.Remove("ByTitle");
    EXPECT_EQ(s.tree.Count(), 3);
    EXPECT_EQ(s.tree.Find("@ONE"), kNoNode);
    const NodeId artist = s.tree.Find("ByArtist");
    EXPECT_EQ(Keys(s.tree, s.tree.Find("MP3s")), "ByArtist ");
    EXPECT_EQ(Keys(s.tree, artist), "#ABBA ");
    EXPECT_TRUE(s.tree.Expanded(artist));
    EXPECT_EQ(s.tree.Selected(), s.tree.Find("#ABBA"));
    EXPECT_EQ(s.tree.Text(s.tree.Selected()), "Abba");
    EXPECT_EQ(s.tree.Image(artist), "closed");
    EXPECT_THROW(s.tree.Remove("ByTitle"), runtime::RuntimeError);
    s.tree.Remove("#ABBA");
    EXPECT_EQ(s.tree.Selected(), kNoNode);
}

// What a gesture raises, in order: "E" and "C" with the node's key, "N", "K" for Click.
struct Recorder {
    std::string events;
    explicit Recorder(KeyedTree &tree)
    {
        tree.onExpand = [this, &tree](NodeId n) { Note("Expand", tree.Key(n)); };
        tree.onCollapse = [this, &tree](NodeId n) { Note("Collapse", tree.Key(n)); };
        tree.onNodeClick = [this, &tree](NodeId n) { Note("NodeClick", tree.Key(n)); };
        tree.onClick = [this] { Note("Click", ""); };
    }
    void Note(std::string_view event, std::string_view key)
    {
        events.append(event).append(key.empty() ? "" : " ").append(key).append("; ");
    }
};

TEST(KeyedTree, EventsOfEachGesture)
{
    using Act = void (*)(Sample &);
    const struct {
        const char *name;
        Act act;
        const char *events;
        const char *selected;
    } cases[] = {
        {"click on text", [](Sample &s) { s.tree.ClickText(s.one); }, "NodeClick @ONE; Click; ",
         "@ONE"},
        {"click on a collapsed node's expander", [](Sample &s) { s.tree.ClickExpander(s.byTitle); },
         "Expand ByTitle; Click; ", ""},
        {"click on an expanded node's expander",
         [](Sample &s) {
             s.tree.ClickExpander(s.byTitle);
             s.tree.ClickExpander(s.byTitle);
         },
         "Expand ByTitle; Click; Collapse ByTitle; Click; ", ""},
        {"a leaf has no expander", [](Sample &s) { s.tree.ClickExpander(s.one); }, "", ""},
        {"move by key", [](Sample &s) { s.tree.MoveTo(s.two); }, "NodeClick @TWO; ", "@TWO"},
        {"expand from code", [](Sample &s) { s.tree.SetExpanded(s.byTitle, true); },
         "Expand ByTitle; ", ""},
        {"expand a leaf from code", [](Sample &s) { s.tree.SetExpanded(s.one, true); },
         "Expand @ONE; ", ""},
        {"select from code", [](Sample &s) { s.tree.Select(s.one); }, "", "@ONE"},
        {"collapse from code", [](Sample &s) { s.tree.SetExpanded(s.byTitle, false); }, "", ""},
        {"click beside the nodes", [](Sample &s) { s.tree.ClickNothing(); }, "Click; ", ""},
        {"collapsing over the selection selects",
         [](Sample &s) {
             s.tree.SetExpanded(s.byTitle, true);
             s.tree.Select(s.one);
             s.tree.SetExpanded(s.byTitle, false);
         },
         "Expand ByTitle; ", "ByTitle"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        Sample s;
        Recorder recorder(s.tree);
        c.act(s);
        EXPECT_EQ(recorder.events, c.events);
        const NodeId selected = s.tree.Selected();
        EXPECT_EQ(selected == kNoNode ? "" : s.tree.Key(selected), c.selected);
    }
}

TEST(KeyedTree, TheTwoEventsOfOneClickHaveOneGesture)
{
    Sample s;
    std::vector<std::uint64_t> gestures;
    s.tree.onNodeClick = [&](NodeId) { gestures.push_back(s.tree.Gesture()); };
    s.tree.onClick = [&] { gestures.push_back(s.tree.Gesture()); };
    s.tree.ClickText(s.one);
    s.tree.ClickText(s.one);
    ASSERT_EQ(gestures.size(), 4U);
    EXPECT_EQ(gestures[0], gestures[1]);
    EXPECT_NE(gestures[1], gestures[2]);
    EXPECT_EQ(gestures[2], gestures[3]);
}

TEST(KeyedTree, AnUpdateNotifiesTheWidgetOnce)
{
    Sample s;
    std::string signals;
    s.tree.nodesAboutToChange = [&] { signals += "about "; };
    s.tree.nodesChanged = [&] { signals += "changed "; };
    s.tree.selectionChanged = [&](NodeId) { signals += "selection "; };
    {
        const ui::TreeUpdate update(s.tree);
        s.tree.Clear();
        const NodeId root = s.tree.Add(kNoNode, "MP3s", "MP3");
        s.tree.Add(root, "ByTitle", "By Title");
        s.tree.Select(root);
        EXPECT_TRUE(s.tree.Updating());
        EXPECT_EQ(signals, "about ");
    }
    EXPECT_EQ(signals, "about changed ");
    s.tree.Select(kNoNode);
    EXPECT_EQ(signals, "about changed selection ");
}

TEST(KeyedTree, HundredThousandNodesAreFoundAndCostWhatTheirTextCosts)
{
    KeyedTree tree;
    const ui::TreeUpdate update(tree);
    const NodeId root = tree.Add(kNoNode, "MP3s", "MP3");
    for (int i = 0; i < 100'000; ++i)
        ASSERT_NE(tree.TryAdd(root, "@TITLE " + std::to_string(i), "Title " + std::to_string(i)),
                  kNoNode);
    for (int i = 0; i < 100'000; ++i)
        ASSERT_EQ(tree.TryAdd(root, "@TITLE " + std::to_string(i), "x"), kNoNode);
    for (int i = 0; i < 100'000; i += 7777)
        EXPECT_EQ(tree.Find("@TITLE " + std::to_string(i)), i + 1);
    EXPECT_EQ(tree.Children(root).size(), 100'000U);
}

} // namespace

#include "tests/windows/accessibility.h"
#include "tests/windows/bench.h"
#include "ui/qt/icons.h"
#include "ui/qt/views/treeview.h"

#include <gtest/gtest.h>

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QTest>
#include <QToolTip>

namespace
{

// A tree with a root, two groups and some values; every event is written down.
class TreeViewTest : public testing::Test
{
protected:
    TreeViewTest() : view(tree, nullptr)
    {
        view.setObjectName(QStringLiteral("TV"));
        view.setAccessibleName(QStringLiteral("TV"));
        tree.SetPlace({0, 0, 4500, 6000});
        tree.onNodeClick = [this](ui::NodeId node) { Note("NodeClick", node); };
        tree.onExpand = [this](ui::NodeId node) { Note("Expand", node); };
        tree.onCollapse = [this](ui::NodeId node) { Note("Collapse", node); };
        tree.onClick = [this] { events += "Click;"; };
        const ui::TreeUpdate update(tree);
        const ui::NodeId root = tree.Add(ui::kNoNode, "MP3s", "MP3", "closed", "open");
        for (const char *group : {"ByArtist", "ByYear"})
            tree.Add(root, group, group, "closed", "open");
        for (const char *name : {"Bill Evans", "Charles Mingus", "Dave Brubeck"})
            tree.Add(tree.Find("ByArtist"), std::string("#") + name, name, "closed", "open");
        tree.Add(tree.Find("ByYear"), "?", "", "closed", "open");
    }

    void SetUp() override
    {
        tree.SetExpanded(tree.Find("MP3s"), true);
        tests::ShowAndActivate(view);
        events.clear();
    }

    void Note(const char *event, ui::NodeId node)
    {
        events += std::string(event) + " " + std::string(tree.Key(node)) + ";";
    }

    QRect RectOf(const char *key) { return view.visualRect(view.Model().IndexOf(tree.Find(key))); }
    QPoint TextOf(const char *key) { return RectOf(key).center(); }
    QPoint ExpanderOf(const char *key)
    {
        return {RectOf(key).left() - view.indentation() / 2, RectOf(key).center().y()};
    }
    void ClickOn(QPoint place) { tests::ClickAt(*view.viewport(), place); }
    std::string Selected()
    {
        return tree.Selected() == ui::kNoNode ? "" : std::string(tree.Key(tree.Selected()));
    }

    ui::KeyedTree tree;
    ui::qt::TreeView view;
    std::string events;
};

TEST_F(TreeViewTest, ClickOnTextIsNodeClickThenClick)
{
    ClickOn(TextOf("ByArtist"));
    EXPECT_EQ(events, "NodeClick ByArtist;Click;");
    EXPECT_EQ(Selected(), "ByArtist");
}

TEST_F(TreeViewTest, ClickOnExpanderIsExpandOrCollapseThenClick)
{
    ClickOn(ExpanderOf("ByArtist"));
    EXPECT_EQ(events, "Expand ByArtist;Click;");
    EXPECT_TRUE(view.isExpanded(view.Model().IndexOf(tree.Find("ByArtist"))));
    events.clear();
    tests::EndDoubleClick();
    ClickOn(ExpanderOf("ByArtist"));
    EXPECT_EQ(events, "Collapse ByArtist;Click;");
    EXPECT_FALSE(view.isExpanded(view.Model().IndexOf(tree.Find("ByArtist"))));
}

TEST_F(TreeViewTest, ClickBesideTheNodesIsClickOnly)
{
    ClickOn({20, view.viewport()->height() - 5});
    EXPECT_EQ(events, "Click;");
}

TEST_F(TreeViewTest, OtherButtonsDoNothing)
{
    tree.Select(tree.Find("MP3s"));
    for (const auto button : {Qt::RightButton, Qt::MiddleButton}) {
        tests::ClickAt(*view.viewport(), TextOf("ByArtist"), button);
        tests::ClickAt(*view.viewport(), ExpanderOf("ByArtist"), button);
        tests::ClickAt(*view.viewport(), {20, view.viewport()->height() - 5}, button);
    }
    EXPECT_EQ(events, "");
    EXPECT_EQ(Selected(), "MP3s");
    EXPECT_EQ(view.currentIndex(), view.Model().IndexOf(tree.Find("MP3s")));
}

TEST_F(TreeViewTest, APressThatIsLetGoElsewhereIsNoClick)
{
    tree.Select(tree.Find("MP3s"));
    const auto mouse = [this](QEvent::Type type, QPoint at) {
        QMouseEvent event(type, at, view.viewport()->mapToGlobal(at), Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &event);
    };
    const auto marked = [this] { return ui::qt::TreeModel::NodeAt(view.currentIndex()); };
    mouse(QEvent::MouseButtonPress, TextOf("ByArtist"));
    EXPECT_EQ(marked(), tree.Find("ByArtist")); // while the button is pressed
    mouse(QEvent::MouseMove, TextOf("ByYear"));
    EXPECT_EQ(marked(), tree.Find("ByArtist"));
    mouse(QEvent::MouseButtonRelease, TextOf("ByYear"));
    EXPECT_EQ(marked(), tree.Find("MP3s"));
    EXPECT_EQ(view.selectionModel()->selectedIndexes(), QModelIndexList{view.currentIndex()});
    EXPECT_EQ(events, "");
    mouse(QEvent::MouseButtonPress, TextOf("ByArtist"));
    mouse(QEvent::MouseButtonRelease, {20, view.viewport()->height() - 5});
    mouse(QEvent::MouseButtonPress, {20, view.viewport()->height() - 5});
    mouse(QEvent::MouseButtonRelease, TextOf("ByArtist"));
    EXPECT_EQ(events, "");
    EXPECT_EQ(marked(), tree.Find("MP3s"));
}

TEST_F(TreeViewTest, TheSelectedNodeHasItsOwnPictureAndTheOneBeforeIsDrawnAgain)
{
    const auto looksLike = [this](const char *key, const char *image) {
        const auto picture = [](const QIcon &icon) { return icon.pixmap(16).toImage(); };
        const QModelIndex index = view.Model().IndexOf(tree.Find(key));
        return picture(index.data(Qt::DecorationRole).value<QIcon>()) ==
               picture(ui::qt::Icon(image));
    };
    EXPECT_FALSE(ui::qt::Icon("open").isNull());
    tree.Select(tree.Find("ByArtist"));
    EXPECT_TRUE(looksLike("ByArtist", "open"));
    EXPECT_TRUE(looksLike("ByYear", "closed"));
    EXPECT_FALSE(looksLike("ByYear", "open"));
    std::vector<ui::NodeId> drawn;
    QObject::connect(
        &view.Model(), &QAbstractItemModel::dataChanged, &view,
        [&](const QModelIndex &index) { drawn.push_back(ui::qt::TreeModel::NodeAt(index)); });
    tree.Select(tree.Find("ByYear"));
    EXPECT_EQ(drawn, (std::vector<ui::NodeId>{tree.Find("ByArtist"), tree.Find("ByYear")}));
    EXPECT_TRUE(looksLike("ByArtist", "closed"));
}

TEST_F(TreeViewTest, KeysAtTheEndsOfTheTree)
{
    const struct {
        const char *name, *node, *key, *events;
    } cases[] = {
        {"left at the root, which is closed", "MP3s", "Left", ""},
        {"right at a leaf", "?", "Right", ""},
        {"right at a leaf that code has expanded", "#Dave Brubeck", "Right", ""},
        {"enter at a leaf", "?", "Return", ""},
        {"minus at a closed group", "ByYear", "-", ""},
        {"plus at an open group", "ByArtist", "Shift++", ""},
        {"left at a leaf", "#Dave Brubeck", "Left", "NodeClick ByArtist;"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        for (const char *open : {"MP3s", "ByArtist", "#Dave Brubeck"})
            tree.SetExpanded(tree.Find(open), true);
        tree.SetExpanded(tree.Find("ByYear"), c.node == std::string("?"));
        tree.Select(tree.Find(c.node));
        if (c.node == std::string("MP3s"))
            tree.SetExpanded(tree.Find("MP3s"), false);
        events.clear();
        tests::PressKey(c.key);
        EXPECT_EQ(events, c.events);
    }
}

TEST_F(TreeViewTest, MoveByKeyIsNodeClickOnly)
{
    tree.Select(tree.Find("MP3s"));
    tests::PressKey("Down");
    EXPECT_EQ(events, "NodeClick ByArtist;");
    events.clear();
    tests::PressKey("End");
    EXPECT_EQ(events, "NodeClick ByYear;");
}

TEST_F(TreeViewTest, KeyHandledWhileTheListFillsMovesTheMarkToo)
{
    tree.SetExpanded(tree.Find("ByArtist"), true);
    tree.Select(tree.Find("ByArtist"));
    events.clear();
    int nested = 0;
    tree.onNodeClick = [&](ui::NodeId node) {
        Note("NodeClick", node);
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
        if (nested++ == 0)
            QApplication::sendEvent(&view, &down);
    };
    tests::PressKey("Down");
    EXPECT_EQ(events, "NodeClick #Bill Evans;NodeClick #Charles Mingus;");
    EXPECT_EQ(Selected(), "#Charles Mingus");
    const QModelIndex second = view.Model().IndexOf(tree.Find("#Charles Mingus"));
    EXPECT_EQ(view.currentIndex(), second);
    EXPECT_EQ(view.selectionModel()->selectedIndexes(), QModelIndexList{second});
}

TEST_F(TreeViewTest, RightOpensThenMovesDownLeftMovesBack)
{
    tree.Select(tree.Find("ByArtist"));
    tests::PressKey("Right");
    EXPECT_EQ(events, "Expand ByArtist;Click;");
    events.clear();
    tests::PressKey("Right");
    EXPECT_EQ(events, "NodeClick #Bill Evans;");
    events.clear();
    tests::PressKey("Left");
    EXPECT_EQ(events, "NodeClick ByArtist;");
    events.clear();
    tests::PressKey("Left");
    EXPECT_EQ(events, "Collapse ByArtist;Click;");
}

TEST_F(TreeViewTest, ModifiersDoNotGoPastTheTree)
{
    for (const char *keys : {"Shift++", "Ctrl++", "Ctrl+Right", "Shift+*"}) {
        SCOPED_TRACE(keys);
        tree.Select(tree.Find("ByArtist"));
        tests::PressKey(keys);
        EXPECT_EQ(events, "Expand ByArtist;Click;");
        EXPECT_TRUE(view.isExpanded(view.Model().IndexOf(tree.Find("ByArtist"))));
        events.clear();
        tests::PressKey("Shift+-");
        EXPECT_EQ(events, "Collapse ByArtist;Click;");
        events.clear();
    }
}

TEST_F(TreeViewTest, EnterAndDoubleClickTurnTheExpansion)
{
    tree.Select(tree.Find("ByArtist"));
    tests::PressKey("Return");
    EXPECT_EQ(events, "Expand ByArtist;Click;");
    events.clear();
    tests::DoubleClickAt(*view.viewport(), TextOf("ByArtist"));
    EXPECT_EQ(events, "NodeClick ByArtist;Click;Collapse ByArtist;Click;");
}

TEST_F(TreeViewTest, CodeExpandsWithItsEventAndSelectsWithoutOne)
{
    tree.Select(tree.Find("ByYear"));
    EXPECT_EQ(events, "");
    EXPECT_EQ(view.currentIndex(), view.Model().IndexOf(tree.Find("ByYear")));
    tree.SetExpanded(tree.Find("ByYear"), true);
    EXPECT_EQ(events, "Expand ByYear;");
    EXPECT_TRUE(view.isExpanded(view.Model().IndexOf(tree.Find("ByYear"))));
}

TEST_F(TreeViewTest, TypingFindsANode)
{
    tree.SetExpanded(tree.Find("ByArtist"), true);
    tree.Select(tree.Find("MP3s"));
    events.clear();
    tests::TypeText("da");
    EXPECT_EQ(Selected(), "#Dave Brubeck");
}

TEST_F(TreeViewTest, RebuildKeepsExpansionAndSelectionThatTheTreeHas)
{
    {
        const ui::TreeUpdate update(tree);
        tree.Clear();
        tree.Add(ui::kNoNode, "MP3s", "MP3");
        tree.Add(0, "ByAlbum", "By Album");
        tree.SetExpanded(0, true);
        tree.Select(tree.Find("ByAlbum"));
    }
    tests::Settle();
    EXPECT_TRUE(view.isExpanded(view.Model().IndexOf(0)));
    EXPECT_EQ(view.currentIndex(), view.Model().IndexOf(tree.Find("ByAlbum")));
    EXPECT_TRUE(view.viewport()->updatesEnabled());
}

TEST_F(TreeViewTest, OldNodesStayOnTheScreenDuringARebuild)
{
    QWidget window;
    window.resize(400, 500);
    view.setParent(&window);
    view.show();
    tests::ShowAndActivate(window);
    const QImage before = tests::Screenshot(window);
    const struct {
        const char *name;
        std::function<void()> act;
    } cases[] = {
        {"nothing else", [] {}},
        {"a part was to be drawn again", [this] { view.viewport()->update(); }},
        {"the window was to be drawn again", [&window] { window.update(); }},
    };
    for (const auto &c : cases) {
        for (const bool first : {true, false}) {
            SCOPED_TRACE(c.name + std::string(first ? ", before" : ", meanwhile"));
            if (first)
                c.act();
            {
                const ui::TreeUpdate update(tree);
                if (!first)
                    c.act();
                EXPECT_EQ(tests::Screenshot(window), before);
            }
            EXPECT_EQ(tests::Screenshot(window), before);
        }
    }
    view.setParent(nullptr);
}

TEST_F(TreeViewTest, NodesRemovedWhileShownDisappear)
{
    tree.SetExpanded(tree.Find("ByArtist"), true);
    tree.Remove("ByArtist");
    tests::Settle();
    EXPECT_EQ(view.Model().rowCount(view.Model().IndexOf(tree.Find("MP3s"))), 1);
}

TEST_F(TreeViewTest, ARightClickOpensThePopupOfItsNode)
{
    std::string ran;
    tree.popupOf = [&](ui::NodeId node) {
        std::vector<ui::KeyedTree::PopupEntry> entries;
        if (tree.Key(node) != "MP3s")
            entries.push_back({"&New && more", [&] { ran += tree.Key(tree.Selected()); }});
        return entries;
    };
    const auto whenPopup = [](const char *key) {
        tests::WhenPopup([key](QMenu &menu) {
            EXPECT_EQ(menu.actions().front()->text(), QStringLiteral("&New && more"));
            QTest::keyClick(&menu, *key == 'N' ? Qt::Key_N : Qt::Key_Escape);
        });
    };
    const auto rightClick = [&](const char *node) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, TextOf(node),
                                view.viewport()->mapToGlobal(TextOf(node)));
        QApplication::sendEvent(view.viewport(), &event);
    };
    whenPopup("N");
    rightClick("ByYear");
    EXPECT_EQ(events, "NodeClick ByYear;Click;");
    EXPECT_EQ(ran, "ByYear");
    whenPopup("Escape");
    rightClick("ByYear");
    rightClick("MP3s"); // a popup without entries does not open
    EXPECT_EQ(Selected(), "MP3s");
    EXPECT_EQ(ran, "ByYear");
    tests::ClickAt(*view.viewport(), TextOf("ByArtist"));
    whenPopup("N");
    tests::PressKey("Shift+F10");
    EXPECT_EQ(ran, "ByYearByArtist");
}

TEST_F(TreeViewTest, CutTextHasATipThatShowsItUnchanged)
{
    const std::string title = "<b>Live</b> & a title that is much too long for the tree's width";
    tree.Add(tree.Find("ByYear"), "?x", title, "closed", "open");
    tree.SetExpanded(tree.Find("ByYear"), true);
    tests::Settle();
    QHelpEvent help(QEvent::ToolTip, TextOf("?x"), view.viewport()->mapToGlobal(TextOf("?x")));
    QApplication::sendEvent(view.viewport(), &help);
    ASSERT_TRUE(tests::WaitUntil([] { return QToolTip::isVisible(); }));
    EXPECT_NE(QToolTip::text().indexOf(QLatin1String("&lt;b&gt;Live&lt;/b&gt; &amp; a title")), -1);
    QToolTip::hideText();
}

TEST_F(TreeViewTest, EveryNodeHasAName)
{
    view.Model().nameOfEmpty = [](ui::NodeId) { return QStringLiteral("Year Folder"); };
    tree.SetExpanded(tree.Find("ByYear"), true);
    EXPECT_EQ(tests::NamelessControls(view), std::vector<std::string>{});
    EXPECT_EQ(view.Model().IndexOf(tree.Find("?")).data(Qt::AccessibleTextRole).toString(),
              QStringLiteral("Year Folder"));
}

} // namespace

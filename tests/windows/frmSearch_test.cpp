// The search window as a user works with it: by keys and by mouse, beside the main window.
#include "browser/commands.h"
#include "browser/form/commandstate.h"
#include "browser/itemlist.h"
#include "catalogue/rowgroups.h"
#include "search/frmSearch.h"
#include "search/install.h"
#include "search/searchform.h"
#include "tests/windows/awaitplace.h"
#include "tests/windows/mainwindowfixture.h"
#include "ui/qt/form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <functional>
#include <utility>

namespace
{

class SearchWindow : public tests::MainWindowTest
{
protected:
    void Open()
    {
        OpenCatalogue();
        for (int i = 0; i < 40; ++i) {
            const std::string n = std::to_string(i);
            const std::vector<catalogue::Value> values = {i % 2 == 0 ? "Love song " + n
                                                                     : "Waltz " + n,
                                                          std::string("Bill Evans"),
                                                          std::string("Ñandú"),
                                                          std::string("1961"),
                                                          std::string("<b>live</b>"),
                                                          std::string("Jazz"),
                                                          std::string("la la"),
                                                          Song(n + ".mp3"),
                                                          std::int64_t{0}};
            catalogue::DataAccess->ExecuteSQL("AddMP3", catalogue::kStoredInsert, values);
        }
        Start();
        search::Install();
        search::RegisterSearchWidgets();
        browser::RegisterItemKind(
            "/", [this](const std::string &path, ui::KeyedList &) { played = path; });
        for (const char *key : {"cp_Info", "cp_Play"})
            browser::RegisterCommand(
                key, [this] { chosen = browser::SelectedPath(browser::PopupList(Form())); });
        browser::UpdateCommands(Form());
        ChooseMenu("mnuTools", "submnuSearch");
        searchWindow = tests::WaitForWindow("frmSearch");
        ASSERT_NE(searchWindow, nullptr);
        ASSERT_TRUE(tests::WaitUntil([this] { return searchWindow->isActiveWindow(); }));
    }
    ~SearchWindow() override { search::ForgetSearch(); }

    static constexpr int kMany = 20000;

    // Rows whose titles begin with "Many".
    // Opens the window over many songs. `handler` runs once, as an event, when the search for
    // "many" has shown its first rows and goes on.
    void OpenWithEventDuringTheFill(const std::function<void()> &handler)
    {
        Open();
        AddMany();
        Search().options.chkField[0].SetChecked(true);
        ui::KeyedList &list = Search().ListView;
        list.rowsChanged = [this, shown = list.rowsChanged, &list, handler,
                            done = false]() mutable {
            shown();
            if (list.Count() > 0 && !std::exchange(done, true))
                QTimer::singleShot(0, window.get(), handler);
        };
    }

    void AddMany()
    {
        const catalogue::RowGroups groups;
        for (int i = 0; i < kMany; ++i) {
            catalogue::RowStep step(*catalogue::DataAccess);
            std::vector<catalogue::Value> values(7, std::string());
            values[0] = "Many " + std::to_string(i);
            values.emplace_back("/many/" + std::to_string(i) + ".mp3");
            values.emplace_back(std::int64_t{0});
            step.Access().ExecuteSQL("AddMP3", catalogue::kStoredInsert, values);
        }
    }

    search::SearchForm &Search() { return search::frmSearch(); }
    QWidget &Control(const char *name) { return *tests::Find(*searchWindow, name); }
    ui::qt::ListView &List()
    {
        return *static_cast<ui::qt::ListView *>(tests::Find(*searchWindow, "ListView"));
    }
    QPoint Row(int displayIndex)
    {
        return List().visualRect(List().Model().index(displayIndex, 1)).center();
    }
    void ClickWith(Qt::KeyboardModifier modifier, int displayIndex)
    {
        QTest::mouseClick(searchWindow->windowHandle(), Qt::LeftButton, modifier,
                          List().viewport()->mapTo(searchWindow, Row(displayIndex)));
    }
    bool WaitForRows(int count)
    {
        return tests::WaitUntil([this, count] { return Search().ListView.Count() == count; });
    }

    ui::qt::FormWindows host;
    QWidget *searchWindow = nullptr; // its window
    std::string played, chosen;
};

class SearchWindowScaled : public SearchWindow
{
};

TEST_F(SearchWindowScaled, SearchesByKeysAlone)
{
    Open();
    tests::KeepScreenshot(*searchWindow, "frmSearch-empty");
    EXPECT_TRUE(Control("txtToFind").hasFocus());
    tests::TypeText("jAZZ");
    tests::PressKey("Alt+C");     // Check All
    for (int i = 0; i < 8; ++i) { // a key presses a button a moment later
        const auto *box =
            tests::Find<QCheckBox>(*searchWindow, ("chkField(" + std::to_string(i) + ")").c_str());
        EXPECT_TRUE(tests::WaitUntil([box] { return box->isChecked(); })) << i;
    }
    Control("txtToFind").setFocus();
    tests::PressKey("Return");
    ASSERT_TRUE(WaitForRows(40));
    EXPECT_EQ(Search().SBar.Panel("Items").text, "40 Item(s)");
    List().setFocus();
    tests::PressKey("Down");
    ASSERT_TRUE(tests::WaitUntil([this] { return !Search().lblInfo.Caption().empty(); }));
    EXPECT_NE(Search().lblInfo.Caption().find("<b>live</b>"), std::string::npos);
    tests::KeepScreenshot(*searchWindow, "frmSearch-filled");
    tests::PressKey("Escape");
    EXPECT_TRUE(tests::WaitUntil([this] { return !searchWindow->isVisible(); }));
    EXPECT_EQ(Form().searchList, nullptr);
    ChooseMenu("mnuTools", "submnuSearch");
    ASSERT_TRUE(tests::WaitUntil([this] { return searchWindow->isVisible(); }));
    EXPECT_EQ(Search().ListView.Count(), 40); // as it was
    EXPECT_EQ(Search().options.txtToFind.Text(), "jAZZ ");
}

TEST_F(SearchWindow, EveryControlIsFoundByItsName)
{
    Open();
    for (const char *name :
         {"pctCloseTree", "frmCloseTree",    "lblFolders",  "lblCloseTree",     "pctOptions",
          "Separator",    "pctBorders",      "pctWeb",      "pctWebLine",       "lblWebFolder",
          "ImgIcon",      "lblInfo",         "WebItemName", "WebItemType",      "WebToolTip",
          "vsbBack",      "ListView",        "SBar",        "frmSearchOptions", "lblToFind",
          "txtToFind",    "lblTypeOfSearch", "cmbType",     "cmdAll(0)",        "cmdAll(1)",
          "cmdSearch"})
        EXPECT_NE(searchWindow->findChild<QWidget *>(QLatin1String(name)), nullptr) << name;
    EXPECT_EQ(searchWindow->objectName(), QLatin1String("frmSearch"));
}

TEST_F(SearchWindow, TabsLeadThroughThePaneToTheList)
{
    Open();
    std::string order;
    for (int i = 0; i < 16; ++i) {
        order += QApplication::focusWidget()->objectName().toStdString() + " ";
        tests::PressKey("Tab");
    }
    EXPECT_EQ(order, "txtToFind cmbType chkField(0) chkField(1) chkField(2) chkField(3) "
                     "chkField(4) chkField(5) chkField(6) chkField(7) cmdAll(0) cmdAll(1) "
                     "cmdSearch ListView Separator pctWeb ");
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("lblCloseTree"));
    tests::PressKey("Tab");
    EXPECT_TRUE(Control("txtToFind").hasFocus());
}

// Enter presses the button of the search from the pane, and only from there.
TEST_F(SearchWindow, EnterSearchesFromThePane)
{
    Open();
    Search().options.chkField[0].SetChecked(true);
    Search().options.txtToFind.SetText("waltz");
    std::uint64_t searches = 0;
    for (const char *name : {"txtToFind", "cmbType", "chkField(3)", "cmdSearch"}) {
        Control(name).setFocus();
        tests::PressKey("Return");
        ++searches;
        EXPECT_TRUE(tests::WaitUntil([&] { return Search().searches == searches; })) << name;
        EXPECT_TRUE(WaitForRows(20)) << name;
    }
    for (const char *name : {"lblCloseTree", "Separator", "pctWeb", "ListView"}) {
        Control(name).setFocus();
        tests::PressKey("Return");
        tests::Settle();
        EXPECT_EQ(Search().searches, searches) << name;
    }
}

TEST_F(SearchWindow, ThePaneClosesByMouseAndOpensByKeysAndMenu)
{
    Open();
    tests::Click(Control("lblCloseTree"));
    ASSERT_TRUE(tests::WaitUntil([this] { return !Control("pctOptions").isVisible(); }));
    EXPECT_FALSE(Control("Separator").isVisible());
    tests::KeepScreenshot(*searchWindow, "frmSearch-closed");
    tests::PressKey("Ctrl+F");
    ASSERT_TRUE(tests::WaitUntil([this] { return Control("pctOptions").isVisible(); }));
    EXPECT_TRUE(Control("txtToFind").hasFocus());
    EXPECT_EQ(Control("pctOptions").width(), Control("pctCloseTree").width());
    tests::Click(Control("lblCloseTree"));
    ASSERT_TRUE(tests::WaitUntil([this] { return !Control("pctOptions").isVisible(); }));
    tests::WhenPopup([](QMenu &menu) {
        tests::ClickAt(menu, menu.actionGeometry(menu.actions().constFirst()).center());
    });
    QWidget &panel = Control("pctWeb");
    const QPoint place(40, panel.height() - 40);
    QContextMenuEvent ask(QContextMenuEvent::Mouse, place, panel.mapToGlobal(place));
    QApplication::sendEvent(&panel, &ask);
    EXPECT_TRUE(tests::WaitUntil([this] { return Control("pctOptions").isVisible(); }));
}

TEST_F(SearchWindow, RowsPlayByDoubleClickAndHaveTheMainPopup)
{
    Open();
    Search().options.chkField[0].SetChecked(true);
    tests::TypeText("waltz");
    tests::Click(Control("cmdSearch"));
    ASSERT_TRUE(WaitForRows(20));
    tests::DoubleClickAt(*List().viewport(), Row(1));
    EXPECT_EQ(played, Song("3.mp3"));
    tests::WhenPopup([](QMenu &menu) { menu.close(); });
    tests::ClickAt(*List().viewport(), Row(4), Qt::RightButton); // no hit test: the row stays
    EXPECT_TRUE(Form().PopupFromSearch);
    EXPECT_EQ(browser::SelectedPath(browser::PopupList(Form())), Song("3.mp3"));
}

TEST_F(SearchWindow, SeveralRowsShowTheirCountInThePanel)
{
    Open();
    Search().options.chkField[0].SetChecked(true);
    tests::TypeText("waltz");
    tests::PressKey("Return");
    ASSERT_TRUE(WaitForRows(20));
    tests::ClickAt(*List().viewport(), Row(0));
    List().setFocus();
    tests::PressKey("Shift+Down");
    EXPECT_EQ(Search().ListView.SelectedCount(), 2);
    ASSERT_TRUE(tests::WaitUntil(
        [this] { return Search().WebItemType.Caption().starts_with("2 mp3 filess selected."); }));
    EXPECT_NE(Search().lblInfo.Caption().find("Bill Evans - Waltz 1"), std::string::npos);
}

TEST_F(SearchWindow, ClosingItDuringASearchEndsTheFill)
{
    OpenWithEventDuringTheFill([this] { searchWindow->close(); });
    const ui::KeyedList &list = Search().ListView;
    tests::TypeText("many");
    tests::PressKey("Return");
    ASSERT_TRUE(tests::WaitUntil([this] { return !searchWindow->isVisible(); }));
    EXPECT_LT(list.Count(), kMany);
    EXPECT_GE(list.Count(), 100);
    EXPECT_EQ(Search().SBar.Panel("Items").text, "0 Item(s)");
    EXPECT_TRUE(desktop.boxes.empty());
}

// The window is destroyed while its own button is still down.
TEST_F(SearchWindow, TheEndOfTheProgramDuringASearchEndsTheFill)
{
    OpenWithEventDuringTheFill([this] { browser::CloseMainForm(Form()); });
    const ui::KeyedList &list = Search().ListView;
    tests::TypeText("many");
    tests::Click(Control("cmdSearch"));
    ASSERT_TRUE(tests::WaitUntil([this] { return ended; }));
    EXPECT_TRUE(tests::WaitUntil([this] { return host.WindowOf(Search()) == nullptr; }));
    EXPECT_LT(list.Count(), kMany);
    EXPECT_EQ(Form().searchList, nullptr);
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(SearchWindow, ASecondSearchDuringTheFirstReplacesItsRows)
{
    bool second = false;
    OpenWithEventDuringTheFill([this, &second] {
        second = true;
        Search().options.txtToFind.SetText("waltz");
        Search().options.cmdSearch.Click();
    });
    const ui::KeyedList &list = Search().ListView;
    tests::TypeText("many");
    tests::PressKey("Return");
    ASSERT_TRUE(
        tests::WaitUntil([this] { return Search().SBar.Panel("Items").text == "20 Item(s)"; }));
    EXPECT_TRUE(second);
    EXPECT_EQ(list.Count(), 20);
}

TEST_F(SearchWindow, TheSplitterDragsThePane)
{
    Open();
    const int before = Control("pctOptions").width();
    QWidget &separator = Control("Separator");
    tests::Drag(separator, {1, 100}, {61, 100});
    EXPECT_TRUE(tests::WaitUntil([&] { return Control("pctOptions").width() > before + 40; }));
    EXPECT_EQ(Control("pctBorders").x(), separator.geometry().right() + 1);
}

TEST_F(SearchWindow, TheSplitterIsGrabbedBesideIt)
{
    Open();
    QWidget &separator = Control("Separator");
    for (const int from : {-3, separator.width() + 2}) {
        const int before = separator.x();
        tests::Drag(separator, {from, 100}, {from + 40, 100});
        EXPECT_NEAR(separator.x(), before + 40, 1) << from;
        EXPECT_EQ(Control("pctOptions").width(), separator.x());
    }
    tests::Click(Control("lblCloseTree"));
    ASSERT_TRUE(tests::WaitUntil([&] { return !separator.isVisible(); }));
    // A click on the list's edge is for the list.
    EXPECT_FALSE(Control("SeparatorGrip").isVisible());
    tests::PressKey("Ctrl+F");
    EXPECT_TRUE(tests::WaitUntil([this] { return Control("SeparatorGrip").isVisible(); }));
}

// What the list hands to another program: the selected files, as copies.
TEST_F(SearchWindow, RowsAreDraggedAsTheirFiles)
{
    Open();
    Search().options.chkField[0].SetChecked(true);
    tests::TypeText("waltz");
    tests::PressKey("Return");
    ASSERT_TRUE(WaitForRows(20));
    EXPECT_TRUE(List().dragEnabled());
    tests::ClickAt(*List().viewport(), Row(1));
    ClickWith(Qt::ShiftModifier, 2);
    const std::unique_ptr<QMimeData> data(
        List().Model().mimeData(List().selectionModel()->selectedIndexes()));
    ASSERT_NE(data, nullptr);
    ASSERT_EQ(data->urls().size(), 2);
    EXPECT_EQ(data->urls()[0].toLocalFile().toStdString(), Song("3.mp3"));
    EXPECT_EQ(data->urls()[1].toLocalFile().toStdString(), Song("5.mp3"));
    EXPECT_EQ(List().Model().supportedDragActions(), Qt::CopyAction);
}

// Shift selects as far as the row, Ctrl adds a row or takes it away; the panel counts them.
TEST_F(SearchWindow, ShiftAndCtrlSelectByMouse)
{
    Open();
    Search().options.chkField[0].SetChecked(true);
    tests::TypeText("waltz");
    tests::PressKey("Return");
    ASSERT_TRUE(WaitForRows(20));
    const auto panelSays = [this](const char *words) {
        return tests::WaitUntil([&] { return Search().WebItemType.Caption().starts_with(words); });
    };
    tests::ClickAt(*List().viewport(), Row(1));
    ASSERT_TRUE(tests::WaitUntil([this] { return Search().ListView.SelectedCount() == 1; }));
    ClickWith(Qt::ShiftModifier, 4);
    EXPECT_EQ(Search().ListView.SelectedCount(), 4);
    EXPECT_TRUE(panelSays("4 mp3 filess selected."));
    ClickWith(Qt::ControlModifier, 6);
    EXPECT_EQ(Search().ListView.SelectedCount(), 5);
    EXPECT_TRUE(panelSays("5 mp3 filess selected."));
    ClickWith(Qt::ControlModifier, 2);
    EXPECT_EQ(Search().ListView.SelectedCount(), 4);
    EXPECT_TRUE(panelSays("4 mp3 filess selected."));
    tests::ClickAt(*List().viewport(), Row(3));
    EXPECT_TRUE(tests::WaitUntil([this] { return Search().ListView.SelectedCount() == 1; }));
}

TEST_F(SearchWindow, ASmallWindowKeepsEveryControlWithinReach)
{
    Open();
    searchWindow->resize(800, 560);
    tests::AwaitPlace(*searchWindow);
    tests::KeepScreenshot(*searchWindow, "frmSearch-small");
    EXPECT_LE(Control("txtToFind").width(), Control("pctOptions").width());
    EXPECT_GT(List().viewport()->width(), 50);
    EXPECT_LE(List().mapTo(searchWindow, List().rect().bottomRight()).x(), searchWindow->width());
}

} // namespace

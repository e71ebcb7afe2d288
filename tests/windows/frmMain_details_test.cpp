// Details of the main window that users notice: what can be copied, what is cut, where the window
// opens.
#include "browser/form/commandstate.h"
#include "browser/itemlist.h"
#include "tests/support/mp3bytes.h"
#include "tests/windows/awaitplace.h"
#include "tests/windows/mainwindowfixture.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QFontDatabase>
#include <QHeaderView>
#include <QMimeData>

namespace tests
{

namespace
{

class MainWindowDetails : public MainWindowTest
{
protected:
    // A row of the catalogue.
    static void AddRow(const std::string &title, const std::string &artist, const std::string &path)
    {
        const std::vector<catalogue::Value> values = {
            title,         artist,        std::string(), std::string(),  std::string(),
            std::string(), std::string(), path,          std::int64_t{0}};
        catalogue::DataAccess->ExecuteSQL("AddMP3", catalogue::kStoredInsert, values);
    }

    void Expand(const char *group)
    {
        Form().TV.SetExpanded(Form().TV.Find(group), true);
        Form().TreeJustExpanded = false;
    }
};

// In the font families of the machine, at sizes in which the width of letters has fractions of a
// pixel.
TEST_F(MainWindowDetails, AddressIsCompleteInEveryFont)
{
    Start();
    const QFont before = QApplication::font();
    const QStringList families = {QStringLiteral("DejaVu Sans"), QStringLiteral("Liberation Sans"),
                                  QStringLiteral("Cantarell")};
    for (const QString &family : families) {
        ASSERT_TRUE(QFontDatabase::families().contains(family)) << family.toStdString();
        for (const qreal points : {8.0, 9.3, 10.0, 11.7, 14.0}) {
            QFont font(family);
            font.setPointSizeF(points);
            QApplication::setFont(font);
            Settle();
            EXPECT_EQ(Label("lblAddress").text(), QStringLiteral("Address"))
                << family.toStdString() << " " << points;
            EXPECT_GT(Label("WEPath").x(), Label("lblAddress").geometry().right());
        }
    }
    QApplication::setFont(before);
    Settle();
}

TEST_F(MainWindowDetails, EmptyValuesAreNamedAndFoldersHaveTheirPath)
{
    Start();
    AddRow("One", "", "/music/first/CD 1/one.mp3");
    AddRow("Two", "Artist", "/music/second/CD 1/two.mp3");
    browser::LoadTreeView(Form(), "");
    const auto node = [&](const char *key) { return TV().Model().IndexOf(Form().TV.Find(key)); };
    Expand("ByArtist");
    EXPECT_EQ(node("#").data().toString(), QString());
    EXPECT_TRUE(
        node("#").data(Qt::AccessibleTextRole).toString().startsWith(QStringLiteral("(none)")));
    Expand("ByPath");
    EXPECT_EQ(node("\u00BF/MUSIC/FIRST/CD 1/").data().toString(), QStringLiteral("CD 1"));
    EXPECT_EQ(node("\u00BF/MUSIC/FIRST/CD 1/").data(Qt::ToolTipRole).toString(),
              QStringLiteral("/music/first/CD 1"));
    EXPECT_EQ(node("\u00BF/MUSIC/SECOND/CD 1/").data(Qt::ToolTipRole).toString(),
              QStringLiteral("/music/second/CD 1"));
    ClickNode("#");
    ASSERT_TRUE(WaitUntil([&] { return Form().LV.Count() == 1; }));
    EXPECT_GE(LV().header()->length(), LV().viewport()->width());
    KeepScreenshot(*window, "main-none");
}

TEST_F(MainWindowDetails, AddressAndPanelCanBeCopied)
{
    Start();
    AddRow("One & only", "Artist", "/music/one.mp3");
    browser::LoadTreeView(Form(), "");
    Expand("ByArtist");
    ClickNode("#ARTIST");
    ASSERT_TRUE(WaitUntil([&] { return Form().LV.Count() == 1; }));
    ClickAt(*LV().viewport(), RowAt(0));
    ASSERT_TRUE(WaitForText("lblInfo", "one.mp3"));
    QClipboard &clipboard = *QGuiApplication::clipboard();

    QLabel &address = Label("WEPath");
    EXPECT_EQ(address.frameShape(), QFrame::NoFrame);
    Click(address);
    PressKey("Ctrl+A");
    PressKey("Ctrl+C");
    EXPECT_EQ(clipboard.text(), QStringLiteral("MP3/By Artist/Artist"));

    Click(Label("lblInfo"));
    EXPECT_EQ(QApplication::focusWidget(), Find(*window, "pctWeb"));
    PressKey("Ctrl+C"); // nothing is selected: all of the panel
    EXPECT_TRUE(clipboard.text().contains(QStringLiteral("One & only")))
        << clipboard.text().toStdString();
    EXPECT_TRUE(clipboard.text().contains(QStringLiteral("/music/one.mp3")));
    DoubleClickAt(Label("WebItemName"), {6, Label("WebItemName").height() / 2});
    PressKey("Ctrl+C");
    EXPECT_EQ(clipboard.text(), QStringLiteral("One"));
    KeepScreenshot(*window, "main-panel-selected");
    ClickAt(*LV().viewport(), RowAt(0));
    LV().setFocus();
    PressKey("Ctrl+C");
    EXPECT_EQ(clipboard.mimeData()->urls().value(0).toLocalFile(),
              QStringLiteral("/music/one.mp3"));
}

TEST_F(MainWindowDetails, ThePanelScrollsByKeys)
{
    Start();
    AddRow(std::string(6000, 'w'), "Artist", "/music/one.mp3");
    browser::LoadTreeView(Form(), "");
    Expand("ByArtist");
    ClickNode("#ARTIST");
    ASSERT_TRUE(WaitUntil([&] { return Form().LV.Count() == 1; }));
    ClickAt(*LV().viewport(), RowAt(0));
    ASSERT_TRUE(WaitUntil([&] { return Form().vsbBack.Visible(); }));
    Find(*window, "pctWeb")->setFocus();
    PressKey("Down");
    const int line = Form().vsbBack.Value();
    EXPECT_GT(line, 0);
    PressKey("PgDown");
    EXPECT_GT(Form().vsbBack.Value(), 3 * line);
    PressKey("End");
    EXPECT_EQ(Form().vsbBack.Value(), Form().vsbBack.Max());
    PressKey("Home");
    EXPECT_EQ(Form().vsbBack.Value(), 0);
}

TEST_F(MainWindowDetails, TheSplitterIsGrabbedBesideIt)
{
    Start();
    QWidget &separator = *Find(*window, "Separator");
    for (const int from : {-3, separator.width() + 2}) {
        const int before = separator.x();
        Drag(separator, {from, 80}, {from + 40, 80});
        EXPECT_NEAR(separator.x(), before + 40, 1) << from;
        EXPECT_EQ(TV().width(), separator.x());
    }
}

TEST_F(MainWindowDetails, MaximisedIsRemembered)
{
    Start();
    window->resize(820, 560);
    AwaitPlace(*window);
    ASSERT_TRUE(WaitUntil([&] { // the place to restore is stored
        return Form().normal.width == Form().window.width &&
               Form().normal.height == Form().window.height;
    }));
    const QSize size = window->size();
    window->showMaximized();
    ASSERT_TRUE(WaitUntil([&] { return window->width() > 820 && Form().maximised; }));
    AwaitPlace(*window);
    PressKey("Ctrl+Q");
    ASSERT_TRUE(ended);
    Leave();
    Start();
    EXPECT_TRUE(WaitUntil([&] { return window->isMaximized(); }));
    window->showNormal();
    EXPECT_TRUE(WaitUntil([&] { return window->size() == size; }))
        << window->width() << "x" << window->height();
    PressKey("Ctrl+Q");
    Leave();
    Start();
    EXPECT_FALSE(window->isMaximized());
    EXPECT_EQ(window->size(), size);
}

TEST_F(MainWindowDetails, ASubMenuWithNothingUsableIsDisabled)
{
    Start(); // the commands of play lists are not registered
    EXPECT_FALSE(Find<QMenu>(*window, "submnuPlayList")->menuAction()->isEnabled());
    EXPECT_TRUE(Find<QMenu>(*window, "submnuSetLanguage")->menuAction()->isEnabled());
    browser::RegisterCommand("submnuAddPlayList", [] {});
    browser::UpdateCommands(Form());
    EXPECT_TRUE(Find<QMenu>(*window, "submnuPlayList")->menuAction()->isEnabled());
}

} // namespace

} // namespace tests

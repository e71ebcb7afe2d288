// The main window as a user walks through it, by mouse and keys.
#include "catalogue/regeneration.h"
#include "tests/windows/awaitplace.h"
#include "tests/windows/mainwindowfixture.h"

#include <gtest/gtest.h>

#include <QHeaderView>
#include <QScreen>
#include <QToolBar>
#include <QWheelEvent>

namespace tests
{

namespace
{

using platform::Answer;

// The popup's left edge: black at its foot, blue at its head, the picture and the caption in white
// above the foot.
void ExpectStrip(const QImage &popup)
{
    constexpr int kMiddle = 12, kLeft = 3; // pixels into the strip
    const int foot = popup.height() - 3;
    EXPECT_LT(popup.pixelColor(kLeft, foot).blue(), 10);
    EXPECT_GT(popup.pixelColor(kLeft, 3).blue(), 240);
    EXPECT_NEAR(popup.pixelColor(kLeft, popup.height() / 2).blue(), 128, 8);
    EXPECT_LT(popup.pixelColor(kLeft, 3).red() + popup.pixelColor(kLeft, 3).green(), 10);
    int icon = 0; // of its sixteen pixels' square
    for (int y = foot - 16; y < foot; ++y)
        for (int x = 5; x < 21; ++x)
            icon += popup.pixelColor(x, y).red() > 60 ? 1 : 0;
    EXPECT_GT(icon, 20);
    int white = 0, highest = foot;
    for (int y = 0; y < foot - 18; ++y)
        for (int x = 1; x < 2 * kMiddle; ++x)
            if (popup.pixelColor(x, y).red() > 200) {
                ++white;
                highest = std::min(highest, y);
            }
    EXPECT_GT(white, 40);                          // the caption's letters
    EXPECT_GT(foot - highest, 40);                 // run up
    EXPECT_LT(foot - highest, popup.height() / 2); // from above the picture
}

TEST_F(MainWindowTest, FromAnEmptyCatalogueToAPlacementFoundAgain)
{
    EncodeFour();
    Start();
    EXPECT_FALSE(Form().LV.Hint().empty());
    KeepScreenshot(*window, "main-empty");

    desktop.ExpectBox("There were some 'mistakes'", Answer::No);
    Regenerate();
    ASSERT_TRUE(WaitUntil([this] { return Rows().size() == 4; }));
    EXPECT_TRUE(TV().isEnabled());
    EXPECT_FALSE(Find(*window, "PBar")->isVisible());

    ClickExpander("ByArtist");
    EXPECT_EQ(Form().LV.Count(), 0) << "an expander lists nothing";
    EndDoubleClick();
    ClickNode("#MILES DAVIS");
    ASSERT_EQ(Form().LV.Count(), 2);
    EXPECT_EQ(Label("lblWebFolder").text(), QStringLiteral("Miles Davis"));
    EXPECT_TRUE(Label("WEPath").text().endsWith(QLatin1String("By Artist/Miles Davis")));
    EXPECT_TRUE(LV().header()->isSectionHidden(2)) << "the artist that all rows share";

    const QHeaderView &header = *LV().header();
    ClickAt(*header.viewport(), {header.sectionViewportPosition(1) + 20, 8});
    EXPECT_EQ(Cell(0, 1), "All Blues");

    ClickAt(*LV().viewport(), RowAt(0));
    ASSERT_TRUE(WaitForText("lblInfo", "Album: Kind of Blue"));
    EXPECT_EQ(Label("WebItemName").text(), QStringLiteral("All Blues"));
    EXPECT_EQ(Label("WebItemType").text(), QStringLiteral("MP3 File"));
    KeepScreenshot(*window, "main-filled");

    PressKey("Shift+Down");
    ASSERT_TRUE(WaitForText("WebItemType", "2 mp3 filess selected."));
    EXPECT_TRUE(Label("lblInfo").text().contains(QLatin1String("Miles Davis - So What")));

    ChooseMenu("mnuTools", "submnuWebStyle");
    EXPECT_FALSE(Find(*window, "pctWeb")->isVisible());
    EXPECT_EQ(settings.Read("Quenlin", "Preferences", "WebStyle", ""), "0");
    ChooseMenu("mnuTools", "submnuWebStyle");
    EXPECT_TRUE(Find(*window, "pctWeb")->isVisible());

    QWidget &separator = *Find(*window, "Separator");
    const int before = separator.x();
    Drag(separator, {1, 50}, {61, 50});
    EXPECT_EQ(separator.x(), before + 61) << "the splitter stands under the pointer";
    EXPECT_EQ(TV().width(), separator.x());

    window->resize(900, 600);
    window->move(60, 40);
    AwaitPlace(*window);
    const QSize size = window->size();
    const QPoint place = window->pos();
    PressKey("Ctrl+Q");
    ASSERT_TRUE(ended);
    Leave();

    Start();
    EXPECT_EQ(window->size(), size);
    EXPECT_EQ(window->pos(), place);
    EXPECT_EQ(Find(*window, "Separator")->x(), before + 61);
    EXPECT_GE(Form().TV.Find("#BILL EVANS"), 0) << "the catalogue is there";
}

TEST_F(MainWindowTest, TitlesAreShownUnchanged)
{
    EncodeFour();
    Start();
    desktop.ExpectBox("There were some 'mistakes'", Answer::No);
    Regenerate();
    ClickExpander("ByArtist");
    EndDoubleClick();
    ClickNode("#BILL EVANS");
    ClickAt(*LV().viewport(), RowAt(0));
    ASSERT_TRUE(WaitForText("lblInfo", "Title: Waltz & Debby <b>"));
    EXPECT_EQ(Label("WebItemName").text(), QStringLiteral("Waltz & Debby <b>"));
    EXPECT_EQ(Cell(0, 1), "Waltz & Debby <b>");
}

TEST_F(MainWindowTest, WhatIsNotBuiltIsDisabledEverywhere)
{
    EncodeFour();
    Start();
    desktop.ExpectBox("There were some 'mistakes'", Answer::No);
    Regenerate();
    ClickExpander("ByArtist");
    EndDoubleClick();
    ClickNode("#MILES DAVIS");
    ClickAt(*LV().viewport(), RowAt(0));
    for (const char *name :
         {"submnuFileInfo", "submnuSearch", "submnuPreferences", "submnuAddFile"})
        EXPECT_FALSE(window->findChild<QAction *>(QString::fromLatin1(name))->isEnabled()) << name;
    DoubleClickAt(*LV().viewport(), RowAt(0));
    EXPECT_EQ(Form().LV.Count(), 2) << "a song is not played yet, and nothing else happens";

    ClickAt(*LV().viewport(), RowAt(1), Qt::RightButton);
    auto *popup = Find<QMenu>(*window, "Pop");
    ASSERT_TRUE(WaitUntil([popup] { return popup->isVisible(); }));
    KeepScreenshot(*popup, "main-popup");
    ExpectStrip(Screenshot(*popup));
    EXPECT_EQ(popup->actions().size(), 9);
    QStringList enabled;
    for (const QAction *action : popup->actions())
        if (!action->isSeparator() && action->isEnabled())
            enabled += action->text();
    EXPECT_EQ(enabled, QStringList()) << "nothing is registered for them";
    popup->close();

    // By key it opens for all selected rows, and each time the key is pressed.
    const ui::RowId both[] = {0, 1};
    Form().LV.SetSelection(both, 0);
    LV().setFocus();
    ASSERT_TRUE(WaitUntil([] { return QApplication::focusWindow() != nullptr; }));
    PressKey("Shift+F10");
    ASSERT_TRUE(WaitUntil([popup] { return popup->isVisible(); }));
    ExpectStrip(Screenshot(*popup));
    EXPECT_EQ(Form().LV.SelectedCount(), 2);
    popup->close();
}

TEST_F(MainWindowTest, RowsAreSpokenByTitleArtistAndKind)
{
    EncodeFour();
    Start();
    desktop.ExpectBox("There were some 'mistakes'", Answer::No);
    Regenerate();
    const auto spoken = [this](int row) {
        return LV().Model().index(row, 0).data(Qt::AccessibleTextRole).toString();
    };
    ClickNode("ByArtist");
    EXPECT_EQ(spoken(1), QStringLiteral("Bill Evans, Artist Folder"));
    ClickNode("ByTitle");
    EXPECT_EQ(spoken(0), QStringLiteral("Title Folder"));
    ClickExpander("ByArtist");
    EndDoubleClick();
    ClickNode("#MILES DAVIS");
    EXPECT_EQ(spoken(0), QStringLiteral("So What, Miles Davis, MP3 File"));
}

TEST_F(MainWindowTest, TheListsWheelPutsThePanelInFront)
{
    Start();
    int raised = 0;
    Form().calls.raisePanel = [&raised] { ++raised; };
    const QPointF at(30, 60);
    QWheelEvent wheel(at, LV().viewport()->mapToGlobal(at), {}, {0, -120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(LV().viewport(), &wheel);
    EXPECT_GE(raised, 1);
    raised = 0;
    browser::UnhookList(Form());
    QApplication::sendEvent(LV().viewport(), &wheel);
    EXPECT_EQ(raised, 0);
}

// A window system that does not report where a window is.
struct Placeless : platform::qt::QtWindows {
    bool KnowsPlaces() override { return false; }
};

TEST_F(MainWindowTest, ThePopupIsAtThePointerAlsoWithoutReportedPlaces)
{
    Encode("1.mp3", "So What", "Miles Davis", "Kind of Blue");
    for (const bool known : {true, false}) {
        SCOPED_TRACE(known);
        Placeless placeless;
        platform::TheMachine().windows = known ? &windows : &placeless;
        settings.Write("Quenlin", "Preferences", "Left", "6000");
        settings.Write("Quenlin", "Preferences", "Top", "4500");
        Start();
        window->move(20, 30);
        AwaitPlace(*window);
        if (known)
            Regenerate();
        ClickExpander("ByArtist");
        EndDoubleClick();
        ClickNode("#MILES DAVIS");
        const QPoint pointer = LV().viewport()->mapToGlobal(RowAt(0));
        ClickAt(*LV().viewport(), RowAt(0), Qt::RightButton);
        auto *popup = Find<QMenu>(*window, "Pop");
        ASSERT_TRUE(WaitUntil([popup] { return popup->isVisible(); }));
        EXPECT_LT((popup->pos() - pointer).manhattanLength(), 60);
        popup->close();
        Leave();
        platform::TheMachine().windows = &windows;
    }
}

TEST_F(MainWindowTest, AltAnd3IsNoLetterToLookFor)
{
    Encode("1.mp3", "So What", "Live", "Live");
    Encode("2.mp3", "3 Blind Mice", "3 Sounds", "Live");
    Start();
    Regenerate();
    ClickExpander("ByArtist");
    EndDoubleClick();
    ClickNode("#LIVE");
    PressKey("Alt+3");
    EXPECT_EQ(Form().TV.Key(Form().TV.Selected()), "#LIVE");
    PressKey("3");
    EXPECT_EQ(Form().TV.Key(Form().TV.Selected()), "#3 SOUNDS");
    ClickExpander("ByAlbum");
    EndDoubleClick();
    ClickNode("~LIVE");
    ASSERT_EQ(Form().LV.Count(), 2);
    ClickAt(*LV().viewport(), RowAt(0));
    PressKey("Alt+3");
    EXPECT_EQ(Cell(LV().currentIndex().row(), 1), "So What");
    PressKey("3");
    EXPECT_EQ(Cell(LV().currentIndex().row(), 1), "3 Blind Mice");
}

TEST_F(MainWindowTest, AltAnd3OpensTheFileInfoFromEverywhere)
{
    Start();
    int opened = 0;
    browser::RegisterCommand("submnuFileInfo", [&] { ++opened; });
    for (const char *name : {"TV", "LV", "Separator", "TB_submnuExit"}) {
        Find(*window, name)->setFocus();
        PressKey("Alt+3");
        EXPECT_EQ(std::exchange(opened, 0), 1) << name;
    }
}

TEST_F(MainWindowTest, AToolbarButtonRunsTheCommandOfItsName)
{
    Start();
    QStringList names;
    for (QAction *action : Find<QToolBar>(*window, "TB")->actions())
        if (!action->isSeparator())
            names << Find<QToolBar>(*window, "TB")->widgetForAction(action)->objectName();
    QStringList wanted;
    for (const browser::ToolButton &button : browser::ToolButtons())
        if (!button.key.empty())
            wanted << QLatin1String("TB_") + QString::fromUtf8(button.key.data());
    EXPECT_EQ(names, wanted);
    Click(*Find(*window, "TB_submnuSearch"));
    EXPECT_FALSE(ended) << "what is not built does nothing";
    Click(*Find(*window, "TB_submnuExit"));
    EXPECT_TRUE(ended);
}

TEST_F(MainWindowTest, WithoutLanguageFilesTheMenuHasEnglishAlone)
{
    languages.clear();
    Start();
    auto *menu = Find<QMenu>(*window, "submnuSetLanguage");
    Q_EMIT menu->aboutToShow();
    for (const QAction *action : menu->actions())
        EXPECT_EQ(action->isVisible(), action->objectName() == QLatin1String("submnuEnglish"))
            << action->objectName().toStdString();
}

TEST_F(MainWindowTest, QuitDuringARegenerationEndsItAtTheNextFile)
{
    EncodeFour();
    Start();
    int files = 0;
    desktop.doEvents = [&] {
        QApplication::processEvents();
        if (Form().SB.Panel("Playing").text.starts_with("Adding:") && ++files == 2)
            window->close();
    };
    Regenerate();
    ASSERT_TRUE(WaitUntil([this] { return ended; }));
    OpenCatalogue(); // the unload has closed it
    EXPECT_LT(Rows().size(), 4U);
    EXPECT_FALSE(catalogue::IsRegenerating());
}

TEST_F(MainWindowTest, TheFocusIsRestoredAfterARegeneration)
{
    Encode("1.mp3", "So What", "Miles Davis", "Kind of Blue");
    Start();
    TV().setFocus();
    Regenerate();
    EXPECT_TRUE(WaitUntil([this] { return TV().hasFocus(); }));
}

TEST_F(MainWindowTest, BarIsOverItsPanelDuringARegeneration)
{
    EncodeFour();
    Start();
    desktop.ExpectBox("There were some 'mistakes'", Answer::No);
    QRect bar;
    bool visible = false;
    desktop.doEvents = [&] {
        QApplication::processEvents();
        if (!Form().SB.Panel("Blank").text.starts_with("2/4") || visible)
            return;
        bar = Find(*window, "PBar")->geometry();
        visible = Find(*window, "PBar")->isVisible();
        KeepScreenshot(*window, "main-regeneration");
    };
    Regenerate();
    EXPECT_TRUE(visible);
    EXPECT_NEAR(bar.left(), (5000 + 40) / 15.0, 1);
    EXPECT_NEAR(bar.width(), (1500 - 80) / 15.0, 1);
}

TEST_F(MainWindowTest, SecondRegenerationOfTheFolderDoesNothingAndSaysSo)
{
    Encode("1.mp3", "So What", "Miles Davis", "Kind of Blue");
    Start();
    Regenerate();
    EXPECT_TRUE(TV().isEnabled());
    Regenerate();
    EXPECT_TRUE(catalogue::LastRegeneration().skipped);
    EXPECT_TRUE(TV().isEnabled());
    EXPECT_TRUE(LV().isEnabled());
    EXPECT_FALSE(Find(*window, "PBar")->isVisible());
    EXPECT_EQ(Form().SB.Panel("Playing").text, "This folder has been done in this run.");
}

TEST_F(MainWindowTest, StoredPlaceOfALargerScreenIsBroughtIntoView)
{
    for (const auto &[key, value] : {std::pair("Left", "60000"), std::pair("Top", "60000"),
                                     std::pair("Width", "90000"), std::pair("Height", "90000")})
        settings.Write("Quenlin", "Preferences", key, value);
    Start();
    AwaitPlace(*window);
    EXPECT_TRUE(window->screen()->geometry().contains(window->frameGeometry().center()));
    EXPECT_LE(window->width(), window->screen()->geometry().width());
}

TEST_F(MainWindowTest, LanguageOfAnEntryIsStored)
{
    Start();
    desktop.ExpectBox("The new language you set");
    auto *menu = Find<QMenu>(*window, "submnuSetLanguage");
    Q_EMIT menu->aboutToShow();
    auto *entry = window->findChild<QAction *>(QStringLiteral("submnuLng(0)"));
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->text(), QStringLiteral("Deutsch"));
    entry->trigger();
    EXPECT_EQ(settings.Read("Quenlin", "Preferences", "Language", ""), "Deutsch.qlt");
}

} // namespace

} // namespace tests

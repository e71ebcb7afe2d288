// The help's window and the key F1, as real windows, with the books as they ship.
#include "online/help/frmHelp.h"
#include "online/help/help.h"
#include "online/help/helpform.h"
#include "online/tipform.h"
#include "platform/qt/qtdesktop.h"
#include "shell/globals.h"
#include "tests/support/fakeports.h"
#include "tests/windows/accessibility.h"
#include "tests/windows/awaitplace.h"
#include "tests/windows/sampleform.h"
#include "ui/qt/helpkey.h"

#include <QMainWindow>
#include <QScreen>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeView>

namespace tests
{

namespace
{

class HelpWindowScaled : public testing::Test
{
protected:
    HelpWindowScaled()
    {
        platform::TheMachine().windows = &windows;
        Use("");
        online::RegisterHelpWidget();
    }
    ~HelpWindowScaled() override
    {
        online::ForgetHelp();
        ui::CloseAll();
        Settle(); // closed windows are deleted by the next event
        platform::TheMachine().windows = nullptr;
        shell::TheGlobals() = shell::Globals{};
    }

    // The shipped books; English for no language.
    static void Use(const std::string &language)
    {
        const std::string shipped = QUENLIN_SHIPPED_TEXTS;
        shell::TheGlobals().HelpFilePath = shipped + "/Brandolet.hlp";
        shell::TheGlobals().LanguageFilePath =
            language.empty() ? std::string() : shipped + "/" + language + ".qlt";
    }

    // The window after F1, with its title line: what the page is about.
    static std::string ShownAfterF1()
    {
        PressKey("F1");
        QWidget *help = WaitForWindow("frmHelp");
        if (help == nullptr || !WaitUntil([help] { return help->isActiveWindow(); }))
            return "no help";
        return FirstLine(*help);
    }

    // WhenModal for a box above another modal window, which has the keyboard until the box is up.
    static void WhenABoxIsUp(const std::function<void(QWidget &box)> &action)
    {
        auto *timer = new QTimer(qApp);
        QObject::connect(timer, &QTimer::timeout, timer, [timer, action] {
            QWidget *box = WaitForWindow("MessageBox", 0);
            if (box == nullptr || !box->isActiveWindow())
                return;
            timer->stop();
            timer->deleteLater();
            action(*box);
        });
        timer->start(10);
    }

    static std::string FirstLine(QWidget &help)
    {
        return Find<QTextBrowser>(help, "Page")->toPlainText().section(u'\n', 0, 0).toStdString();
    }

    static void CloseHelp()
    {
        PressKey("Escape");
        EXPECT_TRUE(WaitUntil([] { return WaitForWindow("frmHelp", 0) == nullptr; }));
    }

    FakeClock clock;
    ScriptedDesktop desktop;
    MemorySettings settings;
    platform::qt::QtWindows windows;
    ui::qt::FormWindows host;
    ui::qt::HelpKey key{online::ShowHelpOf};
};

TEST_F(HelpWindowScaled, SearchLinksAndBack)
{
    online::ShowHelp();
    QWidget &help = *WaitForWindow("frmHelp");
    ShowAndActivate(help);
    EXPECT_EQ(NamelessControls(help), std::vector<std::string>{});
    EXPECT_EQ(FirstLine(help), "Help");
    Find(help, "txtFind")->setFocus();
    TypeText("bookmarks");
    auto *tree = Find<QTreeView>(help, "tvwPages");
    EXPECT_TRUE(WaitUntil([tree] { return tree->model()->rowCount() == 2; }));
    PressKey("Return");
    EXPECT_TRUE(WaitUntil([&] { return FirstLine(help) == "Playlists and bookmarks"; }));
    auto *page = Find<QTextBrowser>(help, "Page");
    EXPECT_EQ(page->extraSelections().size(), 3) << "the words found are marked";
    KeepScreenshot(help, "help-search");
    Find(help, "txtFind")->setFocus();
    PressKey("Ctrl+A");
    PressKey("Delete");
    EXPECT_TRUE(WaitUntil([page] { return page->extraSelections().isEmpty(); }));

    online::ShowHelp("search");
    const QTextCursor link = page->document()->find(QStringLiteral("the page of that window"));
    ClickAt(*page->viewport(), page->cursorRect(link).center() - QPoint(20, 0));
    EXPECT_TRUE(WaitUntil([&] { return FirstLine(help) == "Search"; }));
    PressKey("Alt+Left");
    EXPECT_TRUE(WaitUntil([&] {
        return FirstLine(help) == "Search" &&
               page->toPlainText().contains(QStringLiteral("the page of that window"));
    }));
    Click(*Find(help, "cmdContents"));
    EXPECT_TRUE(WaitUntil([&] { return FirstLine(help) == "Help"; }));
    CloseHelp();
}

TEST_F(HelpWindowScaled, F1InAWindowOpensItsPage)
{
    for (const auto &[language, title] :
         {std::pair("", "Tip of the day"), std::pair("Deutsch", "Tipp des Tages"),
          std::pair("Español", "Consejo del día"), std::pair("Français", "Conseil du jour")}) {
        Use(language);
        auto form = std::make_unique<online::TipForm>();
        ui::Show(*form);
        ShowAndActivate(*host.WindowOf(*form));
        EXPECT_EQ(ShownAfterF1(), title);
        CloseHelp();
        ui::Close(*form);
        ui::Retire(std::move(form));
    }
}

// The place of the help when it is opened from a window at `place`; the help is closed again.
QRect HelpBeside(QWidget &window, QRect place)
{
    window.setGeometry(place);
    ShowAndActivate(window);
    EXPECT_TRUE(WaitUntil([&] { return window.geometry() == place; }));
    online::ShowHelp();
    QWidget *help = WaitForWindow("frmHelp", 2000);
    if (help == nullptr)
        return {};
    EXPECT_TRUE(WaitUntil([&] { return help->isActiveWindow(); }));
    AwaitPlace(*help);
    const QRect shown = help->frameGeometry();
    PressKey("Escape");
    EXPECT_TRUE(WaitUntil([] { return WaitForWindow("frmHelp", 0) == nullptr; }));
    return shown;
}

TEST_F(HelpWindowScaled, OpensBesideItsWindowAndWithinTheScreen)
{
    QMainWindow window;
    window.setObjectName(QStringLiteral("frmMain"));
    const QRect screen = window.screen()->availableGeometry();
    for (int time = 0; time < 3; ++time) { // its place does not change
        const QRect right = HelpBeside(window, {100, 100, 500, 400});
        EXPECT_GE(right.left(), window.frameGeometry().right()) << time;
        EXPECT_EQ(right.top(), window.frameGeometry().top()) << time;
        EXPECT_TRUE(screen.contains(right)) << time;
        EXPECT_LE(right.left() - window.frameGeometry().right(), 4) << time;
    }
    const QRect left = HelpBeside(window, {screen.right() - 600, 200, 500, 400});
    EXPECT_LE(left.right(), window.frameGeometry().left() + 4);
    EXPECT_TRUE(screen.contains(left));
    const QRect low = HelpBeside(window, {100, screen.bottom() - 160, 500, 120});
    EXPECT_TRUE(screen.contains(low)) << low.top() << " " << low.bottom();
    const QRect wide = HelpBeside(window, {40, 60, screen.width() - 100, 500});
    EXPECT_TRUE(screen.contains(wide)) << wide.left() << " " << wide.right();
}

TEST_F(HelpWindowScaled, F1InAQuestionOpensItsPage)
{
    platform::qt::QtDesktop boxes;
    WhenModal([](QWidget &box) {
        EXPECT_EQ(ShownAfterF1(), "The lyrics have changes that were not saved. Save them?");
        QWidget &help = *WaitForWindow("frmHelp");
        Click(*Find(help, "cmdContents")); // it is not blocked by the question
        EXPECT_TRUE(WaitUntil([&] { return FirstLine(help) == "Help"; }));
        CloseHelp();
        ShowAndActivate(box);
        PressKey("Alt+D");
    });
    EXPECT_EQ(boxes.MessageBox("The lyrics have changes that were not saved. Save them?",
                               platform::Buttons::SaveDiscardCancel, "", platform::BoxIcon::None),
              platform::Answer::Discard);

    WhenModal([](QWidget &box) {
        EXPECT_EQ(ShownAfterF1(), "Type the name of the new file");
        CloseHelp();
        ShowAndActivate(box);
        PressKey("Escape");
    });
    EXPECT_EQ(boxes.InputBox("Type the name of the new file", "New Name", "a.mp3"), std::nullopt);
}

TEST_F(HelpWindowScaled, F1WhereAFileIsChosen)
{
    platform::qt::QtDesktop boxes;
    WhenModal([](QWidget &box) {
        EXPECT_EQ(ShownAfterF1(), "Choosing a file");
        CloseHelp();
        ShowAndActivate(box);
        PressKey("Escape");
    });
    EXPECT_EQ(boxes.OpenDialog("Select the MP3 file", {{"MP3 Files", "*.mp3"}}, "/"), std::nullopt);
}

TEST_F(HelpWindowScaled, IsUsedBesideOneModalWindowAfterAnother)
{
    platform::qt::QtDesktop boxes;
    online::TipForm form;
    WhenModal([&](QWidget &modal) {
        EXPECT_EQ(ShownAfterF1(), "Tip of the day");
        QWidget &help = *WaitForWindow("frmHelp");
        ShowAndActivate(modal);
        WhenABoxIsUp([&](QWidget &box) {
            EXPECT_EQ(ShownAfterF1(), "Would you like to read the tags of this file again? What "
                                      "was typed here is lost then.");
            Click(*Find(box, "cmdNo")); // the help stays up
        });
        EXPECT_EQ(boxes.MessageBox("Would you like to read the tags of this file again? What was "
                                   "typed here is lost then.",
                                   platform::Buttons::YesNo, "", platform::BoxIcon::None),
                  platform::Answer::No);
        // The first modal window is up still, and the help can be used beside it again.
        EXPECT_TRUE(WaitUntil([&] {
            Click(*Find(help, "cmdContents"));
            return FirstLine(help) == "Help";
        }));
        ui::Close(form);
    });
    ui::ShowModal(form);
    QWidget *help = WaitForWindow("frmHelp");
    ASSERT_NE(help, nullptr) << "it stays when the modal window goes";
    Click(*Find(*help, "cmdBack"));
    EXPECT_TRUE(WaitUntil([&] { return FirstLine(*help) != "Help"; }));
}

} // namespace

} // namespace tests

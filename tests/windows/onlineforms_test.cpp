// The windows of the Help menu, as real windows by mouse and keys.
#include "online/frmHistory.h"
#include "online/historyform.h"
#include "online/techsupportform.h"
#include "online/tipform.h"
#include "online/version/versioninfo.h"
#include "platform/qt/qtwindows.h"
#include "shell/apppath.h"
#include "shell/settings.h"
#include "tests/online/recordedweb.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/memorysettings.h"
#include "tests/windows/accessibility.h"
#include "tests/windows/bench.h"
#include "ui/qt/form.h"

#include <QLabel>
#include <QScrollBar>
#include <QTextBrowser>

namespace tests
{

namespace
{

class OnlineFormsScaled : public LibraryFixture
{
protected:
    OnlineFormsScaled()
    {
        platform::TheMachine().windows = &windows;
        online::RegisterHistoryWidget();
    }
    ~OnlineFormsScaled() override
    {
        ui::CloseAll();
        Settle(); // closed windows are deleted by the next event
        platform::TheMachine().windows = nullptr;
    }

    QWidget &Shown(ui::Form &form)
    {
        ui::Show(form);
        QWidget *window = host.WindowOf(form);
        ShowAndActivate(*window);
        EXPECT_EQ(NamelessControls(*window), std::vector<std::string>{});
        KeepScreenshot(*window, form.name);
        return *window;
    }

    // No label or button of the window shows less than its text needs.
    static void ExpectNothingClipped(QWidget &window)
    {
        for (const QWidget *child : window.findChildren<QWidget *>()) {
            const bool shows =
                child->isVisible() && (qobject_cast<const QLabel *>(child) != nullptr ||
                                       child->inherits("QAbstractButton"));
            if (shows && child->sizePolicy().hasHeightForWidth()) {
                EXPECT_GE(child->height(), child->heightForWidth(child->width()))
                    << child->objectName().toStdString();
            }
        }
    }

    MemorySettings settings;
    platform::qt::QtWindows windows;
    ui::qt::FormWindows host;
};

TEST_F(OnlineFormsScaled, Tips)
{
    WriteFile(
        shell::AppFile("TIPOFDAY.TXT"),
        "... that a long tip goes on over as many lines as it needs, so that no word of it is ever "
        "cut, whatever the size of the letters is?\n");
    online::TipForm form;
    QWidget &window = Shown(form);
    ExpectNothingClipped(window);
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Tip of the day"));
    PressKey("Alt+S");
    EXPECT_TRUE(WaitUntil([] { return shell::GetPreference("Show Tips at Startup") == "0"; }));
    form.lblTipText.SetCaption("");
    PressKey("Alt+N");
    EXPECT_TRUE(WaitUntil([&] { return !form.lblTipText.Caption().empty(); }));
    PressKey("Escape");
    EXPECT_TRUE(WaitUntil([&] { return !form.Visible(); }));
}

TEST_F(OnlineFormsScaled, Support)
{
    online::TechSupportForm form;
    QWidget &window = Shown(form);
    ExpectNothingClipped(window);
    Click(*Find(window, "lblEmail"));
    EXPECT_EQ(desktop.addresses, std::vector<std::string>{"mailto:support@quenlin.example"});
    PressKey("Return");
    EXPECT_TRUE(WaitUntil([&] { return !form.Visible(); }));
}

TEST_F(OnlineFormsScaled, HistoryShowsItsEndWithPictures)
{
    online::HistoryForm form;
    QWidget &window = Shown(form);
    auto *text = Find<QTextBrowser>(window, "History");
    ASSERT_NE(text, nullptr);
    EXPECT_TRUE(text->hasFocus());
    EXPECT_TRUE(text->textCursor().atEnd());
    EXPECT_EQ(text->verticalScrollBar()->value(), text->verticalScrollBar()->maximum());
    const QString plain = text->toPlainText();
    EXPECT_TRUE(plain.startsWith(QStringLiteral("Quenlin\n\n1.4.7\n")))
        << plain.left(40).toStdString();
    EXPECT_EQ(plain.count(QChar(0xFFFC)), 87);
    EXPECT_FALSE(plain.contains(QStringLiteral("<(")));
    QTextCursor cursor = text->document()->find(QStringLiteral("1.6.9"));
    EXPECT_EQ(cursor.charFormat().fontWeight(), QFont::Bold);
    cursor = text->document()->find(QStringLiteral("gets added anyway"));
    EXPECT_NE(cursor.charFormat().fontWeight(), QFont::Bold);
    TypeText("x"); // it is read-only
    EXPECT_EQ(text->toPlainText(), plain);
    PressKey("Escape");
    EXPECT_TRUE(WaitUntil([&] { return !form.Visible(); }));
}

TEST_F(OnlineFormsScaled, VersionsOfTheToolsAndTheDatabase)
{
    RecordedWeb web;
    online::VersionInfoForm form({});
    form.ShowIt = true;
    form.CheckAppsVersions();
    form.Delayer.Fire();
    WhenModal([&](QWidget &modal) {
        EXPECT_EQ(NamelessControls(modal), std::vector<std::string>{});
        ExpectNothingClipped(modal);
        EXPECT_EQ(Find<QLabel>(modal, "NewOne(0)")->text(), QStringLiteral("1.7.0"));
        EXPECT_EQ(Find<QLabel>(modal, "DBUpdate")->text(), QStringLiteral("5 May 2004"));
        KeepScreenshot(modal, "frmVersionInfo");
        Click(*Find(modal, "URL2Download"));
        PressKey("Escape");
    });
    web.Answer("1.6.6:5 May 2004\r\nQuenlin 1.7.0\r\na 1.2\r\nb 3.4\r\nc 1\r\nd 1\r\ne 1");
    EXPECT_EQ(desktop.addresses,
              std::vector<std::string>{"https://quenlin.example/whats_new.asp#169"});
}

} // namespace

} // namespace tests

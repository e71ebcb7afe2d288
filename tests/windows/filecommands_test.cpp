// The commands on files by mouse and keys: real boxes, real songs, the real catalogue.
#include "browser/filecommands.h"
#include "browser/form/commandstate.h"
#include "browser/itemlist.h"
#include "platform/qt/application.h"
#include "platform/qt/qtdesktop.h"
#include "platform/qt/theme.h"
#include "runtime/error.h"
#include "shell/preferences/failuremail.h"
#include "tests/support/mp3bytes.h"
#include "tests/windows/mainwindowfixture.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <filesystem>

namespace tests
{

namespace
{

namespace fs = std::filesystem;

// Real boxes; a mail is recorded instead of being opened.
struct MailingDesktop : platform::qt::QtDesktop {
    bool OpenAddress(const std::string &address, const std::string &) override
    {
        mails.push_back(address);
        return true;
    }
    std::vector<std::string> mails;
};

class FileCommandsScaled : public MainWindowTest
{
protected:
    FileCommandsScaled() { platform::TheMachine().desktop = &boxes; }
    ~FileCommandsScaled() override
    {
        platform::qt::ApplyPalette(false);
        platform::TheMachine().desktop = &desktop;
    }

    static std::string Bytes(std::string_view title, std::string_view artist = "Artist")
    {
        return Id3v2(TextFrame("TIT2", title) + TextFrame("TPE1", artist)) + Audio();
    }

    // The main window with the rows of these songs; the first one is selected by a click.
    void ShowSongs(const std::vector<std::string> &names)
    {
        for (const std::string &name : names)
            WriteFile(Song(name), Bytes(name));
        Start();
        browser::InstallFileCommands();
        browser::UpdateCommands(Form());
        for (const std::string &name : names) {
            const std::vector<catalogue::Value> values = {
                name,          std::string("Artist"), std::string(), std::string(),  std::string(),
                std::string(), std::string(),         Song(name),    std::int64_t{0}};
            catalogue::DataAccess->ExecuteSQL("AddMP3", catalogue::kStoredInsert, values);
        }
        browser::LoadTreeView(Form(), "");
        ListArtist("#ARTIST");
    }

    void ListArtist(const char *key)
    {
        Form().TV.SetExpanded(Form().TV.Find("ByArtist"), true);
        Form().TreeJustExpanded = false;
        ClickNode(key);
        ASSERT_TRUE(WaitUntil([this] { return Form().LV.Count() > 0; }));
        Settle();
        ClickAt(*LV().viewport(), RowAt(0));
    }

    // Types into the next input box and presses Enter, or Escape for an empty text. `look` can
    // check it first; `next` is for the box that follows.
    void AnswerInput(const std::string &text, const std::function<void(QWidget &)> &look = {},
                     const std::function<void(QWidget &)> &next = {})
    {
        WhenModal([text, look, next](QWidget &box) {
            EXPECT_EQ(box.objectName(), QStringLiteral("InputBox"));
            if (look)
                look(box);
            Find(box, "txtInput")->setFocus();
            PressKey("Ctrl+A");
            if (!text.empty())
                TypeText(text);
            PressKey(text.empty() ? "Escape" : "Return");
            if (next)
                WhenModal(next);
        });
    }

    // In the next file dialog, types the path and presses Enter. The file may be deleted right
    // after that.
    static void ChooseFile(const std::string &path, const std::function<void(QWidget &)> &next = {},
                           bool vanishes = false)
    {
        WhenModal([=](QWidget &dialog) {
            EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Select the MP3 file"));
            auto *name = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
            ASSERT_NE(name, nullptr);
            name->setFocus();
            name->selectAll();
            TypeText(path);
            PressKey("Return");
            if (vanishes)
                fs::remove(path);
            if (next)
                WhenModal(next);
        });
    }

    ui::qt::FormWindows host;
    MailingDesktop boxes;
};

TEST_F(FileCommandsScaled, RenameByTheMenu)
{
    ShowSongs({"one.mp3", "two.mp3"});
    AnswerInput("new name.mp3", [](QWidget &box) {
        EXPECT_EQ(box.windowTitle(), QStringLiteral("New Name"));
        EXPECT_EQ(Find<QLineEdit>(box, "txtInput")->text(), QStringLiteral("one.mp3"));
        KeepScreenshot(box, "rename");
        platform::qt::ApplyPalette(true);
        KeepScreenshot(box, "rename-dark");
        platform::qt::ApplyPalette(false);
    });
    ChooseMenu("mnuFile", "submnuRename");
    ASSERT_TRUE(WaitUntil([&] { return fs::exists(Song("new name.mp3")); }));
    EXPECT_FALSE(fs::exists(Song("one.mp3")));
    EXPECT_TRUE(
        WaitUntil([&] { return browser::SelectedPath(Form().LV) == Song("new name.mp3"); }));
    EXPECT_EQ(Rows()[0], "one.mp3|Artist||||||~/new name.mp3||0");
    bool isAsked = false;
    AnswerInput("", [&](QWidget &) { isAsked = true; }); // Escape
    ChooseMenu("mnuFile", "submnuRename");
    EXPECT_TRUE(WaitUntil([&] { return isAsked && QApplication::activeModalWidget() == nullptr; }));
    EXPECT_TRUE(fs::exists(Song("new name.mp3")));
}

// A file that cannot be renamed is reported in a box; song and row are unchanged.
TEST_F(FileCommandsScaled, ANameThatIsTakenIsReported)
{
    ShowSongs({"one.mp3", "two.mp3"});
    auto &application = static_cast<platform::qt::Application &>(*qApp);
    std::string reported;
    const auto before = std::exchange(application.showError, [&](const runtime::RuntimeError &e) {
        reported = e.description;
        boxes.MessageBox(e.description, platform::Buttons::Ok, {}, platform::BoxIcon::None);
    });
    AnswerInput("two.mp3", {}, [](QWidget &box) {
        KeepScreenshot(box, "rename-taken");
        PressKey("Return");
    });
    ChooseMenu("mnuFile", "submnuRename");
    EXPECT_TRUE(WaitUntil([&] { return !reported.empty(); }));
    application.showError = before;
    EXPECT_TRUE(reported.starts_with(Song("two.mp3"))) << reported;
    EXPECT_EQ(ReadFile(Song("one.mp3")), Bytes("one.mp3"));
    EXPECT_EQ(ReadFile(Song("two.mp3")), Bytes("two.mp3"));
}

TEST_F(FileCommandsScaled, DuplicateByTheToolbar)
{
    ShowSongs({"one.mp3"});
    bool reported = false;
    AnswerInput(
        "Another One",
        [](QWidget &box) {
            EXPECT_EQ(box.windowTitle(), QStringLiteral("Artist' Names"));
            EXPECT_EQ(Find<QLineEdit>(box, "txtInput")->text(), QStringLiteral("Artist"));
            KeepScreenshot(box, "duplicate");
        },
        [&](QWidget &success) {
            reported = success.windowTitle() == QStringLiteral("Success");
            KeepScreenshot(success, "duplicate-success");
            PressKey("Return");
        });
    Click(*Find(*window, "TB_submnuDuplicateEntry"));
    EXPECT_TRUE(WaitUntil([&] { return reported; }));
    EXPECT_EQ(Rows(), (std::vector<std::string>{"one.mp3|Artist||||||~/one.mp3||0",
                                                "one.mp3|Another One||||||~/one.mp3||1"}));
}

TEST_F(FileCommandsScaled, AddByTheMenuBuildsTheTree)
{
    ShowSongs({"one.mp3"});
    WriteFile(Song("added.mp3"), Bytes("Added", "Newcomer"));
    ChooseFile(Song("added.mp3"));
    ChooseMenu("mnuFile", "submnuAddFile");
    ASSERT_TRUE(WaitUntil([&] { return Rows().size() == 2; }));
    ListArtist("#NEWCOMER");
    EXPECT_EQ(browser::SelectedPath(Form().LV), Song("added.mp3"));
}

TEST_F(FileCommandsScaled, AddingASongWithoutTagsIsReported)
{
    ShowSongs({"one.mp3"});
    WriteFile(Song("bare.mp3"), Audio());
    std::string reported;
    ChooseFile(Song("bare.mp3"), [&](QWidget &box) {
        reported = Find<QLabel>(box, "lblText")->text().toStdString();
        KeepScreenshot(box, "add-untagged");
        PressKey("Return");
    });
    ChooseMenu("mnuFile", "submnuAddFile");
    EXPECT_TRUE(WaitUntil([&] { return !reported.empty(); }));
    EXPECT_EQ(reported, "No ID3's tags were found on '" + Song("bare.mp3") +
                            "'\n\nThis means it will only be found on the path's node");
}

// From the question to the mail and its text.
TEST_F(FileCommandsScaled, WhatCannotBeAddedIsMailed)
{
    ShowSongs({"one.mp3"});
    WriteFile(Song("gone.mp3"), Bytes("Gone"));
    const auto answer = [&](QWidget &question) {
        KeepScreenshot(question, "add-failed");
        Click(*Find(question, "cmdYes"));
        AnswerInput("clicked on it", [](QWidget &box) {
            EXPECT_EQ(box.windowTitle(), QStringLiteral("What did you do?"));
            KeepScreenshot(box, "add-whatdidyoudo");
        });
    };
    ChooseFile(Song("gone.mp3"), answer, true);
    ChooseMenu("mnuFile", "submnuAddFile");
    EXPECT_TRUE(WaitUntil([&] { return !boxes.mails.empty(); }));
    const std::string report = boxes.ClipboardText();
    EXPECT_TRUE(report.starts_with("System Info:\rOS = ")) << report;
    EXPECT_NE(report.find("\rActions:\rclicked on it\rError(s) Raised:\r"), std::string::npos);
    EXPECT_EQ(boxes.mails.front(), shell::BugReportAddress(report));
    EXPECT_EQ(Rows().size(), 1U);
}

} // namespace

} // namespace tests

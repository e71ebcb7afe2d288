// The desktop port with real boxes, answered by keys and mouse.
#include "platform/machine.h"
#include "platform/qt/qtdesktop.h"
#include "platform/qt/text.h"
#include "platform/qt/toolkitlanguage.h"
#include "tests/support/testfolder.h"
#include "tests/windows/accessibility.h"
#include "tests/windows/bench.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <map>

namespace
{

using platform::Answer;
using platform::BoxIcon;
using platform::Buttons;
using platform::Pointer;

class QtDesktopTest : public testing::Test
{
protected:
    // Answers the next box by a key.
    static void AnswerByKey(const char *key)
    {
        tests::WhenModal([key](QWidget &) { tests::PressKey(key); });
    }

    ui::qt::FormWindows m_forms;
    platform::qt::QtDesktop m_desktop;
};

TEST_F(QtDesktopTest, AnswersOfABox)
{
    constexpr struct {
        const char *name;
        const char *key;
        Buttons buttons;
        Answer want;
    } cases[] = {
        {"escape of Ok", "Escape", Buttons::Ok, Answer::Ok},
        {"enter of Ok", "Return", Buttons::Ok, Answer::Ok},
        {"escape of Yes/No", "Escape", Buttons::YesNo, Answer::No},
        {"enter presses the safe button", "Return", Buttons::YesNo, Answer::No},
        {"access key of Yes", "Alt+Y", Buttons::YesNo, Answer::Yes},
        {"access key of No", "Alt+N", Buttons::YesNo, Answer::No},
        {"Y alone", "Y", Buttons::YesNo, Answer::Yes},
        {"N alone", "N", Buttons::YesNo, Answer::No},
        {"escape of Save/Discard/Cancel", "Escape", Buttons::SaveDiscardCancel, Answer::Cancel},
        {"enter saves", "Return", Buttons::SaveDiscardCancel, Answer::Save},
        {"access key of Save", "Alt+S", Buttons::SaveDiscardCancel, Answer::Save},
        {"access key of Discard", "Alt+D", Buttons::SaveDiscardCancel, Answer::Discard},
        {"access key of Cancel", "Alt+C", Buttons::SaveDiscardCancel, Answer::Cancel},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        AnswerByKey(c.key);
        EXPECT_EQ(m_desktop.MessageBox("Go on?", c.buttons, {}, BoxIcon::None), c.want);
    }
}

TEST_F(QtDesktopTest, MouseAnswersAndCloseButton)
{
    tests::WhenModal([](QWidget &box) { tests::Click(*tests::Find(box, "cmdYes")); });
    EXPECT_EQ(m_desktop.MessageBox("Go on?", Buttons::YesNo, {}, BoxIcon::None), Answer::Yes);
    tests::WhenModal([](QWidget &box) { box.close(); });
    EXPECT_EQ(m_desktop.MessageBox("Go on?", Buttons::YesNo, {}, BoxIcon::None), Answer::No);
    const auto ask = [this] {
        return m_desktop.MessageBox("Save?", Buttons::SaveDiscardCancel, {}, BoxIcon::None);
    };
    tests::WhenModal([](QWidget &box) { tests::Click(*tests::Find(box, "cmdDiscard")); });
    EXPECT_EQ(ask(), Answer::Discard);
    tests::WhenModal([](QWidget &box) { tests::Click(*tests::Find(box, "cmdSave")); });
    EXPECT_EQ(ask(), Answer::Save);
    tests::WhenModal([](QWidget &box) { box.close(); });
    EXPECT_EQ(ask(), Answer::Cancel);
}

TEST_F(QtDesktopTest, TextIsPlainAndCarriageReturnBreaksTheLine)
{
    tests::WhenModal([](QWidget &box) {
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Quenlin"));
        auto *text = tests::Find<QLabel>(box, "lblText");
        EXPECT_EQ(text->text(), QStringLiteral("<b>Live</b> && more\nsecond\nthird"));
        EXPECT_EQ(text->textFormat(), Qt::PlainText);
        tests::PressKey("Ctrl+C");
        EXPECT_EQ(QGuiApplication::clipboard()->text(), text->text());
        tests::PressKey("Escape");
    });
    m_desktop.MessageBox("<b>Live</b> && more\rsecond\r\nthird", Buttons::Ok, {}, BoxIcon::None);
}

TEST_F(QtDesktopTest, AButtonShowsTheOperatingSystemsWords)
{
    tests::WhenModal([](QWidget &box) {
        auto *details = tests::Find<QLabel>(box, "lblDetails");
        EXPECT_FALSE(details->isVisible());
        tests::Click(*tests::Find(box, "cmdDetails"));
        EXPECT_TRUE(details->isVisible());
        EXPECT_EQ(details->text(), QStringLiteral("/a/b: Permission denied"));
        EXPECT_TRUE(box.isVisible()) << "no answer yet";
        tests::PressKey("Ctrl+C");
        EXPECT_EQ(QGuiApplication::clipboard()->text(),
                  QStringLiteral("Go on?\n/a/b: Permission denied"));
        tests::Click(*tests::Find(box, "cmdYes"));
    });
    EXPECT_EQ(m_desktop.MessageBoxWithDetails("Go on?", "/a/b: Permission denied", Buttons::YesNo,
                                              "Corrupted file"),
              Answer::Yes);
}

TEST_F(QtDesktopTest, LongTextFitsTheScreenAndScrolls)
{
    std::string text;
    for (int line = 0; line < 400; ++line)
        text += "A line of a long report, number " + std::to_string(line) + "\r";
    tests::WhenModal([](QWidget &box) {
        EXPECT_LE(box.height(), box.screen()->availableSize().height());
        EXPECT_TRUE(tests::Find(box, "cmdOk")->isVisible());
        EXPECT_GT(tests::Find(box, "lblText")->height(), box.height());
        tests::PressKey("Escape");
    });
    m_desktop.MessageBox(text, Buttons::Ok, "Corrupted file", BoxIcon::None);
}

// The captions of the buttons of the file dialog, without their marks.
QStringList FileDialogButtons(platform::qt::QtDesktop &desktop)
{
    QStringList captions;
    tests::WhenModal([&](QWidget &dialog) {
        for (const auto *button : dialog.findChildren<QPushButton *>())
            if (button->isVisible())
                captions << button->text().remove(QLatin1Char('&'));
        tests::PressKey("Escape");
    });
    EXPECT_FALSE(desktop.OpenDialog("Open", {{"MP3 Files", "*.mp3"}}, "/tmp"));
    return captions;
}

TEST_F(QtDesktopTest, TheFileDialogSpeaksTheLanguageOfTheProgram)
{
    const struct {
        const char *language;
        QStringList want;
    } cases[] = {
        {"Deutsch", {QStringLiteral("Öffnen"), QStringLiteral("Abbrechen")}},
        {"ESPAÑOL", {QStringLiteral("Abrir"), QStringLiteral("Cancelar")}},
        {"Français", {QStringLiteral("Ouvrir"), QStringLiteral("Annuler")}},
        {"", {QStringLiteral("Open"), QStringLiteral("Cancel")}},
        {"No such language", {QStringLiteral("Open"), QStringLiteral("Cancel")}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.language);
        EXPECT_EQ(platform::qt::ChooseToolkitLanguage(QString::fromUtf8(c.language)),
                  c.want.first() != QStringLiteral("Open"));
        EXPECT_EQ(FileDialogButtons(m_desktop), c.want);
    }
}

TEST_F(QtDesktopTest, OnlyTheButtonsOfTheQuestionAreShown)
{
    const struct {
        Buttons buttons;
        QStringList want; // from left to right
        const char *focus;
    } cases[] = {
        {Buttons::Ok, {QStringLiteral("cmdOk")}, "cmdOk"},
        {Buttons::YesNo, {QStringLiteral("cmdYes"), QStringLiteral("cmdNo")}, "cmdNo"},
        {Buttons::SaveDiscardCancel,
         {QStringLiteral("cmdSave"), QStringLiteral("cmdDiscard"), QStringLiteral("cmdCancel")},
         "cmdSave"},
    };
    for (const auto &c : cases) {
        tests::WhenModal([&](QWidget &box) {
            std::map<int, QString> shown; // by their place
            for (const auto *button : box.findChildren<QPushButton *>())
                if (button->isVisible())
                    shown[button->mapTo(&box, QPoint()).x()] = button->objectName();
            QStringList names;
            for (const auto &[left, name] : shown)
                names << name;
            EXPECT_EQ(names, c.want);
            auto *first = tests::Find<QPushButton>(box, c.focus);
            EXPECT_TRUE(first->hasFocus() && first->isDefault());
            EXPECT_FALSE(tests::Find(box, "picIcon")->isVisible());
            tests::PressKey("Escape");
        });
        m_desktop.MessageBox("Go on?", c.buttons, {}, BoxIcon::None);
    }
}

TEST_F(QtDesktopTest, WhatMustBeDoneBeforeAWaitIsDoneOnceForABoxADialogAndAnAddress)
{
    int waits = 0;
    platform::TheMachine().beginWait = [&] { ++waits; };
    AnswerByKey("Escape");
    m_desktop.MessageBox("Go on?", Buttons::YesNo, {}, BoxIcon::None);
    EXPECT_EQ(waits, 1);
    AnswerByKey("Escape");
    m_desktop.InputBox("Name", "Folder", "New one");
    EXPECT_EQ(waits, 2);
    AnswerByKey("Escape");
    m_desktop.OpenDialog("Choose", {{"MP3 Files", "*.mp3"}}, "/tmp");
    EXPECT_EQ(waits, 3);
    m_desktop.OpenAddress("", "");
    EXPECT_EQ(waits, 4);
    platform::TheMachine().beginWait = nullptr;
}

TEST_F(QtDesktopTest, InputBox)
{
    tests::WhenModal([](QWidget &box) {
        EXPECT_EQ(tests::Find<QLabel>(box, "lblPrompt")->text(), QStringLiteral("<i>Name</i>"));
        const auto *input = tests::Find<QLineEdit>(box, "txtInput");
        EXPECT_TRUE(input->hasFocus());
        EXPECT_EQ(input->selectedText(), QStringLiteral("New one"));
        EXPECT_EQ(input->accessibleName(), QStringLiteral("<i>Name</i>"));
        tests::TypeText("Blue & green");
        tests::PressKey("Return");
    });
    EXPECT_EQ(m_desktop.InputBox("<i>Name</i>", "Folder", "New one"), "Blue & green");
    AnswerByKey("Escape");
    EXPECT_EQ(m_desktop.InputBox("Name", "Folder", "New one"), std::nullopt);
}

TEST_F(QtDesktopTest, AnInputBoxClosedByItsFrameIsNoCancel)
{
    EXPECT_FALSE(m_desktop.InputWasClosed());
    tests::WhenModal([](QWidget &box) {
        QCloseEvent close;
        QSpontaneKeyEvent::setSpontaneous(&close); // as the window manager's
        QCoreApplication::instance()->notify(&box, &close);
    });
    EXPECT_EQ(m_desktop.InputBox("Name", "Folder", "New one"), std::nullopt);
    EXPECT_TRUE(m_desktop.InputWasClosed());
    tests::WhenModal([](QWidget &box) { tests::Click(*tests::Find(box, "cmdCancel")); });
    EXPECT_EQ(m_desktop.InputBox("Name", "Folder", "New one"), std::nullopt);
    EXPECT_FALSE(m_desktop.InputWasClosed());
}

TEST_F(QtDesktopTest, SaveDialogGivesTheNameTyped)
{
    const tests::TestFolder folder;
    tests::WhenModal([&](QWidget &box) {
        auto *dialog = qobject_cast<QFileDialog *>(&box);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Export to"));
        auto *name = tests::Find<QLineEdit>(box, "fileNameEdit");
        EXPECT_EQ(name->text(), QStringLiteral("gen_bmark.dat"));
        name->setText(platform::qt::ToQt(folder / "se\xC3\xB1or.dat"));
        tests::PressKey("Return");
    });
    EXPECT_EQ(m_desktop.SaveDialog("Export to", {{"Bookmarks", "*.dat"}}, "gen_bmark.dat"),
              folder / "se\xC3\xB1or.dat");
    AnswerByKey("Escape");
    EXPECT_EQ(m_desktop.SaveDialog("Export to", {{"Bookmarks", "*.dat"}}, "x"), std::nullopt);
}

TEST_F(QtDesktopTest, OpenDialogMatchesWithoutRegardToCase)
{
    tests::TestFolder folder;
    const std::string path = folder / "Se\xC3\xB1or.MP3";
    tests::WriteFile(path, "x");
    tests::WriteFile(folder / "notes.txt", "x");
    tests::WhenModal([&](QWidget &box) {
        auto *dialog = qobject_cast<QFileDialog *>(&box);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->nameFilters(), QStringList{QStringLiteral("MP3 Files (*.[mM][pP]3)")});
        auto *files = tests::Find<QTreeView>(box, "treeView");
        ASSERT_TRUE(
            tests::WaitUntil([&] { return files->model()->rowCount(files->rootIndex()) == 1; }));
        const QModelIndex row = files->model()->index(0, 0, files->rootIndex());
        EXPECT_EQ(row.data().toString(), QStringLiteral("Se\u00F1or.MP3"));
        tests::DoubleClickAt(*files->viewport(), files->visualRect(row).center());
    });
    EXPECT_EQ(m_desktop.OpenDialog("Choose", {{"MP3 Files", "*.mp3"}}, folder.Path()), path);
    AnswerByKey("Escape");
    EXPECT_EQ(m_desktop.OpenDialog("Choose", {{"MP3 Files", "*.mp3"}}, folder.Path()),
              std::nullopt);
}

TEST(PathFromQt, FindsTheBytesOfAShownName)
{
    tests::TestFolder folder;
    const std::string path = folder / "Se\xF1or.mp3"; // no valid UTF-8
    tests::WriteFile(path, "x");
    EXPECT_EQ(platform::qt::PathFromQt(platform::qt::ToQt(path)), path);
    EXPECT_EQ(platform::qt::PathFromQt(QStringLiteral("/music/a.mp3")), "/music/a.mp3");
    const QString absent = platform::qt::ToQt(folder / "\xFF");
    EXPECT_EQ(platform::qt::PathFromQt(absent), platform::qt::FromQt(absent));
}

TEST_F(QtDesktopTest, PointerOfTheProgramAndOfABox)
{
    m_desktop.SetPointer(Pointer::Hourglass);
    m_desktop.SetPointer(Pointer::Hourglass);
    ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    tests::WhenModal([](QWidget &) {
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        tests::PressKey("Escape");
    });
    m_desktop.MessageBox("Box", Buttons::Ok, {}, BoxIcon::None);
    EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
    m_desktop.SetPointer(Pointer::Normal);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(QtDesktopTest, PointerSetWhileABoxIsUpCounts)
{
    m_desktop.SetPointer(Pointer::Hourglass);
    tests::WhenModal([&](QWidget &) {
        m_desktop.SetPointer(Pointer::Normal);
        tests::PressKey("Escape");
    });
    m_desktop.MessageBox("Box", Buttons::Ok, {}, BoxIcon::None);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(QtDesktopTest, Clipboard)
{
    m_desktop.SetClipboardText("<b>\xC3\xB1</b>\r\nline");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("<b>\u00F1</b>\r\nline"));
    m_desktop.EmptyClipboard();
    EXPECT_TRUE(QGuiApplication::clipboard()->text().isEmpty());
}

TEST_F(QtDesktopTest, DoEventsRunsWhatWaitsAndReturns)
{
    int ran = 0;
    QTimer::singleShot(0, [&] { ++ran; });
    QTimer::singleShot(60000, [&] { ran += 100; });
    m_desktop.DoEvents();
    EXPECT_EQ(ran, 1);
}

// In place of the desktop's opener, a program that records what it was asked to open and takes some
// time.
TEST_F(QtDesktopTest, OpenAddressStartsTheOpenerWithoutWaiting)
{
    tests::TestFolder folder;
    const std::string log = folder / "log";
    const std::string opener = folder / "xdg-open";
    tests::WriteFile(opener, "#!/bin/sh\nprintf '%s\\n' \"$1\" >>'" + log + "'\nexec sleep 2\n");
    QFile(platform::qt::ToQt(opener)).setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    qputenv("PATH", QByteArray::fromStdString(folder.Path()) + ":" + qgetenv("PATH"));

    QElapsedTimer timer;
    timer.start();
    EXPECT_TRUE(m_desktop.OpenAddress("mailto:support@quenlin.example", "C:\\"));
    EXPECT_TRUE(m_desktop.OpenAddress("http://quenlin.example/a.asp#top", ""));
    EXPECT_TRUE(m_desktop.OpenAddress("/music/Se\xF1or #1?.txt", ""));
    EXPECT_LT(timer.elapsed(), 1500);
    EXPECT_FALSE(m_desktop.OpenAddress("", ""));

    const auto lines = [&] {
        QFile file(platform::qt::ToQt(log));
        QByteArrayList result;
        if (file.open(QFile::ReadOnly))
            result = file.readAll().trimmed().split('\n');
        std::sort(result.begin(), result.end());
        return result;
    };
    EXPECT_TRUE(tests::WaitUntil([&] { return lines().size() == 3; }));
    const QByteArrayList want{"file:///music/Se%F1or%20%231%3F.txt",
                              "http://quenlin.example/a.asp#top", "mailto:support@quenlin.example"};
    EXPECT_EQ(lines(), want);
}

TEST(QtDesktopScaled, BoxesAreReadableAndNamed)
{
    const ui::qt::FormWindows forms;
    platform::qt::QtDesktop desktop;
    tests::WhenModal([](QWidget &box) {
        EXPECT_TRUE(tests::NamelessControls(box).empty()) << tests::NamelessControls(box).front();
        tests::KeepScreenshot(box, "messagebox");
        tests::PressKey("Escape");
    });
    desktop.MessageBox("You're database is corrupted. Download the last version\r"
                       "of the catalogue and run the program. Would you like to go to\r"
                       "the download page now?",
                       Buttons::YesNo, "Corrupted file", BoxIcon::Exclamation);
    tests::WhenModal([](QWidget &box) {
        EXPECT_TRUE(tests::NamelessControls(box).empty()) << tests::NamelessControls(box).front();
        tests::KeepScreenshot(box, "inputbox");
        tests::PressKey("Escape");
    });
    desktop.InputBox("Type the name of the playlist:", "Playlist", "My songs");
}

// Also a box that follows another at once, before the window system has given the keyboard back.
TEST_F(QtDesktopTest, EachBoxBelongsToTheWindowBelow)
{
    QWidget window;
    window.resize(300, 200);
    tests::ShowAndActivate(window);
    for (int box = 0; box < 3; ++box) {
        const QWidget *owner = nullptr;
        QString title;
        tests::WhenModal([&](QWidget &modal) {
            owner = modal.parentWidget();
            title = modal.windowTitle();
            tests::PressKey("Return");
        });
        m_desktop.MessageBox("Go on?", Buttons::Ok, "Tip of the day", BoxIcon::None);
        EXPECT_EQ(owner, &window) << box;
        EXPECT_EQ(title, QStringLiteral("Tip of the day"));
    }
}

} // namespace

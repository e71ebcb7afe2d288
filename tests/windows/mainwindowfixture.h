// tests/windows/mainwindowfixture.h - the real main window over a fresh catalogue and a folder of
// real songs, with a user who answers by script.
#pragma once

#include "browser/fieldtree.h"
#include "browser/form/commandstate.h"
#include "browser/form/formclose.h"
#include "browser/form/formcommands.h"
#include "browser/form/formlayout.h"
#include "browser/form/formload.h"
#include "browser/form/formpopup.h"
#include "browser/windows/frmMain.h"
#include "catalogue/adoclass.h"
#include "catalogue/regeneration.h"
#include "platform/machine.h"
#include "platform/qt/qtwindows.h"
#include "shell/globals.h"
#include "shell/startup/startup.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/memorysettings.h"
#include "tests/windows/bench.h"
#include "ui/qt/views/listview.h"
#include "ui/qt/views/treeview.h"

#include <QLabel>
#include <QMenuBar>
#include <QProcess>
#include <QScrollBar>

namespace tests
{

class MainWindowTest : public LibraryFixture
{
protected:
    MainWindowTest()
    {
        desktop.doEvents = [] { QApplication::processEvents(); };
        platform::TheMachine().windows = &windows;
        settings.Write("Quenlin", "Preferences", "MP3 Directory", Music());
    }
    ~MainWindowTest() override
    {
        Leave();
        platform::TheMachine().windows = nullptr;
        shell::TheGlobals() = shell::Globals{};
    }

    void OpenCatalogue()
    {
        catalogue::DataAccess = std::make_unique<catalogue::ADOclass>();
        shell::SetADOFields(*catalogue::DataAccess);
    }

    // What start-up does, without the splash's half second.
    void Start()
    {
        OpenCatalogue();
        browser::ResetMainForm();
        window = std::make_unique<browser::frmMainWindow>(Form());
        Form().calls.unloadForms = [this] { window->hide(); };
        Form().calls.endProgram = [this] { ended = true; };
        browser::LoadMainForm(Form());
        shell::ReadPreferences();
        browser::ApplyPreferences(Form());
        browser::ShowTreeAndList(Form());
        browser::BuildLanguageMenu(Form(), languages);
        browser::LoadTreeView(Form(), "");
        browser::ShowMainForm(Form());
        ShowAndActivate(*window);
        ended = false;
    }

    // Destroys the window, as the end of the process does.
    void Leave()
    {
        window.reset();
        browser::ResetMainForm();
    }

    browser::MainForm &Form() { return browser::frmMain(); }
    ui::qt::TreeView &TV() { return *static_cast<ui::qt::TreeView *>(Find(*window, "TV")); }
    ui::qt::ListView &LV() { return *static_cast<ui::qt::ListView *>(Find(*window, "LV")); }
    QLabel &Label(const char *name) { return *Find<QLabel>(*window, name); }

    // Makes a song with the encoder: a tenth of a second of silence and both tags; no tag for an
    // empty title.
    void Encode(const std::string &name, const std::string &title, const std::string &artist,
                const std::string &album)
    {
        WriteFile(folder / "silence.raw", std::string(17640, '\0'));
        QStringList arguments = {QStringLiteral("--silent"), QStringLiteral("-r")};
        // The encoder writes UTF-16 if the locale allows it; these tags must be of the simple kind.
        if (!title.empty())
            arguments << QStringLiteral("--add-id3v2") << QStringLiteral("--id3v2-latin1")
                      << QStringLiteral("--tt") << QString::fromStdString(title)
                      << QStringLiteral("--ta") << QString::fromStdString(artist)
                      << QStringLiteral("--tl") << QString::fromStdString(album);
        arguments << QString::fromStdString(folder / "silence.raw")
                  << QString::fromStdString(Song(name));
        ASSERT_EQ(QProcess::execute(QStringLiteral("lame"), arguments), 0);
    }

    void EncodeFour()
    {
        Encode("1.mp3", "So What", "Miles Davis", "Kind of Blue");
        Encode("2.mp3", "All Blues", "Miles Davis", "Kind of Blue");
        Encode("3.mp3", "Waltz & Debby <b>", "Bill Evans", "Village Vanguard");
        Encode("4.mp3", "", "", "");
    }

    // Opens a menu of the bar by mouse and clicks one of its entries.
    void ChooseMenu(const char *menuName, const char *entryName)
    {
        auto *menu = Find<QMenu>(*window, menuName);
        auto *entry = window->findChild<QAction *>(QString::fromLatin1(entryName));
        ASSERT_NE(menu, nullptr);
        ASSERT_NE(entry, nullptr);
        QMenuBar &bar = *window->menuBar();
        // A click during the closing of another window closes the menu at once.
        for (int i = 0; i < 3 && !menu->isVisible(); ++i) {
            ClickAt(bar, bar.actionGeometry(menu->menuAction()).center());
            (void)WaitUntil([menu] { return menu->isVisible(); }, 10000);
        }
        ASSERT_TRUE(menu->isVisible());
        ClickAt(*menu, menu->actionGeometry(entry).center());
    }

    void Regenerate() { ChooseMenu("mnuTools", "submnuRegenerateDatabase"); }

    QRect NodeRect(const char *key)
    {
        EXPECT_NE(Form().TV.Find(key), ui::kNoNode) << key;
        return TV().visualRect(TV().Model().IndexOf(Form().TV.Find(key)));
    }
    void ClickNode(const char *key) { ClickAt(*TV().viewport(), NodeRect(key).center()); }
    void ClickExpander(const char *key)
    {
        const QRect place = NodeRect(key);
        ClickAt(*TV().viewport(), {place.left() - TV().indentation() / 2, place.center().y()});
    }
    QPoint RowAt(int displayIndex)
    {
        return LV().visualRect(LV().Model().index(displayIndex, 1)).center();
    }
    std::string Cell(int displayIndex, int column)
    {
        return LV().Model().index(displayIndex, column).data().toString().toStdString();
    }
    bool WaitForText(const char *label, const char *part)
    {
        return WaitUntil([&] { return Label(label).text().contains(QLatin1String(part)); });
    }

    MemorySettings settings;
    platform::qt::QtWindows windows;
    std::unique_ptr<browser::frmMainWindow> window;
    bool ended = false;
    std::vector<std::string> languages = {"Deutsch"}; // the language files that there are
};

} // namespace tests

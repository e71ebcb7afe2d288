// The export by mouse and keys: the folder window, real files, Escape, failures.
#include "browser/exportfolder.h"
#include "browser/filecommands.h"
#include "browser/form/commandstate.h"
#include "platform/posix/disk/systemfolders.h"
#include "platform/qt/application.h"
#include "platform/qt/qtdesktop.h"
#include "platform/qt/theme.h"
#include "runtime/error.h"
#include "tests/support/mp3bytes.h"
#include "tests/windows/accessibility.h"
#include "tests/windows/mainwindowfixture.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <filesystem>

namespace tests
{

namespace
{

namespace fs = std::filesystem;

// The real folders, of a process that is in the folder of the test.
struct TestFoldersPort : platform::posix::SystemFolders {
    std::string current;
    std::string CurrentFolder() override { return current; }
};

class ExportFileScaled : public MainWindowTest
{
protected:
    ExportFileScaled()
    {
        folders.current = folder.Path();
        platform::TheMachine().folders = &folders;
        drives.roots = {"/", folder.Path()};
        fs::create_directories(folder / "target");
    }
    ~ExportFileScaled() override
    {
        platform::qt::ApplyPalette(false);
        platform::TheMachine().folders = nullptr;
    }

    // The main window with two songs' rows, both selected by keys.
    void ShowSongs()
    {
        Start();
        browser::InstallFileCommands();
        browser::UpdateCommands(Form());
        for (const char *name : {"a.mp3", "b.mp3"}) {
            WriteFile(Song(name), Id3v2(TextFrame("TIT2", name)) + Audio());
            const std::vector<catalogue::Value> values = {
                std::string(name), std::string("Artist"), std::string(), std::string(),
                std::string(),     std::string(),         std::string(), Song(name),
                std::int64_t{0}};
            catalogue::DataAccess->ExecuteSQL("AddMP3", catalogue::kStoredInsert, values);
        }
        browser::LoadTreeView(Form(), "");
        Form().TV.SetExpanded(Form().TV.Find("ByArtist"), true);
        Form().TreeJustExpanded = false;
        ClickNode("#ARTIST");
        ASSERT_TRUE(WaitUntil([this] { return Form().LV.Count() == 2; }));
        ClickAt(*LV().viewport(), RowAt(0));
        LV().setFocus();
        PressKey("Ctrl+A");
        ASSERT_TRUE(WaitUntil([this] { return Form().LV.SelectedCount() == 2; }));
    }

    static QPoint RowOf(ui::qt::ListView &list, const char *name)
    {
        for (int row = 0; row < list.Model().rowCount(); ++row)
            if (list.Model().index(row, 1).data().toString() == QLatin1String(name))
                return list.visualRect(list.Model().index(row, 1)).center();
        ADD_FAILURE() << "no row " << name;
        return {};
    }

    TestFoldersPort folders;
    ui::qt::FormWindows host;
};

TEST_F(ExportFileScaled, ByMouseIntoAChosenFolder)
{
    ShowSongs();
    WhenModal([&](QWidget &modal) {
        EXPECT_EQ(modal.objectName(), QStringLiteral("frmExportFile"));
        EXPECT_EQ(modal.windowTitle(), QStringLiteral("Select the folder"));
        EXPECT_EQ(NamelessControls(modal), std::vector<std::string>{});
        EXPECT_EQ(Find<QComboBox>(modal, "Drives")->currentText().toStdString(), folder.Path());
        auto &path = *Find<QLineEdit>(modal, "txtPath");
        auto &dirs = *static_cast<ui::qt::ListView *>(Find(modal, "Dirs"));
        EXPECT_EQ(path.text().toStdString(), folder.Path());
        ClickAt(*dirs.viewport(), RowOf(dirs, "target"));
        EXPECT_TRUE(WaitUntil([&] { return path.text().endsWith(QStringLiteral("/target")); }));
        KeepScreenshot(modal, "exportfile");
        DoubleClickAt(*dirs.viewport(), RowOf(dirs, "target"));
        EXPECT_TRUE(WaitUntil([&] { return dirs.Model().rowCount() == 1; }));
        Click(*Find(modal, "cmdOk"));
    });
    ChooseMenu("mnuFile", "submnuExport");
    ASSERT_TRUE(WaitUntil([&] { return fs::exists(folder / "target/b.mp3"); }));
    EXPECT_EQ(ReadFile(folder / "target/a.mp3"), ReadFile(Song("a.mp3")));
    EXPECT_TRUE(WaitUntil([&] { return Form().LV.Enabled(); }));
    WhenModal([&](QWidget &modal) { // the next one begins at the drive of the last
        EXPECT_EQ(Find<QLineEdit>(modal, "txtPath")->text().toStdString(), folder.Path());
        PressKey("Escape");
    });
    ChooseMenu("mnuFile", "submnuExport");
}

TEST_F(ExportFileScaled, ByKeysIntoANewFolder)
{
    ShowSongs();
    platform::Desktop *const before = platform::TheMachine().desktop;
    platform::qt::QtDesktop boxes;
    platform::TheMachine().desktop = &boxes;
    WhenModal([&](QWidget &modal) {
        auto &path = *Find<QLineEdit>(modal, "txtPath");
        Find(modal, "Dirs")->setFocus();
        TypeText("t"); // to "target"
        EXPECT_TRUE(WaitUntil([&] { return path.text().endsWith(QStringLiteral("/target")); }));
        PressKey("Return"); // lists it; OK is not pressed
        EXPECT_TRUE(modal.isVisible());
        WhenModal([](QWidget &box) {
            EXPECT_EQ(box.windowTitle(), QStringLiteral("Folder Name"));
            KeepScreenshot(box, "exportfile-new");
            PressKey("Ctrl+A");
            TypeText("new one");
            PressKey("Return");
        });
        Click(*Find(modal, "cmdCreate"));
        EXPECT_TRUE(path.text().endsWith(QStringLiteral("/target/new one")));
        PressKey("Alt+O");
    });
    ChooseMenu("mnuFile", "submnuExport");
    EXPECT_TRUE(WaitUntil([&] { return fs::exists(folder / "target/new one/b.mp3"); }));
    EXPECT_TRUE(WaitUntil([&] { return !Form().exporting; }));
    platform::TheMachine().desktop = before;
}

TEST_F(ExportFileScaled, EscapeClosesTheFolderWindowAndEndsTheExport)
{
    ShowSongs();
    bool isClosed = false;
    WhenModal([&](QWidget &) {
        PressKey("Escape");
        isClosed = true;
    });
    ChooseMenu("mnuFile", "submnuExport");
    EXPECT_TRUE(
        WaitUntil([&] { return isClosed && QApplication::activeModalWidget() == nullptr; }));
    EXPECT_TRUE(fs::is_empty(folder / "target"));

    std::string shown;
    desktop.doEvents = [&] {
        QApplication::processEvents();
        if (!Form().exporting || Form().PBar.Value() != 1)
            return;
        shown = Form().SB.Panel("Playing").text + " " + Form().SB.Panel("Blank").text;
        KeepScreenshot(*window, "export-running");
        PressKey("Escape");
    };
    WhenModal([&](QWidget &modal) {
        static_cast<browser::ExportFolder *>(host.Forms().back())->GoTo(folder / "target");
        Click(*Find(modal, "cmdOk"));
    });
    ChooseMenu("mnuFile", "submnuExport");
    ASSERT_TRUE(WaitUntil([&] { return fs::exists(folder / "target/a.mp3"); }));
    EXPECT_TRUE(WaitUntil([&] { return !Form().exporting; }));
    EXPECT_FALSE(fs::exists(folder / "target/b.mp3"));
    EXPECT_EQ(shown, "Exporting: a.mp3 0/2");
}

// A song that does not exist ends the export with a box that names it; the window is as before.
TEST_F(ExportFileScaled, ACopyThatFailsIsReported)
{
    ShowSongs();
    fs::remove(Song("a.mp3"));
    auto &application = static_cast<platform::qt::Application &>(*qApp);
    std::string reported;
    const auto before =
        std::exchange(application.showError,
                      [&](const runtime::RuntimeError &error) { reported = error.description; });
    WhenModal([&](QWidget &modal) {
        static_cast<browser::ExportFolder *>(host.Forms().back())->GoTo(folder / "target");
        Click(*Find(modal, "cmdOk"));
    });
    ChooseMenu("mnuFile", "submnuExport");
    EXPECT_TRUE(WaitUntil([&] { return !reported.empty(); }));
    application.showError = before;
    EXPECT_TRUE(reported.starts_with(Song("a.mp3"))) << reported;
    EXPECT_TRUE(fs::is_empty(folder / "target"));
    EXPECT_TRUE(Form().LV.Enabled());
    EXPECT_FALSE(Form().PBar.Visible());
}

} // namespace

} // namespace tests

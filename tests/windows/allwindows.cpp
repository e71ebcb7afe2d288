// The look of every window of the program: each shipped language, light and dark, at 100, 150 and
// 200 percent.
#include "browser/exportfolder.h"
#include "browser/mainform.h"
#include "lyrics/frmLyricsView.h"
#include "lyrics/lyricsform.h"
#include "online/frmHistory.h"
#include "online/help/frmHelp.h"
#include "online/help/help.h"
#include "online/help/helpform.h"
#include "online/historyform.h"
#include "online/techsupportform.h"
#include "online/tipform.h"
#include "online/version/versioninfo.h"
#include "platform/machine.h"
#include "platform/posix/disk/systemfolders.h"
#include "platform/qt/qtwindows.h"
#include "player/controlsform.h"
#include "playlists/listsform.h"
#include "search/frmSearch.h"
#include "search/searchform.h"
#include "shell/globals.h"
#include "shell/language.h"
#include "shell/preferences/preferences.h"
#include "shell/preferences/unicodeoffer.h"
#include "shell/settings.h"
#include "shell/startup/splashform.h"
#include "tagedit/tageditor.h"
#include "tests/support/configfolder.h"
#include "tests/support/fakeports.h"
#include "tests/support/memorysettings.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/recordingplayer.h"
#include "tests/support/scripteddesktop.h"
#include "tests/support/testfolder.h"
#include "tests/windows/accessibility.h"
#include "tests/windows/look.h"
#include "tests/windows/sampleform.h"
#include "ui/boxforms.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <filesystem>

namespace tests
{

namespace
{

// The forms of the program, made as their commands make them, with long contents. A new form is one
// more line here.
struct FormCase {
    const char *name;
    std::function<std::unique_ptr<ui::Form>()> make;
};

enum class LyricsMode { Following, Setting, Testing, Paused };

std::unique_ptr<ui::Form> LyricsWindow(LyricsMode mode)
{
    lyrics::RegisterLyricsView();
    auto made = std::make_unique<lyrics::LyricsForm>();
    lyrics::LyricsForm &form = *made;
    form.SettingTimes = mode != LyricsMode::Following;
    form.FileName = "/music/song.mp3";
    form.onLoad = [&form, mode] {
        lyrics::Form_Load(form);
        std::string text;
        for (const char *line :
             {"[00:10]A line of the song", "[00:20][01:05]Its chorus, which is sung twice",
              "[00:30]A line that is much longer than the window is wide, so that it goes on "
              "below, where a reader finds the rest of its words"})
            text += std::string(line) + "\r\n\r\n";
        form.Lyrics.SetText(text);
        if (mode == LyricsMode::Testing || mode == LyricsMode::Paused)
            form.cmdTest.Click();
        if (mode == LyricsMode::Paused)
            form.cmdPause.Click();
        if (form.showTimes.Enabled())
            form.Lyrics.Select(form.Times->at("30l").Start, form.Times->at("30l").Length);
        else
            form.Lyrics.Select(25, 1); // the line break, as after a line that was marked
    };
    return made;
}

std::unique_ptr<ui::Form> HelpWindow()
{
    shell::TheGlobals().HelpFilePath = std::string(QUENLIN_SHIPPED_TEXTS) + "/Brandolet.hlp";
    auto form = std::make_unique<online::HelpForm>();
    form->SetBook(online::ReadHelpBook());
    form->Open("frmPref");
    return form;
}

std::unique_ptr<ui::Form> MakeVersionInfo()
{
    auto form = std::make_unique<online::VersionInfoForm>(online::DriveTimer());
    form->URL2Download.SetCaption("https://quenlin.example/whats_new.asp#169");
    form->Status.SetFontSize(16);
    form->Status.SetCaption("Brandolet is up to date, but there's a newer database.");
    for (ui::Label &label : form->Using)
        label.SetCaption("1.16.119");
    for (ui::Label &label : form->NewOne)
        label.SetCaption("1.16.120");
    return form;
}

std::unique_ptr<ui::Form> MakeControls()
{
    auto form = std::make_unique<player::ControlsForm>();
    form->tmrUpdate.event = nullptr; // no player is asked
    form->onLoad = [shown = form.get()] {
        shown->HScroll.SetMax(205);
        shown->HScroll.SetValue(62);
    };
    return form;
}

// The tag editor on this song.
std::unique_ptr<ui::Form> MakeTagEditor(const std::string &song)
{
    auto form = std::make_unique<tagedit::TagEditor>();
    form->File = song;
    return form;
}

// Songs with both tags, with none, and with long values that contain characters which no tag can
// hold.
std::vector<FormCase> TagEditorCases(const TestFolder &folder)
{
    const std::string full = folder / "full.mp3";
    WriteFile(full, Id3v2(TextFrame("TIT2", "So What") + TextFrame("TPE1", "Miles Davis") +
                          TextFrame("TALB", "Kind of Blue") + TextFrame("TCON", "(8)Jazz") +
                          Frame("USLT", std::string("\0\0\0\0\0", 5) + "One\r\nTwo")) +
                        Audio() +
                        Id3v1({"So What", "Miles Davis", "Kind of Blue", "1959", "", 1, 8}));
    const std::string empty = folder / "empty.mp3";
    WriteFile(empty, Audio());
    const std::string longest = folder / "long.mp3";
    WriteFile(longest, Id3v2(TextFrame("TIT2", std::string(300, 'W')) +
                             TextFrame("TCON", "The long name of a kind of music of one's own") +
                             Frame("USLT", std::string("\0\0\0\0\0", 5) + std::string(3000, 'w'))) +
                           Audio() + Id3v1({std::string(30, 'W'), "", "", "1999", "", 255, 125}));
    return {
        {"frmEditTag", [full] { return MakeTagEditor(full); }},
        {"frmEditTag_empty", [empty] { return MakeTagEditor(empty); }},
        {"frmEditTag_long",
         [longest] {
             auto form = MakeTagEditor(longest);
             auto &editor = static_cast<tagedit::TagEditor &>(*form);
             const auto load = editor.onLoad;
             editor.onLoad = [&editor, load] {
                 load();
                 editor.At(tagedit::kID3v2).txtArtist.SetText("\u0141\u00F3d\u017A \u4E16\u754C");
             };
             return form;
         }},
    };
}

// The window that asks for the folder of an export, at a folder with some sub-folders.
std::unique_ptr<ui::Form> MakeExportFolder(const TestFolder &folder)
{
    for (const char *name : {"Music for the car", "Recordings",
                             "A folder with a long name, such as "
                             "people give who want to find it"})
        std::filesystem::create_directories(folder / name);
    auto form = std::make_unique<browser::ExportFolder>();
    form->start = folder.Path();
    return form;
}

// The preferences, at a folder with songs that is deep in the tree. `running`: a regeneration that
// was started from the window is running, and the window shows its line and bar.
std::unique_ptr<ui::Form> MakePreferences(const TestFolder &folder, bool running)
{
    const std::string music = folder / "music";
    for (const char *name : {"An album whose name is longer than the tree is wide", "Kind of Blue"})
        std::filesystem::create_directories(music + "/" + name);
    for (const char *name : {"So What.mp3", "Freddie Freeloader, a second take that was found.mp3"})
        WriteFile(music + "/" + name, "not read here");
    shell::SavePreference("MP3 Directory", music);
    auto made = std::make_unique<shell::PreferencesForm>();
    made->onLoad = [&form = *made, running, music] {
        shell::LoadPreferences(form);
        form.PBar.SetVisible(running);
        form.lblProgress.SetVisible(running);
        form.PBar.SetMax(100);
        form.PBar.SetValue(40);
        form.lblProgress.SetCaption("Checking " + music + "/Kind of Blue/Freddie Freeloader, " +
                                    std::string(200, 'w') + ".mp3");
        for (ui::Label *choice :
             {static_cast<ui::Label *>(&form.cmdOk), static_cast<ui::Label *>(&form.cmdApply),
              static_cast<ui::Label *>(&form.chkDeleteTable)})
            choice->SetEnabled(!running);
        form.tvwDirTree.SetEnabled(!running);
        form.txtPath.SetEnabled(!running);
    };
    return made;
}

std::unique_ptr<ui::Form> MakeLists()
{
    auto form = std::make_unique<playlists::ListsForm>(browser::frmMain());
    form->LV.AddColumn("Unique", "", 2000);
    form->LV.HideHeaders(true);
    for (const char *name :
         {"A & B", "one", "A name that is much longer than the list is wide, so"})
        form->LV.AddRow("A" + std::string(name), name, "M3U", {});
    form->LV.SelectOnly(0);
    return form;
}

std::unique_ptr<ui::Form> MakeSplash(bool about)
{
    auto form = std::make_unique<shell::SplashForm>(
        nullptr, [] {}, [] {});
    form->SetRole(about);
    shell::TheGlobals().lblProgress.SetCaption("Adding Title && Artist information...");
    return form;
}

std::unique_ptr<ui::Form> MakeBox(const ui::Message &message)
{
    auto box = std::make_unique<ui::MessageBoxForm>(message);
    if (!message.details.empty())
        box->onLoad = [shown = box.get()] { shown->cmdDetails.Click(); };
    return box;
}

constexpr std::string_view kQuestion =
    "The file could not be added. If you think this is a bug, please\rsend me an email with the "
    "reason.\r\rWould you like to send me an email now?";

std::vector<FormCase> BoxCases()
{
    using platform::BoxIcon;
    using platform::Buttons;
    const ui::Message ok{.text = kQuestion, .title = "Quenlin"};
    const ui::Message ask{kQuestion, {}, "Corrupted file", Buttons::YesNo, BoxIcon::Exclamation};
    const ui::Message save{kQuestion, "Permission denied", "Quenlin", Buttons::SaveDiscardCancel};
    return {
        {"MessageBox", [ok] { return MakeBox(ok); }},
        {"MessageBox_ask", [ask] { return MakeBox(ask); }},
        {"MessageBox_save", [save] { return MakeBox(save); }},
        {"InputBox",
         [] { return std::make_unique<ui::InputBoxForm>(kQuestion, "Quenlin", "So What"); }},
    };
}

std::vector<FormCase> AllForms(const TestFolder &folder)
{
    std::vector<FormCase> forms = TagEditorCases(folder);
    const std::vector<FormCase> others{
        {"frmExportFile", [&folder] { return MakeExportFolder(folder); }},
        {"frmControls", [] { return MakeControls(); }},
        {"frmLists", [] { return MakeLists(); }},
        {"frmPref", [&folder] { return MakePreferences(folder, false); }},
        {"frmPref_running", [&folder] { return MakePreferences(folder, true); }},
        {"frmSearch", [] { return std::make_unique<search::SearchForm>(); }},
        {"frmLyrics", [] { return LyricsWindow(LyricsMode::Following); }},
        {"frmLyrics_setting", [] { return LyricsWindow(LyricsMode::Setting); }},
        {"frmLyrics_testing", [] { return LyricsWindow(LyricsMode::Testing); }},
        {"frmLyrics_paused", [] { return LyricsWindow(LyricsMode::Paused); }},
        {"frmSplash", [] { return MakeSplash(false); }},
        {"frmSplash_about", [] { return MakeSplash(true); }},
        {"frmSample", [] { return std::make_unique<SampleForm>(); }},
        {"frmUnicodeOffer", [] { return std::make_unique<shell::UnicodeOfferForm>(12345, 67890); }},
        {"frmTip", [] { return std::make_unique<online::TipForm>(); }},
        {"frmTechSupport", [] { return std::make_unique<online::TechSupportForm>(); }},
        {"frmHelp", [] { return HelpWindow(); }},
        {"frmHistory", [] { return std::make_unique<online::HistoryForm>(); }},
        {"frmVersionInfo", [] { return MakeVersionInfo(); }},
    };
    const std::vector<FormCase> boxes = BoxCases();
    forms.insert(forms.end(), others.begin(), others.end());
    forms.insert(forms.end(), boxes.begin(), boxes.end());
    return forms;
}

class AllWindowsScaled : public testing::Test
{
protected:
    AllWindowsScaled()
    {
        platform::TheMachine().windows = &windows;
        platform::TheMachine().folders = &folders;
        drives.roots = {"/", folder.Path()};
        online::RegisterHistoryWidget();
        online::RegisterHelpWidget();
        search::RegisterSearchWidgets();
    }
    ~AllWindowsScaled() override
    {
        platform::TheMachine().windows = nullptr;
        platform::TheMachine().folders = nullptr;
        browser::ResetMainForm();
        shell::TheGlobals() = shell::Globals{};
    }

    TestFolder folder;
    FakeClock clock;
    FakeDrives drives;
    platform::posix::SystemFolders folders;
    ScriptedDesktop desktop;
    MemorySettings settings;
    ConfigFolder config;
    RecordingPlayer player;
    platform::qt::QtWindows windows;
    ui::qt::FormWindows host;
};

TEST_F(AllWindowsScaled, Forms)
{
    for (const FormCase &c : AllForms(folder)) {
        std::unique_ptr<ui::Form> form;
        const auto open = [&] {
            form = c.make();
            ui::Show(*form);
            return host.WindowOf(*form);
        };
        const auto close = [&] {
            ui::Close(*form);
            ui::Retire(std::move(form));
        };
        CheckLook(c.name, open, close);
    }
}

TEST_F(AllWindowsScaled, FormsInEachFontFamily)
{
    InEachFontFamily([&] {
        for (const FormCase &c : AllForms(folder)) {
            SCOPED_TRACE(c.name);
            std::unique_ptr<ui::Form> form = c.make();
            ui::Show(*form);
            AwaitPainted(*host.WindowOf(*form));
            EXPECT_EQ(LookProblems(*host.WindowOf(*form)), std::vector<std::string>{});
            ui::Close(*form);
            ui::Retire(std::move(form));
            Settle();
        }
    });
}

// More text than the screen has room for, and a path, in which no line can break: they scroll.
TEST_F(AllWindowsScaled, BoxesWithLongTextsFitTheScreen)
{
    const std::string path = "/music/" + std::string(300, 'W') + ".mp3";
    std::string lines;
    for (int line = 0; line < 400; ++line)
        lines += "A line of a long report, number " + std::to_string(line) + "\r";
    using platform::BoxIcon;
    using platform::Buttons;
    const std::pair<const char *, ui::Message> cases[] = {
        {"high", {lines, {}, "Quenlin", Buttons::YesNo, BoxIcon::Exclamation}},
        {"wide", {path, {}, "Quenlin", Buttons::SaveDiscardCancel, BoxIcon::None}},
        {"details", {"A file could not be written.", path, "Quenlin", Buttons::Ok, BoxIcon::None}},
    };
    for (const auto &[name, message] : cases) {
        SCOPED_TRACE(name);
        std::unique_ptr<ui::Form> form = MakeBox(message);
        ui::Show(*form);
        QWidget &box = *host.WindowOf(*form);
        AwaitPainted(box);
        const QRect screen = box.screen()->availableGeometry();
        EXPECT_LE(box.frameGeometry().width(), screen.width());
        EXPECT_LE(box.frameGeometry().height(), screen.height());
        const bool inDetails = !message.details.empty();
        const auto *text = Find<QLabel>(box, inDetails ? "lblDetails" : "lblText");
        EXPECT_NE(text->parentWidget()->size(), text->size()) << "it scrolls";
        EXPECT_EQ(text->parentWidget()->parentWidget()->focusPolicy(), Qt::StrongFocus);
        EXPECT_GE(text->width(), text->minimumSizeHint().width()) << "no word is cut";
        EXPECT_EQ(NamelessControls(box), std::vector<std::string>{});
        KeepPainted(box, std::string("MessageBox_") + name);
        ui::Close(*form);
        ui::Retire(std::move(form));
        Settle();
    }
}

// The checks can fail.
TEST_F(AllWindowsScaled, FaultsAreSeen)
{
    QWidget window;
    window.resize(900, 300);
    auto *cut = new QLabel(QStringLiteral("A text that is longer than its label"), &window);
    cut->setObjectName(QStringLiteral("lblCut"));
    cut->setGeometry(0, 0, 30, 20);
    auto *nameless = new QPushButton(QStringLiteral("Ok"), &window);
    nameless->setObjectName(QStringLiteral("cmdOk"));
    nameless->setAccessibleName(QStringLiteral("cmdOk"));
    nameless->setGeometry(0, 100, 200, 60);
    nameless->setText(QStringLiteral("&Same"));
    auto *same = new QPushButton(QStringLiteral("&Same"), &window);
    same->setObjectName(QStringLiteral("cmdSame"));
    same->setGeometry(300, 100, 200, 60);
    auto *outside = new QLabel(&window);
    outside->setObjectName(QStringLiteral("lblOutside"));
    outside->setGeometry(890, 0, 30, 20);
    window.show();
    const std::vector<std::string> found = LookProblems(window);
    ASSERT_EQ(found.size(), 5U) << testing::PrintToString(found);
    EXPECT_TRUE(found[0].starts_with("larger than a small screen"));
    EXPECT_EQ(found[1], "cut off: lblCut");
    EXPECT_EQ(found[2], "no name in words: cmdOk 'cmdOk'");
    EXPECT_EQ(found[3], "outside of its parent: lblOutside");
    EXPECT_EQ(found[4], "access key of cmdOk: cmdSame");
}

} // namespace

} // namespace tests

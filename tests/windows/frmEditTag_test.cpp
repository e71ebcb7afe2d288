// The tag editor's window by mouse and keys, over the real main window and real songs.
#include "browser/filecommands.h"
#include "browser/form/commandstate.h"
#include "catalogue/edittags.h"
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "platform/qt/theme.h"
#include "tagedit/editcommands.h"
#include "tagedit/tageditor.h"
#include "tests/support/mp3bytes.h"
#include "tests/windows/accessibility.h"
#include "tests/windows/mainwindowfixture.h"
#include "ui/qt/form.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QWheelEvent>

namespace tests
{

namespace
{

class EditTagScaled : public MainWindowTest
{
protected:
    EditTagScaled()
    {
        metadata::TheTagWriterHooks().updateCatalogue = catalogue::UpdateEditedTags;
        // The rewrite waits for the next second: each look at the clock is one later.
        desktop.doEvents = [this] {
            clock.now.second = (clock.now.second + 1) % 60;
            QApplication::processEvents();
        };
    }
    ~EditTagScaled() override
    {
        platform::qt::ApplyPalette(false);
        metadata::TheTagWriterHooks() = {};
    }

    static std::string Tagged(std::string_view title)
    {
        return Id3v2(TextFrame("TIT2", title) + TextFrame("TPE1", "Artist") +
                     TextFrame("TCON", "(17)Rock") +
                     Frame("USLT", std::string("\0\0\0\0\0", 5) + "One\r\nTwo\xA0three")) +
               Audio();
    }

    // The main window with one song's row selected.
    void ShowSong(const std::string &bytes)
    {
        WriteFile(Song("one.mp3"), bytes);
        Start();
        tagedit::Install();
        browser::UpdateCommands(Form());
        const std::vector<catalogue::Value> values = {
            std::string("Title"), std::string("Artist"), std::string("Album"),
            std::string("1999"),  std::string("Words"),  std::string("Rock"),
            std::string(),        Song("one.mp3"),       std::int64_t{0}};
        catalogue::DataAccess->ExecuteSQL("AddMP3", catalogue::kStoredInsert, values);
        browser::LoadTreeView(Form(), "");
        Form().TV.SetExpanded(Form().TV.Find("ByArtist"), true);
        Form().TreeJustExpanded = false;
        Form().TV.ClickText(Form().TV.Find("#ARTIST"));
        Form().LV.SelectOnly(0);
        Form().LV.onClick();
        LV().setFocus();
    }

    // Opens the editor by Alt+3 and lets `use` work in it; it must close it.
    void Edit(const std::function<void(QWidget &)> &use)
    {
        WhenModal(use);
        PressKey("Alt+3");
    }

    static void Type(QWidget &editor, const char *box, const std::string &text)
    {
        Find(editor, box)->setFocus();
        PressKey("Ctrl+A");
        TypeText(text);
    }

    ui::qt::FormWindows host;
};

TEST_F(EditTagScaled, ChangeCopyAcrossSaveAndSeeTheRow)
{
    ShowSong(Tagged("Old"));
    Edit([&](QWidget &editor) {
        EXPECT_EQ(editor.objectName(), QStringLiteral("frmEditTag"));
        EXPECT_EQ(editor.windowTitle(), QStringLiteral("Tag Editor"));
        EXPECT_EQ(NamelessControls(editor), std::vector<std::string>{});
        EXPECT_EQ(Find<QLineEdit>(editor, "txtTitle(2)")->text(), QStringLiteral("Old"));
        EXPECT_FALSE(Find<QLineEdit>(editor, "txtTitle(1)")->isEnabled());
        KeepScreenshot(editor, "edittag");
        Type(editor, "txtTitle(2)", "A new title that is longer than thirty");
        Click(*Find(editor, "cmdToID3(2)"));
        EXPECT_TRUE(Find<QCheckBox>(editor, "HasID3Tag(1)")->isChecked());
        EXPECT_EQ(Find<QLineEdit>(editor, "txtTitle(1)")->text(),
                  QStringLiteral("A new title that is longer tha"));
        Find(editor, "txtTitle(1)")->setFocus(); // the box is full: keys type nothing
        PressKey("End");
        TypeText("x");
        PressKey("Backspace");
        EXPECT_EQ(Find<QLineEdit>(editor, "txtTitle(1)")->text().size(), 30);
        PressKey("Delete");
        PressKey("Home");
        PressKey("Delete");
        EXPECT_EQ(Find<QLineEdit>(editor, "txtTitle(1)")->text().size(), 29);
        Find(editor, "cmbGenre(1)")->setFocus();
        TypeText("r");
        EXPECT_EQ(Find<QComboBox>(editor, "cmbGenre(1)")->currentText(),
                  QStringLiteral("Rock & Roll"));
        Click(*Find(editor, "cmdOk"));
    });
    ASSERT_TRUE(WaitUntil(
        [&] { return Form().LV.SubItem(0, "Title") == "A new title that is longer than thirty"; }));
    EXPECT_EQ(Form().LV.SubItem(0, "Genre"), "Rock");
    EXPECT_TRUE(WaitForText("WebItemName", "A new title"));
    const std::string song = ReadFile(Song("one.mp3"));
    EXPECT_TRUE(song.ends_with(
        Audio() + Id3v1({"new title that is longer tha", "Artist", "", "", "", 0, 78})));
    EXPECT_NE(song.find("One\r\nTwo\xA0three"), std::string::npos);

    // The whole file is equal to what the tag writer makes of the same records.
    const std::string twin = Song("twin.mp3");
    WriteFile(twin, Tagged("Old"));
    const metadata::SongInfo old = metadata::ReadSongInfo(twin);
    metadata::ID3v1Tag new1 = old.id3v1;
    new1.Title = "new title that is longer tha";
    new1.Artist = "Artist";
    new1.Genre = 78;
    metadata::ID3v2Tag new2 = old.id3v2;
    new2.Title = "A new title that is longer than thirty";
    new2.Genre = "Rock"; // the editor has the name where the reader has the number
    metadata::TheTagWriterHooks() = {};
    metadata::SaveTag(new1, new2, old.id3v1, old.id3v2, twin, true, true, nullptr);
    EXPECT_EQ(ReadFile(twin).substr(0, 160), song.substr(0, 160));
    EXPECT_TRUE(ReadFile(twin) == song); // not printed: thousands of bytes
}

TEST_F(EditTagScaled, EscapeClosesAndWritesNothing)
{
    ShowSong(Tagged("Old"));
    Edit([&](QWidget &editor) {
        Type(editor, "txtTitle(2)", "New");
        PressKey("Escape");
    });
    EXPECT_EQ(ReadFile(Song("one.mp3")), Tagged("Old"));
    EXPECT_EQ(Form().LV.SubItem(0, "Title"), "Title");
}

TEST_F(EditTagScaled, TabMovesDownAColumn)
{
    ShowSong(Tagged("Old") + Id3v1({"Title", "", "", "", "", 0, 17}));
    Edit([&](QWidget &editor) {
        Find(editor, "HasID3Tag(1)")->setFocus();
        std::string order;
        for (int i = 0; i < 18; ++i) {
            PressKey("Tab");
            order += QApplication::focusWidget()->objectName().toStdString() + " ";
        }
        EXPECT_EQ(order, "txtTitle(1) txtArtist(1) txtAlbum(1) txtYear(1) cmbGenre(1) txtTrack(1) "
                         "txtComment(1) cmdToID3(1) HasID3Tag(2) txtTitle(2) txtArtist(2) "
                         "txtAlbum(2) txtYear(2) cmbGenre(2) txtTrack(2) txtComment(2) "
                         "txtLyrics(2) cmdToID3(2) ");
        auto &genre = *Find<QComboBox>(editor, "cmbGenre(1)");
        QWheelEvent wheel(genre.rect().center(), genre.mapToGlobal(genre.rect().center()), {},
                          {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&genre, &wheel);
        EXPECT_EQ(genre.currentText(), QStringLiteral("Rock"));
        PressKey("Escape");
    });
}

TEST_F(EditTagScaled, TheWindowFitsAndItsLyricsGrow)
{
    ShowSong(Audio()); // empty tags
    Edit([&](QWidget &editor) {
        EXPECT_LE(editor.minimumSizeHint().width(), 790);
        EXPECT_LE(editor.minimumSizeHint().height(), 560);
        KeepScreenshot(editor, "edittag-empty");
        const int lyrics = Find(editor, "txtLyrics(2)")->height();
        const int title = Find(editor, "txtTitle(2)")->height();
        editor.resize(editor.width(), editor.height() + 100);
        EXPECT_TRUE(
            WaitUntil([&] { return Find(editor, "txtLyrics(2)")->height() >= lyrics + 95; }));
        EXPECT_EQ(Find(editor, "txtTitle(2)")->height(), title);
        PressKey("Escape");
    });
}

TEST_F(EditTagScaled, CharactersThatNoTagHoldsAreShownAtOnce)
{
    ShowSong(Tagged("Old"));
    Edit([&](QWidget &editor) {
        EXPECT_FALSE(Find(editor, "lblNote")->isVisible());
        Find<QLineEdit>(editor, "txtTitle(2)")->setFocus();
        Find<QLineEdit>(editor, "txtTitle(2)")->clear();
        Find<QLineEdit>(editor, "txtTitle(2)")->insert(QStringLiteral("\u0141\u00F3d\u017A"));
        EXPECT_TRUE(Find(editor, "lblNote")->isVisible());
        EXPECT_TRUE(Find<QLabel>(editor, "lblNote")->text().contains(u'\u0141'));
        EXPECT_FALSE(Find(editor, "txtTitle(2)")->toolTip().isEmpty());
        const auto colourOf = [&](const char *box) {
            return Find(editor, box)->palette().color(QPalette::Text).name();
        };
        const QString marked = colourOf("txtTitle(2)");
        EXPECT_NE(marked, colourOf("txtArtist(2)"));
        KeepScreenshot(editor, "edittag-note");
        platform::qt::ApplyPalette(true);
        EXPECT_TRUE(WaitUntil([&] { return colourOf("txtTitle(2)") != marked; }));
        EXPECT_NE(colourOf("txtTitle(2)"), colourOf("txtArtist(2)"));
        KeepScreenshot(editor, "edittag-note-dark");
        Find<QLineEdit>(editor, "txtTitle(2)")->selectAll();
        TypeText("x"); // the mark is removed with its cause
        EXPECT_EQ(colourOf("txtTitle(2)"), colourOf("txtArtist(2)"));
        PressKey("Escape");
    });
}

TEST_F(EditTagScaled, InGermanWithLongTexts)
{
    ShowSong(Id3v2(TextFrame("TIT2", std::string(300, 'W')) +
                   TextFrame("TCON", "Ein sehr langer eigener Name einer Musikrichtung")) +
             Audio() + Id3v1({"012345678901234567890123456789", "", "", "1999", "", 255, 125}));
    const std::string german = shell::TheGlobals().LanguageFilePath;
    shell::TheGlobals().LanguageFilePath = QUENLIN_GERMAN;
    Edit([&](QWidget &editor) {
        EXPECT_EQ(editor.windowTitle(), QStringLiteral("Tag-Editor"));
        EXPECT_LE(editor.minimumSizeHint().width(), 790);
        EXPECT_LE(editor.minimumSizeHint().height(), 560);
        EXPECT_EQ(Find<QComboBox>(editor, "cmbGenre(1)")->currentText(),
                  QStringLiteral("Dance Hall"));
        KeepScreenshot(editor, "edittag-german");
        PressKey("Escape");
    });
    shell::TheGlobals().LanguageFilePath = german;
}

} // namespace

} // namespace tests

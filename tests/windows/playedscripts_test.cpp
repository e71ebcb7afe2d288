// What a user does with songs in Japanese, Russian, Arabic and emoji: the folder is read, the offer
// of Unicode tags accepted, the songs are browsed, found, edited, duplicated, exported, played by
// the real player, and their lyrics followed and marked.
#include "browser/exportfiles.h"
#include "browser/filecommands.h"
#include "browser/form/commandstate.h"
#include "catalogue/edittags.h"
#include "platform/qt/theme.h"
#include "search/frmSearch.h"
#include "search/install.h"
#include "search/searchform.h"
#include "shell/settings.h"
#include "tagedit/editcommands.h"
#include "tests/lyrics/lyricsfixture.h"
#include "tests/support/scriptsongs.h"
#include "tests/windows/accessibility.h"
#include "tests/windows/playedlyrics.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QClipboard>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>

namespace tests
{

namespace
{

constexpr std::array kSongs = {kJapanese, kRussian, kArabic, kEmoji};
constexpr int kSecondsOfSong = 25;
constexpr int kSlowMs = 30'000; // for what may take long on a busy machine

class PlayedScripts : public PlayedLyrics
{
protected:
    PlayedScripts() { metadata::TheTagWriterHooks().updateCatalogue = catalogue::UpdateEditedTags; }
    ~PlayedScripts() override
    {
        search::ForgetSearch();
        platform::qt::ApplyPalette(false);
    }

    static std::string Name(const ScriptSong &song) { return std::string(song.title) + ".mp3"; }

    // The line that is sung in that second.
    static std::string Line(const ScriptSong &song, int second)
    {
        return std::string(song.title) + " " + std::to_string(second) + " " +
               std::string(song.artist);
    }

    // A folder with all songs, and the program before its first look at it.
    void StartOverSongs()
    {
        const std::string audio = ReadFile(real.Song("silence.mp3", kSecondsOfSong));
        for (const ScriptSong &song : kSongs) {
            std::string text;
            for (int second = 0; second < kSecondsOfSong; ++second)
                text += "[00:" + std::string(second < 10 ? "0" : "") + std::to_string(second) +
                        "]" + Line(song, second) + "\r\n";
            WriteFile(Song(Name(song)), TagBytes(song, text) + audio);
        }
        Start();
        player::Install();
        lyrics::Install();
        tagedit::Install();
        browser::InstallFileCommands();
        search::Install();
        search::RegisterSearchWidgets();
        browser::UpdateCommands(Form());
    }

    // Reads the folder; the offer gets that button.
    void ReadFolder(const char *button, bool notAgain = false)
    {
        desktop.ExpectBox("There were some 'mistakes'", platform::Answer::No); // one tag a song
        WhenModal(
            [=](QWidget &offer) {
                EXPECT_EQ(offer.objectName(), QStringLiteral("frmUnicodeOffer"));
                EXPECT_EQ(Find<QLabel>(offer, "lblFound")->text(),
                          QStringLiteral("4 of 4 songs have tags whose texts cannot be read in "
                                         "the usual way."));
                EXPECT_EQ(NamelessControls(offer), std::vector<std::string>{});
                KeepScreenshot(offer, "unicode-offer");
                if (notAgain)
                    Find<QCheckBox>(offer, "chkNotAgain")->click();
                Click(*Find(offer, button));
            },
            kSlowMs);
        Regenerate();
        ASSERT_TRUE(WaitUntil([this] { return LV().isEnabled() && Rows().size() == 4; }, kSlowMs));
    }

    // The list with the songs of that artist, the first one selected by a click.
    void ChooseArtist(const std::string &key)
    {
        if (!Form().TV.Expanded(Form().TV.Find("ByArtist")))
            ClickExpander("ByArtist");
        EndDoubleClick();
        ClickNode(key.c_str());
        ASSERT_TRUE(WaitUntil([this] { return Form().LV.Count() > 0; }));
        Settle();
        ClickAt(*LV().viewport(), RowAt(0));
    }

    bool PanelShows(const char *label, std::string_view part)
    {
        return WaitUntil([&] { return Label(label).text().contains(QString::fromUtf8(part)); });
    }

    // As a user gets other scripts into a box without their keyboard.
    static void Paste(QWidget &box, const std::string &text)
    {
        box.setFocus();
        QGuiApplication::clipboard()->setText(QString::fromStdString(text));
        PressKey("Ctrl+A");
        PressKey("Ctrl+V");
    }

    // What another program reads in the song: version, title, artist, lyrics, with "|" between.
    static std::string ReadByMutagen(const std::string &path)
    {
        constexpr const char *kCode =
            "import sys, mutagen.id3\n"
            "t = mutagen.id3.ID3(sys.argv[1])\n"
            "words = [str(t.version[1]), t['TIT2'].text[0], t['TPE1'].text[0], "
            "t.getall('USLT')[0].text]\n"
            "sys.stdout.buffer.write('|'.join(words).encode())\n";
        QProcess python;
        python.start(QStringLiteral(QUENLIN_PYTHON),
                     {QStringLiteral("-B"), QStringLiteral("-c"), QString::fromUtf8(kCode),
                      QString::fromStdString(path)});
        EXPECT_TRUE(python.waitForFinished(kSlowMs));
        return python.readAllStandardOutput().toStdString();
    }

    // Waits until the line of the player's clock is highlighted, then until a later one is.
    // Returns: the second of the last one; -1 when none came.
    int FollowTwoLines(const ScriptSong &song)
    {
        int last = -1;
        for (int lines = 0; lines < 2; ++lines) {
            const bool came = WaitUntil(
                [&] {
                    const lyrics::LyricsForm *form = Lyrics();
                    const int now = static_cast<int>(real.Time()) / 1000;
                    if (form == nullptr || real.Status() != "playing")
                        return false;
                    for (int second = std::max(last + 1, now - 1); second <= now + 1; ++second)
                        if (SelectedIn(*form) == Line(song, second)) {
                            last = second;
                            return true;
                        }
                    return false;
                },
                kSlowMs);
            if (!came)
                return -1;
        }
        return last;
    }

    QWidget &SearchWindow() { return *host.WindowOf(search::frmSearch()); }
};

TEST_F(PlayedScripts, FromTheOfferToTheEditedAndExportedFile)
{
    StartOverSongs();
    ReadFolder("cmdYes");
    EXPECT_TRUE(shell::IsUnicodeTagsOn());
    EXPECT_TRUE(shell::TheGlobals().UnicodeTags);

    // Browsed.
    ChooseArtist("#КИНО");
    EXPECT_EQ(Cell(0, 1), kRussian.title);
    EXPECT_TRUE(PanelShows("WebItemName", kRussian.title));
    for (const ScriptSong &song : kSongs) {
        ChooseArtist("#" + std::string(song.artist == kRussian.artist ? "КИНО" : song.artist));
        EXPECT_EQ(Cell(0, 1), song.title);
        EXPECT_TRUE(PanelShows("lblInfo", song.album));
    }
    KeepScreenshot(*window, "scripts-main");
    platform::qt::ApplyPalette(true);
    KeepScreenshot(*window, "scripts-main-dark");
    platform::qt::ApplyPalette(false);

    // Found, in another case.
    ChooseMenu("mnuTools", "submnuSearch");
    ASSERT_TRUE(WaitUntil([this] { return SearchWindow().isActiveWindow(); }));
    Find<QCheckBox>(SearchWindow(), "chkField(0)")->setChecked(true);
    for (const auto &[text, path] :
         {std::pair("ГРУППА", Song(Name(kRussian))), std::pair("علينا", Song(Name(kArabic))),
          std::pair("桜の", Song(Name(kJapanese))), std::pair("🎵 PARTY", Song(Name(kEmoji)))}) {
        Paste(*Find(SearchWindow(), "txtToFind"), text);
        PressKey("Return");
        EXPECT_TRUE(WaitUntil([&, wanted = path] {
            const ui::KeyedList &found = search::frmSearch().ListView;
            return found.Count() == 1 && found.SubItem(found.RowAt(0), "Path") == wanted;
        })) << text;
    }
    KeepScreenshot(SearchWindow(), "scripts-search");
    PressKey("Escape");
    ShowAndActivate(*window);

    // Edited: the file, its row and the list have it, and nothing else has changed.
    const std::string audio = ReadFile(real.music / "silence.mp3");
    const std::string lyricsBefore = LyricsIn(Song(Name(kEmoji)));
    ChooseArtist("#" + std::string(kEmoji.artist));
    LV().setFocus();
    WhenModal(
        [&](QWidget &editor) {
            EXPECT_EQ(editor.objectName(), QStringLiteral("frmEditTag"));
            Click(*Find(editor, "cmdToID3(2)"));
            EXPECT_TRUE(
                WaitUntil([&] { return Find<QLabel>(editor, "lblNote")->isVisible(); }, kSlowMs));
            EXPECT_TRUE(Find<QLabel>(editor, "lblNote")
                            ->text()
                            .startsWith(QStringLiteral("The ID3v1 tag cannot hold 😀🎵👩")));
            KeepScreenshot(editor, "scripts-editor");
            Paste(*Find(editor, "txtTitle(2)"), "Ночь 🌙 نسم");
            Click(*Find(editor, "cmdOk"));
        },
        kSlowMs);
    PressKey("Alt+3");
    ASSERT_TRUE(WaitUntil([&] { return Form().LV.SubItem(0, "Title") == "Ночь 🌙 نسم"; }, kSlowMs));
    EXPECT_EQ(ReadByMutagen(Song(Name(kEmoji))),
              "3|Ночь 🌙 نسم|" + std::string(kEmoji.artist) + "|" + lyricsBefore);
    const std::string edited = ReadFile(Song(Name(kEmoji)));
    EXPECT_EQ(edited.substr(edited.size() - 128 - audio.size(), audio.size()), audio);
    EXPECT_EQ(edited.substr(edited.size() - 125, 8), "?? Party");
    EXPECT_TRUE(PanelShows("WebItemName", "Ночь 🌙 نسم"));

    // Duplicated.
    ChooseArtist("#" + std::string(kJapanese.artist));
    desktop.ExpectInput("names of the artists", "初音 & Кино 😀");
    desktop.ExpectBox("duplicated correctly");
    ChooseMenu("mnuFile", "submnuDuplicateEntry");
    ASSERT_TRUE(WaitUntil([this] { return Rows().size() == 5; }));
    EXPECT_EQ(desktop.inputs.at(0).initialText, kJapanese.artist);
    EXPECT_EQ(Rows()[4].substr(0, Rows()[4].find("|1999")), "桜の花|初音 & Кино 😀|初恋");

    // Exported, byte for byte.
    const std::string target = folder / "音楽";
    std::filesystem::create_directories(target);
    browser::ExportFiles(Form(), Form().LV, [&](const std::string &) { return target; });
    EXPECT_EQ(ReadFile(target + "/" + Name(kJapanese)), ReadFile(Song(Name(kJapanese))));
}

TEST_F(PlayedScripts, PlayedAndSungLineByLine)
{
    real.Start();
    StartOverSongs();
    ReadFolder("cmdYes");
    for (const ScriptSong &song : kSongs) {
        SCOPED_TRACE(song.title);
        ChooseArtist("#" + std::string(song.artist == kRussian.artist ? "КИНО" : song.artist));
        DoubleClickAt(*LV().viewport(), RowAt(0));
        EXPECT_GT(FollowTwoLines(song), 0);
        EXPECT_EQ(real.Filename(real.Position()), platform::player::UriOfPath(Song(Name(song))));
        ASSERT_NE(Lyrics(), nullptr);
        QWidget &sung = *host.WindowOf(*Lyrics());
        EXPECT_TRUE(sung.windowTitle().startsWith(
            QString::fromUtf8(std::string(song.artist) + " - " + std::string(song.title))))
            << sung.windowTitle().toStdString();
        KeepScreenshot(sung, "scripts-lyrics-" + std::to_string(&song - kSongs.data()));
        ShowAndActivate(*window);
    }

    // A time is set for a line from right to left, and saved while the song plays.
    const std::string path = Song(Name(kArabic));
    ChooseArtist("#" + std::string(kArabic.artist));
    DoubleClickAt(*LV().viewport(), RowAt(0));
    EXPECT_GT(FollowTwoLines(kArabic), 0);
    Click(*Find(*host.WindowOf(*Lyrics()), "cmdSetTimes"));
    ASSERT_TRUE(WaitUntil([this] { return host.Forms().size() == 2 && !Lyrics()->busy; }, kSlowMs));
    lyrics::LyricsForm &form = *Lyrics();
    QWidget &setting = *host.WindowOf(form);
    ShowAndActivate(setting);
    const std::string before = form.Lyrics.Text();
    auto &box = *Find<QPlainTextEdit>(setting, "Lyrics");
    box.setFocus();
    PressKey("Ctrl+Home");
    PressKey("Down");
    ASSERT_TRUE(WaitUntil([this] { return real.Time() > 300; }, kSlowMs));
    PressKey("F9");
    const std::size_t line = before.find("[00:01]");
    ASSERT_TRUE(WaitUntil([&] { return form.Lyrics.Text() != before; }));
    const std::string mark = form.Lyrics.Text().substr(line, 7);
    EXPECT_TRUE(mark.starts_with("[00:") && mark.ends_with("]")) << mark;
    const std::string marked = before.substr(0, line) + mark + before.substr(line);
    EXPECT_EQ(form.Lyrics.Text(), marked) << "in front of the line, and nothing else";
    Click(*Find(setting, "cmdSetIt")); // the caret is at the next line
    ASSERT_TRUE(WaitUntil([&] { return form.Lyrics.Text() != marked; }));
    const std::size_t next = marked.find("[00:02]");
    EXPECT_EQ(form.Lyrics.Text().substr(0, next), marked.substr(0, next));
    EXPECT_EQ(form.Lyrics.Text().substr(next + 7), marked.substr(next));
    KeepScreenshot(setting, "scripts-setting");
}

// Declined, nothing changes; and it is not asked again.
TEST_F(PlayedScripts, DeclinedItIsNotAskedAgain)
{
    StartOverSongs();
    ReadFolder("cmdNo", true);
    EXPECT_FALSE(shell::IsUnicodeTagsOn());
    for (const std::string &row : Rows())
        EXPECT_TRUE(row.starts_with("|||||")) << row;
    EXPECT_EQ(shell::GetSetting("Extras", "UnicodeOffer"), "0");
    const std::uint64_t runs = catalogue::LastRegeneration().number;
    catalogue::AllowRegeneration();
    desktop.ExpectBox("There were some 'mistakes'", platform::Answer::No);
    Regenerate(); // a modal window would stay open here, and the test
    EXPECT_TRUE(WaitUntil(
        [&] {
            return catalogue::LastRegeneration().number > runs && !catalogue::IsRegenerating() &&
                   LV().isEnabled();
        },
        kSlowMs));
    EXPECT_EQ(catalogue::LastRegeneration().unicodeFiles, 4);
}

} // namespace

} // namespace tests

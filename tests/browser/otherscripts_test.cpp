// Songs in other scripts in the tree, the list and the panel, and in the commands on files.
#include "browser/exportfiles.h"
#include "browser/filecommands.h"
#include "catalogue/addfile.h"
#include "catalogue/edittags.h"
#include "catalogue/regeneration.h"
#include "tests/browser/formfixture.h"
#include "tests/browser/listselection.h"
#include "tests/support/scripteddesktop.h"
#include "tests/support/scriptsongs.h"

#include <filesystem>
#include <utility>

namespace
{

using browser::MainForm;
using tests::kJapanese;
using tests::kMixed;
using tests::kRussian;
using tests::ScriptSong;
using Texts = std::vector<std::string>;

class OtherScripts : public tests::FormTest
{
protected:
    std::string AddSong(const std::string &name, const ScriptSong &song)
    {
        tests::WriteFile(Song(name), tests::SongBytes(song));
        std::string reason;
        EXPECT_NE(catalogue::AddOrUpdateMP3(Song(name), reason), catalogue::kFailed) << reason;
        return Song(name);
    }

    MainForm &WithTree()
    {
        MainForm &form = Loaded();
        browser::LoadTreeView(form, "");
        form.TreeJustExpanded = false;
        return form;
    }

    MainForm &Library()
    {
        for (const ScriptSong &song : tests::kScriptSongs)
            AddSong(std::string(song.title) + ".mp3", song);
        return WithTree();
    }

    // The texts of a column, from the first row to the last.
    Texts Column(std::string_view key)
    {
        Texts texts;
        for (int i = 0; i < Form().LV.Count(); ++i)
            texts.emplace_back(Form().LV.SubItem(Form().LV.RowAt(i), key));
        return texts;
    }

    // Shows the rows of an artist and selects the first.
    void Choose(std::string_view artistKey)
    {
        Click(artistKey);
        ASSERT_GT(Form().LV.Count(), 0) << artistKey;
        Form().LV.SelectOnly(Form().LV.RowAt(0));
    }

    // The row of the song in the catalogue, as Rows gives it.
    static std::string RowOf(const ScriptSong &song, const std::string &name,
                             std::string_view artist, bool isDuplicate = false)
    {
        std::string row(song.title);
        for (const std::string_view text :
             {artist, song.album, song.year, song.comment, song.genre, std::string_view()})
            row.append("|").append(text);
        return row + "|~/" + name + "||" + (isDuplicate ? "1" : "0");
    }

    tests::ReadingByFrames byFrames;
};

} // namespace

TEST_F(OtherScripts, GroupsHaveANodeForEachTextOfAnyScript)
{
    Library();
    EXPECT_EQ(Keys("ByTitle"), "@HELLO مرحبا WORLD @ГРУППА КРОВИ @نسم علينا الهوى @桜の花 "
                               "@😀🎵 PARTY ");
    EXPECT_EQ(Text("@ГРУППА КРОВИ"), "Группа крови");
    EXPECT_EQ(Keys("ByArtist"),
              "#КИНО #فيروز #فيروز & ÑANDÚ #宇多田ヒカル #👩‍🎤 ");
    EXPECT_EQ(Keys("ByAlbum"), "~ὈΔΎΣΣΕΙΑ ~НОЧЬ ~بياع الخواتم ~初恋 ~🌍 ");
    EXPECT_EQ(Keys("ByComment"), "! !É😀 !ХОРОШО !جميل !良い ");
}

TEST_F(OtherScripts, OneNodeForLettersOfEitherCase)
{
    int number = 0;
    for (const char *artist : {"Кино", "КИНО", "кино", "ＡＢＣ", "ａｂｃ"}) // these are full-width
        AddSong(std::to_string(++number) + ".mp3", {"x", artist, "", "", "", ""});
    WithTree();
    EXPECT_EQ(Keys("ByArtist"), "#КИНО #ＡＢＣ ");
    Click("#КИНО");
    EXPECT_EQ(Form().LV.Count(), 3);
    Click("#ＡＢＣ");
    EXPECT_EQ(Form().LV.Count(), 2);
}

TEST_F(OtherScripts, AListShowsAndSortsThem)
{
    MainForm &form = Library();
    Click("¿" + runtime::UpperText(Music() + "/"));
    ASSERT_EQ(form.LV.Count(), 5) << Keys("ByPath");
    form.LV.SetSort(1, false);
    EXPECT_EQ(Column("Title"), (Texts{"Hello مرحبا World", "Группа крови", "نسم علينا الهوى",
                                      "桜の花", "😀🎵 Party"}));
    EXPECT_EQ(Column("Artist"),
              (Texts{"فيروز & ÑANDÚ", "Кино", "فيروز", "宇多田ヒカル", "👩‍🎤"}));
    EXPECT_EQ(Column("Genre"), (Texts{"Jazz", "Рок", "Pop", "邦楽", "Dance"}));
}

TEST_F(OtherScripts, ThePanelShowsTheFieldsOfTheSelectedSong)
{
    MainForm &form = Library();
    Choose("#فيروز & ÑANDÚ");
    browser::ShowSelectedItemInfo(form.LV, form);
    EXPECT_EQ(form.WebItemName.Caption(), kMixed.title);
    EXPECT_NE(form.lblInfo.Caption().find("Album: Ὀδύσσεια\r\n"), std::string::npos)
        << form.lblInfo.Caption();
    EXPECT_EQ(form.lblWebFolder.Caption(), "فيروز && ÑANDÚ");
    // A long text is cut between two characters.
    std::string comment;
    for (int i = 0; i < 2000; ++i)
        comment += "😀";
    AddSong("long.mp3", {"long", "long", "", "", comment, ""});
    browser::LoadTreeView(form, "");
    Choose("#LONG");
    browser::ShowSelectedItemInfo(form.LV, form);
    EXPECT_TRUE(runtime::IsUtf8(form.lblInfo.Caption()));
    EXPECT_NE(form.lblInfo.Caption().find("😀"), std::string::npos);
    EXPECT_LT(form.lblInfo.Caption().size(), comment.size());
}

TEST_F(OtherScripts, ADuplicateKeepsTheTextsOfTheFile)
{
    MainForm &form = Library();
    Choose("#宇多田ヒカル");
    tests::ScriptedDesktop user;
    user.ExpectInput("artists", "Кино 😀 فيروز");
    user.ExpectBox("duplicated correctly");
    browser::DuplicateEntry(form.LV);
    EXPECT_EQ(user.inputs.at(0).initialText, kJapanese.artist);
    ASSERT_EQ(Rows().size(), 6U);
    EXPECT_EQ(Rows()[5], RowOf(kJapanese, "桜の花.mp3", "Кино 😀 فيروز", true));
    browser::LoadTreeView(form, "");
    Click("#КИНО 😀 فيروز");
    EXPECT_EQ(Column("Title"), (Texts{std::string(kJapanese.title)}));
}

TEST_F(OtherScripts, AFileIsRenamedToATitle)
{
    MainForm &form = Library();
    const std::string bytes = tests::SongBytes(kRussian);
    Choose("#КИНО");
    tests::ScriptedDesktop user;
    for (const char *name : {"Ночь 😀.mp3", "نسم علينا.mp3", "桜 'の' 花?.mp3"}) {
        user.ExpectInput("name of the new file", name);
        browser::RenameFile(form);
        EXPECT_EQ(tests::ReadFile(Song(name)), bytes) << name;
        EXPECT_EQ(browser::SelectedPath(form.LV), Song(name));
        EXPECT_EQ(Rows()[1], RowOf(kRussian, name, kRussian.artist));
    }
    EXPECT_EQ(user.inputs.at(1).initialText, "Ночь 😀.mp3");
}

TEST_F(OtherScripts, TheExportCopiesFilesOfSuchNames)
{
    MainForm &form = Library();
    Click("¿" + runtime::UpperText(Music() + "/"));
    tests::SelectAll(form.LV);
    const std::string target = folder / "Экспорт 😀";
    std::filesystem::create_directories(target);
    std::string shown;
    tests::ScriptedDesktop user;
    user.doEvents = [&] { shown += form.SB.Panel("Playing").text + "\n"; };
    browser::ExportFiles(form, form.LV, [&](const std::string &) { return target; });
    for (const ScriptSong &song : tests::kScriptSongs) {
        const std::string name = std::string(song.title) + ".mp3";
        EXPECT_EQ(tests::ReadFile(target + "/" + name), tests::SongBytes(song)) << name;
        EXPECT_NE(shown.find("Exporting: " + name + "\n"), std::string::npos) << shown;
    }
}

// --- A catalogue that was filled with the setting UnicodeTags off, and later on

TEST_F(OtherScripts, ARowReadWithUnicodeTagsOffIsMadeWholeByWhatReadsItsFile)
{
    shell::TheGlobals().UnicodeTags = false;
    const std::string path = AddSong("song.mp3", kJapanese);
    const std::string before = Rows().at(0);
    EXPECT_EQ(before.find(kJapanese.title), std::string::npos);
    shell::TheGlobals().UnicodeTags = true;

    // Showing or copying the row does not change it.
    MainForm &form = WithTree();
    Click("¿" + runtime::UpperText(Music() + "/"));
    form.LV.SelectOnly(form.LV.RowAt(0));
    browser::ShowSelectedItemInfo(form.LV, form);
    EXPECT_EQ(Rows(), Texts{before});

    // A duplicate is made from the tags of the file; the old row is not changed.
    tests::ScriptedDesktop user;
    user.ExpectInput("artists", "桜");
    user.ExpectBox("duplicated correctly");
    browser::DuplicateEntry(form.LV);
    EXPECT_EQ(user.inputs.at(0).initialText, kJapanese.artist);
    EXPECT_EQ(Rows(), (Texts{before, RowOf(kJapanese, "song.mp3", "桜", true)}));

    // An update from the file changes all fields of both rows, except the artist of the duplicate.
    std::string reason;
    EXPECT_EQ(catalogue::AddOrUpdateMP3(path, reason), catalogue::kUpdated);
    EXPECT_EQ(Rows(), (Texts{RowOf(kJapanese, "song.mp3", kJapanese.artist),
                             RowOf(kJapanese, "song.mp3", "桜", true)}));
}

TEST_F(OtherScripts, ReadWithUnicodeTagsOffAgainTheRowsAreWhatTheyWere)
{
    shell::TheGlobals().UnicodeTags = false;
    shell::TheGlobals().MP3Directory = Music();
    for (const ScriptSong &song : tests::kScriptSongs)
        tests::WriteFile(Song(std::string(song.title) + ".mp3"), tests::SongBytes(song));
    tests::WriteFile(Song("latin.mp3"), tests::SongBytes({"Señor", "Ä", "", "", "", "Jazz"}));
    const auto readAll = [this] {
        catalogue::AllowRegeneration();
        catalogue::ListRefresh(false);
        Texts rows = Rows();
        std::sort(rows.begin(), rows.end());
        return rows;
    };
    readAll();
    const Texts usual = readAll(); // updates the rows, as the runs below do
    ASSERT_EQ(usual.size(), 6U);
    shell::TheGlobals().UnicodeTags = true;
    const Texts readByFrames = readAll();
    EXPECT_NE(readByFrames, usual);
    shell::TheGlobals().UnicodeTags = false;
    EXPECT_EQ(readAll(), usual);
    shell::TheGlobals().UnicodeTags = true;
    EXPECT_EQ(readAll(), readByFrames);
}

#include "runtime/error.h"
#include "tests/browser/formfixture.h"
#include "tests/support/faultycalls.h"

#include <random>
#include <set>

namespace
{

using namespace browser;
using tests::ShownSong;
using FieldTree = tests::FormTest;

TEST(ItemKinds, MarkersAndWords)
{
    const struct {
        const char *key, *word, *words, *rest;
    } cases[] = {
        {"/12", "MP3 File", "MP3 Files", "12"},
        {"@A", "Title Folder", "Title Folders", "A"},
        {"#A", "Artist Folder", "Artist Folders", "A"},
        {"~", "Album Folder", "Album Folders", ""},
        {"?1999", "Year Folder", "Year Folders", "1999"},
        {"!A", "Comment Folder", "Comment Folders", "A"},
        {"\u00A1POP", "Genre Folder", "Genre Folders", "POP"},
        {"\u00BF/M/", "Path Folder", "Path Folders", "/M/"},
        {"&L", "PlayList File", "PlayList Files", "L"},
        {"@#A", "Title Folder", "Title Folders", "#A"},
        {"ByTitle", "", "", "yTitle"},
        {"", "", "", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.key);
        EXPECT_EQ(GetItemTypeText(c.key, false), c.word);
        EXPECT_EQ(GetItemTypeText(c.key, true), c.words);
        EXPECT_EQ(WithoutMarker(c.key), c.rest);
    }
}

TEST_F(FieldTree, AnEmptyCatalogueGivesRootGroupsAndAHint)
{
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    EXPECT_EQ(Keys("MP3s"), "ByTitle ByArtist ByAlbum ByYear ByComment ByGenre ByPath ByList ");
    EXPECT_EQ(form.TV.Count(), 9);
    EXPECT_EQ(Text("MP3s"), "MP3");
    EXPECT_EQ(form.TV.Image(form.TV.Find("MP3s")), "closed");
    EXPECT_EQ(form.TV.SelectedImage(form.TV.Find("MP3s")), "open");
    EXPECT_EQ(Text("ByTitle"), "By Title");
    EXPECT_EQ(Text("ByList"), "PlayLists");
    EXPECT_TRUE(form.TV.Expanded(form.TV.Find("MP3s")));
    EXPECT_EQ(form.TV.Image(form.TV.Find("ByPath")), "closed");
    EXPECT_EQ(form.TV.SelectedImage(form.TV.Find("ByPath")), "open");
    EXPECT_EQ(form.TV.Image(form.TV.Find("ByList")), "M3U");
    EXPECT_EQ(form.TV.SelectedImage(form.TV.Find("ByList")), "");
    EXPECT_NE(form.LV.Hint(), "");
}

TEST_F(FieldTree, AWindowClosedWhileTheTreeFillsEndsIt)
{
    Add({"T", "A", "", "", "", "", "/m/1.mp3"});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    int ended = 0;
    form.calls.endProgram = [&] { ++ended; };
    int lines = 0;
    shell::TheGlobals().lblProgress.captionChanged = [&] { ++lines; };
    desktop.onYield = [&] { // events run at each line
        if (lines == 2 && ended == 0)
            RunCommand(form, "submnuExit");
    };
    RunCommand(form, "submnuRefreshTree");
    EXPECT_EQ(lines, 2);
    EXPECT_EQ(ended, 1);
}

TEST_F(FieldTree, TheHintIsForACatalogueWithoutSongsNotForATreeWithoutTheirGroups)
{
    const struct {
        const char *name;
        std::vector<std::size_t> loaded; // fields
        bool song, playList;
        std::string_view hint; // how it begins
    } cases[] = {
        {"nothing at all", {0, 6}, false, false, "The catalogue is empty."},
        {"a play list alone", {0, 6}, false, true, "The catalogue is empty."},
        {"a song", {0, 6}, true, false, "Choose a group"},
        {"no song's group is loaded", {6}, false, true, "Choose a group"},
        {"no group is loaded", {}, false, false, ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        ResetMainForm();
        catalogue::DataAccess->ExecuteSQL("DELETE FROM MP3s", catalogue::kDelete);
        catalogue::DataAccess->ExecuteSQL("DELETE FROM Lists", catalogue::kDelete);
        if (c.song)
            Add({"One", "", "", "", "", "", "/one.mp3"});
        if (c.playList)
            AddPlayList("mine");
        shell::TheGlobals().LoadField.fill(false);
        for (const std::size_t field : c.loaded)
            shell::TheGlobals().LoadField[field] = true;
        MainForm &form = Loaded();
        LoadTreeView(form, "");
        EXPECT_EQ(form.LV.Hint().substr(0, c.hint.size()), c.hint);
        EXPECT_EQ(form.LV.Hint().empty(), c.hint.empty());
    }
}

TEST_F(FieldTree, ValuesAreGroupedTrimmedAndUpperCased)
{
    Add({" Dancing Queen ", "abba", "Arrival", "1976", "", "Pop", "/music/ABBA/one.mp3"});
    Add({"dancing queen", "ABBA", "Arrival", "1976", "", "Pop", "/music/ABBA/two.mp3"});
    Add({"#1", "\u00C5sa", "", "", "", "", "/other/ABBA/three.mp3"});
    Add({"Zebra", "\u00E5SA", "", "", "", "", "/other/four.mp3"});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    EXPECT_NE(form.TV.Find("@DANCING QUEEN"), ui::kNoNode);
    EXPECT_EQ(runtime::UpperText(Text("@DANCING QUEEN")), "DANCING QUEEN"); // trimmed
    EXPECT_NE(form.TV.Find("@#1"), ui::kNoNode);
    EXPECT_EQ(form.TV.Children(form.TV.Find("ByTitle")).size(), 3U);
    EXPECT_EQ(form.TV.Children(form.TV.Find("ByArtist")).size(), 2U);
    EXPECT_EQ(Keys("ByAlbum"), "~ ~ARRIVAL "); // the key of an empty value is only its marker
    EXPECT_EQ(Text("~"), "");
    EXPECT_EQ(Keys("ByPath"), "\u00BF/MUSIC/ABBA/ \u00BF/OTHER/ABBA/ \u00BF/OTHER/ ");
    EXPECT_EQ(Text("\u00BF/MUSIC/ABBA/"), "ABBA"); // two nodes of one text
    EXPECT_EQ(Text("\u00BF/OTHER/ABBA/"), "ABBA");
    EXPECT_EQ(Text("\u00BF/OTHER/"), "other");
    EXPECT_EQ(form.TV.Image(form.TV.Find("~ARRIVAL")), "closed");
    EXPECT_EQ(form.TV.SelectedImage(form.TV.Find("~ARRIVAL")), "open");
    EXPECT_EQ(form.TV.Image(form.TV.Find("\u00BF/OTHER/")), "closed");
    EXPECT_EQ(form.TV.SelectedImage(form.TV.Find("\u00BF/OTHER/")), "open");
}

TEST_F(FieldTree, ReadsTheSongsOnceForAllFields)
{
    constexpr int kSongs = 200;
    for (int i = 0; i < kSongs; ++i)
        Add({"title", "artist", "album", "1999", "comment", "genre", "/m/" + std::to_string(i)});
    const std::vector<catalogue::Value> lyrics = {std::string(6000, 'l')}; // a page each
    catalogue::DataAccess->ExecuteSQL("UPDATE MP3s SET Lyrics = ?", catalogue::kUpdate, lyrics);
    ASSERT_TRUE(catalogue::DataAccess->Succeeded) << catalogue::DataAccess->ErrorMessage;
    MainForm &form = Loaded();
    const auto piecesRead = [&form] {
        catalogue::CloseCatalogue(); // the songs are in the file then, not in its log
        const tests::FaultyCalls calls(0, false);
        LoadTreeView(form, "");
        return calls.Calls();
    };
    auto &load = shell::TheGlobals().LoadField;
    load.fill(false);
    load[0] = true;
    const int forOne = piecesRead();
    EXPECT_GT(forOne, kSongs);
    load.fill(true);
    EXPECT_LT(piecesRead(), 2 * forOne);
    EXPECT_EQ(Keys("ByGenre"), "\u00A1GENRE ");
}

TEST_F(FieldTree, APathCountsTrimmedUpToItsLastSeparator)
{
    for (const char *path : {" /a/B/one.mp3 ", "/a/b/two.mp3", "/a/b ", "lost.mp3", "/top.mp3"})
        Add({"", "", "", "", "", "", path});
    Loaded();
    LoadTreeView(Form(), "");
    std::set<std::string> keys;
    for (const ui::NodeId node : Form().TV.Children(Form().TV.Find("ByPath")))
        keys.emplace(Form().TV.Key(node));
    EXPECT_EQ(keys, (std::set<std::string>{"\u00BF", "\u00BF/", "\u00BF/A/", "\u00BF/A/B/"}));
    EXPECT_EQ(Text("\u00BF/A/B/"), "B"); // of " /a/B/one.mp3 ", the first in the order
    EXPECT_EQ(Text("\u00BF/"), "");
    EXPECT_EQ(Text("\u00BF"), "");
}

TEST_F(FieldTree, AFieldWithoutAValueIsWithTheEmptyOnes)
{
    Add({"One", "", "", "", "", "", "/one.mp3"});
    catalogue::DataAccess->ExecuteSQL("INSERT INTO MP3s (Title, Path) VALUES ('Two', '/two.mp3')",
                                      catalogue::kInsert);
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    EXPECT_EQ(Keys("ByArtist"), "# ");
    Click("#");
    EXPECT_EQ(ShownRows(), "/0:Two /1:One "); // by their albums
    EXPECT_EQ(form.LV.SubItem(0, "Album"), "");
    EXPECT_EQ(form.LV.SubItemCount(0), 8);
}

TEST_F(FieldTree, TheFirstTextOfTheOrderStays)
{
    for (const char *title : {"b", "B", "B "})
        Add({title, "", "", "", "", "", std::string("/") + title});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    const auto records = catalogue::Records(catalogue::DataAccess->ExecuteSQL(
        "SELECT *\rFROM MP3s\rORDER BY Title", catalogue::kSelect));
    EXPECT_EQ(Text("@B"), runtime::Trim(records->Text("Title")));
}

TEST_F(FieldTree, PlayListsKeepTheirNameUnchanged)
{
    AddPlayList(" My & list ");
    AddPlayList("my list");
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    EXPECT_EQ(Keys("ByList"), "& My & list  &my list ");
    EXPECT_EQ(Text("& My & list "), " My & list ");
    EXPECT_EQ(form.TV.Image(form.TV.Find("&my list")), "M3U");
    EXPECT_EQ(form.TV.SelectedImage(form.TV.Find("&my list")), "");
}

TEST_F(FieldTree, LoadSettingsDecideOnGroups)
{
    Add({"One", "Abba", "", "", "", "", "/one.mp3"});
    MainForm &form = Loaded();
    auto &load = shell::TheGlobals().LoadField;
    load[0] = load[4] = false;
    LoadTreeView(form, "");
    EXPECT_EQ(Keys("MP3s"), "ByArtist ByAlbum ByYear ByGenre ByPath ByList ");

    load[0] = true; // at the end of the root's children, not at its usual place
    Add({"Two", "Blur", "", "", "", "", "/two.mp3"});
    desktop.yields = 0;
    LoadTreeView(form, "Title");
    EXPECT_EQ(desktop.yields, 3);          // of the progress line and of one statement
    EXPECT_EQ(Keys("ByArtist"), "#ABBA "); // the other fields stay as they are
    EXPECT_EQ(Keys("MP3s"), "ByArtist ByAlbum ByYear ByGenre ByPath ByList ByTitle ");
    EXPECT_EQ(Keys("ByTitle"), "@ONE @TWO ");
    EXPECT_THROW(LoadTreeView(form, "Title"), runtime::RuntimeError); // the group exists already

    load[1] = false;
    desktop.yields = 0;
    LoadTreeView(form, "Artist");
    EXPECT_EQ(desktop.yields, 0); // no statement
    EXPECT_EQ(Keys("MP3s"), "ByAlbum ByYear ByGenre ByPath ByList ByTitle ");
    EXPECT_EQ(form.TV.Find("#ABBA"), ui::kNoNode);
    EXPECT_THROW(LoadTreeView(form, "Artist"), runtime::RuntimeError);
    EXPECT_FALSE(form.TV.Updating());
}

TEST_F(FieldTree, FieldsAreFilledInTheirOrderWithAProgressLine)
{
    MainForm &form = Loaded();
    std::vector<std::string> lines;
    auto &label = shell::TheGlobals().lblProgress;
    label.changed = [&] { lines.push_back(label.Caption()); };
    LoadTreeView(form, "");
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines[0], "Adding Title information...");
    EXPECT_EQ(lines[6], "Adding List information...");
    EXPECT_EQ(lines[7], "Adding Path information...");
}

TEST_F(FieldTree, TheUsersLanguage)
{
    tests::WriteFile(folder / "x.qlt",
                     "[FolderGroups]\nByField=Nach $Field$ ($Field$)\n"
                     "[ColumnHeaders]\nTitle=Titel\nPlayLists=Listen\nList=Liste\n"
                     "[Progress]\nAddingFile=Lese\nAddingInformation=$Field$ ein\n"
                     "[ItemType]\nPlayListFile=Liste\nPlayListFiles=Listen\n");
    shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
    MainForm &form = Loaded();
    std::string lines;
    auto &label = shell::TheGlobals().lblProgress;
    label.changed = [&] { lines += label.Caption() + "|"; };
    LoadTreeView(form, "");
    EXPECT_EQ(Text("ByTitle"), "Nach Titel (Titel)");
    EXPECT_EQ(Text("ByArtist"), "Nach Artist (Artist)");
    EXPECT_EQ(Text("ByList"), "Listen");
    EXPECT_EQ(Text("MP3s"), "MP3");
    EXPECT_TRUE(lines.starts_with("Lese Titel ein|Lese Artist ein|")) << lines;
    EXPECT_TRUE(lines.ends_with("Lese Liste ein|Lese Path ein|")) << lines;
    EXPECT_EQ(GetItemTypeText("&x", false), "Liste");
    EXPECT_EQ(GetItemTypeText("&x", true), "Listen");
    EXPECT_EQ(GetItemTypeText("#x", false), "Artist Folder");
}

// Closing the window while a statement of the tree lets events run releases the catalogue.
TEST_F(FieldTree, TheProgramMayBeEndedAtEachYieldOfARefresh)
{
    Add({"One", "Abba", "", "", "", "", "/one.mp3"});
    int ended = 0, at = 0;
    do {
        SCOPED_TRACE(++at);
        ResetMainForm();
        OpenCatalogue();
        MainForm &form = Loaded();
        LoadTreeView(form, "");
        ended = 0;
        form.calls.endProgram = [&] { ++ended; };
        int yields = 0;
        desktop.onYield = [&] {
            if (++yields == at)
                RunCommand(form, "submnuExit");
        };
        RunCommand(form, "submnuRefreshTree");
        desktop.onYield = nullptr;
        EXPECT_FALSE(form.TV.Updating());
        EXPECT_EQ(ended, yields >= at ? 1 : 0);
        EXPECT_EQ(desktop.pointers.back(), platform::Pointer::Normal);
    } while (ended > 0);
    // Eight statements with two, eight progress lines with one each: there is no 25th.
    EXPECT_EQ(at, 25);
}

TEST_F(FieldTree, AFailedStatementGivesAnEmptyGroup)
{
    Add({"One", "Abba", "", "", "", "", "/one.mp3"});
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    form.TV.Clear();
    const ui::NodeId root = form.TV.Add(ui::kNoNode, "MP3s", "MP3");
    form.TV.Add(root, "ByTitle", "By Title");
    FillFieldTree(form, "SELECT * FROM NoSuchTable", "Title");
    EXPECT_EQ(Keys("ByTitle"), "");
    FillFieldTree(form, "SELECT Artist\rFROM MP3s", "Title"); // records that have no title
    EXPECT_EQ(Keys("ByTitle"), "");
    FillFieldTree(form, "SELECT *\rFROM MP3s", "");
    EXPECT_EQ(Keys("ByTitle"), "@ONE ");
    EXPECT_EQ(form.TV.Count(), 3); // without a group no values are added
}

TEST_F(FieldTree, RefreshingRebuildsAndExpandsTheRoot)
{
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    Add({"One", "Abba", "", "", "", "", "/one.mp3"});
    EXPECT_EQ(Keys("ByTitle"), "");
    std::string changes;
    form.TV.expansionChanged = [&](ui::NodeId node) {
        changes.append(form.TV.Key(node)).append(form.TV.Expanded(node) ? " opens" : " closes");
    };
    RunCommand(form, "submnuRefreshTree");
    EXPECT_EQ(changes,
              "MP3s closes"); // all nodes are new, and the view gets them with their expansion
    EXPECT_EQ(Keys("ByTitle"), "@ONE ");
    EXPECT_TRUE(form.TV.Expanded(form.TV.Find("MP3s")));
}

// Every value node lists exactly the rows that made it, whatever the values are made of.
TEST_F(FieldTree, EveryValueNodeListsTheRowsThatMadeIt)
{
    const std::vector<std::string> odd = {"",
                                          " ",
                                          "a",
                                          "A",
                                          " a",
                                          "a ",
                                          "\u00E9",
                                          "\u00C9",
                                          "e",
                                          "%",
                                          "_",
                                          "a%",
                                          "a_b",
                                          "axb",
                                          "it's",
                                          "\"q\"",
                                          "?",
                                          "\u00B9",
                                          "#1",
                                          "ByTitle",
                                          "\u00DF",
                                          "\u1E9E",
                                          "a\tb",
                                          "a\r\nb",
                                          "\u0130",
                                          "i",
                                          "\xE9 bad",
                                          std::string("n\0", 2),
                                          std::string("n\0x", 3),
                                          "n",
                                          "\u00F1and\u00FA",
                                          "\u00D1AND\u00DA",
                                          "10",
                                          "1e1",
                                          "NULL",
                                          "Select All"};
    std::mt19937 random(7);
    const auto pick = [&] { return odd[random() % odd.size()]; };
    std::vector<ShownSong> songs;
    for (int i = 0; i < 150; ++i) {
        songs.push_back({pick(), pick(), pick(), pick(), pick(), pick(),
                         "/m/" + std::to_string(i % 7) + (i % 3 == 0 ? "/Sub" : "/sub") +
                             (i % 2 == 0 ? "/" : "/deep/") + std::to_string(i) + ".mp3"});
        Add(songs.back());
    }
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    const struct {
        const char *group;
        std::string ShownSong::*field;
    } groups[] = {{"ByTitle", &ShownSong::title},     {"ByArtist", &ShownSong::artist},
                  {"ByAlbum", &ShownSong::album},     {"ByYear", &ShownSong::year},
                  {"ByComment", &ShownSong::comment}, {"ByGenre", &ShownSong::genre},
                  {"ByPath", &ShownSong::path}};
    for (const auto &group : groups) {
        std::size_t listed = 0;
        const std::vector<ui::NodeId> nodes = form.TV.Children(form.TV.Find(group.group));
        for (const ui::NodeId node : nodes) {
            const std::string key(form.TV.Key(node));
            SCOPED_TRACE(group.group + (" " + key));
            std::multiset<std::string> want, shown;
            for (const ShownSong &song : songs) {
                std::string value = runtime::UpperText(runtime::Trim(song.*group.field));
                if (group.field == &ShownSong::path)
                    value.resize(value.rfind('/') + 1);
                if (value == WithoutMarker(key))
                    want.insert(song.path);
            }
            form.TV.ClickText(node);
            for (ui::RowId row = 0; row < form.LV.Count(); ++row)
                shown.emplace(form.LV.SubItem(row, "Path"));
            EXPECT_EQ(shown, want);
            listed += shown.size();
        }
        EXPECT_EQ(listed, songs.size()) << group.group;
    }
}

} // namespace

// Play lists and bookmarks with names, titles and files in other scripts.
#include "catalogue/addfile.h"
#include "playlists/bookmarks.h"
#include "playlists/install.h"
#include "playlists/lists.h"
#include "runtime/codepage.h"
#include "tests/browser/formfixture.h"
#include "tests/support/scripteddesktop.h"
#include "tests/support/scriptsongs.h"

#include <chrono>
#include <filesystem>
#include <thread>

namespace
{

using tests::ScriptSong;

class ListsOfOtherScripts : public tests::FormTest
{
protected:
    ListsOfOtherScripts()
    {
        for (const ScriptSong &song : tests::kScriptSongs) {
            tests::WriteFile(PathOf(song), tests::SongBytes(song));
            std::string reason;
            EXPECT_EQ(catalogue::AddOrUpdateMP3(PathOf(song), reason), catalogue::kAdded);
        }
        playlists::Install();
        browser::LoadTreeView(Loaded(), "");
        Form().TreeJustExpanded = false;
    }
    ~ListsOfOtherScripts() override { playlists::StopLooking(); }

    static std::string NameOf(const ScriptSong &song) { return std::string(song.title) + ".mp3"; }
    std::string PathOf(const ScriptSong &song) const { return Song(NameOf(song)); }

    // Registers the list of that content under the name, opens it and lets the disk answer.
    void Open(const std::string &name, const std::string &content)
    {
        const std::string file = Music() + "/" + name + ".m3u";
        tests::WriteFile(file, content);
        tests::ScriptedDesktop user;
        user.ExpectOpen("Select the PlayList file", file);
        user.ExpectInput("Type the name for this PlayList", name);
        playlists::AddPlayList(Form());
        Click("&" + name);
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (Form().tmrListFiles.Enabled() && std::chrono::steady_clock::now() < end) {
            Form().tmrListFiles.Fire();
            std::this_thread::yield();
        }
        ASSERT_FALSE(Form().tmrListFiles.Enabled());
    }

    // Every song is a row with its name and its path, and its file is there.
    void ExpectAllSongs()
    {
        const ui::KeyedList &list = Form().LV;
        ASSERT_EQ(list.Count(), static_cast<int>(std::size(tests::kScriptSongs)));
        for (ui::RowId row = 0; row < list.Count(); ++row) {
            const ScriptSong &song = tests::kScriptSongs[row];
            EXPECT_EQ(list.SubItem(row, "Denomination"), song.title);
            EXPECT_EQ(list.SubItem(row, "Path"), PathOf(song));
            EXPECT_FALSE(list.IsDimmed(row)) << song.title;
        }
    }

    tests::ReadingByFrames byFrames;
};

} // namespace

TEST_F(ListsOfOtherScripts, EntriesInUtf8WithAndWithoutTheMark)
{
    std::string content = "#EXTM3U\r\n";
    for (const ScriptSong &song : tests::kScriptSongs)
        content += "#EXTINF:1," + std::string(song.title) + "\r\n" + NameOf(song) + "\r\n";
    Open("桜 😀 نسم", content);
    EXPECT_EQ(Keys("ByList"), "&桜 😀 نسم ");
    ExpectAllSongs();
    Open("Список", std::string(runtime::kByteOrderMark) + content);
    ExpectAllSongs();
    Form().LV.SelectOnly(0);
    browser::ShowSelectedItemInfo(Form().LV, Form());
    EXPECT_TRUE(Form().lblInfo.Caption().starts_with("Denomination: 桜の花\r\n"))
        << Form().lblInfo.Caption();
    EXPECT_TRUE(playlists::RemovePlayList(Form(), "桜 😀 نسم"));
    EXPECT_EQ(Keys("ByList"), "&Список ");
}

TEST_F(ListsOfOtherScripts, EntriesByFullPathAndWithoutNames)
{
    std::string content;
    for (const ScriptSong &song : tests::kScriptSongs)
        content += PathOf(song) + "\n";
    Open("paths", content);
    const ui::KeyedList &list = Form().LV;
    ASSERT_EQ(list.Count(), static_cast<int>(std::size(tests::kScriptSongs)));
    for (ui::RowId row = 0; row < list.Count(); ++row) {
        EXPECT_EQ(list.SubItem(row, "Path"), PathOf(tests::kScriptSongs[row]));
        EXPECT_FALSE(list.IsDimmed(row));
    }
}

TEST_F(ListsOfOtherScripts, BookmarksHaveTheTextsAndThePaths)
{
    const std::string file = folder / "Закладки.dat";
    const char *groups[] = {"Title", "Artist"};
    ASSERT_TRUE(playlists::ExportBookmarksTo(Form(), file, groups));
    const std::string lines = tests::ReadFile(file);
    for (const ScriptSong &song : tests::kScriptSongs)
        for (const std::string_view text : {song.title, song.artist})
            EXPECT_NE(lines.find("d2" + std::string(text) + "\na3" + PathOf(song) + "\n"),
                      std::string::npos)
                << text << "\n"
                << lines;
}

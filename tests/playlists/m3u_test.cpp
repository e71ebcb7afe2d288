#include "playlists/m3u.h"
#include "runtime/error.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>

namespace
{

using playlists::EntriesOfM3U;
using playlists::EntryPath;
using playlists::ParseM3UText;
using playlists::PrepareM3UText;
using namespace std::string_literals;

const std::string kMark = "\xEF\xBB\xBF";

std::string Parsed(std::string text)
{
    std::string result = "before";
    ParseM3UText(text, result);
    return result;
}

TEST(ParseM3UText, Table)
{
    const struct {
        const char *name;
        std::string text, want;
    } cases[] = {
        {"nothing", "", ""},
        {"shorter than the head", "#EXTM3U", ""},
        {"the head alone", "#EXTM3U\r\n", ""},
        {"a pair", "#EXTM3U\r\n#EXTINF:215,Abba - Waterloo\r\nC:\\a.mp3\r\n",
         "Abba - Waterloo%%%C:\\a.mp3\r\n"},
        {"a path alone", "#EXTM3U\r\nC:\\Music\\a.mp3\r\n", "C:\\Music\\a%%%C:\\Music\\a.mp3\r\n"},
        {"the extension in capitals", "#EXTM3U\r\nA.MP3\r\n", "A%%%A.MP3\r\n"},
        {"in both", "#EXTM3U\r\nA.mP2\r\n", "A%%%A.mP2\r\n"},
        {"any that begins so", "#EXTM3U\r\na.mpeg\r\n", "a%%%a.mpeg\r\n"},
        {"no more behind it", "#EXTM3U\r\na.mp\r\n", "a%%%a.mp\r\n"},
        {"the first match counts", "#EXTM3U\r\nv.mpx\\b.mp3\r\n", "v%%%v.mpx\\b.mp3\r\n"},
        {"a point before it", "#EXTM3U\r\na.b.mp3\r\n", "a.b%%%a.b.mp3\r\n"},
        {"two points", "#EXTM3U\r\na..mp3\r\n", "a.%%%a..mp3\r\n"},
        {"only the extension", "#EXTM3U\r\n.mp3\r\n", "%%%.mp3\r\n"},
        {"more commas", "#EXTM3U\r\n#EXTINF:1,a, b,c\r\nx.ogg\r\n", "a, b,c%%%x.ogg\r\n"},
        {"no comma", "#EXTM3U\r\n#EXTINF:12\r\nx.mp3\r\n", "#EXTINF:12%%%x.mp3\r\n"},
        {"a comma before the mark", "#EXTM3U\r\na,#EXTINF:1\r\nx.mp3\r\n",
         "a,#EXTINF:1%%%x.mp3\r\n"},
        {"the mark inside a line", "#EXTM3U\r\nx,y#EXTINF:1,n\r\nx.mp3\r\n", "n%%%x.mp3\r\n"},
        {"the mark in another letter case", "#EXTM3U\r\n#extinf:1,n.mp3\r\n",
         "#extinf:1,n%%%#extinf:1,n.mp3\r\n"},
        {"an empty name", "#EXTM3U\r\n#EXTINF:1,\r\nx.mp3\r\n", "%%%x.mp3\r\n"},
        {"the pair's path is taken as it is", "#EXTM3U\r\n#EXTINF:1,a\r\n#EXTINF:2,b\r\nc.mp3\r\n",
         "a%%%#EXTINF:2,b\r\nc%%%c.mp3\r\n"},
        {"an empty path", "#EXTM3U\r\n#EXTINF:1,a\r\n\r\nc.mp3\r\n", "a%%%\r\nc%%%c.mp3\r\n"},
        {"no line below", "#EXTM3U\r\n#EXTINF:1,a\r\n", "a%%%\r\n"},
        {"an open last line is none", "#EXTM3U\r\na.mp3\r\nb.mp3", "a%%%a.mp3\r\n"},
        {"a lone carriage return is no line end", "#EXTM3U\r\na\rb.mp3\r\n", "a\rb%%%a\rb.mp3\r\n"},
        {"nine characters whatever they are", "123456789a.mp3\r\n", "a%%%a.mp3\r\n"},
        {"NULs stay", "#EXTM3U\r\na\0.mp3\r\n"s, "a\0%%%a\0.mp3\r\n"s},
        {"two songs", "#EXTM3U\r\n#EXTINF:1,One\r\n1.mp3\r\n2.mp3\r\n",
         "One%%%1.mp3\r\n2%%%2.mp3\r\n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Parsed(c.text), c.want);
    }
}

TEST(ParseM3UText, TakesTheHeadOffTheTextItself)
{
    std::string text = "#EXTM3U\r\na.mp3\r\n", result;
    ParseM3UText(text, result);
    EXPECT_EQ(text, "a.mp3\r\n");
}

TEST(ParseM3UText, GivesNothingOfAListWithAnEntryThatIsNoMP3)
{
    for (const char *line : {"song.ogg", "", "# words", "a.m", "a.mq3", "mp3", "http://radio/"}) {
        SCOPED_TRACE(line);
        std::string text = "#EXTM3U\r\na.mp3\r\n" + std::string(line) + "\r\nb.mp3\r\n";
        std::string result = "as it was";
        try {
            ParseM3UText(text, result);
            ADD_FAILURE() << "no error";
        } catch (const runtime::RuntimeError &error) {
            EXPECT_EQ(error.number, runtime::kInvalidCall);
        }
        EXPECT_EQ(result, "as it was");
    }
}

TEST(PrepareM3UText, Table)
{
    const struct {
        const char *name;
        std::string bytes, want;
    } cases[] = {
        {"nothing", "", ""},
        {"NULs only", "\0\0\0"s, ""},
        {"a byte order mark alone", "\xEF\xBB\xBF", ""},
        {"as it should be", "#EXTM3U\r\na.mp3\r\n", "#EXTM3U\r\na.mp3\r\n"},
        {"line feeds", "#EXTM3U\na.mp3\nb.mp3\n", "#EXTM3U\r\na.mp3\r\nb.mp3\r\n"},
        {"carriage returns", "#EXTM3U\ra.mp3\rb.mp3\r", "#EXTM3U\r\na.mp3\r\nb.mp3\r\n"},
        {"mixed", "#EXTM3U\r\na.mp3\nb.mp3\rc.mp3\r\n", "#EXTM3U\r\na.mp3\r\nb.mp3\r\nc.mp3\r\n"},
        {"an open last line", "#EXTM3U\r\na.mp3", "#EXTM3U\r\na.mp3\r\n"},
        {"only the head, open", "#EXTM3U", "#EXTM3U\r\n"},
        {"no head", "a.mp3\r\n", "#EXTM3U\r\na.mp3\r\n"},
        {"a byte order mark before the head", kMark + "#EXTM3U\r\na.mp3\r\n",
         "#EXTM3U\r\na.mp3\r\n"},
        {"a byte order mark before a path", kMark + "a.mp3\r\n", "#EXTM3U\r\na.mp3\r\n"},
        {"a mark elsewhere stays", "#EXTM3U\n" + kMark + "a.mp3\n",
         "#EXTM3U\r\n" + kMark + "a.mp3\r\n"},
        {"words behind the head", "#EXTM3U url-tvg=x\r\na.mp3\r\n", "#EXTM3U\r\na.mp3\r\n"},
        {"a small head", "#extm3u\r\na.mp3\r\n", "#EXTM3U\r\na.mp3\r\n"},
        {"no head, but a name like it", "#EXTM3U8.mp3\n", "#EXTM3U\r\n#EXTM3U8.mp3\r\n"},
        {"blank lines", "\n \n#EXTM3U\n\na.mp3\n\t\nb.mp3\n\n", "#EXTM3U\r\na.mp3\r\nb.mp3\r\n"},
        {"comments", "#EXTM3U\n# words\n#PLAYLIST:Best\n#EXTINF:1,a\n#EXTVLCOPT:x\nb.mp3\n",
         "#EXTM3U\r\n#EXTINF:1,a\r\nb.mp3\r\n"},
        {"a name that begins with the mark", "#1 Hit.mp3\n#2.MP3\n",
         "#EXTM3U\r\n#1 Hit.mp3\r\n#2.MP3\r\n"},
        {"another entry stays", "a.ogg\n", "#EXTM3U\r\na.ogg\r\n"},
        {"NULs among others", "a\0.mp3\n"s, "#EXTM3U\r\na\0.mp3\r\n"s},
        {"blanks at the ends of a name", " a.mp3 \n", "#EXTM3U\r\n a.mp3 \r\n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(PrepareM3UText(c.bytes), c.want);
    }
}

TEST(EntriesOfM3U, Table)
{
    const struct {
        const char *name;
        std::string line, wantName, wantPath;
    } cases[] = {
        {"a pair", "Name%%%a.mp3", "Name", "a.mp3"},
        {"no separator", "a.mp3", "", "a.mp3"},
        {"an empty line", "", "", ""},
        {"three parts", "a%%%b%%%c", "a", "b"},
        {"a sign more", "50%%%%a.mp3", "50", "%a.mp3"},
        {"NULs are cut", "N\0ame\0%%%\0a.mp3\0"s, "Name", "a.mp3"},
        {"NULs inside the separator", "N%\0%\0%a"s, "N", "a"},
        {"nothing but the separator", "%%%", "", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const auto entries = EntriesOfM3U(c.line + "\r\n");
        ASSERT_EQ(entries.size(), 1u);
        EXPECT_EQ(entries[0].denomination, c.wantName);
        EXPECT_EQ(entries[0].path, c.wantPath);
    }
    EXPECT_TRUE(EntriesOfM3U("").empty());
    EXPECT_EQ(EntriesOfM3U("a%%%b\r\nc%%%d\r\n").size(), 2u);
}

TEST(EntryPath, Table)
{
    constexpr struct {
        const char *name;
        std::string_view path, want;
    } cases[] = {
        {"a drive letter", "C:\\Music\\a.mp3", "C:\\Music\\a.mp3"},
        {"a colon as second character of anything", "1:a.mp3", "1:a.mp3"},
        {"a colon further on", "ab:c.mp3", "/lists/ab:c.mp3"},
        {"two back-slashes", "\\\\server\\a.mp3", "\\\\server\\a.mp3"},
        {"one back-slash: the player's drive", "\\Music\\a.mp3", "C:\\Music\\a.mp3"},
        {"one back-slash alone", "\\", "C:\\"},
        {"from the root", "/music/a.mp3", "/music/a.mp3"},
        {"a name", "a.mp3", "/lists/a.mp3"},
        {"a folder below", "x\\a.mp3", "/lists/x\\a.mp3"},
        {"a folder beside", "..\\a.mp3", "/lists/..\\a.mp3"},
        {"one character", "a", "/lists/a"},
        {"nothing", "", "/lists/"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(EntryPath(c.path, "/lists/", "C:"), c.want);
    }
}

// The forms in which players write lists: every one of them gives the same songs.
TEST(M3UText, FormsOfPlayers)
{
    const std::string songs[][2] = {{"Abba - Waterloo", "Abba\\Waterloo.mp3"},
                                    {"Ñandú, live", "..\\ñ.MP3"},
                                    {"100 & more", "/music/100.mp3"}};
    int forms = 0;
    for (const std::string lineEnd : {"\r\n", "\n", "\r"})
        for (const std::string front : {"", "\xEF\xBB\xBF"})
            for (const std::string head : {"#EXTM3U", "#EXTM3U x=1", ""})
                for (const std::string extra : {"", "# a comment", " "})
                    for (const bool closed : {true, false}) {
                        std::string text = front;
                        if (!head.empty())
                            text += head + lineEnd;
                        for (const auto &song : songs) {
                            text += "#EXTINF:12," + song[0] + lineEnd;
                            if (!extra.empty())
                                text += extra + lineEnd;
                            text += song[1] + lineEnd;
                        }
                        if (!closed)
                            text.resize(text.size() - lineEnd.size());
                        SCOPED_TRACE(text);
                        std::string prepared = PrepareM3UText(text), result;
                        ParseM3UText(prepared, result);
                        const auto entries = EntriesOfM3U(result);
                        ASSERT_EQ(entries.size(), std::size(songs));
                        for (std::size_t i = 0; i < entries.size(); ++i) {
                            EXPECT_EQ(entries[i].denomination, songs[i][0]);
                            EXPECT_EQ(entries[i].path, songs[i][1]);
                        }
                        ++forms;
                    }
    EXPECT_EQ(forms, 3 * 2 * 3 * 3 * 2);
}

TEST(ReadM3UFile, WhatIsNoListIsEmptyAtOnce)
{
    const tests::TestFolder folder;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(playlists::ReadM3UFile(folder / "absent.m3u"), "");
    EXPECT_EQ(playlists::ReadM3UFile(folder.Path()), "");
    EXPECT_EQ(playlists::ReadM3UFile("/dev/zero"), "");
    ASSERT_EQ(mkfifo((folder / "pipe.m3u").c_str(), 0600), 0);
    EXPECT_EQ(playlists::ReadM3UFile(folder / "pipe.m3u"), "");
    tests::WriteFile(folder / "empty.m3u", "");
    EXPECT_EQ(playlists::ReadM3UFile(folder / "empty.m3u"), "");
    tests::WriteFile(folder / "nuls.m3u", std::string(100000, '\0'));
    EXPECT_EQ(playlists::ReadM3UFile(folder / "nuls.m3u"), "");
    tests::WriteFile(folder / "large.m3u", "#EXTM3U\r\na.mp3\r\n");
    std::filesystem::resize_file(folder / "large.m3u", playlists::kMaxListBytes + 1);
    EXPECT_EQ(playlists::ReadM3UFile(folder / "large.m3u"), "");
    std::filesystem::resize_file(folder / "large.m3u", std::uintmax_t{1} << 40);
    EXPECT_EQ(playlists::ReadM3UFile(folder / "large.m3u"), "");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(8));
}

TEST(ReadM3UFile, ReadsTheLargestListCompletely)
{
    const tests::TestFolder folder;
    std::string bytes = "#EXTM3U\r\n";
    while (bytes.size() + 4096 <= playlists::kMaxListBytes)
        bytes += std::string(4096 - 6, 'a') + ".mp3\r\n";
    bytes += std::string(playlists::kMaxListBytes - bytes.size() - 6, 'b') + ".mp3\r\n";
    ASSERT_EQ(bytes.size(), playlists::kMaxListBytes);
    tests::WriteFile(folder / "list.m3u", bytes);
    EXPECT_EQ(playlists::ReadM3UFile(folder / "list.m3u"), bytes);
}

} // namespace

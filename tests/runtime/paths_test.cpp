#include "runtime/paths.h"

#include <gtest/gtest.h>

namespace
{

TEST(Paths, Table)
{
    const struct {
        std::string_view path, name, folder, lastFolder;
    } cases[] = {
        {"/music/abba/one.mp3", "one.mp3", "/music/abba/", "abba"},
        {"/one.mp3", "one.mp3", "/", ""},
        {"abba/one.mp3", "one.mp3", "abba/", "abba"},
        {"one.mp3", "one.mp3", "", ""},
        {"/music/abba/", "", "/music/abba/", "abba"},
        {"/", "", "/", ""},
        {"", "", "", ""},
        {"//", "", "//", ""},
        {"/a/b\\c.mp3", "b\\c.mp3", "/a/", "a"}, // a back-slash is a character of a name here
        {"/m\xFF/\x80.mp3", "\x80.mp3", "/m\xFF/", "m\xFF"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(runtime::GetFileName(c.path), c.name);
        EXPECT_EQ(runtime::GetFolderPath(c.path), c.folder);
        EXPECT_EQ(runtime::GetLastFolderName(c.path), c.lastFolder);
    }
}

TEST(Paths, ParentAndJoin)
{
    const struct {
        std::string_view path, parent, joined;
    } cases[] = {
        {"/music/abba", "/music", "/music/abba/x"},
        {"/music", "/", "/music/x"},
        {"/music/", "/music", "/music/x"},
        {"/", "/", "/x"},
        {"abba/one", "abba", "abba/one/x"},
        {"one", "", "one/x"},
        {"", "", "/x"},
        {"/m\xFF/\x80", "/m\xFF", "/m\xFF/\x80/x"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(runtime::ParentFolder(c.path), c.parent);
        EXPECT_EQ(runtime::JoinPath(c.path, "x"), c.joined);
    }
}

TEST(Paths, SeparatorsAtTheEndAreCut)
{
    const struct {
        std::string path, want;
    } cases[] = {
        {"/music/abba", "/music/abba"},
        {"/music/abba//", "/music/abba"},
        {"/", "/"},
        {"//", "/"},
        {"abba/", "abba"},
        {"", ""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(runtime::CutSeparators(c.path), c.want);
}

TEST(Paths, IsInFolder)
{
    const struct {
        std::string_view path, folder;
        bool want;
    } cases[] = {
        {"/music/abba/one.mp3", "/music", true},
        {"/music", "/music", true},
        {"/music/", "/music", true},
        {"/musical", "/music", false},
        {"/mus", "/music", false},
        {"/Music/x", "/music", false},
        {"/", "/", true},
        {"/music", "/", true},
        {"music", "/", false},
        {"/m\xFF/\x80", "/m\xFF", true},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(runtime::IsInFolder(c.path, c.folder), c.want);
    }
}

} // namespace

#include "shell/apppath.h"
#include "shell/paths.h"

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
        EXPECT_EQ(shell::GetFileName(c.path), c.name);
        EXPECT_EQ(shell::GetFolderPath(c.path), c.folder);
        EXPECT_EQ(shell::GetLastFolderName(c.path), c.lastFolder);
    }
}

TEST(AppPath, HasNoSeparatorAtItsEnd)
{
    const std::string former = shell::GetAppPath();
    const std::pair<const char *, const char *> cases[] = {
        {"/opt/quenlin", "/opt/quenlin"}, {"/opt/quenlin/", "/opt/quenlin"}, {"/", ""}};
    for (const auto &[folder, want] : cases) {
        shell::SetAppPath(folder);
        EXPECT_EQ(shell::GetAppPath(), want);
        EXPECT_EQ(shell::AppFile("MP3s.mdb"), std::string(want) + "/MP3s.mdb");
    }
    shell::SetAppPath(former);
}

} // namespace

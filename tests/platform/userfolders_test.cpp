#include "platform/disk/userfolders.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>

namespace fs = std::filesystem;

namespace
{

using namespace platform;

// Sets environment variables for one test and restores them.
class UserFolders : public ::testing::Test
{
protected:
    ~UserFolders() override
    {
        for (const auto &[name, value] : former) {
            if (value)
                setenv(name.c_str(), value->c_str(), 1);
            else
                unsetenv(name.c_str());
        }
        fs::current_path(formerFolder);
    }
    void Set(const std::string &name, const char *value)
    {
        const char *old = std::getenv(name.c_str());
        former.emplace(name, old != nullptr ? std::optional<std::string>(old) : std::nullopt);
        if (value != nullptr)
            setenv(name.c_str(), value, 1);
        else
            unsetenv(name.c_str());
    }

    std::map<std::string, std::optional<std::string>> former;
    fs::path formerFolder = fs::current_path();
    tests::TestFolder folder;
};

TEST_F(UserFolders, FollowTheEnvironment)
{
    Set("HOME", "/home/u");
    Set("XDG_CONFIG_HOME", "/conf");
    Set("XDG_DATA_HOME", "/data");
    EXPECT_EQ(ConfigHome(), "/conf");
    EXPECT_EQ(DataHome(), "/data");
    Set("XDG_CONFIG_HOME", "relative");
    Set("XDG_DATA_HOME", nullptr);
    EXPECT_EQ(ConfigHome(), "/home/u/.config");
    EXPECT_EQ(DataHome(), "/home/u/.local/share");
    Set("HOME", nullptr);
    EXPECT_TRUE(ConfigHome().starts_with('/')); // from the list of users
}

TEST_F(UserFolders, TheLocaleIsTheFirstVariableThatIsSet)
{
    Set("LC_ALL", "");
    Set("LC_CTYPE", "cs_CZ.UTF-8");
    Set("LANG", "de_DE.UTF-8");
    EXPECT_EQ(LocaleName(), "cs_CZ.UTF-8");
    Set("LC_ALL", "ru_RU");
    EXPECT_EQ(LocaleName(), "ru_RU");
    Set("LC_ALL", nullptr);
    Set("LC_CTYPE", nullptr);
    Set("LANG", nullptr);
    EXPECT_EQ(LocaleName(), "C");
}

TEST_F(UserFolders, AbsolutePathTable)
{
    fs::current_path("/usr");
    Set("PWD", "/usr");
    const std::pair<const char *, const char *> cases[] = {{"/a/b.mp3", "/a/b.mp3"},
                                                           {"b.mp3", "/usr/b.mp3"},
                                                           {"./b.mp3", "/usr/b.mp3"},
                                                           {"../b.mp3", "/b.mp3"},
                                                           {"../../../b", "/b"},
                                                           {"//a///b", "/a/b"},
                                                           {"/a/./b/.", "/a/b"},
                                                           {"/a/b/../c", "/a/c"},
                                                           {"a/", "/usr/a/"},
                                                           {"/", "/"},
                                                           {".", "/usr"},
                                                           {"", ""},
                                                           {"..", "/"},
                                                           {"/..", "/"},
                                                           {"a b\"c", "/usr/a b\"c"},
                                                           {"\xFF", "/usr/\xFF"},
                                                           {"/a/..b/...", "/a/..b/..."}};
    for (const auto &[path, want] : cases)
        EXPECT_EQ(AbsolutePath(path), want) << path;
}

TEST_F(UserFolders, AbsolutePathSeesLinksAsTheShellDoes)
{
    const std::string root = fs::canonical(folder.Path()).string();
    fs::create_directories(folder / "real/deep");
    fs::create_directory_symlink(root + "/real/deep", folder / "link");
    EXPECT_EQ(AbsolutePath(root + "/link/a.mp3"), root + "/link/a.mp3");
    EXPECT_EQ(AbsolutePath(root + "/link/../a.mp3"), root + "/real/a.mp3");
    fs::current_path(root + "/real/deep");
    Set("PWD", (root + "/link").c_str());
    EXPECT_EQ(AbsolutePath("a.mp3"), root + "/link/a.mp3");
    Set("PWD", "/usr"); // not the current folder
    EXPECT_EQ(AbsolutePath("a.mp3"), root + "/real/deep/a.mp3");
}

TEST_F(UserFolders, TheProgramFolderHoldsTheProgram)
{
    EXPECT_TRUE(fs::exists(ProgramFolder() + "/platform_tests"));
}

} // namespace

#include "platform/posix/inisettings.h"
#include "runtime/error.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <set>
#include <string>
#include <vector>

namespace
{

using platform::posix::IniSettings;

class Settings : public ::testing::Test
{
protected:
    std::string File() const { return folder / "config/T/settings.ini"; }
    std::string Read(IniSettings &store, std::string_view key)
    {
        return store.Read("T", "S", key, "default");
    }
    std::string ReadFresh(std::string_view key)
    {
        IniSettings store(folder / "config");
        return Read(store, key);
    }

    tests::TestFolder folder;
};

TEST_F(Settings, ReadOfAMissingKeyGivesTheDefaultAndWritesNothing)
{
    IniSettings store(folder / "config");
    EXPECT_EQ(Read(store, "k"), "default");
    store.Flush();
    EXPECT_FALSE(std::filesystem::exists(folder / "config"));
}

TEST_F(Settings, AWriteIsSeenAtOnceAndStoredAtTheFlush)
{
    IniSettings store(folder / "config");
    store.Write("T", "S", "k", "v");
    EXPECT_EQ(Read(store, "k"), "v");
    EXPECT_FALSE(std::filesystem::exists(File()));
    store.Flush();
    EXPECT_EQ(tests::ReadFile(File()), "[S]\nk=v\n");
    EXPECT_EQ(ReadFresh("k"), "v");
}

TEST_F(Settings, WhatCannotBeStoredIsReportedOnce)
{
    std::filesystem::create_directories(folder /
                                        "config/T/settings.lock"); // which cannot be locked
    std::vector<std::string> reports;
    {
        IniSettings store(folder / "config");
        store.onCannotStore = [&](const std::string &path, int why) {
            reports.push_back(path + " " + std::to_string(why));
        };
        for (const char *text : {"1", "2", "3"}) {
            store.Write("T", "S", "k", text);
            store.Flush();
            EXPECT_EQ(Read(store, "k"), text);
        }
        EXPECT_EQ(reports, std::vector<std::string>{folder / "config/T/settings.lock " +
                                                    std::to_string(EISDIR)});
        std::filesystem::remove(folder / "config/T/settings.lock");
        store.Flush();
        EXPECT_EQ(ReadFresh("k"), "3");
        std::filesystem::remove(File());
        std::filesystem::create_directory(File());
        store.Write("T", "S", "k", "4");
    }
    EXPECT_EQ(reports.size(), 1u);
}

TEST_F(Settings, AFileThatCannotBeReadIsReported)
{
    std::filesystem::create_directories(File());
    std::string report;
    IniSettings store(folder / "config");
    store.onCannotStore = [&](const std::string &path, int) { report = path; };
    store.Write("T", "S", "k", "v");
    store.Flush();
    EXPECT_EQ(report, File());
}

TEST_F(Settings, TheEndOfTheStoreFlushes)
{
    {
        IniSettings store(folder / "config");
        store.Write("T", "S", "k", "v");
    }
    EXPECT_EQ(ReadFresh("k"), "v");
}

TEST_F(Settings, OddValuesRoundTrip)
{
    const std::vector<std::string> values = {"",      " a ",  "a\nb\r\n",   std::string("a\0b", 3),
                                             "\"x\"", "C:\\", "/m\xFF\xFE", "[S]",
                                             "k=v",   ";"};
    for (const std::string &value : values) {
        IniSettings store(folder / "config");
        store.Write("T", "S", "k", value);
        store.Flush();
        EXPECT_EQ(ReadFresh("k"), value);
    }
}

TEST_F(Settings, AnUnchangedWriteDoesNothing)
{
    IniSettings store(folder / "config");
    store.Write("T", "S", "k", "v");
    store.Flush();
    struct stat before {
    }, after{};
    ASSERT_EQ(stat(File().c_str(), &before), 0);
    int heldBack = 0;
    store.onHeldBack = [&] { ++heldBack; };
    store.Write("T", "S", "k", "v");
    store.Flush();
    ASSERT_EQ(stat(File().c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(heldBack, 0);
}

TEST_F(Settings, WhatAnotherStoreWroteAlreadyIsNotWrittenAgain)
{
    IniSettings one(folder / "config");
    IniSettings two(folder / "config");
    one.Write("T", "S", "k", "v");
    two.Write("T", "S", "k", "v");
    one.Flush();
    struct stat before {
    }, after{};
    ASSERT_EQ(stat(File().c_str(), &before), 0);
    EXPECT_EQ(before.st_mode & 0777, 0600u) << "the owner's alone";
    two.Flush();
    ASSERT_EQ(stat(File().c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(Settings, TheWritesOfOneTurnAreOneRename)
{
    IniSettings store(folder / "config");
    int heldBack = 0;
    store.onHeldBack = [&] { ++heldBack; };
    for (int i = 0; i < 20; ++i)
        store.Write("T", "S", "k" + std::to_string(i), "v");
    EXPECT_EQ(heldBack, 1);
    store.Flush();
    store.Write("T", "S", "again", "v");
    EXPECT_EQ(heldBack, 2);
}

TEST_F(Settings, DeleteOfAMissingKeyIsAnError)
{
    IniSettings store(folder / "config");
    try {
        store.Delete("T", "S", "k");
        ADD_FAILURE() << "no error";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kInvalidCall);
    }
    store.Write("T", "S", "k", "v");
    store.Delete("T", "S", "k");
    EXPECT_EQ(Read(store, "k"), "default");
    EXPECT_THROW(store.Delete("T", "S", "k"), runtime::RuntimeError);
    store.Flush();
    EXPECT_EQ(ReadFresh("k"), "default");
}

TEST_F(Settings, TwoStoresKeepEachOthersKeys)
{
    IniSettings one(folder / "config");
    IniSettings two(folder / "config");
    one.Write("T", "S", "a", "1");
    two.Write("T", "S", "b", "2");
    one.Flush();
    two.Flush();
    EXPECT_EQ(Read(one, "b"), "2");
    EXPECT_EQ(Read(two, "a"), "1");
    one.Delete("T", "S", "b");
    two.Write("T", "S", "c", "3");
    one.Flush();
    two.Flush();
    EXPECT_EQ(tests::ReadFile(File()), "[S]\na=1\nc=3\n");
}

TEST_F(Settings, ManyProcessesAtOnceKeepAllKeys)
{
    constexpr int kProcesses = 8, kKeys = 40;
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
        const pid_t child = fork();
        if (child == 0) {
            for (int key = 0; key < kKeys; ++key) {
                IniSettings store(folder / "config");
                store.Write("T", "S", std::to_string(process) + "-" + std::to_string(key), "v");
                store.Flush();
            }
            _exit(0);
        }
        ASSERT_GT(child, 0);
        children.push_back(child);
    }
    // A reader never gets a part of the file: the last line is always complete.
    int status = 0;
    while (waitpid(children.front(), &status, WNOHANG) == 0) {
        if (std::filesystem::exists(File())) {
            EXPECT_TRUE(tests::ReadFile(File()).ends_with("=v\n"));
        }
    }
    for (std::size_t i = 1; i < children.size(); ++i)
        waitpid(children[i], &status, 0);
    IniSettings store(folder / "config");
    for (int process = 0; process < kProcesses; ++process)
        for (int key = 0; key < kKeys; ++key)
            EXPECT_EQ(Read(store, std::to_string(process) + "-" + std::to_string(key)), "v");
    std::set<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(folder / "config/T"))
        names.insert(entry.path().filename().string());
    EXPECT_EQ(names, (std::set<std::string>{"settings.ini", "settings.lock"}));
}

TEST_F(Settings, AFileThatCannotBeReadIsNotReplaced)
{
    std::filesystem::create_directories(File()); // a folder in place of the file
    IniSettings store(folder / "config");
    store.Write("T", "S", "k", "v");
    store.Flush();
    EXPECT_TRUE(std::filesystem::is_directory(File()));
    EXPECT_EQ(Read(store, "k"), "v"); // for this run
    std::filesystem::remove(File());
    store.Flush();
    EXPECT_EQ(ReadFresh("k"), "v"); // stored as soon as it can be
}

TEST_F(Settings, WhatIsNoFileIsNeitherWaitedForNorReplaced)
{
    std::filesystem::create_directories(folder / "config/T");
    ASSERT_EQ(mkfifo(File().c_str(), 0600), 0);
    IniSettings store(folder / "config");
    store.Write("T", "S", "k", "v");
    store.Flush();
    EXPECT_TRUE(std::filesystem::is_fifo(File()));
    EXPECT_EQ(Read(store, "k"), "v");
}

TEST_F(Settings, AFolderThatCannotBeMadeKeepsTheValuesForTheRun)
{
    tests::WriteFile(folder / "config", "a file");
    IniSettings store(folder / "config");
    store.Write("T", "S", "k", "v");
    store.Flush();
    EXPECT_EQ(Read(store, "k"), "v");
    EXPECT_EQ(tests::ReadFile(folder / "config"), "a file");
}

TEST_F(Settings, ASymbolicLinkAndTheModeStay)
{
    tests::WriteFile(folder / "elsewhere.ini", "[S]\nold=1\n");
    std::filesystem::create_directories(folder / "config/T");
    std::filesystem::create_symlink(folder / "elsewhere.ini", File());
    ASSERT_EQ(chmod((folder / "elsewhere.ini").c_str(), 0640), 0);
    {
        IniSettings store(folder / "config");
        store.Write("T", "S", "k", "v");
    }
    EXPECT_TRUE(std::filesystem::is_symlink(File()));
    EXPECT_EQ(tests::ReadFile(folder / "elsewhere.ini"), "[S]\nold=1\nk=v\n");
    struct stat status {
    };
    ASSERT_EQ(stat(File().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
}

TEST_F(Settings, SectionsAndTitlesAreApart)
{
    IniSettings store(folder / "config");
    store.Write("T", "S", "k", "1");
    store.Write("T", "S2", "k", "2");
    store.Write("U", "S", "k", "3");
    store.Flush();
    EXPECT_EQ(store.Read("T", "S", "k", ""), "1");
    EXPECT_EQ(store.Read("T", "S2", "k", ""), "2");
    EXPECT_EQ(store.Read("U", "S", "k", ""), "3");
}

} // namespace

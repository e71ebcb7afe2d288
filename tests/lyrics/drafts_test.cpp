#include "lyrics/drafts.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "tests/metadata/faultyfiles.h"
#include "tests/support/configfolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

namespace
{

namespace fs = std::filesystem;

constexpr char kSong[] = "/music/one.mp3";

// Every file in the folder of the drafts.
std::vector<std::string> DraftFiles()
{
    std::vector<std::string> files;
    for (const auto &entry : fs::directory_iterator(lyrics::DraftFolder()))
        files.push_back(entry.path().string());
    return files;
}

void ClearDrafts()
{
    for (const std::string &file : DraftFiles())
        fs::remove(file);
}

class Drafts : public testing::Test
{
protected:
    tests::ConfigFolder config;
};

TEST_F(Drafts, NoneAtFirst)
{
    EXPECT_EQ(lyrics::ReadDraft(kSong), std::nullopt);
    lyrics::RemoveDraft(kSong);
    EXPECT_FALSE(fs::exists(lyrics::DraftFolder()));
    EXPECT_EQ(lyrics::DraftFolder(), config.Path() + "/Quenlin/Drafts");
}

TEST_F(Drafts, KeepsEveryByte)
{
    std::string text;
    for (int c = 0; c < 256; ++c)
        text += static_cast<char>(c);
    for (const std::string &kept : {text, std::string(), std::string(1'000'000, 'x')}) {
        lyrics::WriteDraft(kSong, kept);
        EXPECT_TRUE(lyrics::ReadDraft(kSong) == kept) << kept.size();
    }
    EXPECT_EQ(DraftFiles().size(), 1U);
    lyrics::RemoveDraft(kSong);
    EXPECT_EQ(lyrics::ReadDraft(kSong), std::nullopt);
    EXPECT_EQ(DraftFiles().size(), 0U);
}

TEST_F(Drafts, OneASong)
{
    const std::string odd = "/music/\xFF\n2\n.mp3";
    lyrics::WriteDraft(kSong, "one");
    lyrics::WriteDraft(odd, "odd");
    lyrics::WriteDraft("", "no path");
    EXPECT_EQ(lyrics::ReadDraft(kSong), "one");
    EXPECT_EQ(lyrics::ReadDraft(odd), "odd");
    EXPECT_EQ(lyrics::ReadDraft(""), "no path");
    EXPECT_EQ(lyrics::ReadDraft("/music/one.mp"), std::nullopt);
    lyrics::RemoveDraft(odd);
    EXPECT_EQ(lyrics::ReadDraft(odd), std::nullopt);
    EXPECT_EQ(lyrics::ReadDraft(kSong), "one");
}

// Another file that has the name of the draft is neither read as a draft nor replaced.
TEST_F(Drafts, WhatIsInItsPlaceStays)
{
    lyrics::WriteDraft(kSong, "one");
    const std::string place = DraftFiles().at(0);
    for (const std::string &other :
         {std::string("something else"), std::string(), tests::ReadFile(place).substr(0, 30)}) {
        tests::WriteFile(place, other);
        EXPECT_EQ(lyrics::ReadDraft(kSong), std::nullopt);
        lyrics::WriteDraft(kSong, "two");
        EXPECT_EQ(lyrics::ReadDraft(kSong), "two");
        EXPECT_EQ(tests::ReadFile(place), other);
        lyrics::RemoveDraft(kSong);
        EXPECT_EQ(lyrics::ReadDraft(kSong), std::nullopt);
        EXPECT_EQ(tests::ReadFile(place), other);
    }
}

TEST_F(Drafts, AllPlacesTaken)
{
    for (int i = 0; i < 4; ++i) {
        lyrics::WriteDraft(kSong, "one");
        for (const std::string &file : DraftFiles())
            tests::WriteFile(file, "another song's");
    }
    EXPECT_THROW(lyrics::WriteDraft(kSong, "two"), runtime::RuntimeError);
    EXPECT_EQ(lyrics::ReadDraft(kSong), std::nullopt);
}

TEST_F(Drafts, AreTheUsersAlone)
{
    lyrics::WriteDraft(kSong, "one");
    struct stat status;
    ASSERT_EQ(stat(DraftFiles().at(0).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(Drafts, AFolderThatCannotBeMade)
{
    tests::WriteFile(config.Path() + "/Quenlin", "a file");
    EXPECT_THROW(lyrics::WriteDraft(kSong, "one"), runtime::RuntimeError);
    EXPECT_EQ(lyrics::ReadDraft(kSong), std::nullopt);
}

TEST_F(Drafts, FlushedBeforeItHasItsName)
{
    tests::FaultyFiles files;
    platform::TheMachine().files = &files;
    lyrics::WriteDraft(kSong, "one");
    EXPECT_EQ(files.log, "frd");
    platform::TheMachine().files = &platform::SystemFiles();
}

// Runs `job` with every one of its calls failing in turn, for this reason (0: the process is killed
// there), until it succeeds. Afterwards the draft is `after` if the file of the draft has got its
// name or was deleted, else `before`.
template <class Job>
void FailEachCall(int reason, const Job &job, const std::optional<std::string> &before,
                  const std::optional<std::string> &after)
{
    for (int call = 1;; ++call) {
        ASSERT_LT(call, 50);
        if (before)
            lyrics::WriteDraft(kSong, *before);
        else
            lyrics::RemoveDraft(kSong);
        tests::FaultyFiles files;
        files.faultyCall = call;
        files.reason = reason;
        platform::TheMachine().files = &files;
        bool failed = false;
        try {
            job();
        } catch (const runtime::RuntimeError &error) {
            failed = true;
            EXPECT_FALSE(error.description.empty());
        }
        platform::TheMachine().files = &platform::SystemFiles();
        const auto draft = lyrics::ReadDraft(kSong);
        const bool isDone = after ? !files.named.empty() : !files.deleted.empty();
        EXPECT_EQ(draft, isDone ? after : before) << "call " << call;
        const std::size_t leftBehind = reason == 0 ? 1 : 0; // by a kill, while it is written
        EXPECT_LE(DraftFiles().size(), 1 + leftBehind) << "call " << call;
        ClearDrafts();
        EXPECT_EQ(failed, files.calls >= call) << "call " << call;
        if (!failed) {
            EXPECT_TRUE(isDone);
            EXPECT_GT(call, 2);
            return;
        }
    }
}

TEST_F(Drafts, EveryFailureLeavesTheOldOrTheNewOne)
{
    const auto write = [] { lyrics::WriteDraft(kSong, "[0:01]new"); };
    const auto remove = [] { lyrics::RemoveDraft(kSong); };
    for (const int reason : {ENOSPC, EIO, EACCES, 0}) {
        SCOPED_TRACE(reason);
        FailEachCall(reason, write, std::nullopt, "[0:01]new");
        FailEachCall(reason, write, "old", "[0:01]new");
        FailEachCall(reason, remove, "old", std::nullopt);
    }
}

} // namespace

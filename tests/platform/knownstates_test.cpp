// Files that were announced in a state: one that is still in it is not opened, by a helper or by
// the logic; the answer is that of the plain port.
#include "platform/endrequest.h"
#include "tests/support/heldfiles.h"

#include <csignal>

using platform::FileIdentity;
using tests::AwaitEqual;

namespace
{

// Counts the questions for a state; lets them wait.
struct StateFiles : tests::HeldFiles {
    int Identify(const std::string &path, FileIdentity &identity) override
    {
        const int reason = HeldFiles::Identify(path, identity);
        const bool isAhead = std::this_thread::get_id() != logic;
        ++(isAhead ? identifiedAhead : identifiedByLogic);
        while (isAhead && isStuck)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return reason;
    }

    std::atomic<int> identifiedAhead = 0, identifiedByLogic = 0;
    std::atomic<bool> isStuck = false;
};

struct KnownStates : tests::ReadAheadTest {
    KnownStates()
    {
        held = states;
        files = std::make_unique<platform::posix::ReadAheadFiles>(states, 2);
    }
    ~KnownStates() override { states->isStuck = false; }

    FileIdentity State(const std::string &path) const
    {
        FileIdentity state;
        EXPECT_EQ(states->Identify(path, state), 0);
        return state;
    }

    // The states of new files "0", "1", ...
    std::vector<FileIdentity> NewFiles(int count) const
    {
        std::vector<FileIdentity> list;
        for (int i = 0; i < count; ++i)
            list.push_back(State(File(std::to_string(i), 500)));
        states->identifiedByLogic = 0;
        return list;
    }

    std::shared_ptr<StateFiles> states = std::make_shared<StateFiles>();
    const platform::WantedBytes wanted{100, 100, nullptr};
};

TEST_F(KnownStates, FilesThatAreTheSameAreNotOpened)
{
    const std::vector<FileIdentity> list = NewFiles(300);
    for (int round = 0; round < 3; ++round) {
        files->ExpectInState(list, wanted);
        EXPECT_TRUE(tests::WaitUntil([&] { return states->identifiedAhead > 0; }));
        for (const FileIdentity &state : list)
            EXPECT_TRUE(files->IsInState(state)) << state.path;
    }
    EXPECT_EQ(states->opens, 0);
    EXPECT_EQ(Read(list[0].path, 0, 2), "00"); // asked about, and then opened all the same
    EXPECT_EQ(states->opens, 1);
}

TEST_F(KnownStates, FilesThatAreOthersAreFetched)
{
    std::vector<FileIdentity> list = NewFiles(4);
    list[1].sizeBytes = 501;
    list[2].changedNs -= 1;
    list[3].path = folder / "absent";
    files->ExpectInState(list, wanted);
    files->Expect({File("plain", 500)}, wanted);
    AwaitEqual(states->opens, 4);
    EXPECT_TRUE(files->IsInState(list[0]));
    for (const int i : {1, 2}) {
        EXPECT_FALSE(files->IsInState(list[static_cast<std::size_t>(i)]));
        EXPECT_EQ(Read(folder / std::to_string(i), 0, 2).substr(0, 1), std::to_string(i));
    }
    EXPECT_FALSE(files->IsInState(list[3]));
    EXPECT_EQ(Read(list[3].path, 0, 2), "error " + std::to_string(ENOENT));
    EXPECT_EQ(Read(folder / "plain", 0, 5), "plain");
    EXPECT_EQ(states->opens, 5) << "of what was fetched only the absent file is tried again";
    AwaitEqual(states->closes, 3);
}

TEST_F(KnownStates, AFileThatIsReadWithoutAQuestionIsOpened)
{
    const std::vector<FileIdentity> list = NewFiles(3);
    files->ExpectInState(list, wanted);
    AwaitEqual(states->identifiedAhead, 3);
    EXPECT_EQ(Read(list[1].path, 0, 2), "10"); // the first one is passed over
    EXPECT_TRUE(files->IsInState(list[0]));
    EXPECT_TRUE(files->IsInState(list[2]));
    EXPECT_EQ(states->opens, 1);
}

TEST_F(KnownStates, AnotherStateThanTheAnnouncedOneIsLookedUp)
{
    std::vector<FileIdentity> list = NewFiles(2);
    files->ExpectInState(list, wanted);
    files->Expect({File("plain", 500)}, wanted);
    AwaitEqual(states->identifiedAhead, 2);
    FileIdentity other = list[0];
    other.inode += 1;
    EXPECT_FALSE(files->IsInState(other));
    EXPECT_TRUE(files->IsInState(list[0]));
    const FileIdentity plain = State(folder / "plain");
    EXPECT_TRUE(files->IsInState(plain));
    other = plain;
    other.modifiedNs += 1;
    EXPECT_FALSE(files->IsInState(other));
    EXPECT_EQ(Read(plain.path, 0, 5), "plain");
}

// A helper's look is good for 10 milliseconds.
TEST_F(KnownStates, AnOldLookIsRepeated)
{
    const std::vector<FileIdentity> list = NewFiles(2);
    files->ExpectInState(list, wanted);
    AwaitEqual(states->identifiedAhead, 2);
    tests::WriteFile(list[0].path, "changed");
    std::this_thread::sleep_for(std::chrono::milliseconds(12));
    EXPECT_FALSE(files->IsInState(list[0]));
    EXPECT_EQ(Read(list[0].path, 0, 20), "changed");
    EXPECT_TRUE(files->IsInState(list[1]));
    EXPECT_EQ(states->identifiedByLogic, 2);
}

TEST_F(KnownStates, AHelperThatIsStuckIsNotWaitedForAtTheEnd)
{
    const std::vector<FileIdentity> list = NewFiles(1);
    states->isStuck = true;
    files->ExpectInState(list, wanted);
    AwaitEqual(states->identifiedAhead, 1);
    platform::RequestEnd(SIGTERM);
    EXPECT_FALSE(files->IsInState(list[0]));
    EXPECT_EQ(Read(list[0].path, 0, 1), "error " + std::to_string(EINTR));
    files->ExpectNothing();
}

} // namespace

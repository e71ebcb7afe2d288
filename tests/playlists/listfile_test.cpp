#include "platform/desktop.h"
#include "platform/endrequest.h"
#include "playlists/listfile.h"
#include "tests/support/fakeports.h"
#include "tests/support/scripteddesktop.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>

namespace
{

using playlists::ReadListFile;

// A disk that answers when the test allows it, at the latest at the end of the test.
class SilentDisk
{
public:
    ~SilentDisk() { Answer(); }

    void Answer()
    {
        if (!std::exchange(m_hasAnswered, true))
            m_answer.set_value();
    }
    playlists::ListReader Reader()
    {
        return [answer = m_answered](const std::string &path) {
            answer.wait();
            return "read " + path;
        };
    }

private:
    std::promise<void> m_answer;
    std::shared_future<void> m_answered{m_answer.get_future()};
    bool m_hasAnswered = false;
};

class ListFile : public testing::Test
{
protected:
    ~ListFile() override { platform::RequestEnd(0); }

    // A path of which no earlier test has asked.
    static std::string NewPath()
    {
        static int number = 0;
        return "/silent/" + std::to_string(++number) + ".m3u";
    }

    // Reads again and again until the disk's late answer has arrived.
    static std::string ReadWhenFree(const std::string &path)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        std::string text;
        while (text.empty() && std::chrono::steady_clock::now() < end)
            text = ReadListFile(path, [](const std::string &) { return std::string("now"); });
        return text;
    }

    tests::FakeClock clock;
    tests::ScriptedDesktop desktop;
};

TEST_F(ListFile, IsReadAndItsEndsOfLinesAreMended)
{
    const tests::TestFolder folder;
    tests::WriteFile(folder / "a.m3u", "a.mp3\nb.mp3");
    EXPECT_EQ(ReadListFile(folder / "a.m3u"), "#EXTM3U\r\na.mp3\r\nb.mp3\r\n");
    EXPECT_EQ(ReadListFile(folder / "absent.m3u"), "");
    EXPECT_EQ(ReadListFile(folder / "a.m3u"), "#EXTM3U\r\na.mp3\r\nb.mp3\r\n"); // again
}

TEST_F(ListFile, ADiskThatDoesNotAnswerIsWaitedForOneSecond)
{
    SilentDisk disk;
    const std::string path = NewPath();
    const auto before = clock.steadyMs;
    EXPECT_EQ(ReadListFile(path, disk.Reader()), "");
    EXPECT_GE(clock.steadyMs - before, 1000);
    EXPECT_LE(clock.steadyMs - before, 1020);
    // Until the disk has answered, it is not asked again.
    const auto asked = clock.steadyMs;
    EXPECT_EQ(ReadListFile(path,
                           [](const std::string &) -> std::string {
                               ADD_FAILURE() << "asked again";
                               return {};
                           }),
              "");
    EXPECT_EQ(clock.steadyMs, asked);
    disk.Answer();
    EXPECT_EQ(ReadWhenFree(path), "now");
}

TEST_F(ListFile, TheEndOfTheProgramEndsTheWait)
{
    SilentDisk disk;
    platform::RequestEnd(15);
    const auto before = clock.steadyMs;
    EXPECT_EQ(ReadListFile(NewPath(), disk.Reader()), "");
    EXPECT_LE(clock.steadyMs - before, 20);
}

TEST_F(ListFile, TooLittleMemoryIsNoText)
{
    const std::string path = NewPath();
    EXPECT_EQ(
        ReadListFile(path, [](const std::string &) -> std::string { throw std::bad_alloc(); }), "");
    EXPECT_EQ(ReadWhenFree(path), "now");
}

} // namespace

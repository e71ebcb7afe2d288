#include "tests/support/realplayer.h"

#include "platform/player/audaciouslist.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <thread>

namespace tests
{

namespace
{

constexpr const char *kName = "org.atheme.audacious";
constexpr const char *kPath = "/org/atheme/audacious";
constexpr int kSampleRate = 44100;

// A song of silence; made once in a process.
const std::string &SilentSong(int seconds)
{
    static std::map<int, std::string> store;
    std::string &bytes = store[seconds];
    if (bytes.empty()) {
        const TestFolder folder;
        WriteFile(folder / "s.raw", std::string(std::size_t{kSampleRate} * 2 * seconds, '\0'));
        const std::string command = "lame --silent -r -m m -b 32 '" + (folder / "s.raw") + "' '" +
                                    (folder / "s.mp3") + "' 2>/dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0);
        bytes = ReadFile(folder / "s.mp3");
    }
    return bytes;
}

} // namespace

bool WaitRealTime(const std::function<bool()> &condition, int limitMs)
{
    using namespace std::chrono;
    const auto end = steady_clock::now() + milliseconds(limitMs);
    while (!condition()) {
        if (steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(milliseconds(5));
    }
    return true;
}

RealPlayer::RealPlayer()
{
    EXPECT_GE(sd_bus_open_user(&m_bus), 0) << "no D-Bus session";
}

RealPlayer::~RealPlayer()
{
    Kill();
    sd_bus_close_unref(m_bus);
}

pid_t RealPlayer::Process()
{
    sd_bus_creds *creds = nullptr;
    pid_t process = 0;
    if (sd_bus_get_name_creds(m_bus, kName, SD_BUS_CREDS_PID, &creds) >= 0)
        sd_bus_creds_get_pid(creds, &process);
    sd_bus_creds_unref(creds);
    return process;
}

bool RealPlayer::IsUp()
{
    sd_bus_creds *creds = nullptr;
    const bool up =
        sd_bus_get_name_creds(m_bus, "org.mpris.MediaPlayer2.audacious", 0, &creds) >= 0;
    sd_bus_creds_unref(creds);
    return up;
}

void RealPlayer::Start()
{
    m_process = fork();
    if (m_process == 0) {
        execlp("audacious", "audacious", nullptr);
        _exit(127);
    }
    ASSERT_TRUE(WaitRealTime([this] { return IsUp() && !Status().empty(); }));
    Order("Stop");
    while (Lists() > 1)
        Order("DeleteActivePlaylist");
    Order("Clear");
    ASSERT_TRUE(WaitRealTime([this] { return Length() == 0; }));
}

void RealPlayer::Signal(int signalNo) const
{
    if (m_process > 0)
        kill(m_process, signalNo);
}

void RealPlayer::Kill()
{
    // The program may have started another one after the test's own has ended.
    if (const pid_t process = Process(); process != 0)
        kill(process, SIGKILL);
    if (m_process != 0) {
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
    }
    m_process = 0;
    EXPECT_TRUE(WaitRealTime([this] { return !IsThere(); }));
}

sd_bus_message *RealPlayer::Call(const char *method, const char *types, std::uint32_t argument)
{
    sd_bus_message *answer = nullptr;
    sd_bus_error error{};
    sd_bus_call_method(m_bus, kName, kPath, kName, method, &error, &answer, types, argument);
    sd_bus_error_free(&error);
    return answer;
}

void RealPlayer::Order(const char *method)
{
    sd_bus_message_unref(Call(method));
}

void RealPlayer::Order(const char *method, std::uint32_t argument)
{
    sd_bus_message_unref(
        Call(method, std::string_view(method) == "SetActivePlaylist" ? "i" : "u", argument));
}

void RealPlayer::Add(const std::vector<std::string> &paths)
{
    const std::int32_t before = Length();
    sd_bus_message *message = nullptr;
    sd_bus_message_new_method_call(m_bus, &message, kName, kPath, kName, "AddList");
    sd_bus_message_open_container(message, 'a', "s");
    for (const std::string &path : paths)
        sd_bus_message_append(message, "s", platform::player::UriOfPath(path).c_str());
    sd_bus_message_close_container(message);
    ASSERT_GE(sd_bus_call(m_bus, message, 0, nullptr, nullptr), 0);
    sd_bus_message_unref(message);
    ASSERT_TRUE(WaitRealTime(
        [&] { return Length() == before + static_cast<std::int32_t>(paths.size()); }, 60'000));
}

namespace
{

template <class Value>
Value Taken(sd_bus_message *answer, const char *type)
{
    Value value{};
    if (answer != nullptr)
        sd_bus_message_read(answer, type, &value);
    sd_bus_message_unref(answer);
    return value;
}

std::string TakenText(sd_bus_message *answer)
{
    const char *text = nullptr;
    if (answer != nullptr)
        sd_bus_message_read(answer, "s", &text);
    std::string result = text != nullptr ? text : "";
    sd_bus_message_unref(answer);
    return result;
}

} // namespace

std::string RealPlayer::Status()
{
    return TakenText(Call("Status"));
}

std::uint32_t RealPlayer::Time()
{
    return Taken<std::uint32_t>(Call("Time"), "u");
}

std::uint32_t RealPlayer::Position()
{
    return Taken<std::uint32_t>(Call("Position"), "u");
}

std::int32_t RealPlayer::Length()
{
    return Taken<std::int32_t>(Call("Length"), "i");
}

std::string RealPlayer::Filename(std::uint32_t index)
{
    return TakenText(Call("SongFilename", "u", index));
}

std::int32_t RealPlayer::Lists()
{
    return Taken<std::int32_t>(Call("NumberOfPlaylists"), "i");
}

bool RealPlayer::Shuffles()
{
    return Taken<int>(Call("Shuffle"), "b") != 0;
}

std::string RealPlayer::Song(const std::string &name, int seconds) const
{
    std::string path = music / name;
    WriteFile(path, SilentSong(seconds));
    return path;
}

} // namespace tests

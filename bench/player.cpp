// What the player costs with a long list in it: the monitor's ticks, and a double click until the
// song is heard, each beside a floor of the same run. Arguments: the entries of the list, the
// seconds of ticks, the number of double clicks. Runs under tests/windows/run_windowed --player.
#include "platform/player/audacious.h"
#include "platform/posix/systemclock.h"
#include "player/install.h"
#include "player/nowplaying.h"
#include "player/playmp3.h"
#include "player/winampmod.h"
#include "tests/browser/formfixture.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/realplayer.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>

namespace
{

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

double MsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double OwnCpuMs()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto ms = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return ms(usage.ru_utime) + ms(usage.ru_stime);
}

// The processor time of another process, by the 14th and 15th word of its line in /proc.
double CpuMsOf(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    std::getline(file, line);
    std::istringstream words(line.substr(line.rfind(')') + 2));
    std::string skipped;
    for (int i = 3; i < 14; ++i)
        words >> skipped;
    double user = 0, system = 0;
    words >> user >> system;
    return (user + system) * 1e3 / static_cast<double>(sysconf(_SC_CLK_TCK));
}

class Bench : public tests::FormTest
{
public:
    Bench(int entries, int seconds) : m_entries(entries), m_seconds(seconds)
    {
        platform::TheMachine().clock = &m_systemClock;
        platform::TheMachine().player = &m_port;
        player::Install();
        browser::MainForm &form = Loaded();
        form.LV.SetSubItemKeys({"Title", "Label", "Path"});
        const std::string_view cells[] = {"title", "label", "path"};
        form.LV.SelectOnly(form.LV.AddRow("/1", "", "", cells));
        shell::TheGlobals().ShowLyricsAutomatically = true;
        StartPlayer();
    }
    ~Bench() override
    {
        platform::TheMachine().player = nullptr;
        platform::TheMachine().clock = &clock;
    }
    void TestBody() override {}

    // Measures the processor time of the ticks of so many seconds: ours, and what the player needs
    // more than for playing alone.
    void TimeTicks()
    {
        Play(0);
        std::this_thread::sleep_for(milliseconds(1000)); // the beginning of a song costs more time
        const double alone = PlayerCpuOf([this] { Pass([] {}); });
        const double ownBefore = OwnCpuMs();
        const double player = PlayerCpuOf([this] { Pass(player::tmr_Playing_Timer); });
        std::printf("tick: ours %.3f ms, the player %.1f ms, the player alone %.1f ms, in %d s\n",
                    OwnCpuMs() - ownBefore, player, alone, m_seconds);
        player::tmr_Playing_Timer();
        std::printf("panels: %s, %s, the player at %u ms\n",
                    Form().SB.Panel("Playing").text.c_str(),
                    Form().SB.Panel("PlayingStatus").text.c_str(), m_real.Time());
    }

    // Measures the time from the double click, and from the same calls sent raw, until the song is
    // heard.
    void TimeClicks(int clicks)
    {
        std::vector<double> ours, raw;
        for (int i = 0; i < clicks; ++i) {
            const int index = (i * 7919 + m_entries / 2) % m_entries;
            ours.push_back(Timed([&] { player::PlayMP3File(PathOf(index), Form().LV); }));
            raw.push_back(Timed([&] { Jump(index + 1 < m_entries ? index + 1 : 0); }));
        }
        std::printf("click on a listed song: ours %.1f ms, raw %.1f ms\n", Median(ours),
                    Median(raw));
    }

    // The same with songs that are not in the list yet.
    void TimeNewSongs(int clicks)
    {
        std::vector<double> ours, raw;
        for (int i = 0; i < clicks; ++i) {
            const std::string one = MakeSong("new one " + std::to_string(i)),
                              other = MakeSong("new other " + std::to_string(i));
            ours.push_back(Timed([&] { player::PlayMP3File(one, Form().LV); }));
            raw.push_back(Timed([&] {
                const std::int32_t before = m_real.Length();
                m_real.Add({other});
                Jump(before);
            }));
        }
        std::printf("click on a new song: ours %.1f ms, raw %.1f ms\n", Median(ours), Median(raw));
    }

private:
    std::string PathOf(int index) const
    {
        return m_real.music / ("a long enough name for a song " + std::to_string(index) + ".mp3");
    }

    std::string MakeSong(const std::string &name)
    {
        std::string path = m_real.music / (name + ".mp3");
        if (symlink(m_song.c_str(), path.c_str()) != 0)
            std::abort();
        return path;
    }

    void StartPlayer()
    {
        m_song = m_real.music / "song.mp3";
        tests::WriteFile(
            m_song,
            tests::Id3v2(tests::TextFrame("TIT2", "Title") + tests::TextFrame("TPE1", "Artist")) +
                tests::ReadFile(m_real.Song("silence.mp3", 2 * m_seconds + 60)));
        m_real.Start();
        std::vector<std::string> paths;
        for (int i = 0; i < m_entries; ++i) {
            paths.push_back(PathOf(i));
            if (symlink(m_song.c_str(), paths.back().c_str()) != 0)
                std::abort();
        }
        m_real.Add(paths);
        const auto start = Clock::now();
        if (!tests::WaitRealTime(player::IsWinampRunning))
            std::abort();
        m_port.LearnPlaylist();
        // A player with much to do may miss the limit of a call: then the list is not known yet.
        tests::WaitRealTime([this] {
            return player::IsWinampRunning() && player::GetPlaylistLength() == m_entries;
        });
        std::printf("list of %d entries: learnt in %.0f ms\n", player::GetPlaylistLength(),
                    MsSince(start));
    }

    void Jump(int index)
    {
        m_real.Order("SelectPlayingPlaylist");
        m_real.Order("Jump", static_cast<std::uint32_t>(index));
        m_real.Order("Play");
    }

    void Play(int index)
    {
        Jump(index);
        tests::WaitRealTime([this] { return m_real.Time() > 0; });
    }

    // The time in ms until a stopped player plays.
    double Timed(const std::function<void()> &play)
    {
        m_real.Order("Stop");
        tests::WaitRealTime([this] { return m_real.Status() == "stopped" && m_real.Time() == 0; });
        const auto start = Clock::now();
        play();
        while (m_real.Time() == 0 && MsSince(start) < 60'000)
            std::this_thread::sleep_for(milliseconds(1));
        return MsSince(start);
    }

    void Pass(const std::function<void()> &tick) const
    {
        auto next = Clock::now();
        for (int i = 0; i < m_seconds * 4; ++i) {
            tick();
            next += milliseconds(250);
            std::this_thread::sleep_until(next);
        }
    }

    double PlayerCpuOf(const std::function<void()> &pass)
    {
        const pid_t process = m_real.Process();
        const double before = CpuMsOf(process);
        pass();
        return CpuMsOf(process) - before;
    }

    int m_entries, m_seconds;
    platform::posix::SystemClock m_systemClock;
    tests::RealPlayer m_real;
    platform::player::AudaciousPlayer m_port;
    std::string m_song;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc < 4)
        return 2;
    Bench bench(std::atoi(argv[1]), std::atoi(argv[2]));
    bench.TimeTicks();
    bench.TimeClicks(std::atoi(argv[3]));
    bench.TimeNewSongs(std::atoi(argv[3]));
    return 0;
}

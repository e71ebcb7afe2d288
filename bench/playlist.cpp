// playlist_bench CATALOGUE FOLDER [judge] - what opening a list of 50,000 entries costs, in a copy
// of the catalogue: the file's bytes, its entries, the rows; beside a plain reading of the file.
// With "judge" it ends with status 1 when the limit is missed.
#include "browser/fieldtree.h"
#include "browser/mainform.h"
#include "catalogue/adoclass.h"
#include "catalogue/rowgroups.h"
#include "platform/machine.h"
#include "platform/posix/systemfiles.h"
#include "platform/terminal/terminaldesktop.h"
#include "playlists/install.h"
#include "playlists/lists.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace
{

constexpr int kEntries = 50000, kRounds = 5;
constexpr double kOpenMs = 300;

template <class Measure>
double MedianMs(const Measure &measure)
{
    using namespace std::chrono;
    std::vector<double> times;
    for (int i = 0; i < kRounds; ++i) {
        const auto start = steady_clock::now();
        measure();
        times.push_back(duration<double, std::milli>(steady_clock::now() - start).count());
    }
    std::nth_element(times.begin(), times.begin() + kRounds / 2, times.end());
    return times[kRounds / 2];
}

// Extended lines and lone paths, of all kinds of path.
void WriteList(const std::string &path)
{
    std::ofstream list(path, std::ios::binary);
    list << "#EXTM3U\r\n";
    for (int i = 0; i < kEntries; ++i) {
        const std::string name =
            "Artist " + std::to_string(i % 700) + " - Song " + std::to_string(i);
        if (i % 4 != 0)
            list << "#EXTINF:215," << name << "\r\n";
        list << (i % 3 == 0   ? "/music/"
                 : i % 3 == 1 ? "Music\\"
                              : "C:\\Music\\")
             << name << ".mp3\r\n";
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    const std::string folder = argv[2], file = folder + "/MP3s.mdb", list = folder + "/long.m3u";
    std::filesystem::create_directories(folder);
    for (const char *end : {"", "-wal", "-shm", "-turn"})
        std::filesystem::remove(file + end);
    std::filesystem::copy_file(argv[1], file);
    WriteList(list);
    platform::terminal::TerminalDesktop desktop;
    platform::TheMachine().desktop = &desktop;
    platform::posix::SystemFilesPort files;
    platform::TheMachine().files = &files;
    catalogue::DataAccess = std::make_unique<catalogue::ADOclass>();
    catalogue::DataAccess->TipoLectura = 1;
    catalogue::DataAccess->DirBase = folder + "/";
    catalogue::DataAccess->DataBaseName = "MP3s";
    const std::vector<catalogue::Value> row = {std::string("long"), list};
    catalogue::DataAccess->ExecuteSQL("INSERT INTO Lists VALUES(?, ?)", catalogue::kInsert, row);
    browser::MainForm &form = browser::frmMain();
    const double ms = MedianMs([&] { playlists::ListPlayList(form, "long"); });
    std::size_t bytes = 0;
    const double bare = MedianMs([&] {
        std::ostringstream all;
        all << std::ifstream(list, std::ios::binary).rdbuf();
        bytes = all.str().size();
    });
    const bool missed = argc > 3 && ms > kOpenMs;
    std::printf(
        "a play list of %d entries %27.1f ms, limit %.0f%s\n    reading its %zu bytes %.1f ms\n",
        form.LV.Count(), ms, kOpenMs, missed ? "  MISSED" : "", bytes, bare);
    const bool isWhole = form.LV.Count() == kEntries;
    playlists::StopLooking();
    browser::ResetMainForm();
    catalogue::DataAccess.reset();
    catalogue::CloseCatalogue();
    return missed || !isWhole ? 1 : 0;
}

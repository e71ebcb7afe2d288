// playlist_bench CATALOGUE FOLDER [judge] - what opening a list of 50,000 entries costs, in a copy
// of the catalogue: the file's bytes, its entries, the rows; beside a plain reading of the file.
// With "judge" it ends with status 1 when the limit is missed.
#include "bench/figures.h"
#include "bench/opencopy.h"
#include "bench/timing.h"
#include "browser/fieldtree.h"
#include "browser/mainform.h"
#include "platform/posix/disk/systemfiles.h"
#include "playlists/install.h"
#include "playlists/lists.h"

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace
{

constexpr int kEntries = 50000, kRounds = 5;
constexpr double kOpenMs = 300;

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
    const bench::OpenCopy copy(argv[1], argv[2]);
    const std::string list = std::string(argv[2]) + "/long.m3u";
    WriteList(list);
    platform::posix::SystemFilesPort files;
    platform::TheMachine().files = &files;
    const std::vector<catalogue::Value> row = {std::string("long"), list};
    catalogue::DataAccess->ExecuteSQL("INSERT INTO Lists VALUES(?, ?)", catalogue::kInsert, row);
    browser::MainForm &form = browser::frmMain();
    const double ms = bench::MedianMs(kRounds, [&] { playlists::ListPlayList(form, "long"); });
    std::size_t bytes = 0;
    const double bare = bench::MedianMs(kRounds, [&] {
        std::ostringstream all;
        all << std::ifstream(list, std::ios::binary).rdbuf();
        bytes = all.str().size();
    });
    const bool missed =
        bench::PrintFigure("a play list of " + std::to_string(form.LV.Count()) + " entries", ms,
                           "ms", kOpenMs, argc > 3);
    std::printf("    reading its %zu bytes %.1f ms\n", bytes, bare);
    const bool isWhole = form.LV.Count() == kEntries;
    playlists::StopLooking();
    browser::ResetMainForm();
    platform::TheMachine().files = nullptr;
    return missed || !isWhole ? 1 : 0;
}

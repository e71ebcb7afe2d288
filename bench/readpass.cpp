// bench/readpass.cpp - what one look into an MP3 costs: the first pass over each file of a folder,
// and the second one right after it, as a regeneration asks for them.
//
//   readpass FOLDER [ROUNDS]
//
// Prints microseconds per file of the fastest round and a checksum of what was read; then the same
// for reading the tags by their frames, and the ratio of the processor times of both.
#include "metadata/mp3info.h"
#include "shell/globals.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

struct Figures {
    double usPerFile = 0;
    double processorUs = 0; // the same in processor time, which other programs do not change
    unsigned long long checksum = 0;
};

unsigned long long PassOnce(const std::string &path)
{
    const metadata::SongInfo info = metadata::ReadSongInfo(path);
    return info.id3v1.Title.size() + info.id3v2.Title.size() * 3 + info.id3v2.Lyrics.size() * 5 +
           static_cast<unsigned long long>(info.header.Seconds) * 7 +
           static_cast<unsigned long long>(info.header.HeaderPosition + 1);
}

Figures Measure(const std::vector<std::string> &paths, int passes)
{
    using Clock = std::chrono::steady_clock;
    Figures figures;
    const auto start = Clock::now();
    const std::clock_t processorStart = std::clock();
    for (const std::string &path : paths)
        for (int pass = 0; pass < passes; ++pass)
            figures.checksum += PassOnce(path);
    const std::chrono::duration<double, std::micro> time = Clock::now() - start;
    figures.usPerFile = time.count() / static_cast<double>(paths.size());
    figures.processorUs = static_cast<double>(std::clock() - processorStart) * 1e6 /
                          CLOCKS_PER_SEC / static_cast<double>(paths.size());
    return figures;
}

// The fastest of some rounds over the same files.
struct Fastest {
    Figures one{1e9, 1e9, 0}, two{1e9, 1e9, 0};

    void Round(const std::vector<std::string> &paths, bool byFrames)
    {
        shell::TheGlobals().UnicodeTags = byFrames;
        Take(one, Measure(paths, 1));
        Take(two, Measure(paths, 2));
        shell::TheGlobals().UnicodeTags = false;
    }

private:
    static void Take(Figures &best, const Figures &now)
    {
        best.usPerFile = std::min(best.usPerFile, now.usPerFile);
        best.processorUs = std::min(best.processorUs, now.processorUs);
        best.checksum = now.checksum;
    }
};

void Print(const char *way, std::size_t files, const Fastest &fastest)
{
    std::printf("%s%zu files: one pass %.2f us, two passes %.2f us a file, checksum %llu\n", way,
                files, fastest.one.usPerFile, fastest.two.usPerFile, fastest.two.checksum);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: readpass FOLDER [ROUNDS]\n");
        return 2;
    }
    std::vector<std::string> paths;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[1]))
        if (entry.path().extension() == ".mp3")
            paths.push_back(entry.path().string());
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 5;
    Fastest usual, byFrames;
    for (int round = 0; round < rounds && !paths.empty(); ++round) {
        usual.Round(paths, false);
        byFrames.Round(paths, true);
    }
    if (paths.empty()) {
        std::fprintf(stderr, "no MP3 in %s\n", argv[1]);
        return 1;
    }
    Print("", paths.size(), usual);
    Print("by frames, ", paths.size(), byFrames);
    std::printf("processor time by frames: %.2f times that of the usual way\n",
                byFrames.one.processorUs / usual.one.processorUs);
    return 0;
}

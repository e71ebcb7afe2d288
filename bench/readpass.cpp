// bench/readpass.cpp - what one look into an MP3 costs: the first pass over each file of a folder,
// and the second one right after it, as a regeneration asks for them.
//
//   readpass FOLDER [ROUNDS]
//
// Prints microseconds per file of the fastest round and a checksum of what was read.
#include "metadata/mp3info.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

struct Figures {
    double usPerFile = 0;
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
    for (const std::string &path : paths)
        for (int pass = 0; pass < passes; ++pass)
            figures.checksum += PassOnce(path);
    const std::chrono::duration<double, std::micro> time = Clock::now() - start;
    figures.usPerFile = time.count() / static_cast<double>(paths.size());
    return figures;
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
    double one = 1e9;
    double two = 1e9;
    unsigned long long checksum = 0;
    for (int round = 0; round < rounds; ++round) {
        one = std::min(one, Measure(paths, 1).usPerFile);
        const Figures both = Measure(paths, 2);
        two = std::min(two, both.usPerFile);
        checksum = both.checksum;
    }
    if (paths.empty()) {
        std::fprintf(stderr, "no MP3 in %s\n", argv[1]);
        return 1;
    }
    std::printf("%zu files: one pass %.2f us, two passes %.2f us a file, checksum %llu\n",
                paths.size(), one, two, checksum);
    return 0;
}

// bench/savetag.cpp - what an edit of a large song costs, against a plain copy of the file.
//
//   savetag FOLDER [MEGABYTES] [ROUNDS] [TAG MEGABYTES]
//
// FOLDER is on the disk to be measured. The floor is `cp --reflink=never` of the song and a flush.
// The waits between the steps of an edit are not counted: the clock port skips them. Prints medians
// in ms, ratios, the greatest memory, and a checksum of the songs written. The tag has a picture of
// 40 KB, or of TAG MEGABYTES.
#include "bench/timing.h"
#include "metadata/mp3info.h"
#include "metadata/tagframes.h"
#include "metadata/tagwriter.h"
#include "platform/machine.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "tests/support/silentdesktop.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

namespace
{

void MakeSong(const std::string &path, std::size_t megabytes, std::size_t pictureBytes)
{
    metadata::ID3v2Tag tag{"", "Title", "Artist", "Album", "1999", "", "Rock", 1, ""};
    std::string picture;
    metadata::AppendFrame(picture, "APIC", std::string(pictureBytes, 'p'));
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << metadata::BuildID3v2Tag(picture + std::string(1500, '\0'), tag, 3);
    std::string frame = "\xFF\xFB\x90\x64";
    frame.resize(417, '\x55');
    for (std::size_t bytes = 0; bytes < megabytes << 20; bytes += frame.size())
        out << frame;
    if (!out.flush())
        std::exit(1);
}

// The peak memory is measured from here on, so that it is that of the edits and not of making the
// song.
void ForgetPeakMemory()
{
    std::ofstream("/proc/self/clear_refs") << 5;
}

void FlushFile(const std::string &path)
{
    const int fd = open(path.c_str(), O_RDONLY);
    if (fd < 0 || fsync(fd) != 0)
        std::exit(1);
    close(fd);
}

void CopyAndFlush(const std::string &song)
{
    const std::string copy = song + ".copy";
    if (std::system(("cp --reflink=never '" + song + "' '" + copy + "'").c_str()) != 0)
        std::exit(1);
    FlushFile(copy);
    fs::remove(copy);
}

// Makes one edit: of the ID3v2 title, for which the whole file is written (the long way), or of the
// ID3v1 title alone (the short way).
// A box means that it failed.
unsigned long long Edit(const tests::QuietDesk &desk, const std::string &song, bool longWay,
                        int round)
{
    metadata::SongInfo old = metadata::ReadSongInfo(song);
    old.id3v2.Genre = "Rock";
    metadata::ID3v1Tag v1 = old.id3v1;
    metadata::ID3v2Tag v2 = old.id3v2;
    (longWay ? v2.Title : v1.Title) = "Title " + std::to_string(round);
    const bool saved = metadata::SaveTag(v1, v2, old.id3v1, old.id3v2, song, true, true, nullptr);
    if (!saved || desk.boxes > 0) {
        std::fprintf(stderr, "%s\n", desk.lastBox.c_str());
        std::exit(1);
    }
    return fs::file_size(song);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: savetag FOLDER [MEGABYTES] [ROUNDS] [TAG MEGABYTES]\n");
        return 2;
    }
    const std::string folder = argv[1];
    const std::size_t megabytes = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 12;
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 15;
    const std::size_t tagMegabytes = argc > 4 ? std::strtoul(argv[4], nullptr, 10) : 0;
    tests::QuietDesk desk;
    platform::TheMachine().desktop = &desk;
    platform::TheMachine().clock = &desk;
    shell::SetAppPath(folder);
    shell::TheGlobals().UpdateDBAfterEditing = false;
    fs::create_directories(folder);
    const std::string song = folder + "/song.mp3";
    MakeSong(song, megabytes, tagMegabytes > 0 ? tagMegabytes << 20 : 40'000);
    ForgetPeakMemory();

    unsigned long long checksum = 0;
    int number = 0;
    for (const bool backup : {true, false})
        for (const bool longWay : {true, false}) {
            shell::TheGlobals().BackUpFiles = backup;
            Edit(desk, song, longWay, ++number); // puts the folder of backups in place
            const auto flush = [] { sync(); };
            const double floor = bench::MedianMs(
                rounds, [&] { CopyAndFlush(song); }, flush);
            const double edit = bench::MedianMs(
                rounds, [&] { checksum += Edit(desk, song, longWay, ++number); }, flush);
            std::printf("%s, backup %s: %.1f ms, copy and flush %.1f ms, ratio %.2f (at most %s)\n",
                        longWay ? "long way " : "short way", backup ? "on " : "off", edit, floor,
                        edit / floor, backup ? "2.5" : "1.5");
        }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("peak memory %ld KiB for %zu MB of sound and a tag of %zu MB, checksum %llu\n",
                usage.ru_maxrss, megabytes, tagMegabytes, checksum);
    return 0;
}

// bench/dirtree.cpp - what opening a folder in the folder tree costs, against a bare listing of the
// folder with one look into each sub-folder, in the same run.
//
//   dirtree FOLDER [SUBFOLDERS] [ROUNDS]
//
// Makes the sub-folders in FOLDER where they are missing, each with one folder in it. Prints the
// median of each in milliseconds, their ratio, and the number of nodes; fails when that is wrong.
#include "bench/timing.h"
#include "platform/machine.h"
#include "platform/posix/disk/systemfolders.h"
#include "platform/posix/systemclock.h"
#include "platform/terminal/terminaldesktop.h"
#include "tests/support/fakeports.h"
#include "ui/cDirTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

namespace fs = std::filesystem;

constexpr int kJudged = 10000; // sub-folders from which on the time is judged
constexpr double kLimit = 2.0;

void MakeFolders(const std::string &folder, int count)
{
    for (int number = 0; number < count; number++) {
        char name[32];
        std::snprintf(name, sizeof name, "Folder %06d", number);
        fs::create_directories(fs::path(folder) / name / "inner");
    }
}

// Lists the folders, then the first folder in each: every listing of this kind must read at least
// that.
int ListBarely(const std::string &path)
{
    DIR *folder = opendir(path.c_str());
    std::vector<std::string> names;
    while (const dirent *entry = readdir(folder))
        if (entry->d_type == DT_DIR && entry->d_name[0] != '.')
            names.emplace_back(entry->d_name);
    int found = 0;
    for (const std::string &name : names) {
        const int fd = openat(dirfd(folder), name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        DIR *sub = fdopendir(fd);
        while (const dirent *entry = readdir(sub))
            if (entry->d_type == DT_DIR && entry->d_name[0] != '.') {
                found++;
                break;
            }
        closedir(sub);
    }
    closedir(folder);
    return found;
}

int OpenInTree(const std::string &path)
{
    ui::KeyedTree tree;
    ui::cDirTree dirTree;
    dirTree.SetTV(tree);
    dirTree.ListDrives("");
    tree.ClickExpander(dirTree.FindPath(path));
    return tree.Count();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: dirtree FOLDER [SUBFOLDERS] [ROUNDS]\n");
        return 2;
    }
    const int count = argc > 2 ? std::atoi(argv[2]) : 20000;
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 7;
    const std::string folder = fs::absolute(argv[1]).string();
    MakeFolders(folder, count);

    tests::FakeDrives drives; // the measured folder is the only drive
    drives.roots = {folder};
    platform::posix::SystemFolders folders;
    platform::posix::SystemClock clock;
    platform::terminal::TerminalDesktop desktop;
    platform::Machine &machine = platform::TheMachine();
    machine.folders = &folders;
    machine.clock = &clock;
    machine.desktop = &desktop;

    int looked = 0, nodes = 0;
    ListBarely(folder);
    const double floorMs = bench::MedianMs(rounds, [&] { looked = ListBarely(folder); });
    const double treeMs = bench::MedianMs(rounds, [&] { nodes = OpenInTree(folder); });
    std::printf("subfolders=%d bare_ms=%.1f tree_ms=%.1f ratio=%.2f nodes=%d\n", looked, floorMs,
                treeMs, treeMs / floorMs, nodes);
    // The desktop, the computer and the drive, then each sub-folder and the one in it.
    const bool right = looked == count && nodes == 3 + 2 * count;
    return right && (count < kJudged || treeMs <= kLimit * floorMs) ? 0 : 1;
}

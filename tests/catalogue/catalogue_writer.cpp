// catalogue_writer FOLDER ROUNDS FIRST COUNT [group] - looks up each path
// "/w/FIRST".."/w/FIRST+COUNT-1" and adds a row for it when there is none, as adding a file does;
// all of this ROUNDS times. With "group" it does so in groups. Prints the longest wait of one round
// in milliseconds; ends with 1 at the first failure.
#include "catalogue/adoclass.h"
#include "catalogue/rowgroups.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

using namespace catalogue;

namespace
{

bool AddOne(const ADOclass &database, const std::string &path)
{
    RowStep step(database);
    ADOclass &access = step.Access();
    const std::vector<Value> byPath{path, std::string(kNoExclusion)};
    const auto known = Records(access.ExecuteSQL("SEL_ByPath", kStoredSelect, byPath));
    if (access.Succeeded && known->AtEnd())
        access.ExecuteSQL("INSERT INTO MP3s\rVALUES (¹, ¹, ¹, ¹, ¹, ¹, ¹, '" + path + "', ¹, 0)",
                          kDetect, std::vector<Value>(8, std::string("text")), "¹");
    if (!access.Succeeded)
        std::fprintf(stderr, "%s\n", access.ErrorMessage.c_str());
    return access.Succeeded;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 5)
        return 2;
    ADOclass access;
    access.TipoLectura = 1;
    access.DirBase = std::string(argv[1]) + "/";
    access.DataBaseName = "MP3s";
    const int rounds = std::atoi(argv[2]), first = std::atoi(argv[3]), count = std::atoi(argv[4]);
    bool isAnyLost = false;
    auto groups = argc > 5 ? std::make_unique<RowGroups>() : nullptr;
    double longestMs = 0;
    for (int round = 0; round < rounds; ++round) {
        for (int i = first; i < first + count; ++i) {
            const auto start = std::chrono::steady_clock::now();
            if (!AddOne(access, "/w/" + std::to_string(i)))
                return 1;
            if (groups)
                groups->WhenSettled(
                    [&isAnyLost](const std::string &lost) { isAnyLost |= !lost.empty(); });
            const std::chrono::duration<double, std::milli> took =
                std::chrono::steady_clock::now() - start;
            longestMs = std::max(longestMs, took.count());
        }
    }
    if (groups)
        groups->Close();
    if (isAnyLost)
        return 1;
    std::printf("%.1f\n", longestMs);
    return 0;
}

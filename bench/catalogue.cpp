// catalogue SHIPPED FOLDER ROWS - the time of statements in a copy of the shipped catalogue: adding
// and updating one row in a group, the rows with one value, one folder; and the seven sorted
// statements of the field tree compared with the same seven through SQLite's own interface, every
// column, in SQLite's own order. Prints a checksum with the times.
#include "bench/barewalks.h"
#include "bench/opencopy.h"
#include "bench/timing.h"
#include "shell/globals.h"

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

using namespace catalogue;

namespace
{

struct Song {
    std::vector<Value> tag; // Title to Lyrics
    std::string path;
};

std::string Words(std::mt19937 &random, int count)
{
    static const char *const kWords[] = {"river", "moon", "the", "of",    "Éric", "night", "don't",
                                         "blue",  "Ñu",   "a",   "train", "last", "song",  "Über"};
    std::string text;
    for (int i = 0; i < count; ++i)
        text += std::string(i > 0 ? " " : "") + kWords[random() % std::size(kWords)];
    return text;
}

// A library with few artists and albums, one song in five with lyrics of 1.5 kB.
Song MakeSong(int number)
{
    std::mt19937 random(static_cast<unsigned>(number / 12));
    const std::string artist = Words(random, 2) + std::to_string(number / 120);
    const std::string album = Words(random, 3) + std::to_string(number / 12);
    random.seed(static_cast<unsigned>(number));
    const std::string title = Words(random, 4);
    const std::string lyrics = number % 5 == 0 ? Words(random, 280) : "";
    return {{title, artist, album, std::to_string(1960 + number / 12 % 60), Words(random, 3),
             "Rock", lyrics},
            "/music/" + artist + "/" + album + "/" + std::to_string(number) + " " + title + ".mp3"};
}

bool Run(const ADOclass &database, const Song &song, bool update)
{
    RowStep step(database);
    ADOclass &access = step.Access();
    const std::vector<Value> byPath{song.path, std::string(kNoExclusion)};
    const bool isNew = Records(access.ExecuteSQL("SEL_ByPath", kStoredSelect, byPath))->AtEnd();
    if (isNew) {
        auto values = song.tag;
        values.emplace_back(std::string());
        std::string path;
        for (const char c : song.path)
            path += c == '\'' ? std::string("''") : std::string(1, c);
        access.ExecuteSQL("INSERT INTO MP3s\rVALUES (¹, ¹, ¹, ¹, ¹, ¹, ¹, '" + path + "', ¹, 0)",
                          kDetect, values, "¹");
        return access.Succeeded;
    }
    auto values = song.tag;
    if (update)
        values[0] = std::get<std::string>(values[0]) + "!";
    values.emplace_back(song.path);
    access.ExecuteSQL("Edit1", kStoredUpdate, values);
    values.erase(values.begin() + 1);
    access.ExecuteSQL("Edit2", kStoredUpdate, values);
    return access.Succeeded;
}

void TimeRows(ADOclass &access, const std::vector<Song> &songs, const char *name, bool update)
{
    const bench::Stopwatch watch;
    int failures = 0;
    {
        RowGroups groups;
        for (const auto &song : songs)
            failures += Run(access, song, update) ? 0 : 1;
    }
    const double us = watch.Ms() * 1000 / static_cast<double>(songs.size());
    std::printf("%-34s %8.2f us a row, %d failed\n", name, us, failures);
}

// The same reads through the program, of the one column that each order needs.
bench::Walked SortedReads(ADOclass &access)
{
    std::size_t bytes = 0;
    const bench::Stopwatch watch;
    for (const std::string field : shell::FieldNames) {
        if (field == "List")
            continue;
        const auto records =
            Records(access.ExecuteSQL("SELECT *\rFROM MP3s\rORDER BY " + field, kDetect));
        const int index = records->FindField(field);
        for (; !records->AtEnd(); records->MoveNext())
            bytes += records->Text(index).size();
    }
    return {watch.Ms(), bytes};
}

void TimeQuery(ADOclass &access, const char *name, const char *query, const Params &params)
{
    const bench::Stopwatch watch;
    const auto records = Records(access.ExecuteSQL(query, kStoredSelect, params));
    const double found = watch.Ms();
    std::size_t bytes = 0;
    for (; !records->AtEnd(); records->MoveNext())
        for (const int column : {0, 1, 2, 3, 4, 5, 7, 8})
            bytes += records->Text(column).size();
    std::printf("%-34s %8.2f ms found, %.2f ms read, %lld rows, %zu bytes\n", name, found,
                watch.Ms(), static_cast<long long>(records->RecordCount()), bytes);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4)
        return 2;
    const bench::OpenCopy copy(argv[1], argv[2]);
    std::vector<Song> songs;
    for (int i = 0; i < std::atoi(argv[3]); ++i)
        songs.push_back(MakeSong(i));
    ADOclass &access = *DataAccess;
    TimeRows(access, songs, "look up and insert", false);
    TimeRows(access, songs, "look up and edit, the same values", false);
    TimeRows(access, songs, "look up and edit, other values", true);
    TimeQuery(access, "SEL_ByGenre, all rows", "SEL_ByGenre", Value(std::string("ROCK ")));
    TimeQuery(access, "SEL_ByArtist", "SEL_ByArtist", songs[songs.size() / 2].tag[1]);
    const auto &path = songs[songs.size() / 2].path;
    const std::string album = path.substr(0, path.rfind('/') + 1);
    TimeQuery(access, "SEL_ByPath, a folder", "SEL_ByPath",
              std::vector<Value>{album + "%", album + "%/%"});
    CloseCatalogue();
    for (int round = 0; round < 3; ++round) {
        const auto [bareMs, bareBytes] = bench::BareWalks(copy.File());
        const auto [ourMs, ourBytes] = SortedReads(access);
        std::printf("seven sorted reads: %.0f ms, bare walks %.0f ms, ratio %.3f (%zu of %zu "
                    "bytes)\n",
                    ourMs, bareMs, ourMs / bareMs, ourBytes, bareBytes);
    }
    return 0;
}

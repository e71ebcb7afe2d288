// fuzz/seeds.cpp - writes the inputs that the fuzz targets start from: fuzz_seeds FOLDER
#include "tests/support/mp3bytes.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace
{

using tests::Frame3;
using tests::Tag;
using tests::Z;

std::vector<std::string> Bodies()
{
    const std::string fields = Frame3("TIT2", "Title") + Frame3("TPE1", "Artist") +
                               Frame3("TALB", "Album") + Frame3("TYER", "1999") +
                               Frame3("TRCK", "7/12");
    return {
        fields + Frame3("TCON", "(17)Rock") + std::string(64, '\0'),
        Frame3("COMM", Z("engdesc\0old")) + Frame3("COMM", Z("eng\0new")) +
            Frame3("USLT", Z("eng\0[00:01]La la")),
        Frame3("TIT2", "x", Z("\0\x80")) + Frame3("TCON", "Pop") + Frame3("TRCK", "3"),
        Z("TT2\0\0\x06\0Title") + Z("TCO\0\0\x05\0(17)") + Z("COM\0\0\x09\0eng\0Words"),
        fields + Frame3("APIC", Z("image/png\0\x03\0") + std::string(300, '\xFF')),
    };
}

std::vector<std::string> Songs()
{
    const std::string audio = tests::Header128() + std::string(413, '\0');
    const std::string tag1 = tests::Tag1("One", "Two", "Three", "1999", "Words", 3, 17);
    std::vector<std::string> songs = {audio, audio + tag1, tag1, "ID3", Tag(3, "") + audio};
    int version = 2;
    for (const std::string &body : Bodies())
        songs.push_back(Tag(version++ % 3 + 2, body) + audio + tag1);
    for (const std::string &body : Bodies())
        songs.push_back(Tag(3, body) + audio);
    return songs;
}

// The first byte decides what the others are: a statement with values, or the tags and the path of
// a song.
std::vector<std::string> Statements()
{
    const std::string next = "\xFF\xFE";
    return {
        "\x80INSERT INTO Lists VALUES(?, ?)" + next + "why?" + next + "b",
        "\xC1INSERT INTO MP3s\rVALUES (\u00B9, \u00B9, '\u00B9', 0)" + next + "\u00B9" + next + "'",
        "\x80SELECT * FROM MP3s WHERE Title LIKE ? ORDER BY Title" + next + "%a%",
        "\x80"
        "DELETE * FROM [Lists] WHERE LIST_Name = #1# -- ?" +
            next + "\n; DROP TABLE MP3s",
        "\1Title" + next + "Artist" + next + "Album" + next + "1999" + next + "Words" + next +
            "(17)" + next + "La la" + next + "song",
        "\1\xB9" + next + "\xB9'" + next + "?" + next + "--" + next + "/*" + next + "(17)\xB9" +
            next + "\xB9\xB9" + next + "\u00B9?'",
    };
}

bool Write(const std::filesystem::path &folder, const std::vector<std::string> &seeds)
{
    std::filesystem::create_directories(folder);
    for (std::size_t i = 0; i < seeds.size(); ++i) {
        std::ofstream out(folder / ("seed" + std::to_string(i)), std::ios::binary);
        out << seeds[i];
        if (!out.flush())
            return false;
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: fuzz_seeds FOLDER\n");
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::vector<std::string> bodies = Bodies();
    for (std::string &body : bodies)
        body.insert(0, 1, '\3'); // the target's first byte is the version
    std::vector<std::string> edits = Songs();
    for (std::size_t i = 0; i < edits.size(); ++i)
        edits[i].insert(0, 1, static_cast<char>(0x61 + i)); // what changes, what is written
    const bool done = Write(folder / "fuzz_filepass", Songs()) &&
                      Write(folder / "fuzz_id3v2", bodies) && Write(folder / "fuzz_edit", edits) &&
                      Write(folder / "fuzz_unicodetag", Songs()) &&
                      Write(folder / "fuzz_statement", Statements());
    return done ? 0 : 1;
}

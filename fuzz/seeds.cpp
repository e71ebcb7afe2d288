// fuzz/seeds.cpp - writes the inputs that the fuzz targets start from: fuzz_seeds FOLDER
#include "runtime/hash.h"
#include "tests/metadata/unicode/tagbytes.h"
#include "tests/support/mp3bytes.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
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

// Tags of all versions, with frames that other programs write, alone and several in a song.
std::vector<std::string> FramedSongs()
{
    using tests::Frame22, tests::Frame23, tests::Frame24, tests::TagOf;
    const std::string audio = tests::Header128() + std::string(60, '\x55');
    const std::string tag1 = tests::Tag1("One", "Two", "Three", "1999", "Words", 3, 17);
    const std::string old = Frame22("TT2", Z("\0Title")) + Frame22("TP1", Z("\1\xFF\xFE\x42\x30")) +
                            Frame22("COM", Z("\0eng\0Words")) + Frame22("PIC", Z("\0PNG\3\0data")) +
                            Frame22("CRM", Z("o\0x"));
    const std::string usual = Frame23("TIT2", Z("\0Title")) +
                              Frame23("TYER", Z("\0"
                                                "1999")) +
                              Frame23("TRCK", Z("\0"
                                                "3/12")) +
                              Frame23("TCON", Z("\0(17)")) + Frame23("COMM", Z("\0eng\0Words")) +
                              Frame23("USLT", Z("\1eng\xFF\xFE\0\0\xFF\xFELa")) +
                              Frame23("APIC", Z("\0image/png\0\3\0\xFF\xFE\0")) +
                              Frame23("PRIV", Z("o\0\xFF\xE0"), 0x20) + std::string(9, '\0');
    const std::string today =
        Frame24("TIT2", Z("\3\xD0\x91")) + Frame24("TPE1", Z("\3One\0Two")) +
        Frame24("TDRC", Z("\3"
                          "2004-05-06T07:08")) +
        Frame24("TDOR", Z("\3"
                          "1969")) +
        Frame24("TIPL", Z("\3mix\0You")) + Frame24("TMCL", Z("\3drums\0Me")) +
        Frame24("TXXX", Z("\3Key\0Value")) + Frame24("APIC", Z("\3image/png\0\3\xD0\x91\0\xFF\0")) +
        Frame24("PRIV", Z("\0\0\0\4o\0\xFF\0\xE0"), 0x03) +
        Frame24("CHAP", Z("c\0") + std::string(16, '\1') + Frame24("TIT2", Z("\3Part")));
    const std::string synced = Frame24("SYLT", Z("\3eng\2\1\0One\0\0\0\4\0Two\0\0\0\x10\0"));
    const std::string seek = Frame24("SEEK", Z("\0\0\0\x40"));
    std::vector<std::string> songs = {
        TagOf(2, old) + audio,
        TagOf(3, usual) + audio + tag1,
        TagOf(3, usual, 0x80) + audio,
        TagOf(3, Z("\0\0\0\6\0\0\0\0\0\0") + usual, 0x40) + audio,
        TagOf(4, today) + audio + tag1,
        TagOf(4, today + synced, 0x80) + audio,
        TagOf(4, Z("\0\0\0\7\1\x40\0") + today, 0x40) + audio,
        audio + TagOf(4, today, 0x10) + tag1,
        TagOf(4, seek + synced) + audio + TagOf(4, today, 0x10),
        TagOf(3, usual) + TagOf(4, today) + TagOf(2, old) + audio,
    };
    for (std::size_t i = 0; i < songs.size(); ++i) // chooses the change and the answer
        songs[i].insert(0, {static_cast<char>(0x08 + 9 * i), static_cast<char>(i % 2)});
    return songs;
}

// The first byte decides what the other bytes are: a statement with values, or the tags and the
// path of a song.
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

// The first byte decides how the other bytes become a file; a record has 80 bytes, in the machine's
// byte order.
std::vector<std::string> KnownSongs()
{
    const auto record = [](std::string_view path, std::uint64_t flags) {
        const runtime::Hash128 hash = runtime::Hash128Of(path);
        const std::array<std::uint64_t, 10> numbers = {hash.low, hash.high, 1, 2, 3,
                                                       4,        5,         6, 7, flags};
        return std::string(reinterpret_cast<const char *>(numbers.data()), sizeof numbers);
    };
    const std::string two = record("/a", 0x105) + record("/b", 0xF0A);
    return {Z("\3"), "\3" + two, "\7" + two + two, "\2" + record("/c", 0x30), Z("\1\0"), Z("\0\0")};
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
        edits[i].insert(0, 1, static_cast<char>(0x61 + i)); // chooses the change and the tags
    const bool done = Write(folder / "fuzz_filepass", Songs()) &&
                      Write(folder / "fuzz_id3v2", bodies) && Write(folder / "fuzz_edit", edits) &&
                      Write(folder / "fuzz_knownsongs", KnownSongs()) &&
                      Write(folder / "fuzz_unicodetag", Songs()) &&
                      Write(folder / "fuzz_unicodeedit", FramedSongs()) &&
                      Write(folder / "fuzz_statement", Statements());
    return done ? 0 : 1;
}

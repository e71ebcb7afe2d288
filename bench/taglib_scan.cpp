// taglib_scan: a plain TagLib + SQLite catalogue scan, the baseline to beat.
// Walks a tree and inserts one row per .mp3: the text fields, the lyrics, the
// audio properties.
//
//   g++ -O2 -std=c++17 taglib_scan.cpp -o taglib_scan -ltag -lsqlite3
//   ./taglib_scan DIR DB [--autocommit] [--fileref] [--no-db] [--style fast|average|accurate]
//
// default        one transaction around the whole scan
// --autocommit   one implicit transaction per row, WAL, synchronous=NORMAL
// --fileref      open through TagLib::FileRef instead of TagLib::MPEG::File
// --no-db        read the tags only: TagLib's own cost
// DB is removed first.

#include <sqlite3.h>
#include <strings.h>
#include <sys/stat.h>
#include <taglib/fileref.h>
#include <taglib/id3v2tag.h>
#include <taglib/mpegfile.h>
#include <taglib/mpegproperties.h>
#include <taglib/unsynchronizedlyricsframe.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace
{

struct Row {
    std::string path, title, artist, album, comment, genre, lyrics;
    unsigned year = 0, track = 0;
    int bitrate = 0, sample_rate = 0, channels = 0, length_ms = 0;
    int layer = 0, version = 0, mode = 0;
    long long size = 0, mtime = 0;
};

void fill(Row &row, TagLib::MPEG::File &file)
{
    if (const TagLib::Tag *tag = file.tag()) {
        row.title = tag->title().to8Bit(true);
        row.artist = tag->artist().to8Bit(true);
        row.album = tag->album().to8Bit(true);
        row.comment = tag->comment().to8Bit(true);
        row.genre = tag->genre().to8Bit(true);
        row.year = tag->year();
        row.track = tag->track();
    }
    if (const TagLib::ID3v2::Tag *v2 = file.ID3v2Tag(false)) {
        const TagLib::ID3v2::FrameList &list = v2->frameList("USLT");
        if (!list.isEmpty())
            if (auto *uslt = dynamic_cast<TagLib::ID3v2::UnsynchronizedLyricsFrame *>(list.front()))
                row.lyrics = uslt->text().to8Bit(true);
    }
    if (const TagLib::MPEG::Properties *audio = file.audioProperties()) {
        row.bitrate = audio->bitrate();
        row.sample_rate = audio->sampleRate();
        row.channels = audio->channels();
        row.length_ms = audio->lengthInMilliseconds();
        row.layer = audio->layer();
        row.version = audio->version();
        row.mode = audio->channelMode();
    }
}

void check(int rc, sqlite3 *db, const char *what)
{
    if (rc == SQLITE_OK || rc == SQLITE_DONE || rc == SQLITE_ROW)
        return;
    std::fprintf(stderr, "%s: %s\n", what, sqlite3_errmsg(db));
    std::exit(1);
}

void exec(sqlite3 *db, const char *sql)
{
    check(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), db, sql);
}

void insert(sqlite3 *db, sqlite3_stmt *stmt, const Row &row)
{
    int n = 0;
    auto text = [&](const std::string &s) {
        sqlite3_bind_text(stmt, ++n, s.data(), int(s.size()), SQLITE_STATIC);
    };
    auto number = [&](long long v) { sqlite3_bind_int64(stmt, ++n, v); };
    text(row.path);
    text(row.title);
    text(row.artist);
    text(row.album);
    number(row.year);
    number(row.track);
    text(row.comment);
    text(row.genre);
    text(row.lyrics);
    number(row.bitrate);
    number(row.sample_rate);
    number(row.channels);
    number(row.length_ms);
    number(row.layer);
    number(row.version);
    number(row.mode);
    number(row.size);
    number(row.mtime);
    check(sqlite3_step(stmt), db, "insert");
    sqlite3_reset(stmt);
}

} // namespace

int main(int argc, char **argv)
{
    bool autocommit = false, fileref = false, no_db = false;
    auto style = TagLib::AudioProperties::Average;
    if (argc < 3) {
        std::fprintf(stderr, "usage: taglib_scan DIR DB [--autocommit] [--fileref] [--no-db]"
                             " [--style fast|average|accurate]\n");
        return 2;
    }
    for (int i = 3; i < argc; i++) {
        const std::string arg = argv[i];
        if (arg == "--autocommit") {
            autocommit = true;
        } else if (arg == "--fileref") {
            fileref = true;
        } else if (arg == "--no-db") {
            no_db = true;
        } else if (arg == "--style" && i + 1 < argc) {
            const std::string s = argv[++i];
            style = s == "fast"       ? TagLib::AudioProperties::Fast
                    : s == "accurate" ? TagLib::AudioProperties::Accurate
                                      : TagLib::AudioProperties::Average;
        } else {
            std::fprintf(stderr, "unknown option %s\n", arg.c_str());
            return 2;
        }
    }

    sqlite3 *db = nullptr;
    sqlite3_stmt *stmt = nullptr;
    if (!no_db) {
        for (const char *suffix : {"", "-wal", "-shm", "-journal"})
            unlink((std::string(argv[2]) + suffix).c_str());
        check(sqlite3_open(argv[2], &db), db, "open");
        if (autocommit) {
            exec(db, "PRAGMA journal_mode=WAL");
            exec(db, "PRAGMA synchronous=NORMAL");
        }
        exec(db, "CREATE TABLE MP3s(id INTEGER PRIMARY KEY, Path TEXT UNIQUE, Title TEXT,"
                 " Artist TEXT, Album TEXT, Year INT, Track INT, Comment TEXT, Genre TEXT,"
                 " Lyrics TEXT, Bitrate INT, SampleRate INT, Channels INT, LengthMs INT,"
                 " Layer INT, Version INT, Mode INT, Size INT, Mtime INT)");
        check(sqlite3_prepare_v2(
                  db,
                  "INSERT INTO MP3s(Path,Title,Artist,Album,Year,Track,Comment,Genre,Lyrics,"
                  "Bitrate,SampleRate,Channels,LengthMs,Layer,Version,Mode,Size,Mtime)"
                  " VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
                  -1, &stmt, nullptr),
              db, "prepare");
        if (!autocommit)
            exec(db, "BEGIN");
    }

    unsigned long files = 0, tagged = 0, with_lyrics = 0;
    unsigned long long length_ms = 0;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(argv[1])) {
        const std::string &path = entry.path().native();
        if (path.size() < 5 || strcasecmp(path.c_str() + path.size() - 4, ".mp3") != 0)
            continue;
        Row row;
        row.path = path;
        struct stat st;
        if (stat(path.c_str(), &st) != 0)
            continue;
        row.size = st.st_size;
        row.mtime = st.st_mtime;
        if (fileref) {
            TagLib::FileRef ref(path.c_str(), true, style);
            if (auto *file = dynamic_cast<TagLib::MPEG::File *>(ref.file()))
                fill(row, *file);
        } else {
            TagLib::MPEG::File file(path.c_str(), true, style);
            if (file.isValid())
                fill(row, file);
        }
        files++;
        tagged += !row.title.empty();
        with_lyrics += !row.lyrics.empty();
        length_ms += row.length_ms;
        if (!no_db)
            insert(db, stmt, row);
    }
    if (!no_db) {
        if (!autocommit)
            exec(db, "COMMIT");
        sqlite3_finalize(stmt);
        sqlite3_close(db);
    }
    std::printf("%lu files, %lu with a title, %lu with lyrics, %.1f hours\n", files, tagged,
                with_lyrics, length_ms / 3.6e6);
    return 0;
}

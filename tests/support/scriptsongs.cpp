#include "tests/support/scriptsongs.h"

#include "tests/metadata/unicode/tagbytes.h"
#include "tests/support/mp3bytes.h"

#include <utility>

namespace tests
{

namespace
{

constexpr char kUtf8 = '\x03';

} // namespace

std::string TagBytes(const ScriptSong &song, std::string_view lyrics)
{
    std::string frames;
    for (const auto &[name, text] : {std::pair("TIT2", song.title), std::pair("TPE1", song.artist),
                                     std::pair("TALB", song.album), std::pair("TDRC", song.year),
                                     std::pair("TCON", song.genre)})
        frames += Frame24(name, kUtf8 + std::string(text));
    const std::string described = kUtf8 + Z("eng\0");
    if (!song.comment.empty())
        frames += Frame24("COMM", described + std::string(song.comment));
    if (!lyrics.empty())
        frames += Frame24("USLT", described + std::string(lyrics));
    return TagOf(4, frames);
}

std::string SongBytes(const ScriptSong &song, std::string_view lyrics)
{
    return TagBytes(song, lyrics) + Audio();
}

} // namespace tests

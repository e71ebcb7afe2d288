// tests/support/scriptsongs.h - songs in other scripts, as programs of today tag them, and a scope
// in which such tags are read by their frames.
#pragma once

#include "shell/globals.h"

#include <string>
#include <string_view>

namespace tests
{

struct ScriptSong {
    std::string_view title, artist, album, year, comment, genre;
};

inline constexpr ScriptSong kJapanese{"桜の花", "宇多田ヒカル", "初恋", "1999", "良い", "邦楽"};
inline constexpr ScriptSong kRussian{"Группа крови", "Кино", "Ночь", "1988", "Хорошо", "Рок"};
inline constexpr ScriptSong kArabic{
    "نسم علينا الهوى", "فيروز", "بياع الخواتم", "1968", "جميل", "Pop"};
inline constexpr ScriptSong kEmoji{"😀🎵 Party", "👩‍🎤", "🌍", "2020", "é😀", "Dance"};
inline constexpr ScriptSong kMixed{
    "Hello مرحبا World", "فيروز & ÑANDÚ", "Ὀδύσσεια", "2021", "", "Jazz"};
inline constexpr ScriptSong kScriptSongs[] = {kJapanese, kRussian, kArabic, kEmoji, kMixed};

// A tag of version 2.4 with the texts in UTF-8; lyrics only where there are some.
std::string TagBytes(const ScriptSong &song, std::string_view lyrics = {});

// A short song with that tag.
std::string SongBytes(const ScriptSong &song, std::string_view lyrics = {});

// While one exists, tags are read and written by their frames.
class ReadingByFrames
{
public:
    ReadingByFrames() { shell::TheGlobals().UnicodeTags = true; }
    ~ReadingByFrames() { shell::TheGlobals().UnicodeTags = false; }
    ReadingByFrames(const ReadingByFrames &) = delete;
    ReadingByFrames &operator=(const ReadingByFrames &) = delete;
};

} // namespace tests

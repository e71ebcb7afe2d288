// lyrics/lyricsimport.h - imports a text file as the lyrics of the MP3 of the same name in the
// catalogue. No state.
#pragma once

#include <string>

namespace lyrics
{

// Looks up the MP3 that is named like `txtPath` (its last 4 characters replaced by ".mp3") in any
// folder of the catalogue, and saves the whole text as its lyrics; the text is taken as file bytes,
// unchanged; when tags are read by frames, it is decoded: by its byte order mark, else as UTF-8 if
// it is valid UTF-8, else with the code page. A box reports the outcome; progress words go to
// `lblProgress`. Errors: FileError when the text file cannot be read.
void AddLyricsFromTXT(const std::string &txtPath);

} // namespace lyrics

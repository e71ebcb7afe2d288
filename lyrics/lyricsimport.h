// lyrics/lyricsimport.h - puts a text file into the lyrics of the catalogued MP3 of the same
// name. No state.
#pragma once

#include <string>

namespace lyrics
{

// Looks up the MP3 that is named like `txtPath` (its last 4 characters replaced by ".mp3") in any
// folder of the catalogue, and saves the whole text as its lyrics; the text is taken as file bytes,
// as it stands. Tells in a box how it went; progress words go to `lblProgress`.
// Errors: FileError when the text file cannot be read.
void AddLyricsFromTXT(const std::string &txtPath);

} // namespace lyrics

// lyrics/lyricsimport.h - imports a text file as the lyrics of the MP3 of the same name in the
// catalogue. No state.
#pragma once

#include <string>

namespace lyrics
{

// Looks in the catalogue for the MP3 with the name of `txtPath` (its last 4 characters replaced by
// ".mp3") in any folder, and saves the whole text as its lyrics. The text is taken as file bytes,
// unchanged. A box shows the result; progress is shown in `lblProgress`.
// Errors: FileError when the text file cannot be read.
void AddLyricsFromTXT(const std::string &txtPath);

} // namespace lyrics

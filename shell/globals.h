// shell/globals.h - what start-up sets for the whole program: the fields, the preferences, the
// paths. Written by Main, by the Preferences window and by commands that change one of them; read
// everywhere. Texts are UTF-8.
#pragma once

#include "ui/controls/label.h"

#include <array>
#include <string>
#include <string_view>

namespace shell
{

inline constexpr std::string_view kApplicationTitle = "Quenlin";

inline constexpr std::string_view kAuthor = "Orvald Tamsin";

// The address for suggestions and failure reports: in a reserved domain, until there is a real one.
inline constexpr std::string_view kSupportAddress = "support@quenlin.example";

// The number after the caption "ICQ:". There is none yet, so the line is hidden.
inline constexpr std::string_view kContactNumber;

// The catalogue's fields as the program numbers them; "List" comes before "Path".
inline constexpr std::array<const char *, 8> FieldNames = {"Title",   "Artist", "Album", "Year",
                                                           "Comment", "Genre",  "List",  "Path"};

// The preferences in use, and the paths that start-up makes from them.
struct Globals {
    std::array<bool, 8> LoadField{true, true, true, true, true, true, true, true};
    int InitialTVWidth = 3000;           // twips
    std::string MP3Directory = "C:\\";   // the root of the walk; a path, byte for byte
    bool BackUpFiles = true;             // copy the MP3 to Backup before a rewrite
    bool UpdateDBAfterEditing = true;    // a saved tag is written to the catalogue as well
    bool ShowLyricsAutomatically = true; // the lyrics window follows the song
    bool DeleteBeforeAppend = false;     // regeneration empties the table first
    bool AutoCheckNewerVersion = false;
    bool WebStyle = true;         // the information panel beside the list
    bool UnicodeTags = false;     // ID3v2 tags are read and written by their frames and encodings
    std::string LanguageFilePath; // program folder + separator + setting `Language`
    std::string HelpFilePath;     // program folder + separator + "Brandolet.hlp"
    ui::Label lblProgress;        // the splash's progress line
};

// The globals of the program. A test sets them to their defaults again.
Globals &TheGlobals();

} // namespace shell

#include "browser/commands.h"

#include <array>

namespace browser
{

namespace
{

constexpr MenuLine kMenuLines[] = {
    {"mnuFile", "", "&File", ""},
    {"submnuAddFile", "mnuFile", "&Add File", ""},
    {"submnuTagEditor", "mnuFile", "&Tag Editor", ""},
    {"submnuFileHyphen", "mnuFile", "-", ""},
    {"submnuFileInfo", "mnuFile", "&File Info             Alt+3", "", false},
    {"submnuDuplicateEntry", "mnuFile", "&Duplicate entry", "", false},
    {"submnuRename", "mnuFile", "&Rename File", "", false},
    {"submnuExport", "mnuFile", "&Export file", "", false},
    {"g", "mnuFile", "-", ""},
    {"submnuPlayList", "mnuFile", "&PlayList", "", true, false, true},
    {"submnuAddPlayList", "submnuPlayList", "&Add Playlist", ""},
    {"submnuRemovePlayList", "submnuPlayList", "&Remove PlayList", ""},
    {"j", "mnuFile", "-", ""},
    {"submnuExit", "mnuFile", "&Quit", "Ctrl+Q"},

    {"mnuTools", "", "&Tools", ""},
    {"submnuShowLyricsCurrentSong", "mnuTools", "Show &Lyrics Current Song", ""},
    {"submnuSongControls", "mnuTools", "Song's &Controls", ""},
    {"h", "mnuTools", "-", ""},
    {"submnuRegenerateDatabase", "mnuTools", "&Regenerate Database", ""},
    {"submnuRefreshTree", "mnuTools", "Refresh &Tree", ""},
    {"submnuhyphen", "mnuTools", "-", ""},
    {"submnuSearch", "mnuTools", "&Search", ""},
    {"submnuhyphen1", "mnuTools", "-", ""},
    {"submnuWebStyle", "mnuTools", "WebStyle", "", true, true},
    {"submnuPreferences", "mnuTools", "&Preferences", ""},
    {"submnuToolsHyphen", "mnuTools", "-", ""},
    {"submnuNewerVersion", "mnuTools", "Check the existence of a newer &version", ""},

    {"mnuHelp", "", "&Help", ""},
    {"submnuShowHelp", "mnuHelp", "Contents", "F1"},
    {"hyp1", "mnuHelp", "-", ""},
    {"submnuTechSupport", "mnuHelp", "Technical Support", ""},
    {"submnuForums", "mnuHelp", "Online &Forums", ""},
    {"submnuTutorials", "mnuHelp", "Online &Tutorials", ""},
    {"hyp2", "mnuHelp", "-", ""},
    {"submnuTips", "mnuHelp", "&Tips", ""},
    {"submnuSetLanguage", "mnuHelp", "&Language", "", true, false, true},
    {"submnuEnglish", "submnuSetLanguage", "English", ""},
    {"hyLang", "submnuSetLanguage", "-", ""},
    {"submnuLng(0)", "submnuSetLanguage", "", ""},
    {"submnuHelpHyphen1", "mnuHelp", "-", ""},
    {"submnuAbout", "mnuHelp", "&About", ""},
};

constexpr ToolButton kToolButtons[] = {
    {"submnuAddFile", "Add file", "MP3"},
    {"", "", ""},
    {"submnuFileInfo", "File Info", "FileInfo"},
    {"submnuDuplicateEntry", "Duplicate Entry", "DuplicateMP3"},
    {"submnuRename", "Rename File", "Rename"},
    {"submnuExport", "Export File", "Export"},
    {"", "", ""},
    {"submnuShowLyricsCurrentSong", "Show &Lyrics Current Song", "Lyrics"},
    {"submnuSongControls", "Song's Controls", "Controls"},
    {"", "", ""},
    {"submnuSearch", "Search", "Search"},
    {"", "", ""},
    {"submnuExit", "Quit", "Exit"},
};

constexpr MenuImage kMenuImages[] = {
    {"MP3", "submnuAddFile"},
    {"TechSupport", "submnuTechSupport"},
    {"Rename", "submnuRename"},
    {"Search", "submnuSearch"},
    {"FileInfo", "submnuFileInfo"},
    {"VerCheck", "submnuNewerVersion"},
    {"Tip", "submnuTips"},
    {"TreeView", "submnuRefreshTree"},
    {"DuplicateMP3", "submnuDuplicateEntry"},
    {"PlayList", "submnuPlayList"},
    {"Add", "submnuAddPlayList"},
    {"Remove", "submnuRemovePlayList"},
    {"Help", "submnuShowHelp"},
    {"Lyrics", "submnuShowLyricsCurrentSong"},
    {"Export", "submnuExport"},
    {"FileInfo", "submnuTagEditor"},
    {"Controls", "submnuSongControls"},
    {"Exit", "submnuExit"},
};

constexpr PopupLine kPopupLines[] = {
    {"FileOptions", "File Options", "fOptions", "", ""},
    {"FileInfo", "&File Info", "Info", "FileInfo", "cp_Info"},
    {"ExportFile", "&Export file", "Export", "Export", "cp_Export"},
    {"RenameFile", "&Rename file", "Rename", "Rename", "cp_Export"}, // exports, it does not rename
    {"DuplicateEntry", "&Duplicate entry", "Duplicate", "DuplicateMP3", "cp_Duplicate"},
    {"ControlOptions", "Control Options", "fOptions", "", ""},
    {"PlaySong", "&Play Song", "Play", "Play", "cp_Play"},
    {"PauseSong", "Pa&use Song", "Pause", "Pause", "cp_Pause"},
    {"StopSong", "&Stop Song", "Stop", "Stop", "cp_Stop"},
};

constexpr std::string_view kFileCommands[] = {"submnuFileInfo", "submnuDuplicateEntry",
                                              "submnuExport", "submnuRename"};

constexpr std::string_view kCommandsNotBuilt[] = {
    "submnuAddFile",
    "submnuTagEditor",
    "submnuFileInfo",
    "submnuDuplicateEntry",
    "submnuRename",
    "submnuExport",
    "submnuAddPlayList",
    "submnuRemovePlayList",
    "submnuShowLyricsCurrentSong",
    "submnuSongControls",
    "submnuSearch",
    "submnuPreferences",
    "submnuNewerVersion",
    "submnuTechSupport",
    "submnuTips",
    "cp_Info",
    "cp_Export",
    "cp_Duplicate",
    "cp_Play",
    "cp_Pause",
    "cp_Stop",
    "PlayMP3File",
    "PlayListFile", // listing the entries of a play list's node
};

} // namespace

std::span<const MenuLine> MenuLines()
{
    return kMenuLines;
}

std::span<const ToolButton> ToolButtons()
{
    return kToolButtons;
}

std::span<const MenuImage> MenuImages()
{
    return kMenuImages;
}

std::span<const PopupLine> PopupLines()
{
    return kPopupLines;
}

std::span<const std::string_view> FileCommands()
{
    return kFileCommands;
}

std::span<const std::string_view> CommandsNotBuilt()
{
    return kCommandsNotBuilt;
}

} // namespace browser

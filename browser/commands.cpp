#include "browser/commands.h"

#include "browser/itemkinds.h"
#include "runtime/error.h"
#include "runtime/text.h"

#include <algorithm>
#include <map>
#include <utility>

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

constexpr MenuLine kExtraMenuLines[] = {
    {"mnuExtras", "", "E&xtras", ""},
    {"submnuExportBookmarks", "mnuExtras", "Export &Bookmarks...", ""},
    {"submnuUnicodeTags", "mnuExtras", "Read &Unicode tags", ""},
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
    {"RenameFile", "&Rename file", "Rename", "Rename",
     "cp_Export"}, // the entry "Rename" of the popup exports files
    {"DuplicateEntry", "&Duplicate entry", "Duplicate", "DuplicateMP3", "submnuDuplicateEntry"},
    {"ControlOptions", "Control Options", "fOptions", "", ""},
    {"PlaySong", "&Play Song", "Play", "Play", "cp_Play"},
    {"PauseSong", "Pa&use Song", "Pause", "Pause", "cp_Pause"},
    {"StopSong", "&Stop Song", "Stop", "Stop", "cp_Stop"},
};

constexpr std::string_view kFileCommands[] = {"submnuFileInfo", "submnuDuplicateEntry",
                                              "submnuExport", "submnuRename"};

struct Registered {
    std::function<void()> handler;
    std::function<bool()> enabled; // empty: always enabled
};

struct State {
    std::map<std::string, Registered> commands;           // by name in upper case
    std::map<std::string, OpenItem, std::less<>> openers; // by marker
};

State &TheState()
{
    static State state;
    return state;
}

const Registered *Find(std::string_view name)
{
    const auto found = TheState().commands.find(runtime::UpperAscii(name));
    return found == TheState().commands.end() ? nullptr : &found->second;
}

// The name without an index: "submnuLng" for "submnuLng(2)".
std::string_view ControlName(std::string_view name)
{
    return name.substr(0, name.find('('));
}

// Whether the tables have a command of this name: a menu entry, or the command of a popup entry.
bool IsCommandName(std::string_view name)
{
    const auto same = [name](std::string_view other) {
        return runtime::EqualAscii(ControlName(name), ControlName(other));
    };
    if (name.empty())
        return false;
    const auto isSame = [&](const MenuLine &line) { return same(line.name); };
    return std::any_of(std::begin(kMenuLines), std::end(kMenuLines), isSame) ||
           std::any_of(std::begin(kExtraMenuLines), std::end(kExtraMenuLines), isSame) ||
           std::any_of(std::begin(kPopupLines), std::end(kPopupLines),
                       [&](const PopupLine &line) { return same(line.command); });
}

} // namespace

std::span<const MenuLine> MenuLines()
{
    return kMenuLines;
}

std::span<const MenuLine> ExtraMenuLines()
{
    return kExtraMenuLines;
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

void RegisterCommand(std::string_view name, std::function<void()> handler,
                     std::function<bool()> enabled)
{
    if (!IsCommandName(name))
        throw runtime::RuntimeError(runtime::kMemberNotFound);
    TheState().commands.insert_or_assign(runtime::UpperAscii(name),
                                         Registered{std::move(handler), std::move(enabled)});
}

bool IsRegistered(std::string_view name)
{
    return Find(name) != nullptr;
}

bool CanRun(std::string_view name)
{
    const Registered *command = Find(name);
    return command != nullptr && (!command->enabled || command->enabled());
}

void RunHandler(std::string_view name)
{
    const Registered *command = Find(name);
    if (command == nullptr)
        throw runtime::RuntimeError(runtime::kMemberNotFound);
    const auto running = command->handler; // a copy: it may be replaced while it runs
    running();
}

void RegisterItemKind(std::string_view marker, OpenItem open)
{
    const ItemKind *kind = KindOfKey(marker);
    if (kind == nullptr || kind->marker != marker)
        throw runtime::RuntimeError(runtime::kMemberNotFound);
    TheState().openers.insert_or_assign(std::string(marker), std::move(open));
}

OpenItem OpenerOf(std::string_view marker)
{
    const auto found = TheState().openers.find(marker);
    return found == TheState().openers.end() ? OpenItem{} : found->second;
}

void ForgetRegistrations()
{
    TheState() = State{};
}

} // namespace browser

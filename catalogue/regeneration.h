// catalogue/regeneration.h - rebuilds the catalogue from the folder tree under `MP3Directory`:
// walks every folder, brings each MP3 through AddOrUpdateMP3, and writes the integrity report.
#pragma once

#include "ui/controls/progressbar.h"
#include "ui/controls/statusbar.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue
{

// The window's controls that a run speaks to, and what it calls up. app/ fills them in; each may be
// absent. All of them outlive the run.
struct RegenerationControls {
    ui::StatusBar *SB = nullptr; // panels "Playing" and "Blank"
    ui::ProgressBar *PBar = nullptr;
    std::function<void()> LayPBarOverPanel;  // PBar into panel 2 of SB (BasProgressBar)
    std::function<void(bool)> EnableTVAndLV; // clicks on the tree and the list
    std::function<void()> EmptyLV;           // the list loses its rows
    std::function<void()> EmailBugReport;    // mails what the clipboard holds

    // Shows each failure as it is met, instead of the list that goes on the clipboard at the end:
    // for a terminal, which keeps nothing.
    std::function<void(const std::string &failure)> ShowFailure;

    // The line of panel "Playing" with the files done and their number (0 while they are counted),
    // for a window that shows a run of its own.
    std::function<void(std::string_view line, std::int64_t value, std::int64_t maximum)> Progress;
};
RegenerationControls &TheRegenerationControls();

// What the last run found out; for the terminal, which has no list to look at.
struct RegenerationSummary {
    std::uint64_t number = 0;                   // of the call of ListRefresh; 0 before the first
    std::int64_t files = 0;                     // MP3 files that were met
    std::int64_t failed = 0;                    // files that could not be added or updated
    std::vector<std::string> unreadableFolders; // path, ": ", the system's words
    std::string errors;        // the reasons as the clipboard gets them: 64 KiB, then a count
    std::int64_t unlisted = 0; // the reasons that found no room in `errors`
    bool rowsLost = false;     // the catalogue did not take a row, or could not be emptied
    std::int64_t reported = 0; // files that have an entry in the report
    bool anyReported = false;  // the report has an entry
    bool stopped = false;      // ended early by StopRegeneration
    // The walker was at the folder already: nothing was done, the rest is of the run before.
    bool skipped = false;
};
const RegenerationSummary &LastRegeneration();

// One run over `MP3Directory`. With `showProgress` the bar is laid over the status bar and shown.
// It returns at once, with TV and LV disabled, when the folder box stands at `MP3Directory`
// already: a folder is regenerated once per run of the program. A call during a run does nothing.
// The tree is not refreshed.
// Errors: kPathNotFound when the folder is absent or none is set, FileError when it cannot be read
//         or the report not be written, each with the path in its words; TV and LV are enabled
//         again, PBar is hidden and its panels are empty, as after a run, but the folder box stands
//         nowhere, so that the run can be tried again.
void ListRefresh(bool showProgress);

// The path of the main window's file box, and a move of it alone, without the folder box: the next
// ListRefresh does not take it for a folder that was done.
const std::string &PathOfMP3s();
void MoveMP3s(const std::string &path);

// The names of the MP3 files in a folder, in the order of a walk; none when it cannot be read.
std::vector<std::string> MP3FilesIn(const std::string &path);

// Whether a run is under way, and the request that it end at the next file: no question is asked
// then, and the report stays without its closing lines. Without a run it does nothing.
bool IsRegenerating();
void StopRegeneration();

// The report's name in the program's folder; the misspelling is the name.
inline constexpr std::string_view kReportName = "Quenlin - MP3s' Intregity Report.qrp";

// The report's full path.
std::string ReportPath();

} // namespace catalogue

// catalogue/regeneration.h - the regeneration: reads all MP3 files in the folder tree
// `MP3Directory` into the catalogue with AddOrUpdateMP3, and writes the integrity report.
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

// The controls of the window that a run uses, and the functions that it calls. app/ sets them; each
// may be missing. All of them outlive the run.
struct RegenerationControls {
    ui::StatusBar *SB = nullptr; // panels "Playing" and "Blank"
    ui::ProgressBar *PBar = nullptr;
    std::function<void()> LayPBarOverPanel;  // puts PBar into panel 2 of SB (BasProgressBar)
    std::function<void(bool)> EnableTVAndLV; // clicks on the tree and the list
    std::function<void()> EmptyLV;           // removes all rows of the list
    std::function<void()> EmailBugReport;    // opens a mail with the text of the clipboard

    // Shows each failure at once, instead of putting a list on the clipboard at the end: for a
    // terminal, which has no clipboard.
    std::function<void(const std::string &failure)> ShowFailure;

    // Gets the text of the panel "Playing", the number of files done and the number of all files (0
    // while they are being counted), for a window that shows a run itself.
    std::function<void(std::string_view line, std::int64_t value, std::int64_t maximum)> Progress;

    // Asks whether tags are to be read by their frames from now on (shell::Globals::UnicodeTags),
    // because `files` of `allFiles` files have texts that cannot be read in another way. Returns:
    // true when they are; the run is then repeated.
    std::function<bool(std::int64_t files, std::int64_t allFiles)> OfferUnicodeTags;
};
RegenerationControls &TheRegenerationControls();

// Results of the last run, for the terminal.
struct RegenerationSummary {
    std::uint64_t number = 0; // calls of ListRefresh so far, skipped ones included
    std::int64_t files = 0;   // MP3 files that were found
    std::int64_t failed = 0;  // files that could not be added or updated
    std::vector<std::string> unreadableFolders; // path, ": ", the operating system's words
    std::string errors;        // the reasons as the clipboard gets them: 64 KiB, then a count
    std::int64_t unlisted = 0; // the reasons that found no room in `errors`
    bool rowsLost = false;     // the catalogue did not take a row, or could not be emptied
    std::int64_t reported = 0; // files that have an entry in the report
    // Files with texts that only reading by frames can decode; 0 when tags are read by frames.
    std::int64_t unicodeFiles = 0;
    bool anyReported = false; // the report has an entry
    bool stopped = false;     // ended early by StopRegeneration
    // Nothing was done, because the folder box was at the folder already; the other fields are
    // those of the run before.
    bool skipped = false;
};
const RegenerationSummary &LastRegeneration();

// Does one run over `MP3Directory`. With `showProgress` the progress bar is shown over the status
// bar. Returns at once, with TV and LV disabled, when the folder box is at `MP3Directory` already:
// a folder is regenerated only once in each run of the program. Does nothing when called during a
// run. The tree is not refreshed.
// Errors: kPathNotFound when the folder is missing or not set; FileError when it cannot be read or
// the report cannot be written; each with the path. TV and LV are then enabled, PBar is hidden and
// its panels are empty, as after a run, but the folder box has no folder, so that the run can be
// tried again.
void ListRefresh(bool showProgress);

// The next ListRefresh runs, also over the folder that was done.
void AllowRegeneration();

// Changes the path of the main window's file box alone, without the folder box, so that the next
// ListRefresh does not take the folder for one that was done.
void MoveMP3s(const std::string &path);

// The names of the MP3 files in a folder, in the order of a run; none when it cannot be read.
std::vector<std::string> MP3FilesIn(const std::string &path);

// Whether a run is going on. StopRegeneration makes it end at the next file: no question is asked
// then, and the report gets no closing lines. Without a run it does nothing.
bool IsRegenerating();
void StopRegeneration();

// The report's name in the program's folder; the misspelling is intended.
inline constexpr std::string_view kReportName = "Quenlin - MP3s' Intregity Report.qrp";

// The report's full path.
std::string ReportPath();

} // namespace catalogue

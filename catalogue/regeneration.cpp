#include "catalogue/regeneration.h"

#include "catalogue/addfile.h"
#include "catalogue/adoclass.h"
#include "catalogue/lockwait.h"
#include "catalogue/regeneration/emptysongs.h"
#include "catalogue/regeneration/integrityreport.h"
#include "catalogue/regeneration/knownsongs.h"
#include "catalogue/regeneration/lookahead.h"
#include "catalogue/regeneration/walkedsong.h"
#include "catalogue/regeneration/walker.h"
#include "catalogue/rowgroups.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "shell/language.h"
#include "shell/openaddress.h"
#include "shell/settings.h"

#include <cerrno>
#include <string_view>
#include <utility>

namespace catalogue
{

namespace
{

struct State {
    RegenerationControls controls;
    RegenerationSummary summary;
    bool running = false;
    bool stopRequested = false;
};

State &TheState()
{
    static State state;
    return state;
}

constexpr std::string_view kMailQuestion =
    "Some files could not be added. If you think this is a bug, please\r"
    "send me an email with the reason why it cannot be added (this has\r"
    "just be pasted into your clipboard.\r\r"
    "Would you like to send me an email now?";

constexpr std::string_view kReportQuestion =
    "There were some 'mistakes' while trying to get all the info.\r"
    " Would you like to see the report now?\r\r"
    "A file named \"Quenlin - MP3s' Intregity Report.qrp\"\r"
    "has been saved in this application folder for future reference";

// The greatest length of the list of failures for the clipboard.
constexpr std::size_t kLongestListBytes = 65536;

// The current folder of the program that shows the report.
constexpr std::string_view kViewerFolder = "C:\\";

void SetPanel(std::string_view key, std::string_view text)
{
    if (ui::StatusBar *bar = TheState().controls.SB; bar != nullptr)
        bar->SetText(key, text);
}

void EmptyPanels()
{
    SetPanel("Blank", "");
    SetPanel("Playing", "");
}

void EnableTVAndLV(bool enabled)
{
    if (const auto &enable = TheState().controls.EnableTVAndLV)
        enable(enabled);
}

void ShowPBar(bool visible)
{
    if (ui::ProgressBar *bar = TheState().controls.PBar; bar != nullptr)
        bar->SetVisible(visible);
}

std::string CreationText()
{
    platform::Clock &clock = *platform::TheMachine().clock;
    const platform::LocalTime now = clock.Now();
    return clock.DateText(now) + " " + clock.TimeText(now);
}

// While it exists, the listings of the count are kept for the walk.
struct KeptListings {
    KeptListings() { Dirs().UseCache(cache.get()); }
    ~KeptListings() { Dirs().UseCache(nullptr); }
    KeptListings(const KeptListings &) = delete;
    KeptListings &operator=(const KeptListings &) = delete;

    // The other owner is the helper of a ListingAhead.
    std::shared_ptr<ListingCache> cache = std::make_shared<ListingCache>();
};

// The state of one run; the counters are large enough for any collection.
struct Run {
    IntegrityReport report{ReportPath()};
    ListingCache &listings;
    std::int64_t maximum; // the number of files that were counted
    bool isTableEmpty;    // no song has a row
    KnownSongs known{shell::AppFile(kKnownSongsName), !isTableEmpty, maximum};
    LookAhead ahead{Dirs().Path(), listings, known};
    RowGroups groups{};
    std::int64_t value = 0; // files done so far
};

void SetProgress(const Run &run)
{
    if (ui::ProgressBar *bar = TheState().controls.PBar; bar != nullptr)
        bar->SetValue(run.value);
}

void ReportProgress(std::string_view line, std::int64_t value, std::int64_t maximum)
{
    if (const auto &show = TheState().controls.Progress)
        show(line, value, maximum);
}

void ShowCount(const Run &run)
{
    SetPanel("Blank", std::to_string(run.value) + "/" + std::to_string(run.maximum));
}

// Sets the folder boxes to `folder`. Returns: false when it cannot be listed; `failure` then has
// the reason.
bool Enter(const std::string &folder, std::string &failure)
{
    try {
        Dirs().SetPath(folder);
    } catch (const runtime::RuntimeError &error) {
        failure = runtime::ShownText(folder) + ": " + error.description;
        return false;
    }
    return true;
}

// Sets the folder boxes to the first folder. The error names the folder, or the setting when none
// is set.
void EnterRoot(const std::string &folder)
{
    try {
        Dirs().SetRoot(folder);
        MP3s().SetPath(folder);
    } catch (const runtime::RuntimeError &error) {
        const std::string name = folder.empty() ? "MP3 Directory" : folder;
        throw runtime::RuntimeError(error.number,
                                    runtime::ShownText(name) + ": " + error.description);
    }
}

// Whether the run must end at the next file, because StopRegeneration was called or the program is
// to end.
bool IsToStop()
{
    TheState().stopRequested |= platform::IsEndRequested();
    return TheState().stopRequested;
}

// The number of MP3 files below the current folder. ScanFolder reports folders that have no list.
std::int64_t CountFiles()
{
    const std::string here = Dirs().Path();
    std::int64_t count = 0;
    std::string failure;
    for (std::int64_t index = 0; !IsToStop(); index++) {
        const std::string entry = Dirs().List(index);
        if (entry.empty())
            break;
        if (!Enter(entry, failure))
            continue;
        platform::TheDesktop().DoEvents();
        count += MP3s().ListCount();
        count += CountFiles();
        Dirs().SetPath(here);
    }
    return count;
}

// Adds an entry to the list of failures, or only counts it when the list is full. Each entry ends
// with a line end.
void ListFailure(std::string entry)
{
    if (!entry.ends_with('\r'))
        entry.push_back('\r');
    if (const auto &show = TheState().controls.ShowFailure)
        show(entry);
    RegenerationSummary &summary = TheState().summary;
    if (summary.unlisted == 0 && summary.errors.size() + entry.size() <= kLongestListBytes)
        summary.errors += entry;
    else
        summary.unlisted++;
}

// Adds the last line: the number of entries for which there was no room.
void EndList()
{
    RegenerationSummary &summary = TheState().summary;
    if (summary.unlisted > 0)
        summary.errors += "... and " + std::to_string(summary.unlisted) + " more\r";
}

// Adds a file that failed to the list, with its name, unless the reason contains the path already.
// An error at run time has no reason: then only the name is listed.
void NoteFailure(const std::string &path, const std::string &reason)
{
    TheState().summary.failed++;
    const std::string shownPath =
        runtime::ShownText(path); // a line end in the name could look like another entry
    if (reason.empty())
        ListFailure(shownPath + "\r");
    else if (reason.find(path) != std::string::npos)
        ListFailure(runtime::ShownLines(runtime::Replace(reason, path, shownPath)));
    else
        ListFailure(shownPath + ": " + runtime::ShownLines(reason));
}

void NoteOutcome(const std::string &path, const AddOutcome &outcome)
{
    if (outcome.result != kFailed)
        return;
    TheState().summary.rowsLost |= outcome.rowLost;
    NoteFailure(path, outcome.reason);
}

// Handles one file of the walk: its entry in the report, if a tag is missing, then its row. Which
// tags it has is found out first, without their fields, because the entry is written before the
// row. `path`: bytes.
void ScanFile(Run &run, std::string path)
{
    run.ahead.Advance();
    WalkedSong song = FindTags(path, run.known);
    if (song.failure == EINTR && IsToStop())
        return; // the end was requested during a wait: this file does not count
    RegenerationSummary &summary = TheState().summary;
    summary.files++;
    if (run.report.LogTagFailure(path, song.tags.hasID3v1, song.tags.hasID3v2)) {
        summary.anyReported = true;
        summary.reported++;
    }
    if (song.tags.hasTextsForFrames)
        summary.unicodeFiles++;
    AddWalkedSong(std::move(song), run.groups, run.known,
                  [path = std::move(path)](const AddOutcome &to) { NoteOutcome(path, to); });
}

void ScanFiles(Run &run)
{
    const std::string folder = MP3s().Path();
    std::string line;
    for (std::int64_t index = 0; index < MP3s().ListCount(); index++) {
        const std::string name = MP3s().List(index);
        line.assign("Adding: ").append(runtime::Replace(name, " & ", " && "));
        SetPanel("Playing", line);
        ShowCount(run);
        ReportProgress(line, run.value, run.maximum);
        platform::TheDesktop().DoEvents();
        if (IsToStop())
            return;
        ScanFile(run, runtime::JoinPath(folder, name));
        platform::TheDesktop().DoEvents();
        run.value++;
        SetProgress(run);
    }
}

// Handles the files of the current folder, then its sub-folders.
void ScanFolder(Run &run)
{
    const std::string here = Dirs().Path();
    ScanFiles(run);
    for (std::int64_t index = 0; !IsToStop(); index++) {
        const std::string entry = Dirs().List(index);
        if (entry.empty())
            break;
        std::string failure;
        if (!Enter(entry, failure)) {
            ListFailure(failure + "\r");
            TheState().summary.unreadableFolders.push_back(failure);
            continue;
        }
        MP3s().SetPath(entry);
        ScanFolder(run);
        Dirs().SetPath(here);
    }
    ShowCount(run);
    platform::TheDesktop().DoEvents();
}

void OfferMail()
{
    if (!TheState().controls.ShowFailure) {
        platform::TheDesktop().EmptyClipboard();
        platform::TheDesktop().SetClipboardText(TheState().summary.errors);
    }
    if (platform::TheDesktop().MessageBox(kMailQuestion, platform::Buttons::YesNo) !=
        platform::Answer::Yes)
        return;
    if (const auto &mail = TheState().controls.EmailBugReport)
        mail();
}

void OfferReport()
{
    const platform::Answer answer = platform::TheDesktop().MessageBox(
        kReportQuestion, platform::Buttons::YesNo, "Mistakes", platform::BoxIcon::Exclamation);
    if (answer == platform::Answer::Yes)
        shell::OpenAddress(ReportPath(), std::string(kViewerFolder));
}

// Returns: the number of MP3 files. Uses the listings as the helper has just read them.
std::int64_t CountAll(const KeptListings &listings)
{
    const ListingAhead ahead(listings.cache, Dirs().SharedListing());
    Dirs().UseCache(listings.cache.get(), true);
    const std::string line = shell::GetLanguageText("Counting MP3s", "CountingMP3s", "Progress");
    SetPanel("Playing", line);
    ReportProgress(line, 0, 0);
    const std::int64_t inRoot = MP3s().ListCount();
    const std::int64_t maximum = CountFiles() + inRoot;
    Dirs().UseCache(listings.cache.get());
    if (ui::ProgressBar *bar = TheState().controls.PBar; bar != nullptr)
        bar->SetMax(maximum);
    return maximum;
}

// A table that could not be emptied would keep the rows of deleted files: this counts as a failure.
void EmptyTable()
{
    if (const std::string reason = EmptySongs(); !reason.empty()) {
        TheState().summary.rowsLost = true;
        ListFailure(reason + "\r");
    }
}

// Whether the user has changed how tags are read, so that the run is to be repeated.
bool IsToBeReadAnew()
{
    const RegenerationSummary &summary = TheState().summary;
    const auto &offer = TheState().controls.OfferUnicodeTags;
    if (summary.unicodeFiles == 0 || !offer || !offer(summary.unicodeFiles, summary.files))
        return false;
    shell::SaveUnicodeTags(true);
    return true;
}

// Does one run. Returns: true when it is to be repeated.
bool Regenerate()
{
    const shell::Globals &globals = shell::TheGlobals();
    EnterRoot(globals.MP3Directory);
    if (globals.DeleteBeforeAppend)
        EmptyTable();
    if (ui::ProgressBar *bar = TheState().controls.PBar; bar != nullptr)
        bar->SetValue(0);
    const KeptListings listings;
    const std::int64_t maximum = CountAll(listings);
    Run run{.listings = *listings.cache,
            .maximum = maximum,
            .isTableEmpty = globals.DeleteBeforeAppend};
    ScanFolder(run);
    run.groups.Close();
    run.known.Save(!TheState().stopRequested);

    EndList();
    EmptyPanels();
    platform::TheDesktop().DoEvents();
    if (const auto &empty = TheState().controls.EmptyLV)
        empty();
    TheState().summary.stopped = TheState().stopRequested;
    if (TheState().summary.stopped)
        return false;
    if (!TheState().summary.errors.empty())
        OfferMail();
    run.report.Close(!TheState().summary.anyReported, MP3s().Path(), CreationText());
    if (IsToBeReadAnew())
        return true; // the second run writes its own report
    if (TheState().summary.anyReported)
        OfferReport();
    return false;
}

// While one exists, a run is going on.
struct RunningMark {
    RunningMark()
    {
        TheState().running = true;
        TheState().stopRequested = false;
        TheState().summary.number++;
        TheState().summary.skipped = false;
    }
    ~RunningMark() { TheState().running = false; }
    RunningMark(const RunningMark &) = delete;
    RunningMark &operator=(const RunningMark &) = delete;
};

} // namespace

RegenerationControls &TheRegenerationControls()
{
    return TheState().controls;
}

const RegenerationSummary &LastRegeneration()
{
    return TheState().summary;
}

void AllowRegeneration()
{
    Dirs().Clear();
}

void MoveMP3s(const std::string &path)
{
    MP3s().SetPath(path);
}

std::vector<std::string> MP3FilesIn(const std::string &path)
{
    FileBox files;
    files.SetPath(path);
    std::vector<std::string> names;
    for (std::int64_t index = 0; index < files.ListCount(); index++)
        names.push_back(files.List(index));
    return names;
}

bool IsRegenerating()
{
    return TheState().running;
}

void StopRegeneration()
{
    TheState().stopRequested = TheState().running;
    if (TheState().running)
        GiveUpLockWait();
}

void ListRefresh(bool showProgress)
{
    if (IsRegenerating())
        return;
    const RunningMark mark;
    EnableTVAndLV(false);
    if (showProgress) {
        if (const auto &layOver = TheState().controls.LayPBarOverPanel)
            layOver();
        ShowPBar(true);
        platform::TheDesktop().DoEvents();
    }
    // When no folder is set, the folder box is equal to the setting: both are empty. The walk must
    // report the error then.
    if (Dirs().Path() == shell::TheGlobals().MP3Directory && !Dirs().Path().empty()) {
        TheState().summary.skipped = true;
        return;
    }
    const auto forget = [] {
        const std::uint64_t number = TheState().summary.number;
        TheState().summary = {};
        TheState().summary.number = number;
    };
    forget();
    try {
        while (Regenerate())
            forget();
    } catch (const runtime::RuntimeError &) {
        Dirs().Clear(); // so that a run that failed can be tried again
        EmptyPanels();
        EnableTVAndLV(true);
        ShowPBar(false);
        throw;
    }
    EnableTVAndLV(true);
    ShowPBar(false);
}

std::string ReportPath()
{
    return shell::AppFile(kReportName);
}

} // namespace catalogue

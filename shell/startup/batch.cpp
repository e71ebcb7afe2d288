#include "shell/startup/batch.h"

#include "catalogue/addfile.h"
#include "catalogue/rowgroups.h"
#include "lyrics/lyricsimport.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/disk/wholefiles.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/text.h"
#include "shell/apppath.h"
#include "shell/progress.h"

#include <cerrno>

namespace shell
{

namespace
{

// The files with the same outcome: their lines, and the ending of the plural, which is empty or
// "s".
struct Accumulator {
    std::string lines;
    std::string plural;

    void Add(const std::string &line)
    {
        if (!lines.empty())
            plural = "s";
        lines += line;
    }
};

struct Outcomes {
    Accumulator added;
    Accumulator updated;
    Accumulator failed;
    bool rowsLost = false; // the catalogue did not take every row
};

// Notes the outcome of one file once its row is settled. A file without tags counts as failed here,
// although its row is in the catalogue.
void NoteOutcome(const std::string &element, const catalogue::AddOutcome &outcome,
                 Outcomes &outcomes)
{
    outcomes.rowsLost |= outcome.rowLost;
    const std::string shown =
        runtime::ShownText(element); // a line end in the name could look like another entry
    const std::string line = "    " + shown + "\r";
    if (outcome.result == catalogue::kAdded)
        outcomes.added.Add(line);
    else if (outcome.result == catalogue::kUpdated)
        outcomes.updated.Add(line);
    else
        outcomes.failed.Add(line + "  Reason: " +
                            runtime::ShownLines(runtime::Replace(outcome.reason, element, shown)));
}

void TakeElement(const std::string &element, catalogue::RowGroups &groups, Outcomes &outcomes)
{
    if (runtime::UpperText(runtime::Right(element, 4)) != ".TXT") {
        catalogue::AddInGroup(element, groups,
                              [element, &outcomes](const catalogue::AddOutcome &outcome) {
                                  NoteOutcome(element, outcome, outcomes);
                              });
        return;
    }
    ShowProgressText("Adding lyrics...", "Addinglyrics");
    lyrics::AddLyricsFromTXT(element);
}

// One block of the summary; empty when no file has this outcome. `outcome` follows the verb.
std::string FormatBlock(const Accumulator &files, std::string_view singular,
                        std::string_view plural, std::string_view outcome)
{
    if (files.lines.empty())
        return {};
    const bool one = files.plural.empty();
    std::string block = one ? "  This MP3" : "  These MP3";
    block.append(files.plural).append(one ? singular : plural).append(outcome);
    return block + "\r\r" + files.lines + "\r";
}

std::string FormatSummary(const Outcomes &outcomes)
{
    platform::Clock &clock = *platform::TheMachine().clock;
    const platform::LocalTime now = clock.Now();
    std::string summary = "\r" + std::to_string(now.day) + "/" + std::to_string(now.month) + "/" +
                          std::to_string(now.year) + " " + clock.TimeText(now) + "\r\r";
    summary += FormatBlock(outcomes.added, " was ", " were ", "added correctly:");
    summary += FormatBlock(outcomes.updated, " was ", " were ", "updated correctly:");
    summary += FormatBlock(outcomes.failed, "", "", " couldn't be added/updated:");
    return summary;
}

} // namespace

std::vector<std::string> SplitArguments(std::string_view arguments)
{
    std::vector<std::string> elements;
    for (const std::string &piece : runtime::Split(arguments, "\" \"")) {
        const std::string blanked = runtime::Replace(piece, "\"", " ");
        elements.emplace_back(runtime::Trim(blanked));
    }
    return elements;
}

bool RunBatch(const std::vector<std::string> &elements)
{
    Outcomes outcomes;
    catalogue::RowGroups groups;
    for (const std::string &element : elements) {
        if (platform::IsEndRequested())
            break;
        const platform::EndDeferral untilTheElementIsDone;
        TakeElement(element, groups, outcomes);
    }
    groups.Close();
    const std::string path = AppFile(kSummaryName);
    if (!platform::AppendToFile(path, FormatSummary(outcomes) + "\r\n"))
        throw runtime::FileError(errno, path);
    platform::CheckEndRequest();
    return !outcomes.rowsLost;
}

} // namespace shell

// catalogue/addfile.h - brings one MP3 file into the catalogue: the single path of the batch, of
// the regeneration and of the add command. The file itself is never changed. No state.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace catalogue
{

class RowGroups; // catalogue/rowgroups.h

// How it went. `kUntagged` is the result of a new file without any tag: its row is in the table all
// the same, with empty values.
enum AddResult : std::int16_t { kFailed = 0, kUntagged = 1, kAdded = 2, kUpdated = 3 };

// Reads the tags of `path` and inserts its row, or rewrites the row that is known under exactly
// this path (an untagged known file is kUpdated, its row blanked).
// `reason` is left as it was but for: kFailed, the failed statement's ErrorMessage, or, when the
// file cannot be read, the operating system's words and a carriage return (no row is touched then);
// a file without any tag, a line that names it (also where the result is then kUpdated).
// Tags that do not fit into the memory give kFailed and say so.
// A look-up that failed gives kFailed and touches no row, as the file may be known.
// Errors: none; a run-time failure on the way gives kFailed and goes on with the next step.
std::int16_t AddOrUpdateMP3(const std::string &path, std::string &reason);

// How a file of a job came out.
struct AddOutcome {
    std::int16_t result = kFailed;
    std::string reason;   // as AddOrUpdateMP3's
    bool rowLost = false; // the file could be read, and the catalogue did not take its row
};

// The same for one file of a job: calls `settled` once the row is safe, or lost with the rows of
// its group: at once, or when the group is closed, and for the files in their order. A row that was
// lost is kFailed, with the words of the failure as its reason. `settled` runs no statement.
void AddInGroup(const std::string &path, RowGroups &groups,
                std::function<void(AddOutcome)> settled);

} // namespace catalogue

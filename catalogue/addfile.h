// catalogue/addfile.h - adds one MP3 file to the catalogue, or updates its row. The batch, the
// regeneration and the add command all use this. The file itself is never changed. No state.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace catalogue
{

class RowGroups;  // catalogue/rowgroups.h
struct KnownSong; // catalogue/regeneration/knownsongs.h

// The result. `kUntagged`: a new file without any tag; its row was added nevertheless, with empty
// values.
enum AddResult : std::int16_t { kFailed = 0, kUntagged = 1, kAdded = 2, kUpdated = 3 };

// Reads the tags of `path` and inserts its row, or updates the row that has exactly this path (a
// known file without tags: kUpdated, the row gets empty values).
// `reason` is changed only in these cases: kFailed (the ErrorMessage of the statement that failed,
// or, when the file cannot be read, the operating system's words and a carriage return; no row is
// changed then); a file without any tag (a line with its name, also when the result is kUpdated).
// Tags that do not fit into memory give kFailed with a reason. A failed look-up gives kFailed and
// changes no row, because the file may have one.
// Errors: none; a RuntimeError of a step gives kFailed, and the next step follows.
std::int16_t AddOrUpdateMP3(const std::string &path, std::string &reason);

// The result for one file of a job.
struct AddOutcome {
    std::int16_t result = kFailed;
    std::string reason;   // see AddOrUpdateMP3
    bool rowLost = false; // the file could be read, but the catalogue did not take its row
};

// The same for one file of a job. Calls `settled` when the row is safe or lost: at once, or when
// its group is committed; in the order of the files. A row that was lost with its group is kFailed,
// with the words of the failure as its reason. `settled` must not run a statement.
void AddInGroup(const std::string &path, RowGroups &groups,
                std::function<void(AddOutcome)> settled);

// The same for a file that need not be read when `known` has a value and the file is in this state
// now: if it has rows, none of them is marked as a duplicate and all have the known texts, they
// stay as they are, which is what reading the file would lead to (kUpdated). Otherwise it is read.
// `known` then gets what has been read; no value when the file, or its rows, have to be looked at
// in any case the next time.
// Returns: whether the file was read.
bool AddInGroup(const std::string &path, RowGroups &groups, std::function<void(AddOutcome)> settled,
                std::optional<KnownSong> &known);

} // namespace catalogue

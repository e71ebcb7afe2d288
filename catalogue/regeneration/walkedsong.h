// catalogue/regeneration/walkedsong.h - one song of a walk: first which tags it has, then its row.
// A song that is known and has not changed since is not read when its rows have the texts that
// reading it would give. No state.
#pragma once

#include "catalogue/addfile.h"
#include "catalogue/regeneration/knownsongs.h"

#include <functional>
#include <optional>
#include <string>

namespace catalogue
{

// A song between the two steps.
struct WalkedSong {
    std::string path; // bytes
    SongTags tags;
    std::optional<KnownSong> known; // the file is in this state; no value: it was read
    int failure = 0;                // metadata::LastReadFailure of a file that was read
};

// Finds out which tags the song at `path` has: from `songs` when the file is in the state that is
// known, else from the file.
// Errors: none; `failure` is the reason why a file could not be read.
[[nodiscard]] WalkedSong FindTags(const std::string &path, const KnownSongs &songs);

// Adds the song, or updates its rows, and keeps in `songs` what has been read, or forgets the song
// when it has to be read again the next time. `settled` is called once, when the outcome is known
// (AddInGroup). No event may have run since FindTags: the file's bytes are not read again.
// Errors: none; see AddInGroup.
void AddWalkedSong(WalkedSong song, RowGroups &groups, KnownSongs &songs,
                   std::function<void(AddOutcome)> settled);

} // namespace catalogue

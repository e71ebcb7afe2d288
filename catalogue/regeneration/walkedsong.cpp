#include "catalogue/regeneration/walkedsong.h"

#include "metadata/mp3info.h"
#include "platform/machine.h"

#include <utility>

namespace catalogue
{

WalkedSong FindTags(const std::string &path, const KnownSongs &songs)
{
    WalkedSong song{path, {}, songs.Find(path), 0};
    if (song.known && platform::TheFiles().IsInState(song.known->file)) {
        song.tags = song.known->tags;
        return song;
    }
    song.known.reset();
    metadata::GetTagFlags(path, song.tags.hasID3v1, song.tags.hasID3v2);
    song.tags.hasTextsForFrames = metadata::HasTextsForFrames();
    song.failure = metadata::LastReadFailure();
    return song;
}

void AddWalkedSong(WalkedSong song, RowGroups &groups, KnownSongs &songs,
                   std::function<void(AddOutcome)> settled)
{
    const bool wasKnown = song.known.has_value();
    if (!wasKnown)
        metadata::KeepForNextPass();
    const bool isRead = AddInGroup(song.path, groups, std::move(settled), song.known);
    if (wasKnown)
        songs.CountRow(!isRead);
    if (song.known)
        songs.Keep(*song.known);
    else
        songs.Forget(song.path);
}

} // namespace catalogue

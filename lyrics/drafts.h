// lyrics/drafts.h - drafts: lyrics with marks that are not in the song's file yet, stored so that
// neither an error nor a kill of the program loses them. One file for each song, beside the
// settings. Paths are bytes, lyrics are file bytes. No state.
#pragma once

#include <optional>
#include <string>

namespace lyrics
{

// The folder of the drafts: "Drafts" in the folder of the settings. WriteDraft makes it.
std::string DraftFolder();

// The draft for the song at `path`. Returns: nothing when there is none, or when it cannot be read.
std::optional<std::string> ReadDraft(const std::string &path);

// Stores `text` as the draft of the song and replaces an earlier one, in one step: whatever fails,
// and whenever the program or the machine stops, either the old or the new draft is there,
// complete. It has been written to the disk when this returns.
// Errors: FileError.
void WriteDraft(const std::string &path, const std::string &text);

// Deletes the draft of the song; does nothing when there is none. Errors: FileError.
void RemoveDraft(const std::string &path);

} // namespace lyrics

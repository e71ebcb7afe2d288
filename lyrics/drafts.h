// lyrics/drafts.h - the marked lyrics of a song that are not in its file yet, kept so that neither
// an error nor a kill of the process loses them: one file for each song, beside the settings. Paths
// are the file system's bytes, lyrics are of either kind of texts; the draft's first line says
// which. No state.
#pragma once

#include "metadata/records.h"

#include <optional>
#include <string>

namespace lyrics
{

// The folder of the drafts: "Drafts" in the folder of the settings. WriteDraft makes it.
std::string DraftFolder();

// The draft for the song at `path`, as that kind of text. Nothing when there is none, or when it
// cannot be read. When the kind is file bytes, the three procedures ignore a draft in UTF-8 with a
// character that the code page lacks, so that nothing of it is lost.
std::optional<std::string> ReadDraft(const std::string &path,
                                     metadata::TextKind kind = metadata::TextKind::FileBytes);

// Keeps `text`, which is of that kind, as the draft of the song, in place of an earlier one, in one
// step: whatever fails and whenever the process or the machine stops, the old or the new draft
// exists, complete. It is on the disk when this returns. Errors: FileError.
void WriteDraft(const std::string &path, const std::string &text,
                metadata::TextKind kind = metadata::TextKind::FileBytes);

// Deletes the draft that ReadDraft returns; does nothing when there is none. Errors: FileError.
void RemoveDraft(const std::string &path, metadata::TextKind kind = metadata::TextKind::FileBytes);

} // namespace lyrics

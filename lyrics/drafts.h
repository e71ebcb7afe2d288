// lyrics/drafts.h - the marked lyrics of a song that are not in its file yet, kept so that neither
// an error nor a kill loses them: one file a song, beside the settings. Paths are the file system's
// bytes, lyrics are file bytes. No state.
#pragma once

#include <optional>
#include <string>

namespace lyrics
{

// The folder of the drafts: "Drafts" in the folder of the settings. Made by the first write.
std::string DraftFolder();

// The draft for the song at `path`. Nothing when there is none, or none that can be read.
std::optional<std::string> ReadDraft(const std::string &path);

// Keeps `text` as the draft of the song, in place of an earlier one, in one step: whatever fails
// and whenever the process or the machine stops, the old or the new draft is there, whole. It is on
// the disk when this returns. Errors: FileError.
void WriteDraft(const std::string &path, const std::string &text);

// Removes the song's draft; done also when there is none. Errors: FileError.
void RemoveDraft(const std::string &path);

} // namespace lyrics

// metadata/tagwriter.h - the one place where the program writes into a song: it writes both tags
// and keeps the audio between them. Paths are the file system's bytes, texts of records are of
// the kind that GetMP3Info gave them.
#pragma once

#include "metadata/records.h"
#include "ui/controls/label.h"

#include <cstdint>
#include <functional>
#include <string>

namespace metadata
{

// Gives the song the tags of the records. The edit is based on the bytes that GetMP3Info read: it
// must have read this file, and the file must not have changed since. (If GetMP3Info has read
// another file meanwhile, this one is read again, if it has not changed.)
//
// WriteID3v1, WriteID3v2: whether the tag is to be in the file; without it the old one is removed.
//     When only the ID3v1 tag changes, a tag that is not to be in the file stays.
// ProgressLabel: shows the steps; may be null.
// Changes the records: ID3v1 as BuildID3v1Tag does, ID3v2 as BuildID3v2Tag does.
// Returns: true when the file was to be rewritten, also when a step failed (see LastSaveResult);
//     false when nothing would change, or when nothing was written because the song has changed
//     since it was read.
// Errors: none thrown. Each error is reported in a box, and the next step follows; a missing folder
//     for the backups is created, and a file that is not found is not an error. Whatever fails, and
//     whenever the process ends: a complete song, old or new, is in its folder, under its own name
//     or with ".bck" after it. Owner, permissions and attributes are kept. A symbolic link still
//     points at the song; of several hard links only the real path of FileName gets the new
//     version.
// With shell::Globals::UnicodeTags the edit is made by frames (metadata/frameedit.h): a field that
// the records do not change keeps its frame, all other frames keep their bytes, and the user is
// asked before anything is written when something cannot be kept. Otherwise:
// Known loss, by design: when the whole file is written and it had no ID3v2 tag, the last 10 bytes
//     of the audio are lost.
// Yields at every step and while it waits. A rewrite takes one to two seconds; longer while another
// program uses the song on a file system that does not allow to replace it then.
bool SaveTag(ID3v1Tag &ID3v1, ID3v2Tag &ID3v2, const ID3v1Tag &OldID3v1, const ID3v2Tag &OldID3v2,
             const std::string &FileName, bool WriteID3v1, bool WriteID3v2,
             ui::Label *ProgressLabel);

// The outcome of the last SaveTag; its return value does not distinguish these.
enum class SaveResult {
    Unchanged, // nothing was to be written
    Refused,   // the song has changed since it was read: nothing was written
    Declined,  // a part of the tag could not be kept, and the user did not want that: nothing was
               // written
    Failed,    // a step failed, and a box has reported it: the song is unchanged
    Written
};
[[nodiscard]] SaveResult LastSaveResult();

// Functions that SaveTag calls. app/ sets them; an empty one is not called. A RuntimeError that
// they throw is reported as the failure of their step.
struct TagWriterHooks {
    // Writes the values of `tag` to the rows of `path`, by "Edit1" and "Edit2".
    std::function<void(const ID3v2Tag &tag, const std::string &path)> updateCatalogue;
    // The same a second time, when the song has its new tags: another program that read it between
    // the two calls may have written the old tags into its rows.
    std::function<void(const ID3v2Tag &tag, const std::string &path)> settleCatalogue;
    // Makes the player release `path`. Returns the path that is selected in the player; sets its
    // state and, when it plays, the position in ms.
    std::function<std::string(const std::string &path, std::int32_t &state, std::int32_t &position)>
        releasePlayingFile;
    // Makes the player continue with `path` at that position, if `currentPath` is the same song.
    std::function<void(const std::string &currentPath, const std::string &path, std::int32_t state,
                       std::int32_t position)>
        restorePlayingFile;
};
TagWriterHooks &TheTagWriterHooks();

} // namespace metadata

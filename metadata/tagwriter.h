// metadata/tagwriter.h - the one place where the program writes into a song: both tags anew, the
// audio between them as it was. Paths are the file system's bytes, texts of records are of
// the kind that GetMP3Info gave them.
#pragma once

#include "metadata/records.h"
#include "ui/controls/label.h"

#include <cstdint>
#include <functional>
#include <string>

namespace metadata
{

// Brings the song to the state that the records ask for. The edit starts from what GetMP3Info
// read: it must have read this file, and the file must not have changed since. (What the module
// holds may be another file's by now; then this one is read again, if it is as it was.)
//
// WriteID3v1, WriteID3v2: whether the tag is to be in the file; without it the old one is removed.
//     When nothing but the ID3v1 tag changes, an unchecked tag stays.
// ProgressLabel: shows the steps; may be null.
// Changes the records: ID3v1 as BuildID3v1Tag does, ID3v2 as BuildID3v2Tag does.
// Returns: true when the file was to be rewritten, though a step may have failed (LastSaveResult
//     says which); false when nothing would change, or when nothing was written because the song is
//     not as it was read.
// Errors: none thrown. Each is reported in a box with its words, and the next step follows; a
//     folder for the backups that is missing is created, and a file that is not found is no error.
// Whatever fails, and whenever the process ends: a whole copy of the song, old or new, is in its
//     folder, under its own name or with ".bck" after it. Owner, rights and attributes stay. A
//     symbolic link keeps pointing at the song; of several hard links only the real path of
//     FileName gets the new version.
// With shell::Globals::UnicodeTags the edit goes by frames (metadata/frameedit.h): a field that the
// records do not change keeps its frame, every other frame its bytes, and what cannot be kept is
// asked about before anything is written. Otherwise:
// Known loss, by design: where the whole file is written and it had no ID3v2 tag, the last 10 bytes
//     of the audio go.
// Lets events run at every step and while it waits. Takes one to two seconds where it rewrites; as
// long as another program holds the song where the file system then keeps it from being replaced.
bool SaveTag(ID3v1Tag &ID3v1, ID3v2Tag &ID3v2, const ID3v1Tag &OldID3v1, const ID3v2Tag &OldID3v2,
             const std::string &FileName, bool WriteID3v1, bool WriteID3v2,
             ui::Label *ProgressLabel);

// What the last SaveTag came to; its own result does not tell them apart.
enum class SaveResult {
    Unchanged, // nothing was to be written
    Refused,   // the song is not as it was read: nothing was written
    Declined,  // a part of the tag could not be kept, and the user did not want that: nothing was
               // written
    Failed,    // a step failed, and the user was told: the song is as it was
    Written
};
[[nodiscard]] SaveResult LastSaveResult();

// What SaveTag calls up to. app/ fills it in; an empty function is not called. What they throw as
// RuntimeError is reported as the failure of their step.
struct TagWriterHooks {
    // Brings the rows of `path` to the values of `tag`, by "Edit1" and "Edit2".
    std::function<void(const ID3v2Tag &tag, const std::string &path)> updateCatalogue;
    // The same once more when the song has its new tags: whoever read it between the two has
    // written the old ones into its rows.
    std::function<void(const ID3v2Tag &tag, const std::string &path)> settleCatalogue;
    // Has the player let go of `path`. Returns the path that the player has selected; sets its
    // state and the position (ms) when it plays.
    std::function<std::string(const std::string &path, std::int32_t &state, std::int32_t &position)>
        releasePlayingFile;
    // Has the player go on with `path` where it was, if `currentPath` is that.
    std::function<void(const std::string &currentPath, const std::string &path, std::int32_t state,
                       std::int32_t position)>
        restorePlayingFile;
};
TagWriterHooks &TheTagWriterHooks();

} // namespace metadata

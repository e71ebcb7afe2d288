// metadata/unicode/tagplan.h - what an edit makes of a file's ID3v2 tags: one tag of version 2.3 at
// its beginning, in which the frames of the fields that changed are new and every other frame is as
// it was. No state; nothing is written here.
//
// A changed field replaces the frames from which it is read (metadata/unicode/tagtexts.h), in their
// place; a new one is added at the end. An emptied one removes them. Of several comments or lyrics
// the one that is read is replaced, with its language and description, and the others stay: when it
// is emptied, another one may be read afterwards. Of a track "3/12" the second number is kept.
// Parts of a text with "; " between them are written as several values. The other frames: see
// metadata/unicode/form23.h; those of all tags of the file are put into the one tag. A field that
// was not changed is read from the new tag as it was from the old ones: if it would be read
// differently, its frame is replaced too.
#pragma once

#include "metadata/unicode/tagtexts.h"

#include <cstdint>
#include <string>
#include <vector>

namespace metadata::unicode
{

struct TagPlan {
    bool isChanged = false;       // false: the file's ID3v2 tags are to stay as they are, and the
                                  // other fields of this have no meaning
    bool claimsTooMuch = false;   // a tag says that it is longer than the file: where the audio
                                  // begins is not known, and nothing can be written
    std::string tag;              // the new one; empty: none
    std::int64_t audioOffset = 0; // where the audio begins and ends (exclusive)
    std::int64_t audioEnd = 0;
    std::vector<std::string> lost; // names of frames that cannot be kept
    TagTexts texts;                // the fields as they are read from the new tag
};

struct TagEdit {
    TagTexts before;       // the fields as they are read from the file
    TagTexts now;          // the wanted fields; an empty text is the same as none
    bool isWanted = true;  // whether the file is to have a tag
    bool hasID3v1 = false; // the file ends with one
    ReadingOptions options = {};
};

// The plan for `edit` of the song `file`; nothing is written.
// Errors: kInvalidCall when the new tag is longer than a tag can be (256 MB); kOutOfMemory when the
// old tags together are more than twice as long as that.
[[nodiscard]] TagPlan PlanTag(FileBytesPort &file, const TagEdit &edit);

} // namespace metadata::unicode

// metadata/frameedit.h - the edit that SaveTag makes when shell::Globals::UnicodeTags is on: by
// frames. No state.
#pragma once

#include "metadata/mp3info.h"
#include "metadata/records.h"
#include "metadata/unicode/tagplan.h"

#include <string>

namespace metadata
{

// The new ID3v2 tag of the song with the tags `raw`, and which of its bytes are kept. `isWanted`:
// whether the song is to have an ID3v2 tag.
// Errors: FileError when the song cannot be read; kInvalidCall when the new tag gets too long;
// kOutOfMemory when the old tags are too long.
[[nodiscard]] unicode::TagPlan PlanFrames(const RawTags &raw, const ID3v2Tag &tag, bool isWanted);

// Whether the plan may be applied: when frames cannot be kept, the user is asked.
// Returns: true without a question when all can be kept.
[[nodiscard]] bool MayLoseFrames(const unicode::TagPlan &plan);

// The ID3v1 tag of the song: its old bytes when they have the values of `tag`, else BuildID3v1Tag.
[[nodiscard]] std::string PlanImage(const RawTags &raw, ID3v1Tag &tag);

// The values for the rows of the song: the fields of both tags as they will be read from the new
// song. `id3v2` is what the plan was made for; null: a tag that the song will not have.
[[nodiscard]] ID3v2Tag FieldsForRows(const ID3v1Tag *id3v1, const ID3v2Tag *id3v2,
                                     const unicode::TagPlan &plan);

} // namespace metadata

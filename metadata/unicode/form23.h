// metadata/unicode/form23.h - the frames of an ID3v2 tag of any version in the form of version 2.3,
// in which tags are written. No state. Source: the three format documents, and "ID3v2 Chapter Frame
// Addendum" for CHAP and CTOC.
//
// A frame of version 2.3 keeps each of its bytes. Of the others
//   content     stays as it is, but that texts in an encoding that 2.3 lacks are written in Latin-1
//               or UTF-16, unsynchronisation is undone, and PIC becomes APIC
//   names       of 2.2 become those of 2.3; TDRC becomes TYER, TDAT and TIME, TDOR becomes TORY;
//               TIPL and TMCL become one IPLS. Where a date has a part that those cannot hold,
//               the frame stays beside them
//   2.4 alone   the other frames of 2.4 keep their name: who knows them finds them
//   flags       become the same flags of 2.3; a compressed frame is unpacked where its text changes
#pragma once

#include "metadata/unicode/framelist.h"

#include <string>
#include <vector>

namespace metadata::unicode
{

// Frames for the new tag that come from one frame of the old one.
struct FrameForm {
    const Frame *source = nullptr;   // in the old list
    std::vector<std::string> frames; // whole, headers included; none for what is in another's
};

// The frames of `list` in its order. The names of those without a form go to `lost`: they cannot be
// kept. A SEEK frame, which says where the next tag is, goes without a word.
[[nodiscard]] std::vector<FrameForm> FormsOf(const FrameList &list, std::vector<std::string> &lost);

// The frames of version 2.3 for a recording time (2.4, section 4.2.5): TYER, and TDAT and TIME
// where it says as much; with TDRC itself where it says something that those cannot.
[[nodiscard]] std::vector<std::string> RecordingTime(std::string_view timestamp);

} // namespace metadata::unicode

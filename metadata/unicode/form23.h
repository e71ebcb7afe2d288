// metadata/unicode/form23.h - the frames of an ID3v2 tag of any version in the form of version 2.3,
// in which tags are written. No state. Source: the three format documents, and "ID3v2 Chapter Frame
// Addendum" for CHAP and CTOC.
//
// A frame of version 2.3 keeps each of its bytes. Of the others
//   content     is not changed, except that texts in an encoding that 2.3 lacks are written in
//               Latin-1 or UTF-16, unsynchronisation is undone, and PIC becomes APIC
//   names       of 2.2 become those of 2.3; TDRC becomes TYER, TDAT and TIME, TDOR becomes TORY;
//               TIPL and TMCL become one IPLS. When a date has a part that those cannot hold, the
//               frame of 2.4 is kept as well; also when the tag has one of those already
//   2.4 alone   the other frames of 2.4 keep their name, for readers that know them
//   flags       become the same flags of 2.3; a compressed frame is unpacked when its text changes
//   no form     exists for CRM, LNK and other frames of 2.2 that 2.3 does not have, for ASPI, and
//               for a frame that ends within the bytes of its flags
#pragma once

#include "metadata/unicode/framelist.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace metadata::unicode
{

// Frames for the new tag that come from one frame of the old one.
struct FrameForm {
    const Frame *source = nullptr; // in the old list
    bool isAsStored = false;       // it is the source's own bytes
    std::vector<std::string>
        frames; // else: the whole frames, with headers; none when they are in another FrameForm

    // Calls `visit` with the bytes of each frame.
    template <class Visit>
    void ForEach(const Visit &visit) const
    {
        if (isAsStored)
            visit(source->whole);
        for (const std::string &frame : frames)
            visit(std::string_view(frame));
    }
    bool IsEmpty() const { return !isAsStored && frames.empty(); }
    void Set(std::vector<std::string> now)
    {
        isAsStored = false;
        frames = std::move(now);
    }
};

// The frames of `list` in its order. The names of those that have no form are added to `lost`: they
// cannot be kept. A SEEK frame, which points to the next tag, is left out without a report.
[[nodiscard]] std::vector<FrameForm> FormsOf(const FrameList &list, std::vector<std::string> &lost);

// Whether a time begins with the four digits of a year.
[[nodiscard]] bool BeginsWithYear(std::string_view time);

// The frames of version 2.3 for a recording time that begins with a year (2.4, section 4.2.5):
// TYER; TDAT and TIME when it has a day and a time of day; TDRC as well when it has a part that
// these cannot hold.
[[nodiscard]] std::vector<std::string> RecordingTime(std::string_view timestamp);

} // namespace metadata::unicode

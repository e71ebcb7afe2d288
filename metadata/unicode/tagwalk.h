// metadata/unicode/tagwalk.h - the ID3v2 tags of a file, wherever they are. No state. Source: "ID3
// tag version 2.4.0 - Main Structure", sections 3.4 and 5.
#pragma once

#include "metadata/unicode/framelist.h"

#include <cstdint>
#include <functional>
#include <string_view>

namespace metadata::unicode
{

// Bytes of a file, for tags that are not at its beginning.
class FileBytesPort
{
public:
    virtual ~FileBytesPort() = default;
    // The file's length in bytes.
    virtual std::int64_t Length() = 0;
    // At most `count` bytes from the zero-based `position` on; fewer where the file ends or cannot
    // be read. The view is valid until the next call.
    virtual std::string_view Read(std::int64_t position, std::int64_t count) = 0;
};

// Where a tag is.
struct TagPlace {
    TagHeader header;
    std::int64_t offset = 0;    // zero-based
    std::int64_t bytes = 0;     // of the whole tag, as it is in the file (BytesThere)
    bool claimsTooMuch = false; // that is less than its header says

    std::int64_t End() const { return offset + bytes; }
};

// How many bytes of the tag are read when `rest` bytes of the file are left. A tag that claims more
// bytes than the file has, or more than a tag can have (256 MB, section 3.1), is damaged: it is
// read up to kMaxUnpackedBytes.
[[nodiscard]] std::int64_t BytesThere(const TagHeader &header, std::int64_t rest);

// Calls `visit` with each tag and its bytes, in this order: the tags at the file's beginning, one
// after the other; those to which their SEEK frames point; those with a footer at the end, before
// an ID3v1 tag if there is one, the last one first. At most 16 tags, and no byte in two of them.
using VisitTag =
    std::function<void(const TagPlace &, std::string_view bytes, const FrameList &frames)>;
void WalkTags(FileBytesPort &file, const VisitTag &visit);

} // namespace metadata::unicode

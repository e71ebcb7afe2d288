// Any body with any version: each text is a part of the body, and reading again gives the same.
#include "fuzz/expect.h"
#include "metadata/id3v2.h"

#include <string>
#include <string_view>

using fuzz::Expect;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::string_view body(reinterpret_cast<const char *>(data) + 1, size - 1);
    metadata::ID3v2Tag tag;
    metadata::ReadID3v2Frames(body, data[0], tag);
    for (const std::string &text :
         {tag.Title, tag.Artist, tag.Album, tag.Year, tag.Comment, tag.Lyrics})
        Expect(body.find(text) != std::string_view::npos);
    metadata::ID3v2Tag again;
    metadata::ReadID3v2Frames(body, data[0], again);
    Expect(again == tag);
    return 0;
}

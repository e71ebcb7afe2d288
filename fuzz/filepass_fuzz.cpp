// Any file: a pass ends, reads nothing outside the file, and gives the same result again, from the
// kept bytes and from the file.
#include "fuzz/expect.h"
#include "fuzz/memoryfiles.h"
#include "metadata/mp3info.h"

#include <memory>
#include <string>

using fuzz::Expect;
using metadata::ReadSongInfo;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    fuzz::MemoryFiles files;
    const auto content = std::make_shared<std::string>(reinterpret_cast<const char *>(data), size);
    files.names["a"] = files.names["b"] = content;
    const metadata::SongInfo first = ReadSongInfo("a");
    const std::string body(metadata::RawID3v2Body());
    const metadata::SongInfo kept = ReadSongInfo("a");
    const metadata::SongInfo again = ReadSongInfo("b");
    Expect(first == kept && first == again && body == metadata::RawID3v2Body());
    Expect(!first.hasID3v1 || content->substr(size - 128) == metadata::RawID3v1Image());
    return 0;
}

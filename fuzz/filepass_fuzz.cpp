// Any file: a pass ends, reads nothing outside the file, and gives the same result again, from the
// kept bytes and from the file.
#include "fuzz/memoryfiles.h"
#include "metadata/mp3info.h"
#include "platform/machine.h"

#include <cstdlib>

namespace
{

metadata::SongInfo Read(const std::string &path)
{
    return metadata::ReadSongInfo(path);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    MemoryFiles files;
    const auto content = std::make_shared<std::string>(reinterpret_cast<const char *>(data), size);
    files.names["a"] = files.names["b"] = content;
    platform::TheMachine().files = &files;
    metadata::ResetMP3Info();
    const metadata::SongInfo first = Read("a");
    const std::string body(metadata::RawID3v2Body());
    const metadata::SongInfo kept = Read("a");
    const metadata::SongInfo again = Read("b");
    if (!(first == kept) || !(first == again) || body != metadata::RawID3v2Body())
        std::abort();
    if (first.hasID3v1 && content->substr(size - 128) != metadata::RawID3v1Image())
        std::abort();
    metadata::ResetMP3Info();
    platform::TheMachine().files = &platform::SystemFiles();
    return 0;
}

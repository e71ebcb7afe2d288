// Any file: a pass ends, reads nothing outside the file, and gives the same result again, from the
// kept bytes and from the file.
#include "fuzz/memoryfiles.h"
#include "metadata/mp3info.h"
#include "platform/machine.h"

#include <cstdlib>

namespace
{

struct Pass {
    metadata::ID3v1Tag v1;
    metadata::ID3v2Tag v2;
    metadata::MPEGHeader header;
    bool hasV1 = false, hasV2 = false;

    bool operator==(const Pass &) const = default;
};

Pass Read(const std::string &path)
{
    Pass pass;
    metadata::GetMP3Info(path, pass.v1, pass.v2, pass.header, pass.hasV1, pass.hasV2, false);
    return pass;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    MemoryFiles files;
    const auto content = std::make_shared<std::string>(reinterpret_cast<const char *>(data), size);
    files.names["a"] = files.names["b"] = content;
    platform::TheMachine().files = &files;
    metadata::ResetMP3Info();
    const Pass first = Read("a");
    const std::string body(metadata::RawID3v2Body());
    const Pass kept = Read("a");
    const Pass again = Read("b");
    if (!(first == kept) || !(first == again) || body != metadata::RawID3v2Body())
        std::abort();
    if (first.hasV1 && content->substr(size - 128) != metadata::RawID3v1Image())
        std::abort();
    metadata::ResetMP3Info();
    platform::TheMachine().files = &platform::SystemFiles();
    return 0;
}

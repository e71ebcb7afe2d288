// Any file, any edit: afterwards the song exists and has its audio and the tags that were written.
#include "fuzz/expect.h"
#include "fuzz/memoryfiles.h"
#include "fuzz/quietedits.h"
#include "metadata/id3v1.h"
#include "metadata/mp3info.h"
#include "metadata/tagframes.h"
#include "metadata/tagwriter.h"

#include <memory>
#include <string>

namespace
{

using fuzz::Expect;

const std::string kSong = "/song.mp3";

metadata::SongInfo Read()
{
    return metadata::ReadSongInfo(kSong);
}

// The bits of the first byte choose what changes and what is written.
void Edit(unsigned char choice, metadata::SongInfo &pass)
{
    if (choice & 1)
        pass.id3v2.Title = "New title";
    if (choice & 2)
        pass.id3v2.Comment = "";
    if (choice & 4)
        pass.id3v2.Genre = "Rock";
    if (choice & 8)
        pass.id3v1.Title = "New title";
    if (choice & 16)
        pass.id3v2.Lyrics = "[00:01]La";
}

// Whether the new tag has the bytes of the old one; that stays then, with its header.
bool IsSameBody(const metadata::RawTags &raw, metadata::ID3v2Tag tag)
{
    const std::string made = metadata::BuildID3v2Tag(std::string(raw.body), tag, raw.majorVersion);
    return made.substr(10) == raw.body;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    if (size == 0)
        return 0;
    static tests::QuietDesk desk;
    fuzz::EditQuietly(desk);
    fuzz::MemoryFiles files;
    const std::string before(reinterpret_cast<const char *>(data) + 1, size - 1);
    files.names[kSong] = std::make_shared<std::string>(before);

    const metadata::SongInfo old = Read();
    const metadata::RawTags raw = metadata::CopyRawTags();
    metadata::SongInfo pass = old;
    Edit(data[0], pass);
    const bool writeID3v1 = (data[0] & 32) != 0;
    const bool writeID3v2 = (data[0] & 64) != 0;
    const bool isSameBody = IsSameBody(raw, pass.id3v2);
    const bool saved = metadata::SaveTag(pass.id3v1, pass.id3v2, old.id3v1, old.id3v2, kSong,
                                         writeID3v1, writeID3v2, nullptr);
    Expect(files.names.size() == 1 && files.names.count(kSong) == 1);
    const std::string after = *files.names[kSong];
    if (!saved || desk.boxes > 0) {
        Expect(after == before);
    } else {
        const std::size_t image = raw.fileHasID3v1 ? 128 : 0;
        const std::size_t front = raw.body.empty() ? 0 : raw.body.size() + 10;
        const std::size_t lost = raw.body.empty() ? 10 : 0;
        // The audio is complete, except for the 10 bytes that may be lost when the whole file is
        // written.
        if (before.size() >= front + image + lost)
            Expect(after.find(before.substr(front, before.size() - front - image - lost)) !=
                   std::string::npos);
        Expect(!writeID3v1 ||
               (after.size() >= 128 && after.compare(after.size() - 128, 3, "TAG") == 0));
        Expect(!writeID3v2 || isSameBody || after.compare(0, 4, "ID3\3") == 0);
        Read();
        if (writeID3v2 && (data[0] & 1))
            Expect(after.find("New title") != std::string::npos);
    }
    return 0;
}

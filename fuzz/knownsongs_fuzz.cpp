// Any bytes as the file of the known songs, most of them under a head and a hash that are right: a
// song that is kept is found, one that is forgotten is not, and the file that is written then is
// one that the next run can use.
#include "catalogue/regeneration/knownsongs.h"
#include "fuzz/expect.h"
#include "runtime/hash.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

namespace
{

using catalogue::KnownSong;
using catalogue::KnownSongs;
using fuzz::Expect;

// The layout of the file, as knownsongs.h describes it.
constexpr std::size_t kHashBytes = 16, kHeadBytes = 56, kCountOffset = 48, kRecordBytes = 80;

const KnownSong kSong = {
    {"/a", 1, 2, 3, 4, 5, platform::FileKind::Regular}, {true, false, true}, false, {6, 7}};

bool IsTheSong(const std::optional<KnownSong> &found)
{
    return found && found->file == kSong.file && found->tags == kSong.tags &&
           !found->isReadByFrames && found->texts == kSong.texts;
}

// Where files are in memory, if the machine has such a folder: each input replaces the file, which
// waits for a disk.
std::filesystem::path FolderForFiles()
{
    const std::filesystem::path memory = "/dev/shm";
    std::error_code unknown;
    return std::filesystem::is_directory(memory, unknown) ? memory
                                                          : std::filesystem::temp_directory_path();
}

// The file, in a new folder, for the whole process.
struct Place {
    Place()
    {
        Expect(mkdtemp(folder.data()) != nullptr);
        file = folder + "/KnownSongs.dat";
        KnownSongs songs(file, true);
        songs.Keep(kSong);
        songs.Save(true);
        head = Read().substr(0, kHeadBytes);
        Expect(head.size() == kHeadBytes);
    }
    ~Place() { std::filesystem::remove_all(folder); }
    Place(const Place &) = delete;
    Place &operator=(const Place &) = delete;

    std::string Read() const
    {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    void Write(std::string_view bytes) const
    {
        std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
    }

    std::string folder = FolderForFiles() / "quenlin-fuzz-XXXXXX";
    std::string file;
    std::string head; // of a file that this program has written
};

// `input` as a file. Its first byte decides what is made right: nothing, the hash and the head, or
// these two and the number of records.
std::string FileOf(std::string_view input, const std::string &head)
{
    const int kind = input[0] % 4;
    std::string bytes(input.substr(1));
    if (kind == 0)
        return bytes;
    if (kind == 1) { // the fields after the hash are those of the input
        bytes.resize(std::max(bytes.size(), kHeadBytes));
    } else {
        bytes.insert(0, head);
        const std::uint64_t count = (bytes.size() - kHeadBytes) / kRecordBytes;
        if (kind == 3)
            std::memcpy(bytes.data() + kCountOffset, &count, sizeof count);
    }
    const auto hash = runtime::Hash128Of(std::string_view(bytes).substr(kHashBytes));
    std::memcpy(bytes.data(), &hash, sizeof hash);
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    static const Place place;
    if (size == 0)
        return 0;
    const std::string_view input(reinterpret_cast<const char *>(data), size);
    const std::string bytes = FileOf(input, place.head);
    place.Write(bytes);
    KnownSongs songs(place.file, true);
    const bool hadOne = songs.Find(kSong.file.path).has_value();
    Expect(!hadOne || bytes.size() >= kHeadBytes + kRecordBytes);
    songs.Forget("/b");
    Expect(!songs.Find("/b"));
    songs.Keep(kSong);
    Expect(!hadOne || IsTheSong(songs.Find(kSong.file.path)));
    songs.Save((data[0] & 4U) != 0);
    const std::string saved = place.Read();
    Expect(saved.size() % kRecordBytes == kHeadBytes);
    Expect(saved.size() <= std::max(bytes.size(), kHeadBytes) + kRecordBytes);
    Expect(IsTheSong(KnownSongs(place.file, true).Find(kSong.file.path)));
    return 0;
}

// Any text as a statement, as its values, as the tags and the path of a song, on a real catalogue:
// a value never becomes syntax, the catalogue keeps its structure, and a song has one row, with the
// texts of its tags.
#include "catalogue/addfile.h"
#include "catalogue/adoclass.h"
#include "catalogue/edittags.h"
#include "catalogue/rowgroups.h"
#include "catalogue/sql/statementparams.h"
#include "fuzz/expect.h"
#include "fuzz/memoryfiles.h"
#include "metadata/genres.h"
#include "metadata/mp3info.h"
#include "platform/machine.h"
#include "shell/apppath.h"
#include "shell/startup/startup.h"
#include "tests/support/fakeports.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/silentdesktop.h"

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <vector>

using namespace catalogue;

namespace
{

using fuzz::Expect;

// A catalogue in a new folder, for the whole process.
struct Library {
    Library()
    {
        Expect(mkdtemp(folder.data()) != nullptr);
        std::filesystem::copy_file(QUENLIN_SHIPPED_CATALOGUE, folder + "/MP3s.mdb");
        DataAccess = std::make_unique<ADOclass>();
        shell::SetAppPath(folder);
        shell::SetADOFields(*DataAccess);
        platform::Machine &machine = platform::TheMachine();
        machine.desktop = &desk;
        machine.clock = &desk;
        drives.type = platform::DriveType::CdRom;
        drives.label = "\u00B9 ?'";
        before = Structure();
    }

    ~Library()
    {
        DataAccess.reset();
        CloseCatalogue();
        std::filesystem::remove_all(folder);
    }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;

    // The names of the stored queries, and that the tables can be read.
    static std::string Structure()
    {
        std::string all;
        for (const char *statement :
             {"SELECT Name, Statement, WholePath FROM StoredQueries ORDER BY Name",
              "SELECT count(*) >= 0 FROM MP3s", "SELECT count(*) >= 0 FROM Lists"}) {
            const auto records = Records(DataAccess->ExecuteSQL(statement, kSelect));
            Expect(DataAccess->Succeeded);
            for (; !records->AtEnd(); records->MoveNext())
                for (int field = 0; field < records->FieldCount(); ++field)
                    all.append(records->Text(field)).append("|");
        }
        return all;
    }

    std::string folder = std::filesystem::temp_directory_path() / "quenlin-fuzz-XXXXXX";
    tests::QuietDesk desk;
    tests::FakeDrives drives;
    std::string before;
};

std::vector<std::string> PiecesOf(std::string_view bytes)
{
    std::vector<std::string> pieces(1);
    for (std::size_t at = 0; at < bytes.size() && pieces.size() < 12; ++at)
        if (bytes.substr(at).starts_with("\xFF\xFE"))
            pieces.emplace_back(), ++at;
        else
            pieces.back() += bytes[at];
    pieces.resize(12);
    return pieces;
}

// Runs piece 0 as a statement with the others as its values; a byte chooses the marker.
void RunAnyStatement(const std::vector<std::string> &pieces, unsigned char choice)
{
    static constexpr std::string_view kMarkers[] = {"?", "\u00B9", "a", "'", "--", ""};
    const Marker marker(kMarkers[choice % std::size(kMarkers)],
                        choice & 64 ? LeftOver::IsEmpty : LeftOver::Stays);
    const std::vector<Value> values(pieces.begin() + 1, pieces.begin() + 5);
    const Statement statement = SubstituteParams(pieces[0], values, marker);
    Expect(ReadableText(statement).size() <=
           statement.text.size() + (statement.values.size() + 1) * 900);
    int kind = kDetect;
    DataAccess->ExecuteSQL(pieces[0], kind, values, marker);
}

std::string SongOf(const std::vector<std::string> &pieces)
{
    static constexpr const char *kFrames[] = {"TIT2", "TPE1", "TALB", "TYER",
                                              "COMM", "TCON", "USLT"};
    std::string frames;
    for (std::size_t i = 0; i < std::size(kFrames); ++i) {
        const bool hasHead = i == 4 || i == 6;
        frames += tests::Frame(
            kFrames[i],
            std::string(hasHead ? std::string("\0eng\0", 5) : std::string("\0", 1)) + pieces[i]);
    }
    return tests::Id3v2(frames) + tests::Audio();
}

// The pieces as the tags and the path of a song: added, then updated.
void AddAnySong(const std::vector<std::string> &pieces, fuzz::MemoryFiles &files)
{
    const std::string path = "/m/" + pieces[7].substr(0, pieces[7].find('\0')) + ".mp3";
    files.names[path] = std::make_shared<std::string>(SongOf(pieces));
    for (const auto wanted : {kAdded, kUpdated}) {
        std::string reason;
        Expect(AddOrUpdateMP3(path, reason) == wanted && reason.empty());
        const metadata::ID3v2Tag tag = metadata::ReadSongInfo(path).id3v2;
        const std::vector<Value> values =
            TagValues(tag, wanted == kAdded ? metadata::GenreName(tag.Genre) : tag.Genre);
        const auto records = Records(DataAccess->ExecuteSQL("SELECT * FROM MP3s", kSelect));
        Expect(records->RecordCount() == 1 && records->Text("Path") == path);
        for (int field = 0; field < 7; ++field)
            Expect(records->Text(field) ==
                   std::get<std::string>(values[static_cast<std::size_t>(field)]));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    if (size == 0)
        return 0;
    static Library library;
    fuzz::MemoryFiles files;
    const auto pieces =
        PiecesOf(std::string_view(reinterpret_cast<const char *>(data) + 1, size - 1));
    if (data[0] & 128) {
        RunAnyStatement(pieces, data[0] & 127);
        Expect(Library::Structure() == library.before);
    } else {
        AddAnySong(pieces, files);
    }
    DataAccess->ExecuteSQL("DELETE FROM MP3s", kDelete);
    DataAccess->ExecuteSQL("DELETE FROM Lists", kDelete);
    return 0;
}

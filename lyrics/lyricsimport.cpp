#include "lyrics/lyricsimport.h"

#include "catalogue/adoclass.h"
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "metadata/unicode/textvalues.h"
#include "platform/desktop.h"
#include "platform/disk/wholefiles.h"
#include "platform/machine.h"
#include "runtime/codepage.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "shell/globals.h"
#include "shell/progress.h"

#include <cerrno>
#include <limits>
#include <string_view>
#include <vector>

namespace lyrics
{

namespace
{

constexpr std::string_view kNotFound =
    "The MP3 with similar name could not be found on the database.\r"
    "Check the name of the TXT and be sure that the name of \r"
    "the file that exist on the database are the same and retry";

void ShowBox(std::string_view words)
{
    platform::TheMachine().desktop->MessageBox(words);
}

// The LIKE pattern for the query: the name in any folder, with anything after it.
std::string NamePattern(const std::string &txtPath)
{
    const auto kept = static_cast<long long>(txtPath.size()) - 4;
    return runtime::GetFileName(std::string(runtime::Left(txtPath, kept)) + ".mp3") + "%";
}

// The path in the catalogue of the song that the text file is for: that of the first row, when
// several match. Empty when there is none.
std::string FindSong(const std::string &txtPath)
{
    const catalogue::RecordsetPtr records = catalogue::Records(catalogue::DataAccess->ExecuteSQL(
        "SEL_ByPath", catalogue::kStoredSelect,
        catalogue::Params(std::vector<catalogue::Value>{NamePattern(txtPath),
                                                        std::string(catalogue::kNoExclusion)}),
        "?"));
    if (records == nullptr || records->AtEnd())
        return {};
    return std::string(records->Text("Path"));
}

std::string ReadText(const std::string &txtPath)
{
    std::optional<std::string> text = platform::ReadRegularFile(
        txtPath, static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()));
    if (!text)
        throw runtime::FileError(errno, txtPath);
    return *std::move(text);
}

// The text of a file in UTF-8, without NULs: a reader of the tag would end the text at the first
// one.
std::string Decoded(std::string_view bytes)
{
    using metadata::unicode::Encoding;
    const bool isUtf16 = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
    if (bytes.starts_with(runtime::kByteOrderMark))
        bytes.remove_prefix(runtime::kByteOrderMark.size());
    std::string text =
        metadata::unicode::DecodeText(isUtf16 ? Encoding::Utf16 : Encoding::Utf8, bytes);
    std::erase(text, '\0');
    return text;
}

} // namespace

void AddLyricsFromTXT(const std::string &txtPath)
{
    shell::ShowProgressText("Analizing file", "AnalizingFile");
    const std::string song = FindSong(txtPath);
    if (song.empty()) {
        ShowBox(kNotFound);
        return;
    }
    shell::ShowProgressText("Reading the MP3 Information", "ReadingMP3Information");
    const metadata::SongInfo old = metadata::ReadSongInfo(song);
    shell::ShowProgressText("Reading the lyrics from the TXT", "ReadingLyricsFromTXT");
    metadata::SongInfo info = old;
    info.id3v2.Lyrics = ReadText(txtPath);
    const bool isUtf8 = info.id3v2.kind == metadata::TextKind::Utf8;
    if (isUtf8)
        info.id3v2.Lyrics = Decoded(info.id3v2.Lyrics);
    platform::TheMachine().desktop->DoEvents();
    const bool writeID3v1 = old.hasID3v1 || !isUtf8; // by frames only the lyrics change
    const bool saved = metadata::SaveTag(info.id3v1, info.id3v2, old.id3v1, old.id3v2, song,
                                         writeID3v1, true, &shell::TheGlobals().lblProgress);
    ShowBox(saved ? "The lyrics were added correctly." : "The lyrics couldn't be added.");
}

} // namespace lyrics

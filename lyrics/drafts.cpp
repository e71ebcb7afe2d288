#include "lyrics/drafts.h"

#include "metadata/tagtext.h"
#include "platform/disk/userfolders.h"
#include "platform/disk/wholefiles.h"
#include "platform/machine.h"
#include "runtime/codepage.h"
#include "runtime/error.h"
#include "runtime/hash.h"
#include "shell/globals.h"

#include <cerrno>
#include <cstdio>
#include <string_view>
#include <utility>

namespace lyrics
{

namespace
{

// A draft is one of these lines (the second one where the lyrics are UTF-8), the length of the
// song's path in decimal, a line feed, the path, a line feed, and the lyrics up to the end of the
// file.
constexpr std::string_view kFirstLine = "Quenlin lyrics draft 1\n";
constexpr std::string_view kFirstLineUtf8 = "Quenlin lyrics draft 2\n";
constexpr std::size_t kLargestDraft = std::size_t{1} << 28; // the most that an ID3v2 tag can hold
constexpr int kPlaces = 4;                                  // songs whose paths have the same hash

std::string PlaceFile(const std::string &path, int place)
{
    char name[40];
    std::snprintf(name, sizeof name, "/%016llx-%d.draft",
                  static_cast<unsigned long long>(runtime::StableHashOf(path)), place);
    return DraftFolder() + name;
}

std::string HeadOf(const std::string &path, metadata::TextKind kind)
{
    const bool isUtf8 = kind == metadata::TextKind::Utf8;
    return std::string(isUtf8 ? kFirstLineUtf8 : kFirstLine) + std::to_string(path.size()) + "\n" +
           path + "\n";
}

// Where the draft of a song is, or can be written.
struct Place {
    std::string file;                 // empty when drafts of other songs use all places
    std::optional<std::string> draft; // the draft that the song has there now
    metadata::TextKind kind = metadata::TextKind::FileBytes; // of the draft
};

// The place for the draft of a song, for a reader of that kind of text. A draft with characters
// that this kind lacks is skipped, and its place is not used: written as that kind it would lose
// them.
Place FindPlace(const std::string &path, metadata::TextKind kind)
{
    using metadata::TextKind;
    const std::string head = HeadOf(path, TextKind::FileBytes);
    const std::string headUtf8 = HeadOf(path, TextKind::Utf8);
    Place place;
    for (int i = 0; i < kPlaces; ++i) {
        const std::string file = PlaceFile(path, i);
        const auto bytes = platform::ReadRegularFile(file, kLargestDraft + head.size());
        const int reason = bytes ? 0 : errno;
        if (bytes && bytes->starts_with(head))
            return {file, bytes->substr(head.size()), TextKind::FileBytes};
        if (bytes && bytes->starts_with(headUtf8)) {
            std::string draft = bytes->substr(headUtf8.size());
            if (kind == TextKind::Utf8 || runtime::CharactersLacking(draft).empty())
                return {file, std::move(draft), TextKind::Utf8};
        }
        if (reason == ENOENT && place.file.empty())
            place.file = file;
    }
    return place;
}

void Check(int reason)
{
    if (reason != 0)
        throw runtime::FileError(reason, DraftFolder());
}

} // namespace

std::string DraftFolder()
{
    return platform::ConfigHome() + "/" + std::string(shell::kApplicationTitle) + "/Drafts";
}

std::optional<std::string> ReadDraft(const std::string &path, metadata::TextKind kind)
{
    Place place = FindPlace(path, kind);
    if (!place.draft || place.kind == kind)
        return std::move(place.draft);
    return metadata::FieldOf(kind, metadata::TextOf(place.kind, *place.draft));
}

void WriteDraft(const std::string &path, const std::string &text, metadata::TextKind kind)
{
    platform::Files &files = *platform::TheMachine().files;
    if (!platform::MakeFolders(DraftFolder()))
        Check(errno);
    const std::string file = FindPlace(path, kind).file;
    if (file.empty())
        Check(EEXIST);
    std::string grown;
    const int handle = files.CreateBeside(file, grown);
    if (handle < 0)
        Check(-handle);
    int reason = files.WriteAll(handle, HeadOf(path, kind) + text);
    if (reason == 0)
        reason = files.Flush(handle);
    files.Close(handle);
    if (reason == 0)
        reason = files.Rename(grown, file);
    if (reason != 0) {
        files.Delete(grown);
        Check(reason);
    }
    Check(files.FlushFolderOf(file));
}

void RemoveDraft(const std::string &path, metadata::TextKind kind)
{
    const Place place = FindPlace(path, kind);
    if (!place.draft)
        return;
    platform::Files &files = *platform::TheMachine().files;
    if (const int reason = files.Delete(place.file); reason != ENOENT)
        Check(reason);
    Check(files.FlushFolderOf(place.file));
}

} // namespace lyrics

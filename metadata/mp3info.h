// metadata/mp3info.h - the one procedure with which every other part reads an MP3 file, and
// what its last pass keeps for the tag writer. Paths are the file system's bytes.
//
// The ID3v2 tag is read by one of two methods. The first one searches the names of frames anywhere
// in the body (metadata/id3v2.h); its texts are file bytes. With shell::Globals::UnicodeTags the
// tags are read by their frames and encodings (metadata/unicode/); the texts are UTF-8. The `kind`
// of an ID3v2Tag says which one was used.
#pragma once

#include "metadata/records.h"
#include "metadata/unicode/tagtexts.h"
#include "platform/disk/files.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace metadata
{

// Reads the tags and the audio header of `FileName` in one pass.
// The records are not cleared: a field that the file does not set keeps what it held; only
// ID3v1.Genre becomes -1 and ID3v2.Genre "-1" in any case. Pass fresh records.
// HasID3v1: there is a tag at the end. HasID3v2: there is a tag with a body at the beginning.
// PreferID3v2: when there is such a body, the ID3v1 fields are not read (HasID3v1 is set
// nevertheless).
// Errors: none, for any path and any content; a failed step does not change its target. When a path
// is not a readable file, the records are unchanged and LastReadFailure has the reason. A tag that
// claims more bytes than the file has ends the pass at once: the records are unchanged, both flags
// are false.
// When the file has not changed since the last pass over it, it is not read again.
void GetMP3Info(const std::string &FileName, ID3v1Tag &ID3v1, ID3v2Tag &ID3v2, MPEGHeader &Header,
                bool &HasID3v1, bool &HasID3v2, bool PreferID3v2);

// What GetMP3Info reads in one file, in fresh records.
struct SongInfo {
    ID3v1Tag id3v1;
    ID3v2Tag id3v2;
    MPEGHeader header;
    bool hasID3v1 = false, hasID3v2 = false;

    bool operator==(const SongInfo &) const = default;
};
SongInfo ReadSongInfo(const std::string &path, bool preferID3v2 = false);

// The same for a caller that needs the tags alone: `header` stays fresh.
SongInfo ReadSongTags(const std::string &path);

// Which of the two tags GetMP3Info would find, without their fields. Sets LastReadFailure and
// LastSeen as GetMP3Info does, and keeps the bytes for the next call of it.
void GetTagFlags(const std::string &FileName, bool &HasID3v1, bool &HasID3v2);

// The next pass over the same file uses the bytes of the last one without checking whether the file
// has changed, if it could be read. For a caller that lets no event run and does not wait in
// between.
void KeepForNextPass();

// Announces the files of the next passes, in this order, after those announced before: their bytes
// are read meanwhile. The only effect is a shorter time, when PaysToExpectPasses is true.
// ExpectNoPasses cancels what is left.
[[nodiscard]] bool PaysToExpectPasses();
void ExpectPasses(const std::vector<std::string> &paths);
void ExpectNoPasses();

// The same for files that will be passed over only when they are in another state than this; the
// caller asks the files port for that (IsInState).
void ExpectPassesUnlessInState(const std::vector<platform::FileIdentity> &states);

// Whether the tag at the beginning of the last pass's file has texts that only reading by frames
// can decode. Always false when it was read by frames.
[[nodiscard]] bool HasTextsForFrames();

// Why the last pass could not read its file: an errno, 0 when it could. EISDIR for a folder, ESPIPE
// for anything else that is no regular file. runtime::FileError has the words.
[[nodiscard]] int LastReadFailure();

// Bytes of the last pass, kept until the next one. Only GetMP3Info writes them.
// The body of the ID3v2 tag exactly as read, all bytes after the 10-byte header; empty without
// one.
[[nodiscard]] std::string_view RawID3v2Body();
// The 128 bytes of the ID3v1 tag last read; those of an earlier file when this one has none.
[[nodiscard]] const std::string &RawID3v1Image();
// The major version of the ID3v2 tag last read; that of an earlier file when this one has none.
[[nodiscard]] int ID3v2MajorVersion();
// The file to which these three belong, as it was when it was opened; an empty path before the
// first pass and after one that could not open its file.
[[nodiscard]] const platform::FileIdentity &RawTagsFile();
// When it was opened, by the clock of file stamps (platform::Files::StampClockNs).
[[nodiscard]] std::int64_t RawTagsOpenedAtNs();

struct FileBytes; // metadata/filepass.h

// A copy of everything that the last pass kept, for a caller that lets events run while it works:
// they may start a pass over another file.
struct RawTags {
    std::string_view body;  // RawID3v2Body
    std::string id3v1Image; // the file's own, also when PreferID3v2 skipped it; without one
                            // RawID3v1Image
    int majorVersion = 0;
    platform::FileIdentity file;            // RawTagsFile
    int failure = 0;                        // LastReadFailure
    std::optional<unicode::TagTexts> texts; // only from reading by frames: the fields of the tags
    bool fileHasID3v1 = false;              // so id3v1Image is the file's own
    // Holds the bytes of `body`. Shared with the module until its next pass, which then takes a new
    // buffer: so a tag of many megabytes is not copied.
    std::shared_ptr<const FileBytes> bytes;
};
[[nodiscard]] RawTags CopyRawTags();

// The state of `path` at the last pass over it; nullopt when that pass could not open it, or when
// 64 other files were read since.
[[nodiscard]] std::optional<platform::FileIdentity> LastSeen(const std::string &path);

// Closes the file that GetMP3Info left open (whose tag claims more bytes than the file has).
void CloseAllFiles();

// Functions that GetMP3Info calls. app/ sets them; an empty one is not called.
struct MP3InfoHooks {
    // Called before a read that may take long, because the bytes are not in memory.
    std::function<void()> beforeSlowRead;
};
MP3InfoHooks &TheMP3InfoHooks();

// Sets the module's state and its hooks to their values at the start of the program.
void ResetMP3Info();

} // namespace metadata

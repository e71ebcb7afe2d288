// metadata/mp3info.h - the one procedure through which every other part looks into an MP3 file, and
// what its last pass keeps for the tag writer. Paths are the file system's bytes.
//
// There are two ways of reading the ID3v2 tag. The first one looks for the names of frames anywhere
// in the body (metadata/id3v2.h), and gives file bytes. With shell::Globals::UnicodeTags the tags
// are read by their frames and encodings (metadata/unicode/), and the texts are UTF-8: the kind of
// an ID3v2Tag says which.
#pragma once

#include "metadata/records.h"
#include "metadata/unicode/tagtexts.h"
#include "platform/files.h"

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
// HasID3v1: there is a tag at the end. HasID3v2: there is a tag with a body at the start.
// PreferID3v2: with such a body, the ID3v1 fields are not read (HasID3v1 is set all the same).
// Errors: none, on any path and any content; a failed step leaves its target as it was. A path that
// is no readable file leaves the records and says why in LastReadFailure. A tag that claims more
// than the file holds ends the pass at once: records as they were, both flags false.
// The same file again, unchanged since the last pass, is not read again.
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

// Which of the two tags a pass would find, without what is in them. It leaves LastReadFailure and
// LastSeen as a pass does, and the bytes for the next pass.
void GetTagFlags(const std::string &FileName, bool &HasID3v1, bool &HasID3v2);

// The next pass takes the bytes of the last one as they are, where it is over the same file and
// that could be read: the file system is not asked whether the file has changed. For a caller that
// lets no event run and waits for nothing in between.
void KeepForNextPass();

// Says which files the next passes will be over, in this order, after those said before: their
// bytes are on the way meanwhile. It changes nothing but the time, where PaysToExpectPasses.
// ExpectNoPasses takes back what is left of it.
[[nodiscard]] bool PaysToExpectPasses();
void ExpectPasses(const std::vector<std::string> &paths);
void ExpectNoPasses();

// Whether the tag at the beginning of the last pass's file has texts that only reading by frames
// can read. Never, where that is how it was read.
[[nodiscard]] bool HasTextsForFrames();

// Why the last pass could not read its file: an errno of the system, 0 when it could. A folder is
// EISDIR, anything else that is no file ESPIPE. runtime::FileError has the words.
[[nodiscard]] int LastReadFailure();

// What the last pass left, until the next one. Written by GetMP3Info alone.
// The body of the ID3v2 tag exactly as read, all bytes after the 10-byte header; empty without
// one.
[[nodiscard]] std::string_view RawID3v2Body();
// The 128 bytes of the ID3v1 tag last read; those of an earlier file when this one has none.
[[nodiscard]] const std::string &RawID3v1Image();
// The major version of the ID3v2 tag last read; that of an earlier file when this one has none.
[[nodiscard]] int ID3v2MajorVersion();
// Which file these three belong to, as it was when it was opened; an empty path before the first
// pass and after one that could not open its file.
[[nodiscard]] const platform::FileIdentity &RawTagsFile();

struct FileBytes; // metadata/filepass.h

// A copy of all that the last pass left, for a caller that lets events run while it works: they may
// start a pass over another file.
struct RawTags {
    std::string_view body;  // RawID3v2Body
    std::string id3v1Image; // the file's own, also where PreferID3v2 passed it over; without one
                            // RawID3v1Image
    int majorVersion = 0;
    platform::FileIdentity file;            // RawTagsFile
    int failure = 0;                        // LastReadFailure
    std::optional<unicode::TagTexts> texts; // of reading by frames: what the tags say
    bool fileHasID3v1 = false;              // so id3v1Image is not an earlier file's
    // Holds the bytes of `body`. Shared with the module until its next pass, which then takes a new
    // buffer: so a tag of many megabytes is not copied.
    std::shared_ptr<const FileBytes> bytes;
};
[[nodiscard]] RawTags CopyRawTags();

// Which state of `path` the last pass over it saw; nothing when that pass could not open it, or
// lies too many other files back (64).
[[nodiscard]] std::optional<platform::FileIdentity> LastSeen(const std::string &path);

// Closes the files that GetMP3Info left open (the one whose tag claims more than it holds).
void CloseAllFiles();

// What GetMP3Info calls up to. app/ fills it in; an empty function is not called.
struct MP3InfoHooks {
    // Before a read that may take long, because the bytes are not in memory.
    std::function<void()> beforeSlowRead;
};
MP3InfoHooks &TheMP3InfoHooks();

// Puts the module's state and its hooks back as at the start of the program.
void ResetMP3Info();

} // namespace metadata

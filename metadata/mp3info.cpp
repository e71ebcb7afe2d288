#include "metadata/mp3info.h"

#include "metadata/filepass.h"
#include "metadata/headdigest.h"
#include "metadata/id3v1.h"
#include "metadata/id3v2.h"
#include "metadata/mpegheader.h"
#include "metadata/tagtext.h"
#include "platform/machine.h"
#include "shell/globals.h"

#include <cerrno>
#include <limits>
#include <new>
#include <optional>
#include <utility>
#include <vector>

namespace metadata
{

namespace
{

constexpr std::size_t kSeenFiles = 64;

struct State {
    // The last pass's bytes. The other owners are the results of CopyRawTags.
    std::shared_ptr<FileBytes> bytes = std::make_shared<FileBytes>();
    std::optional<FrameFindings> findings; // in those bytes; no value until they were searched
    bool isKept = false;                   // the next pass over the file uses these bytes
    std::string rawID3v1Image;
    int majorVersion = 0;
    int heldHandle = -1; // the last file whose tag claims too much: it stays open
    std::vector<platform::FileIdentity> seen; // the last files, as the passes over them saw them
    std::size_t nextSeen = 0;                 // the index that is written next
    MP3InfoHooks hooks;
};

State &TheState()
{
    static State state;
    return state;
}

// Remembers the file at `path`, in the place of the oldest one, or of the last one when that is the
// same file.
void Remember(State &state, const std::string &path, const platform::FileIdentity &file)
{
    if (state.seen.empty())
        state.seen.resize(kSeenFiles);
    const std::size_t last = (state.nextSeen + kSeenFiles - 1) % kSeenFiles;
    const bool again = state.seen[last].path == path;
    platform::FileIdentity &seen = state.seen[again ? last : state.nextSeen];
    seen = file;
    seen.path = path;
    if (!again)
        state.nextSeen = (state.nextSeen + 1) % kSeenFiles;
}

void Fetch(State &state, const std::string &path)
{
    const bool isKept = std::exchange(state.isKept, false) && state.bytes->opened &&
                        state.bytes->failure == 0 && state.bytes->file.path == path &&
                        state.bytes->readsUnicode == shell::TheGlobals().UnicodeTags;
    if (isKept || IsStillTheSame(path, *state.bytes))
        return;
    state.findings.reset(); // they are views into the old bytes
    if (state.bytes.use_count() > 1)
        state.bytes = std::make_shared<FileBytes>();
    const int held = ReadFileBytes(path, state.hooks.beforeSlowRead, *state.bytes);
    CloseAllFiles();
    state.heldHandle = held;
    Remember(state, path, state.bytes->file);
}

// What was found in the beginning of the file while it was fetched; null where nothing was.
const HeadDigest *DigestOf(const FileBytes &bytes)
{
    return metadata::DigestOf(bytes.digest.get(), bytes.Head());
}

bool HasBody(const FileBytes &bytes)
{
    return bytes.opened && !bytes.claimsTooMuch && bytes.bodyBytes > 0;
}

// Whether there is an ID3v2 tag, by the rules with which the bytes were read.
bool HasTag(const FileBytes &bytes)
{
    return bytes.readsUnicode ? bytes.texts.has_value() : HasBody(bytes);
}

void TakeID3v1(State &state, ID3v1Tag &tag, bool &hasTag, bool wanted)
{
    if (!state.bytes->hasTail)
        return;
    const std::string_view image = state.bytes->Image();
    tag.Header = image.substr(0, 3);
    hasTag = tag.Header == "TAG";
    if (!hasTag || !wanted)
        return;
    ReadID3v1Fields(image, tag);
    state.rawID3v1Image = image;
}

// A field of a version 2.2 tag can reach to the tag's end, so the fields of a large tag may need
// several times its memory.
void TakeID3v2(State &state, ID3v2Tag &tag)
{
    try {
        const HeadDigest *digest = DigestOf(*state.bytes);
        if (!state.findings && digest != nullptr && digest->hasWholeTag)
            state.findings = digest->findings;
        ReadID3v2Frames(state.bytes->Body(), state.majorVersion, tag, &state.findings);
    } catch (const std::bad_alloc &) {
        state.bytes->failure = ENOMEM;
    }
}

// The position, one-based, of the audio header: the first sync pair within reach, else right after
// the ID3v2 tag, else 0.
std::int64_t HeaderPositionOf(const FileBytes &bytes)
{
    const HeadDigest *digest = DigestOf(bytes);
    const std::int64_t found =
        digest != nullptr ? digest->headerPosition : FindHeaderPosition(bytes.Head());
    if (found != 0)
        return found;
    return bytes.hasID3v2Header ? bytes.bodyBytes + 11 : 0;
}

void TakeHeader(const FileBytes &bytes, MPEGHeader &header)
{
    const std::int64_t position = HeaderPositionOf(bytes);
    const bool sizeKnown = bytes.file.sizeBytes <= std::numeric_limits<std::int32_t>::max();
    if (sizeKnown)
        header.FileSize = static_cast<std::int32_t>(bytes.file.sizeBytes);
    header.HeaderPosition = static_cast<std::int32_t>(position - 1);
    std::array<std::uint8_t, 4> four{}; // a byte that cannot be read is a zero
    if (position > 0)
        for (std::size_t i = 0; i < four.size(); ++i)
            four[i] = bytes.ByteAt(position + static_cast<std::int64_t>(i));
    DecodeHeader(four, header);
    ComputeLengths(sizeKnown, header);
}

// The length of a file that could not be opened, if the operating system reports it.
void TakeLengthOnly(const std::string &path, MPEGHeader &header)
{
    platform::FileIdentity now;
    if (platform::TheMachine().files->Identify(path, now) == 0 &&
        now.kind == platform::FileKind::Regular &&
        now.sizeBytes <= std::numeric_limits<std::int32_t>::max())
        header.FileSize = static_cast<std::int32_t>(now.sizeBytes);
}

// The part of GetMP3Info about the tags. Returns: whether the file could be opened and its tags do
// not claim too much.
bool TakeTags(State &state, const std::string &path, ID3v1Tag &id3v1, ID3v2Tag &id3v2,
              bool &hasID3v1, bool &hasID3v2, bool preferID3v2)
{
    hasID3v1 = false;
    hasID3v2 = false;
    id3v1.Genre = -1;
    id3v2.Genre = "-1";
    id3v2.kind = KindInUse();
    Fetch(state, path);
    const FileBytes &bytes = *state.bytes;
    if (bytes.opened && bytes.hasID3v2Header)
        state.majorVersion = bytes.majorVersion;
    if (!bytes.opened || bytes.claimsTooMuch)
        return false;
    hasID3v2 = HasTag(bytes);
    TakeID3v1(state, id3v1, hasID3v1, !(hasID3v2 && preferID3v2));
    if (hasID3v2 && bytes.readsUnicode)
        TakeTexts(*bytes.texts, id3v2);
    else if (hasID3v2)
        TakeID3v2(state, id3v2);
    return true;
}

} // namespace

void GetMP3Info(const std::string &FileName, ID3v1Tag &ID3v1, ID3v2Tag &ID3v2, MPEGHeader &Header,
                bool &HasID3v1, bool &HasID3v2, bool PreferID3v2)
{
    State &state = TheState();
    if (TakeTags(state, FileName, ID3v1, ID3v2, HasID3v1, HasID3v2, PreferID3v2))
        TakeHeader(*state.bytes, Header);
    else if (!state.bytes->opened)
        TakeLengthOnly(FileName, Header);
}

SongInfo ReadSongTags(const std::string &path)
{
    SongInfo info;
    TakeTags(TheState(), path, info.id3v1, info.id3v2, info.hasID3v1, info.hasID3v2, false);
    return info;
}

SongInfo ReadSongInfo(const std::string &path, bool preferID3v2)
{
    SongInfo info;
    GetMP3Info(path, info.id3v1, info.id3v2, info.header, info.hasID3v1, info.hasID3v2,
               preferID3v2);
    return info;
}

void GetTagFlags(const std::string &FileName, bool &HasID3v1, bool &HasID3v2)
{
    State &state = TheState();
    Fetch(state, FileName);
    const FileBytes &bytes = *state.bytes;
    const bool isWhole = bytes.opened && !bytes.claimsTooMuch;
    HasID3v1 = isWhole && bytes.hasTail && bytes.Image().starts_with("TAG");
    HasID3v2 = HasTag(bytes);
}

bool PaysToExpectPasses()
{
    return platform::TheMachine().files->PaysToExpect();
}

void ExpectPasses(const std::vector<std::string> &paths)
{
    ExpectReads(paths);
}

void ExpectPassesUnlessInState(const std::vector<platform::FileIdentity> &states)
{
    ExpectReadsUnlessInState(states);
}

void ExpectNoPasses()
{
    platform::TheMachine().files->ExpectNothing();
}

void KeepForNextPass()
{
    TheState().isKept = true;
}

bool HasTextsForFrames()
{
    const FileBytes &bytes = *TheState().bytes;
    if (bytes.readsUnicode || !HasBody(bytes))
        return false;
    if (const HeadDigest *digest = DigestOf(bytes); digest != nullptr && digest->hasWholeTag)
        return digest->hasTextsForFrames;
    const auto header = unicode::ReadTagHeader(bytes.Head());
    return header && unicode::NeedsFrames(*header, bytes.Head());
}

int LastReadFailure()
{
    return TheState().bytes->failure;
}

std::string_view RawID3v2Body()
{
    const FileBytes &bytes = *TheState().bytes;
    return HasBody(bytes) ? bytes.Body() : std::string_view();
}

const std::string &RawID3v1Image()
{
    return TheState().rawID3v1Image;
}

int ID3v2MajorVersion()
{
    return TheState().majorVersion;
}

const platform::FileIdentity &RawTagsFile()
{
    static const platform::FileIdentity kNone;
    const FileBytes &bytes = *TheState().bytes;
    return bytes.opened ? bytes.file : kNone;
}

std::int64_t RawTagsOpenedAtNs()
{
    return TheState().bytes->openedAtNs;
}

RawTags CopyRawTags()
{
    const State &state = TheState();
    RawTags tags;
    tags.bytes = state.bytes;
    tags.body = RawID3v2Body();
    tags.majorVersion = state.majorVersion;
    tags.file = RawTagsFile();
    tags.failure = LastReadFailure();
    const std::string_view image = state.bytes->Image();
    tags.fileHasID3v1 = state.bytes->hasTail && image.starts_with("TAG");
    tags.id3v1Image = tags.fileHasID3v1 ? image : state.rawID3v1Image;
    tags.texts = state.bytes->texts;
    return tags;
}

std::optional<platform::FileIdentity> LastSeen(const std::string &path)
{
    const State &state = TheState();
    for (std::size_t back = 1; back <= state.seen.size(); ++back) {
        const auto &file = state.seen[(state.nextSeen + kSeenFiles - back) % kSeenFiles];
        if (file.path == path)
            return file.inode != 0 ? std::optional(file) : std::nullopt;
    }
    return std::nullopt;
}

void CloseAllFiles()
{
    State &state = TheState();
    if (state.heldHandle >= 0)
        platform::TheMachine().files->Close(state.heldHandle);
    state.heldHandle = -1;
}

MP3InfoHooks &TheMP3InfoHooks()
{
    return TheState().hooks;
}

void ResetMP3Info()
{
    CloseAllFiles();
    TheState() = {};
}

} // namespace metadata

// Any file, any edit by frames: the edited field is read as it was written, every other field as
// before; all other frames and each byte of the audio are kept; a second save writes nothing, and
// an edit that is refused does not change the song.
#include "fuzz/bytesport.h"
#include "fuzz/expect.h"
#include "fuzz/memoryfiles.h"
#include "fuzz/quietedits.h"
#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "metadata/unicode/tagwalk.h"
#include "shell/globals.h"

#include <array>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace
{

using fuzz::Expect;
using fuzz::MemoryFiles;
using metadata::ID3v2Tag;
using metadata::SaveResult;
using metadata::unicode::Frame;

const std::string kSong = "/song.mp3";

// Answers questions, and stores their words.
struct AskedDesk : tests::QuietDesk {
    bool saysYes = false;
    std::string words;

    platform::Answer MessageBox(std::string_view text, platform::Buttons buttons,
                                std::string_view title, platform::BoxIcon icon) override
    {
        words += text;
        QuietDesk::MessageBox(text, buttons, title, icon);
        return saysYes ? platform::Answer::Yes : platform::Answer::No;
    }
};

struct OneFrame {
    std::string id, whole;
    std::optional<std::string> content;
    int majorVersion = 0;
};

// What a song consists of.
struct Parts {
    std::vector<OneFrame> frames;
    std::size_t tags = 0, tagBytes = 0;
    std::size_t front = 0; // the end of the tags at its beginning
    bool isLoose = false;  // it has a tag that is neither at the beginning nor at the end
};

Parts PartsOf(const std::string &song)
{
    Parts parts;
    fuzz::BytesPort bytes(song);
    const std::size_t id3v1 =
        song.size() >= 128 && song.compare(song.size() - 128, 3, "TAG") == 0 ? 128 : 0;
    std::set<std::pair<std::size_t, std::size_t>> behind; // the end and the beginning of each tag
    metadata::unicode::WalkTags(bytes, [&](const metadata::unicode::TagPlace &place,
                                           std::string_view, const auto &list) {
        ++parts.tags;
        parts.tagBytes += static_cast<std::size_t>(place.bytes);
        const auto offset = static_cast<std::size_t>(place.offset);
        if (offset == parts.front)
            parts.front = static_cast<std::size_t>(place.End());
        else
            behind.emplace(static_cast<std::size_t>(place.End()), offset);
        for (const Frame &frame : list.frames)
            parts.frames.push_back({std::string(frame.id), std::string(frame.whole),
                                    metadata::unicode::FrameContent(frame), frame.majorVersion});
    });
    std::size_t end = song.size() - id3v1;
    for (auto tag = behind.rbegin(); tag != behind.rend(); ++tag) {
        parts.isLoose |= tag->first != end;
        end = tag->second;
    }
    return parts;
}

using Field = std::string ID3v2Tag::*;

struct Change {
    Field field;
    std::string text;
    std::set<std::string> frames; // names of the frames that may change
};

const std::array<std::string, 8> kTexts = {"",
                                           "New",
                                           "Se\xC3\xB1or",
                                           "\xE6\xA1\x9C\xE3\x81\xAE",
                                           "\xF0\x9F\x98\x80 a; b",
                                           "(x) \xD0\x91",
                                           "\xC3\x83\xC2\xA9",
                                           std::string(300, 'x')};

Change ChangeFor(unsigned char choice)
{
    const std::string &text = kTexts.at(choice >> 3U & 7U);
    switch (choice & 7U) {
    case 0:
        return {&ID3v2Tag::Title, text, {"TIT2"}};
    case 1:
        return {&ID3v2Tag::Artist, text, {"TPE1"}};
    case 2:
        return {&ID3v2Tag::Album, text, {"TALB"}};
    case 3:
        return {&ID3v2Tag::Year,
                text.size() % 2 == 0 ? text : "2001",
                {"TYER", "TDRC", "TDRL", "TDAT", "TIME"}};
    case 4:
        return {&ID3v2Tag::Genre, text.empty() ? "-1" : text, {"TCON"}};
    case 5:
        return {&ID3v2Tag::Comment, text, {"COMM"}};
    default:
        return {&ID3v2Tag::Lyrics, text, {"USLT", "SYLT"}};
    }
}

// Whether the frame is one of version 2.4 that gets another name or another order.
bool IsRebuilt(const OneFrame &frame)
{
    static const std::set<std::string> kNames = {"TDRC", "TDOR", "TIPL", "TMCL",
                                                 "CHAP", "CTOC", "SEEK", "PIC"};
    return frame.majorVersion != 3 && kNames.contains(frame.id);
}

bool HasOtherEncoding(const OneFrame &frame)
{
    return frame.majorVersion == 4 && frame.content && !frame.content->empty() &&
           static_cast<unsigned char>(frame.content->front()) > 1;
}

// Each frame of `before` that the change does not concern is in `after`, unless a question named
// it.
void ExpectFramesKept(const Parts &before, const Parts &after, const Change &change,
                      const std::string &named)
{
    std::set<std::string> wholes, contents, ids;
    for (const OneFrame &frame : after.frames) {
        wholes.insert(frame.whole);
        ids.insert(frame.id);
        if (frame.content)
            contents.insert(frame.id + *frame.content);
    }
    // The frames of several tags from which one field is read may be joined in a new one.
    static const std::set<std::string> kFields = {"TIT2", "TPE1", "TALB", "TYER", "TDRC",
                                                  "TDRL", "TCON", "TRCK", "COMM", "USLT"};
    for (const OneFrame &frame : before.frames) {
        if ((before.tags > 1 && kFields.contains(frame.id)) || change.frames.contains(frame.id) ||
            IsRebuilt(frame) || named.find(frame.id) != std::string::npos ||
            named.find("...") != std::string::npos)
            continue;
        if (frame.majorVersion == 3)
            Expect(wholes.contains(frame.whole));
        else if (frame.content && !HasOtherEncoding(frame))
            Expect(contents.contains(frame.id + *frame.content));
        else
            Expect(ids.contains(frame.id));
    }
}

void ExpectOtherFields(ID3v2Tag before, ID3v2Tag after, const Change &change)
{
    before.*(change.field) = after.*(change.field) = "";
    Expect(before == after);
}

void ExpectWritten(const std::string &text, const std::string &read, const Change &change,
                   const Parts &before)
{
    const bool isChosen = change.field == &ID3v2Tag::Comment || change.field == &ID3v2Tag::Lyrics;
    if (isChosen && text.empty()) // another one may be read
        Expect(read.empty() || before.frames.size() > 1);
    else
        Expect(read == text);
}

void Check(const unsigned char *data, std::size_t size, AskedDesk &desk, MemoryFiles &files)
{
    const std::string before(reinterpret_cast<const char *>(data) + 2, size - 2);
    files.names[kSong] = std::make_shared<std::string>(before);
    const metadata::SongInfo old = metadata::ReadSongInfo(kSong);
    const Parts parts = PartsOf(before);
    metadata::SongInfo pass = old;
    const Change change = ChangeFor(data[0]);
    pass.id3v2.*(change.field) = change.text;
    desk.saysYes = (data[1] & 1) != 0;
    const bool saved = metadata::SaveTag(pass.id3v1, pass.id3v2, old.id3v1, old.id3v2, kSong,
                                         old.hasID3v1, true, nullptr);
    Expect(files.names.size() == 1 && files.names.count(kSong) == 1);
    const std::string after = *files.names[kSong];
    const auto result = metadata::LastSaveResult();
    Expect(saved == (result == SaveResult::Written));
    if (!saved) {
        Expect(after == before);
        return;
    }

    // The new tag, if there is one, then the audio.
    const Parts now = PartsOf(after);
    const std::size_t image = old.hasID3v1 ? 128 : 0;
    const auto header = metadata::unicode::ReadTagHeader(after);
    if (parts.isLoose || parts.tags >= 16) // a tag that was not read may be at the beginning now
        return;
    const std::size_t front = header ? static_cast<std::size_t>(header->WholeBytes()) : 0;
    Expect(after.size() >= front + image);
    const std::string audio = after.substr(front, after.size() - front - image);
    Expect(before.compare(parts.front, audio.size(), audio) == 0);
    Expect(after.compare(after.size() - image, image, before, before.size() - image, image) == 0);
    Expect(audio.size() == before.size() - image - parts.tagBytes);
    const std::string named = desk.words;
    ExpectFramesKept(parts, now, change, named);

    const metadata::SongInfo again = metadata::ReadSongInfo(kSong);
    if (named.empty()) {
        ExpectOtherFields(old.id3v2, again.id3v2, change);
        ExpectWritten(change.text, again.id3v2.*(change.field), change, parts);
    }
    metadata::SongInfo second = again;
    if (!change.text.empty())
        second.id3v2.*(change.field) = change.text;
    Expect(!metadata::SaveTag(second.id3v1, second.id3v2, again.id3v1, again.id3v2, kSong,
                              again.hasID3v1, true, nullptr));
    Expect(metadata::LastSaveResult() == SaveResult::Unchanged);
    Expect(*files.names[kSong] == after);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    if (size < 2)
        return 0;
    static AskedDesk desk;
    desk.words.clear();
    fuzz::EditQuietly(desk);
    shell::TheGlobals().UnicodeTags = true;
    MemoryFiles files;
    Check(data, size, desk, files);
    return 0;
}

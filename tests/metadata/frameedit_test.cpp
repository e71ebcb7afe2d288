// SaveTag where tags are read and written by their frames.
#include "metadata/tagtext.h"
#include "shell/globals.h"
#include "tests/metadata/songedit.h"
#include "tests/metadata/unicode/tagbytes.h"

#include <functional>

using namespace std::string_literals;
using namespace std::string_view_literals;
using metadata::SaveResult;
using tests::AudioBytes;
using tests::Frame22;
using tests::Frame23;
using tests::Frame24;
using tests::TagOf;
using tests::Text24;

namespace
{

constexpr char kJapanese[] = "\xE6\xA1\x9C"; // one character

// "ab" in UTF-16 as this program writes it.
std::string Utf16(std::u16string_view text)
{
    std::string bytes = "\xFF\xFE";
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

std::string Latin(std::string_view name, std::string_view text)
{
    return Frame23(name, '\0' + std::string(text));
}

std::string Wide(std::string_view name, std::u16string_view text)
{
    return Frame23(name, '\x01' + Utf16(text));
}

class FrameEdit : public tests::SongEdit
{
protected:
    FrameEdit() { shell::TheGlobals().UnicodeTags = true; }

    // Changes the record, saves, and expects this ID3v2 tag in front of the audio and `back`.
    void Edit(const std::string &bytes, const std::function<void(metadata::ID3v2Tag &)> &change,
              const std::string &wantTag, const std::string &back = {}, const char *what = "")
    {
        Song(bytes);
        change(m_pass.id3v2);
        EXPECT_TRUE(Save(m_pass.hasID3v1, true)) << what;
        EXPECT_EQ(metadata::LastSaveResult(), SaveResult::Written) << what;
        ExpectSong(wantTag + AudioBytes() + back, what);
        // A second save writes nothing.
        m_pass = m_old = metadata::ReadSongInfo(m_path);
        change(m_pass.id3v2);
        EXPECT_FALSE(Save(m_pass.hasID3v1, true)) << what;
        EXPECT_EQ(metadata::LastSaveResult(), SaveResult::Unchanged) << what;
    }
};

const std::string kForeign = Frame23("APIC", "\0image/png\0\x03\0\x89PNG\xFF\xFE\0\0"s) +
                             Frame23("PRIV", "owner\0\xFF\xFB\x90\x64"s) +
                             Frame23("POPM", "who\0\xC4\0\0\0\x09"s) +
                             Frame23("XYZW", "\x03 what nobody knows", '\x20');

} // namespace

TEST_F(FrameEdit, OneFieldChangesItsFrameAlone)
{
    const std::string padding(37, '\0');
    const auto body = [&](const std::string &title) {
        return TagOf(3, Wide("TPE1", u"Кино") + title + kForeign + Latin("TYER", "1987") +
                            Frame23("COMM", "\0rusiTunNORM\0 0000"s) + padding);
    };
    Edit(
        body(Latin("TIT2", "Old")) + AudioBytes(),
        [](metadata::ID3v2Tag &tag) { tag.Title = "New"; }, body(Latin("TIT2", "New")));
    Edit(
        body(Latin("TIT2", "Old")) + AudioBytes(),
        [](metadata::ID3v2Tag &tag) { tag.Title = kJapanese; }, body(Wide("TIT2", u"桜")));
    Edit(
        body(Latin("TIT2", "Old")) + AudioBytes(),
        [](metadata::ID3v2Tag &tag) { tag.Title = "Se\xC3\xB1or"; },
        body(Latin("TIT2", "Se\xF1or")));
    Edit(
        body(Latin("TIT2", "Old")) + AudioBytes(),
        [](metadata::ID3v2Tag &tag) { tag.Title = "\xF0\x9F\x98\x80 (\xE2\x82\xAC 5)"; },
        body(Wide("TIT2", u"😀 (€ 5)")));
    Edit(
        body(Latin("TIT2", "Old")) + AudioBytes(),
        [](metadata::ID3v2Tag &tag) { tag.Title.clear(); }, body({}));
}

// Latin-1 that would be read as UTF-8 is written in UTF-16.
TEST_F(FrameEdit, WhatLooksLikeUtf8IsNotWrittenAsLatin1)
{
    Edit(
        TagOf(3, Latin("TIT2", "Old")) + AudioBytes(),
        [](metadata::ID3v2Tag &tag) { tag.Title = "\xC3\x83\xC2\xA9"; },
        TagOf(3, Wide("TIT2", u"\u00C3\u00A9")));
}

TEST_F(FrameEdit, EachField)
{
    const std::string base = TagOf(3, Latin("TIT2", "T"));
    const auto with = [](const std::string &frame) { return TagOf(3, Latin("TIT2", "T") + frame); };
    Edit(
        base + AudioBytes(), [](auto &tag) { tag.Artist = "A; B"; }, with(Latin("TPE1", "A; B")));
    Edit(
        base + AudioBytes(), [](auto &tag) { tag.Album = "A"; }, with(Latin("TALB", "A")));
    Edit(
        base + AudioBytes(), [](auto &tag) { tag.Year = "1999"; }, with(Latin("TYER", "1999")));
    Edit(
        base + AudioBytes(), [](auto &tag) { tag.Genre = "Rock"; }, with(Latin("TCON", "Rock")));
    Edit(
        base + AudioBytes(), [](auto &tag) { tag.Genre = "(a)"; }, with(Latin("TCON", "((a)")));
    Edit(
        base + AudioBytes(), [](auto &tag) { tag.Track = 7; }, with(Latin("TRCK", "7")));
    Edit(
        base + AudioBytes(), [](auto &tag) { tag.Comment = "C"; },
        with(Frame23("COMM", "\0eng\0C"s)));
    Edit(
        base + AudioBytes(), [](auto &tag) { tag.Lyrics = "[00:01]L\r\n"; },
        with(Frame23("USLT", "\0eng\0[00:01]L\r\n"s)));
    Edit(
        base + AudioBytes(), [](auto &tag) { tag.Lyrics = kJapanese; },
        with(Frame23("USLT", "\x01"
                             "eng" +
                                 Utf16(u"") + "\0\0"s + Utf16(u"桜"))));
}

TEST_F(FrameEdit, ValuesThatTheFieldDoesNotShowStay)
{
    const auto of = [](const std::string &track, const std::string &comment) {
        return TagOf(3, track + Frame23("COMM", "\0eng"s + "Other\0x"s) + comment);
    };
    const std::string chosen = Frame23("COMM", "\0deu\0Alt"s);
    Edit(
        of(Latin("TRCK", "3/12"), chosen) + AudioBytes(), [](auto &tag) { tag.Track = 4; },
        of(Latin("TRCK", "4/12"), chosen));
    Edit(
        of(Latin("TRCK", "3/12"), chosen) + AudioBytes(), [](auto &tag) { tag.Comment = "Neu"; },
        of(Latin("TRCK", "3/12"), Frame23("COMM", "\0deu\0Neu"s)));
    Edit(
        TagOf(3, Latin("TPE1", "A\0B"s)) + AudioBytes(), [](auto &tag) { tag.Artist = "A; B; C"; },
        TagOf(3, Latin("TPE1", "A\0B\0C"s)));
}

TEST_F(FrameEdit, Version24BecomesVersion23)
{
    const std::string picture = "\x89PNG\xFF\0\xE0"s;
    const std::string old =
        TagOf(4, Text24("TIT2", "Old") + Text24("TDRC", "2004-05-06T07:08") +
                     Text24("TPE1", "A\0\xD0\x91"s) + Text24("TSOP", "\xD0\x91") +
                     Frame24("APIC", "\x03image/png\0\x03\xD0\x91\0"s + picture) +
                     Frame24("TXXX", "\x03\xD0\x91\0V"s) + Text24("TMCL", "drums\0Me"s) +
                     Frame24("PRIV", "o\0\xFF\0\xE0"s, '\x02') + Text24("TIPL", "mix\0You"s) +
                     std::string(20, '\0'));
    const std::string wide = Utf16(u"Б");
    const std::string want = TagOf(
        3, Latin("TIT2", "New") + Latin("TYER", "2004") + Latin("TDAT", "0605") +
               Latin("TIME", "0708") + Frame23("TPE1", "\x01" + Utf16(u"A") + "\0\0"s + wide) +
               Frame23("TSOP", "\x01" + wide) +
               Frame23("APIC", "\x01image/png\0\x03"s + wide + "\0\0"s + picture) +
               Frame23("TXXX", "\x01" + wide + "\0\0"s + Utf16(u"V")) +
               Latin("IPLS", "drums\0Me\0mix\0You"s) + Frame23("PRIV", "o\0\xFF\xE0"s) +
               std::string(20, '\0'));
    Edit(
        old + AudioBytes(), [](auto &tag) { tag.Title = "New"; }, want);
}

TEST_F(FrameEdit, ADateThatHasNoFormStaysBeside)
{
    const auto change = [](auto &tag) { tag.Title = "New"; };
    const auto old = [](const std::string &time) {
        return TagOf(4, Text24("TIT2", "Old") + Text24("TDRC", time)) + AudioBytes();
    };
    const auto want = [](const std::string &frames) {
        return TagOf(3, Latin("TIT2", "New") + frames);
    };
    Edit(old("2004"), change, want(Latin("TYER", "2004")));
    Edit(old("2004-05"), change, want(Latin("TYER", "2004") + Latin("TDRC", "2004-05")));
    Edit(old("2004-05-06"), change, want(Latin("TYER", "2004") + Latin("TDAT", "0605")));
    Edit(old("soon"), change, want(Frame23("TDRC", "\0soon"s)));
    // A new year keeps day and month.
    Edit(
        old("2004-05-06"), [](auto &tag) { tag.Year = "2005"; },
        TagOf(3, Latin("TIT2", "Old") + Latin("TYER", "2005") + Latin("TDAT", "0605")));
}

TEST_F(FrameEdit, Version22BecomesVersion23)
{
    const std::string old = TagOf(2, Frame22("TT2", "\0Old"s) + Frame22("TP2", "\0Band"s) +
                                         Frame22("PIC", "\0PNG\x03\0data"s) +
                                         Frame22("UFI", "o\0id"s) + std::string(8, '\0'));
    const std::string want = TagOf(3, Latin("TIT2", "New") + Latin("TPE2", "Band") +
                                          Frame23("APIC", "\0image/png\0\x03\0data"s) +
                                          Frame23("UFID", "o\0id"s) + std::string(8, '\0'));
    Edit(
        old + AudioBytes(), [](auto &tag) { tag.Title = "New"; }, want);
}

// A frame that cannot be kept is named before anything is written.
TEST_F(FrameEdit, WhatCannotBeKeptIsAskedAbout)
{
    const std::string old = TagOf(2, Frame22("TT2", "\0Old"s) + Frame22("CRM", "o\0secret"s));
    for (const auto answer : {platform::Answer::No, platform::Answer::Yes}) {
        Song(old + AudioBytes());
        m_desk.yesOrNo = answer;
        m_desk.boxes.clear();
        shell::TheGlobals().BackUpFiles = answer == platform::Answer::No;
        m_pass.id3v2.Title = "New";
        EXPECT_EQ(Save(false, true), answer == platform::Answer::Yes);
        ASSERT_EQ(m_desk.boxes.size(), 1U);
        EXPECT_NE(m_desk.boxes[0].find("lost: CRM."), std::string::npos) << m_desk.boxes[0];
        const bool isWritten = answer == platform::Answer::Yes;
        EXPECT_EQ(metadata::LastSaveResult(),
                  isWritten ? SaveResult::Written : SaveResult::Declined);
        EXPECT_EQ(tests::ReadFile(m_path),
                  (isWritten ? TagOf(3, Latin("TIT2", "New")) : old) + AudioBytes());
        EXPECT_FALSE(std::filesystem::exists(m_desk.program / "Backup"));
    }
}

// All tags of a file become one; what is between stays, and the audio keeps each byte.
TEST_F(FrameEdit, TagsAtBothEndsBecomeOne)
{
    const std::string front = TagOf(3, Latin("TIT2", "Old") + kForeign);
    const std::string behind = TagOf(4, Text24("TALB", "Album") + Text24("TSSE", "lame"), 0x10);
    const std::string want = TagOf(3, Latin("TIT2", "New") + kForeign +
                                          Frame23("TALB", "\0Album"s) + Frame23("TSSE", "\0lame"s));
    Edit(
        front + AudioBytes() + behind, [](auto &tag) { tag.Title = "New"; }, want);
}

TEST_F(FrameEdit, UnsynchronisationAndExtendedHeader)
{
    const std::string extended = tests::BigEndian(6, 4) + std::string(6, '\0');
    Edit(
        TagOf(3, extended + Latin("TIT2", "Old") + kForeign, 0x40) + AudioBytes(),
        [](auto &tag) { tag.Title = "New"; }, TagOf(3, Latin("TIT2", "New") + kForeign));
    std::string stored;
    for (const char c : Latin("TIT2", "Old") + kForeign) {
        stored += c;
        if (c == '\xFF')
            stored += '\0';
    }
    Edit(
        TagOf(3, stored, 0x80) + AudioBytes(), [](auto &tag) { tag.Title = "New"; },
        TagOf(3, Latin("TIT2", "New") + kForeign));
}

TEST_F(FrameEdit, AFileWithoutATagGetsOne)
{
    Edit(
        AudioBytes(), [](auto &tag) { tag.Title = kJapanese; }, TagOf(3, Wide("TIT2", u"桜")));
}

TEST_F(FrameEdit, ATagIsTakenAwayWithoutALossOfAudio)
{
    for (const auto &tag : {TagOf(4, Text24("TIT2", "Old")), TagOf(3, Latin("TIT2", "Old"))}) {
        Song(tag + AudioBytes());
        EXPECT_TRUE(Save(false, false));
        ExpectSong(AudioBytes());
    }
}

// The ID3v1 tag keeps its bytes as long as nobody changes one of its fields.
TEST_F(FrameEdit, TheOldTagKeepsItsBytes)
{
    std::string image = "TAG" + std::string("Old") + std::string(27, ' ');
    image += std::string(60, ' ') + "1999" + "a comment of thirty characters" + "\xC8";
    ASSERT_EQ(image.size(), 128U);
    Edit(
        TagOf(3, Latin("TIT2", "Old")) + AudioBytes() + image, [](auto &tag) { tag.Title = "New"; },
        TagOf(3, Latin("TIT2", "New")), image);
    // Changing the ID3v1 tag does not change the ID3v2 tag, whatever its version.
    const std::string front = TagOf(4, Text24("TIT2", "Old") + Text24("TSOP", "x"));
    Song(front + AudioBytes() + image);
    m_pass.id3v1.Title = "Other" + std::string(25, ' ');
    EXPECT_TRUE(Save(true, true));
    ExpectSong(front + AudioBytes() + Image());
    Song(front + AudioBytes() + image);
    EXPECT_TRUE(Save(false, true));
    ExpectSong(front + AudioBytes());
}

TEST_F(FrameEdit, ATagThatClaimsTooMuchIsRead)
{
    const std::string whole = TagOf(3, Latin("TIT2", "Old") + std::string(20000, 'x'));
    const std::string song = whole.substr(0, 3000);
    Song(song);
    EXPECT_EQ(m_pass.id3v2.Title, "Old");
    m_pass.id3v2.Title = "New";
    EXPECT_FALSE(Save(false, true));
    ASSERT_EQ(m_desk.boxes.size(), 1U);
    EXPECT_NE(m_desk.boxes[0].find("longer than the file"), std::string::npos);
    EXPECT_EQ(tests::ReadFile(m_path), song);
}

// Bytes after the frames that are no frame are kept.
TEST_F(FrameEdit, WhatIsNoFrameStays)
{
    const std::string odd = "\x7F\x01 odd bytes \0\0\x05"s;
    Edit(
        TagOf(3, Latin("TIT2", "Old") + odd) + AudioBytes(), [](auto &tag) { tag.Title = "New"; },
        TagOf(3, Latin("TIT2", "New") + odd));
}

// The rows get the values that reading the new song returns: the ID3v1 tag fills what is missing.
TEST_F(FrameEdit, RowsGetBothTags)
{
    metadata::ID3v2Tag row;
    metadata::TheTagWriterHooks().updateCatalogue = [&](const metadata::ID3v2Tag &tag,
                                                        const std::string &) { row = tag; };
    shell::TheGlobals().UpdateDBAfterEditing = true;
    std::string image = "TAGOld" + std::string(27, '\0') + "Art\xE9" + std::string(56, '\0') +
                        "1999" + std::string(30, '\0') + '\x11';
    Song(TagOf(3, Latin("TIT2", "Old")) + AudioBytes() + image);
    m_pass.id3v2.Title = kJapanese;
    EXPECT_TRUE(Save(true, true));
    EXPECT_EQ(row.kind, metadata::TextKind::Utf8);
    EXPECT_EQ(row.Title, kJapanese);
    EXPECT_EQ(row.Artist, "Art\xC3\xA9");
    EXPECT_EQ(row.Genre, "Rock");
    EXPECT_EQ(row.Year, "1999");
    metadata::TheTagWriterHooks() = {};
}

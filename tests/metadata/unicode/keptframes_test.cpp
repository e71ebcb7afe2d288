// An edit changes the frame of its field, and nothing else.
#include "tests/metadata/unicode/tagbytes.h"
#include "tests/metadata/unicode/taginmemory.h"

#include <gtest/gtest.h>

#include <array>

using namespace metadata::unicode;
using namespace std::string_literals;

namespace tests
{

namespace
{

struct FieldCase {
    const char *name;
    std::string frame; // before
    std::string want;  // after
    ChangeOfTexts change;
};

const std::array<FieldCase, 8> kFields = {{
    {"title", Frame23("TIT2", "\0Old"s), Frame23("TIT2", "\0New"s),
     [](TagTexts &texts) { texts.title = "New"; }},
    {"artist", Frame23("TPE1", "\x01\xFF\xFEO\0"s), Frame23("TPE1", "\x01\xFF\xFE\x1C\x68"s),
     [](TagTexts &texts) { texts.artist = "\xE6\xA0\x9C"; }},
    {"album", Frame23("TALB", "\0Old\0"s), Frame23("TALB", "\0New"s),
     [](TagTexts &texts) { texts.album = "New"; }},
    {"year",
     Frame23("TYER", "\0"
                     "1999"s),
     Frame23("TYER", "\0"
                     "2000"s),
     [](TagTexts &texts) { texts.year = "2000"; }},
    {"genre", Frame23("TCON", "\0(17)Rock"s), Frame23("TCON", "\0Jazz"s),
     [](TagTexts &texts) { texts.genre = "Jazz"; }},
    {"track",
     Frame23("TRCK", "\0"
                     "03/12"s),
     Frame23("TRCK", "\0"
                     "4/12"s),
     [](TagTexts &texts) { texts.track = 4; }},
    {"comment", Frame23("COMM", "\0fra\0Old"s), Frame23("COMM", "\0fra\0New"s),
     [](TagTexts &texts) { texts.comment = "New"; }},
    {"lyrics", Frame23("USLT", "\0deu\0Old"s), Frame23("USLT", "\0deu\0New"s),
     [](TagTexts &texts) { texts.lyrics = "New"; }},
}};

// What other programs put into tags; the bytes have no meaning here.
const std::array<std::string, 6> kOfOthers = {
    Frame23("APIC", "\0image/png\0\x03\0\x89PNG\xFF\xFE\0\0"s),
    Frame23("TT2\0"s, ""),
    Frame23("COMM", "\0engDescribed\0other"s),
    Frame23("PRIV", "o\0\xFF\xE0\0\xFF\0"s, '\x20'),
    Frame23("TIT2", ""),
    Frame23("RVAD", "\0\0")};

} // namespace

// Each field, with the other frames before and after its own, byte by byte.
TEST(KeptFrames, Version23KeepsEachByte)
{
    const std::string padding(41, '\0');
    for (const FieldCase &c : kFields) {
        for (std::size_t place = 0; place <= kOfOthers.size(); ++place) {
            SCOPED_TRACE(c.name + std::to_string(place));
            std::string front, back;
            for (std::size_t i = 0; i < kOfOthers.size(); ++i)
                (i < place ? front : back) += kOfOthers.at(i);
            if (c.name == "title"s)
                front = back = "";
            for (const FieldCase &other : kFields)
                if (other.name != c.name)
                    back += other.frame;
            const std::string old = TagOf(3, front + c.frame + back + padding) + kSomeAudio;
            const auto edited = EditInMemory(old, c.change);
            EXPECT_EQ(edited.plan.lost, std::vector<std::string>());
            EXPECT_TRUE(edited.bytes == TagOf(3, front + c.want + back + padding) + kSomeAudio);
            const auto second = EditInMemory(edited.bytes, c.change);
            EXPECT_FALSE(second.plan.isChanged);
        }
    }
}

// A change that the tag can store only in part: it is written once.
TEST(KeptFrames, WhatIsReadOtherwiseIsNotWrittenTwice)
{
    const std::string old = TagOf(3, Frame23("TIT2", "\0Old"s)) + kSomeAudio;
    const std::pair<const char *, ChangeOfTexts> changes[] = {
        {"a year of five digits", [](TagTexts &texts) { texts.year = "19995"; }},
        {"a year with a month", [](TagTexts &texts) { texts.year = "1999-05"; }},
        {"a short form of a genre", [](TagTexts &texts) { texts.genre = "RX"; }},
        {"a separator at the end", [](TagTexts &texts) { texts.artist = "A; "; }},
    };
    for (const auto &[name, change] : changes) {
        SCOPED_TRACE(name);
        const auto edited = EditInMemory(old, change);
        EXPECT_TRUE(edited.plan.isChanged);
        EXPECT_FALSE(EditInMemory(edited.bytes, change).plan.isChanged);
    }
}

// Source: version 2.4, section 4.2.5 (TDRC), version 2.3, section 4.2.1 (TYER, TDAT, TIME).
TEST(KeptFrames, DatesThatATagHasInBothForms)
{
    const auto title = [](TagTexts &texts) { texts.title = "New"; };
    const auto year = [](TagTexts &texts) { texts.year = "2010"; };
    const auto song = [](const std::string &frames) {
        return TagOf(4, Text24("TIT2", "Old") + frames) + kSomeAudio;
    };
    const auto want = [](const std::string &text, const std::string &frames) {
        return TagOf(3, Frame23("TIT2", '\0' + text) + frames) + kSomeAudio;
    };
    const auto text = [](std::string_view name, const std::string &value) {
        return Frame23(name, '\0' + value);
    };
    // The year that is read stays 2004, and neither of the two is lost.
    const std::string both = song(Text24("TYER", "1999") + Text24("TDRC", "2004-05-06"));
    EXPECT_EQ(EditInMemory(both, title).bytes,
              want("New", text("TYER", "1999") + text("TDRC", "2004-05-06")));
    EXPECT_EQ(EditInMemory(both, year).bytes,
              want("Old", text("TYER", "2010") + text("TDAT", "0605")));
    const std::string day = song(Text24("TDAT", "0102") + Text24("TDRC", "2004-05-06"));
    EXPECT_EQ(EditInMemory(day, title).bytes,
              want("New", text("TDAT", "0102") + text("TDRC", "2004-05-06")));
    EXPECT_EQ(
        EditInMemory(day, year).bytes,
        want("Old", text("TDAT", "0102") + text("TYER", "2010") + text("TDRC", "2010-05-06")));
    // Words instead of a year are written without the day.
    const std::string plain = song(Text24("TDRC", "2004-05-06"));
    const auto words = EditInMemory(plain, [](TagTexts &texts) { texts.year = "soon"; });
    EXPECT_EQ(words.bytes, want("Old", text("TYER", "soon")));
    EXPECT_EQ(TextsOf(words.bytes).year, "soon");
    const std::string originals = song(Text24("TORY", "1950") + Text24("TDOR", "1960"));
    EXPECT_EQ(EditInMemory(originals, title).bytes,
              want("New", text("TORY", "1950") + text("TDOR", "1960")));
    const std::string people = song(Text24("IPLS", "a\0b"s) + Text24("TIPL", "c\0d"s));
    EXPECT_EQ(EditInMemory(people, title).bytes,
              want("New", text("IPLS", "a\0b"s) + text("TIPL", "c\0d"s)));
}

TEST(KeptFrames, OddFramesOfVersion24)
{
    const auto title = [](TagTexts &texts) { texts.title = "New"; };
    // A name of three letters keeps its fourth character, and the frames after it keep their place.
    const std::string three =
        TagOf(4, Text24("TIT2", "Old") + Frame24("ABC\0"s, "x") + Frame24("PRIV", "o\0y"s)) +
        kSomeAudio;
    EXPECT_EQ(
        EditInMemory(three, title).bytes,
        TagOf(3, Frame23("TIT2", "\0New"s) + Frame23("ABC\0"s, "x") + Frame23("PRIV", "o\0y"s)) +
            kSomeAudio);
    // Cut off within the bytes of its flags: there is nothing to keep, and it is named.
    const std::string cut =
        TagOf(4, Text24("TIT2", "Old") + Frame24("TALB", "\0x"s, 0x09)) + kSomeAudio;
    const auto edited = EditInMemory(cut, title);
    EXPECT_EQ(edited.plan.lost, std::vector<std::string>{"TALB"});
    EXPECT_EQ(TextsOf(edited.bytes).album, std::nullopt);
    // Encrypted: the bytes stay, with their method (2.3, section 3.3.1: after the flags).
    const std::string secret =
        TagOf(4, Text24("TIT2", "Old") + Frame24("TPE1", "g\x07secret", 0x44)) + kSomeAudio;
    EXPECT_EQ(EditInMemory(secret, title).bytes,
              TagOf(3, Frame23("TIT2", "\0New"s) + Frame23("TPE1", "\x07gsecret", 0x60)) +
                  kSomeAudio);
}

// Of several tags: what is read before the edit is read after it.
TEST(KeptFrames, FieldsOfSeveralTagsStay)
{
    const auto title = [](TagTexts &texts) { texts.title = "New"; };
    const std::string described = Frame23("COMM", "\0engNote\0first"s);
    const std::string plain = Frame23("COMM", "\0eng\0second"s);
    const std::string synced = Frame23("SYLT", "\0eng\x02\x01\0One\0\0\0\x04\0"s);
    const std::string lyrics = Frame23("USLT", "\0eng\0Words"s);
    const std::pair<std::string, std::string> cases[] = {
        {described, plain},
        {synced, lyrics},
        {Frame23("TIT2", ""), Frame23("TALB", "\0A"s)},
        {Frame23("TALB", "\0"s), Frame23("TALB", "\0A"s)},
        {Frame23("TDRL", "\0"
                         "1992"s),
         Frame23("TYER", "\0"
                         "1990"s)},
        {Frame23("TRCK", "\0none"s), Frame23("TRCK", "\0"
                                                     "5/9"s)},
    };
    for (const auto &[first, second] : cases) {
        const std::string song =
            TagOf(3, Frame23("TIT2", "\0Old"s) + first) + TagOf(3, second) + kSomeAudio;
        TagTexts want = TextsOf(song);
        want.title = "New";
        const auto edited = EditInMemory(song, title);
        EXPECT_EQ(TextsOf(edited.bytes), want) << first;
        EXPECT_EQ(edited.plan.texts, want) << first;
    }
    EXPECT_EQ(TextsOf(TagOf(3, described) + TagOf(3, plain) + kSomeAudio).comment, "second");
    EXPECT_EQ(TextsOf(TagOf(3, synced) + TagOf(3, lyrics) + kSomeAudio).lyrics, "Words");
}

TEST(KeptFrames, SeveralGenres)
{
    const std::string song = TagOf(4, Text24("TCON", "Rock\0Own"s)) + kSomeAudio;
    const auto edited = EditInMemory(song, [](TagTexts &texts) { texts.genre = "(a); (b)"; });
    EXPECT_EQ(TextsOf(edited.bytes).genre, "(a); (b)");
    EXPECT_EQ(edited.bytes, TagOf(3, Frame23("TCON", "\0((a)\0((b)"s)) + kSomeAudio);
    // Latin-1 that would be read as UTF-8, in a genre as well.
    const auto odd = EditInMemory(song, [](TagTexts &texts) { texts.genre = "\xC3\x83\xC2\xA9"; });
    EXPECT_EQ(TextsOf(odd.bytes).genre, "\xC3\x83\xC2\xA9");
}

} // namespace tests

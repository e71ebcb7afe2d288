// Tags that are cut off, have sizes that are too large, refer to each other in circles, or are made
// to exhaust the machine: they are read and edited within bounds, the audio is kept, and what is
// refused stays as it is.
#include "metadata/unicode/textvalues.h"
#include "tests/metadata/unicode/tagbytes.h"
#include "tests/metadata/unicode/taginmemory.h"

#include <gtest/gtest.h>

#include <chrono>

using namespace metadata::unicode;
using namespace std::string_literals;

namespace tests
{

namespace
{

// A compressed frame of version 2.4.
std::string Packed24(std::string_view name, const std::string &content)
{
    return Frame24(
        name, BigEndian(static_cast<std::uint32_t>(content.size()), 4, 7) + Packed(content), 0x09);
}

const std::string kId3v1 = "TAG" + std::string(125, ' ');

std::vector<std::string> SampleSongs()
{
    const std::string usual = Frame23("TIT2", "\0Old"s) + Frame23("TPE1", "\x01\xFF\xFE\x42\x30"s) +
                              Frame23("COMM", "\0eng\0Words"s) +
                              Frame23("APIC", "\0image/png\0\x03\0\xFF\xFE\0"s) +
                              std::string(9, '\0');
    const std::string today = Text24("TIT2", "\xD0\x91") + Text24("TDRC", "2004-05-06") +
                              Packed24("TALB", "\x03"s + std::string(80, 'a')) +
                              Frame24("PRIV", "\0\0\0\x04o\0\xFF\0\xE0"s, 0x03) +
                              Text24("TIPL", "mix\0You"s);
    return {
        TagOf(2, Frame22("TT2", "\0Old"s) + Frame22("PIC", "\0PNG\x03\0data"s)) + kSomeAudio,
        TagOf(3, usual) + kSomeAudio + kId3v1,
        TagOf(3, BigEndian(6, 4) + std::string(6, '\0') + usual, 0xC0) + kSomeAudio,
        TagOf(4, BigEndian(6, 4, 7) + "\x01\0"s + today, 0x50) + kSomeAudio,
        TagOf(3, usual) + TagOf(4, today) + kSomeAudio + TagOf(4, today, 0x10) + kId3v1,
        TagOf(4, Text24("TIT2", "a") + Frame24("SEEK", BigEndian(204, 4))) + kSomeAudio +
            TagOf(4, today, 0x10),
    };
}

void NewTitle(TagTexts &texts)
{
    texts.title = "New";
}

// Edits the title. A tag that is larger than the file, by its header, is refused. Any other one
// gets the title, and the audio is kept, unless a part of it is listed among what is lost.
void ExpectSafeEdit(const std::string &song, std::string_view audio)
{
    const auto edited = EditInMemory(song, NewTitle);
    if (edited.plan.claimsTooMuch) {
        EXPECT_EQ(edited.bytes, song);
        return;
    }
    ASSERT_TRUE(edited.plan.isChanged);
    EXPECT_EQ(TextsOf(edited.bytes).title, "New");
    if (!edited.plan.lost.empty())
        return; // what is lost is named, and the user asked, before anything is written
    EXPECT_NE(edited.bytes.find(audio), std::string::npos);
    EXPECT_FALSE(EditInMemory(edited.bytes, NewTitle).plan.isChanged);
}

} // namespace

TEST(HostileTags, EveryTruncation)
{
    for (const std::string &song : SampleSongs()) {
        const std::size_t audioAt = song.find(kSomeAudio);
        ASSERT_NE(audioAt, std::string::npos);
        for (std::size_t size = 0; size <= song.size(); ++size) {
            SCOPED_TRACE(size);
            const std::string cut = song.substr(0, size);
            const std::size_t audioBytes =
                std::min(kSomeAudio.size(), size > audioAt ? size - audioAt : 0);
            ExpectSafeEdit(cut, std::string_view(song).substr(audioAt, audioBytes));
        }
    }
}

// Each byte of a sample at its ends: sizes of tags, headers and frames among them.
TEST(HostileTags, EveryByteAtItsEnds)
{
    for (const std::string &song : SampleSongs()) {
        for (std::size_t at = 0; at < song.size(); ++at) {
            for (const char byte : {'\0', '\x7F', '\x80', '\xFF'}) {
                std::string changed = song;
                changed[at] = byte;
                const bool isInAudio = changed.find(kSomeAudio) == std::string::npos;
                SCOPED_TRACE(std::to_string(at) + " of " + std::to_string(song.size()) + ": " +
                             std::to_string(byte));
                ExpectSafeEdit(changed, isInAudio ? std::string_view() : kSomeAudio);
            }
        }
    }
}

// Source: version 2.4, section 4.29: a SEEK frame has the offset of another tag, from the end of
// its own tag.
TEST(HostileTags, NoCircles)
{
    const std::string toItself = TagOf(4, Text24("TIT2", "a") + Frame24("SEEK", BigEndian(0, 4)));
    EXPECT_EQ(TextsOf(toItself + kSomeAudio).title, "a");
    ExpectSafeEdit(toItself + kSomeAudio, kSomeAudio);
    const std::string back =
        TagOf(4, Text24("TIT2", "a") + Frame24("SEEK", BigEndian(0xFFFFFFFF, 4)));
    EXPECT_EQ(TextsOf(back + kSomeAudio).title, "a");
    ExpectSafeEdit(back + kSomeAudio, kSomeAudio);
    std::string many;
    for (int i = 0; i < 1000; ++i)
        many += toItself;
    BytesInMemory file(many);
    EXPECT_EQ(ReadTagTexts(file, {}).value_or(TagTexts()).title, "a");
    EXPECT_LT(file.bytesRead, 17 * 60);
    // A footer whose size includes the tag at the start, or the whole file.
    const std::string claims =
        "3DI\x04\0\x10"s +
        BigEndian(static_cast<std::uint32_t>(toItself.size() + kSomeAudio.size() - 10), 4, 7);
    EXPECT_EQ(TextsOf(toItself + kSomeAudio + claims).title, "a");
    ExpectSafeEdit(toItself + kSomeAudio + claims, kSomeAudio);
}

// A tag that announces a footer and has none ends where its frames do: the bytes are audio.
TEST(HostileTags, AFooterThatIsNotThere)
{
    std::string tag = TagOf(4, Text24("TIT2", "Old"));
    tag[5] = 0x10;
    const auto edited = EditInMemory(tag + kSomeAudio, NewTitle);
    EXPECT_EQ(edited.bytes, TagOf(3, Frame23("TIT2", "\0New"s)) + kSomeAudio);
    const auto removed = EditInMemory(tag + tag + kSomeAudio, NewTitle);
    EXPECT_EQ(removed.plan.tag + kSomeAudio, removed.bytes);
}

TEST(HostileTags, TagsBehindTags)
{
    const auto tag = [](std::string_view name, std::string_view text, unsigned flags) {
        return TagOf(4, Text24(name, text), flags);
    };
    // A tag directly after one with a SEEK frame, and two tags at the end: all of them are joined.
    const std::string song = TagOf(4, Text24("TIT2", "Old") + Frame24("SEEK", BigEndian(300, 4))) +
                             tag("TPE1", "two", 0) + kSomeAudio + tag("TALB", "three", 0x10) +
                             tag("TCON", "four", 0x10) + kId3v1;
    const TagTexts before = TextsOf(song);
    EXPECT_EQ(before.artist, "two");
    EXPECT_EQ(before.album, "three");
    EXPECT_EQ(before.genre, "four");
    const auto edited = EditInMemory(song, NewTitle);
    EXPECT_EQ(edited.plan.lost, std::vector<std::string>());
    EXPECT_EQ(edited.bytes, TagOf(3, Frame23("TIT2", "\0New"s) + Frame23("TPE1", "\0two"s) +
                                         Frame23("TCON", "\0four"s) + Frame23("TALB", "\0three"s)) +
                                kSomeAudio + kId3v1);
}

// Two tags at the end of the file that SEEK frames refer to, in the reverse order.
TEST(HostileTags, SoughtTagsAtTheEnd)
{
    const auto seek = BigEndian(static_cast<std::uint32_t>(kSomeAudio.size()), 4);
    const std::string song = TagOf(4, Text24("TIT2", "Old") + Frame24("SEEK", seek)) + kSomeAudio +
                             TagOf(4, Text24("TPE1", "two")) + TagOf(4, Text24("TALB", "three")) +
                             kId3v1;
    EXPECT_EQ(EditInMemory(song, NewTitle).bytes,
              TagOf(3, Frame23("TIT2", "\0New"s) + Frame23("TPE1", "\0two"s) +
                           Frame23("TALB", "\0three"s)) +
                  kSomeAudio + kId3v1);
}

// A size that is not in groups of 7 bits is read as a plain number; more than a tag can have is
// damage.
TEST(HostileTags, ATagThatClaimsMoreThanTagsHave)
{
    const TagHeader header{3, 0, 0xFFFFFFFF};
    EXPECT_EQ(BytesThere(header, 1LL << 40U), static_cast<std::int64_t>(kMaxUnpackedBytes));
    EXPECT_EQ(BytesThere({3, 0, kLargestBody}, 1LL << 40U), kLargestBody + kTagHeaderBytes);
    EXPECT_EQ(BytesThere({3, 0, 100}, 50), 50);
    EXPECT_EQ(BytesThere({3, 0, 100}, 110), 110);
}

TEST(HostileTags, BombsAreBoundedTogether)
{
    const std::string bomb = Packed24("TIT2", std::string(kMaxUnpackedBytes - 1, '\0'));
    std::string frames;
    for (int i = 0; i < 100; ++i)
        frames += bomb;
    const std::string tag = TagOf(4, frames + Text24("TPE1", "a"));
    const auto header = ReadTagHeader(tag);
    ASSERT_TRUE(header.has_value());
    const FrameList list = ReadFrames(*header, tag);
    EXPECT_EQ(list.frames.size(), 101U);
    // Of each frame after the limit was reached, one piece is unpacked at most.
    EXPECT_LT(list.unpackedBytes, kMaxUnpackedInTag + 100 * 16384 + 1);
    EXPECT_FALSE(FrameContent(list.frames[0])->empty());
    EXPECT_FALSE(FrameContent(list.frames[99]).has_value());
    EXPECT_EQ(TextsOf(tag).artist, "a");
    // They stay as they are, packed.
    const auto edited = EditInMemory(tag + kSomeAudio, [](TagTexts &texts) { texts.artist = "b"; });
    EXPECT_EQ(edited.plan.lost, std::vector<std::string>());
    EXPECT_LT(edited.bytes.size(), tag.size() + kSomeAudio.size() + 100);
}

// Chapters that contain packed chapters that contain bombs.
TEST(HostileTags, BombsWithinBombs)
{
    std::string frames = Packed24("TIT2", "\x03"s + std::string(kMaxUnpackedBytes - 1, '\0'));
    for (int depth = 0; depth < 5; ++depth) {
        std::string several;
        for (int i = 0; i < 30; ++i)
            several += frames;
        frames = Packed24("CHAP", "c\0"s + std::string(16, '\1') + several);
    }
    const std::string song = TagOf(4, frames + Text24("TIT2", "Old")) + kSomeAudio;
    const auto start = std::chrono::steady_clock::now();
    const auto edited = EditInMemory(song, NewTitle);
    EXPECT_EQ(TextsOf(edited.bytes).title, "New");
    EXPECT_LT(edited.bytes.size(), 2 * kMaxUnpackedInTag);
    // Without a bound: 30 to the power of 5 bombs. Generous, as machines are.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

TEST(HostileTags, ManyFramesAndManyValues)
{
    std::string frames = Frame23("TIT2", "\0Old"s);
    for (int i = 0; i < 100000; ++i)
        frames += Frame23("WXYZ", "");
    const std::string tag = TagOf(3, frames);
    const auto header = ReadTagHeader(tag);
    ASSERT_TRUE(header.has_value());
    EXPECT_EQ(ReadFrames(*header, tag).frames.size(), kMostFrames);
    const auto edited = EditInMemory(tag + kSomeAudio, NewTitle);
    EXPECT_EQ(edited.bytes.size(),
              tag.size() + kSomeAudio.size()); // the frames after it stay as well
    EXPECT_EQ(edited.bytes.substr(24), (tag + kSomeAudio).substr(24));

    std::string values;
    for (int i = 0; i < 100000; ++i)
        values += "a\0"s;
    const TagTexts texts = TextsOf(TagOf(4, Text24("TIT2", values) + Text24("TCON", values)));
    EXPECT_EQ(texts.title.value_or("").size(), kMostValues + 2 * (kMostValues - 1));
    EXPECT_EQ(texts.genre.value_or("").size(), kMostValues + 2 * (kMostValues - 1));
    // A list of people with more entries than are split keeps its frame.
    const std::string people = TagOf(4, Text24("TIT2", "Old") + Text24("TIPL", values));
    const auto kept = EditInMemory(people + kSomeAudio, NewTitle);
    EXPECT_NE(kept.bytes.find("TIPL"), std::string::npos);
    EXPECT_NE(kept.bytes.find(values), std::string::npos);
}

TEST(HostileTags, APictureLargerThanTextsMayBe)
{
    std::string picture = "\x03image/png\0\x03\xD0\x91\0"s;
    const std::size_t front = picture.size();
    std::string block;
    for (std::size_t i = 0; i < 65537; ++i)
        block += static_cast<char>(i * 2654435761U >> 13U);
    while (picture.size() < (20U << 20U))
        picture += block;
    const std::string song =
        TagOf(4, Text24("TIT2", "Old") + Frame24("APIC", picture)) + kSomeAudio;
    const auto edited = EditInMemory(song, NewTitle);
    ASSERT_TRUE(edited.plan.isChanged);
    // Its description is in UTF-16 now, as version 2.3 has no UTF-8.
    const std::string want =
        TagOf(3, Frame23("TIT2", "\0New"s) +
                     Frame23("APIC",
                             "\x01image/png\0\x03\xFF\xFE\x11\x04\0\0"s + picture.substr(front))) +
        kSomeAudio;
    EXPECT_TRUE(edited.bytes == want);
}

} // namespace tests

#include "metadata/unicode/syncedlyrics.h"
#include "metadata/unicode/tagtexts.h"
#include "tests/metadata/unicode/tagbytes.h"
#include "tests/metadata/unicode/taginmemory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace metadata::unicode;
using namespace std::string_literals;
using namespace std::string_view_literals;

namespace tests
{

namespace
{

// A COMM or USLT frame in Latin-1.
std::string Described(std::string_view name, std::string_view language,
                      std::string_view description, std::string_view text)
{
    return Frame23(name, "\0"s + std::string(language) + std::string(description) + '\0' +
                             std::string(text));
}

std::string Times(std::initializer_list<std::pair<std::string_view, std::uint32_t>> texts,
                  char unit = 2, char type = 1)
{
    std::string content = "\x03"
                          "eng"s +
                          unit + type + '\0';
    for (const auto &[text, time] : texts)
        content += std::string(text) + '\0' + BigEndian(time, 4);
    return content;
}

} // namespace

TEST(ReadTagTexts, EachVersion)
{
    const auto v22 = TextsOf(TagOf(2, Frame22("TT2", "\0Title"sv) + Frame22("TP1", "\0Artist"sv) +
                                          Frame22("TAL", "\0Album"sv) +
                                          Frame22("TYE", "\0"
                                                         "1999"sv) +
                                          Frame22("TCO", "\0(17)"sv) +
                                          Frame22("TRK", "\0"
                                                         "3/12"sv) +
                                          Frame22("COM", "\0eng\0Comment"sv) +
                                          Frame22("ULT", "\0eng\0Lyrics"sv)));
    TagTexts want;
    want.title = "Title";
    want.artist = "Artist";
    want.album = "Album";
    want.year = "1999";
    want.genre = "17";
    want.track = 3;
    want.comment = "Comment";
    want.lyrics = "Lyrics";
    EXPECT_EQ(v22, want);

    const auto v23 =
        TextsOf(TagOf(3, Frame23("TIT2", "\x01\xFF\xFE\x42\x30"sv) + Frame23("TPE1", "\0Artist"sv) +
                             Frame23("COMM", "\x01"
                                             "eng\xFF\xFE\0\0\xFF\xFE\x44\x30"sv)));
    EXPECT_EQ(v23.title, "あ");
    EXPECT_EQ(v23.artist, "Artist");
    EXPECT_EQ(v23.comment, "い");
    EXPECT_FALSE(v23.album.has_value());

    const auto v24 = TextsOf(TagOf(4, Text24("TIT2", "あ") + Text24("TPE1", "One\0Two"sv) +
                                          Text24("TDRC", "2004-05-01")));
    EXPECT_EQ(v24.title, "あ");
    EXPECT_EQ(v24.artist, "One; Two");
    EXPECT_EQ(v24.year, "2004");
}

TEST(ReadTagTexts, Years)
{
    const auto year = [](const std::string &frames) { return TextsOf(TagOf(4, frames)).year; };
    EXPECT_EQ(year(Text24("TYER", "1990") + Text24("TDRC", "1991-02")), "1991");
    EXPECT_EQ(year(Text24("TDRL", "1992") + Text24("TYER", "1990")), "1990");
    EXPECT_EQ(year(Text24("TDRL", "1992")), "1992");
    EXPECT_EQ(year(Text24("TDRC", "soon") + Text24("TYER", "1990")), "1990");
    EXPECT_EQ(year(Text24("TDRC", "99")), "99");
    EXPECT_EQ(year(Text24("TDRC", "about 1970") + Text24("TDRL", "")), "about 1970");
    EXPECT_EQ(year(Text24("TDRC", "")), std::nullopt);
}

TEST(ReadTagTexts, Tracks)
{
    const auto track = [](std::string_view text) {
        return TextsOf(TagOf(4, Text24("TRCK", text))).track;
    };
    EXPECT_EQ(track("3"), 3);
    EXPECT_EQ(track("3/12"), 3);
    EXPECT_EQ(track(" 03 "), 3);
    EXPECT_EQ(track("32767"), 32767);
    for (const std::string_view none : {"32768", "0", "-1", "A1", "", "99999999999999999999"})
        EXPECT_EQ(track(none), std::nullopt) << none;
}

TEST(ReadTagTexts, TheCommentForPeople)
{
    const auto comment = [](const std::string &frames) {
        return TextsOf(TagOf(3, frames), {.language = "spa"}).comment;
    };
    const std::string described = Described("COMM", "spa", "Note", "described");
    const std::string other = Described("COMM", "deu", "", "other");
    const std::string english = Described("COMM", "eng", "", "english");
    const std::string own = Described("COMM", "SPA", "", "own");
    EXPECT_EQ(comment(described + other + english + own), "own");
    EXPECT_EQ(comment(described + other + english), "english");
    EXPECT_EQ(comment(described + other), "other");
    EXPECT_EQ(comment(described), "described");
    EXPECT_EQ(comment(own + Described("COMM", "spa", "", "second")), "own");
    EXPECT_EQ(comment(Described("COMM", "eng", "iTunNORM", "0000") + described), "described");
    EXPECT_EQ(comment(Described("COMM", "eng", "iTunNORM", "0000")), std::nullopt);
    EXPECT_EQ(comment(Described("COMM", "eng", "", "") + described), "described");
    EXPECT_EQ(comment(Frame23("COMM", "\0en"sv)), std::nullopt);
}

TEST(GenreOf, Table)
{
    const struct {
        std::vector<std::string> values;
        std::string_view want;
    } cases[] = {
        {{}, ""},
        {{"17"}, "17"},
        {{"(17)"}, "17"},
        {{"017"}, "17"},
        {{"255"}, "255"},
        {{"256"}, "256"},
        {{"Rock"}, "Rock"},
        {{"(4)Eurodisco"}, "Eurodisco"},
        {{"(51)(39)"}, "Techno-Indistrial; Noise"},
        {{"(51)(39)Own"}, "Techno-Indistrial; Own"},
        {{"17", "Own"}, "Rock; Own"},
        {{"(RX)"}, "Remix"},
        {{"CR"}, "Cover"},
        {{"((I think)"}, "(I think)"},
        {{"(4)((Own)"}, "(Own)"},
        {{"(4"}, "(4"},
        {{"()"}, ""},
        {{"(300)"}, "300"},
        {{"(254)(17)"}, "254; Rock"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(GenreOf(c.values), c.want) << (c.values.empty() ? "" : c.values.front());
}

TEST(LinesOfSyncedLyrics, Table)
{
    EXPECT_EQ(LinesOfSyncedLyrics(Times({{"One", 1999}, {"Two", 61000}}), 0),
              "[00:01]One\r\n[01:01]Two");
    EXPECT_EQ(
        LinesOfSyncedLyrics(Times({{"O", 0}, {"ne", 500}, {"\nTwo", 900}, {"\r\nThree", 3000}}), 0),
        "[00:00]One\r\nTwo\r\n[00:03]Three");
    EXPECT_EQ(LinesOfSyncedLyrics(Times({{"One", 100}}, 1), 26.122), "[00:02]One");
    EXPECT_EQ(LinesOfSyncedLyrics(Times({{"One", 100}}, 1), 0), "One");
    EXPECT_EQ(LinesOfSyncedLyrics(Times({{"One", 100}}, 7), 0), "One");
    EXPECT_EQ(LinesOfSyncedLyrics(Times({{"One", 6000000}}), 0), "[100:00]One");
    EXPECT_EQ(LinesOfSyncedLyrics(Times({{"Am", 100}}, 2, 5), 0), ""); // chords
    EXPECT_EQ(LinesOfSyncedLyrics(Times({{"One", 1}}).substr(0, 5), 0), "");
    const std::string whole = Times({{"One", 1000}, {"Two", 2000}});
    EXPECT_EQ(LinesOfSyncedLyrics(whole.substr(0, whole.size() - 1), 0), "[00:01]One");
}

TEST(ReadTagTexts, SyncedLyricsOnlyWithoutOthers)
{
    const std::string synced = Frame23("SYLT", Times({{"One", 1000}}));
    EXPECT_EQ(TextsOf(TagOf(3, synced)).lyrics, "[00:01]One");
    EXPECT_EQ(TextsOf(TagOf(3, synced + Described("USLT", "eng", "", "Plain"))).lyrics, "Plain");
}

TEST(ReadTagTexts, SeveralTags)
{
    const std::string audio(600, '\x11');
    const std::string one = TagOf(4, Text24("TIT2", "one"));
    const std::string two = TagOf(3, Frame23("TIT2", "\0two"sv) + Frame23("TALB", "\0album"sv));
    EXPECT_EQ(TextsOf(one + two + audio).title, "one");
    EXPECT_EQ(TextsOf(one + two + audio).album, "album");

    const std::string update =
        TagOf(4, BigEndian(7, 4, 7) + "\x01\x40\0"s + Text24("TIT2", "new"), 0x40);
    EXPECT_EQ(TextsOf(one + update + audio).title, "new");

    const std::string atEnd = TagOf(4, Text24("TIT2", "end"), 0x10);
    const std::string id3v1 = "TAG" + std::string(125, ' ');
    EXPECT_EQ(TextsOf(audio + atEnd).title, "end");
    EXPECT_EQ(TextsOf(audio + atEnd + id3v1).title, "end");
    EXPECT_EQ(TextsOf(audio + TagOf(4, Text24("TIT2", "end")) + id3v1).title, std::nullopt);

    const std::string seek = TagOf(4, Text24("TIT2", "one") + Frame24("SEEK", BigEndian(600, 4)));
    EXPECT_EQ(TextsOf(seek + audio + TagOf(4, Text24("TALB", "far")) + audio).album, "far");
    EXPECT_EQ(TextsOf(seek).title, "one");

    std::string many;
    for (int i = 0; i < 100; ++i)
        many += TagOf(4, "");
    EXPECT_EQ(TextsOf(many + one).title, std::nullopt); // the 101st
}

// A comment's text without a byte order mark has the byte order of its description.
TEST(ReadTagTexts, TheOrderOfADescription)
{
    const auto comment = [](std::string_view description, std::string_view text) {
        return TextsOf(TagOf(3, Frame23("COMM", "\x01"
                                                "eng" +
                                                    std::string(description) + "\0\0"s +
                                                    std::string(text))))
            .comment;
    };
    EXPECT_EQ(comment("\xFE\xFF"sv, "\x30\x42"sv), "あ");
    EXPECT_EQ(comment("\xFF\xFE"sv, "\x42\x30"sv), "あ");
    EXPECT_EQ(comment("\xFF\xFE"sv, "\xFE\xFF\x30\x42"sv), "あ");
    EXPECT_EQ(comment("", "\0a"sv), "a");
}

TEST(ReadTagTexts, NothingWithoutTags)
{
    EXPECT_EQ(TextsOf(""), TagTexts{});
    EXPECT_EQ(TextsOf(std::string(1000, 'x')), TagTexts{});
    EXPECT_EQ(TextsOf(TagOf(3, Frame23("TIT2", ""))), TagTexts{});
    EXPECT_EQ(TextsOf(TagOf(3, Frame23("TIT2", "\0"sv))), TagTexts{});
}

// Any cut and any changed byte: there is a result, and no memory error, which the sanitizers would
// report.
TEST(ReadTagTexts, DamagedAnywhere)
{
    const std::string whole =
        TagOf(3, Frame23("TIT2", "\x01\xFF\xFE\x42\x30"sv) + Described("COMM", "eng", "d", "text") +
                     Frame23("SYLT", Times({{"One", 1000}, {"\nTwo", 2000}}))) +
        TagOf(4,
              Text24("TCON", "(4)x\0"
                             "17"sv) +
                  Frame24("SEEK", BigEndian(10, 4)),
              0x10);
    const TagTexts intact = TextsOf(whole);
    ASSERT_EQ(intact.genre, "x; Rock");
    constexpr std::size_t kTitleEnd = 10 + 10 + 5; // after the headers of tag and frame
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const TagTexts cut = TextsOf(whole.substr(0, size));
        EXPECT_EQ(cut.title, size >= kTitleEnd ? intact.title : std::nullopt) << size;
    }
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        std::string bytes = whole;
        for (int i = 0; i < 3; ++i)
            bytes[random() % bytes.size()] = static_cast<char>(random());
        const TagTexts texts = TextsOf(bytes);
        EXPECT_LE(texts.title.value_or("").size(), 3 * whole.size()) << round;
    }
}

} // namespace tests

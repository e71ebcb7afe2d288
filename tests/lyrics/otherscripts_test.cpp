// Lyrics in other scripts, where tags are read and written by their frames: followed, marked, kept
// as a draft, saved, and taken from text files.
#include "catalogue/addfile.h"
#include "catalogue/edittags.h"
#include "lyrics/drafts.h"
#include "lyrics/lyricsimport.h"
#include "metadata/tagwriter.h"
#include "runtime/codepage.h"
#include "tests/lyrics/lyricsfixture.h"
#include "tests/support/scriptsongs.h"

namespace
{

using lyrics::LyricsForm;
using metadata::TextKind;
using tests::kJapanese;

// Characters of one to four bytes, a sequence of several, both directions.
constexpr char kLines[] =
    "[00:01]さくら 桜\r\n[00:02]نسم علينا الهوى\r\n[00:03]👩‍🎤 😀 é\r\n"
    "[00:04]Ночь (مرحبا) end\r\n";

class LyricsOfOtherScripts : public tests::LyricsFormFixture
{
protected:
    LyricsOfOtherScripts()
    {
        metadata::ResetMP3Info();
        metadata::TheTagWriterHooks() = {};
        metadata::TheTagWriterHooks().updateCatalogue = catalogue::UpdateEditedTags;
    }
    ~LyricsOfOtherScripts() override { metadata::TheTagWriterHooks() = {}; }

    // The lines without their marks.
    static std::string Plain()
    {
        std::string plain(kLines);
        for (std::size_t at = plain.find('['); at != std::string::npos; at = plain.find('['))
            plain.erase(at, 7);
        return plain;
    }

    std::string WriteSong(const std::string &text) const
    {
        tests::WriteFile(Song("song.mp3"), tests::SongBytes(kJapanese, text));
        return Song("song.mp3");
    }

    tests::ReadingByFrames byFrames;
};

} // namespace

TEST_F(LyricsOfOtherScripts, EveryLineIsSelectedWhole)
{
    WriteSong(kLines);
    lyrics::FollowLyrics(form, "桜", tests::LyricsIn(Song("song.mp3")));
    EXPECT_EQ(form.Lyrics.Text(), Plain());
    EXPECT_TRUE(form.Title().starts_with("桜 - ")) << form.Title();
    int second = 0;
    for (const char *line :
         {"さくら 桜", "نسم علينا الهوى", "👩‍🎤 😀 é", "Ночь (مرحبا) end"}) {
        Play(++second);
        form.showTimes.Fire();
        EXPECT_EQ(Selected(form), line);
    }
    Play(2); // and back
    form.showTimes.Fire();
    EXPECT_EQ(Selected(form), "نسم علينا الهوى");
}

TEST_F(LyricsOfOtherScripts, AMarkIsSetAtTheLineOfTheCaret)
{
    const struct {
        const char *name;
        std::string text;
        int caret; // in characters
        std::string want;
        int start;
        int length;
    } cases[] = {
        {"after characters of three bytes", "さくら\r\n桜\r\n", 5, "さくら\r\n[00:01]桜\r\n", 14,
         1},
        {"at the end of the line", "さくら\r\n桜\r\n", 6, "さくら\r\n[00:01]桜\r\n", 14, 1},
        {"after a surrogate pair, which is one", "😀😀\r\n😀\r\n", 4, "😀😀\r\n[00:01]😀\r\n", 13, 1},
        {"inside a sequence", "a\r\n👩‍🎤 b\r\nc", 5, "a\r\n[00:01]👩‍🎤 b\r\nc", 16,
         1},
        {"right to left", "نسم\r\nعلينا\r\n", 7, "نسم\r\n[00:01]علينا\r\n", 18, 1},
        {"behind the first character of the first line", "😀桜\r\nx", 1, "😀[00:01]桜\r\nx", 10, 1},
        {"at the last line", "é\r\n😀", 4, "é\r\n[00:01]😀", 11, 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        LyricsForm one;
        lyrics::SetTimes(one, WriteSong("x\r\n"));
        one.Lyrics.SetText(c.text);
        one.Lyrics.NoteSelection(c.caret, 0);
        Play(1);
        one.cmdSetIt.Click();
        EXPECT_EQ(one.Lyrics.Text(), c.want);
        EXPECT_EQ(one.Lyrics.SelStart(), c.start);
        EXPECT_EQ(one.Lyrics.SelLength(), c.length);
    }
}

// All lines of a song in one go, as a user sets them; then a test, and the file.
TEST_F(LyricsOfOtherScripts, MarksAreSetTestedAndSaved)
{
    const std::string plain = Plain();
    const std::string song = WriteSong("-\r\n" + plain);
    lyrics::SetTimes(form, song);
    form.Lyrics.NoteSelection(3, 0);
    for (int second = 1; second <= 4; ++second) {
        Play(second);
        form.cmdSetIt.Click();
    }
    EXPECT_EQ(form.Lyrics.Text(), "-\r\n" + std::string(kLines));
    form.cmdTest.Click();
    EXPECT_EQ(form.Lyrics.Text(), "-\r\n" + plain);
    Play(3);
    form.showTimes.Fire();
    EXPECT_EQ(Selected(form), "👩‍🎤 😀 é");
    form.cmdSave.Click();
    EXPECT_EQ(tests::LyricsIn(song), "-\r\n" + std::string(kLines));
    EXPECT_EQ(metadata::ReadSongInfo(song).id3v2.Title, kJapanese.title);
    EXPECT_FALSE(metadata::ReadSongInfo(song).hasID3v1) << "only the lyrics changed";
    EXPECT_FALSE(lyrics::HasUnsavedMarks(form));
}

TEST_F(LyricsOfOtherScripts, ADraftKeepsThem)
{
    const std::string song = WriteSong("桜\r\n");
    lyrics::SetTimes(form, song);
    form.Lyrics.SetText(kLines);
    form.tmrDraft.Fire();
    EXPECT_EQ(lyrics::ReadDraft(song, TextKind::Utf8), std::string(kLines));
    ui::Close(form);

    LyricsForm again;
    tests::ScriptedDesktop user;
    user.ExpectBox("changes that were not saved", platform::Answer::Yes);
    lyrics::SetTimes(again, song);
    EXPECT_EQ(again.Lyrics.Text(), kLines);
}

// A draft stores the kind of its text: when the setting UnicodeTags is another one later, the draft
// is converted, once.
TEST_F(LyricsOfOtherScripts, ADraftOfTheOtherWay)
{
    const std::string song = Song("song.mp3");
    lyrics::WriteDraft(song, "caf\xE9 \x80\r\n", TextKind::FileBytes);
    EXPECT_EQ(lyrics::ReadDraft(song, TextKind::Utf8), "café €\r\n");
    lyrics::WriteDraft(song, "café € \r\n", TextKind::Utf8);
    EXPECT_EQ(lyrics::ReadDraft(song, TextKind::FileBytes), "caf\xE9 \x80 \r\n");
    EXPECT_EQ(lyrics::ReadDraft(song, TextKind::Utf8), "café € \r\n");
}

// Lyrics that were marked before the setting UnicodeTags was switched off again.
TEST_F(LyricsOfOtherScripts, ADraftThatTheCodePageCannotHoldWaits)
{
    const std::string song = Song("song.mp3");
    const std::string draft = "[00:10]歌詞 😀\r\n";
    lyrics::WriteDraft(song, draft, TextKind::Utf8);
    EXPECT_EQ(lyrics::ReadDraft(song, TextKind::FileBytes), std::nullopt);
    lyrics::WriteDraft(song, "[00:10]caf\xE9\r\n", TextKind::FileBytes);
    EXPECT_EQ(lyrics::ReadDraft(song, TextKind::FileBytes), "[00:10]caf\xE9\r\n");
    EXPECT_EQ(lyrics::ReadDraft(song, TextKind::Utf8), draft);
    lyrics::RemoveDraft(song, TextKind::FileBytes);
    lyrics::RemoveDraft(song, TextKind::FileBytes);
    EXPECT_EQ(lyrics::ReadDraft(song, TextKind::FileBytes), std::nullopt);
    EXPECT_EQ(lyrics::ReadDraft(song, TextKind::Utf8), draft);
    lyrics::RemoveDraft(song, TextKind::Utf8);
    EXPECT_EQ(lyrics::ReadDraft(song, TextKind::Utf8), std::nullopt);
}

TEST_F(LyricsOfOtherScripts, ATextFileInEveryEncodingIsImported)
{
    const std::u16string units = u"歌詞 😀\r\nنسم\r\n";
    std::string lowFirst = "\xFF\xFE";
    std::string highFirst = "\xFE\xFF";
    for (const char16_t unit : units) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        lowFirst += {low, high};
        highFirst += {high, low};
    }
    const std::string text = "歌詞 😀\r\nنسم\r\n";
    const struct {
        const char *name;
        std::string bytes, want;
    } cases[] = {
        {"UTF-8", text, text},
        {"UTF-8 with a mark", std::string(runtime::kByteOrderMark) + text, text},
        {"UTF-16, low byte first", lowFirst, text},
        {"UTF-16, high byte first", highFirst, text},
        {"the code page", "caf\xE9 \x80\n", "café €\n"},
        {"a NUL would end the text", tests::Z("a\0b"), "ab"},
        {"nothing", "", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        tests::WriteFile(Song("桜 😀.mp3"), tests::SongBytes(kJapanese, "old"));
        std::string reason;
        ASSERT_NE(catalogue::AddOrUpdateMP3(Song("桜 😀.mp3"), reason), catalogue::kFailed);
        tests::WriteFile(folder / "桜 😀.txt", c.bytes);
        tests::ScriptedDesktop user;
        user.ExpectBox("The lyrics were added correctly.");
        lyrics::AddLyricsFromTXT(folder / "桜 😀.txt");
        EXPECT_EQ(tests::LyricsIn(Song("桜 😀.mp3")), c.want);
        ASSERT_EQ(Rows().size(), 1U);
        EXPECT_NE(Rows()[0].find("|邦楽|" + c.want + "|~/桜 😀.mp3|"), std::string::npos)
            << Rows()[0];
    }
}

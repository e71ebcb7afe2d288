// The editor on songs in other scripts, where tags are read and written by their frames.
#include "metadata/tagtext.h"
#include "tests/metadata/unicode/tagbytes.h"
#include "tests/support/scriptsongs.h"
#include "tests/tagedit/editorfixture.h"

#include <utility>

using tests::kEmoji;
using tests::kJapanese;
using tests::ReadFile;
using tests::ScriptSong;
using tests::SongBytes;
using tests::Tag1;

namespace
{

class EditorInOtherScripts : public tests::EditorTest
{
protected:
    // What column 2 shows of the song.
    static std::string TextsOf(const ScriptSong &song)
    {
        std::string texts;
        for (const std::string_view text :
             {song.title, song.artist, song.album, song.year, song.comment, song.genre})
            texts.append(text).append("|");
        return texts;
    }

    metadata::ID3v2Tag TagInFile() { return metadata::ReadSongInfo(m_path).id3v2; }

    // The title of the file's ID3v1 tag.
    std::string OldTitle()
    {
        const std::string bytes = ReadFile(m_path);
        return metadata::UsedText(bytes.substr(bytes.size() - 125, 30));
    }

    tests::ReadingByFrames m_byFrames;
};

TEST_F(EditorInOtherScripts, ShowsTheTextsOfEveryScriptWithoutANote)
{
    for (const ScriptSong &song : tests::kScriptSongs) {
        Open(SongBytes(song, "[00:01]一 😀 نسم\r\n"));
        EXPECT_EQ(Texts(V2()), TextsOf(song));
        EXPECT_EQ(V2().txtLyrics.Text(), "[00:01]一 😀 نسم\r\n");
        EXPECT_FALSE(m_editor.lblNote.Visible());
        EXPECT_FALSE(V1().HasID3Tag.Checked());
    }
}

TEST_F(EditorInOtherScripts, ANewTextIsWrittenAndNothingElseChanges)
{
    Open(SongBytes(kJapanese, "[00:01]桜\r\n"));
    V2().txtTitle.SetText("Ночь 😀 نسم");
    V2().txtLyrics.SetText("[00:01]桜 👩‍🎤\n[00:02]二\n");
    EXPECT_FALSE(m_editor.lblNote.Visible());
    EXPECT_TRUE(cmdOk_Click(m_editor));
    const metadata::ID3v2Tag tag = TagInFile();
    EXPECT_EQ(tag.Title, "Ночь 😀 نسم");
    EXPECT_EQ(tag.Lyrics, "[00:01]桜 👩‍🎤\r\n[00:02]二\r\n");
    EXPECT_EQ(tag.Artist, kJapanese.artist);
    EXPECT_EQ(tag.Genre, kJapanese.genre);
    const std::string written = ReadFile(m_path);
    EXPECT_TRUE(written.ends_with(tests::Audio()));

    m_editor.File = m_path;
    LoadTags(m_editor);
    EXPECT_TRUE(cmdOk_Click(m_editor));
    EXPECT_TRUE(ReadFile(m_path) == written) << "a second save writes nothing";
}

TEST_F(EditorInOtherScripts, TheNoteSaysWhatTheOldTagCannotHold)
{
    Open(SongBytes(kJapanese) + Tag1("Old", "", "", "", "", 0, 17));
    EXPECT_FALSE(m_editor.lblNote.Visible());
    V2().cmdToID3.Click();
    const std::string note =
        "The ID3v1 tag cannot hold 桜の花宇多田ヒカル初恋良い邦楽. In place of "
        "each a \"?\" will be written there.";
    EXPECT_TRUE(m_editor.lblNote.Visible());
    EXPECT_EQ(m_editor.lblNote.Caption(), note);
    EXPECT_EQ(V1().txtTitle.ToolTip(),
              "The ID3v1 tag cannot hold 桜の花. In place of each a \"?\" will be written there.");
    EXPECT_TRUE(V1().txtTitle.Marked());
    EXPECT_FALSE(V1().txtYear.Marked());
    for (const tagedit::TagBox *box : V2().TextBoxes()) {
        EXPECT_FALSE(box->Marked());
        EXPECT_EQ(box->ToolTip(), "");
    }
    EXPECT_TRUE(cmdOk_Click(m_editor));
    EXPECT_EQ(OldTitle(), "???");
    EXPECT_EQ(TagInFile().Title, kJapanese.title) << "the other tag keeps it";

    V1().txtTitle.SetText("Sakura");
    EXPECT_EQ(V1().txtTitle.ToolTip(), "");
    EXPECT_FALSE(V1().txtTitle.Marked());
}

TEST_F(EditorInOtherScripts, ACopyIsCutBetweenCharacters)
{
    std::string title;
    for (int i = 0; i < 40; ++i)
        title += "é😀";
    Open(SongBytes({title, "", "", "", "", ""}) + Tag1("Old", "", "", "", "", 0, 17));
    V2().cmdToID3.Click();
    std::string thirty;
    for (int i = 0; i < 15; ++i)
        thirty += "é😀";
    EXPECT_EQ(V1().txtTitle.Text(), thirty);
    EXPECT_TRUE(tagedit::IsLimitReached(m_editor, V1().txtTitle));
    EXPECT_FALSE(tagedit::IsLimitReached(m_editor, V2().txtTitle));
    EXPECT_TRUE(cmdOk_Click(m_editor));
    std::string bytes;
    for (int i = 0; i < 15; ++i)
        bytes += "\xE9?";
    EXPECT_EQ(OldTitle(), bytes);
    LoadTags(m_editor);
    V1().txtTitle.SetText("Señor");
    V1().cmdToID3.Click();
    EXPECT_EQ(V2().txtTitle.Text(), "Señor");
    EXPECT_TRUE(cmdOk_Click(m_editor));
    EXPECT_EQ(TagInFile().Title, "Señor");
}

TEST_F(EditorInOtherScripts, WithUnicodeTagsOffTheNoteIsThatOfBothTags)
{
    shell::TheGlobals().UnicodeTags = false;
    Open(tests::Id3v2(tests::TextFrame("TIT2", "One")) + tests::Audio());
    V2().txtTitle.SetText("桜");
    EXPECT_EQ(m_editor.lblNote.Caption(),
              "A tag cannot hold 桜. In place of each a \"?\" will be written.");
    EXPECT_TRUE(V2().txtTitle.Marked());
}

// The setting changes while an editor is open: the texts are those that its boxes show.
TEST_F(EditorInOtherScripts, ASaveAfterTheSettingChangedLosesNothing)
{
    for (const bool onAtFirst : {true, false}) {
        SCOPED_TRACE(onAtFirst);
        shell::TheGlobals().UnicodeTags = onAtFirst;
        Open(SongBytes(kEmoji));
        const std::string before = ReadFile(m_path);
        V2().txtAlbum.SetText("new");
        shell::TheGlobals().UnicodeTags = !onAtFirst;
        EXPECT_FALSE(cmdOk_Click(m_editor));
        shell::TheGlobals().UnicodeTags = true;
        const metadata::ID3v2Tag tag = TagInFile();
        EXPECT_EQ(tag.Title, kEmoji.title);
        EXPECT_EQ(tag.Artist, kEmoji.artist);
        EXPECT_EQ(tag.Album, kEmoji.album);
        EXPECT_TRUE(ReadFile(m_path) == before);
        ASSERT_EQ(m_desk.boxes.size(), 1U);
        EXPECT_NE(m_desk.boxes[0].find("Nothing was written."), std::string::npos);
        m_desk.boxes.clear();
        EXPECT_EQ(V2().txtAlbum.Text(), "new");
    }
}

} // namespace

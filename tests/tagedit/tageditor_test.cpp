// The editor's columns: what they show, when they answer, the copy buttons, the keys.
#include "runtime/error.h"
#include "shell/globals.h"
#include "tests/tagedit/editorfixture.h"

using tagedit::kID3v1;
using tagedit::kID3v2;
using tests::Frame3;
using tests::Tag;
using tests::Tag1;
using tests::Z;

namespace
{

using TagEditorTest = tests::EditorTest;

TEST_F(TagEditorTest, ShowsBothTags)
{
    Open(Tag(3, Frame3("TIT2", "Long title of the second tag, uncut") + Frame3("TPE1", "Se\xF1or") +
                    Frame3("TALB", "Album 2") + Frame3("TYER", "2001") +
                    Frame3("COMM", Z("eng\0Words")) + Frame3("TCON", "(17)Rock") +
                    Frame3("TRCK", "7") + Frame3("USLT", Z("\0\0\0\0One\r\nTwo"))) +
         Sound() + Tag1("Title 1", "Artist 1", "Album 1", "1999", "Comment 1", 3, 20));
    EXPECT_TRUE(V1().HasID3Tag.Checked());
    EXPECT_TRUE(V2().HasID3Tag.Checked());
    EXPECT_EQ(Texts(V1()), "Title 1|Artist 1|Album 1|1999|Comment 1|Alternative|3");
    EXPECT_EQ(Texts(V2()), "Long title of the second tag, uncut|Señor|Album 2|2001|Words|Rock|7");
    EXPECT_EQ(V2().txtLyrics.Text(), "One\r\nTwo");
}

TEST_F(TagEditorTest, HeaderHasTenLines)
{
    Open(Sound(4180));
    EXPECT_EQ(
        m_editor.lblMPEGInfo.Caption(),
        "Size: 4180 bytes\rHeader found at: 0 bytes\rLength: 0 seconds\rMPEG-1 Layer 3\r"
        "128kbit, 10 frames\r44100 Hz Joint Stereo\rCRCs: No\rCopyrighted: No\rOriginal: Yes\r"
        "Emphasis: None");
}

TEST_F(TagEditorTest, TextsAreTheLanguageFiles)
{
    tests::WriteFile(m_desk.music / "l.qlt",
                     "[TagEditor]\nTagEditor=Editor\nOkButton=&Bien\nCancelButton=&Nada\n"
                     "MP3Header=Kopf\nCopyToID3v2=nach &2\nCopyToID3v1=nach &1\n"
                     "[ColumnHeaders]\nTitle=Titel\nTrack=Nummer\n"
                     "[MP3Header]\nSize=Umfang:\nSeconds=s\n[YesNo]\nNo=Nein\n");
    shell::TheGlobals().LanguageFilePath = m_desk.music / "l.qlt";
    Open(Sound());
    shell::TheGlobals() = {};
    EXPECT_EQ(m_editor.Title(), "Editor");
    EXPECT_EQ(m_editor.cmdOk.Caption(), "&Bien");
    EXPECT_EQ(m_editor.cmdCancel.Caption(), "&Nada");
    EXPECT_EQ(m_editor.frmHeader.Caption(), "Kopf");
    EXPECT_EQ(V1().cmdToID3.Caption(), "nach &2");
    EXPECT_EQ(V2().cmdToID3.Caption(), "nach &1");
    EXPECT_EQ(m_editor.labels.front().Caption(), "Titel");
    EXPECT_EQ(m_editor.labels[5].Caption(), "Nummer");
    EXPECT_EQ(m_editor.labels.back().Caption(), "Comment");
    EXPECT_NE(m_editor.lblMPEGInfo.Caption().find("Umfang: 3000 bytes"), std::string::npos);
    EXPECT_NE(m_editor.lblMPEGInfo.Caption().find(" s\r"), std::string::npos);
    EXPECT_NE(m_editor.lblMPEGInfo.Caption().find("CRCs: Nein\r"), std::string::npos);
}

TEST_F(TagEditorTest, WithoutTagsBothColumnsAreOff)
{
    Open(Sound());
    for (tagedit::Column *column : {&V1(), &V2()}) {
        EXPECT_FALSE(column->HasID3Tag.Checked());
        EXPECT_TRUE(column->HasID3Tag.Enabled());
        EXPECT_EQ(Texts(*column), "||||||");
        for (const ui::Area *area : std::initializer_list<const ui::Area *>{
                 &column->txtTitle, &column->txtArtist, &column->txtAlbum, &column->txtYear,
                 &column->txtComment, &column->txtTrack, &column->txtLyrics, &column->cmbGenre,
                 &column->cmdToID3})
            EXPECT_FALSE(area->Enabled());
    }
}

TEST_F(TagEditorTest, GenresThatAreNoEntriesAreShown)
{
    const struct {
        int genre;
        const char *want;
        int index;
    } cases[] = {
        {0, "255", 1}, {125, "Dance Hall", -1}, {255, "", 0}, {200, "", 0}, {2, "Country", 27}};
    for (const auto &c : cases) {
        Open(Sound() + Tag1("", "", "", "", "", 0, c.genre));
        EXPECT_EQ(V1().cmbGenre.Text(), c.want) << c.genre;
        EXPECT_EQ(V1().cmbGenre.ListIndex(), c.index) << c.genre;
    }
    Open(Tag(3, Frame3("TCON", "Mi genero")) + Sound());
    EXPECT_EQ(V2().cmbGenre.Text(), "Mi genero");
    EXPECT_EQ(V2().cmbGenre.Items().size(), 126U);
}

TEST_F(TagEditorTest, TheCheckBoxSwitchesItsColumnOnly)
{
    Open(Sound());
    tagedit::SetHasID3Tag(m_editor, kID3v1, true);
    EXPECT_TRUE(V1().txtYear.Enabled());
    EXPECT_TRUE(V1().cmdToID3.Enabled());
    EXPECT_FALSE(V2().txtYear.Enabled());
    tagedit::SetHasID3Tag(m_editor, kID3v1, false);
    EXPECT_FALSE(V1().cmbGenre.Enabled());
    EXPECT_TRUE(m_editor.cmdOk.Enabled());
}

TEST_F(TagEditorTest, CopyingToTheFirstTagCuts)
{
    const std::string forty = "0123456789012345678901234567890123456789";
    Open(Tag(3, Frame3("TIT2", forty) + Frame3("TPE1", std::string(35, '\xF1')) +
                    Frame3("TALB", forty) + Frame3("TYER", "2001-02") +
                    Frame3("COMM", Z("eng\0") + forty) + Frame3("TCON", "Mi genero") +
                    Frame3("TRCK", "300") + Frame3("USLT", Z("\0\0\0\0Words"))) +
         Sound());
    ASSERT_FALSE(V1().HasID3Tag.Checked());
    tagedit::cmdToID3_Click(m_editor, kID3v2);
    EXPECT_TRUE(V1().HasID3Tag.Checked());
    EXPECT_TRUE(V1().txtTitle.Enabled());
    std::string thirty;
    for (int i = 0; i < 30; ++i)
        thirty += "ñ";
    EXPECT_EQ(Texts(V1()), forty.substr(0, 30) + "|" + thirty + "|" + forty.substr(0, 30) +
                               "|2001|" + forty.substr(0, 30) + "|Mi genero|300");
    EXPECT_EQ(V1().txtLyrics.Text(), "");
    EXPECT_EQ(V2().txtTitle.Text(), forty);
}

TEST_F(TagEditorTest, CopyingToTheSecondTagTakesWhatIsShown)
{
    Open(Sound() + Tag1("Title", "Artist", "Album", "1999", "Comment", 9, 17));
    tagedit::cmdToID3_Click(m_editor, kID3v1);
    EXPECT_TRUE(V2().HasID3Tag.Checked());
    EXPECT_EQ(Texts(V2()), "Title|Artist|Album|1999|Comment|Rock|9");
}

TEST_F(TagEditorTest, LettersChooseInTheFirstGenreBoxOnly)
{
    Open(Sound() + Tag1("", "", "", "", "", 0, 17));
    EXPECT_TRUE(tagedit::cmbGenre_KeyPress(m_editor, kID3v1, "r"));
    EXPECT_EQ(V1().cmbGenre.Text(), "Rock & Roll");
    EXPECT_TRUE(tagedit::cmbGenre_KeyPress(m_editor, kID3v1, "R"));
    EXPECT_EQ(V1().cmbGenre.Text(), "R&B");
    // Handled, and nothing is chosen.
    EXPECT_TRUE(tagedit::cmbGenre_KeyPress(m_editor, kID3v1, "*"));
    EXPECT_EQ(V1().cmbGenre.Text(), "R&B");
    EXPECT_FALSE(tagedit::cmbGenre_KeyPress(m_editor, kID3v2, "r"));
    EXPECT_EQ(V2().cmbGenre.Text(), "");
}

TEST_F(TagEditorTest, FullBoxesOfTheFirstColumnTakeNoKey)
{
    // Tags that this program writes are padded with NULs, which do not count.
    Open(Sound() + Tag1("Title", "", "", "19", "", 0, 255));
    EXPECT_FALSE(tagedit::IsLimitReached(m_editor, V1().txtTitle));
    EXPECT_FALSE(tagedit::IsLimitReached(m_editor, V1().txtYear));
    V1().txtYear.SetText("1999");
    EXPECT_TRUE(tagedit::IsLimitReached(m_editor, V1().txtYear));
    std::string text;
    for (int i = 0; i < 29; ++i)
        text += "ñ";
    for (tagedit::TagBox *box :
         {&V1().txtTitle, &V1().txtArtist, &V1().txtAlbum, &V1().txtComment}) {
        box->SetText(text);
        EXPECT_FALSE(tagedit::IsLimitReached(m_editor, *box));
        box->SetText(text + "x");
        EXPECT_TRUE(tagedit::IsLimitReached(m_editor, *box));
    }
    V1().txtTrack.SetText(text + text);
    EXPECT_FALSE(tagedit::IsLimitReached(m_editor, V1().txtTrack));
    V2().txtTitle.SetText(text + text);
    EXPECT_FALSE(tagedit::IsLimitReached(m_editor, V2().txtTitle));
}

TEST_F(TagEditorTest, CharactersThatNoTagHoldsAreNamed)
{
    Open(Sound());
    EXPECT_FALSE(m_editor.lblNote.Visible());
    V2().txtLyrics.SetText("Łódź & € Ł");
    EXPECT_EQ(V2().txtLyrics.ToolTip(), m_editor.lblNote.Caption());
    EXPECT_TRUE(V2().txtLyrics.Marked());
    EXPECT_EQ(V2().txtTitle.ToolTip(), "");
    EXPECT_FALSE(V2().txtTitle.Marked());
    EXPECT_TRUE(m_editor.lblNote.Visible());
    EXPECT_EQ(m_editor.lblNote.Caption(),
              "A tag cannot hold Łź. In place of each a \"?\" will be written.");
    V2().txtLyrics.SetText("Lodz");
    EXPECT_FALSE(V2().txtLyrics.Marked());
    EXPECT_FALSE(m_editor.lblNote.Visible());
    V2().cmbGenre.SetText("Łódź");
    EXPECT_TRUE(V2().cmbGenre.Marked());
}

TEST_F(TagEditorTest, AFileThatDoesNotExistIsReportedAndChangesNothing)
{
    Open(Sound() + Tag1("Title", "", "", "", "", 1, 17));
    m_editor.File = m_desk.music / "none.mp3";
    EXPECT_THROW(tagedit::LoadTags(m_editor), runtime::RuntimeError);
    EXPECT_EQ(Texts(V1()), "Title|||||Rock|1");
}

// What is pasted or cut in the first genre box is no choice; in the second it is a genre.
TEST_F(TagEditorTest, TheFirstGenreBoxHoldsEntriesOnly)
{
    Open(Sound() + Tag1("", "", "", "", "", 0, 125));
    V1().cmbGenre.SetText("Dance Hal");
    EXPECT_EQ(V1().cmbGenre.Text(), "Dance Hall");
    V1().cmbGenre.SetText("Rock");
    V1().cmbGenre.SetText("Rocky");
    EXPECT_EQ(V1().cmbGenre.Text(), "Rock");
    V2().cmbGenre.SetText("Rocky");
    EXPECT_EQ(V2().cmbGenre.Text(), "Rocky");
    tagedit::cmdToID3_Click(m_editor, kID3v2);
    EXPECT_EQ(V1().cmbGenre.Text(), "Rocky"); // a copy can set any text
}

TEST_F(TagEditorTest, KeysThatTypeNothingAreFree)
{
    Open(Sound() + Tag1("012345678901234567890123456789", "", "", "", "", 0, 17));
    EXPECT_TRUE(V1().txtTitle.keyPressed(U'x'));
    EXPECT_TRUE(V1().txtTitle.keyPressed(8));                   // Backspace
    for (const char32_t key : {U'\t', U'\r', U'\x1B', U'\x03'}) // Tab, Enter, Escape, Ctrl+C
        EXPECT_FALSE(V1().txtTitle.keyPressed(key)) << static_cast<int>(key);
    EXPECT_FALSE(V1().txtArtist.keyPressed(U'x'));
    EXPECT_FALSE(V2().txtTitle.keyPressed(U'x'));
    EXPECT_TRUE(V1().cmbGenre.keyPressed(U'r'));
    EXPECT_EQ(V1().cmbGenre.Text(), "Rock & Roll");
    EXPECT_TRUE(V1().cmbGenre.keyPressed(8));
    EXPECT_FALSE(V1().cmbGenre.keyPressed(9));
    EXPECT_FALSE(V2().cmbGenre.keyPressed(U'r'));
}

} // namespace

// The editor's OK: the bytes of the song afterwards, and when the window stays open.
#include "metadata/id3v1.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "tests/metadata/faultyfiles.h"
#include "tests/tagedit/editorfixture.h"

using tagedit::cmdOk_Click;
using tagedit::kID3v1;
using tagedit::kID3v2;
using tests::Frame3;
using tests::ReadFile;
using tests::Tag;
using tests::Tag1;
using tests::Z;

namespace
{

// A desktop that answers Yes or No to every question.
class AnsweringDesk : public tests::SongDesk
{
public:
    platform::Answer answer = platform::Answer::No;
    platform::Answer MessageBox(std::string_view text, platform::Buttons buttons,
                                std::string_view title, platform::BoxIcon icon) override
    {
        SongDesk::MessageBox(text, buttons, title, icon);
        return buttons == platform::Buttons::YesNo ? answer : platform::Answer::Ok;
    }
};

class SaveTags : public tests::EditorTest
{
protected:
    ~SaveTags() override { shell::TheGlobals() = {}; }
    AnsweringDesk m_answers;

    const std::vector<std::string> &Boxes() const { return m_answers.boxes; }
};

TEST_F(SaveTags, NothingChangedNothingWritten)
{
    const std::string song = Tag(3, Frame3("TCON", "(17)Rock") + Frame3("TRCK", "3")) + Sound() +
                             Tag1("Title", "Artist", "Album", "1999", "Comment", 3, 0);
    Open(song);
    int saved = 0;
    m_editor.saved = [&](const auto &, const auto &) { ++saved; };
    EXPECT_TRUE(cmdOk_Click(m_editor));
    EXPECT_EQ(saved, 1);                   // also where nothing was to be written
    EXPECT_TRUE(ReadFile(m_path) == song); // genre 0, shown as "255", stays 0
    EXPECT_EQ(Boxes(), std::vector<std::string>{});
}

TEST_F(SaveTags, AChangedFieldIsWrittenInFrontOfTheOldBody)
{
    const std::string keep = Frame3("TXXX", "left alone") + std::string(20, '\0');
    Open(Tag(3, Frame3("TIT2", "Old") + Frame3("TPE1", "Artist") + keep) + Sound());
    V2().txtTitle.SetText("Señor");
    EXPECT_TRUE(cmdOk_Click(m_editor));
    EXPECT_TRUE(ReadFile(m_path) ==
                Tag(3, Frame3("TIT2", "Se\xF1or") + Frame3("TPE1", "Artist") +
                           Frame3("TCON", "(255)") + Frame3("TRCK", "0") + keep) +
                    Sound());
}

// Where tags are read by their frames, the ID3v2 column can store every character; the ID3v1 column
// stores those of the code page, marks the others, and is cut to the length of its fields. What is
// not changed keeps its bytes.
TEST_F(SaveTags, EachColumnTakesWhatItsTagHolds)
{
    shell::TheGlobals().UnicodeTags = true;
    const std::string keep = Frame3("TXXX", "left alone") + std::string(20, '\0');
    const std::string artist = tests::Frame("TPE1", Z("\1\xFF\xFE\x1C\x68")); // U+681C
    Open(Tag(3, Frame3("TIT2", "Old") + artist + keep) + Sound() +
         Tag1("Old", "Artist", "", "1999", "", 3, 17));
    EXPECT_EQ(V2().txtArtist.Text(), "\xE6\xA0\x9C");
    V1().txtTitle.SetText("\xE6\xA0\x9C Se\xC3\xB1or 0123456789012345678901234567890");
    V2().txtTitle.SetText("\xE6\xA0\x9C");
    EXPECT_TRUE(V1().txtTitle.Marked());
    EXPECT_FALSE(V1().txtArtist.Marked());
    EXPECT_FALSE(V2().txtTitle.Marked());
    EXPECT_FALSE(V2().txtArtist.Marked());
    EXPECT_TRUE(m_editor.lblNote.Visible());
    EXPECT_TRUE(cmdOk_Click(m_editor));
    EXPECT_TRUE(ReadFile(m_path) ==
                Tag(3, tests::Frame("TIT2", Z("\1\xFF\xFE\x1C\x68")) + artist + keep) + Sound() +
                    Tag1("? Se\xF1or 0123456789012345678901", "Artist", "", "1999", "", 3, 17));
    EXPECT_EQ(Boxes(), std::vector<std::string>{});
}

TEST_F(SaveTags, EmptyBoxesOfGenreAndTrack)
{
    Open(Tag(3, Frame3("TCON", "(17)Rock") + Frame3("TRCK", "5")) + Sound());
    V2().cmbGenre.SetText("");
    V2().txtTrack.SetText("");
    EXPECT_TRUE(cmdOk_Click(m_editor));
    EXPECT_TRUE(ReadFile(m_path) ==
                Tag(3, Frame3("TCON", "(255)") + Frame3("TRCK", "0")) + Sound());
}

TEST_F(SaveTags, ATagSwitchedOffLeavesTheFile)
{
    Open(Tag(3, Frame3("TIT2", "Old")) + Sound() + Tag1("Title", "", "", "", "", 0, 255));
    tagedit::SetHasID3Tag(m_editor, kID3v2, false);
    V1().txtTitle.SetText("New");
    EXPECT_TRUE(cmdOk_Click(m_editor));
    EXPECT_TRUE(ReadFile(m_path) == Sound() + Tag1("New", "", "", "", "", 0, 255));
}

TEST_F(SaveTags, TheFirstTagIsBuiltFromItsColumn)
{
    Open(Tag(3, Frame3("TIT2", "Long title of the second tag, uncut") + Frame3("TCON", "(255)") +
                    Frame3("TRCK", "12")) +
         Sound());
    tagedit::cmdToID3_Click(m_editor, kID3v2);
    V1().cmbGenre.SetText("Rock");
    EXPECT_TRUE(cmdOk_Click(m_editor));
    EXPECT_TRUE(ReadFile(m_path).ends_with(
        Sound() + Tag1("Long title of the second tag, ", "", "", "", "", 12, 17)
                      .replace(32, 1, 1, '\0'))); // the blank that the cut leaves is trimmed
}

// All fields but one have any bytes; they are the same after an edit of that one.
TEST_F(SaveTags, OtherFieldsKeepTheirBytes)
{
    std::string every;
    for (int byte = 0; byte < 256; ++byte)
        every += static_cast<char>(255 - byte);
    const std::string lyrics = "one\rtwo\nthree\r\nfour \xA0 " + every;
    Open(Tag(3, Frame3("TPE1", every) + Frame3("TCON", "(255)") +
                    Frame3("USLT", Z("\0\0\0\0") + lyrics) + Frame3("TRCK", "0")) +
         Sound());
    V2().txtTitle.SetText("New");
    EXPECT_TRUE(cmdOk_Click(m_editor));
    EXPECT_TRUE(ReadFile(m_path) ==
                Tag(3, Frame3("TIT2", "New") + Frame3("TPE1", every) + Frame3("TCON", "(255)") +
                           Frame3("USLT", Z("\0\0\0\0") + lyrics) + Frame3("TRCK", "0")) +
                    Sound());
}

TEST_F(SaveTags, ATrackThatDoesNotFitWritesNothing)
{
    const struct {
        int column;
        const char *track;
        bool fits;
    } cases[] = {{kID3v1, "300", false},   {kID3v1, "256", false}, {kID3v1, "-1", false},
                 {kID3v1, "255", true},    {kID3v1, "7x", true},   {kID3v1, "none", true},
                 {kID3v2, "32768", false}, {kID3v2, "300", true}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.track);
        const std::string song = Sound() + Tag1("Title", "", "", "", "", 1, 255);
        Open(song);
        tagedit::SetHasID3Tag(m_editor, c.column, true);
        m_editor.At(c.column).txtTrack.SetText(c.track);
        if (c.fits) {
            EXPECT_TRUE(cmdOk_Click(m_editor));
            continue;
        }
        try {
            cmdOk_Click(m_editor);
            ADD_FAILURE() << "no error";
        } catch (const runtime::RuntimeError &error) {
            EXPECT_EQ(error.number, runtime::kOverflow);
            EXPECT_EQ(error.description, "Overflow");
        }
        EXPECT_TRUE(ReadFile(m_path) == song);
        EXPECT_FALSE(m_editor.saving);
        EXPECT_TRUE(m_editor.cmdOk.Enabled());
        EXPECT_FALSE(m_editor.lblBusy.Visible());
    }
}

TEST_F(SaveTags, ASongChangedSinceItWasReadIsLeftAndOffered)
{
    Open(Sound() + Tag1("Title", "", "", "", "", 1, 255));
    const std::string theirs = Sound() + Tag1("Theirs", "", "", "", "", 1, 255);
    tests::WriteFile(m_path, theirs);
    V1().txtTitle.SetText("Mine");
    EXPECT_FALSE(cmdOk_Click(m_editor));
    ASSERT_EQ(Boxes().size(), 1U);
    EXPECT_NE(Boxes()[0].find("changed by another program"), std::string::npos);
    EXPECT_EQ(V1().txtTitle.Text(), "Mine"); // what was typed stays
    EXPECT_TRUE(ReadFile(m_path) == theirs);

    m_answers.answer = platform::Answer::Yes;
    EXPECT_FALSE(cmdOk_Click(m_editor));
    EXPECT_EQ(V1().txtTitle.Text(), "Theirs");
    V1().txtTitle.SetText("Both");
    EXPECT_TRUE(cmdOk_Click(m_editor));
    EXPECT_TRUE(ReadFile(m_path) == Sound() + Tag1("Both", "", "", "", "", 1, 255));
}

// Only the time of the last change differs, the tags are the same: no change of another program is
// lost.
TEST_F(SaveTags, AFileRewrittenWithTheSameTagsIsSaved)
{
    Open(Sound() + Tag1("Title", "", "", "", "", 1, 255));
    tests::WriteFile(m_path, Sound(5000) + Tag1("Title", "", "", "", "", 1, 255));
    V1().txtTitle.SetText("Mine");
    EXPECT_TRUE(cmdOk_Click(m_editor));
    EXPECT_TRUE(ReadFile(m_path) == Sound(5000) + Tag1("Mine", "", "", "", "", 1, 255));
}

// Changed while SaveTag works: SaveTag refuses with its own message, then the question follows.
TEST_F(SaveTags, ASongChangedWhileItIsSavedIsLeftAndOffered)
{
    Open(Sound() + Tag1("Title", "", "", "", "", 1, 255));
    const std::string theirs = Sound() + Tag1("Theirs", "", "", "", "", 1, 255);
    metadata::TheTagWriterHooks().releasePlayingFile = [&](const std::string &, std::int32_t &,
                                                           std::int32_t &) -> std::string {
        tests::WriteFile(m_path, theirs);
        return {};
    };
    V1().txtTitle.SetText("Mine");
    m_answers.answer = platform::Answer::Yes;
    EXPECT_FALSE(cmdOk_Click(m_editor));
    ASSERT_EQ(Boxes().size(), 2U);
    EXPECT_NE(Boxes()[0].find("was changed by another program"), std::string::npos);
    EXPECT_NE(Boxes()[1].find("read the tags of this file again"), std::string::npos);
    EXPECT_TRUE(ReadFile(m_path) == theirs);
    EXPECT_EQ(V1().txtTitle.Text(), "Theirs");
}

TEST_F(SaveTags, AFileThatDoesNotExistKeepsTheWindowOpen)
{
    Open(Sound() + Tag1("Title", "", "", "", "", 1, 255));
    std::filesystem::remove(m_path);
    V1().txtTitle.SetText("Mine");
    EXPECT_FALSE(cmdOk_Click(m_editor));
    ASSERT_EQ(Boxes().size(), 1U);
    EXPECT_NE(Boxes()[0].find(m_path), std::string::npos);
    EXPECT_EQ(V1().txtTitle.Text(), "Mine");
    EXPECT_FALSE(std::filesystem::exists(m_path));
}

// Each call of the files port that changes something fails once: the song is the complete old or
// new one, and the window closes only after the new one was written.
TEST_F(SaveTags, EveryFaultIsReportedAndKeepsTheWindowOpen)
{
    const std::string old = Sound() + Tag1("Title", "", "", "", "", 1, 255);
    const std::string wanted = Sound() + Tag1("Mine", "", "", "", "", 1, 255);
    shell::TheGlobals().UpdateDBAfterEditing = true;
    for (int call = 1;; ++call) {
        SCOPED_TRACE(call);
        Open(old);
        std::vector<std::string> rows; // the calls of the catalogue's hook
        metadata::TheTagWriterHooks().updateCatalogue =
            [&](const metadata::ID3v2Tag &tag, const std::string &) { rows.push_back(tag.Title); };
        m_answers.boxes.clear();
        V1().txtTitle.SetText("Mine");
        V2().txtTitle.SetText("Mine");
        tests::FaultyFiles files;
        files.faultyCall = call;
        files.reason = EROFS;
        platform::TheMachine().files = &files;
        const bool closes = cmdOk_Click(m_editor);
        platform::TheMachine().files = &platform::SystemFiles();
        const std::string song = ReadFile(m_path);
        const bool isWritten = std::ranges::find(files.named, m_path) != files.named.end();
        EXPECT_TRUE(song == (isWritten ? wanted : old));
        EXPECT_EQ(closes, isWritten);
        EXPECT_TRUE(isWritten || !Boxes().empty());
        ASSERT_FALSE(rows.empty());
        EXPECT_EQ(rows.back(),
                  isWritten ? "Mine" : "Title"); // the rows have the values of the file
        EXPECT_EQ(V1().txtTitle.Text(), "Mine");
        if (files.calls < call) {
            EXPECT_TRUE(isWritten && Boxes().empty());
            break;
        }
        std::filesystem::remove(m_path + ".bck");
        ASSERT_LT(call, 50);
    }
}

TEST_F(SaveTags, WhileItSavesItCannotBeStartedTwiceNorClosed)
{
    Open(Sound() + Tag1("Title", "", "", "", "", 1, 255));
    V1().txtTitle.SetText("Mine");
    EXPECT_TRUE(m_editor.mayClose());
    int seen = 0;
    m_answers.onYield = [&] {
        ++seen;
        EXPECT_TRUE(m_editor.saving);
        EXPECT_FALSE(m_editor.mayClose());
        EXPECT_FALSE(m_editor.cmdOk.Enabled());
        EXPECT_FALSE(m_editor.cmdCancel.Enabled());
        EXPECT_TRUE(m_editor.lblBusy.Visible());
        EXPECT_FALSE(cmdOk_Click(m_editor));
    };
    EXPECT_TRUE(cmdOk_Click(m_editor));
    m_answers.onYield = nullptr;
    EXPECT_GT(seen, 2);
    EXPECT_TRUE(m_editor.mayClose());
    EXPECT_TRUE(ReadFile(m_path) == Sound() + Tag1("Mine", "", "", "", "", 1, 255));
}

} // namespace

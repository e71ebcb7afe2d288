#include "platform/endrequest.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "shell/startup/batch.h"
#include "tests/support/fulldisk.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>

namespace fs = std::filesystem;
using shell::RunBatch;
using shell::SplitArguments;
using RowList = std::vector<std::string>;

namespace
{

const std::string kDateLine = "\r5/3/2026 7:8:9\r\r";

struct Batch : tests::LibraryFixture {
    void AddSong(const std::string &name)
    {
        tests::WriteFile(Song(name), tests::Id3v2(tests::TextFrame("TIT2", "T")) + tests::Audio());
    }

    std::string Summary() const { return tests::ReadFile(folder / "app/Solution.txt"); }
    std::string Line(const std::string &name) const { return "    " + Song(name) + "\r"; }
};

TEST(SplitArguments, Table)
{
    const struct {
        const char *name;
        std::string_view text;
        RowList want;
    } cases[] = {
        {"none", "", {}},
        {"one", "\"/a b.mp3\"", {"/a b.mp3"}},
        {"two", "\"/a.mp3\" \"/b.mp3\"", {"/a.mp3", "/b.mp3"}},
        {"one without quotes", "/a b.mp3", {"/a b.mp3"}},
        {"two without quotes", "/a.mp3 /b.mp3", {"/a.mp3 /b.mp3"}},
        {"a quote inside", "\"/qu\"ote.mp3\"", {"/qu ote.mp3"}},
        {"two blanks between", "\"/a.mp3\"  \"/b.mp3\"", {"/a.mp3    /b.mp3"}},
        {"blanks at the ends", " \"/a.mp3 \" ", {"/a.mp3"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(SplitArguments(c.text), c.want);
    }
}

TEST_F(Batch, ReportsOneAddedFile)
{
    AddSong("a.mp3");
    EXPECT_TRUE(RunBatch({Song("a.mp3")}));
    EXPECT_EQ(Summary(),
              kDateLine + "  This MP3 was added correctly:\r\r" + Line("a.mp3") + "\r\r\n");
}

TEST_F(Batch, ReportsAllOutcomesInTheirOrder)
{
    for (const char *name : {"old1.mp3", "old2.mp3", "new1.mp3", "new2.mp3"})
        AddSong(name);
    tests::WriteFile(Song("none.mp3"), tests::Audio());
    RunBatch({Song("old1.mp3"), Song("old2.mp3")});
    fs::remove(folder / "app/Solution.txt");
    RunBatch({Song("none.mp3"), Song("old1.mp3"), Song("new1.mp3"), Song("absent.mp3"),
              Song("old2.mp3"), Song("new2.mp3")});
    EXPECT_EQ(Summary(), kDateLine + "  These MP3s were added correctly:\r\r" + Line("new1.mp3") +
                             Line("new2.mp3") + "\r  These MP3s were updated correctly:\r\r" +
                             Line("old1.mp3") + Line("old2.mp3") +
                             "\r  These MP3s couldn't be added/updated:\r\r" + Line("none.mp3") +
                             "  Reason: No ID3's tags were found on '" + Song("none.mp3") + "'\r" +
                             Line("absent.mp3") + "  Reason: No such file or directory\r\r\r\n");
    EXPECT_EQ(Rows().size(), 5u) << "the file without tags has its row";
}

TEST_F(Batch, OneFailedFileIsTheSingular)
{
    RunBatch({Song("absent.mp3")});
    EXPECT_EQ(Summary(), kDateLine + "  This MP3 couldn't be added/updated:\r\r" +
                             Line("absent.mp3") + "  Reason: No such file or directory\r\r\r\n");
}

;

TEST_F(Batch, SongsWhoseRowsWereLostCountAsFailed)
{
    AddSong("a.mp3");
    AddSong("b.mp3");
    EXPECT_TRUE(RunBatch({Song("a.mp3"), Song("absent.mp3")}));
    fs::remove(folder / "app/Solution.txt");
    {
        const tests::FullDisk disk(3000);
        EXPECT_FALSE(RunBatch({Song("b.mp3"), Song("absent.mp3")}));
    }
    EXPECT_EQ(Rows().size(), 1u);
    EXPECT_TRUE(Summary().starts_with(kDateLine + "  These MP3s couldn't be added/updated:\r\r" +
                                      Line("b.mp3") + "  Reason: Error: "))
        << Summary();
}

TEST_F(Batch, SummaryIsAppendedTo)
{
    AddSong("a.mp3");
    RunBatch({Song("a.mp3")});
    const std::string first = Summary();
    RunBatch({Song("a.mp3")});
    EXPECT_EQ(Summary(), first + kDateLine + "  This MP3 was updated correctly:\r\r" +
                             Line("a.mp3") + "\r\r\n");
}

TEST_F(Batch, TextFilesAloneLeaveTheDateLine)
{
    std::vector<std::string> progress;
    shell::TheGlobals().lblProgress.changed = [&] {
        progress.push_back(shell::TheGlobals().lblProgress.Caption());
    };
    desktop.ExpectBox("The MP3 with similar name could not be found on the database.");
    desktop.ExpectBox("The MP3 with similar name could not be found on the database.");
    RunBatch({"/nowhere/Song.txt", "/nowhere/OTHER.TxT"});
    EXPECT_EQ(Summary(), kDateLine + "\r\n");
    EXPECT_EQ(progress, (RowList{"Adding lyrics...", "Analizing file", "Adding lyrics...",
                                 "Analizing file"}));
}

TEST_F(Batch, TextFilesTakeNoPartInTheSummary)
{
    AddSong("a.mp3");
    tests::WriteFile(Song("a.TXT"), "la la");
    desktop.ExpectBox("The MP3 with similar name could not be found on the database.");
    desktop.ExpectBox("The lyrics were added correctly.");
    RunBatch({"/nowhere/Song.txt", Song("a.mp3"), Song("a.TXT")});
    EXPECT_EQ(Summary(),
              kDateLine + "  This MP3 was added correctly:\r\r" + Line("a.mp3") + "\r\r\n");
    EXPECT_NE(tests::ReadFile(Song("a.mp3")).find("la la"), std::string::npos);
}

TEST_F(Batch, UnquotedPathWithBlanksIsOneElement)
{
    AddSong("a b c.mp3");
    RunBatch(SplitArguments(Song("a b c.mp3")));
    EXPECT_EQ(Rows().size(), 1u);
    EXPECT_NE(Summary().find("was added correctly:\r\r" + Line("a b c.mp3")), std::string::npos);
}

TEST_F(Batch, TwoUnquotedPathsAreOneElementThatFails)
{
    AddSong("a.mp3");
    AddSong("b.mp3");
    RunBatch(SplitArguments(Song("a.mp3") + " " + Song("b.mp3")));
    EXPECT_EQ(Rows(), RowList{});
    EXPECT_NE(Summary().find("couldn't be added/updated:\r\r    " + Song("a.mp3") + " " +
                             Song("b.mp3") + "\r"),
              std::string::npos);
}

TEST_F(Batch, AnElementIsOnePathAsItIs)
{
    RowList rows;
    std::string lines;
    for (const char *name : {"qu\"ote.mp3", "blank.mp3 ", " both.mp3 ", "a\" \"b.mp3", "\".mp3"}) {
        AddSong(name);
        RunBatch({Song(name)});
        rows.push_back(std::string("T|||||||~/") + name + "||0");
    }
    EXPECT_EQ(Rows(), rows);
    EXPECT_EQ(Summary().find("couldn't"), std::string::npos);
}

TEST_F(Batch, NoControlCharacterReachesTheSummary)
{
    const std::string odd = "a\r  This MP3 was added correctly:\r\r    b\x1B[2J\n.mp3";
    AddSong(odd);
    tests::WriteFile(Song("none\r.mp3"), tests::Audio());
    RunBatch({Song(odd), Song("absent\x1B.mp3"), Song("none\r.mp3")});
    EXPECT_EQ(Rows().size(), 2u);
    EXPECT_EQ(Rows()[0], "T|||||||~/" + odd + "||0") << "the row keeps the bytes";
    EXPECT_EQ(
        Summary(),
        kDateLine + "  This MP3 was added correctly:\r\r    " + folder.Path() +
            "/music/a\\x0d  This MP3 was added correctly:\\x0d\\x0d    b\\x1b[2J\\x0a.mp3\r\r" +
            "  These MP3s couldn't be added/updated:\r\r" + Line("absent\\x1b.mp3") +
            "  Reason: No such file or directory\r" + Line("none\\x0d.mp3") +
            "  Reason: No ID3's tags were found on '" + Song("none\\x0d.mp3") + "'\r\r\r\n");
}

TEST_F(Batch, APipeInThePlaceOfTheSummaryIsRefusedAtOnce)
{
    ASSERT_EQ(mkfifo((folder / "app/Solution.txt").c_str(), 0600), 0);
    EXPECT_THROW(RunBatch({Song("absent.mp3")}), runtime::RuntimeError);
}

TEST_F(Batch, AnEmptyArgumentIsNoFile)
{
    RunBatch({"", Song("absent.mp3")});
    EXPECT_EQ(Summary(), kDateLine +
                             "  These MP3s couldn't be added/updated:\r\r    \r  Reason: No "
                             "such file or directory\r" +
                             Line("absent.mp3") + "  Reason: No such file or directory\r\r\r\n");
}

TEST_F(Batch, AnyFileIsTakenWhateverItsName)
{
    tests::WriteFile(Song("song.dat"),
                     tests::Id3v2(tests::TextFrame("TIT2", "T")) + tests::Audio());
    RunBatch({Song("song.dat")});
    EXPECT_EQ(Rows().size(), 1u);
}

TEST_F(Batch, ASignalEndsTheBatchAfterTheCurrentFileAndTheSummary)
{
    AddSong("a.mp3");
    AddSong("b.mp3");
    desktop.doEvents = [] { platform::RequestEnd(SIGTERM); };
    EXPECT_THROW(RunBatch({Song("a.mp3"), Song("b.mp3")}), platform::EndRequested);
    platform::RequestEnd(0);
    desktop.doEvents = {};
    EXPECT_EQ(Rows().size(), 1u);
    EXPECT_EQ(Summary(),
              kDateLine + "  This MP3 was added correctly:\r\r" + Line("a.mp3") + "\r\r\n");
}

TEST_F(Batch, TextFileThatCannotBeOpenedEndsTheJob)
{
    AddSong("a.mp3");
    AddSong("b.mp3");
    try {
        RunBatch({Song("a.mp3"), Song("a.txt"), Song("b.mp3")});
        ADD_FAILURE();
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kFileNotFound);
        EXPECT_EQ(error.description, Song("a.txt") + ": No such file or directory");
    }
    EXPECT_EQ(Rows(), RowList{"T|||||||~/a.mp3||0"}) << "what went in before stays";
    EXPECT_FALSE(fs::exists(folder / "app/Solution.txt"));
}

TEST_F(Batch, SummaryThatCannotBeWrittenIsAnError)
{
    fs::create_directory(folder / "app/Solution.txt");
    try {
        RunBatch({Song("a.mp3")});
        ADD_FAILURE();
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kPathFileAccess);
        EXPECT_EQ(error.description, folder / "app/Solution.txt" + std::string(": Is a directory"));
    }
}

} // namespace

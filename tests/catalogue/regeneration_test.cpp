#include "catalogue/regeneration/walker.h"
#include "shell/globals.h"
#include "tests/catalogue/regenerationfixture.h"
#include "tests/support/wait.h"

#include <filesystem>

namespace fs = std::filesystem;
using catalogue::LastRegeneration;
using catalogue::ListRefresh;
using platform::Answer;
using tests::Regeneration;
using tests::RowList;
using tests::WaitUntil;

namespace
{

TEST_F(Regeneration, WalksFilesThenFoldersInTheirOrder)
{
    for (const char *name : {"z.mp3", "B/2.MP3", "a/1.mp3", "a/in/x.mp3", "a/0.Mp3", "c/no.txt"})
        AddSong(name);
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"z.mp3", "a/0.Mp3", "a/1.mp3", "a/in/x.mp3", "B/2.MP3"}));
    EXPECT_EQ(LastRegeneration().files, 5);
    EXPECT_EQ(LastRegeneration().failed, 0);
    EXPECT_EQ(catalogue::Dirs().Path(), Music());
    EXPECT_EQ(progress.Max(), 5);
    EXPECT_EQ(progress.Value(), 5);
    EXPECT_EQ(playing, (RowList{"Counting MP3s", "Adding: z.mp3", "Adding: 0.Mp3", "Adding: 1.mp3",
                                "Adding: x.mp3", "Adding: 2.MP3", ""}));
    EXPECT_EQ(blank, (RowList{"0/5", "1/5", "2/5", "3/5", "4/5", "5/5", ""}));
    EXPECT_EQ(listsEmptied, 1);
    EXPECT_EQ(enabled, true);
    EXPECT_EQ(barsLaid, 0);
    EXPECT_FALSE(progress.Visible());
}

TEST_F(Regeneration, EventsRunAtEachStep)
{
    AddSong("a.mp3");
    AddSong("sub/b.mp3");
    shell::TheGlobals().DeleteBeforeAppend = true;
    progress.SetValue(7);
    RowList seen; // what the window shows when events run, each change once
    std::vector<int> times;
    desktop.doEvents = [&] {
        const std::string now = bar.Panel("Playing").text + "|" + bar.Panel("Blank").text + "|" +
                                std::to_string(progress.Value()) +
                                (progress.Visible() ? "" : " hidden");
        if (seen.empty() || seen.back() != now) {
            seen.push_back(now);
            times.push_back(0);
        }
        times.back()++;
    };
    ListRefresh(true);
    EXPECT_EQ(seen, (RowList{"||7", "Counting MP3s||0", "Adding: a.mp3|0/2|0",
                             "Adding: b.mp3|1/2|1", "Adding: b.mp3|2/2|2", "||2"}));
    // For showing the bar; two for each of the statements that look for rows and delete them; for
    // counting the folder; before each file, and before and after its statement; at the ends of the
    // two folders; at the end of the panels.
    EXPECT_EQ(times, (std::vector<int>{5, 1, 3, 3, 2, 1}));
}

TEST_F(Regeneration, TheWalkSeesWhatHasChangedSinceTheCount)
{
    AddSong("a.mp3");
    AddSong("sub/b.mp3");
    for (const std::string &folder : {Music(), Song("sub")}) // so that their lists are kept
        ASSERT_TRUE(WaitUntil([&] { return catalogue::OpenFolder(folder).WasSettled(); }));
    bool isAdded = false;
    desktop.doEvents = [&] {
        if (!isAdded && bar.Panel("Playing").text == "Adding: a.mp3")
            AddSong("sub/c.mp3");
        isAdded = fs::exists(Song("sub/c.mp3"));
    };
    ListRefresh(false);
    EXPECT_EQ(blank[blank.size() - 2], "3/2") << "before the panel is emptied";
    EXPECT_EQ(Paths(), (RowList{"a.mp3", "sub/b.mp3", "sub/c.mp3"}));
}

TEST_F(Regeneration, AmpersandBetweenBlanksIsDoubledInThePanel)
{
    AddSong("You & Me&Us.mp3");
    ListRefresh(false);
    EXPECT_EQ(playing[1], "Adding: You && Me&Us.mp3");
}

TEST_F(Regeneration, ReportOfAWholeCollectionSaysSuccessAndAsksNothing)
{
    AddSong("sub/a.mp3");
    ListRefresh(false);
    const std::string report = Report();
    const std::string end = "  Quenlin succeded getting the information of each file\r\n\r\n\r\n"
                            "Directory: " +
                            Music() + "\r\nDate of creation: 5.3.2026 7:8:9\r\n";
    ASSERT_GE(report.size(), end.size());
    EXPECT_EQ(report.substr(report.size() - end.size()), end);
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Regeneration, EmptyFolderSetsAMaximumOfZero)
{
    progress.SetMax(7);
    ListRefresh(true);
    EXPECT_EQ(progress.Max(), 0);
    EXPECT_EQ(barsLaid, 1);
    EXPECT_FALSE(progress.Visible());
    EXPECT_NE(Report().find("Quenlin succeded"), std::string::npos);
    EXPECT_EQ(Rows(), RowList{});
}

TEST_F(Regeneration, MissingTagsAreReportedAndOffered)
{
    tests::WriteFile(Song("none.mp3"), tests::Audio());
    tests::WriteFile(Song("one.mp3"), tests::Audio() + tests::Id3v1({.title = "x", .genre = 13}));
    desktop.ExpectBox("There were some 'mistakes'", Answer::Yes);
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"none.mp3", "one.mp3"}));
    EXPECT_NE(Report().find("  " + Song("none.mp3") +
                            "\r\n  Quenlin could not get any information for this file.\r\n\r\n"
                            "  " +
                            Song("one.mp3") +
                            "\r\n  Quenlin could not get the ID3v2 information\r\n\r\n\r\n\r\n"
                            "Directory: "),
              std::string::npos);
    ASSERT_EQ(desktop.boxes.size(), 1u);
    EXPECT_EQ(desktop.boxes[0].text,
              "There were some 'mistakes' while trying to get all the info.\r"
              " Would you like to see the report now?\r\r"
              "A file named \"Quenlin - MP3s' Intregity Report.qrp\"\r"
              "has been saved in this application folder for future reference");
    EXPECT_EQ(desktop.boxes[0].title, "Mistakes");
    EXPECT_EQ(desktop.boxes[0].icon, platform::BoxIcon::Exclamation);
    EXPECT_EQ(desktop.addresses, RowList{catalogue::ReportPath()});
    EXPECT_EQ(desktop.folders, RowList{"C:\\"});
    EXPECT_EQ(LastRegeneration().errors, "") << "an untagged file is no failure";
}

TEST_F(Regeneration, SecondRunOfAFolderDoesNothingAndLeavesTheListsDisabled)
{
    AddSong("a/a.mp3");
    ListRefresh(true);
    EXPECT_EQ(enabled, true);
    AddSong("b.mp3");
    fs::remove(catalogue::ReportPath());
    ListRefresh(true);
    EXPECT_EQ(enabled, false);
    EXPECT_TRUE(progress.Visible()) << "the bar stays as the start of the run left it";
    EXPECT_TRUE(LastRegeneration().skipped);
    EXPECT_EQ(Paths(), (RowList{"a/a.mp3"}));
    EXPECT_FALSE(fs::exists(catalogue::ReportPath()));

    shell::TheGlobals().MP3Directory = Song("a");
    ListRefresh(false);
    shell::TheGlobals().MP3Directory = Music();
    ListRefresh(false);
    EXPECT_EQ(enabled, true);
    EXPECT_EQ(Paths(), (RowList{"a/a.mp3", "b.mp3"})) << "another folder in between reads afresh";
}

TEST_F(Regeneration, VanishedFilesKeepTheirRowsUnlessTheTableIsEmptiedFirst)
{
    AddSong("a.mp3");
    AddSong("b.mp3");
    ListRefresh(false);
    fs::remove(Song("a.mp3"));
    catalogue::Dirs().Clear();
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"a.mp3", "b.mp3"}));
    catalogue::Dirs().Clear();
    shell::TheGlobals().DeleteBeforeAppend = true;
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"b.mp3"}));
}

TEST_F(Regeneration, StopEndsTheRunAtTheNextFile)
{
    for (const char *name : {"a.mp3", "b.mp3", "c.mp3", "d/e.mp3"})
        AddSong(name);
    // Gets an entry in the report, about which a complete run asks.
    tests::WriteFile(Song("a.mp3"), tests::Audio());
    desktop.doEvents = [this] {
        if (bar.Panel("Playing").text == "Adding: b.mp3")
            catalogue::StopRegeneration();
    };
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"a.mp3"}));
    EXPECT_TRUE(LastRegeneration().stopped);
    EXPECT_TRUE(desktop.boxes.empty());
    EXPECT_EQ(enabled, true);
    EXPECT_EQ(Report().find("Directory: "), std::string::npos) << "no closing lines";
    EXPECT_NE(Report().find("a.mp3"), std::string::npos);

    desktop.doEvents = {};
    catalogue::Dirs().Clear();
    desktop.ExpectBox("There were some 'mistakes'", Answer::No);
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"a.mp3", "b.mp3", "c.mp3", "d/e.mp3"}));
}

TEST_F(Regeneration, ACallDuringARunDoesNothing)
{
    AddSong("a.mp3");
    AddSong("b/b.mp3");
    desktop.doEvents = [] {
        if (catalogue::IsRegenerating())
            ListRefresh(false);
    };
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"a.mp3", "b/b.mp3"}));
    EXPECT_FALSE(LastRegeneration().skipped);
}

TEST_F(Regeneration, StopWithoutARunDoesNothing)
{
    AddSong("a.mp3");
    catalogue::StopRegeneration();
    ListRefresh(false);
    EXPECT_EQ(Paths(), (RowList{"a.mp3"}));
}

TEST_F(Regeneration, WorksWithoutAnyControl)
{
    catalogue::TheRegenerationControls() = {};
    AddSong("a.mp3");
    ListRefresh(true);
    EXPECT_EQ(Paths(), (RowList{"a.mp3"}));
}

} // namespace

#include "tests/search/searchfixture.h"

namespace
{

using search::SearchForm;
using Texts = std::vector<std::string>;

class Search : public tests::SearchFormTest
{
};

TEST_F(Search, LoadsItsTexts)
{
    SearchForm &form = Shown();
    EXPECT_EQ(form.options.cmbType.Items(),
              (Texts{"Any Words (OR)", "All Words (AND)", "Exact Phrase"}));
    EXPECT_EQ(form.options.cmbType.ListIndex(), 0);
    EXPECT_EQ(form.options.cmdAll[0].Caption(), "&Uncheck All");
    EXPECT_EQ(form.options.cmdAll[1].Caption(), "&Check All");
    EXPECT_EQ(form.options.cmdSearch.Caption(), "&Search");
    EXPECT_EQ(form.options.lblToFind.Caption(), "Text to find");
    EXPECT_EQ(form.options.lblTypeOfSearch.Caption(), "Type of search");
    Texts captions;
    for (const ui::CheckBox &box : form.options.chkField)
        captions.push_back(box.Caption());
    EXPECT_EQ(captions,
              (Texts{"Title", "Artist", "Album", "Year", "Comment", "Genre", "Path", "Lyrics"}));
    EXPECT_EQ(form.WebItemType.Caption(), "Type the criteria to look for.");
    EXPECT_EQ(form.lblInfo.Caption(), "");
    EXPECT_EQ(Count(form), "0 Item(s)");
    EXPECT_EQ(form.lblFolders.Caption(), "Search");
    EXPECT_EQ(form.lblWebFolder.Caption(), "Search Results");
    EXPECT_EQ(form.PaneWidth, 2790);
    EXPECT_TRUE(form.WebStyleOn);
}

TEST_F(Search, TheLanguageChangesCaptionsAndNotTheStatement)
{
    tests::WriteFile(folder / "x.qlt", "[Search]\nSearch=Suche\nAnyWords=Eines\nItems=Lieder\n"
                                       "[ColumnHeaders]\nTitle=Titel\n");
    shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
    SearchForm &form = WithSongs();
    EXPECT_EQ(form.lblFolders.Caption(), "Suche");
    EXPECT_EQ(form.options.cmbType.Items()[0], "Eines");
    EXPECT_EQ(form.options.chkField[0].Caption(), "Titel");
    form.options.chkField[0].SetChecked(true);
    Run(form, "love");
    EXPECT_EQ(Found(form), "/0:Love me do ");
    EXPECT_EQ(Count(form), "1 Lieder");
}

TEST_F(Search, EveryTextHasItsKey)
{
    std::string keys = "[Search]\n";
    for (const char *key :
         {"AnyWords", "AllWords", "ExactPhrase", "UnCheckAll", "CheckAll", "SearchButton",
          "TextToFind", "TypeOfSearch", "CriteriaToLookFor", "Items", "Search", "SearchResults"})
        keys += std::string(key) + "=x" + key + "\n";
    keys += "[ColumnHeaders]\n";
    for (const std::string_view field : search::kFields)
        keys.append(field).append("=x").append(field).append("\n");
    tests::WriteFile(folder / "x.qlt", keys);
    shell::TheGlobals().LanguageFilePath = folder / "x.qlt";
    const SearchForm &form = Shown();
    EXPECT_EQ(form.options.cmbType.Items(), (Texts{"xAnyWords", "xAllWords", "xExactPhrase"}));
    EXPECT_EQ(form.options.cmdAll[0].Caption(), "xUnCheckAll");
    EXPECT_EQ(form.options.cmdAll[1].Caption(), "xCheckAll");
    EXPECT_EQ(form.options.cmdSearch.Caption(), "xSearchButton");
    EXPECT_EQ(form.options.lblToFind.Caption(), "xTextToFind");
    EXPECT_EQ(form.options.lblTypeOfSearch.Caption(), "xTypeOfSearch");
    EXPECT_EQ(form.WebItemType.Caption(), "xCriteriaToLookFor");
    EXPECT_EQ(Count(form), "0 xItems");
    EXPECT_EQ(form.lblFolders.Caption(), "xSearch");
    EXPECT_EQ(form.lblWebFolder.Caption(), "xSearchResults");
    for (std::size_t i = 0; i < search::kFields.size(); ++i)
        EXPECT_EQ(form.options.chkField[i].Caption(), "x" + std::string(search::kFields[i]));
}

TEST_F(Search, FillsTheListWithFileRowsAndCounts)
{
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    Run(form, "LOVE");
    EXPECT_EQ(Found(form), "/0:Love me do /1:One ");
    EXPECT_EQ(Count(form), "2 Item(s)");
    EXPECT_EQ(form.options.txtToFind.Text(), "LOVE "); // the blank stays in the box
    EXPECT_EQ(form.ListView.Columns().size(), 10u);
    EXPECT_EQ(form.ListView.SubItem(0, "Path"), "/m/1.mp3");
    EXPECT_EQ(desktop.pointers.back(), platform::Pointer::Normal);
    EXPECT_NE(
        std::count(desktop.pointers.begin(), desktop.pointers.end(), platform::Pointer::Hourglass),
        0);
    Run(form, "help"); // all rows and the count are new
    EXPECT_EQ(Found(form), "/0:Help ");
    EXPECT_EQ(Count(form), "1 Item(s)");
}

TEST_F(Search, NothingFoundShowsTheWarning)
{
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    Run(form, "nowhere");
    EXPECT_EQ(Found(form), "/0:No items found. ");
    EXPECT_EQ(Count(form), "0 Item(s)");
}

TEST_F(Search, TheSameRowThroughTwoFieldsShowsOnce)
{
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    Run(form, "help"); // in title and album
    EXPECT_EQ(form.ListView.Count(), 1);
}

// A row shows once for each path, whatever its letter case; the count is that of the records.
TEST_F(Search, TheCountIsThatOfTheRecords)
{
    Add({"Love", "One", "", "", "", "", "/m/1.mp3"});
    Add({"Love", "Two", "", "", "", "", "/M/1.MP3"});
    SearchForm &form = Shown();
    form.options.chkField[0].SetChecked(true);
    Run(form, "love");
    EXPECT_EQ(form.ListView.Count(), 1);
    EXPECT_EQ(Count(form), "2 Item(s)");
}

TEST_F(Search, AllWordsMustBeInOneField)
{
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    Run(form, "love me", search::kAllWords);
    EXPECT_EQ(Found(form), "/0:Love me do ");
    Run(form, "love beatles", search::kAllWords); // one in the title, one in the artist
    EXPECT_EQ(Found(form), "/0:No items found. ");
    Run(form, "love beatles", search::kAnyWords);
    EXPECT_EQ(Found(form), "/0:Love me do /1:One /2:Help ");
}

TEST_F(Search, AnEmptyTextFindsAllRowsAndLeavesAWildcardAndABlank)
{
    SearchForm &form = WithSongs();
    form.options.chkField[0].SetChecked(true);
    for (const int type : {search::kExactPhrase, search::kAllWords, search::kAnyWords}) {
        Run(form, "", type);
        EXPECT_EQ(form.ListView.Count(), 3);
        EXPECT_EQ(form.options.txtToFind.Text(), "% ");
    }
}

TEST_F(Search, WhatTheUserTypesMayBeWildcards)
{
    SearchForm &form = WithSongs();
    form.options.chkField[0].SetChecked(true);
    Run(form, "l_ve%do");
    EXPECT_EQ(Found(form), "/0:Love me do ");
}

TEST_F(Search, ThePhraseHasTheBlankOfTheBoxFromTheSecondSearchOn)
{
    SearchForm &form = WithSongs();
    form.options.chkField[0].SetChecked(true);
    Run(form, "do", search::kExactPhrase);
    EXPECT_EQ(Found(form), "/0:Love me do ");
    form.options.cmdSearch.Click(); // now for "do ", which no title has
    EXPECT_EQ(Found(form), "/0:No items found. ");
}

TEST_F(Search, WithoutAFieldTheBoxAndNoQuery)
{
    SearchForm &form = WithSongs();
    form.options.chkField[0].SetChecked(true);
    Run(form, "love");
    form.options.cmdAll[0].Click();
    Run(form, "help");
    EXPECT_EQ(desktop.boxes, Texts{"You didn't select any field to look into"});
    EXPECT_EQ(Found(form), "/0:Love me do ");
    EXPECT_EQ(form.options.txtToFind.Text(), "help ");
}

TEST_F(Search, CheckAllAndUncheckAll)
{
    SearchForm &form = Shown();
    for (const int index : {1, 0}) {
        form.options.cmdAll[static_cast<std::size_t>(index)].Click();
        for (const ui::CheckBox &box : form.options.chkField)
            EXPECT_EQ(box.Checked(), index == 1);
    }
}

TEST_F(Search, WordsThatLookLikeSyntaxAreData)
{
    SearchForm &form = Shown();
    Add({"What? It's 'so'", "", "", "", "", "", "/m/1.mp3"});
    form.options.chkField[0].SetChecked(true);
    for (const char *text : {"?", "'so'", "It's", "what? it's"}) {
        Run(form, text, 1);
        EXPECT_EQ(Found(form), "/0:What? It's 'so' ") << text;
    }
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Search, ARefusedStatementIsReported)
{
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    std::string words;
    for (int i = 0; i < 3000; ++i)
        words += "word ";
    Run(form, words);
    ASSERT_EQ(desktop.boxes.size(), 1u); // more terms than the engine takes
    EXPECT_TRUE(desktop.boxes[0].starts_with("Error: "));
    Run(form, "love");
    EXPECT_EQ(form.ListView.Count(), 2);
}

TEST_F(Search, ClosingTheWindowEndsTheFillQuietly)
{
    for (int i = 0; i < 120; ++i)
        Add({"t" + std::to_string(i), "", "", "", "", "", "/m/" + std::to_string(i) + ".mp3"});
    SearchForm &form = Shown();
    form.options.chkField[0].SetChecked(true);
    desktop.onYield = [&] {
        if (form.ListView.Count() >= 50)
            form.SetVisible(false);
    };
    Run(form, "t");
    EXPECT_EQ(form.ListView.Count(), 50);
    EXPECT_EQ(Count(form), "0 Item(s)"); // a closed window is not touched
    EXPECT_EQ(desktop.pointers.back(), platform::Pointer::Normal);
    EXPECT_EQ(Form().searchList, nullptr);
}

TEST_F(Search, ASecondSearchDuringTheFillEndsTheFirst)
{
    for (int i = 0; i < 120; ++i)
        Add({"t" + std::to_string(i), "", "", "", "", "", "/m/" + std::to_string(i) + ".mp3"});
    Add({"other", "", "", "", "", "", "/m/other.mp3"});
    SearchForm &form = Shown();
    form.options.chkField[0].SetChecked(true);
    bool second = false;
    desktop.onYield = [&] {
        if (form.ListView.Count() >= 50 && !std::exchange(second, true))
            Run(form, "other");
    };
    Run(form, "t");
    EXPECT_TRUE(second);
    EXPECT_EQ(Found(form), "/0:other ");
    EXPECT_EQ(Count(form), "1 Item(s)");
}

TEST_F(Search, TextsAreReadAheadWhileTheWindowShows)
{
    SearchForm &form = WithSongs();
    const auto readAll = [&form] {
        for (int ticks = 0; form.tmrReadAhead.Enabled(); ++ticks) {
            ASSERT_LT(ticks, 1000);
            form.tmrReadAhead.Fire();
        }
    };
    EXPECT_TRUE(form.tmrReadAhead.Enabled());
    readAll();
    form.options.cmdAll[1].Click();
    Run(form, "love");
    EXPECT_EQ(Found(form), "/0:Love me do /1:One ");
    EXPECT_TRUE(form.tmrReadAhead.Enabled()); // looks whether there is anything new
    readAll();
    Add({"Lovely", "", "", "", "", "", "/m/4.mp3"});
    Run(form, "love");
    EXPECT_EQ(Found(form), "/0:Love me do /1:One /2:Lovely ");
    form.SetVisible(false);
    form.tmrReadAhead.Fire();
    EXPECT_FALSE(form.tmrReadAhead.Enabled()); // not for a hidden window
    search::PrepareSearch(form);
    catalogue::DataAccess.reset();
    form.tmrReadAhead.Fire();
    EXPECT_FALSE(form.tmrReadAhead.Enabled());
}

TEST_F(Search, TheEndOfTheProgramEndsTheSearch)
{
    SearchForm &form = WithSongs();
    form.options.cmdAll[1].Click();
    desktop.onYield = [] { catalogue::DataAccess.reset(); };
    Run(form, "love");
    EXPECT_EQ(Count(form), "0 Item(s)");
    Run(form, "love"); // and there is nothing to search any more
    EXPECT_EQ(Count(form), "0 Item(s)");
}

} // namespace

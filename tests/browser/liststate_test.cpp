#include "browser/commands.h"
#include "browser/liststate.h"
#include "catalogue/regeneration.h"
#include "catalogue/regeneration/walker.h"
#include "shell/settings.h"
#include "tests/browser/formfixture.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace
{

using namespace browser;

class ListState : public tests::FormTest
{
protected:
    ListState()
    {
        for (const char *name : {"one.mp3", "sub/two.mp3"})
            tests::WriteFile(folder / "music" + ("/" + std::string(name)),
                             tests::Id3v2(tests::TextFrame("TIT2", name)) + tests::Audio() +
                                 tests::Id3v1({.title = name}));
        tests::WriteFile(folder / "music/untagged.mp3", tests::Audio());
        shell::TheGlobals().MP3Directory = folder / "music";
        catalogue::Dirs().Clear();
    }
    ~ListState() override { catalogue::Dirs().Clear(); }
};

TEST_F(ListState, ANewcomerIsLedToThePreferences)
{
    int opened = 0;
    RegisterCommand("submnuPreferences", [&opened] { opened++; });
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    EXPECT_EQ(form.LV.Hint(), "Quenlin does not know yet where your music is.");
    EXPECT_EQ(form.LV.HintButton(), "Choose the music &folder...");
    form.LV.onHintClick();
    EXPECT_EQ(opened, 1);
    shell::SavePreference("MP3 Directory", folder / "music");
    LoadTreeView(form, "");
    EXPECT_EQ(form.LV.Hint(), "The catalogue is empty. Choose Tools, Regenerate Database to fill "
                              "it from your music folder.");
    EXPECT_EQ(form.LV.HintButton(), "");
}

TEST_F(ListState, ReadingDoneThenChooseAGroup)
{
    MainForm &form = Loaded();
    LoadTreeView(form, "");
    std::vector<std::string> hints;
    desktop.onYield = [&] {
        if (hints.empty() || hints.back() != form.LV.Hint())
            hints.push_back(form.LV.Hint());
    };
    RegenerateAndLoad(form, true);
    for (const char *hint :
         {"Reading your music...", "Reading your music: 0 of 3", "Reading your music: 2 of 3"})
        EXPECT_NE(std::ranges::find(hints, hint), hints.end()) << hint;
    EXPECT_EQ(form.LV.Hint(),
              "Done: 3 songs, 1 entries in the report.\r\rChoose a group on the left.");
    LoadTreeView(form, "");
    EXPECT_EQ(form.LV.Hint(), "Choose a group on the left.");
}

TEST_F(ListState, ARunAskedForTwiceDoesNothingAndLeavesALivingWindow)
{
    MainForm &form = Loaded();
    RegenerateAndLoad(form, true);
    form.SB.SetText("Playing", "");
    catalogue::ListRefresh(true);
    // A run that does nothing leaves them disabled.
    EXPECT_FALSE(form.TV.Enabled() || form.LV.Enabled());
    EXPECT_TRUE(form.PBar.Visible());
    RegenerateAndLoad(form, true);
    EXPECT_TRUE(form.TV.Enabled() && form.LV.Enabled());
    EXPECT_FALSE(form.PBar.Visible());
    EXPECT_EQ(form.SB.Panel("Playing").text, "This folder has been done in this run.");
    EXPECT_EQ(form.LV.Hint(), "This folder has been read since the program was started: 3 songs, "
                              "1 entries in the report.\r\rChoose a group on the left.");
    form.SB.SetText("Playing", "");
    LoadTreeView(form, ""); // shown once
    EXPECT_EQ(form.SB.Panel("Playing").text, "");
}

TEST_F(ListState, TheTreeStaysDisabledWhileARunIsUnderWay)
{
    MainForm &form = Loaded();
    bool enabled = true;
    bool loaded = false; // loading runs events too
    desktop.onYield = [&] {
        if (!catalogue::IsRegenerating() || loaded)
            return;
        loaded = true;
        LoadTreeView(form, "");
        enabled = form.TV.Enabled() || form.LV.Enabled();
    };
    RegenerateAndLoad(form, true);
    EXPECT_FALSE(enabled);
    EXPECT_TRUE(form.TV.Enabled() && form.LV.Enabled());
}

TEST_F(ListState, ADamagedCatalogueIsNotAnEmptyOne)
{
    MainForm &form = Loaded();
    Add({"One", "A", "B", "1999", "", "Pop", "/one.mp3"});
    LoadTreeView(form, "");
    EXPECT_EQ(form.LV.Hint(), "Choose a group on the left.");
    catalogue::DataAccess.reset();
    catalogue::CloseCatalogue();
    std::filesystem::remove(folder / "app/MP3s.mdb");
    OpenCatalogue();
    LoadTreeView(form, "");
    EXPECT_TRUE(form.LV.Hint().starts_with("The catalogue cannot be read: ")) << form.LV.Hint();
    EXPECT_GT(form.LV.Hint().size(), std::string("The catalogue cannot be read: ").size());
}

} // namespace

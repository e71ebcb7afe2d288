#include "tests/playlists/listsfixture.h"
#include "tests/support/scripteddesktop.h"

#include <filesystem>

namespace
{

using browser::MainForm;
using Texts = std::vector<std::string>;

class AddedLists : public tests::ListsTest
{
};

// --- Adding.

TEST_F(AddedLists, AddingStoresNameAndPathAndAddsTheNode)
{
    tests::ScriptedDesktop user;
    MainForm &form = WithTree();
    user.ExpectOpen("Select the PlayList file", list);
    user.ExpectInput("Type the name for this PlayList", "Mine & \"yours\" 100%");
    playlists::AddPlayList(form);
    EXPECT_EQ(Stored(), "Mine & \"yours\" 100%=" + list + " ");
    EXPECT_EQ(Keys("ByList"), "&Mine & \"yours\" 100% ");
    const ui::NodeId node = form.TV.Find("&Mine & \"yours\" 100%");
    EXPECT_EQ(form.TV.Text(node), "Mine & \"yours\" 100%");
    EXPECT_EQ(form.TV.Image(node), "M3U");
    EXPECT_EQ(form.TV.SelectedImage(node), "");
}

TEST_F(AddedLists, TheBoxesHaveTheirTexts)
{
    struct Asking : tests::ScriptedDesktop {
        std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                            std::string_view initialText) override
        {
            asked = std::string(prompt) + "|" + std::string(title) + "|" + std::string(initialText);
            return "x";
        }
        std::optional<std::string> OpenDialog(std::string_view title,
                                              const std::vector<platform::FileFilter> &filters,
                                              const std::string &from) override
        {
            opened = std::string(title) + "|" + filters.at(0).caption + "|" +
                     filters.at(0).pattern + "|" + from;
            EXPECT_EQ(filters.size(), 1u);
            return path;
        }
        std::string asked, opened, path;
    } user;
    MainForm &form = WithTree();
    const struct {
        std::string path, suggested;
    } cases[] = {{list, "Best of"},       {"/a/x.M3U", "x"},           {"/a/long.m3u8", "long."},
                 {"/a/b.m3u/abc", ""},    {"/a/Gr\u00F6\u00DFe", "G"}, // four characters, not bytes
                 {"/a/\u00E9\u00E9", ""}, {"/a/abcd.m3u", "abcd"}};
    for (const auto &c : cases) {
        user.path = c.path;
        playlists::AddPlayList(form);
        EXPECT_EQ(user.asked, "Type the name for this PlayList|PlayList's Name|" + c.suggested);
        ASSERT_TRUE(playlists::RemovePlayList(form, "x"));
    }
    EXPECT_EQ(user.opened,
              "Select the PlayList file|WinAmp PlayList (*.m3u)|*.m3u|" + shell::GetAppPath());
}

TEST_F(AddedLists, CancelInTheFileDialogLeavesNoTrace)
{
    tests::ScriptedDesktop user;
    MainForm &form = WithTree();
    user.ExpectOpen("", std::nullopt);
    playlists::AddPlayList(form);
    user.ExpectOpen("", "");
    playlists::AddPlayList(form);
    EXPECT_EQ(Stored(), "");
    EXPECT_EQ(Keys("ByList"), "");
}

TEST_F(AddedLists, CancelAndAnEmptyNameAskAgain)
{
    tests::ScriptedDesktop user;
    MainForm &form = WithTree();
    user.ExpectOpen("", list);
    user.ExpectInput("", std::nullopt);
    user.ExpectInput("", "");
    user.ExpectInput("", std::nullopt);
    user.ExpectInput("", "name");
    playlists::AddPlayList(form);
    EXPECT_EQ(Keys("ByList"), "&name ");
}

TEST_F(AddedLists, ClosingTheBoxLeavesTheQuestion)
{
    struct Closing : tests::ScriptedDesktop {
        bool InputWasClosed() override { return true; }
    } user;
    MainForm &form = WithTree();
    user.ExpectOpen("", list);
    user.ExpectInput("", std::nullopt);
    playlists::AddPlayList(form);
    EXPECT_EQ(Stored(), "");
}

TEST_F(AddedLists, TheEndOfTheProgramLeavesTheQuestion)
{
    struct Ending : tests::ScriptedDesktop {
        std::optional<std::string> InputBox(std::string_view, std::string_view,
                                            std::string_view) override
        {
            ++asked;
            whileUp();
            return answer;
        }
        int asked = 0;
        std::optional<std::string> answer;
        std::function<void()> whileUp;
    } user;
    MainForm &form = WithTree();
    for (const std::optional<std::string> &answer : {std::optional<std::string>(), {"name"}}) {
        user.answer = answer;
        user.asked = 0;
        user.whileUp = [] { platform::RequestEnd(15); };
        user.ExpectOpen("", list);
        playlists::AddPlayList(form);
        EXPECT_EQ(user.asked, 1);
        EXPECT_EQ(Stored(), "");
        platform::RequestEnd(0);
        user.whileUp = [] { catalogue::DataAccess.reset(); };
        user.ExpectOpen("", list);
        playlists::AddPlayList(form);
        EXPECT_EQ(user.asked, 2);
        OpenCatalogue();
        EXPECT_EQ(Stored(), "");
    }
    EXPECT_EQ(Keys("ByList"), "");
}

TEST_F(AddedLists, ATakenNameIsReportedAndAskedAgainBeforeTheStatement)
{
    tests::ScriptedDesktop user;
    Store("mine", "/first.m3u");
    MainForm &form = WithTree();
    user.ExpectOpen("", list);
    user.ExpectInput("", "mine");
    user.ExpectBox("There is a playlist of this name already.");
    user.ExpectInput("", "Mine"); // letter case counts, as in the keys of the tree
    playlists::AddPlayList(form);
    EXPECT_EQ(Keys("ByList"), "&mine &Mine ");
    EXPECT_EQ(Text("&Mine"), "Mine");
}

TEST_F(AddedLists, ARefusedStatementIsReportedAndAddsNoNode)
{
    tests::ScriptedDesktop user;
    MainForm &form = WithTree();
    std::filesystem::rename(folder / "app/MP3s.mdb", folder / "gone.mdb");
    catalogue::CloseCatalogue();
    user.ExpectOpen("", list);
    user.ExpectInput("", "mine");
    user.ExpectBox("Not ValidDataBase");
    playlists::AddPlayList(form);
    EXPECT_EQ(Keys("ByList"), "");
    user.ExpectBox("Not ValidDataBase");
    EXPECT_FALSE(playlists::RemovePlayList(form, "mine"));
}

TEST_F(AddedLists, WithoutTheGroupTheListIsStoredAllTheSame)
{
    tests::ScriptedDesktop user;
    shell::TheGlobals().LoadField[6] = false;
    MainForm &form = WithTree();
    user.ExpectOpen("", list);
    user.ExpectInput("", "mine");
    playlists::AddPlayList(form);
    EXPECT_EQ(Stored(), "mine=" + list + " ");
    EXPECT_EQ(form.TV.Find("&mine"), ui::kNoNode);
}

// --- Removing.

TEST_F(AddedLists, RemovingTakesRowAndNodeAndLeavesTheFile)
{
    Store("a & b", list);
    Store("other", list);
    MainForm &form = WithTree();
    EXPECT_EQ(playlists::PlayListNames(), (Texts{"a & b", "other"}));
    EXPECT_TRUE(playlists::RemovePlayList(form, "a & b"));
    EXPECT_EQ(Stored(), "other=" + list + " ");
    EXPECT_EQ(Keys("ByList"), "&other ");
    EXPECT_TRUE(std::filesystem::exists(list));
    EXPECT_TRUE(playlists::RemovePlayList(form, "no such list")); // nothing to remove is no failure
    EXPECT_EQ(playlists::PlayListNames(), Texts{"other"});
}

TEST_F(AddedLists, NamesAreNeverPartOfTheStatement)
{
    tests::ScriptedDesktop user;
    MainForm &form = WithTree();
    for (const std::string name :
         {"?", "a?b'c", "'; DELETE FROM Lists; --", "a''b'c", "%", "_", "\xC2\xB9"}) {
        user.ExpectOpen("", folder / "what?.m3u");
        user.ExpectInput("", name);
        playlists::AddPlayList(form);
        EXPECT_EQ(playlists::PlayListNames(), Texts{name});
        EXPECT_EQ(Stored(), name + "=" + (folder / "what?.m3u") + " ");
        EXPECT_NE(form.TV.Find("&" + name), ui::kNoNode);
        EXPECT_TRUE(playlists::RemovePlayList(form, name));
        EXPECT_EQ(form.TV.Find("&" + name), ui::kNoNode);
    }
}

} // namespace

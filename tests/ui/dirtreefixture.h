// tests/ui/dirtreefixture.h - a folder tree over real folders of the test, with drives of the test
// and disks that do not answer.
#pragma once

#include "platform/machine.h"
#include "platform/posix/disk/systemfolders.h"
#include "runtime/text.h"
#include "tests/support/fakeports.h"
#include "tests/support/scripteddesktop.h"
#include "tests/support/slowfolders.h"
#include "tests/support/testfolder.h"
#include "ui/cDirTree.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <set>

namespace tests
{

using Texts = std::vector<std::string>;

// The real folders of the test, with its own desktop folder, and disks that do not answer.
class TestFolders : public SlowFolders
{
public:
    explicit TestFolders(std::string desktopFolder)
        : desktop(std::move(desktopFolder)), m_before(CurrentFolder())
    {
    }
    ~TestFolders() override { SetCurrentFolder(m_before); }
    TestFolders(const TestFolders &) = delete;
    TestFolders &operator=(const TestFolders &) = delete;

    platform::FolderContents List(const std::string &path, const std::vector<std::string> &leaveOut,
                                  const KeepWaiting &keepWaiting) override
    {
        listed.push_back(path);
        return SlowFolders::List(path, leaveOut, keepWaiting);
    }
    platform::FolderAnswer Probe(const std::string &path, const std::vector<std::string> &leaveOut,
                                 const KeepWaiting &keepWaiting, std::string &firstFolder) override
    {
        looked.push_back(path);
        return SlowFolders::Probe(path, leaveOut, keepWaiting, firstFolder);
    }
    std::string UserFolder(std::string_view purpose) override
    {
        return purpose == "DESKTOP" ? desktop : "";
    }
    std::vector<std::string> UserFolderPurposes() override { return {"DESKTOP", "MUSIC"}; }

    std::string desktop;
    Texts listed, looked;

private:
    std::string m_before;
};

class DirTree : public testing::Test
{
protected:
    DirTree()
    {
        drives.roots = {root};
        drives.label = "MY DISC";
        dirTree.SetTV(TV);
        dirTree.SetParent({&LV, &lblPath, {}});
        dirTree.ChangePath = [this] { events.push_back("ChangePath " + dirTree.SelectedNode()); };
        dirTree.NodeSelected = [this](ui::NodeId node) {
            events.push_back("NodeSelected " + std::string(TV.Key(node)));
        };
    }

    void Make(const std::string &name) const { std::filesystem::create_directories(folder / name); }
    void GoTo(const std::string &path) { ASSERT_TRUE(folders.SetCurrentFolder(path)); }
    void Load()
    {
        dirTree.LoadTV();
        events.clear();
        folders.listed.clear();
    }
    ui::NodeId Node(const std::string &path) const { return dirTree.FindPath(path); }
    Texts Children(ui::NodeId node) const
    {
        Texts texts;
        for (const ui::NodeId child : TV.Children(node))
            texts.emplace_back(TV.Text(child));
        return texts;
    }
    std::string Key(const std::string &path) const { return runtime::UpperText(path); }

    TestFolder folder;
    std::string root = folder / "disk";
    FakeClock clock;
    FakeDrives drives;
    ScriptedDesktop desktop;
    TestFolders folders{folder / "Desk"};
    ui::KeyedTree TV;
    ui::KeyedList LV;
    ui::Label lblPath{"before"};
    ui::cDirTree dirTree;
    Texts events;
};

} // namespace tests

// tests/ui/dirtreefixture.h - a folder tree over real folders of the test, with drives of the test
// and disks that do not answer.
#pragma once

#include "platform/machine.h"
#include "platform/posix/systemfolders.h"
#include "runtime/text.h"
#include "tests/support/fakeports.h"
#include "tests/support/scripteddesktop.h"
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
class TestFolders : public platform::Folders
{
public:
    explicit TestFolders(std::string desktopFolder) : desktop(std::move(desktopFolder))
    {
        platform::TheMachine().folders = this;
        m_before = m_real.CurrentFolder();
    }
    ~TestFolders() override
    {
        m_real.SetCurrentFolder(m_before);
        platform::TheMachine().folders = nullptr;
    }
    TestFolders(const TestFolders &) = delete;
    TestFolders &operator=(const TestFolders &) = delete;

    platform::FolderContents List(const std::string &path, const std::vector<std::string> &leaveOut,
                                  const KeepWaiting &keepWaiting) override
    {
        listed.push_back(path);
        if (!silent.contains(path))
            return m_real.List(path, leaveOut, keepWaiting);
        WaitInVain(keepWaiting);
        return {};
    }
    platform::FolderAnswer Look(const std::string &path, const std::vector<std::string> &leaveOut,
                                const KeepWaiting &keepWaiting, std::string &firstFolder) override
    {
        looked.push_back(path);
        if (!silent.contains(path))
            return m_real.Look(path, leaveOut, keepWaiting, firstFolder);
        WaitInVain(keepWaiting);
        return platform::FolderAnswer::NoAnswer;
    }
    std::string UserFolder(std::string_view purpose) override
    {
        return purpose == "DESKTOP" ? desktop : "";
    }
    std::vector<std::string> UserFolderPurposes() override { return {"DESKTOP", "MUSIC"}; }
    std::string CurrentFolder() override { return m_real.CurrentFolder(); }
    bool SetCurrentFolder(const std::string &path) override
    {
        return m_real.SetCurrentFolder(path);
    }
    int MakeFolder(const std::string &path) override { return m_real.MakeFolder(path); }

    std::string desktop;
    std::set<std::string> silent; // their disks never answer
    Texts listed, looked;

private:
    static void WaitInVain(const KeepWaiting &keepWaiting)
    {
        while (keepWaiting())
            platform::TheMachine().clock->Sleep(20);
    }

    platform::posix::SystemFolders m_real;
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

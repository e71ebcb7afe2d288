// tests/shell/preferencesfixture.h - the preferences without their window, over a main form, a
// fresh catalogue and real folders with songs.
#pragma once

#include "catalogue/regeneration.h"
#include "catalogue/regeneration/walker.h"
#include "platform/disk/folders.h"
#include "runtime/error.h"
#include "runtime/text.h"
#include "shell/language.h"
#include "shell/preferences/preferences.h"
#include "shell/settings.h"
#include "tests/browser/formfixture.h"
#include "tests/support/mp3bytes.h"
#include "tests/support/slowfolders.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

namespace tests
{

using Texts = std::vector<std::string>;

// The real folders, with user folders of the test and disks that do not answer.
class UserFolders : public SlowFolders
{
public:
    UserFolders() : m_before(CurrentFolder()) {}
    ~UserFolders() override { SystemFolders::SetCurrentFolder(m_before); }
    UserFolders(const UserFolders &) = delete;
    UserFolders &operator=(const UserFolders &) = delete;

    std::string UserFolder(std::string_view purpose) override
    {
        return purpose == "MUSIC" ? music : std::string();
    }

    std::string music;

private:
    std::string m_before;
};

// Settings that note what is stored, in its order.
class NotedSettings : public MemorySettings
{
public:
    void Write(std::string_view title, std::string_view section, std::string_view key,
               std::string_view text) override
    {
        if (section == shell::kPreferences)
            writes.push_back(std::string(key) + "=" + std::string(text));
        if (key == failing)
            throw runtime::RuntimeError(runtime::kPathFileAccess);
        MemorySettings::Write(title, section, key, text);
    }
    Texts writes;
    std::string failing;
};

class PreferencesTest : public FormTest
{
protected:
    PreferencesTest()
    {
        drives.roots = {folder.Path()};
        folders.music = folder / "music";
        AddSong("music/one.mp3", "One");
        AddSong("music/abba/two.mp3", "Two");
        AddSong("other/three.mp3", "Three");
        catalogue::Dirs().Clear();
        Loaded();
        Form().TV.SetEnabled(true);
    }
    ~PreferencesTest() override { catalogue::Dirs().Clear(); }

    void AddSong(const std::string &path, std::string_view title) const
    {
        WriteFile(folder / path,
                  Id3v2(TextFrame("TIT2", title)) + Audio() + Id3v1({.title = title}));
    }

    // As the start does: the stored folder is the global.
    void Store(const std::string &path)
    {
        shell::SavePreference("MP3 Directory", path);
        shell::TheGlobals().MP3Directory = path;
        settings.writes.clear();
    }

    shell::PreferencesForm &Open()
    {
        pref.unload = [this] { unloads++; };
        ui::LoadForm(pref, [](const ui::Caption &row) {
            return shell::GetLanguageText(row.text, row.key, row.section);
        });
        return pref;
    }

    void ClickFolder(const std::string &path)
    {
        const ui::NodeId node = pref.dirTree->FindPath(path);
        ASSERT_NE(node, ui::kNoNode) << path;
        pref.tvwDirTree.ClickText(node);
    }

    std::string Stored() const { return shell::GetSetting(shell::kPreferences, "MP3 Directory"); }
    int Runs() const { return static_cast<int>(catalogue::LastRegeneration().number); }

    Texts ListRows() const
    {
        Texts rows;
        for (ui::RowId row = 0; row < pref.LV.Count(); row++)
            rows.emplace_back(pref.LV.Text(row));
        return rows;
    }

    NotedSettings settings;
    UserFolders folders;
    shell::PreferencesForm pref;
    int unloads = 0;
};

} // namespace tests

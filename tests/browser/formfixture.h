// tests/browser/formfixture.h - the main form on a fresh catalogue, with ports that a test can look
// at.
#pragma once

#include "browser/fieldtree.h"
#include "browser/itemlist.h"
#include "browser/mainform.h"
#include "browser/webpanel.h"
#include "catalogue/adoclass.h"
#include "catalogue/rowgroups.h"
#include "platform/machine.h"
#include "runtime/text.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "tests/support/fakeports.h"
#include "tests/support/memorysettings.h"
#include "tests/support/silentdesktop.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace tests
{

class FakeDesktop : public SilentDesktop
{
public:
    FakeDesktop() : m_before(platform::TheMachine().desktop)
    {
        platform::TheMachine().desktop = this;
    }
    ~FakeDesktop() override { platform::TheMachine().desktop = m_before; }
    FakeDesktop(const FakeDesktop &) = delete;
    FakeDesktop &operator=(const FakeDesktop &) = delete;

    platform::Answer MessageBox(std::string_view text, platform::Buttons buttons,
                                std::string_view /*title*/, platform::BoxIcon /*icon*/) override
    {
        boxes.emplace_back(text);
        return buttons == platform::Buttons::YesNo ? platform::Answer::No : platform::Answer::Ok;
    }
    std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                        std::string_view initialText) override
    {
        inputs.push_back(
            std::string(prompt).append("|").append(title).append("|").append(initialText));
        return input;
    }
    void SetClipboardText(std::string_view text) override { clipboard = text; }
    bool OpenAddress(const std::string &address, const std::string &) override
    {
        opened.push_back(address);
        return canOpen;
    }
    void SetPointer(platform::Pointer pointer) override { pointers.push_back(pointer); }
    void DoEvents() override
    {
        ++yields;
        if (onYield)
            onYield();
    }

    std::vector<std::string> boxes, opened;
    std::vector<std::string> inputs;  // "prompt|title|first text" of each input box
    std::optional<std::string> input; // what the user answers to all of them
    std::string clipboard;
    std::vector<platform::Pointer> pointers;
    bool canOpen = true;
    int yields = 0;
    std::function<void()> onYield;

private:
    platform::Desktop *m_before;
};

// One row of the catalogue, as far as the browser shows it.
struct Song {
    std::string title, artist, album, year, comment, genre, path;
};

class FormTest : public testing::Test
{
protected:
    FormTest()
    {
        std::filesystem::copy_file(QUENLIN_SHIPPED_CATALOGUE, folder / "MP3s.mdb");
        shell::SetAppPath(folder.Path());
        shell::TheGlobals() = shell::Globals{};
        OpenCatalogue();
        browser::ResetMainForm();
    }
    ~FormTest() override
    {
        browser::ResetMainForm();
        catalogue::DataAccess.reset();
        catalogue::CloseCatalogue();
        shell::TheGlobals() = shell::Globals{};
    }

    void OpenCatalogue()
    {
        catalogue::DataAccess = std::make_unique<catalogue::ADOclass>();
        catalogue::DataAccess->TipoLectura = 1;
        catalogue::DataAccess->DirBase = folder.Path() + "/";
        catalogue::DataAccess->DataBaseName = "MP3s";
        catalogue::DataAccess->TableName = "MP3s";
    }

    browser::MainForm &Form() { return browser::frmMain(); }

    // Loads the form; labels are 200 twips a line, 100 a character.
    browser::MainForm &Loaded()
    {
        browser::MainForm &form = Form();
        const auto lines = [](const ui::Label &label) {
            std::string caption = label.Caption();
            while (!caption.empty() && (caption.back() == '\r' || caption.back() == '\n'))
                caption.pop_back();
            return 200 * static_cast<int>(1 + std::count(caption.begin(), caption.end(), '\r'));
        };
        for (ui::Label *label : {&form.lblWebFolder, &form.WebItemName, &form.lblInfo})
            label->measureHeight = lines;
        FillCalls(form.calls);
        browser::LoadMainForm(form);
        return form;
    }

    // Sets functions that do nothing for all that the test has not set.
    static void FillCalls(browser::MainFormCalls &calls)
    {
        const auto fill = [](auto &call, auto harmless) {
            if (!call)
                call = harmless;
        };
        fill(calls.textWidth,
             [](std::string_view text) { return 100 * static_cast<int>(text.size()); });
        fill(calls.placed, [] {});
        fill(calls.bringIntoView, [](const ui::Rect &stored) { return stored; });
        fill(calls.showWindow, [] {});
        fill(calls.showPopup, [](int, int) {});
        fill(calls.cursor, [] { return ui::Rect{}; });
        fill(calls.popupHeights, [] { return std::vector<int>{}; });
        fill(calls.raisePanel, [] {});
        fill(calls.unloadForms, [] {});
        fill(calls.endProgram, [] {});
    }

    // Registers commands that do nothing, as the areas that have them would.
    void RegisterIdle(std::initializer_list<const char *> names)
    {
        for (const char *name : names)
            browser::RegisterCommand(name, [] {});
        browser::UpdateCommands(Form());
    }
    void RegisterFileCommands()
    {
        RegisterIdle({"submnuFileInfo", "submnuDuplicateEntry", "submnuExport", "submnuRename"});
    }

    void Add(const Song &song)
    {
        const std::vector<catalogue::Value> values = {song.title,    song.artist,  song.album,
                                                      song.year,     song.comment, song.genre,
                                                      std::string(), song.path,    std::int64_t{0}};
        catalogue::DataAccess->ExecuteSQL("AddMP3", catalogue::kStoredInsert, values);
        ASSERT_TRUE(catalogue::DataAccess->Succeeded) << catalogue::DataAccess->ErrorMessage;
    }

    void AddPlayList(const std::string &name)
    {
        const std::vector<catalogue::Value> values = {name, std::string("/l.m3u")};
        catalogue::DataAccess->ExecuteSQL("INSERT INTO Lists VALUES(?, ?)", catalogue::kInsert,
                                          values);
        ASSERT_TRUE(catalogue::DataAccess->Succeeded) << catalogue::DataAccess->ErrorMessage;
    }

    // The keys of a node's children, each followed by a blank.
    std::string Keys(std::string_view parent)
    {
        std::string keys;
        for (const ui::NodeId child : Form().TV.Children(Form().TV.Find(parent)))
            keys.append(Form().TV.Key(child)).append(" ");
        return keys;
    }

    std::string Text(std::string_view key)
    {
        return std::string(Form().TV.Text(Form().TV.Find(key)));
    }

    void Click(std::string_view key)
    {
        const ui::NodeId node = Form().TV.Find(key);
        ASSERT_NE(node, ui::kNoNode) << key;
        Form().TV.ClickText(node);
    }

    // The rows as a text: key, colon, first sub-item, and a blank after each.
    std::string Rows()
    {
        std::string rows;
        const ui::KeyedList &list = Form().LV;
        for (int i = 0; i < list.Count(); ++i)
            rows.append(list.Key(list.RowAt(i)))
                .append(":")
                .append(list.SubItemAt(list.RowAt(i), 1))
                .append(" ");
        return rows;
    }

    std::string Setting(const std::string &section, const std::string &key)
    {
        const auto found = settings.values.find("Quenlin/" + section + "/" + key);
        return found == settings.values.end() ? "none" : found->second;
    }

    TestFolder folder;
    MemorySettings settings;
    FakeDesktop desktop;
    FakeClock clock;
    FakeDrives drives;
};

} // namespace tests

// tests/browser/formfixture.h - the main form on a fresh catalogue, with ports that a test can look
// at.
#pragma once

#include "browser/fieldtree.h"
#include "browser/form/commandstate.h"
#include "browser/form/formclose.h"
#include "browser/form/formcommands.h"
#include "browser/form/formlayout.h"
#include "browser/form/formload.h"
#include "browser/form/formpopup.h"
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
#include "tests/support/libraryfixture.h"
#include "tests/support/memorysettings.h"
#include "tests/support/recordingdesktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace tests
{

// One row of the catalogue, as far as the browser shows it.
struct ShownSong {
    std::string title, artist, album, year, comment, genre, path;
};

class FormTest : public LibraryFixture
{
protected:
    FormTest()
    {
        shell::TheGlobals() = shell::Globals{}; // no music folder is set
        browser::ResetMainForm();
    }
    ~FormTest() override { browser::ResetMainForm(); }

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
        FillCalls(form);
        browser::LoadMainForm(form);
        return form;
    }

    // Sets functions that do nothing for all that the test has not set.
    static void FillCalls(browser::MainForm &form)
    {
        browser::MainFormCalls &calls = form.calls;
        const auto fill = [](auto &call, auto harmless) {
            if (!call)
                call = harmless;
        };
        fill(calls.textWidth,
             [](std::string_view text) { return 100 * static_cast<int>(text.size()); });
        fill(form.placed, [] {});
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

    void Add(const ShownSong &song)
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
    std::string ShownRows()
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

    MemorySettings settings;
    RecordingDesktop desktop;
    FakeClock clock;
    FakeDrives drives;
};

} // namespace tests

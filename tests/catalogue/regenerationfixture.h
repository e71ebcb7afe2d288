// tests/catalogue/regenerationfixture.h - the controls of a main window, without the window, and
// the songs that a regeneration finds.
#pragma once

#include "catalogue/regeneration.h"
#include "catalogue/regeneration/integrityreport.h"
#include "tests/support/libraryfixture.h"
#include "tests/support/mp3bytes.h"

#include <gtest/gtest.h>

#include <optional>

namespace tests
{

using RowList = std::vector<std::string>;

// An MP3 with both tags.
inline std::string Tagged(std::string_view title)
{
    return Id3v2(TextFrame("TIT2", title) + TextFrame("TCON", "Pop")) + Audio() +
           Id3v1({.title = title, .genre = 13});
}

struct Regeneration : LibraryFixture {
    ui::StatusBar bar{{{"Playing", "", 0, true}, {"Blank", "", 0, true}}};
    ui::ProgressBar progress;
    std::optional<bool> enabled; // TV and LV, as last set
    int listsEmptied = 0, barsLaid = 0, mails = 0;
    RowList playing, blank; // each text that the panels showed

    Regeneration()
    {
        catalogue::RegenerationControls &controls = catalogue::TheRegenerationControls();
        controls.SB = &bar;
        controls.PBar = &progress;
        controls.EnableTVAndLV = [this](bool on) { enabled = on; };
        controls.EmptyLV = [this] { listsEmptied++; };
        controls.LayPBarOverPanel = [this] { barsLaid++; };
        controls.EmailBugReport = [this] { mails++; };
        bar.changed = [this] {
            Note(playing, bar.Panel("Playing").text);
            Note(blank, bar.Panel("Blank").text);
        };
    }

    static void Note(RowList &texts, const std::string &text)
    {
        if (texts.empty() ? !text.empty() : texts.back() != text)
            texts.push_back(text);
    }

    void AddSong(const std::string &name) { WriteFile(Song(name), Tagged(name)); }

    RowList Paths() const
    {
        RowList paths;
        for (const std::string &row : Rows()) {
            const auto start = row.find("|~/") + 3;
            paths.push_back(row.substr(start, row.find('|', start) - start));
        }
        return paths;
    }

    std::string Report() const { return ReadFile(catalogue::ReportPath()); }
};

} // namespace tests

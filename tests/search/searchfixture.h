// tests/search/searchfixture.h - the form of the search window on a fresh catalogue.
#pragma once

#include "browser/itemlist.h"
#include "search/install.h"
#include "search/searchform.h"
#include "shell/language.h"
#include "tests/browser/formfixture.h"

#include <string>
#include <vector>

namespace tests
{

class SearchFormTest : public FormTest
{
protected:
    SearchFormTest()
    {
        browser::ResetInfoLabelTop();
        Loaded();
    }
    ~SearchFormTest() override { search::ForgetSearch(); }

    search::SearchForm &Shown()
    {
        search::SearchForm &form = search::frmSearch();
        const auto line = [](const ui::Label &) { return 200; };
        for (ui::Label *label : {&form.lblWebFolder, &form.WebItemName, &form.lblInfo})
            label->measureHeight = line;
        ui::LoadForm(form, [](const ui::Caption &row) {
            return shell::GetLanguageText(row.text, row.key, row.section);
        });
        search::ReDrawForm(form);
        form.SetVisible(true);
        return form;
    }

    // Two songs, one with "love" in its title, one in its album; and one without.
    search::SearchForm &WithSongs()
    {
        Add({"Love me do", "Beatles", "Please", "1963", "", "Pop", "/m/1.mp3"});
        Add({"One", "U2", "Love songs", "1991", "", "Rock", "/m/2.mp3"});
        Add({"Help", "Beatles", "Help", "1965", "", "Pop", "/m/3.mp3"});
        return Shown();
    }

    void Run(search::SearchForm &form, const std::string &text, int type = 0)
    {
        form.options.txtToFind.SetText(text);
        form.options.cmbType.SetListIndex(type);
        form.options.cmdSearch.Click();
    }

    // The rows: key and title.
    std::string Found(const search::SearchForm &form)
    {
        std::string rows;
        for (ui::RowId row = 0; row < form.ListView.Count(); ++row)
            rows += std::string(form.ListView.Key(row)) + ":" +
                    std::string(form.ListView.SubItemAt(row, 1)) + " ";
        return rows;
    }

    std::string Count(const search::SearchForm &form) { return form.SBar.Panel("Items").text; }
};

} // namespace tests

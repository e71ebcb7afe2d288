// online/help/helpform.h - the window of the help: the contents or the pages that a search found,
// and one page beside them. It can be used while a modal window is open.
#pragma once

#include "online/help/helpbook.h"
#include "ui/controls/form.h"

namespace online
{

struct HelpForm : ui::Form {
    HelpForm();

    // Shows a page; the contents when no page has this id. cmdBack returns to what was shown
    // before.
    void Open(std::string_view id);

    // Sets the help to show: in another language, or the same again.
    void SetBook(HelpBook newBook);

    ui::Label lblFind;
    ui::TextBox txtFind;
    ui::Button cmdBack, cmdForward, cmdContents;
    ui::KeyedTree tvwPages; // the contents, or the pages found; keys are ids
    ui::Area Page;          // shows ShownHtml()

    HelpBook book;

    // The page as HTML for the toolkit; its links are "#id". A chapter ends with a list of its
    // pages.
    std::string ShownHtml() const;
    // The words of the search, to be marked in the page.
    const std::string &Wanted() const { return txtFind.Text(); }

    ui::ChangeHook pageChanged; // the widget's

private:
    void Go(std::size_t visit);
    void ListPages();
    std::string ListOf(std::size_t from, bool chapters) const;

    std::vector<std::string> m_visited{std::string()}; // ids; an empty one for the contents
    std::size_t m_visit = 0;
    bool m_listsAll = false; // tvwPages lists all pages
};

} // namespace online

// online/helpform.h - the help's window: contents or what a search found, beside the page. It is
// used while a modal window is up as well.
#pragma once

#include "online/helpbook.h"
#include "ui/controls/form.h"

namespace online
{

struct HelpForm : ui::Form {
    HelpForm();

    // Shows a page; the contents for an id that no page has. What was shown before comes back with
    // cmdBack.
    void Open(std::string_view id);

    // Takes a book in another language, or the same one again.
    void SetBook(HelpBook newBook);

    ui::Label lblFind;
    ui::TextBox txtFind;
    ui::Button cmdBack, cmdForward, cmdContents;
    ui::KeyedTree tvwPages; // the contents, or the pages found; keys are ids
    ui::Area Page;          // shows ShownHtml()

    HelpBook book;

    // The page as the toolkit shows it; its links are "#id". Chapters end with a list of their
    // pages.
    std::string ShownHtml() const;
    std::string ShownTitle() const; // empty for the contents
    // What the search wants, to be marked in the page.
    const std::string &Wanted() const { return txtFind.Text(); }

    ui::ChangeHook pageChanged; // the widget's

private:
    void Go(std::size_t visit);
    void ListPages();
    std::string ListOf(std::size_t from, bool chapters) const;

    std::vector<std::string> m_visited{std::string()}; // ids; empty for the contents
    std::size_t m_visit = 0;
    bool m_listsAll = false; // tvwPages has the contents
};

} // namespace online

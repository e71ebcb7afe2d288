// online/help/helpbook.h - the help as a book of pages, one file for each language. No state.
//
// A file is HTML in UTF-8. A line that begins with <h1 id="..."> is the title of a chapter; one
// that begins with <h2 id="..."> is the title of a page in the chapter before it. What follows, up
// to the next title, is the body. Text before the first title and the lines </body> and </html> do
// not belong to any page. The id of a window's page is the name of the window ("frmPref"). The
// title of a page about a question is the question itself.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace online
{

struct HelpPage {
    std::string id;
    int level = 1;     // 1 for a chapter, 2 for a page in it
    std::string title; // plain text, UTF-8
    std::string body;  // HTML
    std::string words; // title and body as plain text, one blank between two words
};

struct HelpBook {
    std::vector<HelpPage> pages; // in the order of the file

    // The page with this id; null when there is none.
    const HelpPage *Find(std::string_view id) const;
};

// The help in the text of a file; it has no pages when there are no titles.
HelpBook ParseHelpBook(std::string_view text);

// The pages that contain all these words, in any order and letter case; first those with all of
// them in the title. No pages when there is no word.
std::vector<const HelpPage *> SearchHelpBook(const HelpBook &book, std::string_view words);

// The page whose title is the beginning of the message; blanks and line ends in a row count as one
// blank. Null when there is none.
const HelpPage *PageOfMessage(const HelpBook &book, std::string_view message);

// The text with one blank between two words and none at the ends.
std::string Squeezed(std::string_view text);

// Plain text as HTML.
std::string EscapedHtml(std::string_view text);

} // namespace online

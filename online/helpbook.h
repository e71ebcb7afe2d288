// online/helpbook.h - the help as a book of pages, one file for each language. No state.
//
// A file is HTML in UTF-8. A line that begins with <h1 id="..."> is the title of a chapter, one
// that begins with <h2 id="..."> that of a page of the chapter before it; what follows, up to the
// next title, is the page. What is before the first title, and the lines </body> and </html>, are
// no part of the book. The id of a window's page is the window's name ("frmPref"). A page about a
// question has the question itself as its title.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace online
{

struct HelpPage {
    std::string id;
    int level = 1;     // 1 a chapter, 2 a page of it
    std::string title; // plain, UTF-8
    std::string body;  // HTML
    std::string words; // title and body as plain text, one blank between words
};

struct HelpBook {
    std::vector<HelpPage> pages; // in the order of the file

    // The page with this id; null when there is none.
    const HelpPage *Find(std::string_view id) const;
};

// The book of a file's text; one without titles has no pages.
HelpBook ParseHelpBook(std::string_view text);

// The pages that hold each of the words, in any order and without regard to letter case; those
// that have them in their title come first. None for words that are blank.
std::vector<const HelpPage *> SearchHelpBook(const HelpBook &book, std::string_view words);

// The page about a message: the one whose title the message begins with, blanks and line ends
// taken as one blank each. Null when there is none.
const HelpPage *PageOfMessage(const HelpBook &book, std::string_view message);

// The words of a text, one blank between them.
std::string Squeezed(std::string_view text);

// Plain text as HTML.
std::string EscapedHtml(std::string_view text);

} // namespace online

#include "online/help/helpbook.h"

#include "runtime/text.h"

#include <algorithm>
#include <utility>

namespace online
{

namespace
{

constexpr std::pair<std::string_view, std::string_view> kEntities[] = {
    {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&nbsp;", "\u00A0"}, {"&amp;", "&"}};

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// HTML without its tags, entities decoded. A tag separates words.
std::string PlainText(std::string_view html)
{
    std::string text;
    bool inTag = false;
    for (const char c : html) {
        if (c == '<') {
            inTag = true;
            text += ' ';
        } else if (c == '>' && inTag) {
            inTag = false;
        } else if (!inTag) {
            text += c;
        }
    }
    for (const auto &[name, character] : kEntities)
        text = runtime::Replace(text, name, character);
    return text;
}

// The text between `begin` and the next `end`; empty when one of them is missing.
std::string_view Between(std::string_view text, std::string_view begin, std::string_view end)
{
    const auto from = text.find(begin);
    if (from == std::string_view::npos)
        return {};
    const auto rest = text.substr(from + begin.size());
    const auto to = rest.find(end);
    return to == std::string_view::npos ? std::string_view{} : rest.substr(0, to);
}

// The page whose title is this line; a page without an id when the line is no title.
HelpPage PageOfLine(std::string_view line)
{
    HelpPage page;
    for (const int level : {1, 2}) {
        const std::string tag = "h" + std::to_string(level);
        if (!line.starts_with("<" + tag + " id=\""))
            continue;
        page.level = level;
        page.id = Between(line, "\"", "\"");
        page.title = Squeezed(PlainText(Between(line, ">", "</" + tag + ">")));
    }
    return page;
}

std::vector<std::string> WordsOf(std::string_view text)
{
    std::vector<std::string> words;
    std::string word;
    for (const char c : runtime::LowerText(text) + " ") {
        if (!IsBlank(c))
            word += c;
        else if (!word.empty())
            words.push_back(std::exchange(word, {}));
    }
    return words;
}

bool HoldsAll(std::string_view text, const std::vector<std::string> &words)
{
    const std::string lower = runtime::LowerText(text);
    return std::ranges::all_of(
        words, [&](const std::string &word) { return lower.find(word) != std::string::npos; });
}

} // namespace

const HelpPage *HelpBook::Find(std::string_view id) const
{
    const auto found = std::ranges::find(pages, id, &HelpPage::id);
    return found == pages.end() ? nullptr : &*found;
}

HelpBook ParseHelpBook(std::string_view text)
{
    HelpBook book;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (HelpPage page = PageOfLine(line); !page.id.empty())
            book.pages.push_back(std::move(page));
        else if (!book.pages.empty() && line != "</body>" && line != "</html>")
            book.pages.back().body.append(line).append("\n");
    }
    for (HelpPage &page : book.pages)
        page.words = Squeezed(page.title + " " + PlainText(page.body));
    return book;
}

std::vector<const HelpPage *> SearchHelpBook(const HelpBook &book, std::string_view words)
{
    const std::vector<std::string> wanted = WordsOf(words);
    std::vector<const HelpPage *> found;
    if (wanted.empty())
        return found;
    for (const HelpPage &page : book.pages)
        if (HoldsAll(page.words, wanted))
            found.push_back(&page);
    // (clang 14 does not compile the form of this in std::ranges.)
    std::stable_partition(found.begin(), found.end(),
                          [&](const HelpPage *page) { return HoldsAll(page->title, wanted); });
    return found;
}

const HelpPage *PageOfMessage(const HelpBook &book, std::string_view message)
{
    const std::string text = Squeezed(message);
    for (const HelpPage &page : book.pages)
        if (page.level == 2 && !text.empty() && text.starts_with(page.title))
            return &page;
    return nullptr;
}

std::string Squeezed(std::string_view text)
{
    std::string squeezed;
    bool blank = false;
    for (const char c : text) {
        if (IsBlank(c)) {
            blank = true;
            continue;
        }
        if (blank && !squeezed.empty())
            squeezed += ' ';
        blank = false;
        squeezed += c;
    }
    return squeezed;
}

std::string EscapedHtml(std::string_view text)
{
    std::string html;
    for (const char c : text) {
        const auto entity =
            std::ranges::find(kEntities, std::string_view(&c, 1),
                              &std::pair<std::string_view, std::string_view>::second);
        if (entity != std::end(kEntities))
            html.append(entity->first);
        else
            html += c;
    }
    return html;
}

} // namespace online

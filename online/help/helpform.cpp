#include "online/help/helpform.h"

#include <utility>

namespace online
{

namespace
{

constexpr std::string_view kSection = "HelpWindow";

constexpr ui::Caption kCaptions[] = {
    {"", kSection, "Help", "Help"},
    {"lblFind", kSection, "Find", "F&ind:"},
    {"cmdBack", kSection, "Back", "&Back"},
    {"cmdForward", kSection, "Forward", "&Forward"},
    {"cmdContents", kSection, "Contents", "&Contents"},
    {"tvwPages", kSection, "Pages", "Pages", ui::Caption::Of::SpokenName},
    {"Page", kSection, "Page", "Page", ui::Caption::Of::SpokenName},
};

constexpr int kWidth = 10800, kHeight = 7500; // twips, the least size
constexpr int kLeftKey = 37, kRightKey = 39;  // of ui::Key

std::string Link(const HelpPage &page)
{
    return "<a href=\"#" + page.id + "\">" + EscapedHtml(page.title) + "</a>";
}

} // namespace

HelpForm::HelpForm() : Form("frmHelp", kCaptions)
{
    Add("lblFind", lblFind);
    Add("txtFind", txtFind, {.label = &lblFind});
    Add("cmdBack", cmdBack);
    Add("cmdForward", cmdForward);
    Add("cmdContents", cmdContents);
    Add("tvwPages", tvwPages);
    Add("Page", Page);
    size = {0, 0, kWidth, kHeight};
    resizable = true;
    remembersPlace = opensBeside = true;
    overModal = true;
    layout = ui::Column({ui::Row({lblFind, ui::Filled(txtFind), cmdBack, cmdForward, cmdContents}),
                         ui::Filled(ui::Row({tvwPages, ui::Filled(Page)}))});

    txtFind.textChanged = [this] {
        ListPages();
        ui::Notify(pageChanged);
    };
    txtFind.keyPressed = [this](char32_t key) {
        if (key != ui::kEnterKey)
            return false;
        if (const auto found = SearchHelpBook(book, Wanted()); !found.empty())
            Open(found.front()->id);
        return true;
    };
    tvwPages.onNodeClick = [this](ui::NodeId node) { Open(std::string(tvwPages.Key(node))); };
    cmdBack.onClick = [this] { Go(m_visit - 1); };
    cmdForward.onClick = [this] { Go(m_visit + 1); };
    cmdContents.onClick = [this] { Open(""); };
    onKeyDown = [this](const ui::Key &key) {
        if (!key.alt || key.ctrl || key.shift || (key.code != kLeftKey && key.code != kRightKey))
            return false;
        (key.code == kLeftKey ? cmdBack : cmdForward).Click();
        return true;
    };
}

void HelpForm::SetBook(HelpBook newBook)
{
    book = std::move(newBook);
    m_listsAll = false;
    ListPages();
    Go(m_visit);
}

void HelpForm::Open(std::string_view id)
{
    const std::string page(book.Find(id) == nullptr ? std::string_view{} : id);
    if (m_visited[m_visit] == page) {
        Go(m_visit);
        return;
    }
    m_visited.resize(m_visit + 1);
    m_visited.push_back(page);
    Go(m_visit + 1);
}

void HelpForm::Go(std::size_t visit)
{
    m_visit = visit;
    cmdBack.SetEnabled(m_visit > 0);
    cmdForward.SetEnabled(m_visit + 1 < m_visited.size());
    if (const ui::NodeId node = tvwPages.Find(m_visited[m_visit]); node != ui::kNoNode) {
        tvwPages.MakeVisible(node);
        tvwPages.Select(node);
    } else {
        tvwPages.Select(ui::kNoNode);
    }
    ui::Notify(pageChanged);
}

// Lists all pages, or those that the search found.
void HelpForm::ListPages()
{
    const std::vector<const HelpPage *> found = SearchHelpBook(book, Wanted());
    const bool all = Squeezed(Wanted()).empty();
    if (all && std::exchange(m_listsAll, true))
        return;
    m_listsAll = all;
    const ui::TreeUpdate update(tvwPages);
    tvwPages.Clear();
    for (const HelpPage *page : found)
        tvwPages.TryAdd(ui::kNoNode, page->id, page->title);
    ui::NodeId chapter = ui::kNoNode;
    for (const HelpPage &page : book.pages) {
        if (!all)
            break;
        const ui::NodeId node =
            tvwPages.TryAdd(page.level == 1 ? ui::kNoNode : chapter, page.id, page.title);
        if (page.level == 1)
            chapter = node;
    }
}

// Links to the chapters, or to the pages of one chapter, beginning with page number `from`.
std::string HelpForm::ListOf(std::size_t from, bool chapters) const
{
    std::string list;
    for (std::size_t i = from; i < book.pages.size() && (chapters || book.pages[i].level > 1); ++i)
        if (!chapters || book.pages[i].level == 1)
            list += "<li>" + Link(book.pages[i]) + "</li>\n";
    return list.empty() ? list : "<ul>\n" + list + "</ul>\n";
}

std::string HelpForm::ShownHtml() const
{
    const HelpPage *page = book.Find(m_visited[m_visit]);
    if (page == nullptr)
        return "<h1>" + EscapedHtml(Title()) + "</h1>\n" + ListOf(0, true);
    std::string html = "<h2>" + EscapedHtml(page->title) + "</h2>\n" + page->body;
    if (page->level > 1)
        return html;
    return html + ListOf(static_cast<std::size_t>(page - book.pages.data()) + 1, false);
}

} // namespace online

#include "online/help/help.h"
#include "online/help/helpform.h"
#include "runtime/error.h"
#include "shell/globals.h"
#include "tests/support/fakeforms.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>

namespace
{

using online::HelpBook;
using online::HelpPage;
using online::ParseHelpBook;

constexpr std::string_view kBook = "<!DOCTYPE html>\n"
                                   "<title>no page</title>\n"
                                   "<h1 id=\"begin\">The beginning</h1>\n"
                                   "<p>Choose a folder &amp; read.</p>\n"
                                   "<h1 id=\"windows\">Windows</h1>\r\n"
                                   "<p>All of them.</p>\r\n"
                                   "<h2 id=\"frmPref\">Preferences &lt;all&gt;</h2>\n"
                                   "<p>The folder of the Ñandú.</p>\n"
                                   "<h2 id=\"frmTip\">Tips</h2>\n"
                                   "<p>See <a href=\"#frmPref\">there</a>.</p>\n"
                                   "<h1 id=\"messages\">Questions</h1>\n"
                                   "<h2 id=\"Ask\">Save them? Really?</h2>\n"
                                   "<p>Yes saves.</p>\n"
                                   "</body>\n"
                                   "</html>\n";

std::string Ids(const std::vector<const HelpPage *> &pages)
{
    std::string ids;
    for (const HelpPage *page : pages)
        ids.append(ids.empty() ? "" : " ").append(page->id);
    return ids;
}

TEST(HelpBook, PagesOfAFile)
{
    const HelpBook book = ParseHelpBook(kBook);
    std::string all;
    for (const HelpPage &page : book.pages)
        all += std::to_string(page.level) + page.id + "|" + page.title + "\n";
    EXPECT_EQ(all,
              "1begin|The beginning\n1windows|Windows\n2frmPref|Preferences <all>\n2frmTip|Tips\n"
              "1messages|Questions\n2Ask|Save them? Really?\n");
    EXPECT_EQ(book.Find("begin")->body, "<p>Choose a folder &amp; read.</p>\n");
    EXPECT_EQ(book.Find("begin")->words, "The beginning Choose a folder & read.");
    EXPECT_EQ(book.Find("windows")->body, "<p>All of them.</p>\n");
    EXPECT_EQ(book.Find("Ask")->body, "<p>Yes saves.</p>\n") << "the end of the file is no text";
    EXPECT_EQ(book.Find("frmMain"), nullptr);
}

TEST(HelpBook, WhatIsNoBookHasNoPages)
{
    for (const char *text :
         {"", "\n\n", "plain text", "<h1>no id</h1>", "<h1 id=\"\">none</h1>",
          " <h1 id=\"a\">not at the beginning of its line</h1>", "<h3 id=\"a\">b</h3>"})
        EXPECT_EQ(ParseHelpBook(text).pages.size(), 0U) << text;
    EXPECT_EQ(ParseHelpBook("<h1 id=\"a\">").pages.front().title, "");
    EXPECT_EQ(ParseHelpBook("<h1 id=\"a").pages.size(), 0U);
    EXPECT_EQ(ParseHelpBook("<h1 id=\"a\">b</h1>\n<p").pages.front().words, "b");
    const std::string longLine = "<h2 id=\"a\">" + std::string(1U << 20, '<') + "</h2>\n";
    EXPECT_EQ(ParseHelpBook(longLine).pages.size(), 1U);
}

TEST(HelpBook, Search)
{
    const HelpBook book = ParseHelpBook(kBook);
    constexpr struct {
        const char *words, *want;
    } cases[] = {
        {"folder", "begin frmPref"},
        {"FOLDER choose", "begin"},
        {"  read\tbegin ", "begin"},
        {"ñANDÚ", "frmPref"},
        {"preferences", "frmPref"},
        {"all", "frmPref Ask windows"}, // the title counts more than the text
        {"href", ""},                   // not part of the searched text
        {"amp", ""},
        {"&", "begin"},
        {"", ""},
        {"  ", ""},
        {"folder nowhere", ""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(Ids(online::SearchHelpBook(book, c.words)), c.want) << c.words;
}

TEST(HelpBook, PageOfAMessage)
{
    const HelpBook book = ParseHelpBook(kBook);
    const auto id = [&](std::string_view message) {
        const HelpPage *page = online::PageOfMessage(book, message);
        return page == nullptr ? std::string("none") : page->id;
    };
    EXPECT_EQ(id("Save them? Really?"), "Ask");
    EXPECT_EQ(id("Save\n them?\r\rReally? "), "Ask");
    EXPECT_EQ(id("Save them? Really?\nThe disk is full."), "Ask");
    EXPECT_EQ(id("Save them?"), "none");
    EXPECT_EQ(id("Windows"), "none") << "a chapter is no message";
    EXPECT_EQ(id(""), "none");
}

struct HelpWindow : testing::Test {
    HelpWindow()
    {
        shell::TheGlobals().HelpFilePath = folder / "Brandolet.hlp";
        tests::WriteFile(folder / "Brandolet.hlp", std::string(kBook));
    }
    ~HelpWindow() override
    {
        online::ForgetHelp();
        shell::TheGlobals() = shell::Globals{};
    }

    online::HelpForm &Form() { return static_cast<online::HelpForm &>(*forms.Forms().at(0)); }

    // The heading of the page that is shown, as HTML; empty for the contents.
    static std::string HeadingOf(const online::HelpForm &form)
    {
        const std::string html = form.ShownHtml();
        constexpr std::string_view kBegin = "<h2>";
        return html.starts_with(kBegin)
                   ? html.substr(kBegin.size(), html.find("</h2>") - kBegin.size())
                   : std::string();
    }

    static std::string Nodes(const online::HelpForm &form)
    {
        std::string text;
        for (ui::NodeId node = 0; node < form.tvwPages.Count(); ++node)
            text += form.tvwPages.FullPath(node) + "\n";
        return text;
    }

    tests::TestFolder folder;
    tests::FakeForms forms;
};

TEST_F(HelpWindow, ContentsAndChapters)
{
    online::ShowHelp();
    EXPECT_EQ(HeadingOf(Form()), "");
    EXPECT_EQ(Form().Title(), "Help");
    EXPECT_EQ(Nodes(Form()), "The beginning\nWindows\nWindows/Preferences <all>\nWindows/Tips\n"
                             "Questions\nQuestions/Save them? Really?\n");
    EXPECT_EQ(Form().ShownHtml(),
              "<h1>Help</h1>\n<ul>\n<li><a href=\"#begin\">The beginning</a></li>\n"
              "<li><a href=\"#windows\">Windows</a></li>\n"
              "<li><a href=\"#messages\">Questions</a></li>\n</ul>\n");
    Form().tvwPages.ClickText(Form().tvwPages.Find("windows"));
    EXPECT_EQ(Form().ShownHtml(), "<h2>Windows</h2>\n<p>All of them.</p>\n<ul>\n"
                                  "<li><a href=\"#frmPref\">Preferences &lt;all&gt;</a></li>\n"
                                  "<li><a href=\"#frmTip\">Tips</a></li>\n</ul>\n");
    online::ShowHelp("frmTip");
    EXPECT_EQ(Form().ShownHtml(), "<h2>Tips</h2>\n<p>See <a href=\"#frmPref\">there</a>.</p>\n");
    EXPECT_EQ(Form().tvwPages.Key(Form().tvwPages.Selected()), "frmTip");
}

TEST_F(HelpWindow, BackAndForward)
{
    online::ShowHelp("begin");
    online::HelpForm &form = Form();
    form.Open("frmPref");
    form.Open("frmPref"); // the same page once more is no step
    form.Open("frmTip");
    form.cmdBack.Click();
    EXPECT_EQ(HeadingOf(form), "Preferences &lt;all&gt;");
    EXPECT_TRUE(form.onKeyDown({37, false, false, true})); // Alt+Left
    EXPECT_EQ(HeadingOf(form), "The beginning");
    form.cmdBack.Click();
    EXPECT_EQ(HeadingOf(form), "") << "it began with the contents";
    EXPECT_FALSE(form.cmdBack.Enabled());
    form.cmdBack.Click();
    EXPECT_TRUE(form.onKeyDown({39, false, false, true})); // Alt+Right
    EXPECT_EQ(HeadingOf(form), "The beginning");
    EXPECT_FALSE(form.onKeyDown({39, false, false, false}));
    form.Open("messages"); // the pages ahead in the history are removed
    EXPECT_FALSE(form.cmdForward.Enabled());
    form.cmdContents.Click();
    EXPECT_EQ(HeadingOf(form), "");
}

TEST_F(HelpWindow, SearchListsWhatItFound)
{
    online::ShowHelp();
    online::HelpForm &form = Form();
    int shown = 0;
    form.pageChanged = [&shown] { ++shown; };
    form.txtFind.SetText("folder");
    EXPECT_EQ(Nodes(form), "The beginning\nPreferences <all>\n");
    EXPECT_EQ(shown, 1) << "the words are marked in the page that shows";
    EXPECT_TRUE(form.txtFind.keyPressed(13));
    EXPECT_EQ(HeadingOf(form), "The beginning");
    EXPECT_FALSE(form.txtFind.keyPressed('x'));
    form.txtFind.SetText("no such words");
    EXPECT_EQ(Nodes(form), "");
    EXPECT_TRUE(form.txtFind.keyPressed(13));
    EXPECT_EQ(HeadingOf(form), "The beginning");
    form.txtFind.SetText("");
    EXPECT_EQ(form.tvwPages.Count(), 6);
    form.pageChanged = nullptr;
}

TEST_F(HelpWindow, PagesOfWindowsAndMessages)
{
    const auto shown = [&](const char *window, const char *message) {
        online::ShowHelpOf(window, message);
        return HeadingOf(Form());
    };
    EXPECT_EQ(shown("frmPref", ""), "Preferences &lt;all&gt;");
    EXPECT_EQ(shown("MessageBox", "Save them?\nReally?"), "Save them? Really?");
    EXPECT_EQ(shown("MessageBox", "Something else"), "") << "the contents";
    EXPECT_EQ(shown("frmTip", "Something else"), "Tips");
    forms.modalUp = true; // the window is shown all the same, see FormWindows
    EXPECT_TRUE(Form().overModal);
}

TEST_F(HelpWindow, TheBookOfTheLanguage)
{
    shell::TheGlobals().LanguageFilePath = folder / "Deutsch.QLT";
    EXPECT_EQ(online::HelpFile(), folder / "Brandolet.hlp") << "the language has none";
    tests::WriteFile(folder / "Deutsch.hlp", "<h1 id=\"begin\">Der Anfang</h1>\n");
    EXPECT_EQ(online::HelpFile(), folder / "Deutsch.hlp");
    online::ShowHelp("begin");
    EXPECT_EQ(HeadingOf(Form()), "Der Anfang");
    shell::TheGlobals().LanguageFilePath = folder / "";
    EXPECT_EQ(online::HelpFile(), folder / "Brandolet.hlp");
    online::ShowHelp("frmPref");
    EXPECT_EQ(HeadingOf(Form()), "Preferences &lt;all&gt;");
    EXPECT_EQ(forms.Forms().size(), 1U);
}

TEST_F(HelpWindow, AMissingFileIsNamed)
{
    shell::TheGlobals().HelpFilePath = folder / "none.hlp";
    try {
        online::ShowHelp();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const runtime::RuntimeError &error) {
        EXPECT_EQ(error.number, runtime::kFileNotFound);
        EXPECT_TRUE(error.description.ends_with("none.hlp")) << error.description;
    }
    EXPECT_EQ(forms.Forms().size(), 0U);
}

} // namespace

#include "runtime/error.h"
#include "tests/support/errorof.h"
#include "tests/support/fakeforms.h"
#include "ui/controls/form.h"

namespace
{

using namespace ui;

constexpr Caption kCaptions[] = {
    {"", "Sample", "Title", "A sample"},
    {"lblName", "Sample", "Name", "&Name:"},
    {"cmdOk", "Sample", "OkButton", "&Ok"},
    {"cmdOk", "Sample", "OkTip", "Keeps all", Caption::Of::ToolTip},
    {"cmdPlay", "Sample", "Play", "Play the song", Caption::Of::SpokenName},
};

struct SampleForm : Form {
    SampleForm() : Form("frmSample", kCaptions)
    {
        Add("lblName", lblName);
        Add("txtName", txtName, {.label = &lblName});
        Add("chk(1)", chk);
        Add("cmdOk", cmdOk);
        Add("cmdPlay", cmdPlay);
    }
    Label lblName;
    TextBox txtName;
    CheckBox chk;
    Button cmdOk, cmdPlay;
};

TEST(Forms, LoadingSetsTheTextsOfTheTableThenCallsOnLoad)
{
    tests::FakeForms host;
    SampleForm form;
    std::string order;
    form.onLoad = [&] { order += "load " + form.cmdOk.Caption() + " "; };
    form.onUnload = [&] { order += form.Loaded() || form.Visible() ? "early" : "unload"; };
    Show(form);
    EXPECT_TRUE(form.Loaded() && form.Visible());
    EXPECT_EQ(form.Title(), "A sample");
    EXPECT_EQ(form.lblName.Caption(), "&Name:");
    EXPECT_EQ(form.cmdOk.ToolTip(), "Keeps all");
    EXPECT_EQ(form.cmdPlay.SpokenName(), "Play the song");
    EXPECT_EQ(form.cmdPlay.Caption(), "");
    Show(form); // loaded already: it is brought to the front
    EXPECT_EQ(order, "load &Ok ");
    Close(form);
    EXPECT_EQ(order, "load &Ok unload");
    Close(form);
    EXPECT_EQ(order, "load &Ok unload");
    EXPECT_EQ(FindMember(form, "chk(1)")->name, "chk(1)");
    EXPECT_EQ(FindMember(form, "chk"), nullptr);
}

TEST(Forms, ClosingAsksTheForm)
{
    tests::FakeForms host;
    SampleForm form;
    bool may = false;
    form.mayClose = [&] { return may; };
    EXPECT_FALSE(AskToClose(form)) << "it is not there";
    Show(form);
    EXPECT_FALSE(AskToClose(form));
    EXPECT_TRUE(form.Visible());
    may = true;
    form.hidesOnClose = true;
    EXPECT_TRUE(AskToClose(form));
    EXPECT_TRUE(form.Loaded());
    EXPECT_FALSE(form.Visible());
    form.hidesOnClose = false;
    EXPECT_TRUE(AskToClose(form));
    EXPECT_FALSE(form.Loaded());
}

TEST(Forms, AtTheEndAllAreAskedBeforeAnyIsClosed)
{
    tests::FakeForms host;
    SampleForm one, two;
    Show(one);
    Show(two);
    two.mayClose = [] { return false; };
    EXPECT_FALSE(AskToCloseAll());
    EXPECT_TRUE(one.Loaded() && two.Loaded());
    two.mayClose = nullptr;
    EXPECT_TRUE(AskToCloseAll());
    EXPECT_FALSE(one.Loaded() || two.Loaded());
}

TEST(Forms, WithoutAHostNothingShows)
{
    ASSERT_EQ(TheFormHost(), nullptr);
    SampleForm form;
    EXPECT_EQ(tests::ErrorOf([&] { Show(form); }), runtime::kObjectNotSet);
    EXPECT_EQ(tests::ErrorOf([&] { ShowModal(form); }), runtime::kObjectNotSet);
    EXPECT_NO_THROW(Close(form));
    EXPECT_TRUE(AskToCloseAll());
}

TEST(Forms, AModalWindowKeepsOthersAway)
{
    tests::FakeForms host;
    SampleForm modal, other;
    int error = 0;
    host.scripts = {[&](Form &form) {
        EXPECT_TRUE(form.Visible());
        error = tests::ErrorOf([&] { Show(other); });
    }};
    ShowModal(modal);
    EXPECT_EQ(error, runtime::kNonModalOverModal);
    EXPECT_FALSE(modal.Loaded());
    Show(other);
    EXPECT_TRUE(other.Visible());
}

TEST(TextBox, SelectionStaysWithinTheText)
{
    TextBox box;
    int calls = 0;
    box.textChanged = [&] { ++calls; };
    box.SetText("\u00C1bc\r\nd");
    EXPECT_EQ(box.Length(), 6);
    EXPECT_EQ(calls, 1);
    box.SetSelection({2, 100});
    EXPECT_EQ(box.Selection(), (TextRange{2, 4}));
    box.SetSelection({-3, -1});
    EXPECT_EQ(box.Selection(), (TextRange{0, 0}));
    box.SetSelection({9, 1});
    EXPECT_EQ(box.Selection(), (TextRange{6, 0}));
    box.SelectAll();
    EXPECT_EQ(box.Selection(), (TextRange{0, 6}));
    box.SetText("x"); // the caret is at its beginning again
    EXPECT_EQ(box.Selection(), (TextRange{0, 0}));
    box.SetText("x");
    EXPECT_EQ(calls, 2);
}

TEST(CheckBox, EachChangeIsAClickWhoeverMadeIt)
{
    CheckBox box;
    int clicks = 0;
    box.onClick = [&] { ++clicks; };
    box.SetChecked(true);
    box.SetChecked(true);
    box.SetChecked(false);
    EXPECT_EQ(clicks, 2);
}

TEST(Button, ADisabledOneDoesNothing)
{
    Button button("&Ok");
    int clicks = 0;
    button.Click(); // no handler
    button.onClick = [&] { ++clicks; };
    button.SetEnabled(false);
    button.Click();
    button.SetEnabled(true);
    button.Click();
    EXPECT_EQ(clicks, 1);
}

TEST(ComboBox, ChoosesEntriesAndShowsAnyText)
{
    ComboBox box;
    int clicks = 0, changes = 0;
    box.onClick = [&] { ++clicks; };
    box.textChanged = [&] { ++changes; };
    box.SetItems({"Rock", "Pop", "Rock"});
    EXPECT_EQ(box.ListIndex(), -1);
    box.SetText("Rock");
    EXPECT_EQ(box.ListIndex(), 0);
    box.SetListIndex(2);
    box.SetListIndex(2);
    EXPECT_EQ(box.Text(), "Rock");
    EXPECT_EQ(box.ListIndex(), 2);
    box.SetText("Polka");
    EXPECT_EQ(box.ListIndex(), -1);
    box.SetItems({"Pop", "Polka"});
    EXPECT_EQ(box.Text(), "Polka");
    EXPECT_EQ(box.ListIndex(), 1);
    box.SetListIndex(99);
    EXPECT_EQ(box.ListIndex(), -1);
    EXPECT_EQ(box.Text(), "");
    EXPECT_EQ(clicks, 2);
    EXPECT_EQ(changes, 2);
}

TEST(Area, FocusIsAskedOfTheWindow)
{
    TextBox box;
    box.SetFocus(); // no window shows it
    int asked = 0;
    box.focusWanted = [&] { ++asked; };
    box.SetFocus();
    EXPECT_EQ(asked, 1);
    int changes = 0;
    box.changed = [&] { ++changes; };
    box.SetToolTip("tip");
    box.SetToolTip("tip");
    EXPECT_EQ(changes, 1);
}

// What may name a control: a label, and nothing that only has a caption.
static_assert(std::is_constructible_v<ui::NamingLabel, ui::Label *>);
static_assert(!std::is_constructible_v<ui::NamingLabel, ui::Button *>);
static_assert(!std::is_constructible_v<ui::NamingLabel, ui::CheckBox *>);
static_assert(!std::is_constructible_v<ui::NamingLabel, ui::Frame *>);

} // namespace

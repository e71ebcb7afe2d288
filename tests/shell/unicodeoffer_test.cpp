// The offer to read tags by their frames, and its memory.
#include "platform/machine.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "shell/preferences/unicodeoffer.h"
#include "shell/settings.h"
#include "tests/support/fakeforms.h"
#include "tests/support/memorysettings.h"

#include <gtest/gtest.h>

namespace
{

class UnicodeOffer : public testing::Test
{
protected:
    UnicodeOffer()
    {
        platform::TheMachine().settings = &m_settings;
        shell::SetAppPath("/library");
    }
    ~UnicodeOffer() override
    {
        shell::TheGlobals().UnicodeTags = false;
        shell::SetAppPath(m_before);
        platform::TheMachine().settings = nullptr;
    }

    // Answers with a press of that button.
    bool Offer(ui::Button shell::UnicodeOfferForm::*button, bool notAgain = false)
    {
        forms.scripts.emplace_back([=, this](ui::Form &form) {
            auto &offer = dynamic_cast<shell::UnicodeOfferForm &>(form);
            words = offer.lblFound.Caption();
            offer.chkNotAgain.SetChecked(notAgain);
            (offer.*button).Click();
        });
        return shell::OfferUnicodeTags(3, 10);
    }

    tests::FakeForms forms;
    std::string words;

private:
    tests::MemorySettings m_settings;
    std::string m_before = shell::GetAppPath();
};

using Form = shell::UnicodeOfferForm;

} // namespace

TEST_F(UnicodeOffer, AsksOnceForALibrary)
{
    EXPECT_FALSE(shell::OfferUnicodeTags(0, 10)); // nothing to offer, nothing is asked
    EXPECT_FALSE(Offer(&Form::cmdNo));
    EXPECT_EQ(words, "3 of 10 songs have tags whose texts cannot be read in the usual way.");
    EXPECT_FALSE(shell::OfferUnicodeTags(3, 10));
    shell::SetAppPath("/other");
    EXPECT_TRUE(Offer(&Form::cmdYes));
    EXPECT_FALSE(shell::OfferUnicodeTags(3, 10));
    shell::SetAppPath("/library");
    EXPECT_FALSE(shell::OfferUnicodeTags(3, 10));
    EXPECT_FALSE(shell::IsUnicodeTagsOn()); // the setting is the caller's
}

// The folders are stored in one text, whatever characters their names have.
TEST_F(UnicodeOffer, AsksOnceForALibraryWithAnyName)
{
    for (const char *library : {"/桜 😀", "/a:b", "/b", "/a", "/50%", "/50%25", "/a%3Ab", ":"}) {
        shell::SetAppPath(library);
        EXPECT_FALSE(Offer(&Form::cmdNo)) << library;
        EXPECT_FALSE(shell::OfferUnicodeTags(3, 10)) << library;
    }
    shell::SetAppPath("/桜 😀");
    EXPECT_FALSE(shell::IsUnicodeOfferDue());
}

TEST_F(UnicodeOffer, IsNotMadeAfterAChoiceWithoutIt)
{
    shell::NoteUnicodeChoice();
    shell::NoteUnicodeChoice();
    EXPECT_FALSE(shell::OfferUnicodeTags(3, 10));
    EXPECT_EQ(shell::GetSetting("Extras", "UnicodeOffered"), "/library");
    shell::SetAppPath("/other");
    EXPECT_TRUE(shell::IsUnicodeOfferDue());
}

// Closing the window by other means than its buttons is a No.
TEST_F(UnicodeOffer, ClosedIsNo)
{
    forms.scripts.emplace_back([](ui::Form &form) { ui::AskToClose(form); });
    EXPECT_FALSE(shell::OfferUnicodeTags(3, 10));
    EXPECT_FALSE(shell::IsUnicodeOfferDue());
}

TEST_F(UnicodeOffer, NeverAgainHoldsForAllLibraries)
{
    EXPECT_FALSE(Offer(&Form::cmdNo, true));
    shell::SetAppPath("/other");
    EXPECT_FALSE(shell::OfferUnicodeTags(3, 10));
}

TEST_F(UnicodeOffer, IsNotMadeWhereTheTagsAreReadSo)
{
    shell::SaveUnicodeTags(true);
    EXPECT_FALSE(shell::OfferUnicodeTags(3, 10));
    EXPECT_TRUE(shell::TheGlobals().UnicodeTags);
    EXPECT_TRUE(shell::IsUnicodeTagsOn());
    shell::SaveSetting("Extras", "UnicodeTags", "no number");
    EXPECT_FALSE(shell::IsUnicodeTagsOn());
}

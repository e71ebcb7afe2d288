// shell/preferences/unicodeoffer.h - frmUnicodeOffer: after a regeneration that found tags which
// can only be read by their frames: asks whether tags are to be read like this from now on. Asked
// once for each library.
#pragma once

#include "ui/controls/form.h"

#include <cstdint>
#include <string>

namespace shell
{

struct UnicodeOfferForm : ui::Form {
    UnicodeOfferForm(std::int64_t files, std::int64_t of);

    ui::Label lblFound, lblChange, lblAsk;
    ui::CheckBox chkNotAgain;
    ui::Button cmdYes, cmdNo;

    bool accepted = false; // Yes was pressed
};

// Section "Extras": "UnicodeOffer" is "0" when the user does not want to be asked again;
// "UnicodeOffered" has the program folders of the libraries that were asked about, joined by ":"
// (in a folder "%3A" is that character, "%25" a "%").
[[nodiscard]] bool IsUnicodeOfferDue();

// Asks, unless the user has been asked already: `files` of `of` files have such tags. Returns: true
// for Yes. The answer is stored; the caller stores the setting itself.
[[nodiscard]] bool OfferUnicodeTags(std::int64_t files, std::int64_t of);

// The user has chosen how tags are read in this library without being asked: no offer is due.
void NoteUnicodeChoice();

} // namespace shell

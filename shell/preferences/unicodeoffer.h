// shell/preferences/unicodeoffer.h - frmUnicodeOffer, which is shown after a regeneration that
// found tags which only reading by frames can decode. It asks whether to read tags like that from
// now on, once for each library.
#pragma once

#include "ui/controls/form.h"

#include <cstdint>
#include <string>

namespace shell
{

struct UnicodeOfferForm : ui::Form {
    UnicodeOfferForm(std::int64_t files, std::int64_t allFiles);

    ui::Label lblFound, lblChange, lblAsk;
    ui::CheckBox chkNotAgain;
    ui::Button cmdYes, cmdNo;

    bool accepted = false; // Yes was pressed
};

// Section "Extras": "UnicodeOffer" is "0" when the user does not want to be asked again;
// "UnicodeOffered" has the program folders of the libraries that were asked about, joined by ":"
// (in a folder "%3A" is that character, "%25" a "%").
[[nodiscard]] bool IsUnicodeOfferDue();

// Asks, unless the user has been asked already: `files` of `allFiles` files have such tags.
// Returns: true for Yes. The answer is stored; the caller stores the setting itself.
[[nodiscard]] bool OfferUnicodeTags(std::int64_t files, std::int64_t allFiles);

// To be called when the user has chosen how tags are read in this library: no question is due then.
void NoteUnicodeChoice();

} // namespace shell

#include "shell/preferences/unicodeoffer.h"

#include "runtime/text.h"
#include "shell/apppath.h"
#include "shell/language.h"
#include "shell/settings.h"

#include <algorithm>
#include <vector>

namespace shell
{

namespace
{

constexpr std::string_view kSection = "UnicodeTags";
constexpr std::string_view kExtras = "Extras";
constexpr std::string_view kOffer = "UnicodeOffer";
constexpr std::string_view kOffered = "UnicodeOffered";
constexpr std::string_view kSeparator = ":";

constexpr ui::Caption kCaptions[] = {
    {"", kSection, "Title", "Tags in other scripts"},
    {"lblChange", kSection, "Change",
     "With \"Read Unicode tags\" they show as they were written. A song that you edit then gets a "
     "tag that other programs understand, and all else in it is kept."},
    {"lblAsk", kSection, "Ask",
     "You can change this at any time in the menu Extras. Read the tags so, and regenerate the "
     "database now?"},
    {"chkNotAgain", kSection, "NotAgain", "&Do not ask again"},
    {"cmdYes", "Boxes", "Yes", "&Yes"},
    {"cmdNo", "Boxes", "No", "&No"},
};

constexpr int kWidth = 7200, kHeight = 3300; // twips; the smallest size

// The program folder as the setting has it.
std::string ThisLibrary()
{
    return runtime::Replace(runtime::Replace(GetAppPath(), "%", "%25"), kSeparator, "%3A");
}

bool IsOffered()
{
    const std::vector<std::string> offered =
        runtime::Split(GetSetting(kExtras, kOffered), kSeparator);
    return std::find(offered.begin(), offered.end(), ThisLibrary()) != offered.end();
}

} // namespace

UnicodeOfferForm::UnicodeOfferForm(std::int64_t files, std::int64_t allFiles)
    : Form("frmUnicodeOffer", kCaptions)
{
    Add("lblFound", lblFound);
    Add("lblChange", lblChange);
    Add("lblAsk", lblAsk);
    Add("chkNotAgain", chkNotAgain);
    Add("cmdYes", cmdYes);
    Add("cmdNo", cmdNo);
    acceptButton = &cmdYes;
    cancelButton = &cmdNo;
    resizable = true;
    size = {0, 0, kWidth, kHeight};
    layout = ui::Column({lblFound, lblChange, ui::Filled(lblAsk), chkNotAgain,
                         ui::Row({ui::Room(), cmdYes, cmdNo})});
    onLoad = [this, files, allFiles] {
        const std::string words = GetLanguageText(
            "$Files$ of $All$ songs have tags whose texts cannot be read in the usual way.",
            "Found", kSection);
        lblFound.SetCaption(
            runtime::Replace(runtime::Replace(words, "$Files$", std::to_string(files)), "$All$",
                             std::to_string(allFiles)));
    };
    cmdYes.onClick = [this] {
        accepted = true;
        ui::Close(*this);
    };
    cmdNo.onClick = [this] { ui::Close(*this); };
}

bool IsUnicodeOfferDue()
{
    if (IsUnicodeTagsOn() || GetSetting(kExtras, kOffer, "1") == "0")
        return false;
    return !IsOffered();
}

bool OfferUnicodeTags(std::int64_t files, std::int64_t allFiles)
{
    if (files == 0 || !IsUnicodeOfferDue())
        return false;
    UnicodeOfferForm form(files, allFiles);
    ui::ShowModal(form);
    NoteUnicodeChoice();
    if (form.chkNotAgain.Checked())
        SaveSetting(kExtras, kOffer, "0");
    return form.accepted;
}

void NoteUnicodeChoice()
{
    if (IsOffered())
        return;
    std::string offered = GetSetting(kExtras, kOffered);
    if (!offered.empty())
        offered += kSeparator;
    SaveSetting(kExtras, kOffered, offered + ThisLibrary());
}

} // namespace shell

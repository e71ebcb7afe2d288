#include "ui/boxforms.h"

namespace ui
{

namespace
{

using platform::Answer;
using platform::Buttons;

constexpr ui::Caption kMessageCaptions[] = {
    {"picIcon", "Boxes", "Warning", "Warning", ui::Caption::Of::SpokenName},
    {"lblText", "Boxes", "Message", "Message", ui::Caption::Of::SpokenName},
    {"cmdOk", "Boxes", "Ok", "&Ok"},
    {"cmdYes", "Boxes", "Yes", "&Yes"},
    {"cmdNo", "Boxes", "No", "&No"},
    {"cmdSave", "Boxes", "Save", "&Save"},
    {"cmdDiscard", "Boxes", "Discard", "&Discard"},
    {"cmdCancel", "Boxes", "Cancel", "&Cancel"},
    {"cmdDetails", "Boxes", "Details", "D&etails"},
    {"lblDetails", "Boxes", "Details", "D&etails", ui::Caption::Of::SpokenName},
};

constexpr ui::Caption kInputCaptions[] = {
    {"lblPrompt", "Boxes", "Message", "Message", ui::Caption::Of::SpokenName},
    {"cmdOk", "Boxes", "Ok", "&Ok"},
    {"cmdCancel", "Boxes", "Cancel", "&Cancel"},
};

constexpr int kTextColumns = 72;  // ui::Label::columns
constexpr int kInputColumns = 48; // ui::TextBox::columns
constexpr int kIconSize = 480;    // twips

// Shows `text` unchanged: "&" does not mark an access key.
void ShowText(Label &label, std::string_view text)
{
    label.columns = kTextColumns;
    label.SetCaption(CaptionOf(text));
}

} // namespace

MessageBoxForm::MessageBoxForm(const Message &message) : Form("MessageBox", kMessageCaptions)
{
    const bool warns = message.icon == platform::BoxIcon::Exclamation;
    const bool asks = message.buttons == Buttons::YesNo;
    const bool saves = message.buttons == Buttons::SaveDiscardCancel;
    SetTitle(message.title);
    ShowText(lblText, message.text);
    ShowText(lblDetails, message.details);
    lblDetails.SetVisible(false);
    picIcon.SetPlace({0, 0, kIconSize, kIconSize});
    picIcon.SetImage("Exclamation");
    picIcon.SetVisible(warns);

    Add("picIcon", picIcon);
    Add("lblText", lblText);
    Add("lblDetails", lblDetails);
    AddAnswer("cmdOk", cmdOk, Answer::Ok, !asks && !saves);
    AddAnswer("cmdYes", cmdYes, Answer::Yes, asks);
    AddAnswer("cmdNo", cmdNo, Answer::No, asks);
    AddAnswer("cmdSave", cmdSave, Answer::Save, saves);
    AddAnswer("cmdDiscard", cmdDiscard, Answer::Discard, saves);
    AddAnswer("cmdCancel", cmdCancel, Answer::Cancel, saves);
    Add("cmdDetails", cmdDetails);
    cmdDetails.SetVisible(!message.details.empty());
    cmdDetails.onClick = [this] { lblDetails.SetVisible(!lblDetails.Visible()); };

    layout =
        Column({Row({Column({picIcon, Room()}), warns ? Gap() : Layout(), lblText, Room()}),
                Gap(lblDetails), lblDetails, Gap(),
                Row({Room(), cmdOk, cmdYes, cmdNo, cmdSave, cmdDiscard, cmdCancel, cmdDetails})});
    acceptButton = asks ? &cmdNo : saves ? &cmdSave : &cmdOk;
    firstFocus = acceptButton;
    isBox = true;
    copied = {&lblText, &lblDetails};
}

// The answer of a box that is closed is that of the last visible button that was added.
void MessageBoxForm::AddAnswer(std::string_view controlName, Button &button, Answer means,
                               bool visible)
{
    Add(controlName, button);
    button.SetVisible(visible);
    if (visible)
        answer = means;
    button.onClick = [this, means] {
        answer = means;
        Close(*this);
    };
}

InputBoxForm::InputBoxForm(std::string_view prompt, std::string_view title,
                           std::string_view initialText)
    : Form("InputBox", kInputCaptions)
{
    SetTitle(title);
    ShowText(lblPrompt, prompt);
    txtInput.columns = kInputColumns;
    txtInput.SetText(initialText);
    txtInput.SelectAll();
    txtInput.SetSpokenName(prompt);
    Add("lblPrompt", lblPrompt);
    Add("txtInput", txtInput);
    Add("cmdOk", cmdOk);
    Add("cmdCancel", cmdCancel);
    layout = Column({lblPrompt, txtInput, Row({Room(), cmdOk, cmdCancel})});
    acceptButton = &cmdOk;
    firstFocus = &txtInput;
    cmdOk.onClick = [this] {
        accepted = true;
        Close(*this);
    };
    cmdCancel.onClick = [this] { Close(*this); };
    cancelButton = &cmdCancel;
}

} // namespace ui

// ui/boxforms.h - the two boxes that ask the user: a message with buttons, and a line of text.
// Their texts are plain UTF-8, and their size depends on the text. The desktop port shows them.
#pragma once

#include "platform/desktop.h"
#include "ui/controls/form.h"

#include <string_view>

namespace ui
{

struct Message {
    std::string_view text;    // UTF-8; a carriage return, a line feed or both break the line
    std::string_view details; // shown when the user asks for them; empty for none
    std::string_view title;
    platform::Buttons buttons = platform::Buttons::Ok;
    platform::BoxIcon icon = platform::BoxIcon::None;
};

// MessageBox: a message and the buttons that answer it. Ctrl+C copies the text and the details; the
// access key of a button presses it, also without Alt.
struct MessageBoxForm : Form {
    explicit MessageBoxForm(const Message &message);

    // The button that was pressed; before that, and when the box is closed: Ok, or No of Yes and
    // No, or Cancel.
    platform::Answer answer = platform::Answer::Ok;

    Picture picIcon;
    Label lblText, lblDetails;
    Button cmdOk, cmdYes, cmdNo, cmdSave, cmdDiscard, cmdCancel; // visible: those of the question
    Button cmdDetails; // shows the details, and hides them again

private:
    void AddAnswer(std::string_view controlName, Button &button, platform::Answer means,
                   bool visible);
};

// InputBox: asks for a line of text.
struct InputBoxForm : Form {
    // All of `initialText` is selected.
    InputBoxForm(std::string_view prompt, std::string_view title, std::string_view initialText);

    bool accepted = false; // by cmdOk or Enter; txtInput has the text

    Label lblPrompt;
    TextBox txtInput;
    Button cmdOk, cmdCancel;
};

} // namespace ui

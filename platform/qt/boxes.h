// platform/qt/boxes.h - the two windows that ask: a message with buttons, and a line of text. Their
// texts are plain. Sizes follow the text, up to a part of the screen; more scrolls.
#pragma once

#include "platform/desktop.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <functional>
#include <string>
#include <string_view>

class QLabel;
class QLineEdit;
class QPushButton;

namespace platform::qt
{

// The words of the boxes' own buttons: gets the English text, with its mark, and its key ("Yes",
// "Details"), and gives the text in the user's language. Empty: they are English.
using BoxWords = std::function<std::string(std::string_view text, std::string_view key)>;
BoxWords &TheBoxWords();

// A message over `parent`'s window. exec() gives QDialog::Accepted for Ok, Yes, Save and Discard.
// Controls: `lblText`, `cmdOk`; `cmdYes` and `cmdNo`; `cmdSave`, `cmdDiscard` and `cmdCancel`.
class MessageDialog : public QDialog
{
public:
    MessageDialog(const QString &text, const QString &title, Buttons buttons, BoxIcon icon,
                  QWidget *parent);

    // Adds a button `cmdDetails` that shows and hides a second text, `lblDetails`.
    void SetDetails(const QString &details);

    // The button that was pressed; what closing the box counts as before that.
    Answer Chosen() const { return m_answer; }

protected:
    // Ctrl+C copies the whole text; the access key of a button presses it, also without Alt.
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override; // notifies a screen reader

private:
    QWidget *MakeText(BoxIcon icon);
    QWidget *MakeButtons(Buttons buttons);
    QPushButton *AddAnswer(QDialogButtonBox *box, const char *name, const QString &caption,
                           QDialogButtonBox::ButtonRole role, Answer answer);

    QLabel *lblText; // owned by its parent widget, as all that follows
    QLabel *lblDetails = nullptr;
    QDialogButtonBox *m_buttons = nullptr;
    Answer m_answer = Answer::Ok;
};

// Asks for a line of text. Controls: `lblPrompt`, `txtInput`, `cmdOk`, `cmdCancel`.
class InputDialog : public QDialog
{
public:
    InputDialog(const QString &prompt, const QString &title, const QString &initialText,
                QWidget *parent);

    QString Text() const;

    // Whether the user closed the window by its frame.
    bool ClosedByFrame() const { return m_closedByFrame; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    bool m_closedByFrame = false;
    QLineEdit *txtInput; // owned by its parent widget
};

} // namespace platform::qt

// platform/terminal/terminaldesktop.h - the desktop where there are no windows: boxes as text on
// standard error, answers from standard input when that is a terminal.
#pragma once

#include "platform/desktop.h"

namespace platform::terminal
{

// The user is asked when standard input and standard error are both terminals. Otherwise a box is
// only printed; its answer is No for YesNo and no value for questions. Control characters of the
// texts (in the name of a file, for example) are not sent to the terminal.
class TerminalDesktop : public Desktop
{
public:
    Answer MessageBox(std::string_view text, Buttons buttons = Buttons::Ok,
                      std::string_view title = {}, BoxIcon icon = BoxIcon::None) override;

    // An empty line takes `initialText`; the end of the input cancels.
    std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                        std::string_view initialText) override;

    // Asks for the path of an existing file; an empty line cancels. A path that is not absolute
    // starts at `folder`.
    std::optional<std::string> OpenDialog(std::string_view title,
                                          const std::vector<FileFilter> &filters,
                                          const std::string &folder) override;

    void EmptyClipboard() override;

    // A terminal has no clipboard: the text is printed, so that it is not lost.
    void SetClipboardText(std::string_view text) override;
    std::string ClipboardText() override { return m_clipboard; }

    // Prints the address, and starts the desktop's opener (xdg-open) when there is a display.
    bool OpenAddress(const std::string &address, const std::string &workingFolder) override;

    void SetPointer(Pointer pointer) override;

    // Throws EndRequested when a signal asked for the end (platform/endrequest.h).
    void DoEvents() override;

private:
    std::string m_clipboard; // what was set last
};

} // namespace platform::terminal

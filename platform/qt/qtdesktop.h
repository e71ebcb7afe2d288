// platform/qt/qtdesktop.h - the desktop port with windows: boxes, dialogs, clipboard, pointer.
// A box is in front of the active window, is modal for the whole program, and shows plain text.
// Boxes are forms (ui/boxforms.h) and need a form host (ui/qt/form.h).
#pragma once

#include "platform/desktop.h"

namespace platform::qt
{

class QtDesktop : public Desktop
{
public:
    ~QtDesktop() override; // sets the normal pointer

    // Escape and the close button count as Ok, or as No for YesNo; there No is the default button.
    // Both buttons have an access key, and Ctrl+C copies the text.
    Answer MessageBox(std::string_view text, Buttons buttons, std::string_view title,
                      BoxIcon icon) override;

    Answer MessageBoxWithDetails(std::string_view text, std::string_view details, Buttons buttons,
                                 std::string_view title) override;
    std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                        std::string_view initialText) override;

    bool InputWasClosed() override { return m_inputClosed; }

    // Patterns match without regard to letter case.
    std::optional<std::string> OpenDialog(std::string_view title,
                                          const std::vector<FileFilter> &filters,
                                          const std::string &folder) override;

    std::optional<std::string> SaveDialog(std::string_view title,
                                          const std::vector<FileFilter> &filters,
                                          const std::string &path) override;

    void EmptyClipboard() override;
    void SetClipboardText(std::string_view text) override;
    std::string ClipboardText() override;

    // Starts the desktop's opener and does not wait for its end; the folder is used for mails only.
    bool OpenAddress(const std::string &address, const std::string &workingFolder) override;

    // See SetProgramPointer of platform/qt/modalwait.h.
    void SetPointer(Pointer pointer) override;

    void DoEvents() override;

private:
    bool m_inputClosed = false; // whether the last input box was closed by its frame
};

} // namespace platform::qt

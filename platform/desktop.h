// platform/desktop.h - what the program asks of the desktop: boxes, clipboard, pointer, events.
// All texts are UTF-8 and plain: no markup, a carriage return breaks the line.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform
{

enum class Buttons { Ok, YesNo, SaveDiscardCancel };
enum class Answer { Ok, Yes, No, Save, Discard, Cancel };
enum class BoxIcon { None, Exclamation };
enum class Pointer {
    Normal = 0,
    Hourglass = 11,
    ArrowHourglass = 13
}; // the numbers of the first version; Hourglass is shown during a wait

// One line of an open dialog's list of file kinds: "MP3 Files", "*.mp3".
struct FileFilter {
    std::string caption;
    std::string pattern;
};

struct Desktop {
    virtual ~Desktop() = default;

    // Shows a box and waits for its answer. An empty `title` means the application's title,
    // "Quenlin". When the user closes the box, or cannot be asked, the answer is Ok, for YesNo it
    // is No, for SaveDiscardCancel Cancel.
    virtual Answer MessageBox(std::string_view text, Buttons buttons = Buttons::Ok,
                              std::string_view title = {}, BoxIcon icon = BoxIcon::None) = 0;

    // The same with `details`, the words of the operating system: a terminal prints them on the
    // next line, a window's box shows them by a button.
    virtual Answer MessageBoxWithDetails(std::string_view text, std::string_view details,
                                         Buttons buttons = Buttons::Ok, std::string_view title = {})
    {
        return MessageBox(std::string(text).append("\r").append(details), buttons, title);
    }

    // Asks for one line of text. Nothing when the user cancels or cannot be asked.
    virtual std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                                std::string_view initialText) = 0;

    // Whether the last input box was closed by its window frame, neither by Cancel nor by Escape.
    virtual bool InputWasClosed() { return false; }

    // Lets the user choose one existing file. Nothing when the user cancels or cannot be asked.
    // `folder` and the result are paths, byte for byte.
    virtual std::optional<std::string> OpenDialog(std::string_view title,
                                                  const std::vector<FileFilter> &filters,
                                                  const std::string &folder) = 0;

    // Lets the user choose the path of a file to be written. The dialog asks before it returns an
    // existing file. `path` is the suggestion: a name alone, or with its folder. Nothing when the
    // user cancels or cannot be asked.
    virtual std::optional<std::string> SaveDialog(std::string_view /*title*/,
                                                  const std::vector<FileFilter> & /*filters*/,
                                                  const std::string & /*path*/)
    {
        return std::nullopt;
    }

    virtual void EmptyClipboard() = 0;
    virtual void SetClipboardText(std::string_view text) = 0;
    // The clipboard's text; empty when it holds none.
    virtual std::string ClipboardText() { return {}; }

    // Makes the desktop open a path or an address (http:, https:, mailto:) as a double click would,
    // with `workingFolder` as the current folder of the opened program, on platforms that have
    // this. A mailto: address is passed on byte for byte.
    // Returns: false when nothing could be started and the user was not informed.
    virtual bool OpenAddress(const std::string &address, const std::string &workingFolder) = 0;

    virtual void SetPointer(Pointer pointer) = 0;

    // Runs all waiting events, timers and repaints included; returns when there is none left.
    virtual void DoEvents() = 0;
};

} // namespace platform

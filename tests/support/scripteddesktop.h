// tests/support/scripteddesktop.h - a desktop port whose answers the test sets in advance. A
// question without an answer fails the test, and so does an answer that no question used.
#pragma once

#include "platform/desktop.h"
#include "runtime/error.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tests
{

// While one exists, it is TheMachine().desktop.
class ScriptedDesktop : public platform::Desktop
{
public:
    ScriptedDesktop();
    ~ScriptedDesktop() override;
    ScriptedDesktop(const ScriptedDesktop &) = delete;
    ScriptedDesktop &operator=(const ScriptedDesktop &) = delete;

    // The text of the next box or input box, or the title of the next file dialog, must contain
    // `part`, and gets this answer. The order of the calls is the order of the questions.
    void ExpectBox(std::string part, platform::Answer answer = platform::Answer::Ok);
    void ExpectInput(std::string part, std::optional<std::string> answer);
    void ExpectOpen(std::string part, std::optional<std::string> path);
    void ExpectSave(std::string part, std::optional<std::string> path);

    platform::Answer MessageBox(std::string_view text, platform::Buttons buttons,
                                std::string_view title, platform::BoxIcon icon) override;
    platform::Answer MessageBoxWithDetails(std::string_view text, std::string_view boxDetails,
                                           platform::Buttons buttons,
                                           std::string_view title) override
    {
        details.emplace_back(boxDetails);
        return MessageBox(text, buttons, title, platform::BoxIcon::None);
    }
    std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                        std::string_view initialText) override;
    std::optional<std::string> OpenDialog(std::string_view title,
                                          const std::vector<platform::FileFilter> &filters,
                                          const std::string &folder) override;
    std::optional<std::string> SaveDialog(std::string_view title,
                                          const std::vector<platform::FileFilter> &filters,
                                          const std::string &path) override;
    void EmptyClipboard() override { clipboard.clear(); }
    void SetClipboardText(std::string_view text) override { clipboard = text; }
    std::string ClipboardText() override { return clipboard; }
    bool OpenAddress(const std::string &address, const std::string &workingFolder) override;
    void SetPointer(platform::Pointer wanted) override { pointer = wanted; }
    void DoEvents() override;

    struct Box {
        std::string text, title;
        platform::Buttons buttons;
        platform::BoxIcon icon;
    };
    std::vector<Box> boxes; // every box that was shown
    struct Input {
        std::string prompt, title, initialText;
    };
    std::vector<Input> inputs; // every input box
    struct Open {
        std::string title;
        std::vector<platform::FileFilter> filters;
        std::string folder;
    };
    std::vector<Open> opens;            // every file dialog
    std::vector<std::string> details;   // of the boxes that had some
    std::vector<std::string> addresses; // every address that was opened
    std::vector<std::string> folders;   // the working folder for each address
    std::string clipboard;
    platform::Pointer pointer = platform::Pointer::Normal;
    int yields = 0;                 // calls of DoEvents
    std::function<void()> doEvents; // called at each yield; may be empty

private:
    enum class Kind { Box, Input, Open, Save };
    struct Step {
        Kind kind;
        std::string part;
        platform::Answer answer;
        std::optional<std::string> text;
    };
    // The answer to this question; null when there is none, which fails the test.
    const Step *Next(Kind kind, std::string_view text);

    std::vector<Step> m_script;
    std::size_t m_next = 0;
    Step m_current{};
    platform::Desktop *m_before;
};

// A desktop whose pointer fails once: when the first look-up sets it back at its end.
struct FailingPointer : ScriptedDesktop {
    bool armed = true;
    void SetPointer(platform::Pointer wanted) override
    {
        ScriptedDesktop::SetPointer(wanted);
        if (std::exchange(armed, false))
            throw runtime::RuntimeError(runtime::kInvalidCall);
    }
};

} // namespace tests

// tests/support/scripteddesktop.h - a desktop whose user follows a script. A question that nobody
// scripted fails the test, and so does a scripted answer that nobody asked for.
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

// Stands in for TheMachine().desktop from its making to its end.
class ScriptedDesktop : public platform::Desktop
{
public:
    ScriptedDesktop();
    ~ScriptedDesktop() override;
    ScriptedDesktop(const ScriptedDesktop &) = delete;
    ScriptedDesktop &operator=(const ScriptedDesktop &) = delete;

    // The next box, input box or file dialog must hold `part` in its text (a file dialog: in its
    // title) and gets this answer. Questions come in the order of the script.
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
    std::vector<Box> boxes; // every box that came, answered or not
    struct Input {
        std::string prompt, title, initialText;
    };
    std::vector<Input> inputs; // every input box
    struct Open {
        std::string title;
        std::vector<platform::FileFilter> filters;
        std::string folder;
    };
    std::vector<Open> opens;            // every open dialog
    std::vector<std::string> details;   // of the boxes that came with some
    std::vector<std::string> addresses; // every address that was opened
    std::vector<std::string> folders;   // the working folder of each
    std::string clipboard;
    platform::Pointer pointer = platform::Pointer::Normal;
    int yields = 0;                 // calls of DoEvents
    std::function<void()> doEvents; // what a yield does; empty: nothing

private:
    enum class Kind { Box, Input, Open, Save };
    struct Step {
        Kind kind;
        std::string part;
        platform::Answer answer;
        std::optional<std::string> text;
    };
    // The step that answers this question; null after a failure of the test.
    const Step *Next(Kind kind, std::string_view text);

    std::vector<Step> m_script;
    std::size_t m_next = 0;
    Step m_current{};
    platform::Desktop *m_before;
};

// A desktop whose pointer fails one time: in the first look-up, which sets it at its end.
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

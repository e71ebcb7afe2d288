// tests/support/recordingdesktop.h - a desktop port that answers everything harmlessly and records
// what it was asked. For tests that look at it afterwards; one in which each question matters uses
// ScriptedDesktop.
#pragma once

#include "platform/machine.h"
#include "tests/support/silentdesktop.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tests
{

// While one exists, it is TheMachine().desktop. A question with Yes and No gets `yesOrNo`, other
// boxes Ok.
class RecordingDesktop : public SilentDesktop
{
public:
    RecordingDesktop() : m_before(platform::TheMachine().desktop)
    {
        platform::TheMachine().desktop = this;
    }
    ~RecordingDesktop() override { platform::TheMachine().desktop = m_before; }
    RecordingDesktop(const RecordingDesktop &) = delete;
    RecordingDesktop &operator=(const RecordingDesktop &) = delete;

    platform::Answer MessageBox(std::string_view text, platform::Buttons buttons,
                                std::string_view /*title*/, platform::BoxIcon /*icon*/) override
    {
        boxes.emplace_back(text);
        return buttons == platform::Buttons::YesNo ? yesOrNo : platform::Answer::Ok;
    }
    std::optional<std::string> InputBox(std::string_view prompt, std::string_view title,
                                        std::string_view initialText) override
    {
        inputs.push_back(
            std::string(prompt).append("|").append(title).append("|").append(initialText));
        return input;
    }
    void SetClipboardText(std::string_view text) override { clipboard = text; }
    bool OpenAddress(const std::string &address, const std::string &) override
    {
        opened.push_back(address);
        return canOpen;
    }
    void SetPointer(platform::Pointer pointer) override { pointers.push_back(pointer); }
    void DoEvents() override
    {
        ++yields;
        if (onYield)
            onYield();
    }

    std::vector<std::string> boxes, opened;
    platform::Answer yesOrNo = platform::Answer::No; // to each question with these two
    std::vector<std::string> inputs;                 // "prompt|title|first text" of each input box
    std::optional<std::string> input;                // what the user answers to all of them
    std::string clipboard;
    std::vector<platform::Pointer> pointers;
    bool canOpen = true;
    int yields = 0;
    std::function<void()> onYield;

private:
    platform::Desktop *m_before;
};

} // namespace tests

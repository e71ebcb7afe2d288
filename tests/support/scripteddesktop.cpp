#include "tests/support/scripteddesktop.h"

#include "platform/machine.h"

#include <gtest/gtest.h>

namespace tests
{

ScriptedDesktop::ScriptedDesktop() : m_before(platform::TheMachine().desktop)
{
    platform::TheMachine().desktop = this;
}

ScriptedDesktop::~ScriptedDesktop()
{
    platform::TheMachine().desktop = m_before;
    for (; m_next < m_script.size(); ++m_next)
        ADD_FAILURE() << "nobody asked: " << m_script[m_next].part;
}

void ScriptedDesktop::ExpectBox(std::string part, platform::Answer answer)
{
    m_script.push_back({Kind::Box, std::move(part), answer, {}});
}

void ScriptedDesktop::ExpectInput(std::string part, std::optional<std::string> answer)
{
    m_script.push_back({Kind::Input, std::move(part), {}, std::move(answer)});
}

void ScriptedDesktop::ExpectOpen(std::string part, std::optional<std::string> path)
{
    m_script.push_back({Kind::Open, std::move(part), {}, std::move(path)});
}

void ScriptedDesktop::ExpectSave(std::string part, std::optional<std::string> path)
{
    m_script.push_back({Kind::Save, std::move(part), {}, std::move(path)});
}

const ScriptedDesktop::Step *ScriptedDesktop::Next(Kind kind, std::string_view text)
{
    if (m_next >= m_script.size()) {
        ADD_FAILURE() << "a question that nobody scripted: " << text;
        return nullptr;
    }
    m_current = m_script[m_next++];
    if (m_current.kind != kind || text.find(m_current.part) == std::string_view::npos) {
        ADD_FAILURE() << "asked: " << text << "\nscripted: " << m_current.part;
        return nullptr;
    }
    return &m_current;
}

platform::Answer ScriptedDesktop::MessageBox(std::string_view text, platform::Buttons buttons,
                                             std::string_view title, platform::BoxIcon icon)
{
    boxes.push_back({std::string(text), std::string(title), buttons, icon});
    const platform::Answer closed =
        buttons == platform::Buttons::Ok ? platform::Answer::Ok : platform::Answer::No;
    const Step *step = Next(Kind::Box, text);
    if (!step)
        return closed;
    EXPECT_EQ(step->answer == platform::Answer::Ok, buttons == platform::Buttons::Ok)
        << "no such button: " << text;
    return step->answer;
}

std::optional<std::string> ScriptedDesktop::InputBox(std::string_view prompt,
                                                     std::string_view title,
                                                     std::string_view initialText)
{
    inputs.push_back({std::string(prompt), std::string(title), std::string(initialText)});
    const Step *step = Next(Kind::Input, prompt);
    return step ? step->text : std::nullopt;
}

std::optional<std::string>
ScriptedDesktop::OpenDialog(std::string_view title,
                            const std::vector<platform::FileFilter> &filters,
                            const std::string &folder)
{
    opens.push_back({std::string(title), filters, folder});
    const Step *step = Next(Kind::Open, title);
    return step ? step->text : std::nullopt;
}

std::optional<std::string>
ScriptedDesktop::SaveDialog(std::string_view title,
                            const std::vector<platform::FileFilter> & /*filters*/,
                            const std::string & /*path*/)
{
    const Step *step = Next(Kind::Save, title);
    return step ? step->text : std::nullopt;
}

bool ScriptedDesktop::OpenAddress(const std::string &address, const std::string &workingFolder)
{
    addresses.push_back(address);
    folders.push_back(workingFolder);
    return true;
}

void ScriptedDesktop::DoEvents()
{
    ++yields;
    if (doEvents)
        doEvents();
}

} // namespace tests

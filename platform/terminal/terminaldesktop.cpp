#include "platform/terminal/terminaldesktop.h"

#include "platform/endrequest.h"
#include "platform/session.h"
#include "platform/spawn.h"
#include "platform/terminal/terminaltext.h"
#include "platform/waiting.h"
#include "runtime/text.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

namespace platform::terminal
{

namespace
{

constexpr std::string_view kApplicationTitle = "Quenlin";

bool HasPerson()
{
    return IsTerminal(Stream::Input) && IsTerminal(Stream::Errors);
}

// `text` with line feeds as line breaks and without other control characters.
std::string Printable(std::string_view text)
{
    std::string shown = runtime::ShownLines(text);
    shown = runtime::Replace(shown, "\r\n", "\n");
    std::replace(shown.begin(), shown.end(), '\r', '\n');
    return shown;
}

void Print(const std::string &text)
{
    const std::string shown = ForTerminal(text);
    std::fwrite(shown.data(), 1, shown.size(), stderr);
    std::fflush(stderr);
}

void PrintBox(std::string_view title, std::string_view text, BoxIcon icon)
{
    Print((icon == BoxIcon::Exclamation ? "(!) " : "") +
          Printable(title.empty() ? kApplicationTitle : title) + ": " + Printable(text) + "\n");
}

// One line from standard input without its end; nothing at the end of the input.
std::optional<std::string> ReadLine()
{
    std::string line;
    for (char c = 0;;) {
        CheckEndRequest();
        if (IsEndRequested()) // the program is to end, but the job that asks continues first: it
                              // gets no answer
            return std::nullopt;
        const int got = ReadInputByte(c);
        if (got == -EINTR)
            continue;
        if (got <= 0)
            return line.empty() ? std::nullopt : std::optional(line);
        if (c == '\n')
            return line;
        line.push_back(c);
    }
}

// The buttons as words to type; each may be shortened to its first letter.
struct Question {
    std::string prompt;
    std::vector<std::pair<std::string_view, Answer>> words;
    Answer otherwise;
};

const Question &QuestionOf(Buttons buttons)
{
    static const Question ok{"[Enter] ", {}, Answer::Ok};
    static const Question yesNo{"[y/N] ", {{"YES", Answer::Yes}}, Answer::No};
    static const Question save{"[s(ave)/d(iscard)/C(ancel)] ",
                               {{"SAVE", Answer::Save}, {"DISCARD", Answer::Discard}},
                               Answer::Cancel};
    return buttons == Buttons::YesNo ? yesNo : buttons == Buttons::Ok ? ok : save;
}

} // namespace

Answer TerminalDesktop::MessageBox(std::string_view text, Buttons buttons, std::string_view title,
                                   BoxIcon icon)
{
    BeginWait();
    PrintBox(title, text, icon);
    const Question &question = QuestionOf(buttons);
    if (!HasPerson())
        return question.otherwise;
    Print(question.prompt);
    const std::string line = runtime::UpperAscii(runtime::Trim(ReadLine().value_or("")));
    for (const auto &[word, answer] : question.words)
        if (!line.empty() && (line == word || line == word.substr(0, 1)))
            return answer;
    return question.otherwise;
}

std::optional<std::string> TerminalDesktop::InputBox(std::string_view prompt,
                                                     std::string_view title,
                                                     std::string_view initialText)
{
    BeginWait();
    PrintBox(title, prompt, BoxIcon::None);
    if (!HasPerson())
        return std::nullopt;
    if (!initialText.empty())
        Print(std::string("[").append(Printable(initialText)).append("] "));
    Print("> ");
    auto line = ReadLine();
    if (line && line->empty())
        line = initialText;
    return line;
}

std::optional<std::string> TerminalDesktop::OpenDialog(std::string_view title,
                                                       const std::vector<FileFilter> &,
                                                       const std::string &folder)
{
    BeginWait();
    PrintBox(title, folder, BoxIcon::None);
    if (!HasPerson())
        return std::nullopt;
    for (;;) {
        Print("> ");
        auto path = ReadLine();
        if (!path || path->empty())
            return std::nullopt;
        if (path->front() != '/')
            path->insert(0, folder + "/");
        std::error_code failure;
        const auto status = std::filesystem::status(*path, failure);
        if (std::filesystem::exists(status) && !std::filesystem::is_directory(status))
            return path;
        Print("There is no such file.\n");
    }
}

void TerminalDesktop::EmptyClipboard()
{
    m_clipboard.clear();
}

void TerminalDesktop::SetClipboardText(std::string_view text)
{
    m_clipboard = text;
    Print(Printable(text) + "\n");
}

bool TerminalDesktop::OpenAddress(const std::string &address, const std::string &workingFolder)
{
    BeginWait();
    Print(Printable(address) + "\n");
    const bool display =
        std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
    if (display)
        OpenWithDesktop(address, workingFolder);
    return true; // the user has read it
}

void TerminalDesktop::SetPointer(Pointer) {}

void TerminalDesktop::DoEvents()
{
    CheckEndRequest();
}

} // namespace platform::terminal

#include "platform/endrequest.h"
#include "platform/machine.h"
#include "platform/terminal/terminaldesktop.h"
#include "tests/support/testfolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <optional>
#include <string>

namespace
{

using namespace platform;
using terminal::TerminalDesktop;

struct Talk {
    std::string output; // all that reached the terminal, the echo of the answers included
    int result = -1;    // what the job returned
};

// Runs `job` in another process whose standard input and error are a terminal, in which a user
// types `answers`.
Talk AtATerminal(const std::string &answers, const std::function<int()> &job)
{
    Talk talk;
    int master = -1;
    const pid_t child = forkpty(&master, nullptr, nullptr, nullptr);
    if (child == 0)
        _exit(job());
    EXPECT_GT(child, 0);
    char first = 0; // the answers are typed when the question is shown
    if (read(master, &first, 1) == 1)
        talk.output.push_back(first);
    EXPECT_EQ(write(master, answers.data(), answers.size()), static_cast<ssize_t>(answers.size()));
    char buffer[4096];
    for (ssize_t got; (got = read(master, buffer, sizeof buffer)) > 0;)
        talk.output.append(buffer, static_cast<std::size_t>(got));
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status))
        talk.result = WEXITSTATUS(status);
    close(master);
    return talk;
}

// Runs `job` without a terminal: standard input is empty, standard error is a file.
Talk WithoutATerminal(const std::function<int()> &job)
{
    const tests::TestFolder folder;
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
        dup2(open((folder / "err").c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
        _exit(job());
    }
    Talk talk;
    int status = 0;
    waitpid(child, &status, 0);
    talk.result = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    talk.output = tests::ReadFile(folder / "err");
    return talk;
}

int AskYesNo()
{
    return TerminalDesktop().MessageBox("Go on?", Buttons::YesNo, "Title") == Answer::Yes ? 1 : 0;
}

TEST(TerminalDesktop, AsksAPerson)
{
    const struct {
        const char *answers;
        int want;
    } cases[] = {{"y\n", 1}, {"Y\n", 1},  {" yes \n", 1}, {"n\n", 0},
                 {"\n", 0},  {"\x04", 0}, {"yup\n", 0}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.answers);
        const Talk talk = AtATerminal(c.answers, AskYesNo);
        EXPECT_EQ(talk.result, c.want);
        EXPECT_NE(talk.output.find("Title: Go on?"), std::string::npos) << talk.output;
    }
}

int AskToSave()
{
    return static_cast<int>(TerminalDesktop().MessageBox("Save?", Buttons::SaveDiscardCancel));
}

TEST(TerminalDesktop, AsksToSave)
{
    const struct {
        const char *answers;
        Answer want;
    } cases[] = {{"s\n", Answer::Save},          {"Save\n", Answer::Save}, {"d\n", Answer::Discard},
                 {"discard\n", Answer::Discard}, {"c\n", Answer::Cancel},  {"\n", Answer::Cancel},
                 {"sa\n", Answer::Cancel},       {"y\n", Answer::Cancel}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.answers);
        EXPECT_EQ(AtATerminal(c.answers, AskToSave).result, static_cast<int>(c.want));
    }
    EXPECT_EQ(WithoutATerminal(AskToSave).result, static_cast<int>(Answer::Cancel));
}

TEST(TerminalDesktop, AnswersNoWithoutAPerson)
{
    const Talk talk = WithoutATerminal(AskYesNo);
    EXPECT_EQ(talk.result, 0);
    EXPECT_EQ(talk.output, "Title: Go on?\n");
}

TEST(TerminalDesktop, ABoxBearsTheApplicationsTitleAndBreaksItsLines)
{
    const Talk talk = WithoutATerminal([] {
        return TerminalDesktop().MessageBox("one\rtwo\r\nthree\nfour") == Answer::Ok ? 0 : 1;
    });
    EXPECT_EQ(talk.result, 0);
    EXPECT_EQ(talk.output, "Quenlin: one\ntwo\nthree\nfour\n");
}

TEST(TerminalDesktop, NoControlCharacterReachesTheTerminal)
{
    const Talk talk = WithoutATerminal([] {
        TerminalDesktop().MessageBox(std::string_view("a\x1b[2Jb\0c\x7F\xC2\x9Bz\té", 15));
        return 0;
    });
    EXPECT_EQ(talk.output, "Quenlin: a\\x1b[2Jb\\x00c\\x7f\\xc2\\x9bz\té\n");
}

TEST(TerminalDesktop, AnOkBoxWaitsForAPerson)
{
    const Talk talk = AtATerminal(
        "\n", [] { return TerminalDesktop().MessageBox("Done.") == Answer::Ok ? 7 : 0; });
    EXPECT_EQ(talk.result, 7);
    EXPECT_NE(talk.output.find("[Enter]"), std::string::npos);
}

TEST(TerminalDesktop, AsksForALine)
{
    const auto length = [] {
        const auto line = TerminalDesktop().InputBox("Name?", "T", "seven");
        return line ? static_cast<int>(line->size()) : 99;
    };
    EXPECT_EQ(AtATerminal("abc\n", length).result, 3);
    EXPECT_EQ(AtATerminal("\n", length).result, 5); // the initial text
    EXPECT_EQ(AtATerminal("\x04", length).result, 99);
    EXPECT_EQ(WithoutATerminal(length).result, 99);
}

TEST(TerminalDesktop, AsksForAFile)
{
    const tests::TestFolder folder;
    tests::WriteFile(folder / "a.mp3", "x");
    const auto choose = [&] {
        const auto path = TerminalDesktop().OpenDialog("T", {}, folder.Path());
        return !path ? 99 : *path == folder / "a.mp3" ? 1 : 2;
    };
    EXPECT_EQ(AtATerminal("a.mp3\n", choose).result, 1);
    EXPECT_EQ(AtATerminal("b.mp3\n" + (folder / "a.mp3") + "\n", choose).result, 1);
    EXPECT_EQ(AtATerminal("\n", choose).result, 99);
    EXPECT_EQ(WithoutATerminal(choose).result, 99);
}

TEST(TerminalDesktop, WhatMustBeDoneBeforeAWaitIsDoneOnceForEachQuestion)
{
    const Talk talk = WithoutATerminal([] {
        int waits = 0;
        TheMachine().beginWait = [&] { ++waits; };
        TerminalDesktop desktop;
        desktop.SetClipboardText("no question");
        const int before = waits;
        desktop.MessageBox("Go on?", Buttons::YesNo);
        const int afterBox = waits;
        desktop.InputBox("Name?", "T", "");
        const int afterInput = waits;
        desktop.OpenDialog("T", {}, "/");
        const int afterDialog = waits;
        unsetenv("DISPLAY");
        unsetenv("WAYLAND_DISPLAY");
        desktop.OpenAddress("http://a.example/", "/");
        const bool isEach =
            before == 0 && afterBox == 1 && afterInput == 2 && afterDialog == 3 && waits == 4;
        return isEach ? 1 : 0;
    });
    EXPECT_EQ(talk.result, 1);
}

TEST(TerminalDesktop, PrintsWhatTheClipboardWouldHold)
{
    const Talk talk = WithoutATerminal([] {
        TerminalDesktop().EmptyClipboard();
        TerminalDesktop().SetClipboardText("one\rtwo");
        return 0;
    });
    EXPECT_EQ(talk.output, "one\ntwo\n");
}

TEST(TerminalDesktop, PrintsAnAddressWhereNoDisplayIs)
{
    const Talk talk = WithoutATerminal([] {
        unsetenv("DISPLAY");
        unsetenv("WAYLAND_DISPLAY");
        return TerminalDesktop().OpenAddress("http://a.example/", "/") ? 1 : 0;
    });
    EXPECT_EQ(talk.result, 1) << "1: it was printed";
    EXPECT_EQ(talk.output, "http://a.example/\n");
}

TEST(TerminalDesktop, ASignalEndsAQuestion)
{
    const auto ask = [](bool deferred) {
        return [deferred] {
            std::signal(SIGINT, SIG_DFL); // a shell's background job starts with it ignored
            WatchForEndRequest();
            std::optional<EndDeferral> deferral;
            if (deferred)
                deferral.emplace();
            try {
                return AskYesNo(); // the user types Ctrl+C
            } catch (const EndRequested &end) {
                return 100 + end.signalNo;
            }
        };
    };
    EXPECT_EQ(AtATerminal("\x03", ask(false)).result, 100 + SIGINT);
    EXPECT_EQ(AtATerminal("\x03", ask(true)).result, 0);
}

TEST(TerminalDesktop, EventsBringTheEndThatASignalAskedFor)
{
    TerminalDesktop desktop;
    EXPECT_NO_THROW(desktop.DoEvents());
    RequestEnd(SIGTERM);
    EXPECT_THROW(desktop.DoEvents(), EndRequested);
    RequestEnd(0);
}

} // namespace

#include "shell/startup/regeneratejob.h"

#include "catalogue/regeneration.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "platform/settingsstore.h"
#include "runtime/text.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "shell/settings.h"
#include "ui/controls/statusbar.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <optional>

namespace shell
{

namespace
{

constexpr std::int64_t kTerminalIntervalMs = 100;
constexpr std::int64_t kPlainIntervalMs = 1000;

// Shows the status panels of a run on standard output, as often as is of use there.
class Progress
{
public:
    Progress() : m_onTerminal(isatty(STDOUT_FILENO) == 1)
    {
        m_bar.changed = [this] { PanelsChanged(); };
    }

    ~Progress() { End(); }
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    ui::StatusBar &Bar() { return m_bar; }

    // Ends the counting line, so that what follows is on a line of its own.
    void End()
    {
        if (m_shown != m_latest)
            Print(m_latest);
        if (m_onTerminal && !m_shown.empty())
            std::fputs("\n", stdout);
        std::fflush(stdout);
        m_latest.clear();
        m_shown.clear();
    }

private:
    // "Playing" says that files are counted, then names each file; "Blank" has the number of files
    // done, and is empty again at the end of the run. The names are not shown: they may hold what
    // is no text for a terminal.
    void PanelsChanged()
    {
        const std::string &count = m_bar.Panel("Blank").text;
        if (!count.empty())
            Show(count);
        else if (m_counted)
            End();
        else if (m_latest.empty())
            Show(m_bar.Panel("Playing").text);
        m_counted = !count.empty();
    }

    void Show(const std::string &text)
    {
        if (text == m_latest)
            return;
        m_latest = text;
        const std::int64_t now = platform::TheMachine().clock->SteadyMs();
        const std::int64_t interval = m_onTerminal ? kTerminalIntervalMs : kPlainIntervalMs;
        if (m_shownAtMs && now - *m_shownAtMs < interval)
            return;
        m_shownAtMs = now;
        Print(m_latest);
        std::fflush(stdout);
    }

    void Print(const std::string &line)
    {
        // Back to the start of the line, and what stood there is erased.
        const char *const format = m_onTerminal ? "\r\033[K%s" : "%s\n";
        std::fprintf(stdout, format, line.c_str());
        m_shown = line;
    }

    ui::StatusBar m_bar{{{"Playing", "", 0, true}, {"Blank", "", 0, true}}};
    bool m_onTerminal;
    std::string m_latest; // what there is to show
    std::string m_shown;  // what is on the screen
    bool m_counted = false;
    std::optional<std::int64_t> m_shownAtMs;
};

// The terminal in place of the window's controls, for one run.
class TerminalControls
{
public:
    explicit TerminalControls(Progress &progress) : m_were(catalogue::TheRegenerationControls())
    {
        catalogue::RegenerationControls &controls = catalogue::TheRegenerationControls();
        controls.SB = &progress.Bar();
        controls.ShowFailure = [&progress](const std::string &failure) {
            progress.End();
            // A terminal has no clipboard, and prints at once what is to go there.
            platform::TheMachine().desktop->SetClipboardText(failure);
        };
    }
    ~TerminalControls() { catalogue::TheRegenerationControls() = m_were; }
    TerminalControls(const TerminalControls &) = delete;
    TerminalControls &operator=(const TerminalControls &) = delete;

private:
    catalogue::RegenerationControls m_were;
};

void PrintSummary(const catalogue::RegenerationSummary &summary)
{
    std::printf("%s%lld MP3 files", summary.stopped ? "Stopped after " : "",
                static_cast<long long>(summary.files));
    if (summary.failed > 0)
        std::printf(", %lld of them could not be added", static_cast<long long>(summary.failed));
    std::printf("\nReport: %s\n", runtime::ShownText(catalogue::ReportPath()).c_str());
    std::fflush(stdout);
}

std::string CutSeparators(std::string folder)
{
    while (folder.size() > 1 && folder.back() == PathSeparator)
        folder.pop_back();
    return folder;
}

// The walk of one folder changes no setting; says how it becomes the one that the window reads.
void PrintHowToKeep(const std::string &folder)
{
    if (CutSeparators(GetPreference("MP3 Directory")) == folder)
        return;
    std::printf("The window still reads another folder. To have it read this one: Tools, "
                "Preferences");
    const std::string file = platform::TheMachine().settings->FilePath(kApplicationTitle);
    if (!file.empty())
        std::printf(",\nor in section [Preferences] of %s\nMP3 Directory=%s",
                    runtime::ShownText(file).c_str(), runtime::ShownText(folder).c_str());
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace

bool RunRegenerateJob(const std::string &folder)
{
    TheGlobals().MP3Directory = CutSeparators(folder);
    {
        Progress progress;
        const TerminalControls inPlace(progress);
        catalogue::ListRefresh(false);
    }
    PrintSummary(catalogue::LastRegeneration());
    PrintHowToKeep(TheGlobals().MP3Directory);
    return !catalogue::LastRegeneration().rowsLost;
}

} // namespace shell

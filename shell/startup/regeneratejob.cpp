#include "shell/startup/regeneratejob.h"

#include "catalogue/regeneration.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "platform/session.h"
#include "platform/settingsstore.h"
#include "platform/terminal/terminaltext.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "shell/settings.h"
#include "ui/controls/statusbar.h"

#include <cstdint>
#include <cstdio>
#include <optional>

namespace shell
{

namespace
{

constexpr std::int64_t kTerminalIntervalMs = 100;
constexpr std::int64_t kPlainIntervalMs = 1000;

// A path as the terminal shows it.
std::string Shown(const std::string &path)
{
    return platform::terminal::ForTerminal(runtime::ShownText(path));
}

// Shows the progress of a regeneration on standard output, at most once in a while.
class Progress
{
public:
    Progress() : m_onTerminal(platform::IsTerminal(platform::Stream::Output))
    {
        m_bar.changed = [this] { PanelsChanged(); };
    }

    ~Progress() { End(); }
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    ui::StatusBar &Bar() { return m_bar; }

    // Ends the line with the count; what is written next begins on a new line.
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
    // The panel "Playing" says that files are being counted, then has the name of each file;
    // "Blank" has the number of files done, and is empty at the end. The names are not shown: they
    // may contain control characters.
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
        // Returns to the start of the line and erases it.
        const char *const format = m_onTerminal ? "\r\033[K%s" : "%s\n";
        std::fprintf(stdout, format, platform::terminal::ForTerminal(line).c_str());
        m_shown = line;
    }

    ui::StatusBar m_bar{{{"Playing", "", 0, true}, {"Blank", "", 0, true}}};
    bool m_onTerminal;
    std::string m_latest; // the newest line to show
    std::string m_shown;  // the line on the screen
    bool m_counted = false;
    std::optional<std::int64_t> m_shownAtMs;
};

// While one exists, the regeneration uses the terminal instead of the controls of a window.
class TerminalControls
{
public:
    explicit TerminalControls(Progress &progress) : m_were(catalogue::TheRegenerationControls())
    {
        catalogue::RegenerationControls &controls = catalogue::TheRegenerationControls();
        controls.SB = &progress.Bar();
        controls.ShowFailure = [&progress](const std::string &failure) {
            progress.End();
            // A terminal has no clipboard: the text is printed at once.
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
    std::printf("\nReport: %s\n", Shown(catalogue::ReportPath()).c_str());
    std::fflush(stdout);
}

// The window asks; a terminal names the option.
void PrintUnicodeOffer(const catalogue::RegenerationSummary &summary)
{
    if (summary.unicodeFiles == 0)
        return;
    std::printf(
        "%lld of these files have tags whose texts cannot be read in the usual way (Unicode, "
        "ID3v2.4).\nTo read and write them: --unicode-tags on\n",
        static_cast<long long>(summary.unicodeFiles));
    std::fflush(stdout);
}

// A regeneration of another folder does not change the setting; this says how to change it.
void PrintHowToKeep(const std::string &folder)
{
    if (runtime::CutSeparators(GetPreference("MP3 Directory")) == folder)
        return;
    std::printf("The window still reads another folder. To have it read this one: Tools, "
                "Preferences");
    const std::string file = platform::TheMachine().settings->FilePath(kApplicationTitle);
    if (!file.empty())
        std::printf(",\nor in section [Preferences] of %s\nMP3 Directory=%s", Shown(file).c_str(),
                    Shown(folder).c_str());
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace

bool RunRegenerateJob(const std::string &folder)
{
    TheGlobals().MP3Directory = runtime::CutSeparators(folder);
    {
        Progress progress;
        const TerminalControls inPlace(progress);
        catalogue::ListRefresh(false);
    }
    PrintSummary(catalogue::LastRegeneration());
    PrintUnicodeOffer(catalogue::LastRegeneration());
    PrintHowToKeep(TheGlobals().MP3Directory);
    return !catalogue::LastRegeneration().rowsLost;
}

} // namespace shell

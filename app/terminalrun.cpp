#include "app/terminalrun.h"

#include "app/playerport.h"
#include "app/programhome.h"
#include "catalogue/adoclass.h"
#include "catalogue/lockwait.h"
#include "catalogue/regeneration.h"
#include "catalogue/rowgroups.h"
#include "platform/disk/userfolders.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "platform/posix/desktopfiletypes.h"
#include "platform/posix/disk/mountdrives.h"
#include "platform/posix/inisettings.h"
#include "platform/posix/systemclock.h"
#include "platform/terminal/terminaldesktop.h"
#include "shell/settings.h"
#include "shell/startup/startup.h"

#include <memory>
#include <new>

namespace app
{

namespace
{

// In a terminal the only events are signals. A regeneration ends in order after the current file.
class Terminal : public platform::terminal::TerminalDesktop
{
public:
    void DoEvents() override
    {
        if (platform::IsEndRequested() && catalogue::IsRegenerating())
            catalogue::StopRegeneration();
        else
            TerminalDesktop::DoEvents();
    }
};

// While one exists, the ports of a terminal are in use.
class TerminalMachine
{
public:
    TerminalMachine()
    {
        platform::Machine &machine = platform::TheMachine();
        machine.desktop = &m_desktop;
        machine.settings = &m_settings;
        m_player =
            MakePlayer(PlayerName()); // it may be playing a song whose lyrics are to be written
        machine.player = m_player.get();
        machine.fileTypes = &m_fileTypes;
        machine.drives = &m_drives;
        machine.clock = &m_clock;
        catalogue::TheLockWaitCalls().ShowLine = [this](std::string_view line) {
            if (!line.empty())
                m_desktop.SetClipboardText(line); // prints it
        };
        machine.beginWait = catalogue::CloseOpenGroup;
        m_settings.onCannotStore = shell::ShowSettingsFailure;
    }

    // Ends in order: the catalogue is one complete file again, the settings are stored.
    ~TerminalMachine()
    {
        catalogue::DataAccess.reset();
        catalogue::CloseCatalogue();
        m_settings.Flush();
        catalogue::TheLockWaitCalls() = {};
        platform::TheMachine() = platform::Machine();
    }

    TerminalMachine(const TerminalMachine &) = delete;
    TerminalMachine &operator=(const TerminalMachine &) = delete;

private:
    Terminal m_desktop;
    platform::posix::IniSettings m_settings{platform::ConfigHome()};
    std::unique_ptr<platform::Player> m_player;
    platform::posix::DesktopFileTypes m_fileTypes{platform::DataHome()};
    platform::posix::MountDrives m_drives;
    platform::posix::SystemClock m_clock;
};

int Regenerate(const std::string &folder)
{
    int status = 0;
    {
        const platform::EndDeferral untilTheWalkHasEnded;
        status = shell::MainRegenerate(platform::AbsolutePath(folder), {});
    }
    platform::CheckEndRequest();
    return status;
}

int Batch(const std::vector<std::string> &given)
{
    std::vector<std::string> paths;
    for (const std::string &path : given)
        paths.push_back(platform::AbsolutePath(path));
    return shell::Main(paths, {}).value_or(0);
}

} // namespace

int RunInTerminal(const Options &options)
{
    const TerminalMachine machine;
    platform::WatchForEndRequest();
    try {
        PrepareProgramHome();
        if (options.unicodeTags)
            shell::SaveUnicodeTags(*options.unicodeTags);
        if (options.job == Job::Setting)
            return 0;
        return options.job == Job::Regenerate ? Regenerate(options.paths.front())
                                              : Batch(options.paths);
    } catch (const runtime::RuntimeError &error) {
        shell::ShowRuntimeError(error);
        return shell::kRefused;
    } catch (const std::bad_alloc &) {
        shell::ShowRuntimeError(runtime::RuntimeError(runtime::kOutOfMemory));
        return shell::kRefused;
    } catch (const platform::EndRequested &end) {
        return 128 + end.signalNo; // the status that shells use for an end by a signal
    }
}

} // namespace app

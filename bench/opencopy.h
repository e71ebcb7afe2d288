// bench/opencopy.h - a copy of a catalogue, opened as the program opens its own, without a window.
#pragma once

#include "catalogue/adoclass.h"
#include "catalogue/rowgroups.h"
#include "platform/machine.h"
#include "platform/posix/systemclock.h"
#include "platform/terminal/terminaldesktop.h"
#include "shell/apppath.h"
#include "shell/startup/startup.h"

#include <filesystem>
#include <memory>
#include <string>

namespace bench
{

// While this object exists, DataAccess refers to a copy of `catalogue`, the file MP3s.mdb in
// `folder`, and TheMachine has a desktop and a clock. The files of an earlier copy are removed
// first. `folder` becomes the program's folder.
class OpenCopy
{
public:
    OpenCopy(const std::string &catalogue, const std::string &folder) : m_file(folder + "/MP3s.mdb")
    {
        std::filesystem::create_directories(folder);
        for (const char *end : {"", "-wal", "-shm", "-turn"})
            std::filesystem::remove(m_file + end);
        std::filesystem::copy_file(catalogue, m_file);
        platform::TheMachine().desktop = &m_desktop;
        platform::TheMachine().clock = &m_clock;
        catalogue::DataAccess = std::make_unique<catalogue::ADOclass>();
        shell::SetAppPath(folder);
        shell::SetADOFields(*catalogue::DataAccess);
    }
    ~OpenCopy()
    {
        catalogue::DataAccess.reset();
        catalogue::CloseCatalogue();
        platform::TheMachine().desktop = nullptr;
        platform::TheMachine().clock = nullptr;
    }
    OpenCopy(const OpenCopy &) = delete;
    OpenCopy &operator=(const OpenCopy &) = delete;

    [[nodiscard]] const std::string &File() const { return m_file; }

private:
    std::string m_file;
    platform::terminal::TerminalDesktop m_desktop;
    platform::posix::SystemClock m_clock;
};

} // namespace bench

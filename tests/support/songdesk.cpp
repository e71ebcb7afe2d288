#include "tests/support/songdesk.h"

#include "metadata/mp3info.h"
#include "metadata/tagwriter.h"
#include "platform/disk/files.h"
#include "platform/machine.h"
#include "shell/apppath.h"
#include "shell/globals.h"

namespace tests
{

SongDesk::SongDesk()
    : m_clockBefore(platform::TheMachine().clock), m_appPathBefore(shell::GetAppPath())
{
    platform::TheMachine().clock = this;
    secondsAtStart = 1000.25;
    shell::SetAppPath(program.Path());
    shell::TheGlobals().BackUpFiles = false;
    shell::TheGlobals().UpdateDBAfterEditing = false;
    metadata::TheTagWriterHooks() = {};
    metadata::ResetMP3Info();
}

SongDesk::~SongDesk()
{
    platform::TheMachine().clock = m_clockBefore;
    platform::TheMachine().files = &platform::SystemFiles();
    shell::SetAppPath(m_appPathBefore);
    shell::TheGlobals().BackUpFiles = true;
    shell::TheGlobals().UpdateDBAfterEditing = true;
    shell::TheGlobals().UnicodeTags = false;
    metadata::TheTagWriterHooks() = {};
    metadata::ResetMP3Info();
}

} // namespace tests

#include "shell/openaddress.h"

#include "platform/desktop.h"
#include "platform/machine.h"
#include "shell/globals.h"
#include "shell/language.h"

namespace shell
{

void OpenAddress(const std::string &address, const std::string &workingFolder)
{
    platform::Desktop &desktop = *platform::TheMachine().desktop;
    if (desktop.OpenAddress(address, workingFolder))
        return;
    desktop.MessageBox(
        GetLanguageText("No program was found that opens this:", "NothingOpens", "Status") + "\r" +
            address,
        platform::Buttons::Ok, kApplicationTitle, platform::BoxIcon::Exclamation);
}

} // namespace shell

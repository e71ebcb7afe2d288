#include "shell/openaddress.h"

#include "platform/desktop.h"
#include "platform/machine.h"
#include "runtime/text.h"
#include "shell/language.h"

namespace shell
{

namespace
{

void ReportNothingOpened()
{
    if (TheStatusLine())
        TheStatusLine()(GetLanguageText("Nothing opens this. The text is on the clipboard.",
                                        "NothingOpens", "Status"));
}

} // namespace

bool MayOpen(std::string_view address)
{
    if (address.starts_with('/'))
        return true;
    for (const std::string_view scheme : {"http://", "https://", "mailto:"})
        if (runtime::EqualAscii(address.substr(0, scheme.size()), scheme))
            return true;
    return false;
}

void OpenAddress(const std::string &address, const std::string &workingFolder)
{
    platform::Desktop &desktop = *platform::TheMachine().desktop;
    if (MayOpen(address) && desktop.OpenAddress(address, workingFolder))
        return;
    desktop.SetClipboardText(address);
    ReportNothingOpened();
}

void OpenMail(const std::string &address, const std::string &workingFolder)
{
    if (!MayOpen(address) || !platform::TheMachine().desktop->OpenAddress(address, workingFolder))
        ReportNothingOpened();
}

std::function<void(std::string_view)> &TheStatusLine()
{
    static std::function<void(std::string_view)> line;
    return line;
}

} // namespace shell

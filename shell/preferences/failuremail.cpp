#include "shell/preferences/failuremail.h"

#include "platform/desktop.h"
#include "platform/machine.h"
#include "platform/systeminfo.h"
#include "runtime/text.h"
#include "shell/globals.h"
#include "shell/openaddress.h"
#include "shell/version.h"

namespace shell
{

namespace
{

constexpr std::string_view kMailFolder = "C:\\"; // the current folder of the mail program

} // namespace

std::string BugReportAddress(std::string_view body)
{
    return "mailto:" + std::string(kSupportAddress) +
           "?Subject=Bug@Quenlin&Body=" + runtime::Replace(body, "\r", "%0A");
}

void EmailBugReport()
{
    const std::string report = platform::TheMachine().desktop->ClipboardText();
    OpenMail(BugReportAddress(report), std::string(kMailFolder));
}

std::string ComposeBugReport(std::string_view actions, std::string_view reason)
{
    std::string report = "System Info:\r" + GetSystemInfoText() + "\rActions:\r";
    report += actions;
    report += "\rError(s) Raised:\r";
    report += reason;
    return report;
}

std::string GetSystemInfoText()
{
    std::int32_t major = 0;
    std::int32_t minor = 0;
    std::int32_t build = 0;
    const Version &version = kProgramVersion;
    return "OS = " + GetWindowsVersionName() + "\rIE = " + GetIEVersion(major, minor, build) +
           "\rQuenlin = " + std::to_string(version.major) + "." + std::to_string(version.minor) +
           "." + std::to_string(version.patch);
}

std::string GetWindowsVersionName()
{
    const std::string name = platform::TheMachine().system->Name();
    return name.empty() ? "Versión de Windows desconocida" : name;
}

std::string GetIEVersion(std::int32_t &major, std::int32_t &minor, std::int32_t &build)
{
    major = minor = build = 0;
    return "Version de IE desconocida";
}

} // namespace shell

// shell/preferences/failuremail.h - the mail to the author about what went wrong: the report goes
// over the clipboard into an address that the desktop opens in the user's mail program. No state.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace shell
{

// Opens a mail whose body is the clipboard's text. Where no mail program answers the status bar
// says so; the clipboard keeps the text. Errors: none.
void EmailBugReport();

// The address that opens a mail with this body: each carriage return becomes "%0A", nothing else is
// escaped.
[[nodiscard]] std::string BugReportAddress(std::string_view body);

// The report of one file that could not be added: the system, what the user did, and the reason.
[[nodiscard]] std::string ComposeBugReport(std::string_view actions, std::string_view reason);

// Three lines joined by carriage returns: the system, the browser, the program with its version.
[[nodiscard]] std::string GetSystemInfoText();

// The system's name and version; "Versión de Windows desconocida" when it cannot be found out.
[[nodiscard]] std::string GetWindowsVersionName();

// "Version de IE desconocida", with the three numbers 0: no such browser is part of this system.
[[nodiscard]] std::string GetIEVersion(std::int32_t &major, std::int32_t &minor,
                                       std::int32_t &build);

} // namespace shell

// shell/preferences/failuremail.h - the mail to the author about a failure. Its text comes from the
// clipboard, and the desktop opens its address in the user's mail program. No state.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace shell
{

// Opens a mail with the text of the clipboard. When there is no mail program, the status bar says
// so, and the clipboard keeps the text.
// Errors: none.
void EmailBugReport();

// The address that opens a mail with this text: each carriage return becomes "%0A"; nothing else is
// escaped.
[[nodiscard]] std::string BugReportAddress(std::string_view body);

// The report about one file that could not be added: the operating system, what the user did, and
// the reason.
[[nodiscard]] std::string ComposeBugReport(std::string_view actions, std::string_view reason);

// Three lines with carriage returns between them: the operating system, the browser, the program
// with its version.
[[nodiscard]] std::string GetSystemInfoText();

// The operating system's name and version; "Versión de Windows desconocida" when it is not known.
[[nodiscard]] std::string GetWindowsVersionName();

// "Versión de IE desconocida", and the three numbers are set to 0: this browser does not exist on
// this platform.
[[nodiscard]] std::string GetIEVersion(std::int32_t &major, std::int32_t &minor,
                                       std::int32_t &build);

} // namespace shell

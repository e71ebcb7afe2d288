// platform/terminal/terminaltext.h - text as the terminal of the user's locale shows it. No state.
#pragma once

#include <string>
#include <string_view>

namespace platform::terminal
{

// The character set at the end of the name of a POSIX locale: "KOI8-R" of "ru_RU.KOI8-R". Empty for
// UTF-8, and when the name has none: most terminals show UTF-8, also when no locale was set.
[[nodiscard]] std::string CharacterSetOf(std::string_view localeName);

// `utf8` in that character set, with a "?" for each character that it lacks: the UTF-8 bytes of
// such a character could control the terminal. Not changed: the whole text when `characterSet` is
// empty or not known, and a byte that is not part of valid UTF-8 (the name of a file may be in that
// character set).
[[nodiscard]] std::string TextIn(const std::string &characterSet, std::string_view utf8);

// The same for the locale of this process.
[[nodiscard]] std::string ForTerminal(std::string_view utf8);

} // namespace platform::terminal

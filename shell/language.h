// shell/language.h - the texts of the one active language file, TheGlobals().LanguageFilePath. The
// English text is always the default in the code. Texts are UTF-8. Nothing is cached: each lookup
// reads the file, so that a translator's edit shows at the next window. Nothing fails: a missing,
// empty or unreadable file makes every lookup return its default.
#pragma once

#include <string>
#include <string_view>

namespace shell
{

// The text for `key` in `section`, blanks at both ends cut; `defaultText`, cut likewise, when the
// file lacks it. A key with an empty value gives the empty text. Marks such as "$Field$" and "%0A"
// are in the result as they are.
std::string GetLanguageText(std::string_view defaultText, std::string_view key,
                            std::string_view section);

// The value as the reader gives it (platform/inireader.h), cut to 199 characters, its trailing NULs
// gone; `defaultText` whole when the file has no such key.
std::string ReadIniValue(std::string_view section, std::string_view key,
                         std::string_view defaultText);

// `text` without its trailing NUL characters.
std::string TrimNull(std::string_view text);

// The caption of the tree group of a field: "By Title" in English.
std::string GetFolderGroupCaption(std::string_view field);

// `text` with each "%0A" turned into a carriage return, for the keys whose texts have several
// lines.
std::string WithLineBreaks(std::string_view text);

} // namespace shell

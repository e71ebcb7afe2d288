// shell/language.h - the texts of the language file in use, TheGlobals().LanguageFilePath. The
// English text is the default and is in the code. Texts are UTF-8. Nothing is kept in memory: each
// call reads the file, so that a translator sees a change in the next window. Nothing fails: when
// the file is missing, empty or cannot be read, each call returns its default.
#pragma once

#include <string>
#include <string_view>

namespace shell
{

// The text of `key` in `section`, without blanks at both ends. When the file does not have the key,
// it is `defaultText`, also without blanks at both ends. A key without a value gives the empty
// text. Marks such as "$Field$" and "%0A" are not replaced.
std::string GetLanguageText(std::string_view defaultText, std::string_view key,
                            std::string_view section);

// The value as the reader returns it (platform/inireader.h), at most 199 characters, without NULs
// at its end. `defaultText`, unchanged, when the file has no such key.
std::string ReadIniValue(std::string_view section, std::string_view key,
                         std::string_view defaultText);

// `text` without the NUL characters at its end.
std::string TrimNull(std::string_view text);

// The caption of a field's group in the tree: "By Title" in English.
std::string GetFolderGroupCaption(std::string_view field);

// `text` with each "%0A" replaced by a carriage return: for texts of several lines.
std::string WithLineBreaks(std::string_view text);

} // namespace shell

#include "shell/language.h"

#include "platform/inireader.h"
#include "runtime/text.h"
#include "shell/globals.h"

namespace shell
{

namespace
{

constexpr std::size_t kMaxValueCharacters = 199; // the reader's buffer of 200, less its final NUL

} // namespace

std::string TrimNull(std::string_view text)
{
    return std::string(runtime::StripTrailingNulls(text));
}

std::string ReadIniValue(std::string_view section, std::string_view key,
                         std::string_view defaultText)
{
    const auto value =
        platform::ReadIniText(TheGlobals().LanguageFilePath, section, key, kMaxValueCharacters);
    return TrimNull(value ? std::string_view(*value) : defaultText);
}

std::string GetLanguageText(std::string_view defaultText, std::string_view key,
                            std::string_view section)
{
    return std::string(runtime::Trim(ReadIniValue(section, key, defaultText)));
}

std::string GetFolderGroupCaption(std::string_view field)
{
    const std::string group = GetLanguageText("By $Field$", "ByField", "FolderGroups");
    return runtime::Replace(group, "$Field$", GetLanguageText(field, field, "ColumnHeaders"));
}

std::string WithLineBreaks(std::string_view text)
{
    return runtime::Replace(text, "%0A", "\r");
}

} // namespace shell

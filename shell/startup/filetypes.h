// shell/startup/filetypes.h - the program's file types, as the desktop's registry gets them. No
// state.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace shell
{

// What the registry gets for one type, in the order in which it is written: the extension with the
// program id, the program id with the description, its open command, and, where an icon number is
// given, its icon: the command line without its part "%1" in quotation marks, ", " and the number.
std::vector<std::pair<std::string, std::string>>
PlanAssociation(std::string_view extension, std::string_view programId,
                std::string_view description, std::string_view commandLine,
                std::optional<int> iconNumber = std::nullopt);

// Writes that to the registry. Errors: none; a registry that cannot be written has no such type.
void SetAssociation(std::string_view extension, std::string_view programId,
                    std::string_view description, std::string_view commandLine,
                    std::optional<int> iconNumber = std::nullopt);

// Registers ".qlt" (language files) and then ".qrp" (integrity reports, opened by a program of
// their own in the program's folder).
void RegisterFileTypes();

} // namespace shell

// shell/startup/filetypes.h - registers the program's file types with the desktop. No state.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace shell
{

// The values to write to the registry for one type, in their order: the program id for the
// extension, the description for the program id, its open command, and, when there is an icon
// number, its icon: the command line without `"%1"`, then ", " and the number.
std::vector<std::pair<std::string, std::string>>
PlanAssociation(std::string_view extension, std::string_view programId,
                std::string_view description, std::string_view commandLine,
                std::optional<int> iconNumber = std::nullopt);

// Writes these values. Errors: none; a registry that cannot be written does not get the type.
void SetAssociation(std::string_view extension, std::string_view programId,
                    std::string_view description, std::string_view commandLine,
                    std::optional<int> iconNumber = std::nullopt);

// Registers ".qlt" (language files), then ".qrp" (integrity reports, which another program in the
// program's folder opens).
void RegisterFileTypes();

} // namespace shell

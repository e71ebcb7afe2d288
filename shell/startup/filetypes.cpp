#include "shell/startup/filetypes.h"

#include "platform/disk/filetypes.h"
#include "platform/machine.h"
#include "runtime/text.h"
#include "shell/apppath.h"

#include <cassert>

namespace shell
{

std::vector<std::pair<std::string, std::string>> PlanAssociation(std::string_view extension,
                                                                 std::string_view programId,
                                                                 std::string_view description,
                                                                 std::string_view commandLine,
                                                                 std::optional<int> iconNumber)
{
    const std::string id(programId);
    std::vector<std::pair<std::string, std::string>> pairs = {
        {std::string(extension), id},
        {id, std::string(description)},
        {id + "\\shell\\Open\\command", std::string(commandLine)},
    };
    if (iconNumber)
        pairs.emplace_back(id + "\\DefaultIcon", runtime::Replace(commandLine, "\"%1\"", "") +
                                                     ", " + std::to_string(*iconNumber));
    return pairs;
}

void SetAssociation(std::string_view extension, std::string_view programId,
                    std::string_view description, std::string_view commandLine,
                    std::optional<int> iconNumber)
{
    platform::FileTypes *registry = platform::TheMachine().fileTypes;
    assert(registry != nullptr);
    registry->WritePairs(
        PlanAssociation(extension, programId, description, commandLine, iconNumber));
}

void RegisterFileTypes()
{
    SetAssociation(".qlt", "Quenlin.LanguageFile", "Quenlin Language File",
                   "\"notepad.exe\" \"%1\"");
    SetAssociation(".qrp", "Quenlin.IntegrityReport", "Quenlin Integrity Report",
                   "\"" + AppFile("Reportolio.exe") + "\" \"%1\"");
}

} // namespace shell

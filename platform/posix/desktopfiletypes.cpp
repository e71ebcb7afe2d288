#include "platform/posix/desktopfiletypes.h"

#include "platform/disk/wholefiles.h"
#include "platform/spawn.h"
#include "runtime/text.h"

#include <unistd.h>

#include <utility>

namespace platform::posix
{

namespace
{

constexpr std::string_view kCommandKey = "\\shell\\Open\\command";
constexpr std::size_t kMaxFileBytes = 1u << 20;
constexpr std::int64_t kDatabaseTimeoutMs = 10'000;

std::string XmlText(std::string_view text)
{
    std::string result = runtime::Replace(text, "&", "&amp;");
    result = runtime::Replace(result, "<", "&lt;");
    result = runtime::Replace(result, ">", "&gt;");
    return runtime::Replace(result, "\"", "&quot;");
}

std::string LowerAscii(std::string_view text)
{
    std::string result(text);
    for (char &c : result)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return result;
}

// The text between the first two quotation marks of a command line.
std::string ProgramOf(std::string_view commandLine)
{
    const auto parts = runtime::Split(commandLine, "\"");
    return parts.size() >= 3 ? parts[1] : std::string();
}

std::string ValueOf(const std::vector<std::pair<std::string, std::string>> &pairs,
                    std::string_view key)
{
    for (const auto &[name, value] : pairs)
        if (name == key)
            return value;
    return {};
}

// Writes `text` to the file, or removes the file when the text is empty. Returns: whether that
// changed anything.
bool WriteOrRemove(const std::string &folder, const std::string &name, const std::string &text)
{
    const std::string path = folder + "/" + name;
    const auto old = ReadRegularFile(path, kMaxFileBytes);
    if (text.empty())
        return old && unlink(path.c_str()) == 0;
    if (old == text)
        return false;
    return MakeFolders(folder) && ReplaceFile(path, text);
}

} // namespace

std::string FormatMimePackage(std::string_view name, std::string_view extension,
                              std::string_view description)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
           "  <mime-type type=\"" +
           XmlText(name) + "\">\n    <comment>" + XmlText(description) +
           "</comment>\n    <sub-class-of type=\"text/plain\"/>\n    <glob pattern=\"*" +
           XmlText(extension) + "\"/>\n  </mime-type>\n</mime-info>\n";
}

std::string FormatDesktopEntry(std::string_view mimeName, std::string_view description,
                               std::string_view program)
{
    // In the quotation marks of Exec these four characters need a back-slash before them, each
    // back-slash of a value is doubled once more, and a percent sign is doubled.
    std::string quoted;
    for (const char c : program) {
        if (c == '"' || c == '`' || c == '$')
            quoted.append("\\\\");
        if (c == '\\')
            quoted.append("\\\\\\");
        quoted.push_back(c);
        if (c == '%')
            quoted.push_back(c);
    }
    return "[Desktop Entry]\nType=Application\nName=" + std::string(description) + "\nExec=\"" +
           quoted + "\" %f\nMimeType=" + std::string(mimeName) + ";\nNoDisplay=true\n";
}

DesktopFileTypes::DesktopFileTypes(std::string dataHome) : m_dataHome(std::move(dataHome)) {}

void DesktopFileTypes::WritePairs(const std::vector<std::pair<std::string, std::string>> &pairs)
{
    if (pairs.empty())
        return;
    const auto &[extension, programId] = pairs.front();
    const std::string description = ValueOf(pairs, programId);
    const std::string command = ValueOf(pairs, programId + std::string(kCommandKey));
    const std::string name = LowerAscii(runtime::Replace(programId, ".", "-"));
    const std::string mimeName = "application/x-" + name;

    if (WriteOrRemove(m_dataHome + "/mime/packages", name + ".xml",
                      FormatMimePackage(mimeName, extension, description)))
        RunQuietly({"update-mime-database", m_dataHome + "/mime"}, kDatabaseTimeoutMs);

    const std::string wanted = ProgramOf(command);
    const std::string program = wanted.empty() ? std::string() : FindProgram(wanted);
    if (WriteOrRemove(m_dataHome + "/applications", name + ".desktop",
                      program.empty() ? std::string()
                                      : FormatDesktopEntry(mimeName, description, program)))
        RunQuietly({"update-desktop-database", m_dataHome + "/applications"}, kDatabaseTimeoutMs);
}

} // namespace platform::posix

#include "catalogue/regeneration/integrityreport.h"

#include "runtime/error.h"
#include "runtime/text.h"
#include "shell/globals.h"

#include <cerrno>

namespace catalogue
{

IntegrityReport::IntegrityReport(const std::string &path) : m_path(path), m_file(path)
{
    if (!m_file)
        throw runtime::FileError(errno, m_path);
    Write({"   This file was created with Quenlin (By Orvald Tamsin)", "",
           "   If you have any suggestion, comment, bug report, or whatever,",
           "you can send me an email to " + std::string(shell::kSupportAddress),
           std::string(71, '-'), "", ""});
}

bool IntegrityReport::LogTagFailure(std::string_view path, bool hasID3v1, bool hasID3v2)
{
    if (hasID3v1 && hasID3v2)
        return false;
    const std::string name = "  " + runtime::ShownText(path);
    if (!hasID3v1 && !hasID3v2)
        Write({name, "  Quenlin could not get any information for this file.", ""});
    else if (hasID3v1)
        Write({name, "  Quenlin could not get the ID3v2 information", ""});
    else
        Write({name, "  Quenlin could not get the ID3v1 information", ""});
    return true;
}

void IntegrityReport::Close(bool succeeded, std::string_view folder, std::string_view created)
{
    if (succeeded)
        Write({"  Quenlin succeded getting the information of each file"});
    Write({"", "", "Directory: " + runtime::ShownText(folder),
           "Date of creation: " + std::string(created)});
}

void IntegrityReport::Write(std::initializer_list<std::string_view> lines)
{
    m_bytes.clear();
    for (const std::string_view line : lines)
        m_bytes.append(line).append("\r\n");
    if (!m_file.Append(m_bytes))
        throw runtime::FileError(errno, m_path);
}

} // namespace catalogue

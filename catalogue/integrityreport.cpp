#include "catalogue/integrityreport.h"

#include "platform/posix/files.h"
#include "runtime/error.h"
#include "shell/apppath.h"
#include "shell/globals.h"

#include <cerrno>
#include <utility>

namespace catalogue
{

namespace
{

constexpr std::size_t kMaxPendingBytes = 64 * 1024;

void WriteOut(const std::string &path, std::string_view bytes, bool afresh)
{
    if (!platform::posix::AppendToFile(path, bytes, afresh))
        throw runtime::FileError(errno);
}

} // namespace

std::string ReportPath()
{
    return shell::AppFile(kReportName);
}

IntegrityReport::IntegrityReport() : m_path(ReportPath())
{
    AppendLine("   This file was created with Quenlin (By Orvald Tamsin)");
    AppendLine("");
    AppendLine("   If you have any suggestion, comment, bug report, or whatever,");
    AppendLine("you can send me an email to " + std::string(shell::kSupportAddress));
    AppendLine(std::string(71, '-'));
    AppendLine("");
    AppendLine("");
    WriteOut(m_path, std::exchange(m_pending, {}), true);
}

IntegrityReport::~IntegrityReport()
{
    try {
        Flush();
    } catch (const runtime::RuntimeError &) {
        m_pending.clear(); // the run ends already, with the error that brought it here
    }
}

bool IntegrityReport::LogTagFailure(std::string_view path, bool hasID3v1, bool hasID3v2)
{
    if (hasID3v1 && hasID3v2)
        return false;
    AppendLine("  " + std::string(path));
    if (!hasID3v1 && !hasID3v2)
        AppendLine("  Quenlin could not get any information for this file.");
    else if (hasID3v1)
        AppendLine("  Quenlin could not get the ID3v2 information");
    else
        AppendLine("  Quenlin could not get the ID3v1 information");
    AppendLine("");
    if (m_pending.size() >= kMaxPendingBytes)
        Flush();
    return true;
}

void IntegrityReport::Close(bool succeeded, std::string_view folder, std::string_view created)
{
    if (succeeded)
        AppendLine("  Quenlin succeded getting the information of each file");
    AppendLine("");
    AppendLine("");
    AppendLine("Directory: " + std::string(folder));
    AppendLine("Date of creation: " + std::string(created));
    Flush();
}

void IntegrityReport::Flush()
{
    if (!m_pending.empty())
        WriteOut(m_path, std::exchange(m_pending, {}), false);
}

void IntegrityReport::AppendLine(std::string_view line)
{
    m_pending.append(line).append("\r\n");
}

} // namespace catalogue

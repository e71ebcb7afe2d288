// catalogue/integrityreport.h - the report that a regeneration writes into the program's folder: a
// text file that names each file whose tags could not be read. Paths stand in it byte for byte,
// lines end in carriage return and line feed.
#pragma once

#include <string>
#include <string_view>

namespace catalogue
{

// The report's name in the program's folder; the misspelling is the name.
inline constexpr std::string_view kReportName = "Quenlin - MP3s' Intregity Report.qrp";

// The report's full path.
std::string ReportPath();

// One report under way. What is written collects for a moment, since every second file may have an
// entry; Flush, and the end of the object, bring it to the file.
class IntegrityReport
{
public:
    // Truncates the file and writes the heading. Errors: FileError when that fails.
    IntegrityReport();
    ~IntegrityReport();
    IntegrityReport(const IntegrityReport &) = delete;
    IntegrityReport &operator=(const IntegrityReport &) = delete;

    // Appends the entry for a file that lacks one tag or both; true when it lacks one.
    // Errors: as Flush.
    bool LogTagFailure(std::string_view path, bool hasID3v1, bool hasID3v2);

    // The closing lines; `succeeded` puts the line of success in front. `folder` is the root of the
    // walk, `created` the date and time of day. Errors: as Flush.
    void Close(bool succeeded, std::string_view folder, std::string_view created);

    // Errors: FileError when the file cannot be written.
    void Flush();

private:
    void AppendLine(std::string_view line);

    std::string m_path;
    std::string m_pending; // lines not yet in the file
};

} // namespace catalogue

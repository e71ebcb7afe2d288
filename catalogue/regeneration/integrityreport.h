// catalogue/regeneration/integrityreport.h - the report that a regeneration writes into the
// program's folder: a text file that names each file whose tags could not be read. Paths are
// in it byte for byte, lines end in carriage return and line feed.
#pragma once

#include "platform/disk/wholefiles.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace catalogue
{

// A report that is being written. Each entry is in the file when the call that writes it returns.
class IntegrityReport
{
public:
    // Truncates the file and writes the heading. Errors: FileError with its path when that fails.
    explicit IntegrityReport(const std::string &path);

    // Appends the entry for a file that lacks one tag or both; true when it lacks one.
    // Errors: FileError with its path when it cannot be written.
    bool LogTagFailure(std::string_view path, bool hasID3v1, bool hasID3v2);

    // The closing lines; with the line of success before them when `succeeded` is true. `folder` is
    // the root of the walk, `created` the date and time of day. Errors: as LogTagFailure.
    void Close(bool succeeded, std::string_view folder, std::string_view created);

private:
    void Write(std::initializer_list<std::string_view> lines);

    std::string m_path;
    platform::Appender m_file;
    std::string m_bytes; // of one entry; a member so that its memory is used again
};

} // namespace catalogue

// platform/posix/desktopfiletypes.h - file types in the user's MIME and desktop databases.
#pragma once

#include "platform/disk/filetypes.h"

#include <string>
#include <string_view>

namespace platform::posix
{

// A type becomes a MIME type, a kind of text/plain with the extension as its pattern and the
// description as its comment: a double click opens it in the user's editor. If the program of its
// open command can be found, that program is registered for it too. The databases are rebuilt
// (update-mime-database, update-desktop-database) only when one of their files changed.
// Source: the shared MIME-info and desktop entry specifications of freedesktop.org.
class DesktopFileTypes : public FileTypes
{
public:
    // `dataHome`: the user's folder for data ($XDG_DATA_HOME); need not exist.
    explicit DesktopFileTypes(std::string dataHome);

    void WritePairs(const std::vector<std::pair<std::string, std::string>> &pairs) override;

private:
    std::string m_dataHome;
};

// The package file of a MIME type: `name` "application/x-...", `extension` with its point.
std::string FormatMimePackage(std::string_view name, std::string_view extension,
                              std::string_view description);

// The desktop entry that opens files of that MIME type with `program`.
std::string FormatDesktopEntry(std::string_view mimeName, std::string_view description,
                               std::string_view program);

} // namespace platform::posix

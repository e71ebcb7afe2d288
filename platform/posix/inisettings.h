// platform/posix/inisettings.h - the settings store as INI files: TITLE/settings.ini under the
// user's folder for configurations.
#pragma once

#include "platform/inidocument.h"
#include "platform/settingsstore.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace platform::posix
{

// A read returns the value that this process has written, else the value in the file as it is now.
// Writes wait for Flush, which takes the lock file beside the file, reads the file again, changes
// the keys that this process wrote and no others, and renames the new file over the old one: a
// reader never sees half a file, and no process loses the keys of another. The file is not flushed
// to the disk.
//
// A file that exists but cannot be read is never replaced: what is written then is kept for this
// run only. A title must be usable as the name of a folder.
class IniSettings final : public SettingsStore
{
public:
    // `configHome`: the folder of all programs' configurations; need not exist.
    explicit IniSettings(std::string configHome);
    ~IniSettings() override; // flushes

    std::string Read(std::string_view title, std::string_view section, std::string_view key,
                     std::string_view defaultText) override;
    void Write(std::string_view title, std::string_view section, std::string_view key,
               std::string_view text) override;
    void Delete(std::string_view title, std::string_view section, std::string_view key) override;
    std::string FilePath(std::string_view title) override { return PathOf(title); }
    void Flush() override;

    // Called once for each title when its file cannot be written; `why` is an errno, `path` the
    // file or its lock file. Each Flush tries again, and the values are kept for this run.
    std::function<void(const std::string &path, int why)> onCannotStore;

    // Called at the first write after a Flush, so that an event loop can call Flush at the end of
    // its turn. May be empty.
    std::function<void()> onHeldBack;

private:
    struct File; // one title's file: its last known text, and the writes that wait for Flush

    std::string PathOf(std::string_view title) const;
    File &FileOf(std::string_view title);
    std::optional<std::string> Current(std::string_view title, std::string_view section,
                                       std::string_view key);
    void HoldBack(std::string_view title, std::string_view section, std::string_view key,
                  std::optional<std::string> text);

    std::string m_configHome;
    std::map<std::string, std::unique_ptr<File>, std::less<>> m_files; // by title
};

} // namespace platform::posix

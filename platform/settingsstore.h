// platform/settingsstore.h - the per-user store of texts, addressed by title, section and key.
#pragma once

#include <string>
#include <string_view>

namespace platform
{

struct SettingsStore {
    virtual ~SettingsStore() = default;

    // The stored text (UTF-8); `defaultText` when the key is missing or the store cannot be read.
    virtual std::string Read(std::string_view title, std::string_view section, std::string_view key,
                             std::string_view defaultText) = 0;

    // Stores `text`. Writing a value that is there already does nothing.
    virtual void Write(std::string_view title, std::string_view section, std::string_view key,
                       std::string_view text) = 0;

    // Removes the key. Errors: kInvalidCall (runtime/error.h) when it is missing.
    virtual void Delete(std::string_view title, std::string_view section, std::string_view key) = 0;

    // The path of the file that holds the title's settings; empty where it is no file.
    virtual std::string FilePath(std::string_view /*title*/) { return {}; }

    // Writes the changes to the file, merged with those of other processes.
    // Called at the end of an event turn and at the process's end. Errors: none; a store that
    // cannot be written keeps its values for this run.
    virtual void Flush() = 0;
};

} // namespace platform

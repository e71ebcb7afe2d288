// platform/disk/filetypes.h - the desktop's registry of file types: four key/value pairs for a
// type.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace platform
{

struct FileTypes {
    virtual ~FileTypes() = default;

    // Writes the pairs (key, value) in their order; the platform translates them. Writing what
    // is there already changes no file. Errors: none; a desktop without a registry, or one
    // that cannot be written, registers nothing.
    virtual void WritePairs(const std::vector<std::pair<std::string, std::string>> &pairs) = 0;
};

} // namespace platform

// shell/preferences/folderlook.h - finds out for the Preferences window whether a folder can be
// read. Events run while the disk does not answer; after a while the folder counts as not readable.
#pragma once

#include "platform/disk/folders.h"
#include "platform/waiting.h"

#include <cstdint>
#include <functional>
#include <string>

namespace shell
{

// What the caller does when a wait is so long that the user notices it. Empty functions do nothing.
struct LongWait {
    std::function<void()> begin, end;
    std::function<bool()> isEnded; // returns true to end the wait
};

// Whether the folder can be read. Waits at most `limitMs`; the end of the program ends the wait.
// Returns: NoAnswer when the wait was ended or took too long.
platform::FolderAnswer ProbeFolder(const std::string &path, const LongWait &wait = {},
                                   std::int64_t limitMs = platform::kDiskLimitMs);

// The folder that the settings hold; empty when none has been stored.
std::string StoredFolder();

// The folder that is chosen when the window opens. `isSubstitute`: the stored folder is missing and
// this one takes its place; it does not count as the user's choice.
struct StartFolder {
    std::string path;
    bool isSubstitute = false;
};

// The stored folder, or its nearest parent that exists. When no folder is stored: the user's music
// folder, else the home folder, else the root; when the catalogue is empty, this counts as a new
// user's choice.
StartFolder FindStartFolder();

} // namespace shell

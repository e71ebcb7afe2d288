// platform/machine.h - the ports in use. app/ fills them in once at the start; a test sets the
// ports that it needs and restores the former ones.
#pragma once

#include "platform/disk/files.h"
#include "platform/systeminfo.h"

#include <functional>
#include <memory>

namespace platform
{

struct Clock;
struct Desktop;
struct Drives;
struct FileTypes;
struct Folders;
struct Player;
struct SettingsStore;
struct Web;
struct Windows;

// The ports are owned by app/ (or the test) and outlive their use. Using a port that is null is a
// programming error.
struct Machine {
    Desktop *desktop = nullptr;
    SettingsStore *settings = nullptr;
    FileTypes *fileTypes = nullptr;
    Drives *drives = nullptr;
    Folders *folders = nullptr;
    Clock *clock = nullptr;
    Player *player = nullptr;      // null where no player can be found
    Files *files = &SystemFiles(); // a test may put its own
    SystemInfo *system = &ThisSystem();
    Web *web = nullptr;         // null in a terminal, and in a build without it
    Windows *windows = nullptr; // null in a terminal

    // Called before the program waits for the user (BeginWait, platform/waiting.h). app/ sets it to
    // catalogue::CloseOpenGroup, which unlocks the catalogue.
    std::function<void()> beginWait;
};

// The machine in use: the single place where the ports are kept.
Machine &TheMachine();

// Three of its ports, which are never null where they are used.
inline Desktop &TheDesktop()
{
    return *TheMachine().desktop;
}
inline Files &TheFiles()
{
    return *TheMachine().files;
}
inline Folders &TheFolders()
{
    return *TheMachine().folders;
}

} // namespace platform

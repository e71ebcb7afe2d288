// platform/player.h - what the program asks of the machine around the player, the other program
// that plays the songs: its window, its messages, its keys, its entry in the registry, its start.
// Only raw calls; player/winampmod.h says what they mean. Paths and texts are bytes.
// The player may be closed, stopped or started at any time: a call does not fail then, it returns
// 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace platform
{

using WindowHandle = std::uint32_t; // 0 = no window

// The numbers of the messages: defined by the player's own interface.
inline constexpr std::uint32_t kWmCommand = 273; // wParam: a menu id, lParam: 0
inline constexpr std::uint32_t kWmUser = 1024;   // wParam: the argument, lParam: the request

// Requests of kWmUser.
inline constexpr std::int32_t kAskState = 104;      // 0 stopped, 1 playing, 3 paused
inline constexpr std::int32_t kAskTime = 105;       // argument 0: position in ms; 1: length in s
inline constexpr std::int32_t kSeek = 106;          // argument: ms
inline constexpr std::int32_t kWritePlaylist = 120; // writes WINAMP.m3u; -1 = failed
inline constexpr std::int32_t kSelectEntry = 121;   // argument: zero-based index
inline constexpr std::int32_t kAskListLength = 124; // entries in the list
inline constexpr std::int32_t kAskSelected = 125;   // zero-based index; -1 = none

// Menu ids of kWmCommand.
inline constexpr std::int32_t kPreviousTrack = 40044;
inline constexpr std::int32_t kPlay = 40045;
inline constexpr std::int32_t kPause = 40046;
inline constexpr std::int32_t kStop = 40047;
inline constexpr std::int32_t kNextTrack = 40048;

inline constexpr std::uint32_t kEnqueueTag = 100; // of copied data: a path with its closing zero

inline constexpr std::uint32_t kClassesRoot = 0x80000000; // a root of the registry
inline constexpr std::uint32_t kKeyUp = 2;                // flag of KeyEvent: a release

struct Player {
    virtual ~Player() = default;

    // The window of this class, whatever its title; 0 when there is none, or when the player does
    // not answer.
    virtual WindowHandle FindWindow(std::string_view className) = 0;

    // Sends a message and waits for the answer, 100 ms at most. A window that is 0 or does not
    // exist any more, and a request that the player does not know, answer 0.
    virtual std::int32_t SendMessage(WindowHandle window, std::uint32_t message,
                                     std::int32_t wParam, std::int32_t lParam) = 0;

    // Sends copied data: a tag and bytes (a path with its closing zero), wParam 0. Returns when the
    // entry is in the player's list; events run meanwhile (CancelWaits ends the wait).
    // Returns: the answer; 0 also when the wait was ended.
    // Errors:  kFileNotFound, with the path in the words, when the player takes no such file.
    virtual std::int32_t SendCopyData(WindowHandle window, std::uint32_t tag,
                                      std::string_view bytes) = 0;

    virtual WindowHandle GetForegroundWindow() = 0;
    virtual void SetForegroundWindow(WindowHandle window) = 0;

    // The key that types a character: its code in the low byte, the shift state in the bits 8
    // (Shift), 9 (Control) and 10 (Alt).
    virtual std::int16_t KeyOfCharacter(unsigned char character) = 0;
    virtual std::uint32_t ScanCodeOfKey(std::uint32_t key) = 0;
    virtual void KeyEvent(std::uint8_t key, std::uint8_t scanCode, std::uint32_t flags) = 0;

    // Opens a key below a root (or a key) with the access value 1 (query). Returns: 0 and the
    // opened key, or an error number.
    virtual std::uint32_t OpenKey(std::uint32_t root, std::string_view subkey, std::uint32_t access,
                                  std::uint32_t &key) = 0;
    // Reads a value, the key's own one for an empty name, into a buffer of `size` bytes. Returns:
    // 0, the value's type (1 = text) and its size with its closing zero; or an error number, as
    // when the buffer is too small.
    virtual std::uint32_t QueryValue(std::uint32_t key, std::string_view valueName,
                                     std::uint32_t &type, char *buffer, std::uint32_t &size) = 0;
    virtual void CloseKey(std::uint32_t key) = 0;

    // Starts a program; returns before the program answers. If it is running already, but does not
    // answer yet, it is not started again.
    // Errors: kFileNotFound, in words that name the player and how to install it.
    virtual void StartProgram(const std::string &program, int windowStyle) = 0;

    // The bytes of a file. Errors: those of runtime::FileError.
    virtual std::string ReadFile(const std::string &path) = 0;

    // Reads the player's whole list, which may take time; called before a path is searched in it.
    // Events run meanwhile (CancelWaits ends the wait).
    virtual void LearnPlaylist() {}

    // Whether the player is running, but did not answer the last question in time: results of 0
    // since then are not its answers.
    virtual bool IsSilent() { return false; }

    // Between BeginBatch and EndBatch the port may ask the player once, at the first question, and
    // answer all questions from that: one message is cheaper than several. An order in between ends
    // this. Such calls may be nested.
    virtual void BeginBatch() {}
    virtual void EndBatch() {}

    // What the user calls the player ("Audacious").
    virtual std::string Name() = 0;
};

} // namespace platform

// shell/settings.h - the program's memory apart from the catalogue: a per-user store of texts by
// section and key, under the title "Quenlin". Each read asks the store; no state here.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace shell
{

inline constexpr std::string_view kPreferences = "Preferences";
inline constexpr std::string_view kWindowsSize = "Windows Size";
inline constexpr std::string_view kLastSafeConfiguration = "Last Safe Configuration";

// One key of section "Preferences", with the text that a missing key means. Flags hold "1" or
// "0"; lengths are twips.
struct Preference {
    std::string_view key;
    std::string_view defaultText;
};

// Every key of section "Preferences".
std::span<const Preference> Preferences();

// The stored text (UTF-8; paths byte for byte); `defaultText` when the key is missing.
std::string GetSetting(std::string_view section, std::string_view key,
                       std::string_view defaultText = {});

// Stores the text. Writing what is there already does nothing.
void SaveSetting(std::string_view section, std::string_view key, std::string_view text);

// Removes the key. Errors: kInvalidCall (runtime/error.h) when it is missing.
void DeleteSetting(std::string_view section, std::string_view key);

// A key of Preferences(), with the default that is there; another key is a programming error.
std::string GetPreference(std::string_view key);

// The same as a flag: any number but 0 is true. For a text that is no number the default counts,
// and the user is told once in a run, with the file.
bool GetFlagPreference(std::string_view key);

// The same as a number of 32 bits, rounded half to even.
std::int32_t GetNumberPreference(std::string_view key);

// Puts back what the two remember of what they told.
void ForgetToldSettings();

// Stores a preference: a text, a flag as "1" or "0", a number in decimal digits.
void SavePreference(std::string_view key, std::string_view text);
void SaveFlagPreference(std::string_view key, bool value);
void SaveNumberPreference(std::string_view key, std::int32_t value);

// Tells the user that what the program remembers is not stored: `path` and why (an errno).
void ShowSettingsFailure(const std::string &path, int why);

} // namespace shell

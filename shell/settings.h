// shell/settings.h - what the program remembers besides the catalogue: texts by section and key,
// for each user, under the title "Quenlin". Each call reads the store. State: only which unusable
// values have been reported.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace shell
{

inline constexpr std::string_view kPreferences = "Preferences";
inline constexpr std::string_view kWindowsSize = "Windows Size";
inline constexpr std::string_view kLastSafeConfiguration = "Last Safe Configuration";

// The stored text (UTF-8; paths byte for byte); `defaultText` when the key is missing.
std::string GetSetting(std::string_view section, std::string_view key,
                       std::string_view defaultText = {});

// Stores the text. Does nothing when the store has the same text.
void SaveSetting(std::string_view section, std::string_view key, std::string_view text);

// Removes the key. Errors: kInvalidCall (runtime/error.h) when it is missing.
void DeleteSetting(std::string_view section, std::string_view key);

// The text of a key of the section "Preferences", or its default; a length is in twips. A key that
// the program does not have is a programming error.
std::string GetPreference(std::string_view key);

// The same as a flag: any number except 0 is true. When the text is not a number, the default is
// used, and a box reports this once in a run, with the name of the file.
bool GetFlagPreference(std::string_view key);

// The same as a number of 32 bits; a half is rounded to the even number.
std::int32_t GetNumberPreference(std::string_view key);

// Forgets which settings these two have reported.
void ForgetReportedSettings();

// Stores a preference: a text, a flag as "1" or "0", a number in decimal digits.
void SavePreference(std::string_view key, std::string_view text);
void SaveFlagPreference(std::string_view key, bool value);
void SaveNumberPreference(std::string_view key, std::int32_t value);

// Section "Extras", key "UnicodeTags": whether tags are read and written by their frames and
// encodings; false until the user has chosen it. Saving it takes effect at once.
bool IsUnicodeTagsOn();
void SaveUnicodeTags(bool on);

// Reports that the settings cannot be stored: the file `path` and the reason (an errno).
void ShowSettingsFailure(const std::string &path, int why);

} // namespace shell

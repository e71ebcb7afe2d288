#include "shell/settings.h"

#include "platform/desktop.h"
#include "platform/machine.h"
#include "platform/settingsstore.h"
#include "runtime/error.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "shell/globals.h"
#include "shell/language.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <set>

namespace shell
{

namespace
{

constexpr std::string_view kExtras = "Extras";
constexpr std::string_view kUnicodeTags = "UnicodeTags";

struct Preference {
    std::string_view key;
    std::string_view defaultText; // used when the key is missing
};

// All keys of the section "Preferences". Flags are "1" or "0"; lengths are in twips.
constexpr std::array kPreferenceTable = {
    Preference{"Language", ""},
    Preference{"Initial TV Width", "3000"},
    Preference{"MP3 Directory", "C:\\"},
    Preference{"Back Up Files", "1"},
    Preference{"Update DB after editing", "1"},
    Preference{"Show Lyrics automatically", "1"},
    Preference{"Delete Before Append", "0"},
    Preference{"WebStyle", "1"},
    Preference{"AutoCheckNewerVersion", "0"},
    Preference{"RefreshAtStartUp", "0"},
    Preference{"Load Title", "1"},
    Preference{"Load Artist", "1"},
    Preference{"Load Album", "1"},
    Preference{"Load Year", "1"},
    Preference{"Load Comment", "1"},
    Preference{"Load Genre", "1"},
    Preference{"Load List", "1"},
    Preference{"Load Path", "1"},
    Preference{"Show Tips at Startup", "1"},
    Preference{"Left", "45"},
    Preference{"Top", "465"},
    Preference{"Width", "12000"},
    Preference{"Height", "7350"},
};

platform::SettingsStore &Store()
{
    assert(platform::TheMachine().settings != nullptr);
    return *platform::TheMachine().settings;
}

struct State {
    std::set<std::string> reported; // the settings with unusable values, "key=text"
} state;

std::string_view DefaultOf(std::string_view key)
{
    const auto found = std::ranges::find(kPreferenceTable, key, &Preference::key);
    assert(found != kPreferenceTable.end());
    return found->defaultText;
}

void ReportBadValue(const std::string &line, std::string_view defaultText)
{
    platform::Desktop *desktop = platform::TheMachine().desktop;
    if (desktop == nullptr || !state.reported.insert(line).second)
        return;
    desktop->MessageBox(runtime::Replace(GetLanguageText("A setting is no number. The program goes "
                                                         "on as if it were $Default$.",
                                                         "SettingIsNoNumber", "Status"),
                                         "$Default$", defaultText) +
                            "\r\r" + line + "\r" + Store().FilePath(kApplicationTitle),
                        platform::Buttons::Ok, kApplicationTitle, platform::BoxIcon::Exclamation);
}

// A preference, converted by `convert`. When it fails for the stored text, the default is converted
// instead.
template <class Value>
Value Converted(std::string_view key, Value (*convert)(std::string_view))
{
    const std::string text = GetPreference(key);
    try {
        return convert(text);
    } catch (const runtime::RuntimeError &) {
        ReportBadValue(std::string(key) + "=" + text, DefaultOf(key));
        return convert(DefaultOf(key));
    }
}

} // namespace

std::string GetSetting(std::string_view section, std::string_view key, std::string_view defaultText)
{
    return Store().Read(kApplicationTitle, section, key, defaultText);
}

void SaveSetting(std::string_view section, std::string_view key, std::string_view text)
{
    Store().Write(kApplicationTitle, section, key, text);
}

void DeleteSetting(std::string_view section, std::string_view key)
{
    Store().Delete(kApplicationTitle, section, key);
}

std::string GetPreference(std::string_view key)
{
    return GetSetting(kPreferences, key, DefaultOf(key));
}

bool GetFlagPreference(std::string_view key)
{
    return Converted(key, runtime::TextToFlag);
}

std::int32_t GetNumberPreference(std::string_view key)
{
    return Converted(key, runtime::TextToInt32);
}

void SavePreference(std::string_view key, std::string_view text)
{
    SaveSetting(kPreferences, key, text);
}

void SaveFlagPreference(std::string_view key, bool value)
{
    SavePreference(key, value ? "1" : "0");
}

void SaveNumberPreference(std::string_view key, std::int32_t value)
{
    SavePreference(key, std::to_string(value));
}

bool IsUnicodeTagsOn()
{
    return runtime::LeadingNumber(GetSetting(kExtras, kUnicodeTags, "0")) != 0;
}

void SaveUnicodeTags(bool on)
{
    SaveSetting(kExtras, kUnicodeTags, on ? "1" : "0");
    TheGlobals().UnicodeTags = on;
}

void ForgetReportedSettings()
{
    state = {};
}

void ShowSettingsFailure(const std::string &path, int why)
{
    platform::TheMachine().desktop->MessageBox(
        GetLanguageText("The settings cannot be stored:", "SettingsNotStored", "Status") + "\r" +
            runtime::FileError(why, path).description,
        platform::Buttons::Ok, kApplicationTitle, platform::BoxIcon::Exclamation);
}

} // namespace shell

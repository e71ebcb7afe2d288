#include "runtime/error.h"
#include "shell/settings.h"
#include "tests/support/errorof.h"
#include "tests/support/memorysettings.h"
#include "tests/support/scripteddesktop.h"

#include <gtest/gtest.h>

namespace
{

using namespace shell;

TEST(Settings, EveryPreferenceHasItsDefault)
{
    const tests::MemorySettings store;
    const std::pair<std::string_view, std::string_view> want[] = {
        {"Language", ""},
        {"Initial TV Width", "3000"},
        {"MP3 Directory", "C:\\"},
        {"Back Up Files", "1"},
        {"Update DB after editing", "1"},
        {"Show Lyrics automatically", "1"},
        {"Delete Before Append", "0"},
        {"WebStyle", "1"},
        {"AutoCheckNewerVersion", "0"},
        {"RefreshAtStartUp", "0"},
        {"Load Title", "1"},
        {"Load Artist", "1"},
        {"Load Album", "1"},
        {"Load Year", "1"},
        {"Load Comment", "1"},
        {"Load Genre", "1"},
        {"Load List", "1"},
        {"Load Path", "1"},
        {"Show Tips at Startup", "1"},
        {"Left", "45"},
        {"Top", "465"},
        {"Width", "12000"},
        {"Height", "7350"},
    };
    for (const auto &[key, text] : want)
        EXPECT_EQ(GetPreference(key), text) << key;
}

TEST(Settings, AreAddressedByTitleSectionAndKey)
{
    tests::MemorySettings store;
    SavePreference("Language", "Español.qlt");
    SaveSetting(kLastSafeConfiguration, "Width", "9000");
    EXPECT_EQ(store.values.at("Quenlin/Preferences/Language"), "Español.qlt");
    EXPECT_EQ(store.values.at("Quenlin/Last Safe Configuration/Width"), "9000");
    EXPECT_EQ(GetSetting(kLastSafeConfiguration, "Width", "1"), "9000");
    EXPECT_EQ(GetSetting(kWindowsSize, "Initial TreeView Width", "77"), "77");
    EXPECT_EQ(GetNumberPreference("Width"), 12000); // another section's key
}

TEST(Settings, AnyNumberButZeroIsTrue)
{
    tests::MemorySettings store;
    const std::pair<std::string_view, bool> cases[] = {
        {"1", true},   {"0", false},   {"-1", true},   {"2", true},
        {" 1 ", true}, {"0.0", false}, {"True", true}, {"false", false}};
    for (const auto &[text, want] : cases) {
        SavePreference("WebStyle", text);
        EXPECT_EQ(GetFlagPreference("WebStyle"), want) << text;
    }
}

// The default counts, and the user learns once which line of which file it is.
TEST(Settings, ATextThatIsNoNumberIsReportedOnce)
{
    struct InAFile : tests::MemorySettings {
        std::string FilePath(std::string_view title) override
        {
            return "/config/" + std::string(title) + "/settings.ini";
        }
    } store;
    tests::ScriptedDesktop desktop;
    ForgetReportedSettings();
    for (const char *text : {"", "yes", "1x"}) {
        SavePreference("WebStyle", text);
        desktop.ExpectBox(std::string("as if it were 1.\r\rWebStyle=") + text +
                          "\r/config/Quenlin/settings.ini");
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(GetFlagPreference("WebStyle")) << text;
    }
    SavePreference("Left", "1E99");
    desktop.ExpectBox("as if it were 45.\r\rLeft=1E99");
    EXPECT_EQ(GetNumberPreference("Left"), 45);
    ForgetReportedSettings();
}

TEST(Settings, NumbersAreRoundedHalfToEven)
{
    tests::MemorySettings store;
    SavePreference("Left", "44.5");
    EXPECT_EQ(GetNumberPreference("Left"), 44);
    SavePreference("Left", "-12000");
    EXPECT_EQ(GetNumberPreference("Left"), -12000);
}

TEST(Settings, FlagsAndNumbersAreStoredAsTexts)
{
    tests::MemorySettings store;
    SaveFlagPreference("WebStyle", true);
    SaveFlagPreference("Back Up Files", false);
    SaveNumberPreference("Top", -15);
    EXPECT_EQ(store.values.at("Quenlin/Preferences/WebStyle"), "1");
    EXPECT_EQ(store.values.at("Quenlin/Preferences/Back Up Files"), "0");
    EXPECT_EQ(store.values.at("Quenlin/Preferences/Top"), "-15");
}

TEST(Settings, DeletingWhatIsNotThereIsAnError)
{
    tests::MemorySettings store;
    EXPECT_EQ(tests::ErrorOf([] { DeleteSetting(kPreferences, "Language"); }),
              runtime::kInvalidCall);
    SavePreference("Language", "x.qlt");
    DeleteSetting(kPreferences, "Language");
    EXPECT_EQ(GetPreference("Language"), "");
}

} // namespace

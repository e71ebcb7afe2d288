#include "platform/session.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

namespace
{

// The variables that describe a session, none of them set; the destructor restores them.
class Session : public testing::Test
{
protected:
    Session()
    {
        for (const char *name :
             {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM", "XDG_RUNTIME_DIR"}) {
            const char *value = std::getenv(name);
            m_before[name] = value != nullptr ? std::optional<std::string>(value) : std::nullopt;
            unsetenv(name);
        }
    }
    ~Session() override
    {
        for (const auto &[name, value] : m_before) {
            if (value)
                setenv(name.c_str(), value->c_str(), 1);
            else
                unsetenv(name.c_str());
        }
    }

private:
    std::map<std::string, std::optional<std::string>> m_before;
};

TEST_F(Session, HasADisplayWhenOneIsNamed)
{
    EXPECT_FALSE(platform::HasDisplay());
    EXPECT_EQ(platform::DisplayName(), "");
    for (const char *name : {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"}) {
        setenv(name, "", 1);
        EXPECT_FALSE(platform::HasDisplay()) << name;
        setenv(name, "x", 1);
        EXPECT_TRUE(platform::HasDisplay()) << name;
        unsetenv(name);
    }
    setenv("DISPLAY", ":7", 1);
    EXPECT_EQ(platform::DisplayName(), ":7");
    setenv("WAYLAND_DISPLAY", "wayland-1", 1);
    EXPECT_EQ(platform::DisplayName(), "wayland-1");
}

TEST_F(Session, ItsFolderIsTheOneThatTheDesktopNames)
{
    setenv("XDG_RUNTIME_DIR", "/run/user/7", 1);
    EXPECT_EQ(platform::SessionFolder(), "/run/user/7");
}

} // namespace

#include "shell/apppath.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace
{

TEST(AppPath, HasNoSeparatorAtItsEnd)
{
    const std::string former = shell::GetAppPath();
    const std::pair<const char *, const char *> cases[] = {
        {"/opt/quenlin", "/opt/quenlin"}, {"/opt/quenlin/", "/opt/quenlin"}, {"/", ""}};
    for (const auto &[folder, want] : cases) {
        shell::SetAppPath(folder);
        EXPECT_EQ(shell::GetAppPath(), want);
        EXPECT_EQ(shell::AppFile("MP3s.mdb"), std::string(want) + "/MP3s.mdb");
    }
    shell::SetAppPath(former);
}

} // namespace

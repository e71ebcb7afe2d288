// The system's name out of its os-release file.
#include "platform/posix/systeminfo.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>
#include <sys/utsname.h>

namespace
{

using platform::posix::NameInRelease;
using platform::posix::OsRelease;

TEST(NameInRelease, Table)
{
    const struct {
        const char *text, *want;
    } cases[] = {
        {"NAME=x\nPRETTY_NAME=\"Some OS 12 (name)\"\n", "Some OS 12 (name)"},
        {"PRETTY_NAME='Some OS'", "Some OS"},
        {"PRETTY_NAME=Plain\n", "Plain"},
        {"PRETTY_NAME=\"a \\\"b\\\" \\$c\\\\\"\n", "a \"b\" $c\\"},
        {"NAME=\"Some OS\"\nVERSION_ID=\"12\"\n", "Some OS 12"},
        {"NAME=Rolling\n", "Rolling"},
        {"VERSION_ID=12\n", ""},
        {"PRETTY_NAMES=x\n#PRETTY_NAME=y\n", ""},
        {"PRETTY_NAME=\nNAME=n\n", "n"},
        {"PRETTY_NAME=\"\n", "\""},
        {"PRETTY_NAME=a\\", "a\\"},
        {"", ""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(NameInRelease(c.text), c.want) << c.text;
}

TEST(OsRelease, TakesTheFirstFileThatNamesTheSystem)
{
    const tests::TestFolder folder;
    tests::WriteFile(folder / "empty", "");
    tests::WriteFile(folder / "full", "PRETTY_NAME=\"Some OS\"\n");
    EXPECT_EQ(OsRelease({folder / "none", folder / "empty", folder / "full"}).Name(), "Some OS");
    utsname kernel{};
    ASSERT_EQ(uname(&kernel), 0);
    EXPECT_EQ(OsRelease({folder / "none", folder.Path()}).Name(),
              std::string(kernel.sysname) + " " + kernel.release);
}

} // namespace

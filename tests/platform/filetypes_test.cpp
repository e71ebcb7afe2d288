#include "platform/posix/desktopfiletypes.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>

namespace
{

using platform::posix::DesktopFileTypes;

class Types : public ::testing::Test
{
protected:
    Types()
    {
        former = std::getenv("PATH");
        for (const char *tool : {"update-mime-database", "update-desktop-database"}) {
            tests::WriteFile(folder / "bin/" + tool,
                             "#!/bin/sh\necho \"$0 $1\" >> '" + (folder / "calls") + "'\n");
            std::filesystem::permissions(folder / "bin/" + tool, std::filesystem::perms::owner_all);
        }
        setenv("PATH", ((folder / "bin") + ":" + former).c_str(), 1);
    }
    ~Types() override { setenv("PATH", former.c_str(), 1); }

    void Register(const std::string &command)
    {
        DesktopFileTypes types(folder / "data");
        types.WritePairs({{".qlt", "Q.Language"},
                          {"Q.Language", "Q <Language> & File"},
                          {"Q.Language\\shell\\Open\\command", command}});
    }
    int Calls() const
    {
        if (!std::filesystem::exists(folder / "calls"))
            return 0;
        const std::string calls = tests::ReadFile(folder / "calls");
        return static_cast<int>(std::count(calls.begin(), calls.end(), '\n'));
    }

    tests::TestFolder folder;
    std::string former;
};

TEST_F(Types, ATypeIsAKindOfPlainText)
{
    Register("\"no such program.exe\" \"%1\"");
    EXPECT_EQ(tests::ReadFile(folder / "data/mime/packages/q-language.xml"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
              "  <mime-type type=\"application/x-q-language\">\n"
              "    <comment>Q &lt;Language&gt; &amp; File</comment>\n"
              "    <sub-class-of type=\"text/plain\"/>\n"
              "    <glob pattern=\"*.qlt\"/>\n"
              "  </mime-type>\n"
              "</mime-info>\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "data/applications"));
    EXPECT_EQ(tests::ReadFile(folder / "calls"),
              (folder / "bin/update-mime-database ") + (folder / "data/mime") + "\n");
}

TEST_F(Types, TheSecondStartChangesNothing)
{
    Register("\"sh\" \"%1\"");
    EXPECT_EQ(Calls(), 2);
    Register("\"sh\" \"%1\"");
    EXPECT_EQ(Calls(), 2);
}

TEST_F(Types, AProgramThatIsThereOpensIt)
{
    tests::WriteFile(folder / "my $tools/open%er", "#!/bin/sh\n");
    std::filesystem::permissions(folder / "my $tools/open%er", std::filesystem::perms::owner_all);
    Register("\"" + (folder / "my $tools/open%er") + "\" \"%1\"");
    const std::string entry = tests::ReadFile(folder / "data/applications/q-language.desktop");
    EXPECT_NE(entry.find("Exec=\"" + (folder / "my \\\\$tools/open%%er") + "\" %f\n"),
              std::string::npos)
        << entry;
    EXPECT_NE(entry.find("MimeType=application/x-q-language;\n"), std::string::npos);
    tests::WriteFile(folder / "moved/opener", "#!/bin/sh\n");
    std::filesystem::permissions(folder / "moved/opener", std::filesystem::perms::owner_all);
    Register("\"" + (folder / "moved/opener") + "\" \"%1\""); // the next start follows the line
    const std::string moved = tests::ReadFile(folder / "data/applications/q-language.desktop");
    EXPECT_NE(moved.find("Exec=\"" + (folder / "moved/opener") + "\" %f\n"), std::string::npos);
    EXPECT_EQ(moved.find("my "), std::string::npos);
    Register("\"gone\" \"%1\"");
    EXPECT_FALSE(std::filesystem::exists(folder / "data/applications/q-language.desktop"));
}

TEST_F(Types, AFolderThatCannotBeWrittenRegistersNothing)
{
    tests::WriteFile(folder / "data", "a file");
    Register("\"sh\" \"%1\"");
    EXPECT_EQ(Calls(), 0);
    EXPECT_EQ(tests::ReadFile(folder / "data"), "a file");
}

} // namespace

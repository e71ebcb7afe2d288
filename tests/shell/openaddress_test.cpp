#include "shell/openaddress.h"
#include "tests/support/libraryfixture.h"

#include <gtest/gtest.h>

namespace
{

TEST(MayOpen, Table)
{
    for (const char *may : {"http://www.quenlin.example/a?b=c", "https://x", "HTTPS://X",
                            "/a b.qrp", "mailto:support@quenlin.example", "Mailto:a@b"})
        EXPECT_TRUE(shell::MayOpen(may)) << may;
    for (const char *mayNot : {"", "-x", "--help", "-http://x", " http://x", "file:///etc/passwd",
                               "ftp://x", "http:x", "javascript:alert(1)", "smb://server/share",
                               "relative/path", "httpx://", "data:text/html,x", "\nhttp://x"})
        EXPECT_FALSE(shell::MayOpen(mayNot)) << mayNot;
}

struct Opening : tests::LibraryFixture {
};

TEST_F(Opening, WhatMayNotBeOpenedDoesNotReachTheDesktop)
{
    shell::OpenAddress("--help", "C:\\");
    EXPECT_EQ(desktop.clipboard, "--help");
    shell::OpenMail("file:///etc/passwd", "C:\\");
    EXPECT_TRUE(desktop.addresses.empty());
    shell::OpenAddress("https://www.quenlin.example/", "C:\\");
    shell::OpenMail("mailto:support@quenlin.example", "C:\\");
    EXPECT_EQ(desktop.addresses.size(), 2u);
}

} // namespace

#include "SvnServer.h"

#include <gtest/gtest.h>

TEST(TestSupport, TheServerAsksForThePasswordOfItsUsers)
{
    const SvnServer server;
    server.repository().put("a.txt", "one\n");
    const auto cat = [&](const char* password) {
        return runCommand({"svn", "cat", "--non-interactive", "--no-auth-cache", "--username", "harry", "--password",
                           password, server.url("a.txt")});
    };
    EXPECT_EQ(cat("harryssecret").output, "one\n");
    const CommandResult refused = cat("sallyssecret");
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_NE(refused.errors.find("E170001"), std::string::npos) << refused.errors;
}

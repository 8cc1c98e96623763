#include "HSVNDebug.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <tuple>

namespace {

/// Value of the environment variable (null: unset), and the level it stands for.
class DebugLevel : public testing::TestWithParam<std::tuple<const char*, int>>
{
};

/// Logs one line at each level that the library uses, in a process that has not read its level yet.
[[noreturn]] void logInFreshProcess(const char* environment)
{
    if (environment) {
        setenv("SkerryLogLevel", environment, 1);
    } else {
        unsetenv("SkerryLogLevel");
    }
    for (const int level : {1, 2, 3}) {
        HSVNDebug::logAtLevel(level, "<%d>", level);
    }
    setenv("SkerryLogLevel", "verbose", 1);
    HSVNDebug::logAtLevel(HSVNDebug::level() + 1, "<too late>");
    std::_Exit(HSVNDebug::level());
}

TEST_P(DebugLevel, ComesFromTheEnvironmentOnce)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto [environment, level] = GetParam();
    const std::string line = "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:.]+ hsvn_tests\\[[0-9]+:[0-9]+\\] <";
    std::string lines = "^";
    for (int written = 1; written <= level; ++written) {
        lines += line + std::to_string(written) + ">\n";
    }
    EXPECT_EXIT(logInFreshProcess(environment), testing::ExitedWithCode(level), lines + "$");
}

INSTANTIATE_TEST_SUITE_P(Values, DebugLevel,
                         testing::Values(std::tuple{nullptr, 1}, std::tuple{"off", 0}, std::tuple{"normal", 1},
                                         std::tuple{"Debug", 2}, std::tuple{"VERBOSE", 3}, std::tuple{"3", 1},
                                         std::tuple{"verbose ", 1}, std::tuple{"", 1}));

TEST(DebugLine, FillsPlaceholdersInOrder)
{
    testing::internal::CaptureStderr();
    HSVNDebug::logAtLevel(1, "[%@ %@] (%s: %@) %ld%% {} %q %", std::string{"Class"}, "call:", "path",
                          std::optional<std::string>{}, -7);
    HSVNDebug::logAtLevel(1, "%@ %@", "{}%@");
    const std::string written = testing::internal::GetCapturedStderr();
    EXPECT_NE(written.find("] [Class call:] (path: (null)) -7% {} %q %\n"), std::string::npos) << written;
    EXPECT_NE(written.find("] {}%@ (null)\n"), std::string::npos) << written;
}

TEST(DebugSubstring, ShortensByCharacters)
{
    EXPECT_EQ(HSVNDebugSubstring(std::nullopt, 20), std::nullopt);
    EXPECT_EQ(HSVNDebugSubstring("one\ntwo", 50), "one\\ntwo");
    EXPECT_EQ(HSVNDebugSubstring("abcdefghijklmnopqrstuvwxy", 20), "abcdefghijklmnopqrst...");
    EXPECT_EQ(HSVNDebugSubstring("abcdefghijklmnopqrst", 20), "abcdefghijklmnopqrst");
    EXPECT_EQ(HSVNDebugSubstring("äö€\U0001F600!", 4), "äö€\U0001F600...");
    EXPECT_EQ(HSVNDebugSubstring("\n\n\n", 2), "\\n\\n...");
    EXPECT_EQ(HSVNDebugSubstring("a", 0), "...");
    EXPECT_EQ(HSVNDebugSubstring("", 0), "");
}

} // namespace

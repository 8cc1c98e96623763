#include "HSVNVersion.h"

#include <gtest/gtest.h>

namespace {

TEST(VersionText, EveryTextGivesAVersion)
{
    struct Case
    {
        const char* text;
        HSVNVersion version;
        const char* written;
    };
    const Case cases[] = {
        {"1.6.5", {1, 6, 5}, "1.6.5"},
        {"  1.6.5\n", {1, 6, 5}, "1.6.5"},
        {"1.6.0", {1, 6}, "1.6"},
        {"1", {1, 0}, "1.0"},
        {"", {0, 0}, "0.0"},
        {"1.6.0-dev", {1, 6}, "1.6"},
        {"5rc1.x.7.9", {5, 0, 7}, "5.0.7"},
        {"+1.+-6", {1, 0}, "1.0"},
        {"1.5.2 dev build", {1, 5, 2, "dev"}, "1.5.2 dev"},
        {"1.5.2  dev", {1, 5, 2}, "1.5.2"},
        {"1.-3.99999999999", {1, -3, 2147483647}, "1.-3.2147483647"},
    };
    for (const auto& [text, version, written] : cases) {
        const auto parsed = HSVNVersion::versionWithString(text);
        EXPECT_EQ(parsed, version) << text;
        EXPECT_EQ(parsed.versionString(), written);
    }
    EXPECT_EQ(HSVNVersion(1, 6, -1).description(), "1.6");
}

TEST(VersionOrder, GoesByNumbersThenTag)
{
    const std::vector<HSVNVersion> ascending{{0, 9},         {1, 4, 9}, {1, 5},     {1, 5, 2}, {1, 5, 2, "a"},
                                             {1, 5, 2, "b"}, {1, 5, 9}, {1, 5, 10}, {2, 0}};
    for (std::size_t first = 0; first < ascending.size(); ++first) {
        for (std::size_t second = 0; second < ascending.size(); ++second) {
            const auto& a = ascending[first];
            const auto& b = ascending[second];
            EXPECT_EQ(a.compare(b), (first > second) - (first < second)) << a << " and " << b;
            EXPECT_EQ(a.isLessThan(b), first < second);
            EXPECT_EQ(a.isLessThanOrEqualTo(b), first <= second);
            EXPECT_EQ(a.isGreaterThan(b), first > second);
            EXPECT_EQ(a.isGreaterThanOrEqualTo(b), first >= second);
            EXPECT_EQ(a.isEqual(b), first == second);
        }
        EXPECT_EQ(ascending[first].hash(), ascending[first].copy().hash());
    }
    EXPECT_EQ(HSVNVersion(0x101, 2, 3).hash(), 0x030201U);
}

TEST(VersionPattern, ZeroAndTheEmptyTagMatchAnything)
{
    const HSVNVersion version{1, 4, 4};
    for (const auto& pattern : {HSVNVersion{1, 4}, HSVNVersion{1, 0}, HSVNVersion{0, 0}, version}) {
        EXPECT_TRUE(version.matches(pattern)) << pattern;
        EXPECT_TRUE(HSVNVersion(1, 4, 4, "x").matches(pattern)) << pattern;
    }
    for (const auto& pattern : {HSVNVersion{1, 5}, HSVNVersion{2, 0}, HSVNVersion{1, 4, 3}, HSVNVersion{1, 4, 4, "x"}})
    {
        EXPECT_FALSE(version.matches(pattern)) << pattern;
    }
}

TEST(WellKnownVersions, AreThreeAndTheDefaultIsNeverTheMiddleOne)
{
    EXPECT_EQ(HSVNVersion::wellKnownVersions(), (std::vector<HSVNVersion>{{1, 4}, {1, 5}, {1, 6}}));
    EXPECT_EQ(HSVNVersion::defaultVersion(), HSVNVersion::newestWellknownVersion()) << "on any Linux from 3.0 on";
    EXPECT_FLOAT_EQ(HSVNVersion(1, 6, 9).majorMinor(), 1.6F);
    EXPECT_FLOAT_EQ(HSVNVersion(1, 10).majorMinor(), 1.1F);
    EXPECT_EQ(HSVNVersion(1, 6, 9, "x").versionWithMajorAndMinorComponents(), HSVNVersion::version1_6());
}

} // namespace

#include "HSVNInitialize.h"
#include "FakeBundle.h"
#include "HSVNBundleLoader.h"
#include "HSVNClient.h"
#include "HSVNContext.h"
#include "HSVNDate.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNRepository.h"
#include "HSVNRepositoryOptions.h"
#include "HSVNStringProperties.h"

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>

namespace {

namespace fs = std::filesystem;

/// Start-up happens once in a process, so each test runs in a fresh one; a fault is its exit code 1.
class Initialize : public testing::Test
{
  protected:
    void SetUp() override
    {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        fs::remove_all(home);
        fs::create_directory(home);
    }

    static void require(bool holds, const char* what)
    {
        if (!holds) {
            std::cerr << "not so: " << what << std::endl;
            std::_Exit(1);
        }
    }

    const std::string home = std::string{std::getenv("HOME")} + "/of-a-fresh-process";
};

TEST_F(Initialize, MakesTheConfigurationAreaOnceAndOpensTheNewestBundleOnly)
{
    const auto start = [this] {
        setenv("HOME", home.c_str(), 1);
        const FakeBundle old{home, "old.bundle", "0.9"};
        HSVNBundleLoader::sharedInstance().loadBundleAtPath(old.path());
        HSVNInitialize();
        require(fs::exists(home + "/.subversion/config"), "the configuration area is made");
        require(HSVNBundleLoader::sharedInstance().newestVersion()->major() == 1, "the library's bundle is loaded");
        require(HSVNContext{}.bundleVersion() == HSVNBundleLoader::sharedInstance().newestVersion(),
                "contexts are of the newest line");
        require(HSVNClient::clientWithDelegate(nullptr)->bundleVersion() ==
                    HSVNBundleLoader::sharedInstance().newestVersion(),
                "clients are of the newest line");
        HSVNDate::dateWithISO8601String("Fri 2 Jan 2026 03:04:05.000 (day 002, dst 0, gmt_off 000)");
        HSVNString::splitOnCharactersInString("a b", " ");
        HSVNDirectory::formatVersionForWorkingCopyAtPath(HSVNLocalPath::pathWithString(home));
        HSVNRepository::createRepositoryAtPath(HSVNLocalPath::pathWithString(home + "/repository"),
                                               HSVNFileSystemOptions::defaults());
        require(!old.isLoaded(), "an older bundle stays closed");
        fs::remove_all(home + "/.subversion");
        HSVNInitializeWithOptions({{"option", "value"}});
        require(!fs::exists(home + "/.subversion"), "the second call does nothing");
        std::_Exit(0);
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(0), "");
}

TEST_F(Initialize, StartsWithoutAWritableConfigurationArea)
{
    const auto start = [] {
        setenv("HOME", "/dev/null", 1);
        HSVNInitialize();
        std::_Exit(0);
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(0), "");
}

TEST_F(Initialize, LeavesTheNumericCategoryAloneWhenAsked)
{
    const auto start = [](HSVNNumericLocale choice, const char* expected) {
        setenv("LC_ALL", "C.UTF-8", 1);
        HSVNInitialize(choice);
        require(std::string{std::setlocale(LC_NUMERIC, nullptr)} == expected, "the numeric category");
        require(std::string{std::setlocale(LC_CTYPE, nullptr)} == "C.UTF-8", "another category");
        std::_Exit(0);
    };
    EXPECT_EXIT(start(HSVNNumericLocale::Unchanged, "C"), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(start(HSVNNumericLocale::OfEnvironment, "C.UTF-8"), testing::ExitedWithCode(0), "");
}

TEST_F(Initialize, FailsOnceWithoutALocale)
{
    const auto start = [this] {
        setenv("HOME", home.c_str(), 1);
        setenv("LC_ALL", "no_SUCH.locale", 1);
        try {
            HSVNInitialize();
            require(false, "a locale that is not there is a failure");
        } catch (const HSVNException& exception) {
            require(exception.reason() == "Failed to initialize locales", "the reason");
            require(exception.userInfo().empty(), "no user information");
        }
        HSVNInitialize();
        require(!fs::exists(home + "/.subversion"), "start-up is not tried again");
        try {
            HSVNBundleCurrent();
            require(false, "the stack of bundles is empty");
        } catch (const HSVNGenericException&) {
            std::_Exit(0);
        }
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(0), "");
}

TEST_F(Initialize, NeedsABundleForTheConfigurationArea)
{
    const auto start = [] {
        try {
            HSVNInitializeSubversionConfiguration();
        } catch (const HSVNInvalidArgumentException& exception) {
            require(exception.reason() == "No bundle of Subversion is loaded: HSVNInitialize has not been called",
                    "the reason");
            std::_Exit(0);
        }
        std::_Exit(1);
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(0), "");
}

} // namespace

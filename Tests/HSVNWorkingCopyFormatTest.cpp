#include "Command.h"
#include "HSVNBundleLoader.h"
#include "HSVNClient.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "ReadingClient.h"
#include "ReasonOf.h"
#include "SampleWorkingCopy.h"
#include "TemporaryFolder.h"
#include "TestBundles.h"
#include "WorkingCopyDatabase.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/fsuid.h>

using testing::HasSubstr;

namespace {

namespace fs = std::filesystem;

HSVNPathRef formatPath(const std::string& text) { return HSVNLocalPath::pathWithString(text); }

std::int32_t formatOf(const std::string& path)
{
    return HSVNDirectory::formatVersionForWorkingCopyAtPath(formatPath(path));
}

struct Line
{
    const char* name;
    std::int32_t format;
};

class WorkingCopyFormats : public testing::TestWithParam<Line>
{
};

TEST_P(WorkingCopyFormats, AreFoundInRealWorkingCopies)
{
    const SampleWorkingCopy sample{GetParam().name};
    auto line = HSVNVersion::versionWithString(GetParam().name);
    bundleOfLine(line);
    for (const auto& loaded : HSVNBundleLoader::sharedInstance().loadedVersions()) { // the newest first
        if (GetParam().format == 31 && !loaded.isLessThan(HSVNVersion::versionWithString("1.8"))) {
            line = loaded.versionWithMajorAndMinorComponents();
        }
    }
    for (const auto& item : {sample.path(), sample.path("wc/copied-dir"), sample.path("wc/externals/ext")}) {
        EXPECT_EQ(formatOf(item), GetParam().format) << item;
        EXPECT_EQ(HSVNDirectory::versionForWorkingCopyAtPath(formatPath(item)), line) << item;
    }
    EXPECT_EQ(formatOf(sample.path("wc/unversioned dir")), 0);
}

INSTANTIATE_TEST_SUITE_P(Lines, WorkingCopyFormats,
                         testing::Values(Line{"1.4", 8}, Line{"1.5", 9}, Line{"1.6", 10}, Line{"1.14", 31}));

TEST(HSVNWorkingCopyFormat, OfANewerLineIsServedByTheNewestBundle)
{
    const SampleWorkingCopy sample{"1.14"};
    alterWorkingCopyDatabase(sample.path(), {"PRAGMA user_version = 99"});
    EXPECT_EQ(formatOf(sample.path()), 99);
    EXPECT_EQ(HSVNDirectory::versionForWorkingCopyAtPath(formatPath(sample.path())),
              HSVNBundleLoader::sharedInstance().newestVersion());
}

TEST(HSVNWorkingCopyFormat, IsZeroForAFolderThatIsNone)
{
    const TemporaryFolder folder;
    writeFile(folder / "file", "");
    EXPECT_EQ(formatOf(folder.path().string()), 0);
    EXPECT_FALSE(HSVNDirectory::isWorkingCopyAtPath(formatPath(folder.path().string())));
    EXPECT_EQ(reasonOf<HSVNNotWorkingCopyException>(
                  [&] { HSVNDirectory::versionForWorkingCopyAtPath(formatPath(folder.path().string())); }),
              "\"%\" is not a working copy");
    EXPECT_THAT(reasonOf<HSVNNoSuchEntryException>([&] { formatOf(folder / "nowhere"); }), HasSubstr("nowhere"));
    EXPECT_EQ(reasonOf([] { HSVNDirectory::isWorkingCopyAtPath(nullptr); }),
              "Invalid parameter not satisfying: path != nil");
}

TEST(HSVNWorkingCopyFormat, IsNotChangedThroughALinkInAnExternalsPlace)
{
    const SampleWorkingCopy sample{"1.14"};
    const auto external = sample.path("wc/externals/ext");
    const auto elsewhere = sample.path("elsewhere");
    fs::rename(external, elsewhere);
    fs::create_directory_symlink(elsewhere, external);
    alterWorkingCopyDatabase(elsewhere, {"ALTER TABLE nodes DROP COLUMN inherited_props", "PRAGMA user_version = 30"});
    std::make_shared<HSVNClient>()->upgrade(sample.path());
    EXPECT_EQ(formatOf(elsewhere), 30);
}

TEST(HSVNAdminArea, IsNotLeftByAnUpgradeInSilence)
{
    const SampleWorkingCopy sample{"1.6"};
    const auto area = sample.path() + "/copy-source/.svn";
    writeFile(area + "/\xff", ""); // a folder with such a name is not removed
    const auto client = std::make_shared<HSVNClient>();
    EXPECT_THAT(reasonOf<HSVNException>([&] { client->upgrade(sample.path()); }),
                HasSubstr("The working copy is upgraded, but '" + area + "'"));
}

TEST(HSVNAdminArea, IsRemovedByTheCleanUpOfAnUpgradeThatWasInterruptedAmidIt)
{
    const SampleWorkingCopy sample{"1.6"};
    const auto client = std::make_shared<HSVNClient>();
    client->upgrade(sample.path());
    for (const bool wasInterrupted : {false, true}) {
        if (wasInterrupted) {
            alterWorkingCopyDatabase(sample.path(),
                                     {"INSERT INTO work_queue (work) VALUES (CAST('(postupgrade)' AS BLOB))"});
        }
        writeFile(sample.path() + "/deleted-dir/.svn/props/rest", "");
        client->cleanUp(sample.path());
        EXPECT_NE(fs::exists(sample.path() + "/deleted-dir/.svn"), wasInterrupted);
    }
}

TEST(HSVNAdminArea, IsPurgedAtEveryDepth)
{
    const SampleWorkingCopy sample{"1.6"};
    const auto root = formatPath(sample.path());
    EXPECT_EQ(HSVNDirectory::adminAreaInWorkingCopyAtPath(root)->string(), root->string() + "/.svn");
    const auto count = [&] {
        std::pair<int, int> counts; // administrative folders and other items
        for (fs::recursive_directory_iterator entry{root->string()}, end; entry != end; ++entry) {
            const bool isAdmin = entry->path().filename() == ".svn";
            (isAdmin ? counts.first : counts.second) += 1;
            if (isAdmin) {
                entry.disable_recursion_pending();
            }
        }
        return counts;
    };
    fs::create_directory_symlink(sample.path("wc-adminlocked"), root->string() + "/link to another");
    const auto before = count();
    EXPECT_GT(before.first, 10);
    HSVNDirectory::purgeAdminDirectoriesInPath(root);
    EXPECT_EQ(count(), std::pair(0, before.second));
    EXPECT_TRUE(fs::exists(sample.path("wc-adminlocked/.svn")));
}

TEST(HSVNAdminArea, IsNotPurgedWhereAFolderCannotBeListed)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "closed");
    fs::permissions(folder.path(), fs::perms{0755});
    fs::permissions(folder / "closed", fs::perms{0711});
    constexpr uid_t nobody = 65534; // the superuser may read everything
    const int user = setfsuid(nobody);
    const auto reason =
        reasonOf<HSVNException>([&] { HSVNDirectory::purgeAdminDirectoriesInPath(formatPath(folder.path())); });
    setfsuid(static_cast<uid_t>(user));
    EXPECT_THAT(reason, HasSubstr("Cannot list the folder '" + (folder / "closed") + "'"));
    EXPECT_NO_THROW(HSVNDirectory::purgeAdminDirectoriesInPath(formatPath(folder / "none")));
}

TEST(HSVNAdminArea, IsCleanedUp)
{
    const SampleWorkingCopy sample{"1.14"};
    const ReadingClient reading;
    const auto wc = sample.path("wc-adminlocked");
    alterWorkingCopyDatabase(wc, {"INSERT INTO wc_lock VALUES (1, '', -1)"});
    ASSERT_THAT(mustRun({"svn", "status", wc}), HasSubstr("  L"));
    HSVNDirectory::cleanUpWorkingCopyAtPath(formatPath(wc), reading.client);
    EXPECT_EQ(mustRun({"svn", "status", wc}), "");
    EXPECT_THROW(HSVNDirectory::cleanUpWorkingCopyAtPath(formatPath(sample.path("repo")), reading.client),
                 HSVNException);
    const SampleWorkingCopy older{"1.6"};
    EXPECT_THAT(reasonOf<HSVNUnsupportedWorkingCopyFormatException>(
                    [&] { HSVNDirectory::cleanUpWorkingCopyAtPath(formatPath(older.path()), reading.client); }),
                HasSubstr("'" + older.path() + "' has format 10"));
}

TEST(HSVNDirectory, FindsTheDirectChildOfARoot)
{
    const auto root = formatPath("/a/b");
    EXPECT_EQ(HSVNDirectory::parentDirectoryInRoot(root, formatPath("/a/b/c/d/e"))->string(), "/a/b/c");
    EXPECT_EQ(HSVNDirectory::parentDirectoryInRoot(root, formatPath("/a/b/c"))->string(), "/a/b/c");
    EXPECT_THROW(HSVNDirectory::parentDirectoryInRoot(nullptr, root), HSVNAssertionException);
}

TEST(HSVNUpgrade, ChangesTheFormatOfAWorkingCopyAndOfItsExternals)
{
    const SampleWorkingCopy sample{"1.4"};
    const auto& line = HSVNVersion::version1_6();
    bundleOfLine(line);
    testing::internal::CaptureStdout();
    HSVNDirectory::runUpgradeScriptForWorkingCopyAtPath(formatPath(sample.path()), HSVNVersion::version(1, 6, 23),
                                                        false);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << "the standard output is the application's";
    EXPECT_EQ(formatOf(sample.path()), 10);
    EXPECT_EQ(formatOf(sample.path("wc/externals/ext")), 8);
    HSVNDirectory::upgradeWorkingCopyAtPath(formatPath(sample.path()), installedLine(), false);
    for (const char* item : {"wc", "wc/externals/ext", "wc/externals/ext-pinned"}) {
        EXPECT_EQ(formatOf(sample.path(item)), 31) << item;
    }
    EXPECT_EQ(formatOf(sample.path("wc-adminlocked")), 8);

    // One that Subversion passes over: its own upgrade finds nothing to do around it.
    const SampleWorkingCopy other{"1.4"};
    fs::remove_all(sample.path("wc/externals/ext"));
    fs::copy(other.path("wc/externals/ext"), sample.path("wc/externals/ext"), fs::copy_options::recursive);
    HSVNDirectory::upgradeWorkingCopyAtPath(formatPath(sample.path()), installedLine(), false);
    EXPECT_EQ(formatOf(sample.path("wc/externals/ext")), 31);
}

TEST(HSVNUpgrade, GoesDownOnlyWithForceWhereSomethingWouldBeLost)
{
    const SampleWorkingCopy sample{"1.5"};
    const auto& older = HSVNVersion::version1_4();
    HSVNDirectory::runUpgradeScriptForWorkingCopyAtPath(formatPath(sample.path()), older, false);
    EXPECT_EQ(formatOf(sample.path()), 9);
    HSVNDirectory::runUpgradeScriptForWorkingCopyAtPath(formatPath(sample.path()), older, true);
    EXPECT_EQ(formatOf(sample.path()), 8);
}

} // namespace

#include "HSVNRepository.h"
#include "Command.h"
#include "FakeBundle.h"
#include "HSVNBundleLoader.h"
#include "HSVNBundleProxy.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "Internal/Pool.h"
#include "ReasonOf.h"
#include "TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <thread>

namespace {

class RepositoryTest : public testing::Test
{
  protected:
    void TearDown() override
    {
        EXPECT_THROW(HSVNBundleCurrent(), HSVNGenericException) << "the stack of bundles is not balanced";
    }

    HSVNLocalPathRef pathOf(std::string_view name) const { return HSVNLocalPath::pathWithString(folder / name); }
    std::string firstLine(std::string_view file) const
    {
        const auto text = readFile(folder / file);
        return text.substr(0, text.find('\n'));
    }

    TemporaryFolder folder;
};

} // namespace

TEST_F(RepositoryTest, TheFormatIsThatOfTheOldestLineThatMayReadIt)
{
    mustRun({"svnadmin", "create", folder / "newest"});
    struct Case
    {
        int compatibility;
        std::string fileSystemFormat, repositoryFormat;
    };
    const auto newest = firstLine("newest/db/format");
    for (const auto& [compatibility, fileSystemFormat, repositoryFormat] :
         {Case{1, "3", "5"}, Case{2, "2", "5"}, Case{3, "1", "3"}, Case{0, newest, "5"}, Case{4, newest, "5"}})
    {
        const auto name = "repository" + std::to_string(compatibility);
        const auto options = HSVNFileSystemOptions::defaults();
        options->setCompatibility(compatibility);
        const auto repository = HSVNRepository::createRepositoryAtPath(pathOf(name), options);
        EXPECT_EQ(repository->path()->string(), folder / name);
        EXPECT_EQ(firstLine(name + "/db/fs-type"), "fsfs");
        EXPECT_EQ(firstLine(name + "/db/format"), fileSystemFormat) << compatibility;
        EXPECT_EQ(firstLine(name + "/format"), repositoryFormat) << compatibility;
        mustRun({"svnadmin", "verify", "-q", folder / name});
    }
}

TEST_F(RepositoryTest, BerkeleyDBTakesItsFlags)
{
    for (const bool flag : {true, false}) {
        const std::string name = flag ? "with" : "without";
        const auto options = HSVNBerkeleyDBOptions::defaults();
        options->setSyncAtTransactionCommit(!flag);
        options->setAutomaticLogFileRemoval(flag);
        HSVNRepository::createRepositoryAtPath(pathOf(name), options);
        EXPECT_EQ(firstLine(name + "/db/fs-type"), "bdb");
        const auto configuration = readFile(folder / (name + "/db/DB_CONFIG"));
        EXPECT_EQ(configuration.find("\nset_flags DB_TXN_NOSYNC") != std::string::npos, flag) << configuration;
        EXPECT_EQ(configuration.find("\nset_flags DB_LOG_AUTOREMOVE") != std::string::npos, flag) << configuration;
    }
}

TEST_F(RepositoryTest, ATypeThatIsNotKnownCreatesNothing)
{
    const auto plain = HSVNRepositoryOptions::defaults();
    EXPECT_EQ(reasonOf([&] { HSVNRepository::createRepositoryAtPath(pathOf("repository"), plain); }),
              "Unrecognized repository options type");
    EXPECT_EQ(reasonOf<HSVNUnsupportedFeatureException>(
                  [&] { HSVNRepository::createRepositoryOfType("nosuchtype", pathOf("repository"), plain); }),
              "This Subversion does not support repositories of type 'nosuchtype'");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(RepositoryTest, OpensAndDeletesOnlyWhatIsARepository)
{
    mustRun({"svnadmin", "create", folder / "repository"});
    HSVNRepository::repositoryAtPath(pathOf("./repository//"))->deleteRepository();
    EXPECT_FALSE(std::filesystem::exists(folder / "repository"));

    writeFile(folder / "plain/file", "text");
    for (const char* name : {"plain", "plain/file", "missing"}) {
        EXPECT_THROW(HSVNRepository::repositoryAtPath(pathOf(name)), HSVNNotRepositoryException) << name;
    }

    writeFile(folder / "project/db/file", "a folder that looks like an old repository's");
    const HSVNBundleScope bundle{HSVNBundleLoader::sharedInstance().defaultBundle()};
    mustRun({"svnadmin", "create", folder / "outer"});
    writeFile(folder / "outer/inner/db/file", "in a repository, but none itself");
    for (const char* name : {"project", "plain", "plain/file", "missing", "outer/inner"}) {
        HSVNRepository repository{pathOf(name)};
        EXPECT_THROW(repository.deleteRepository(), HSVNNotRepositoryException) << name;
    }
    EXPECT_TRUE(std::filesystem::exists(folder / "project/db/file"));
    EXPECT_TRUE(std::filesystem::exists(folder / "plain/file"));
    EXPECT_TRUE(std::filesystem::exists(folder / "outer/inner/db/file"));
}

TEST_F(RepositoryTest, IsMadeWithTheUsersConfigurationOrNotAtAll)
{
    const std::string configuration = std::string{std::getenv("HOME")} + "/.subversion/config";
    const std::string former = readFile(configuration);
    writeFile(configuration, "[malformed\n");
    EXPECT_THROW(HSVNRepository::createRepositoryAtPath(pathOf("repository"), HSVNFileSystemOptions::defaults()),
                 HSVNException);
    writeFile(configuration, former);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(RepositoryTest, AFolderThatIsFullOrClosedKeepsItsContents)
{
    const auto options = HSVNFileSystemOptions::defaults();
    writeFile(folder / "full/file", "text");
    EXPECT_THROW(HSVNRepository::createRepositoryAtPath(pathOf("full"), options), HSVNException);
    EXPECT_THROW(HSVNRepository::createRepositoryAtPath(pathOf("missing/repository"), options), HSVNException);

    std::filesystem::permissions(folder.path(), std::filesystem::perms{0555});
    constexpr uid_t nobody = 65534; // the superuser may write everywhere
    const int user = setfsuid(nobody);
    EXPECT_THROW(HSVNRepository::createRepositoryAtPath(pathOf("repository"), options), HSVNException);
    setfsuid(static_cast<uid_t>(user));
    std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all);
    const std::filesystem::recursive_directory_iterator contents{folder.path()};
    EXPECT_EQ(std::distance(begin(contents), end(contents)), 2) << "the full folder and its file";
}

TEST_F(RepositoryTest, ThePoolGoesThroughTheBundleThatMadeItOnWhateverThread)
{
    const FakeBundle fake{folder.path(), "fake.bundle"};
    const auto bundle = HSVNBundleProxy::proxyForBundle(HSVNPackage::packageAtPath(fake.path()));
    HSVNRepositoryRef repository;
    {
        const HSVNBundleScope scope{bundle};
        repository = std::make_shared<HSVNRepository>(pathOf("repository"));
    }
    EXPECT_EQ(fake.state().pools, 1);
    std::thread{[&] {
        const HSVNBundleScope scope{HSVNBundleLoader::sharedInstance().newestBundle()};
        repository.reset();
    }}.join();
    EXPECT_EQ(fake.state().pools, 0);
    EXPECT_THROW(std::make_shared<HSVNRepository>(pathOf("repository")), HSVNGenericException) << "no current bundle";
}

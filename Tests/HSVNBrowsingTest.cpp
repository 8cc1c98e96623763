#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNFile.h"
#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNRepositoryInfo.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStandardStreams.h"
#include "HSVNURL.h"
#include "ReadingClient.h"
#include "ReasonOf.h"
#include "SvnServer.h"
#include "TestBundles.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;

namespace {

const std::string oddName = "sp ace@%#\xC3\xBC.txt"; // escaped in URLs

/// A server over a small repository; each test asks it over one road: "file", "svn" or through a working copy.
class BrowsingTest : public testing::TestWithParam<const char*>
{
  protected:
    static void SetUpTestSuite()
    {
        server = std::make_unique<SvnServer>();
        const auto& repository = server->repository();
        repository.makeFolder("trunk");                                                                       // r1
        repository.makeFolder("trunk/empty");                                                                 // r2
        repository.put("trunk/a.txt", "one $Revision$\n");                                                    // r3
        repository.change({"propset", "svn:keywords", "Revision", "trunk/a.txt"});                            // r4
        repository.put("trunk/gone.txt", "gone\n");                                                           // r5
        repository.change({"rm", "trunk/gone.txt", "put", "/dev/null", "trunk/sp%20ace%40%25%23%C3%BC.txt"}); // r6
        mustRun({"svn", "lock", "-q", "-m", "mine", "--username", "harry", repository.url("trunk/a.txt")});
        workingCopy = repository.checkOut();
    }
    static void TearDownTestSuite() { server.reset(); }
    void TearDown() override
    {
        EXPECT_THROW(HSVNBundleCurrent(), HSVNGenericException) << "the stack of bundles is not balanced";
    }

    static bool isLocal() { return std::string_view{GetParam()} == "workingCopy"; }
    static std::string rootURL()
    {
        return std::string_view{GetParam()} == "svn" ? server->url() : server->repository().url();
    }
    static HSVNPathRef trunk() { return HSVNPath::pathWithString((isLocal() ? workingCopy : rootURL()) + "/trunk"); }
    static HSVNPathRef pathOf(const std::string& name) { return trunk()->pathByNormalizingAndAddingComponent(name); }
    /// The URL that Subversion tells for an item of the folder trunk.
    static std::string urlOf(const std::string& name)
    {
        return HSVNURL::URLWithString(rootURL() + "/trunk")->pathByNormalizingAndAddingComponent(name)->string();
    }
    std::string contents(const std::string& name, const HSVNRevisionSpecRef& revision) const
    {
        const auto stream = std::make_shared<HSVNMemoryOutputStream>();
        HSVNFile::catRevision(revision, pathOf(name), stream, reading.client);
        EXPECT_EQ(stream.use_count(), 1) << "the stream is kept";
        return stream->bytes();
    }

    static inline std::unique_ptr<SvnServer> server;
    static inline std::string workingCopy;
    ReadingClient reading;
    const HSVNRevisionSpecRef HEAD = HSVNRevisionSpec::HEAD();
};

struct SpecialDirectory : HSVNDirectory
{
    std::string className() const override { return "SpecialDirectory"; }
};

/// Takes a few bytes at a time, then does what its ending says.
struct SlowStream : HSVNOutputStream
{
    std::int64_t write(const char* buffer, std::size_t maxLength) override
    {
        if (taken.size() >= limit) {
            return ending();
        }
        const auto count = std::min<std::size_t>(maxLength, 3);
        taken.append(buffer, count);
        return static_cast<std::int64_t>(count);
    }

    std::string taken;
    std::size_t limit = 1000;
    std::function<std::int64_t()> ending = [] { return -1; };
};

} // namespace

TEST_P(BrowsingTest, AnItemTellsItsKindAndItsURL)
{
    const auto& client = reading.client;
    EXPECT_EQ(HSVNNode::kindOfNodeAtPath(pathOf(oddName), HEAD, client), HSVNNodeKindFile);
    EXPECT_TRUE(HSVNNode::isDirectoryAtPath(pathOf("empty"), HSVNRevisionSpec::UNSPECIFIED(), client));
    EXPECT_THROW(HSVNNode::kindOfNodeAtPath(pathOf("missing"), HEAD, client), HSVNException);
    EXPECT_EQ(HSVNNode::URLForNodeAtPath(pathOf(oddName), client)->string(), urlOf(oddName));
    EXPECT_THROW(HSVNNode::URLForNodeAtPath(pathOf("missing"), client), HSVNException);
    EXPECT_TRUE(HSVNNode::nodeAtPath(trunk(), HEAD, client)->isDirectory());
    EXPECT_EQ(HSVNNode::nodeAtPath(pathOf(oddName), HEAD, client)->className(), "HSVNFile");
}

TEST_P(BrowsingTest, ADirectoryTellsItsLastChangeAndItsRepository)
{
    HSVNRepositoryInfoRef repository;
    const auto directory = HSVNDirectory::directoryAtPath(pathOf("empty"), HEAD, &repository, reading.client);
    EXPECT_EQ(directory->name(), "empty");
    EXPECT_EQ(directory->path()->string(), pathOf("empty")->string());
    EXPECT_EQ(directory->location()->string(), trunk()->string());
    EXPECT_EQ(directory->URL()->string(), urlOf("empty"));
    EXPECT_EQ(directory->revision(), 2) << "the last change, not the revision asked for";
    EXPECT_TRUE(directory->author() && directory->date());
    EXPECT_EQ(repository->revision(), 6);
    EXPECT_EQ(repository->UUID().value() + "\n", mustRun({"svnlook", "uuid", server->repository().path()}));
    EXPECT_EQ(repository->rootURL()->string(), rootURL());

    EXPECT_EQ(HSVNDirectory::directoryAtPath<SpecialDirectory>(trunk(), HEAD, nullptr, reading.client)->className(),
              "SpecialDirectory");
    const auto future = HSVNRevisionSpec::revisionWithNumber(99);
    EXPECT_THROW(HSVNDirectory::directoryAtPath(pathOf("empty"), future, nullptr, reading.client), HSVNException);
}

TEST_P(BrowsingTest, AListingTellsEveryChild)
{
    std::vector<HSVNNodeRef> children;
    const auto directory = HSVNDirectory::directoryAtPath(trunk(), HEAD, &children, reading.client);
    EXPECT_EQ(directory->name(), "trunk");
    EXPECT_EQ(directory->path()->string(), trunk()->string());
    EXPECT_EQ(directory->revision(), 6);
    EXPECT_EQ(directory->size(), 0U);
    ASSERT_EQ(children.size(), 3U);
    for (const auto& child : children) {
        const auto name = child->name().value();
        EXPECT_EQ(child->path()->string(), pathOf(name)->string());
        EXPECT_EQ(child->URL()->string(), urlOf(name));
        EXPECT_EQ(child->location()->string(), trunk()->string());
        EXPECT_TRUE(child->author() && child->date());
        const bool isLocked = name == "a.txt";
        EXPECT_EQ(child->lock() ? child->lock()->owner().value() : "", isLocked ? "harry" : "");
        EXPECT_EQ(child->hasProperties(), isLocked);
        EXPECT_EQ(child->size(), isLocked ? 15U : 0U);
        EXPECT_EQ(child->isDirectory(), name == "empty");
        EXPECT_EQ(child->revision(), isLocked ? 4 : name == "empty" ? 2 : 6) << name;
    }
    ASSERT_NE(HSVNDirectory::directoryAtPath(pathOf("empty"), HEAD, &children, reading.client), nullptr);
    EXPECT_TRUE(children.empty());
    EXPECT_EQ(HSVNDirectory::directoryAtPath(pathOf("a.txt"), HEAD, &children, reading.client), nullptr);
}

TEST_P(BrowsingTest, AFileTellsItsLastChangeAndItsLock)
{
    const auto file = HSVNFile::fileAtPath(pathOf("a.txt"), HEAD, reading.client);
    EXPECT_EQ(file->name(), "a.txt");
    EXPECT_EQ(file->path()->string(), pathOf("a.txt")->string());
    EXPECT_EQ(file->URL()->string(), urlOf("a.txt"));
    EXPECT_EQ(file->size(), 15U);
    EXPECT_EQ(file->revision(), 4);
    EXPECT_EQ(file->lock()->comment(), "mine");
    EXPECT_EQ(HSVNFile::fileAtPath(pathOf(oddName), HEAD, reading.client)->name(), oddName);
    EXPECT_EQ(reasonOf<HSVNException>([&] { HSVNFile::fileAtPath(trunk(), HEAD, reading.client); }),
              "Node is not a file");
    const auto past = HSVNRevisionSpec::revisionWithRevision(HSVNRevision::revisionWithNumber(5),
                                                             HSVNRevision::revisionWithNumber(5));
    if (!isLocal()) {
        EXPECT_EQ(HSVNFile::fileAtPath(pathOf("gone.txt"), past, reading.client)->size(), 5U);
        EXPECT_EQ(contents("gone.txt", past), "gone\n");
    }
}

TEST_P(BrowsingTest, ContentsComeWithTheirKeywords)
{
    EXPECT_EQ(contents("a.txt", HEAD), "one $Revision: 4 $\n");
    EXPECT_EQ(contents("a.txt", HSVNRevisionSpec::revisionWithNumber(3)), "one $Revision$\n");
    EXPECT_EQ(contents(oddName, HEAD), "");
    EXPECT_THROW(contents("missing", HEAD), HSVNException);
    EXPECT_THROW(contents("empty", HEAD), HSVNException);
}

TEST_P(BrowsingTest, AStreamMayTakeContentsSlowlyOrFail)
{
    const auto stream = std::make_shared<SlowStream>();
    const auto cat = [&] { HSVNFile::catRevision(HEAD, pathOf("a.txt"), stream, reading.client); };
    cat();
    EXPECT_EQ(stream->taken, "one $Revision: 4 $\n");
    stream->taken.clear();
    stream->limit = 6;
    EXPECT_THAT(reasonOf<HSVNException>(cat), HasSubstr("Unable to write data to output stream"));
    stream->ending = []() -> std::int64_t { throw std::length_error("the tape is full"); };
    EXPECT_THROW(cat(), std::length_error);
    stream->ending = [] { return 0; };
    EXPECT_THROW(cat(), HSVNException) << "a stream that takes nothing for ever";
    EXPECT_EQ(stream.use_count(), 1);
}

INSTANTIATE_TEST_SUITE_P(Roads, BrowsingTest, testing::Values("file", "svn", "workingCopy"),
                         [](const auto& road) { return std::string{road.param}; });

namespace {

/// A repository and its working copy, in which items are asked for and made on one line of Subversion.
class DirectoryTest : public testing::TestWithParam<HSVNVersion>
{
  protected:
    HSVNPathRef local(std::string_view name) const
    {
        return HSVNLocalPath::pathWithString(workingCopy + std::string{name});
    }
    HSVNPathRef remote(std::string_view name) const { return HSVNURL::URLWithString(repository.url(name)); }

    TestRepository repository;
    std::string workingCopy = repository.checkOut();
    ReadingClient reading{bundleOfLine(GetParam())};
    HSVNClientRef client = reading.client;
};

} // namespace

TEST_P(DirectoryTest, ALocalPathMustBeAnExistingFolder)
{
    writeFile(workingCopy + "/file", "text");
    const auto ask = [&](std::string_view name) {
        return [this, name] { HSVNDirectory::directoryAtPath(local(name), HSVNRevisionSpec::BASE(), client); };
    };
    EXPECT_EQ(reasonOf<HSVNNotWorkingCopyException>(ask("/file")), "'" + workingCopy + "/file' is not a working copy");
    EXPECT_EQ(reasonOf<HSVNNoSuchEntryException>(ask("/missing")), "'" + workingCopy + "/missing' does not exist");
    std::filesystem::create_directory_symlink(workingCopy, repository.beside("link"));
    const auto link = HSVNLocalPath::pathWithString(repository.beside("link"));
    const auto linked = HSVNDirectory::directoryAtPath(link, HSVNRevisionSpec::BASE(), client);
    EXPECT_EQ(linked->path()->string(), link->string());
    EXPECT_EQ(linked->URL()->string(), repository.url());
}

TEST_P(DirectoryTest, ANewDirectoryTellsItsCommitOrIsScheduled)
{
    reading.delegate->message = "a new folder";
    const auto committed = HSVNDirectory::createDirectoryAtPath(remote("new%20one"), client);
    EXPECT_EQ(committed->name(), "new one") << "as the user is shown it";
    EXPECT_EQ(HSVNDirectory::directoryAtPath(remote("new%20one"), HSVNRevisionSpec::HEAD(), client)->name(), "new one");
    EXPECT_EQ(committed->path()->string(), repository.url("new%20one"));
    EXPECT_EQ(committed->URL()->string(), repository.url("new%20one"));
    EXPECT_EQ(committed->revision(), 1);
    EXPECT_EQ(committed->author().value() + "\n", mustRun({"svnlook", "author", repository.path()}));
    EXPECT_TRUE(committed->date());
    EXPECT_EQ(repository.logMessage(1), "a new folder");
    reading.delegate->commits = false;
    EXPECT_EQ(reasonOf<HSVNOperationCancelledException>(
                  [&] { HSVNDirectory::createDirectoryAtPath(remote("another"), client); }),
              "Operation was cancelled");
    EXPECT_EQ(repository.youngest(), 1);

    const auto scheduled = HSVNDirectory::createDirectoryAtPath(local("/new"), client);
    EXPECT_EQ(scheduled->name(), "new");
    EXPECT_EQ(scheduled->path()->string(), workingCopy + "/new");
    EXPECT_EQ(mustRun({"svn", "status", workingCopy}), "A       " + workingCopy + "/new\n");
    EXPECT_THROW(HSVNDirectory::createDirectoryAtPath(local("/new"), client), HSVNEntryExistsException);
    EXPECT_THROW(HSVNDirectory::createDirectoryAtPath(local("/missing/new"), client), HSVNException);
}

TEST_P(DirectoryTest, APathIsMadeLevelByLevel)
{
    repository.makeFolder("a");
    mustRun({"svn", "update", "-q", workingCopy});
    for (const auto& [top, path] : {std::pair{remote("a"), remote("a/b/c")}, {local("/a"), local("/a/b/c")}}) {
        EXPECT_EQ(HSVNDirectory::createPath(path, top, client)->path()->string(), path->string());
        EXPECT_EQ(HSVNDirectory::createPath(path, top, client), nullptr) << "nothing new";
        EXPECT_EQ(HSVNDirectory::createPath(top, top, client), nullptr);
        const auto sibling = path->parent()->pathByAddingComponent("d");
        EXPECT_EQ(HSVNDirectory::createPath(sibling, top, client)->path()->string(), sibling->string());
        EXPECT_THAT(reasonOf<HSVNInvalidArgumentException>(
                        [&, inside = top] { HSVNDirectory::createPath(inside->parent(), inside, client); }),
                    HasSubstr(top->string()));
    }
    EXPECT_EQ(repository.youngest(), 4);
}

TEST_P(DirectoryTest, AFileInTheWayIsNamed)
{
    repository.put("file", "text");
    mustRun({"svn", "update", "-q", workingCopy});
    for (const auto& [top, path] : {std::pair{remote(""), remote("file/b")}, {local(""), local("/file/b")}}) {
        EXPECT_THAT(reasonOf<HSVNException>([&, of = top, to = path] { HSVNDirectory::createPath(to, of, client); }),
                    HasSubstr("file"));
        EXPECT_THAT(reasonOf<HSVNEntryExistsException>(
                        [&, of = top, to = path] { HSVNDirectory::createPath(to->parent(), of, client); }),
                    HasSubstr("file"));
    }
    EXPECT_EQ(reasonOf<HSVNException>(
                  [&] { HSVNDirectory::directoryAtPath(remote("file"), HSVNRevisionSpec::HEAD(), client); }),
              "'" + repository.url("file") + "' is not a directory");
    EXPECT_EQ(repository.youngest(), 1);
}

INSTANTIATE_TEST_SUITE_P(Lines, DirectoryTest,
                         testing::Values(HSVNVersion{1, 4}, HSVNVersion{1, 5}, HSVNVersion{1, 6}, HSVNVersion{1, 14}),
                         [](const auto& line) { return "Subversion_1_" + std::to_string(line.param.minor()); });

TEST(Browsing, EveryOperationTestsItsArguments)
{
    const auto client = std::make_shared<HSVNClient>();
    const HSVNPathRef path = HSVNLocalPath::fileSystemRoot();
    const auto HEAD = HSVNRevisionSpec::HEAD();
    std::vector<HSVNNodeRef>* children = nullptr;
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { HSVNNode::kindOfNodeAtPath(nullptr, nullptr, client); }, "path != nil"},
        {[&] { HSVNNode::isDirectoryAtPath(path, nullptr, nullptr); }, "revision != nil"},
        {[&] { HSVNFile::catRevision(HEAD, path, nullptr, client); }, "stream != nil"},
        {[&] { HSVNDirectory::directoryAtPath(path, HEAD, children, nullptr); }, "context != nil"},
        {[&] { HSVNDirectory::createDirectoryAtPath(nullptr, client); }, "path != nil"},
        {[&] { HSVNDirectory::createPath(path, nullptr, client); }, "directoryPath != nil"}};
    for (const auto& [call, condition] : cases) {
        EXPECT_EQ(reasonOf<HSVNAssertionException>(call),
                  std::string{"Invalid parameter not satisfying: "} + condition);
    }
    EXPECT_THROW(HSVNNode::kindOfNodeAtPath(path, HSVNRevisionSpec::MINE(), client), HSVNException);
}

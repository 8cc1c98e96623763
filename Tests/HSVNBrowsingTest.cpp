#include "HSVNBundleLoader.h"
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

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

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
        repository.makeFolder("trunk");                                            // r1
        repository.makeFolder("trunk/empty");                                      // r2
        repository.put("trunk/a.txt", "one $Revision$\n");                         // r3
        repository.change({"propset", "svn:keywords", "Revision", "trunk/a.txt"}); // r4
        repository.put("trunk/gone.txt", "gone\n");                                // r5
        repository.change({"rm", "trunk/gone.txt", "mkdir", "trunk/folder"});      // r6
        const auto wc = repository.checkOut("filling");
        writeFile(wc + "/trunk/" + oddName, "odd\n");
        mustRun({"svn", "add", "-q", wc + "/trunk/" + oddName + '@'});
        mustRun({"svn", "commit", "-q", "-m", "", "--username", "harry", wc}); // r7
        mustRun({"svn", "lock", "-q", "-m", "mine", "--username", "harry", repository.url("trunk/a.txt")});
        workingCopy = repository.checkOut();
    }
    static void TearDownTestSuite() { server.reset(); }

    static bool isLocal() { return std::string_view{GetParam()} == "workingCopy"; }
    static HSVNPathRef root()
    {
        const std::string road = GetParam();
        return HSVNPath::pathWithString(road == "file"  ? server->repository().url()
                                        : road == "svn" ? server->url()
                                                        : workingCopy);
    }
    static HSVNPathRef pathOf(const std::string& name)
    {
        return root()->pathByAddingComponent("trunk")->pathByNormalizingAndAddingComponent(name);
    }
    static HSVNPathRef trunk() { return root()->pathByAddingComponent("trunk"); }
    /// The URL that Subversion tells for an item of the folder trunk.
    static std::string urlOf(const std::string& name)
    {
        const auto base =
            std::string_view{GetParam()} == "svn" ? server->url("trunk") : server->repository().url("trunk");
        return HSVNURL::URLWithString(base)->pathByNormalizingAndAddingComponent(name)->string();
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

} // namespace

TEST_P(BrowsingTest, KindsAndURLs)
{
    EXPECT_EQ(HSVNNode::kindOfNodeAtPath(trunk(), HEAD, reading.client), HSVNNodeKindDirectory);
    EXPECT_EQ(HSVNNode::kindOfNodeAtPath(pathOf(oddName), HEAD, reading.client), HSVNNodeKindFile);
    EXPECT_TRUE(HSVNNode::isDirectoryAtPath(pathOf("empty"), HSVNRevisionSpec::UNSPECIFIED(), reading.client));
    EXPECT_FALSE(HSVNNode::isDirectoryAtPath(pathOf("a.txt"), HEAD, reading.client));
    EXPECT_THROW(HSVNNode::kindOfNodeAtPath(pathOf("missing"), HEAD, reading.client), HSVNException);
    EXPECT_EQ(HSVNNode::URLForNodeAtPath(pathOf(oddName), reading.client)->string(), urlOf(oddName));
    EXPECT_THROW(HSVNNode::URLForNodeAtPath(pathOf("missing"), reading.client), HSVNException);
    EXPECT_THROW(HSVNBundleCurrent(), HSVNGenericException) << "a bundle is left on the thread's stack";
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
    EXPECT_TRUE(directory->author());
    EXPECT_TRUE(directory->date());
    EXPECT_FALSE(directory->hasProperties());
    EXPECT_EQ(directory->lock(), nullptr);
    EXPECT_EQ(directory->status(), nullptr);
    EXPECT_EQ(repository->revision(), 7);
    EXPECT_EQ(repository->UUID().value() + "\n", mustRun({"svnlook", "uuid", server->repository().path()}));
    EXPECT_EQ(repository->rootURL()->string() + "/trunk/empty", urlOf("empty"));

    HSVNRepositoryInfoRef* nowhere = nullptr;
    EXPECT_EQ(HSVNDirectory::directoryAtPath<SpecialDirectory>(trunk(), HEAD, nowhere, reading.client)->className(),
              "SpecialDirectory");
    EXPECT_THROW(
        HSVNDirectory::directoryAtPath(pathOf("empty"), HSVNRevisionSpec::revisionWithNumber(99), reading.client),
        HSVNException);
}

TEST_P(BrowsingTest, AListingTellsEveryChild)
{
    std::vector<HSVNNodeRef> children;
    const auto directory = HSVNDirectory::directoryAtPath(trunk(), HEAD, &children, reading.client);
    EXPECT_EQ(directory->name(), "trunk");
    EXPECT_EQ(directory->path()->string(), trunk()->string());
    EXPECT_EQ(directory->revision(), 7);
    EXPECT_EQ(directory->size(), 0U);
    std::vector<std::string> names;
    for (const auto& child : children) {
        names.push_back(child->name().value());
        EXPECT_EQ(child->path()->string(), pathOf(names.back())->string());
        EXPECT_EQ(child->URL()->string(), urlOf(names.back()));
        EXPECT_EQ(child->location()->string(), trunk()->string());
        EXPECT_TRUE(child->date());
    }
    ASSERT_THAT(names, testing::UnorderedElementsAre("a.txt", "empty", "folder", oddName));
    for (const auto& child : children) {
        const bool isLocked = child->name() == "a.txt";
        EXPECT_EQ(child->lock() != nullptr, isLocked);
        EXPECT_EQ(child->hasProperties(), isLocked);
        const bool isFolder = child->name() == "empty" || child->name() == "folder";
        EXPECT_EQ(child->isDirectory(), isFolder);
        EXPECT_EQ(child->size(), isFolder ? 0U : isLocked ? 15U : 4U);
        EXPECT_EQ(child->revision(), isLocked ? 4 : isFolder ? (child->name() == "empty" ? 2 : 6) : 7);
        if (isLocked) {
            EXPECT_EQ(child->lock()->owner(), "harry");
            EXPECT_EQ(child->lock()->comment(), "mine");
            EXPECT_EQ(child->lock()->path()->string(), "/trunk/a.txt");
        }
    }
    ASSERT_NE(HSVNDirectory::directoryAtPath(pathOf("empty"), HEAD, &children, reading.client), nullptr);
    EXPECT_THAT(children, IsEmpty());
    EXPECT_EQ(HSVNDirectory::directoryAtPath(pathOf("a.txt"), HEAD, &children, reading.client), nullptr);
    EXPECT_THROW(HSVNDirectory::directoryAtPath(pathOf("missing"), HEAD, &children, reading.client), HSVNException);
}

TEST_P(BrowsingTest, AFileTellsItsLastChangeAndItsLock)
{
    const auto file = HSVNFile::fileAtPath(pathOf("a.txt"), HEAD, reading.client);
    EXPECT_EQ(file->name(), "a.txt");
    EXPECT_EQ(file->path()->string(), pathOf("a.txt")->string());
    EXPECT_EQ(file->URL()->string(), urlOf("a.txt"));
    EXPECT_EQ(file->size(), 15U);
    EXPECT_EQ(file->revision(), 4);
    EXPECT_EQ(file->lock()->owner(), "harry");
    EXPECT_TRUE(file->hasProperties());
    EXPECT_EQ(HSVNFile::fileAtPath(pathOf(oddName), HEAD, reading.client)->name(), oddName);
    EXPECT_EQ(reasonOf<HSVNException>([&] { HSVNFile::fileAtPath(trunk(), HEAD, reading.client); }),
              "Node is not a file");
    EXPECT_THROW(HSVNFile::fileAtPath(pathOf("missing"), HEAD, reading.client), HSVNException);

    EXPECT_TRUE(HSVNNode::nodeAtPath(trunk(), HEAD, reading.client)->isDirectory());
    EXPECT_EQ(HSVNNode::nodeAtPath(pathOf(oddName), HEAD, reading.client)->className(), "HSVNFile");
}

TEST_P(BrowsingTest, WhatIsGoneIsStillFoundInItsRevision)
{
    const auto past = HSVNRevisionSpec::revisionWithRevision(HSVNRevision::revisionWithNumber(5),
                                                             HSVNRevision::revisionWithNumber(5));
    if (isLocal()) {
        EXPECT_THROW(HSVNFile::fileAtPath(pathOf("gone.txt"), past, reading.client), HSVNException);
        return;
    }
    EXPECT_EQ(HSVNFile::fileAtPath(pathOf("gone.txt"), past, reading.client)->size(), 5U);
    EXPECT_EQ(contents("gone.txt", past), "gone\n");
    EXPECT_EQ(HSVNNode::kindOfNodeAtPath(pathOf("gone.txt"), past, reading.client), HSVNNodeKindFile);
}

TEST_P(BrowsingTest, ContentsComeWithTheirKeywords)
{
    EXPECT_EQ(contents("a.txt", HEAD), "one $Revision: 4 $\n");
    EXPECT_EQ(contents("a.txt", HSVNRevisionSpec::revisionWithNumber(3)), "one $Revision$\n");
    EXPECT_EQ(contents(oddName, HEAD), "odd\n");
    EXPECT_THROW(contents("missing", HEAD), HSVNException);
    EXPECT_THROW(contents("empty", HEAD), HSVNException);
}

namespace {

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

TEST_P(BrowsingTest, AStreamMayTakeContentsSlowlyOrFail)
{
    const auto stream = std::make_shared<SlowStream>();
    const auto cat = [&] { HSVNFile::catRevision(HEAD, pathOf("a.txt"), stream, reading.client); };
    cat();
    EXPECT_EQ(stream->taken, "one $Revision: 4 $\n");
    stream->taken.clear();
    stream->limit = 6;
    EXPECT_THAT(reasonOf<HSVNException>(cat), HasSubstr("Unable to write data to output stream"));
    stream->ending = []() -> std::int64_t { throw std::length_error("the disk of the tape is full"); };
    EXPECT_THROW(cat(), std::length_error);
    stream->ending = [] { return 0; };
    EXPECT_THROW(cat(), HSVNException) << "a stream that takes nothing for ever";
    EXPECT_EQ(stream.use_count(), 1);
}

INSTANTIATE_TEST_SUITE_P(Roads, BrowsingTest, testing::Values("file", "svn", "workingCopy"),
                         [](const auto& road) { return std::string{road.param}; });

namespace {

/// A working copy whose items are asked for and made, on one line of Subversion.
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

TEST_P(DirectoryTest, ANewDirectoryOfTheRepositoryTellsItsCommit)
{
    reading.delegate->message = "a new folder";
    const auto directory = HSVNDirectory::createDirectoryAtPath(remote("new%20one"), client);
    EXPECT_EQ(directory->name(), "new%20one");
    EXPECT_EQ(directory->path()->string(), repository.url("new%20one"));
    EXPECT_EQ(directory->URL()->string(), repository.url("new%20one"));
    EXPECT_EQ(directory->revision(), 1);
    EXPECT_EQ(directory->author().value() + "\n", mustRun({"svnlook", "author", repository.path()}));
    EXPECT_TRUE(directory->date());
    EXPECT_EQ(repository.logMessage(1), "a new folder");
    EXPECT_THROW(HSVNDirectory::createDirectoryAtPath(remote("new%20one"), client), HSVNEntryExistsException);

    reading.delegate->commits = false;
    EXPECT_EQ(reasonOf<HSVNOperationCancelledException>(
                  [&] { HSVNDirectory::createDirectoryAtPath(remote("another"), client); }),
              "Operation was cancelled");
    EXPECT_EQ(repository.youngest(), 1);
}

TEST_P(DirectoryTest, ANewDirectoryOfAWorkingCopyIsScheduledForAddition)
{
    const auto directory = HSVNDirectory::createDirectoryAtPath(local("/new"), client);
    EXPECT_EQ(directory->name(), "new");
    EXPECT_EQ(directory->path()->string(), workingCopy + "/new");
    EXPECT_EQ(mustRun({"svn", "status", workingCopy}), "A       " + workingCopy + "/new\n");
    EXPECT_THROW(HSVNDirectory::createDirectoryAtPath(local("/new"), client), HSVNEntryExistsException);
    EXPECT_THROW(HSVNDirectory::createDirectoryAtPath(local("/missing/new"), client), HSVNException);
}

TEST_P(DirectoryTest, APathIsMadeLevelByLevel)
{
    repository.makeFolder("a");
    mustRun({"svn", "update", "-q", workingCopy});
    for (const auto& [top, path] : {std::pair{remote("a"), remote("a/b/c")}, {local("/a"), local("/a/b/c")}}) {
        const auto deepest = HSVNDirectory::createPath(path, top, client);
        EXPECT_EQ(deepest->path()->string(), path->string());
        EXPECT_EQ(HSVNDirectory::createPath(path, top, client), nullptr) << "nothing new";
        EXPECT_EQ(HSVNDirectory::createPath(top, top, client), nullptr);
        const auto sibling = path->parent()->pathByAddingComponent("d");
        EXPECT_EQ(HSVNDirectory::createPath(sibling, top, client)->path()->string(), sibling->string());
        EXPECT_THAT(reasonOf<HSVNInvalidArgumentException>(
                        [&, outside = top] { HSVNDirectory::createPath(outside->parent(), outside, client); }),
                    HasSubstr(top->string()));
    }
    EXPECT_EQ(repository.youngest(), 4);
}

TEST_P(DirectoryTest, EveryOperationTestsItsArguments)
{
    const auto path = local("");
    const auto HEAD = HSVNRevisionSpec::HEAD();
    std::vector<HSVNNodeRef>* children = nullptr;
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { HSVNNode::kindOfNodeAtPath(nullptr, nullptr, client); }, "path != nil"},
        {[&] { HSVNNode::isDirectoryAtPath(path, nullptr, nullptr); }, "revision != nil"},
        {[&] { HSVNNode::URLForNodeAtPath(path, nullptr); }, "context != nil"},
        {[&] { HSVNNode::nodeAtPath(path, HEAD, nullptr); }, "context != nil"},
        {[&] { HSVNFile::fileAtPath(path, nullptr, client); }, "revision != nil"},
        {[&] { HSVNFile::catRevision(HEAD, path, nullptr, client); }, "stream != nil"},
        {[&] { HSVNDirectory::directoryAtPath(path, nullptr, client); }, "revision != nil"},
        {[&] { HSVNDirectory::directoryAtPath(path, HEAD, children, nullptr); }, "context != nil"},
        {[&] { HSVNDirectory::createDirectoryAtPath(nullptr, client); }, "path != nil"},
        {[&] { HSVNDirectory::createPath(path, nullptr, client); }, "directoryPath != nil"}};
    for (const auto& [call, condition] : cases) {
        EXPECT_EQ(reasonOf<HSVNAssertionException>(call),
                  std::string{"Invalid parameter not satisfying: "} + condition);
    }
    EXPECT_THROW(HSVNNode::kindOfNodeAtPath(path, HSVNRevisionSpec::MINE(), client), HSVNException);
}

INSTANTIATE_TEST_SUITE_P(Lines, DirectoryTest,
                         testing::Values(HSVNVersion{1, 4}, HSVNVersion{1, 5}, HSVNVersion{1, 6}, HSVNVersion{1, 14}),
                         [](const auto& line) { return "Subversion_1_" + std::to_string(line.param.minor()); });

#include "Command.h"
#include "EveryKindOfItem.h"
#include "HSVNClient.h"
#include "HSVNClientSettings.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNNode.h"
#include "HSVNStatus.h"
#include "HSVNStatusOptions.h"
#include "HSVNURL.h"
#include "OpenedFile.h"
#include "TestBundles.h"
#include "XMLEntries.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fmt/format.h>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <pthread.h>
#include <set>
#include <stdexcept>
#include <thread>

// Folders are read on further threads ahead of a status walk. It must tell what it tells without them, in every field
// and in the same order, end as it does without them, and not tell of what has changed since.

namespace {

using Records = std::vector<std::string>;

std::string dateOrDash(const std::optional<HSVNDate>& date) { return date ? date->description() : "-"; }

std::string fieldsOf(const HSVNNode& node)
{
    const auto& status = *node.status();
    return fmt::format(
        "{} {} size {} url {} lock {} by {} at {} revision {} states {}/{}/{} schedule {} depth {} base "
        "{} list {} moved {}/{} "
        "flags {}{}{}{}{}{}{}{}{}{}{}",
        node.path()->string(), node.isDirectory(), node.size(), node.URL() ? node.URL()->string() : "-",
        node.lock() ? node.lock()->token() : "-", node.author().value_or("-"), dateOrDash(node.exactDate()),
        node.revision(), status.nodeStatus(), status.textStatus(), status.propertyStatus(), status.schedule(),
        status.depth(), status.revision(), status.changelist().value_or("-"), status.movedFrom().value_or("-"),
        status.movedTo().value_or("-"), status.locked(), status.copied(), status.switched(), status.fileExternal(),
        status.versioned(), status.incomplete(), status.textConflicted(), status.propertiesConflicted(),
        status.treeConflicted(), status.hasProperties(), status.hasPropertyModifications());
}

/// Asked to stop once so many records were received.
struct Stopper
{
    bool queryContinue(HSVNContext&) const
    {
        EXPECT_EQ(std::this_thread::get_id(), thread) << "asked on another thread";
        return records.size() < limit;
    }

    Records records;
    std::size_t limit = std::string::npos;
    std::thread::id thread = std::this_thread::get_id();
};

/// Whether the folder is opened, now or soon.
bool isOpened(const OpenedFile& folder)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds{30};
    while (std::chrono::steady_clock::now() < end) {
        if (folder.times() > 0) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
    return false;
}

class StatusOnThreads : public testing::Test
{
  protected:
    static void SetUpTestSuite()
    {
        suite = std::make_unique<EveryKindOfItem>();
        suite->make();
    }
    static void TearDownTestSuite() { suite.reset(); }

    void SetUp() override
    {
        if (std::thread::hardware_concurrency() < 2) {
            GTEST_SKIP() << "a single processor has no use for threads";
        }
    }

    static std::string item(const std::string& name) { return suite->item(name); }

    /// What is told; `atFirst` is called with the first record.
    Records records(const std::string& target, HSVNStatusChoices choices, unsigned threads,
                    const std::function<void()>& atFirst = {}) const
    {
        Records told;
        choices.threads = threads;
        client->status(target, choices, [&](const HSVNNodeRef& node) {
            if (told.empty() && atFirst) {
                atFirst();
            }
            told.push_back(fieldsOf(*node));
        });
        return told;
    }

    /// The items that are not as they were, by the class operation, which takes no further threads.
    std::set<std::string> unusualByClassOperation(const std::string& folder) const
    {
        std::set<std::string> paths;
        for (const auto& node : HSVNDirectory::statusForNodesInDirectoryAtPath(HSVNLocalPath::pathWithString(folder),
                                                                               HSVNStatusOptions::defaults(), client))
        {
            paths.insert(node->path()->string());
        }
        return paths;
    }

    /// A walk stopped after so many records: what was told until then, and how it ended.
    std::pair<Records, std::string> stopped(unsigned threads, std::size_t limit, std::string_view way) const
    {
        stopper->records.clear();
        stopper->limit = way == "cancelled" ? limit : std::string::npos;
        std::string end = "to its end";
        try {
            client->status(suite->workingCopy(), {.threads = threads}, [&](const HSVNNodeRef& node) {
                stopper->records.push_back(fieldsOf(*node));
                if (way == "thrown" && stopper->records.size() == limit) {
                    throw std::range_error{"enough"};
                }
                return way != "refused" || stopper->records.size() < limit;
            });
        } catch (const std::exception& exception) {
            end = exception.what();
        }
        return {stopper->records, end};
    }

    inline static std::unique_ptr<EveryKindOfItem> suite;
    std::shared_ptr<HSVNClientDelegateFor<Stopper>> stopper = std::make_shared<HSVNClientDelegateFor<Stopper>>();
    HSVNClientRef client = std::make_shared<HSVNClient>(bundleOfLine(installedLine()), stopper);
};

struct Walk
{
    std::string name;
    std::string target;
    std::string lastFolder;
    HSVNStatusChoices choices;
};

TEST_F(StatusOnThreads, TellsWhatOneThreadTells)
{
    const std::vector<Walk> walks{
        {"everything", "", "switchedto", {.getAll = true}},
        {"unusual items", "", "switchedto", {}},
        {"ignored ones", "", "switchedto", {.getAll = true, .matchIgnorePatterns = false}},
        {"no externals", "", "switchedto", {.getAll = true, .processExternals = false}},
        {"a changelist", "", "switchedto", {.changelists = {"list"}}},
        {"a folder", "copiedtree", "copiedtree/deep", {.getAll = true}},
        {"the repository, too", "", "switchedto", {.getAll = true, .contactRepository = true}},
        {"few", "", "switchedto", {.depth = HSVNDepthImmediates, .getAll = true}}};
    for (const auto& walk : walks) {
        SCOPED_TRACE(walk.name);
        const auto target = walk.target.empty() ? suite->workingCopy() : item(walk.target);
        const auto told = [&](unsigned threads, const std::function<void()>& atFirst = {}) {
            auto all = records(target, walk.choices, threads, atFirst);
            if (walk.choices.contactRepository) {
                std::sort(all.begin(), all.end()); // the order is a hash's
            }
            return all;
        };
        const auto expected = told(1);
        EXPECT_FALSE(expected.empty());
        const OpenedFile lastFolder{item(walk.lastFolder)};
        const bool usesThreads = walk.choices.depth == HSVNDepthUnknown && !walk.choices.contactRepository;
        const auto watch = [&] { EXPECT_TRUE(!usesThreads || isOpened(lastFolder)) << "nothing is read ahead"; };
        EXPECT_EQ(told(2, watch), expected);
        EXPECT_EQ(told(4), expected);
    }
}

TEST_F(StatusOnThreads, TellsTheStatesThatSvnTells)
{
    std::multiset<std::string> expected;
    for (const auto& entry :
         XMLEntry::entriesIn(mustRun({"svn", "status", "--verbose", "--no-ignore", "--xml", suite->workingCopy()})))
    {
        expected.insert(entry.text("@path") + " is " + entry.text("wc-status@item"));
    }
    ASSERT_GT(expected.size(), 50U);
    const HSVNStatusChoices everything{.getAll = true, .matchIgnorePatterns = false};
    for (const unsigned threads : {1U, 2U}) {
        std::multiset<std::string> told;
        auto choices = everything;
        choices.threads = threads;
        client->status(suite->workingCopy(), choices, [&](const HSVNNodeRef& node) {
            told.insert(node->path()->string() + " is " + HSVNTextOfStatusKind(node->status()->textStatus()));
        });
        Records differing;
        std::set_symmetric_difference(told.begin(), told.end(), expected.begin(), expected.end(),
                                      std::back_inserter(differing));
        EXPECT_EQ(differing, Records{}) << threads;
    }
}

TEST_F(StatusOnThreads, EndsAsOnOneThread)
{
    const auto all = records(suite->workingCopy(), {}, 1);
    ASSERT_GT(all.size(), 50U);
    const std::vector<std::pair<std::string, std::size_t>> ways{{"cancelled", 1}, {"thrown", 5}, {"refused", 5}};
    for (const auto& [way, step] : ways) {
        const auto expectedEnd = stopped(1, 1, way).second;
        for (std::size_t limit = 1; limit <= all.size(); limit += step) {
            const auto [told, end] = stopped(2, limit, way);
            ASSERT_EQ(told, Records(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(told.size())));
            if (way == "cancelled") { // Subversion asks once a folder, and not after the last
                ASSERT_TRUE(told.size() >= limit && (end == expectedEnd || told.size() == all.size())) << limit;
            } else {
                ASSERT_TRUE(told.size() == limit && end == expectedEnd) << way << " after " << limit << ": " << end;
            }
        }
    }
    stopper->limit = std::string::npos;
    EXPECT_EQ(records(suite->workingCopy(), {}, 2), all);
}

TEST_F(StatusOnThreads, TellsOfWhatAnotherProgramChangesMeanwhile)
{
    const TestRepository repository;
    for (const char* folder : {"first", "second"}) {
        repository.makeFolder(folder);
        repository.put(std::string{folder} + "/stays", "one\n");
        repository.put(std::string{folder} + "/goes", "one\n");
    }
    const auto root = repository.checkOut();
    const std::string file = repository.beside("new");
    writeFile(file, "new\n");
    repository.change({"rm", "second/goes", "put", file, "second/comes", "put", file, "second/stays"});
    const OpenedFile second{root + "/second"};
    const auto told = records(root, {.getAll = true}, 2, [&] {
        EXPECT_TRUE(isOpened(second)) << "nothing is read ahead";
        mustRun({"svn", "update", "-q", root});
    });
    const auto now = records(root, {.getAll = true}, 1);
    ASSERT_EQ(told.size(), now.size());
    EXPECT_NE(told.front(), now.front()) << "the root was told of before the update";
    // What was read of the second folder was no longer true; the folder itself was told of with the root.
    EXPECT_EQ(Records(told.end() - 2, told.end()), Records(now.end() - 2, now.end()));
}

TEST_F(StatusOnThreads, OpensTheDatabaseAsOftenForManyDeletedItemsAsForOne)
{
    const auto root = suite->checkOut("deletedwc");
    std::vector<std::string> removal{"remove"};
    for (const auto& entry : std::filesystem::directory_iterator{root + "/dir"}) {
        removal.push_back(entry.path().string());
    }
    ASSERT_GT(removal.size(), 20U);
    const auto timesOpened = [&] {
        const OpenedFile database{root + "/.svn/wc.db"};
        records(root, {}, 1);
        return database.times();
    };
    EveryKindOfItem::svn({"remove", root + "/normal"});
    const int forOne = timesOpened();
    EXPECT_GE(forOne, 2);
    EveryKindOfItem::svn(removal);
    EXPECT_LE(timesOpened(), forOne + 1);
}

TEST_F(StatusOnThreads, LetsAReceiverWalkThroughWhatItHasChanged)
{
    const std::string target = suite->workingCopy();
    const std::string file = item("switchedto/unversioned");
    const OpenedFile folder{item("switchedto")};
    std::set<std::string> within;
    records(target, {.getAll = true}, 2, [&] {
        EXPECT_TRUE(isOpened(folder)) << "nothing is read ahead";
        writeFile(file, "new\n");
        within = unusualByClassOperation(item("switchedto"));
    });
    EXPECT_EQ(within, unusualByClassOperation(item("switchedto")));
    std::filesystem::remove(file);
}

TEST_F(StatusOnThreads, TakesNoThreadsWhereNoneMayBe)
{
    const std::vector<std::pair<std::string, HSVNStatusChoices>> walks{
        {"forbidden", {.getAll = true, .threads = 1}},
        {"small", {.getAll = true}},
        {"locked exclusively", {.getAll = true, .threads = 2}}};
    for (const auto& walk : walks) {
        const auto& name = walk.first;
        if (name == "locked exclusively") {
            client->applySettings({.options = {{"config", "working-copy", "exclusive-locking", "yes"}}});
        }
        const OpenedFile folder{item("switchedto")};
        client->status(suite->workingCopy(), walk.second, [&](const HSVNNodeRef& node) {
            if (node->path()->string() == item("switchedto")) {
                EXPECT_EQ(folder.times(), 0) << name;
            }
        });
        EXPECT_GT(folder.times(), 0) << name;
    }
}

TEST_F(StatusOnThreads, DoesWithoutThreadsThatCannotBeMade)
{
    pthread_attr_t before;
    ASSERT_EQ(pthread_getattr_default_np(&before), 0);
    pthread_attr_t impossible;
    ASSERT_EQ(pthread_getattr_default_np(&impossible), 0);
    constexpr std::size_t moreThanThereIs = std::size_t{1} << 48U;
    ASSERT_EQ(pthread_attr_setstacksize(&impossible, moreThanThereIs), 0);
    const auto expected = records(suite->workingCopy(), {.getAll = true}, 1);
    ASSERT_EQ(pthread_setattr_default_np(&impossible), 0);
    EXPECT_THROW(std::thread{[] {}}.join(), std::system_error);
    EXPECT_EQ(records(suite->workingCopy(), {.getAll = true}, 2), expected);
    ASSERT_EQ(pthread_setattr_default_np(&before), 0);
}

} // namespace

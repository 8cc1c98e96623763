#include "AlteredBundle.h"
#include "HSVNException.h"
#include "HSVNLogDelegate.h"
#include "HSVNLogOptions.h"
#include "HSVNNode.h"
#include "HSVNPath.h"
#include "HSVNRevision.h"
#include "Internal/Log.h"
#include "Internal/LogChanges.h"
#include "Internal/Operation.h"
#include "ReadingClient.h"
#include "ReasonOf.h"
#include "SvnServer.h"
#include "TestRepository.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <thread>
#include <tuple>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

HSVNLogPathChangeRef change(const char* path, HSVNLogAction action)
{
    return std::make_shared<HSVNLogPathChange>(path, action);
}

/// A client of the installed line, or one that has only what an older line has.
HSVNClientRef clientOfLine(const std::string& line)
{
    return line == "1.14" ? std::make_shared<HSVNClient>() : clientWithoutExtensions(line);
}

constexpr HSVNDate someDate = HSVNDate::dateWithTimeIntervalSince1970(1'000'000'000);
constexpr const char* dashedLine = "------------------------------------------------------------------------\n";

} // namespace

TEST(LogAction, ConvertsToAndFromItsCharacter)
{
    constexpr std::string_view characters = "O-ADRM";
    for (int value = -1; value <= 4; ++value) {
        const auto action = static_cast<HSVNLogAction>(value);
        const auto character = characters[static_cast<std::size_t>(value + 1)];
        EXPECT_EQ(HSVNStringFromLogAction(action), std::string{character});
        EXPECT_EQ(HSVNLogActionFromChar(character), action);
    }
    EXPECT_EQ(HSVNLogActionFromString(std::nullopt), HSVNLogActionNone);
    EXPECT_EQ(HSVNLogActionFromString("Modified"), HSVNLogActionModified);
    for (const char* text : {"x", "m", ""}) {
        EXPECT_EQ(HSVNLogActionFromString(text), HSVNLogActionUnknown) << text;
    }
    for (const int action : {-2, 5, std::numeric_limits<int>::max()}) {
        EXPECT_EQ(reasonOf<HSVNException>([&] { HSVNCharFromLogAction(static_cast<HSVNLogAction>(action)); }),
                  "Unrecognized action");
    }
}

TEST(LogPathChange, AdjustsItsPathAndACopySourceFromTheSameRoot)
{
    struct Case
    {
        const char *path, *copyPath, *adjusted, *adjustedCopyPath;
    };
    for (const auto& [path, copyPath, adjusted, adjustedCopyPath] :
         {Case{"/trunk/a/f", "/trunk/b/f", "/a/f", "/b/f"}, // a branch's paths without the branch
          Case{"/trunk/a/f", "/trunk", "/a/f", "/"}, Case{"/trunk/a/f", "/trunks/b", "/a/f", "/trunks/b"},
          Case{"/a/f", "/b/f", "/project/a/f", "/project/b/f"}, // a repository shown below a folder
          Case{"/a/f", "/", "/project/a/f", "/project"}, Case{"/a/old", "/b", "/a/new", "/b"},
          Case{"/a", "/b", "/a", "/b"}})
    {
        HSVNLogPathChange adjusting{path, HSVNLogActionAdded, copyPath, 7};
        adjusting.adjustPath(adjusted);
        EXPECT_EQ(adjusting.path(), adjusted);
        EXPECT_EQ(adjusting.copyPath(), adjustedCopyPath) << path << " to " << adjusted;
        EXPECT_EQ(adjusting.copyRevision(), 7);
    }
}

TEST(LogItem, KeepsOneChangeAPathAndFindsThoseOfAncestors)
{
    HSVNLogItem item;
    for (const auto& [path, action] : {std::pair{"/trunk/a", HSVNLogActionAdded},
                                       {"/trunk/a", HSVNLogActionModified},
                                       {"/trunk/b", HSVNLogActionDeleted}})
    {
        item.addChange(change(path, action));
    }
    EXPECT_THAT(item.changedPaths(), UnorderedElementsAre("/trunk/a", "/trunk/b"));
    EXPECT_THAT(item.additions(), IsEmpty());
    EXPECT_THAT(item.modifications(), ElementsAre(item.changeForPath("/trunk/a")));
    EXPECT_EQ(item.changeForAncestorOfPath("/trunk/a/b/c"), item.changeForPath("/trunk/a"));
    for (const char* outside : {"/trunk/c", "trunk/a", "/", "", "a"}) {
        EXPECT_EQ(item.changeForAncestorOfPath(outside), nullptr) << outside;
    }
    item.addChange(change("/", HSVNLogActionModified));
    EXPECT_EQ(item.changeForAncestorOfPath("/trunk/c"), item.changeForPath("/"));
    EXPECT_THROW(item.changeForAncestorOfPath(std::nullopt), HSVNAssertionException);

    HSVNLogItem assigned;
    assigned.assignFrom(item.copy());
    item.removeChange(item.deletions()[0]);
    item.removeChangeWithPath("/");
    item.removeChangeWithPath("/missing");
    EXPECT_THAT(item.changedPaths(), ElementsAre("/trunk/a"));
    EXPECT_EQ(assigned.changes().size(), 3U) << "copies have a dictionary of their own";
}

TEST(LogItem, MakesTheChangesThatItWasReadWithOnceForAllCopiesAndThreads)
{
    std::vector<HSVNLogChanges::Record> records;
    for (const char* const path : {"/b", "/a", "/a-b", "/a/c"}) {
        auto& record = records.emplace_back();
        record.path = path;
        record.action = HSVNLogActionAdded;
        record.textModified = true;
    }
    records.back().copyPath = "/b";
    records.back().copyRevision = 3;
    HSVNLogItem item;
    item.setReadChanges(std::make_shared<HSVNLogChanges>(std::move(records)));
    HSVNLogItem copy{item};
    std::vector<HSVNLogPathChangeRef> onAThread;
    std::thread reader{[&] { onAThread = item.sortedChanges(); }};
    const auto ofTheCopy = copy.sortedChanges();
    reader.join();
    EXPECT_EQ(onAThread, ofTheCopy);
    ASSERT_EQ(ofTheCopy.size(), 4U);
    const auto& last = *ofTheCopy[1];
    EXPECT_EQ(last.path(), "/a/c");
    EXPECT_EQ(last.copyPath(), "/b");
    EXPECT_EQ(last.copyRevision(), 3);
    EXPECT_EQ(last.textModified(), true);
    EXPECT_EQ(last.propertiesModified(), std::nullopt);
    EXPECT_EQ(ofTheCopy[0]->copyPath(), std::nullopt);
    copy.removeChangeWithPath("/b");
    copy.addChange(change("/new", HSVNLogActionDeleted));
    EXPECT_THAT(item.changedPaths(), UnorderedElementsAre("/a", "/a-b", "/a/c", "/b"));
    EXPECT_THAT(copy.changedPaths(), UnorderedElementsAre("/a", "/a-b", "/a/c", "/new"));
    EXPECT_EQ(copy.changeForPath("/a"), item.changeForPath("/a"));
}

TEST(LogItem, LiesInRangesOfItsNumberOrItsDate)
{
    const HSVNLogItem item{"message", 10, someDate, "harry"};
    const auto number = [](int value) { return HSVNRevision::revisionWithNumber(value); };
    EXPECT_TRUE(item.isInRange(HSVNRevisionRange::all()));
    EXPECT_TRUE(item.isInRange(HSVNRevisionRange::from(number(10))));
    EXPECT_FALSE(item.isInRange(HSVNRevisionRange::to(number(9))));
    EXPECT_TRUE(item.isInRange(HSVNRevisionRange::to(HSVNRevision::revisionAtDate(someDate))));
    EXPECT_FALSE(item.isInRange(
        HSVNRevisionRange::to(HSVNRevision::revisionAtDate(HSVNDate::dateWithTimeIntervalSince1970(5)))));
    EXPECT_THROW(item.isInRange(nullptr), HSVNAssertionException);
}

TEST(LogItem, WritesItselfAsACustomaryLog)
{
    HSVNLogItem item{"first line\nsecond", 12, someDate, "harry"};
    const auto end = "\nfirst line\nsecond\n";
    const auto head = std::string{dashedLine} + "r12 | harry | 2001-09-09 01:46:40 +0000\nChanged paths:\n";
    EXPECT_EQ(item.stringValue(), head + end);
    item.addChange(change("/b", HSVNLogActionModified));
    item.addChange(std::make_shared<HSVNLogPathChange>("/a", HSVNLogActionReplaced, "/trunk/a b", 3));
    item.addChange(change("/B", HSVNLogActionUnknown));
    EXPECT_EQ(item.stringValue(), head + "  O /B\n  R /a (from /trunk/a b:3)\n  M /b\n" + end);
    EXPECT_EQ(item.description(), "{ " + item.objectDescription() +
                                      " revision: 12, date: 2001-09-09 01:46:40 +0000, author: \"harry\", message: "
                                      "\"first line\\nsecond\" }");
    item.setMessage(std::string(51, 'm'));
    EXPECT_THAT(item.description(), testing::HasSubstr("message: \"" + std::string(50, 'm') + "...\""));
    item.addChange(change("/c", static_cast<HSVNLogAction>(9)));
    EXPECT_THROW(item.stringValue(), HSVNException);
}

namespace {

/// Takes items until it has had enough of them.
struct LogReader : HSVNLogDelegate
{
    explicit LogReader(std::size_t refused) : refusedItem{refused} {}
    bool logItemReceived(const HSVNLogItemRef& item) override
    {
        items.push_back(item);
        return items.size() != refusedItem;
    }

    std::size_t refusedItem;
    std::vector<HSVNLogItemRef> items;
};

struct ThrowingReader : HSVNLogDelegate
{
    bool logItemReceived(const HSVNLogItemRef&) override { throw std::out_of_range("the reader's own"); }
};

std::vector<HSVNRevisionNumber> numbers(const std::vector<HSVNLogItemRef>& items)
{
    std::vector<HSVNRevisionNumber> result;
    std::transform(items.begin(), items.end(), std::back_inserter(result),
                   [](const auto& item) { return item->revision(); });
    return result;
}

/// A server over a repository of six revisions; every test asks it as "file", "svn" or through a working copy.
class LogReadingTest : public testing::TestWithParam<const char*>
{
  protected:
    static void SetUpTestSuite()
    {
        server = std::make_unique<SvnServer>();
        const auto& repository = server->repository();
        repository.makeFolder("trunk");                                               // r1
        repository.put("trunk/a.txt", "one\n");                                       // r2
        repository.change({"cp", "HEAD", "trunk", "branch"});                         // r3
        repository.put("branch/a.txt", "two\n");                                      // r4
        repository.change({"rm", "trunk/a.txt", "mkdir", "trunk/sp%20ace%40%25%23"}); // r5
        writeFile(repository.beside("message"), "gr\xC3\xBC\xC3\x9F\nzwei");
        mustRun({"svnadmin", "setlog", "--bypass-hooks", repository.path(), "-r5", repository.beside("message")});
    }
    static void TearDownTestSuite() { server.reset(); }

    HSVNPathRef target(const std::string& item) const
    {
        const std::string kind = GetParam();
        return HSVNPath::pathWithString(kind == "file"  ? server->repository().url(item)
                                        : kind == "svn" ? server->url(item)
                                                        : workingCopy() + '/' + item);
    }
    static std::string workingCopy()
    {
        static const auto path = server->repository().checkOut();
        return path;
    }
    std::vector<HSVNLogItemRef> read(const std::string& item, HSVNLogDelegate* delegate = nullptr) const
    {
        return HSVNNode::readLogForNodeAtPath(target(item), delegate, options, reading.client);
    }

    static inline std::unique_ptr<SvnServer> server;
    ReadingClient reading;
    std::shared_ptr<HSVNLogOptions> options = HSVNLogOptions::defaults();
};

} // namespace

TEST_P(LogReadingTest, EveryRevisionBecomesAnItem)
{
    const auto items = read("branch/a.txt");
    EXPECT_THAT(numbers(items), ElementsAre(4, 3, 2));
    const auto all = read("");
    ASSERT_THAT(numbers(all), ElementsAre(5, 4, 3, 2, 1, 0));
    const auto& newest = *all[0];
    EXPECT_EQ(newest.message(), "gr\xC3\xBC\xC3\x9F\nzwei");
    EXPECT_NEAR(static_cast<double>(newest.date()->microsecondsSince1970()),
                static_cast<double>(HSVNDate::now().microsecondsSince1970()), 600e6);
    EXPECT_EQ(newest.date()->microsecondsSince1970() % 1'000'000, 0);
    EXPECT_THAT(newest.changedPaths(), UnorderedElementsAre("/trunk/a.txt", "/trunk/sp ace@%#"));
    EXPECT_EQ(newest.deletions()[0]->path(), "/trunk/a.txt");
    EXPECT_EQ(newest.additions()[0]->path(), "/trunk/sp ace@%#");
    EXPECT_EQ(newest.additions()[0]->copyPath(), std::nullopt);
    const auto copied = all[2]->changeForPath("/branch");
    ASSERT_NE(copied, nullptr);
    EXPECT_EQ(copied->action(), HSVNLogActionAdded);
    EXPECT_EQ(copied->copyPath(), "/trunk");
    EXPECT_EQ(copied->copyRevision(), 2);
    EXPECT_EQ(all[5]->author(), std::nullopt) << "revision 0 has none";
    EXPECT_EQ(all[5]->message(), std::nullopt);
    EXPECT_THAT(all[5]->changes(), IsEmpty());
}

TEST_P(LogReadingTest, TheOptionsChooseRevisionsAndDetails)
{
    options->setLimit(2);
    options->setDiscoverChangedPaths(false);
    const auto limited = read("");
    EXPECT_THAT(numbers(limited), ElementsAre(5, 4));
    EXPECT_THAT(limited[0]->changes(), IsEmpty());
    options->setLimit(0);
    options->setTraverseCopyHistory(false);
    EXPECT_THAT(numbers(read("branch")), ElementsAre(4, 3));
    options->setFromRevision(HSVNRevision::revisionWithNumber(1));
    options->setToRevision(HSVNRevision::revisionWithNumber(3));
    EXPECT_THAT(numbers(read("trunk")), ElementsAre(1, 2));
    options->setPegRevision(HSVNRevision::revisionWithNumber(2));
    EXPECT_THROW(read("branch"), HSVNException) << "it came later";
}

TEST_P(LogReadingTest, ADelegateSeesEveryItemAndCanStop)
{
    LogReader patient{0};
    EXPECT_EQ(read("", &patient), patient.items);
    LogReader impatient{3};
    EXPECT_EQ(reasonOf<HSVNOperationCancelledException>([&] { read("", &impatient); }), "Operation was cancelled");
    EXPECT_THAT(numbers(impatient.items), ElementsAre(5, 4, 3));
    ThrowingReader unwell;
    EXPECT_THROW(read("", &unwell), std::out_of_range);
    EXPECT_THROW(HSVNBundleCurrent(), HSVNGenericException) << "a bundle is left on the thread's stack";
    EXPECT_EQ(read("").size(), 6U) << "the context serves on";

    impatient.items.clear();
    HSVNLogReceiver receiver{*reading.client, &impatient};
    HSVNOperation operation{reading.client, "Test", "log", {}};
    const auto head = HSVNRevision::HEAD()->SVNRevision();
    const auto first = HSVNRevision::revisionWithNumber(0)->SVNRevision();
    auto* error = operation->client_log3(operation.pathArray(*target("")), &head, &head, &first, 0, true, false,
                                         HSVNLogReceiver::receive, &receiver, operation.ctx(), operation.pool());
    EXPECT_THROW(operation.check(error), HSVNOperationCancelledException);
    EXPECT_THAT(numbers(receiver.items), ElementsAre(5, 4)) << "the refused item is not collected";
}

TEST_P(LogReadingTest, TheVerbTellsTheSameOnEveryLine)
{
    std::vector<std::string> expected;
    for (const auto& item : read("")) {
        expected.push_back(item->stringValue());
    }
    for (const char* const line : {"1.14", "1.6", "1.5", "1.4"}) {
        SCOPED_TRACE(line);
        const auto client = clientOfLine(line);
        client->setDelegate(reading.delegate);
        std::vector<std::string> told;
        for (const auto& item : client->log(target(""), {.changedPaths = true})) {
            told.push_back(item->stringValue());
            const auto date = item->properties().at("svn:date"); // such as 2026-11-22T08:37:00.123456Z
            EXPECT_EQ(item->exactDate()->microsecondsSince1970() - item->date()->microsecondsSince1970(),
                      std::stoi(date.substr(20, 6)));
        }
        EXPECT_EQ(told, expected);
        int received = 0;
        client->log(target(""), {}, [&](const HSVNLogItemRef& item) { return ++received < 2 || item->revision() > 4; });
        EXPECT_EQ(received, 2) << "false stops it";
        const auto gone = client->log(server->url("trunk/a.txt"), {.pegRevision = HSVNRevision::revisionWithNumber(4)});
        EXPECT_THAT(numbers(gone), ElementsAre(2)) << "what HEAD does not have";
        const auto plain = client->log(target(""), {.limit = 1, .properties = std::vector<std::string>{"svn:author"}});
        EXPECT_FALSE(plain.front()->tellsChangedPaths());
        EXPECT_EQ(plain.front()->properties().size(), 1U);
        EXPECT_EQ(plain.front()->message(), std::nullopt);
    }
}

TEST_P(LogReadingTest, UnfitArgumentsAreRefused)
{
    EXPECT_THROW(HSVNNode::readLogForNodeAtPath(target(""), nullptr, nullptr, reading.client), HSVNAssertionException);
    EXPECT_THROW(HSVNNode::readLogForNodeAtPath(target(""), nullptr, options, nullptr), HSVNAssertionException);
    EXPECT_THROW(HSVNNode::readLogForNodeAtPath(nullptr, nullptr, options, reading.client), HSVNAssertionException);
    EXPECT_THROW(read("missing"), HSVNException);
    options->setFromRevision(HSVNRevision::MINE());
    EXPECT_THROW(read(""), HSVNException);
    options->setFromRevision(nullptr);
    EXPECT_THROW(read(""), HSVNAssertionException);
}

TEST(LogVerb, HandsOverADateThatIsNone)
{
    const TestRepository repository;
    const auto file = repository.path() + "/db/revprops/0/0";
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    writeFile(file, "K 8\nsvn:date\nV 10\nnot a date\nEND\n");
    for (const char* const line : {"1.14", "1.4"}) {
        const auto client = clientOfLine(line);
        const auto item = client->log(repository.url()).front();
        EXPECT_EQ(item->date(), std::nullopt);
        EXPECT_EQ(item->properties().at("svn:date"), "not a date");
        EXPECT_THROW(HSVNNode::readLogForNodeAtPath(HSVNPath::pathWithString(repository.url()), nullptr,
                                                    HSVNLogOptions::defaults(), client),
                     HSVNException);
    }
}

TEST(LogVerb, TellsWhatEachPathIsAndWhatWasMerged)
{
    const TestRepository repository;
    repository.makeFolder("trunk");                       // r1
    repository.change({"cp", "HEAD", "trunk", "branch"}); // r2
    repository.put("branch/a.txt", "one\n");              // r3
    const auto workingCopy = repository.checkOut("wc", "trunk");
    mustRun({"svn", "merge", "-q", repository.url("branch"), workingCopy});
    mustRun({"svn", "commit", "-q", "-m", "merge", workingCopy}); // r4
    const auto client = clientOfLine("1.14");
    std::vector<std::string> told;
    client->log(repository.url("trunk"), {.limit = 1, .changedPaths = true, .mergedRevisions = true},
                [&](const HSVNLogItemRef& item) {
                    const auto change = item->changeForPath("/trunk");
                    told.push_back(fmt::format("{}{}{}{}", item->revision(), item->hasChildren() ? " children" : "",
                                               item->isEndOfChildren() ? " end" : "",
                                               change && change->propertiesModified() == true ? " properties" : ""));
                    if (const auto file = item->changeForPath("/trunk/a.txt")) {
                        EXPECT_EQ(file->kind(), HSVNNodeKindFile);
                        EXPECT_EQ(file->propertiesModified(), false);
                    }
                });
    EXPECT_THAT(told, ElementsAre("4 children properties", "3", "2", "-1 end"));
}

TEST(LogVerb, NamesChoicesThatALineDoesNotHave)
{
    const auto client = clientOfLine("1.5");
    for (const auto& [choice, choices] : std::vector<std::pair<std::string, HSVNLogChoices>>{
             {"mergedRevisions", {.mergedRevisions = true}},
             {"properties", {.properties = std::vector<std::string>{"svn:log", "color"}}}})
    {
        EXPECT_EQ(reasonOf<HSVNUnsupportedFeatureException>(
                      [&, &choices = choices] { client->log("file:///none", choices); }),
                  "[HSVNContext log]: '" + choice + "' is not offered by the bundle of Subversion 1.5");
    }
}

TEST(LogVerb, CompletesTheRangeForLinesThatDoNot)
{
    static std::vector<svn_opt_revision_kind> kinds;
    const auto bundle = std::make_shared<AlteredBundle>([](HSVNBundleEntryPoints& table) {
        table.client_log3 = [](const apr_array_header_t*, const svn_opt_revision_t*, const svn_opt_revision_t* start,
                               const svn_opt_revision_t* end, int, svn_boolean_t, svn_boolean_t,
                               svn_log_message_receiver_t, void*, svn_client_ctx_t*, apr_pool_t*) -> svn_error_t* {
            kinds = {start->kind, end->kind};
            return SVN_NO_ERROR;
        };
    });
    const auto client = std::make_shared<HSVNClient>(bundle, nullptr);
    client->setBundleVersion(HSVNVersion{1, 5});
    const auto none = HSVNRevision::UNSPECIFIED();
    const auto third = HSVNRevision::revisionWithNumber(3);
    const auto number = svn_opt_revision_number;
    using Case = std::tuple<const char*, HSVNRevisionRef, HSVNRevisionRef, svn_opt_revision_kind>;
    for (const auto& [target, peg, start, expected] :
         {Case{"file:///r", none, none, svn_opt_revision_head}, Case{"/wc", none, none, svn_opt_revision_base},
          Case{"/wc", third, none, number}, Case{"/wc", none, third, number}})
    {
        client->log(target, {.pegRevision = peg, .ranges = {{start, none}}});
        EXPECT_THAT(kinds, ElementsAre(expected, number));
    }
}

INSTANTIATE_TEST_SUITE_P(Log, LogReadingTest, testing::Values("file", "svn", "workingCopy"),
                         [](const auto& road) { return std::string{road.param}; });

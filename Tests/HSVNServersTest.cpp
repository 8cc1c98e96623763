#include "Command.h"
#include "HSVN.h"
#include "SvnServer.h"
#include "TemporaryFolder.h"
#include "WebServer.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

// What servers refuse, and how they are opened: the same over every kind of access.

namespace {

using testing::Ge;
using testing::Lt;

using Access = WebServer::Access;

/// A user of the servers; what it does not answer can be taken away.
struct ServersUser
{
    std::string name = "sally";
    std::string password = "sallyssecret";
    std::function<void()> asked = [] {}; // by every prompt
    std::function<void()> logged = [] {};
    std::function<void()> notified = [] {};
    std::function<void()> queried = [] {};
    std::function<bool()> goesOn = [] { return true; };

    bool promptForCredentials(HSVNContext&, const HSVNCredentialsRef& credentials, const std::optional<std::string>&,
                              bool& mayStore) const
    {
        asked();
        credentials->setUsername(name);
        credentials->setPassword(password);
        mayStore = false;
        return true;
    }
    bool promptForAuthenticationErrors(HSVNContext&, std::uint32_t, const HSVNCertificateRef&,
                                       const std::optional<std::string>&, bool, bool&) const
    {
        return true;
    }
    bool promptForLogMessage(HSVNContext&, std::string& message, const std::vector<HSVNCommitItemRef>&) const
    {
        logged();
        message = "changed";
        return true;
    }
    void notify(HSVNContext&, const HSVNNotificationRef&) const { notified(); }
    bool queryContinue(HSVNContext&) const
    {
        queried();
        return goesOn();
    }
};

using ServersDelegate = HSVNClientDelegateFor<ServersUser>;

/// A repository behind one kind of server: a.txt is locked by harry, b.txt is changed since sally checked it out, both
/// are changed in sally's working copy.
class Served
{
  public:
    /// @param folder  the repository's own
    Served(std::string serversURL, std::string folder, std::string authority)
        : _url{std::move(serversURL)}, _repository{std::move(folder)}, _authority{std::move(authority)}
    {
        writeFile(_folder / "file", "text\n");
        std::vector<std::string> actions{"mkdir", "secret", "mkdir", "readonly"};
        for (const std::string name : {"a.txt", "b.txt", "secret/item", "readonly/item"}) {
            actions.insert(actions.end(), {"put", _folder / "file", name});
        }
        change(actions);
        runAs("sally", {"svn", "checkout", "-q", _url, wc()});
        writeFile(_folder / "file", "newer\n");
        change({"put", _folder / "file", "b.txt"});
        runAs("harry", {"svn", "lock", "-q", url("a.txt")});
        for (const std::string name : {"a.txt", "b.txt", "readonly/item"}) {
            writeFile(wc(name), "changed by sally\n");
        }
    }

    std::string url(const std::string& item = {}) const { return item.empty() ? _url : _url + '/' + item; }
    std::string wc(const std::string& item = {}) const { return item.empty() ? _folder / "wc" : wc() + '/' + item; }
    /// A place where nothing is yet.
    std::string fresh() const { return _folder / ("fresh" + std::to_string(++_fresh)); }
    std::string file() const { return _folder / "file"; }
    /// What is being committed, or will never be.
    std::string transactions() const { return mustRun({"svnadmin", "lstxns", _repository}); }

    void change(const std::vector<std::string>& actions) const
    {
        std::vector<std::string> command{"svnmucc", "-U", _url, "-m", "prepared"};
        command.insert(command.end(), actions.begin(), actions.end());
        runAs("harry", command);
    }

  private:
    void runAs(const std::string& name, std::vector<std::string> command) const
    {
        command.insert(command.end(),
                       {"--non-interactive", "--no-auth-cache", "--username", name, "--password", name + "ssecret",
                        "--config-option", "servers:global:ssl-authority-files=" + _authority});
        mustRun(command);
    }

    TemporaryFolder _folder;
    std::string _url;
    std::string _repository;
    std::string _authority;
    mutable int _fresh = 0;
};

/// The repository behind a kind of server; the server runs from the first use to the end of the tests.
const Served& served(const std::string& kind)
{
    if (kind == "file") {
        static const TestRepository server;
        static const Served repository{server.url(), server.path(), ""};
        return repository;
    }
    if (kind == "svnserve") {
        static const SvnServer server;
        static const Served repository{server.url(), server.repository().path(), ""};
        return repository;
    }
    if (kind == "http") {
        static const WebServer server;
        static const Served repository{server.url(Access::plain), server.repository(), server.authority()};
        return repository;
    }
    static const WebServer server;
    static const Served repository{server.url(Access::encrypted), server.repository(), server.authority()};
    return repository;
}

std::string portOf(const std::string& url)
{
    const auto port = url.rfind(':') + 1;
    return url.substr(port, url.find('/', port) - port);
}

/// The class of what the call throws.
std::string classThrownBy(const std::function<void()>& call, std::string* reason = nullptr)
{
    try {
        call();
    } catch (const HSVNPlatformException& exception) {
        if (reason) {
            *reason = exception.reason();
        }
        return exception.className();
    } catch (const std::exception& exception) {
        return exception.what();
    }
    return "nothing";
}

struct ServersCall
{
    const Served& at;
    HSVNClientRef client;
    std::string item; ///< in the repository

    HSVNURLRef url(const std::string& name = {}) const { return HSVNURL::URLWithString(at.url(join(name))); }
    std::string text(const std::string& name = {}) const { return at.url(join(name)); }
    HSVNPathRef path() const { return HSVNLocalPath::pathWithString(at.wc(item)); }
    std::string join(const std::string& name) const
    {
        return item.empty() || name.empty() ? item + name : item + '/' + name;
    }
};

struct ServersOperation
{
    const char* name;
    std::function<void(const ServersCall&)> run;
};

HSVNPathRef servedPath(const std::string& path) { return HSVNLocalPath::pathWithString(path); }

// The two faces of the library, one operation after the other.

const std::vector<ServersOperation> readFolder{
    {"directoryAtPath",
     [](const ServersCall& c) { HSVNDirectory::directoryAtPath(c.url(), HSVNRevisionSpec::HEAD(), c.client); }},
    {"kindOfNodeAtPath",
     [](const ServersCall& c) { HSVNNode::kindOfNodeAtPath(c.url(), HSVNRevisionSpec::HEAD(), c.client); }},
    {"propertiesForNodeAtPath",
     [](const ServersCall& c) { HSVNNode::propertiesForNodeAtPath(c.url(), HSVNRevisionSpec::HEAD(), c.client); }},
    {"readLogForNodeAtPath",
     [](const ServersCall& c) {
         HSVNNode::readLogForNodeAtPath(c.url(), nullptr, HSVNLogOptions::defaults(), c.client);
     }},
    {"checkoutDirectoryAtURL",
     [](const ServersCall& c) {
         HSVNDirectory::checkoutDirectoryAtURL(c.url(), servedPath(c.at.fresh()), HSVNCheckOutOptions::defaults(),
                                               c.client);
     }},
    {"exportNodeAtPath",
     [](const ServersCall& c) {
         HSVNNode::exportNodeAtPath(c.url(), servedPath(c.at.fresh()), HSVNExportOptions::defaults(), c.client);
     }},
    {"list", [](const ServersCall& c) { c.client->list(c.text()); }},
    {"info", [](const ServersCall& c) { c.client->info(c.text(), HSVNRevisionSpec::HEAD()); }},
    {"properties", [](const ServersCall& c) { c.client->properties(c.text(), HSVNRevisionSpec::HEAD()); }},
    {"log", [](const ServersCall& c) { c.client->log(c.text()); }},
    {"checkout", [](const ServersCall& c) { c.client->checkout(c.text(), c.at.fresh()); }},
    {"exportTree", [](const ServersCall& c) { c.client->exportTree(c.text(), c.at.fresh()); }},
};

const std::vector<ServersOperation> readContents{
    {"catRevision",
     [](const ServersCall& c) {
         HSVNFile::catRevision(HSVNRevisionSpec::HEAD(), c.url(), std::make_shared<HSVNMemoryOutputStream>(), c.client);
     }},
    {"contents", [](const ServersCall& c) { c.client->contents(c.text(), HSVNRevisionSpec::HEAD()); }},
};

const std::vector<ServersOperation> writeFolder{
    {"createDirectoryAtPath",
     [](const ServersCall& c) { HSVNDirectory::createDirectoryAtPath(c.url("new"), c.client); }},
    {"importNodeAtPath",
     [](const ServersCall& c) {
         HSVNNode::importNodeAtPath(servedPath(c.at.file()), c.url("new"), HSVNImportOptions::defaults(), c.client);
     }},
    {"copyNodeAtPath",
     [](const ServersCall& c) {
         HSVNNode::copyNodeAtPath(HSVNURL::URLWithString(c.at.url("b.txt")), c.url("new"), HSVNCopyOptions::defaults(),
                                  c.client);
     }},
    {"makeDirectories", [](const ServersCall& c) { c.client->makeDirectories(c.text("new")); }},
    {"importTree", [](const ServersCall& c) { c.client->importTree(c.at.file(), c.text("new")); }},
    {"copy", [](const ServersCall& c) { c.client->copy({c.at.url("b.txt")}, c.text("new")); }},
};

const std::vector<ServersOperation> deleteItem{
    {"deleteNodes",
     [](const ServersCall& c) { HSVNNode::deleteNodes({c.url()}, HSVNDeleteOptions::defaults(), c.client); }},
    {"remove", [](const ServersCall& c) { c.client->remove(c.text()); }},
};

const std::vector<ServersOperation> commitItem{
    {"commitChangesToNodes",
     [](const ServersCall& c) { HSVNNode::commitChangesToNodes({c.path()}, HSVNCommitOptions::defaults(), c.client); }},
    {"commit", [](const ServersCall& c) { c.client->commit(c.at.wc(c.item)); }},
};

const std::vector<ServersOperation> updateItem{
    {"updateNodes",
     [](const ServersCall& c) {
         HSVNNode::updateNodes({c.path()}, HSVNRevision::HEAD(), HSVNUpdateOptions::defaults(), c.client);
     }},
    {"update", [](const ServersCall& c) { c.client->update(c.at.wc(c.item)); }},
};

const std::vector<ServersOperation> lockItem{
    {"lockNodes",
     [](const ServersCall& c) { HSVNNode::lockNodes({c.path()}, {}, HSVNLockOptions::defaults(), c.client); }},
};

/// A refusal, and every operation that it is tried on.
struct Refusal
{
    const char* expected;
    std::string item;
    std::vector<const std::vector<ServersOperation>*> operations;
    std::string password = "sallyssecret";
};

std::vector<Refusal> refusals()
{
    constexpr const char* notAuthorized = "HSVNAuthorizationException";
    constexpr const char* outOfDate = "HSVNTransactionOutOfDateException";
    constexpr const char* locked = "HSVNEntryLockedException";
    constexpr const char* missing = "HSVNNoSuchEntryException";
    return {
        {notAuthorized, "", {&readFolder, &writeFolder, &updateItem}, "wrong"},
        {notAuthorized, "b.txt", {&readContents, &deleteItem, &commitItem, &lockItem}, "wrong"},
        {notAuthorized, "secret", {&readFolder, &writeFolder, &deleteItem}},
        {notAuthorized, "secret/item", {&readContents, &deleteItem}},
        {notAuthorized, "readonly", {&writeFolder, &deleteItem}},
        {notAuthorized, "readonly/item", {&commitItem, &deleteItem}},
        {outOfDate, "b.txt", {&commitItem, &lockItem}},
        {locked, "a.txt", {&commitItem, &deleteItem, &lockItem}},
        {missing, "none", {&readContents, &deleteItem}},
    };
}

class Refusals : public testing::TestWithParam<const char*>
{
};

/// A user of the suite's servers and a client of its own.
struct Visitor
{
    std::shared_ptr<ServersDelegate> user = std::make_shared<ServersDelegate>();
    HSVNClientRef client = HSVNClient::clientWithDelegate(user);

    Visitor()
    {
        // Reading the system's authorities takes longer than all the rest.
        client->setOption("no", "ssl-trust-default-ca", HSVNConfigCategoryServers, HSVNConfigSectionGlobal);
    }
};

} // namespace

TEST_P(Refusals, ArriveAsTheSameClassWhateverTheServer)
{
    for (const auto& refusal : refusals()) {
        for (const auto* const operations : refusal.operations) {
            for (const auto& operation : *operations) {
                Visitor visitor;
                visitor.user->password = refusal.password;
                std::string reason;
                EXPECT_EQ(classThrownBy(
                              [&] {
                                  operation.run({served(GetParam()), visitor.client, refusal.item});
                              },
                              &reason),
                          refusal.expected)
                    << operation.name << " of '" << refusal.item << "' with " << refusal.password << ": " << reason;
            }
        }
    }
}

TEST_P(Refusals, OfADelegateArriveAsTheDelegatesOwnException)
{
    struct Own
    {
    };
    const auto throws = [] { throw Own{}; };
    for (const auto message : {&ServersUser::logged, &ServersUser::notified, &ServersUser::queried}) {
        for (const auto* const operations : {&commitItem, &updateItem}) {
            if (message == &ServersUser::logged && operations == &updateItem) {
                continue; // nobody is asked for a message
            }
            for (const auto& operation : *operations) {
                Visitor visitor;
                *visitor.user.*message = throws;
                EXPECT_THROW(operation.run({served(GetParam()), visitor.client, "b.txt"}), Own) << operation.name;
            }
        }
    }
    for (const auto* const operations : {&readFolder, &updateItem, &commitItem}) {
        for (const auto& operation : *operations) {
            Visitor visitor;
            visitor.user->asked = throws;
            std::string reason;
            testing::internal::CaptureStderr();
            EXPECT_EQ(classThrownBy(
                          [&] {
                              operation.run({served(GetParam()), visitor.client, ""});
                          },
                          &reason),
                      "HSVNException");
            testing::internal::GetCapturedStderr();
            EXPECT_EQ(reason, "Credentials delegate raised an exception") << operation.name;
        }
    }
}

TEST_P(Refusals, OfLocksAreToldInNotifications)
{
    struct Ear : ServersUser
    {
        std::vector<std::string> classes;

        void notify(HSVNContext&, const HSVNNotificationRef& notification)
        {
            if (notification->error()) {
                classes.push_back(notification->error()->className());
            }
        }
    };
    const auto ear = std::make_shared<HSVNClientDelegateFor<Ear>>();
    const auto client = HSVNClient::clientWithDelegate(ear);
    for (const std::string item : {"a.txt", "b.txt"}) {
        client->lock(served(GetParam()).wc(item));
    }
    EXPECT_THAT(ear->classes, testing::ElementsAre("HSVNEntryLockedException", "HSVNTransactionOutOfDateException"));
}

INSTANTIATE_TEST_SUITE_P(Servers, Refusals, testing::Values("svnserve", "http", "https"),
                         [](const auto& instance) { return std::string{instance.param}; });

class StoppedCommits : public testing::TestWithParam<const char*>
{
};

TEST_P(StoppedCommits, LeaveNoTransactionBehind)
{
    constexpr const char* stopped = "HSVNOperationCancelledException";
    static int runs = 0;
    const Served& at = served(GetParam());
    const std::string top = "stopped" + std::to_string(++runs);
    at.change({"mkdir", top, "mkdir", top + "/old", "put", at.file(), top + "/file"});
    const std::string wc = at.fresh();
    const HSVNRevisionNumber base = Visitor{}.client->checkout(at.url(top), wc);
    writeFile(wc + "/file", std::string(300'000, 'x'));
    mustRun({"svn", "mkdir", "-q", wc + "/added"});
    const auto url = [&](const std::string& name) { return at.url(top + '/' + name); };
    const std::pair<const char*, std::function<void(HSVNContext&)>> verbs[] = {
        {"import", [&](HSVNContext& context) { context.importTree(at.file(), url("imported/deep")); }},
        {"copy of a working copy", [&](HSVNContext& context) { context.copy({wc}, url("copied")); }},
        {"copy", [&](HSVNContext& context) { context.copy({url("old")}, url("new")); }},
        {"move", [&](HSVNContext& context) { context.move(url("new"), url("newer")); }},
        {"makeDirectories",
         [&](HSVNContext& context) {
             context.makeDirectories({url("one"), url("two")});
         }},
        {"remove",
         [&](HSVNContext& context) {
             context.remove({url("one"), url("two")});
         }},
        {"setProperty", [&](HSVNContext& context) { context.setProperty(url("old"), base, "color", "red"); }},
        {"commit", [&](HSVNContext& context) { context.commit(wc); }},
    };
    for (const auto& [verb, run] : verbs) {
        std::string ending = stopped;
        for (int stop = 0; ending == stopped; ++stop) { // at each question, until there is none of this number
            Visitor visitor;
            int questions = 0;
            visitor.user->goesOn = [&] { return questions++ < stop; };
            ending = classThrownBy([&, call = run] { call(*visitor.client); });
        }
        EXPECT_EQ(ending, "nothing") << verb;
        EXPECT_EQ(at.transactions(), "") << verb;
    }
}

/// Stands before a server until a client says a word; then it is "cut", "silent" or "deaf".
class FaultyRelay
{
  public:
    FaultyRelay(const Served& at, const std::string& word, const std::string& fault)
        : _before{at.url().substr(0, at.url().rfind(':') + 1)}, _behind{at.url().substr(_before.size())},
          _relay{{"python3", HSVN_TEST_SAMPLES "/../Support/faulty-relay.py", portOf(at.url()), word, fault, _file}}
    {
    }

    std::string url(const std::string& item) const
    {
        return _before + awaitFile(_file) + _behind.substr(std::min(_behind.find('/'), _behind.size())) + '/' + item;
    }
    bool hasHeard() const { return std::filesystem::exists(_file + ".heard"); }

  private:
    TemporaryFolder _folder;
    std::string _file = _folder / "port";
    std::string _before; ///< the port
    std::string _behind;
    BackgroundCommand _relay;
};

using Seconds = std::chrono::duration<double>;

class SlowServers : public testing::TestWithParam<const char*>
{
};

TEST_P(SlowServers, AreWaitedForByStoppedCommitsAsLongAsTheConfigurationSays)
{
    static int runs = 0;
    const Served& at = served(GetParam());
    const bool isWeb = std::string_view{GetParam()} == "http";
    struct Row
    {
        const char* word; ///< where the server fails
        const char* fault;
        const char* reason;
        const char* status; ///< of the file once it is updated
    };
    constexpr const char* unknown = "before the server answered whether it made the revision";
    for (const auto& [word, fault, expected, status] :
         {Row{isWeb ? "MERGE " : "close-edit", "silent", unknown, "M"},
          Row{isWeb ? "MERGE " : "close-edit", "deaf", unknown, ""},
          Row{isWeb ? "PUT " : "apply-textdelta", "silent", "canceled", "M"}})
    {
        if (!isWeb && expected != unknown) {
            continue; // nothing is waited for before the revision
        }
        for (const bool isVerb : {false, true}) {
            SCOPED_TRACE(word + std::string{fault} + std::to_string(static_cast<int>(isVerb)));
            const std::string top = "waited" + std::to_string(++runs);
            at.change({"mkdir", top, "put", at.file(), top + "/file"});
            const FaultyRelay relay{at, word, fault};
            const std::string wc = at.fresh();
            const Visitor visitor;
            visitor.client->checkout(relay.url(top), wc);
            writeFile(wc + "/file", "changed " + top);
            visitor.client->setOption("1", "stopped-commit-timeout", HSVNConfigCategoryServers,
                                      HSVNConfigSectionGlobal);
            visitor.user->goesOn = [&] { return !relay.hasHeard(); };
            const auto start = std::chrono::steady_clock::now();
            try {
                isVerb ? static_cast<void>(visitor.client->commit(wc))
                       : static_cast<void>(HSVNNode::commitChangesToNodes(
                             {servedPath(wc)}, HSVNCommitOptions::defaults(), visitor.client));
                ADD_FAILURE();
            } catch (const HSVNOperationCancelledException& exception) {
                EXPECT_THAT(exception.fullMessage(), testing::HasSubstr(expected));
            }
            EXPECT_THAT(Seconds{std::chrono::steady_clock::now() - start}.count(), testing::AllOf(Ge(1), Lt(10)));
            visitor.user->goesOn = [] { return true; };
            visitor.client->update(wc);
            EXPECT_EQ(mustRun({"svn", "status", wc}).substr(0, 1), status);
            EXPECT_EQ(at.transactions(), "");
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Servers, SlowServers, testing::Values("svnserve", "http"),
                         [](const auto& instance) { return std::string{instance.param}; });

INSTANTIATE_TEST_SUITE_P(Servers, StoppedCommits, testing::Values("file", "svnserve", "http"),
                         [](const auto& instance) { return std::string{instance.param}; });

TEST(Servers, ThatAreNotThereAreToldApart)
{
    const std::string server = served("http").url();
    const std::pair<std::string, const char*> cases[] = {
        {server.substr(0, server.rfind('/')) + "/other", "HSVNRepositoryNotFoundException"},
        {"http://127.0.0.1:" + std::to_string(freeLoopbackPort()), "HSVNConnectionRefusedException"},
        {"svn://127.0.0.1:" + std::to_string(freeLoopbackPort()), "HSVNConnectionRefusedException"},
        {"https" + server.substr(4), "HSVNCommunicationException"},
    };
    for (const auto& [url, expected] : cases) {
        const Visitor visitor;
        const auto read = [&, target = url] { visitor.client->info(target, HSVNRevisionSpec::HEAD()); };
        EXPECT_EQ(classThrownBy(read), expected) << url;
        EXPECT_EQ(classThrownBy([&, target = url] {
                      HSVNNode::kindOfNodeAtPath(HSVNURL::URLWithString(target), HSVNRevisionSpec::HEAD(),
                                                 visitor.client);
                  }),
                  expected)
            << url;
    }
}

TEST(Servers, ThatSayMoreThanTheyWereAskedAreRefused)
{
    const FaultyRelay relay{served("http"), "PROPFIND ", "chatty"};
    const Visitor visitor;
    // The request for the transaction waits until the answer is there.
    visitor.user->logged = [] { std::this_thread::sleep_for(std::chrono::milliseconds{500}); };
    EXPECT_THROW(visitor.client->remove(relay.url("b.txt")), HSVNException);
    EXPECT_TRUE(relay.hasHeard());
    EXPECT_EQ(served("http").transactions(), "");
}

TEST(Servers, ThatEndWithinTheEndOfALineAreRefused)
{
    const FaultyRelay relay{served("http"), "OPTIONS ", "split"};
    const Visitor visitor;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds{10};
    visitor.user->goesOn = [&] { return std::chrono::steady_clock::now() < end; };
    EXPECT_EQ(classThrownBy([&] { visitor.client->list(relay.url("")); }), "HSVNCommunicationException");
}

TEST(Servers, ThatLockWithoutALockAreRefused)
{
    const TemporaryFolder folder;
    const BackgroundCommand odd{{"python3", HSVN_TEST_SAMPLES "/../Support/redirecting-server.py",
                                 portOf(served("http").url()), folder / "port", "LOCK", "204"}};
    const Visitor visitor;
    visitor.client->checkout("http://127.0.0.1:" + awaitFile(folder / "port") + "/repository", folder / "wc");
    const auto lock = [&] {
        HSVNNode::lockNodes({servedPath(folder / "wc/b.txt")}, {}, HSVNLockOptions::defaults(), visitor.client);
    };
    std::string reason;
    EXPECT_EQ(classThrownBy(lock, &reason), "HSVNException");
    EXPECT_THAT(reason, testing::HasSubstr("it tells of a lock, but not of which"));
}

TEST(Servers, ThatRedirectAReportAreRefused)
{
    const TemporaryFolder folder;
    const BackgroundCommand redirecting{{"python3", HSVN_TEST_SAMPLES "/../Support/redirecting-server.py",
                                         portOf(served("http").url()), folder / "port", "REPORT", "301"}};
    const std::string url = "http://127.0.0.1:" + awaitFile(folder / "port") + "/repository";
    const Visitor visitor;
    for (const auto& call : std::vector<std::function<void()>>{
             [&] { visitor.client->checkout(url, folder / "wc"); },
             [&] { visitor.client->exportTree(url, folder / "exported"); },
             [&] {
                 visitor.client->diffSummary({url, HSVNRevision::revisionWithNumber(1)}, {url, HSVNRevision::HEAD()});
             }})
    {
        std::string reason;
        EXPECT_EQ(classThrownBy(call, &reason), "HSVNException");
        EXPECT_THAT(reason, testing::HasSubstr("it answers a report with another status than 200"));
    }
}

#include "HSVNClient.h"
#include "AlteredBundle.h"
#include "HSVNBundleLoader.h"
#include "HSVNClientSettings.h"
#include "HSVNCommitItem.h"
#include "HSVNCommitOptions.h"
#include "HSVNEndOfLine.h"
#include "HSVNException.h"
#include "HSVNInitialize.h"
#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNNode.h"
#include "HSVNNotification.h"
#include "HSVNPackage.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStatus.h"
#include "HSVNTransferObserver.h"
#include "HSVNURL.h"
#include "HSVNUpdateOptions.h"
#include "HSVNVersion.h"
#include "Internal/Client.h"
#include "Internal/KeptException.h"
#include "Internal/Pool.h"
#include "ReasonOf.h"
#include "SvnServer.h"

#include <atomic>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

namespace {

/// An exception of the application's own, outside every class hierarchy that the library knows.
struct ApplicationsException
{
    int number;
};

/// An exception without a reason.
struct SilentException : std::exception
{
    const char* what() const noexcept override { return nullptr; }
};

/// Throws one of the kinds of exception that a delegate may throw.
void throwKind(int kind)
{
    switch (kind) {
    case 3:
        throw SilentException{};
    case 0:
        throw HSVNGenericException("the delegate is unwell");
    case 1:
        throw std::runtime_error("the delegate is unwell");
    default:
        throw ApplicationsException{42};
    }
}

/// The kind of the exception that the call throws; -1 for none of them.
int kindThrownBy(const std::function<void()>& call)
{
    try {
        call();
    } catch (const HSVNGenericException&) {
        return 0;
    } catch (const std::runtime_error&) {
        return 1;
    } catch (const ApplicationsException&) {
        return 2;
    } catch (const SilentException&) {
        return 3;
    }
    return -1;
}

struct Prompter
{
    std::function<bool(const HSVNCredentialsRef&, bool&)> answer;
    int prompts = 0;
    std::optional<std::string> lastRealm{};
    std::string proposedName{};
    bool couldStore = false;

    bool promptForCredentials(HSVNContext&, const HSVNCredentialsRef& credentials,
                              const std::optional<std::string>& realm, bool& mayStore)
    {
        if (prompts++ == 0) {
            proposedName = credentials->username();
        }
        lastRealm = realm;
        couldStore = mayStore;
        mayStore = false;
        return answer(credentials, mayStore);
    }
};

using PrompterDelegate = HSVNClientDelegateFor<Prompter>;

void fill(const HSVNCredentialsRef& credentials, const std::string& username, const std::string& password)
{
    credentials->setUsername(username);
    credentials->setPassword(password);
}

/// Pools that the counting bundle has made and not destroyed yet.
std::atomic<int> pools = 0;

/// The installed line with its pools counted: every pool that an operation makes must be gone when it ends.
HSVNBundleRef countingBundle()
{
    return std::make_shared<AlteredBundle>([](HSVNBundleEntryPoints& table) {
        table.pool_create = [](apr_pool_t* parent, apr_allocator_t* allocator) {
            ++pools;
            return AlteredBundle::original().pool_create(parent, allocator);
        };
        table.apr_pool_destroy = [](apr_pool_t* pool) {
            --pools;
            AlteredBundle::original().apr_pool_destroy(pool);
        };
    });
}

HSVNClientRef countedClient(const HSVNClientDelegateRef& delegate)
{
    auto client = std::make_shared<HSVNClient>(countingBundle(), delegate);
    client->setBundleVersion(HSVNBundleLoader::sharedInstance().newestVersion());
    return client;
}

void expectNothingLeaked(int poolsBefore)
{
    EXPECT_EQ(pools, poolsBefore) << "pools are left";
    EXPECT_THROW(HSVNBundleCurrent(), HSVNGenericException) << "a bundle is left on the thread's stack";
}

std::vector<HSVNPathRef> paths(const std::string& path) { return {HSVNLocalPath::pathWithString(path)}; }

HSVNRevisionNumber commit(const std::string& path, const HSVNContextRef& context)
{
    return HSVNNode::commitChangesToNodes(paths(path), HSVNCommitOptions::defaults(), context);
}

void update(const std::string& path, const HSVNContextRef& context)
{
    HSVNNode::updateNodes(paths(path), HSVNRevision::HEAD(), HSVNUpdateOptions::defaults(), context);
}

/// One server for all tests of the suite; each asks with a working copy that is out of date.
class ServerTest : public testing::Test
{
  protected:
    static void SetUpTestSuite()
    {
        server = std::make_unique<SvnServer>();
        server->repository().put("a.txt", "one\n");
        workingCopy = server->repository().beside("wc");
        mustRun({"svn", "checkout", "-q", "--non-interactive", "--no-auth-cache", "--username", "harry", "--password",
                 "harryssecret", server->url(), workingCopy});
    }
    static void TearDownTestSuite() { server.reset(); }

    /// Asks the server for an update; the delegate answers the prompts.
    static void askServer(const HSVNClientDelegateRef& delegate) { update(workingCopy, countedClient(delegate)); }

    /// The exception of that update.
    static HSVNExceptionRef refusal(const HSVNClientDelegateRef& delegate)
    {
        const int before = pools;
        try {
            askServer(delegate);
        } catch (const HSVNException& exception) {
            expectNothingLeaked(before);
            return std::static_pointer_cast<const HSVNException>(exception.copy());
        }
        throw std::logic_error("the server let the client in");
    }

    static bool storesCredentials()
    {
        const auto folder = std::filesystem::path{std::getenv("HOME")} / ".subversion/auth/svn.simple";
        return std::filesystem::exists(folder) && !std::filesystem::is_empty(folder);
    }

    static inline std::unique_ptr<SvnServer> server;
    static inline std::string workingCopy;
};

} // namespace

TEST_F(ServerTest, TheRightPasswordOpensTheServer)
{
    const auto delegate = std::make_shared<PrompterDelegate>([](const auto& credentials, bool&) {
        fill(credentials, "sally", "sallyssecret");
        return true;
    });
    askServer(delegate);
    EXPECT_EQ(delegate->prompts, 1);
    ASSERT_TRUE(delegate->lastRealm);
    EXPECT_THAT(*delegate->lastRealm, testing::HasSubstr(SvnServer::realm()));
    EXPECT_FALSE(delegate->proposedName.empty()) << "Subversion proposes the user's own name";
    EXPECT_FALSE(storesCredentials());
}

TEST_F(ServerTest, AsksTwiceMoreAfterWrongPasswordsAndThenGivesUp)
{
    const auto wrongTwice = std::make_shared<PrompterDelegate>();
    wrongTwice->answer = [&](const auto& credentials, bool&) {
        fill(credentials, "harry", wrongTwice->prompts < 3 ? "wrong" : "harryssecret");
        return true;
    };
    askServer(wrongTwice);
    EXPECT_EQ(wrongTwice->prompts, 3);

    const auto alwaysWrong = std::make_shared<PrompterDelegate>([](const auto& credentials, bool&) {
        fill(credentials, "harry", "wrong");
        return true;
    });
    EXPECT_EQ(refusal(alwaysWrong)->className(), "HSVNAuthorizationException");
    EXPECT_EQ(alwaysWrong->prompts, 3);
}

TEST_F(ServerTest, ARefusedPromptAndAMissingDelegateCancelTheOperation)
{
    const auto refusing = std::make_shared<PrompterDelegate>([](const auto&, bool&) { return false; });
    const auto refused = refusal(refusing);
    EXPECT_EQ(refused->className(), "HSVNOperationCancelledException");
    EXPECT_EQ(refused->reason(), "User cancelled authentication");
    EXPECT_EQ(refused->status(), SVN_ERR_CANCELLED);
    EXPECT_EQ(refusing->prompts, 1);

    const auto missing = refusal(nullptr);
    EXPECT_EQ(missing->className(), "HSVNOperationCancelledException");
    EXPECT_EQ(missing->reason(), "Delegate not installed");
}

TEST_F(ServerTest, ADelegateThatThrowsFailsTheOperationWithItsOwnStatusAndIsLogged)
{
    for (int kind = 0; kind < 4; ++kind) {
        const auto delegate = std::make_shared<PrompterDelegate>([&](const auto&, bool&) -> bool {
            throwKind(kind);
            return true;
        });
        testing::internal::CaptureStderr();
        const auto failure = refusal(delegate);
        const std::string log = testing::internal::GetCapturedStderr();
        EXPECT_EQ(failure->className(), "HSVNException");
        EXPECT_EQ(failure->status(), HSVNExceptionGeneralStatus);
        EXPECT_EQ(failure->reason(), "Credentials delegate raised an exception");
        EXPECT_THAT(log, testing::HasSubstr("Exception in authentication prompt callback:"));
        if (kind < 2) {
            EXPECT_THAT(log, testing::HasSubstr("the delegate is unwell"));
        }
    }
}

TEST_F(ServerTest, StoresCredentialsOnlyWhenTheDelegateSaysSo)
{
    const auto delegate = std::make_shared<PrompterDelegate>([](const auto& credentials, bool& mayStore) {
        fill(credentials, "harry", "harryssecret");
        mayStore = true;
        return true;
    });
    askServer(delegate);
    EXPECT_TRUE(delegate->couldStore);
    EXPECT_TRUE(storesCredentials());
    std::filesystem::remove_all(std::filesystem::path{std::getenv("HOME")} / ".subversion/auth/svn.simple");
}

namespace {

/// What a delegate of the commit tests does, one function per message; a message without one is not answered.
struct Hooks
{
    std::function<void(const HSVNNotificationRef&)> notified = [](const auto&) {};
    std::function<bool(std::string&, const std::vector<HSVNCommitItemRef>&)> asked = [](auto&, const auto&) {
        return true;
    };
    std::function<bool()> goesOn = [] { return true; };

    void notify(HSVNContext&, const HSVNNotificationRef& notification) { notified(notification); }
    bool promptForLogMessage(HSVNContext&, std::string& message, const std::vector<HSVNCommitItemRef>& items)
    {
        return asked(message, items);
    }
    bool queryContinue(HSVNContext&) { return goesOn(); }
};

using HooksDelegate = HSVNClientDelegateFor<Hooks>;

class CommitTest : public testing::Test
{
  protected:
    CommitTest()
    {
        repository.put("a.txt", "one\n");
        workingCopy = repository.checkOut();
        writeFile(workingCopy + "/a.txt", "two\n");
    }

    TestRepository repository;
    std::string workingCopy;
    std::shared_ptr<HooksDelegate> delegate = std::make_shared<HooksDelegate>();
};

} // namespace

TEST_F(CommitTest, TheDelegatesMessageIsCommittedAndSeesTheItems)
{
    std::string item;
    delegate->asked = [&](std::string& message, const std::vector<HSVNCommitItemRef>& items) {
        item = items.at(0)->path()->string();
        message = "dépêche\nsecond line";
        return items.size() == 1;
    };
    EXPECT_EQ(commit(workingCopy, HSVNClient::clientWithDelegate(delegate)), 2);
    EXPECT_EQ(item, workingCopy + "/a.txt");
    EXPECT_EQ(repository.logMessage(2), "dépêche\nsecond line");
}

TEST_F(CommitTest, ARefusedMessageCommitsNothing)
{
    delegate->asked = [](auto&, const auto&) { return false; };
    EXPECT_EQ(commit(workingCopy, HSVNClient::clientWithDelegate(delegate)), HSVNInvalidRevision);
    EXPECT_EQ(repository.youngest(), 1);
}

TEST_F(CommitTest, ExceptionsOfTheLogMessageAndTheNotificationReachTheCallerUnchanged)
{
    for (const bool fromNotification : {false, true}) {
        for (int kind = 0; kind < 4; ++kind) {
            SCOPED_TRACE(testing::Message() << "notification " << fromNotification << ", kind " << kind);
            *delegate = HooksDelegate{};
            if (fromNotification) {
                delegate->notified = [&](const HSVNNotificationRef& notification) {
                    if (notification->action() == HSVNNotifyActionCommitModified) {
                        throwKind(kind);
                    }
                };
            } else {
                delegate->asked = [&](auto&, const auto&) {
                    throwKind(kind);
                    return true;
                };
            }
            const auto client = countedClient(delegate);
            const int before = pools;
            EXPECT_EQ(kindThrownBy([&] { commit(workingCopy, client); }), kind);
            expectNothingLeaked(before);
            EXPECT_EQ(repository.youngest(), 1);
        }
    }
    // The client and the working copy stay usable.
    *delegate = HooksDelegate{};
    EXPECT_EQ(commit(workingCopy, HSVNClient::clientWithDelegate(delegate)), 2);
}

TEST_F(CommitTest, ADelegateThatSaysStopCancels)
{
    delegate->goesOn = [] { return false; };
    try {
        commit(workingCopy, HSVNClient::clientWithDelegate(delegate));
        FAIL() << "the commit went on";
    } catch (const HSVNOperationCancelledException& exception) {
        const auto cause = exception.userInfo().find(HSVNExceptionCauseKey);
        ASSERT_NE(cause, exception.userInfo().end());
        EXPECT_EQ(*cause->second.dictionary()->at(HSVNExceptionMessageKey).text(),
                  "Operation was canceled by the user");
    }
    EXPECT_EQ(repository.youngest(), 1);

    delegate->goesOn = [] { return true; };
    const auto client = HSVNClient::clientWithDelegate(delegate);
    EXPECT_EQ(commit(workingCopy, client), 2);
    delegate->goesOn = [] { return false; };
    EXPECT_THROW(update(workingCopy, client), HSVNOperationCancelledException) << "the commit before is over";
}

TEST_F(CommitTest, OnlyPlatformExceptionsAreIgnoredWhileAskingWhetherToGoOn)
{
    for (const int kind : {1, 2}) {
        delegate->goesOn = [=] {
            throwKind(kind);
            return true;
        };
        EXPECT_EQ(kindThrownBy([&] { commit(workingCopy, HSVNClient::clientWithDelegate(delegate)); }), kind);
        EXPECT_EQ(repository.youngest(), 1);
    }
    delegate->goesOn = [] {
        throwKind(0);
        return true;
    };
    EXPECT_EQ(commit(workingCopy, HSVNClient::clientWithDelegate(delegate)), 2);
}

TEST_F(CommitTest, TheDelegateIsNotKeptAliveAndCanBeChanged)
{
    const auto client = HSVNClient::clientWithDelegate(delegate);
    EXPECT_EQ(client->delegate(), delegate);
    delegate->goesOn = [] { return false; };
    EXPECT_FALSE(client->queryContinue());
    client->setDelegate(nullptr);
    EXPECT_TRUE(client->queryContinue());
    client->setDelegate(delegate);
    delegate.reset();
    EXPECT_EQ(client->delegate(), nullptr);
    EXPECT_TRUE(client->queryContinue());
    EXPECT_THROW(commit(workingCopy, client), HSVNGenericException) << "nobody is there to be asked for a message";
    EXPECT_EQ(repository.youngest(), 1);
    client->setDelegate(nullptr);
    EXPECT_EQ(commit(workingCopy, client), 2);
    EXPECT_EQ(repository.logMessage(2), "") << "without a delegate";
}

TEST_F(CommitTest, ADelegateThatThrowsOnceTheCommitIsDoneLeavesItsRevisionInTheException)
{
    const auto revisionIn = [](const std::function<void()>& call) -> std::int64_t {
        try {
            call();
        } catch (const HSVNGenericException& exception) {
            const auto found = exception.userInfo().find(HSVNExceptionRevisionKey);
            return found == exception.userInfo().end() ? -1 : *found->second.number();
        }
        return -2;
    };
    const auto client = HSVNClient::clientWithDelegate(delegate);
    int revision = 1;
    HSVNNotificationRef failed;
    for (const int action :
         {static_cast<int>(HSVNNotifyActionCommitSucceeded), static_cast<int>(HSVNNotifyActionCommitFinalizing)})
    {
        SCOPED_TRACE(action);
        failed = nullptr;
        delegate->notified = [&failed, action](const HSVNNotificationRef& notification) {
            failed = notification->action() == HSVNNotifyActionCommitFailed ? notification : failed;
            if (notification->action() == action) {
                throwKind(0);
            }
        };
        EXPECT_EQ(revisionIn([&] { commit(workingCopy, client); }), ++revision);
        ASSERT_TRUE(failed);
        EXPECT_EQ(failed->error()->userInfo().contains(HSVNExceptionRevisionKey), true);
        EXPECT_EQ(mustRun({"svn", "status", workingCopy}), "");
        writeFile(workingCopy + "/a.txt", "again " + std::to_string(revision));
    }
    EXPECT_EQ(revisionIn([&] { client->commit(workingCopy); }), ++revision);
    EXPECT_EQ(mustRun({"svn", "status", workingCopy}), "");
    for (const int kind : {1, 2, 3}) {
        writeFile(workingCopy + "/a.txt", "with an exception of kind " + std::to_string(kind));
        delegate->notified = [kind](const HSVNNotificationRef& notification) {
            if (notification->action() == HSVNNotifyActionCommitSucceeded) {
                throwKind(kind);
            }
        };
        testing::internal::CaptureStderr();
        EXPECT_EQ(kindThrownBy([&] { commit(workingCopy, client); }), kind);
        EXPECT_THAT(testing::internal::GetCapturedStderr(),
                    testing::HasSubstr("Revision " + std::to_string(++revision) + " is committed"));
    }
    delegate->notified = [](const auto&) {};
    writeFile(workingCopy + "/a.txt", "by a receiver\n");
    const auto throwing = [](const HSVNCommitResult&) { throwKind(0); };
    EXPECT_EQ(revisionIn([&] { client->commit(workingCopy, {}, throwing); }), ++revision);
    EXPECT_EQ(repository.youngest(), revision);
    EXPECT_EQ(mustRun({"svn", "status", workingCopy}), "") << "the working copy knows of it";
    delegate->notified = [](const auto&) { throwKind(0); };
    writeFile(workingCopy + "/a.txt", "not committed\n");
    EXPECT_EQ(revisionIn([&] { commit(workingCopy, client); }), -1) << "nothing was committed";
}

TEST_F(CommitTest, WhatWouldTakeTheGroundFromACallIsRefusedInsideIt)
{
    const auto client = HSVNClient::clientWithDelegate(delegate);
    const std::vector<std::function<void()>> calls{
        [&] { client->setBundle(client->bundle()); }, [&] { client->refreshConfiguration(); },
        [&] { client->closeWorkingCopies(); },        [&] { client->applySettings({}); },
        [&] { client->setBundle(nullptr); },
    };
    int refused = 0;
    int passed = 0;
    const auto refuse = [&] {
        for (const auto& call : calls) {
            refused += reasonOf<HSVNGenericException>(call).ends_with("while a call on it is under way") ? 1 : 0;
        }
        // Other calls nest.
        client->optionForName("name", "config", "section", "default");
        HSVNNode::URLForNodeAtPath(HSVNLocalPath::pathWithString(workingCopy), client);
        ++passed;
    };
    delegate->notified = [&](const HSVNNotificationRef& notification) {
        if (notification->action() == HSVNNotifyActionCommitStarted) {
            refuse();
        }
    };
    delegate->asked = [&](std::string&, const auto&) {
        refuse();
        return true;
    };
    EXPECT_EQ(commit(workingCopy, client), 2);
    EXPECT_EQ(passed, 2);
    EXPECT_EQ(refused, 10);
    for (const auto& call : calls) {
        EXPECT_NO_THROW(call());
    }
}

TEST_F(CommitTest, ALogMessageDelegateThatTheLibraryInstalledStaysUntilItIsReplaced)
{
    const auto client = HSVNClient::clientWithDelegate(nullptr);
    HSVNClientInternals::installLogMessageDelegate(*client,
                                                   HSVNLogMessageDelegate::delegateWithMessage("installed", nullptr));
    EXPECT_EQ(commit(workingCopy, client), 2);
    EXPECT_EQ(repository.logMessage(2), "installed");
    const std::weak_ptr<HSVNClientDelegate> installed = client->delegate();
    client->setDelegate(delegate);
    EXPECT_TRUE(installed.expired());
}

TEST_F(CommitTest, ChangingTheBundleInstallsEveryCallbackAnew)
{
    const auto client = HSVNClient::clientWithDelegate(delegate);
    client->setBundle(nullptr);
    EXPECT_EQ(client->ctx(), nullptr);
    client->setBundle(HSVNBundleLoader::sharedInstance().newestBundle());
    delegate->asked = [](std::string& message, const auto&) {
        message = "after the change";
        return true;
    };
    EXPECT_EQ(commit(workingCopy, client), 2);
    EXPECT_EQ(repository.logMessage(2), "after the change");
}

namespace {

/// The user's configuration with a text of the test's own, for a scope.
class UserConfiguration
{
  public:
    explicit UserConfiguration(const std::string& text) : _former{readFile(_file)} { write(text); }
    ~UserConfiguration() { write(_former); }
    UserConfiguration(const UserConfiguration&) = delete;
    UserConfiguration& operator=(const UserConfiguration&) = delete;
    void write(const std::string& text) const { writeFile(_file, text); }

  private:
    std::string _file = std::string{std::getenv("HOME")} + "/.subversion/config";
    std::string _former;
};

constexpr const char* malformed = "[auth\nno end\n";

} // namespace

TEST(Client, ReadsItsConfigurationAgainAndKeepsTheFormerOneWhenThatFails)
{
    const UserConfiguration configuration{"[auth]\nstore-passwords = yes\n"};
    const auto client = countedClient(nullptr);
    const auto stores = [&] { return client->optionForName("store-passwords", "config", "auth", std::nullopt); };
    EXPECT_EQ(stores(), "yes");
    configuration.write("[auth]\nstore-passwords = no\n");
    const int before = pools;
    client->refreshConfiguration();
    EXPECT_EQ(stores(), "no");
    configuration.write(malformed);
    EXPECT_THROW(client->refreshConfiguration(), HSVNException);
    EXPECT_EQ(stores(), "no");
    EXPECT_THROW(client->applySettings({}), HSVNException);
    EXPECT_EQ(stores(), "no");
    expectNothingLeaked(before);
}

TEST(Client, IsLeftWithoutABundleWhenItCannotBeSetUp)
{
    const auto client = HSVNClient::clientWithDelegate(nullptr);
    const auto bundle = client->bundle();
    {
        const UserConfiguration configuration{malformed};
        EXPECT_THROW(client->setBundle(bundle), HSVNException);
        EXPECT_THROW(HSVNClient::clientWithDelegate(nullptr), HSVNException);
    }
    EXPECT_EQ(client->bundle(), nullptr);
    EXPECT_EQ(client->bundleVersion(), std::nullopt);
    EXPECT_EQ(client->ctx(), nullptr);
    const TestRepository repository;
    EXPECT_THROW(commit(repository.checkOut(), client), HSVNInvalidArgumentException);
    client->setBundle(bundle);
    EXPECT_EQ(commit(repository.checkOut("other"), client), HSVNInvalidRevision);
}

TEST(Client, ServesOneThreadAtATime)
{
    const TestRepository repository;
    const std::string workingCopy = repository.checkOut();
    const auto delegate = std::make_shared<HooksDelegate>();
    const auto client = HSVNClient::clientWithDelegate(delegate);
    const std::vector<std::function<void()>> calls{
        [&] { update(workingCopy, client); },
        [&] { client->update(workingCopy); },
        [&] { client->optionForName("name", "config", "section", "default"); },
        [&] { client->setOption("value", "name", "config", "section"); },
        [&] { client->optionsForCategory("config", "section"); },
        [&] { client->setBundle(nullptr); },
        [&] { client->refreshConfiguration(); },
        [&] { client->closeWorkingCopies(); },
        [&] { HSVNTransferObserver(client, nullptr); },
    };
    const auto text = [](std::thread::id thread) { return testing::PrintToString(thread); };
    int met = 0;
    delegate->notified = [&](const HSVNNotificationRef& notification) {
        if (notification->action() != HSVNNotifyActionUpdateStarted) {
            return;
        }
        for (const auto& call : calls) {
            std::string reason;
            std::thread other{[&] { reason = reasonOf<HSVNGenericException>(call); }};
            const std::string expected = "A context serves one thread at a time: thread " + text(other.get_id()) +
                                         " cannot use it during a call of thread " + text(std::this_thread::get_id());
            other.join();
            EXPECT_EQ(reason, expected);
            ++met;
        }
    };
    update(workingCopy, client);
    EXPECT_EQ(met, static_cast<int>(calls.size()));
    std::thread{[&] { EXPECT_NO_THROW(client->optionsForCategory("config", "section")); }}.join();
}

namespace {

/// What the library's shared objects say.
std::string sharedTexts()
{
    const auto version = [](const HSVNVersion& shared) { return shared.versionString() + '\n'; };
    return version(HSVNVersion::version1_4()) + version(HSVNVersion::version1_5()) +
           version(HSVNVersion::version1_6()) + version(HSVNBundleLoader::sharedInstance().newestVersion().value()) +
           HSVNRevision::HEAD()->description() + '\n' + HSVNRevisionSpec::WORKING()->description() + '\n' +
           HSVNLocalPath::fileSystemRoot()->string() + '\n' + HSVNPackage::libraryPath() + '\n' +
           HSVNEndOfLineNative.value() + '\n' + HSVNStatus::normal()->checksum().value_or("no checksum");
}

/// Works with the library when the process ends. Made before anything of the library, it goes after all of that.
struct LateUser
{
    HSVNClientRef client;
    std::string workingCopy;
    std::string texts;
    ~LateUser()
    {
        if (client) {
            try {
                HSVNNode::nodeAtPath(HSVNLocalPath::pathWithString(workingCopy), HSVNRevisionSpec::UNSPECIFIED(),
                                     client);
                update(workingCopy, client);
                HSVNClient::clientWithDelegate(nullptr);
                HSVNURL::URLWithString("svn://example.org/%C3%A4");
                std::fputs(sharedTexts() == texts ? "worked" : "other texts", stderr);
            } catch (const std::exception& exception) {
                std::fputs(exception.what(), stderr);
            }
        }
    }
};

LateUser lateUser;

} // namespace

TEST(ClientDeathTest, WorksInADestructorOfAStaticObject)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const TestRepository repository;
    const std::string workingCopy = repository.checkOut();
    EXPECT_EXIT(
        {
            HSVNInitialize();
            lateUser.client = HSVNClient::clientWithDelegate(nullptr);
            lateUser.workingCopy = workingCopy;
            lateUser.texts = sharedTexts(); // which makes them all
            std::exit(0);                   // NOLINT(concurrency-mt-unsafe): it is the end that is tested
        },
        testing::ExitedWithCode(0), "^worked$");
}

TEST(Client, AddsTheIconPatternOncePerSetUpOfTheConfiguration)
{
    const auto client = HSVNClient::clientWithDelegate(nullptr);
    const std::string icon = "Icon[\x01-\x1f]";
    const std::string first = client->globalIgnoreString().value();
    EXPECT_TRUE(first.ends_with(" .DS_Store " + icon)) << first;
    client->refreshConfiguration();
    EXPECT_EQ(client->globalIgnoreString(), first) << "the configuration is read afresh";
    client->setOption("*.x", HSVNConfigOptionGlobalIgnores, HSVNConfigCategoryConfig, HSVNConfigSectionMiscellany);
    client->refreshConfiguration();
    EXPECT_EQ(client->globalIgnoreString(), first);
}

namespace {

struct Judge
{
    bool accepts = true;
    bool asksToKeep = true;
    bool throws = false;
    std::uint32_t failures = 0;
    std::string certificate;
    bool mayStore = false;

    bool promptForAuthenticationErrors(HSVNContext&, std::uint32_t bits, const HSVNCertificateRef& shown,
                                       const std::optional<std::string>& realm, bool canStore, bool& permanent)
    {
        if (throws) {
            throwKind(2);
        }
        failures = bits;
        certificate = shown->hostname() + '|' + shown->fingerprint() + '|' + shown->validFrom() + '|' +
                      shown->validTo() + '|' + shown->issuer() + '|' + shown->representation() + '|' +
                      realm.value_or("no realm");
        mayStore = canStore;
        EXPECT_FALSE(permanent);
        permanent = asksToKeep;
        return accepts;
    }
};

/// Calls the certificate callback as Subversion does.
class CertificateTest : public testing::Test
{
  protected:
    svn_error_t* ask(apr_uint32_t failures, bool maySave, const char* realm = "https://example.org:443")
    {
        svn_auth_ssl_server_cert_info_t information{};
        information.hostname = "example.org";
        information.fingerprint = "aa:bb";
        information.valid_from = "from";
        information.valid_until = "until";
        information.issuer_dname = "CN=issuer";
        information.ascii_cert = "MIIB";
        return HSVNClientInternals::promptForCertificateTrust(&answer, client.get(), realm, failures, &information,
                                                              maySave, client->pool());
    }

    std::shared_ptr<HSVNClientDelegateFor<Judge>> judge = std::make_shared<HSVNClientDelegateFor<Judge>>();
    HSVNClientRef client = HSVNClient::clientWithDelegate(judge);
    svn_auth_cred_ssl_server_trust_t* answer = nullptr;
};

} // namespace

TEST_F(CertificateTest, ShowsTheCertificateAndTheKnownFailuresButAcceptsThemAll)
{
    ASSERT_EQ(ask(0x4000000fU | 0x30U, true), nullptr);
    EXPECT_EQ(judge->failures, 0x4000000fU);
    EXPECT_EQ(judge->certificate, "example.org|aa:bb|from|until|CN=issuer|MIIB|https://example.org:443");
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer->accepted_failures, 0x4000003fU);
    ASSERT_EQ(ask(8, true, nullptr), nullptr);
    EXPECT_THAT(judge->certificate, testing::EndsWith("|no realm"));
}

TEST_F(CertificateTest, IsKeptOnlyWhenBothSubversionAndTheDelegateAgree)
{
    for (const bool maySave : {false, true}) {
        for (const bool permanent : {false, true}) {
            judge->asksToKeep = permanent;
            ASSERT_EQ(ask(8, maySave), nullptr);
            EXPECT_EQ(judge->mayStore, maySave);
            EXPECT_EQ(answer->may_save, maySave && permanent);
        }
    }
}

TEST_F(CertificateTest, IsRejectedByANoAndWithoutADelegateAndFailsWhenTheDelegateThrows)
{
    judge->accepts = false;
    EXPECT_EQ(ask(8, true), nullptr);
    EXPECT_EQ(answer, nullptr);

    judge->throws = true;
    const HSVNBundleScope current{client->bundle()};
    testing::internal::CaptureStderr();
    svn_error_t* error = ask(8, true);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::HasSubstr("Exception in authentication prompt callback:"));
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->apr_err, HSVNExceptionGeneralStatus);
    EXPECT_STREQ(error->message, "SSL server prompt delegate raised an exception");
    HSVNCurrentEntryPoints().error_clear(error);

    client->setDelegate(nullptr);
    EXPECT_EQ(ask(8, true), nullptr);
    EXPECT_EQ(answer, nullptr);
}

TEST_F(CertificateTest, AUserNameIsAskedForAlone)
{
    struct Named
    {
        std::string name{};

        bool promptForUsername(HSVNContext&, std::string& username, const std::optional<std::string>& realm,
                               bool& mayStore) const
        {
            username = name + " of " + realm.value_or("nothing");
            mayStore = !mayStore;
            return !name.empty();
        }
    };
    const auto named = std::make_shared<HSVNClientDelegateFor<Named>>();
    svn_auth_cred_username_t* user = nullptr;
    const auto askForName = [&] {
        return HSVNClientInternals::promptForUsername(&user, client.get(), "realm", false, client->pool());
    };
    EXPECT_EQ(askForName(), nullptr);
    EXPECT_EQ(user, nullptr) << "the delegate answers no such message";
    client->setDelegate(named);
    EXPECT_EQ(askForName(), nullptr);
    EXPECT_EQ(user, nullptr) << "the delegate gives no name";
    named->name = "harry";
    EXPECT_EQ(askForName(), nullptr);
    EXPECT_STREQ(user->username, "harry of realm");
    EXPECT_TRUE(user->may_save);
}

namespace {

/// Calls the notification callback as Subversion does, with a record made up of every field.
class NotificationTest : public testing::Test
{
  protected:
    NotificationTest()
    {
        record.path = "/wc/a.txt";
        record.action = svn_wc_notify_locked;
        record.kind = svn_node_file;
        record.content_state = svn_wc_notify_state_merged;
        record.prop_state = svn_wc_notify_state_conflicted;
        record.lock_state = svn_wc_notify_lock_state_locked;
        record.revision = 17;
        record.url = "svn://example.org/a%20b";
        record.path_prefix = "/wc";
        record.prop_name = "svn:eol-style";
        record.mime_type = "image/png";
        record.changelist_name = "list";
        record.merge_range = &range;
        lock.path = "/a.txt";
        lock.token = "opaquelocktoken:1";
        lock.creation_date = 1'500'000;
        record.lock = &lock;
    }

    HSVNNotificationRef send()
    {
        HSVNNotificationRef received;
        delegate->notified = [&](const HSVNNotificationRef& notification) { received = notification; };
        HSVNClientInternals::notify(client.get(), &record, client->pool());
        return received;
    }

    svn_wc_notify_t record{};
    svn_lock_t lock{};
    svn_merge_range_t range{4, 6, 1};
    std::shared_ptr<HooksDelegate> delegate = std::make_shared<HooksDelegate>();
    HSVNClientRef client = HSVNClient::clientWithDelegate(delegate);
};

} // namespace

TEST_F(NotificationTest, CarriesEveryFieldOfTheRecord)
{
    const HSVNBundleScope current{client->bundle()};
    record.err = HSVNCurrentEntryPoints().error_create(SVN_ERR_WC_LOCKED, nullptr, "locked out");
    const auto notification = send();
    EXPECT_EQ(notification->action(), HSVNNotifyActionLocked);
    EXPECT_EQ(notification->path(), "/wc/a.txt");
    EXPECT_EQ(notification->nodeKind(), 1);
    EXPECT_EQ(notification->contentState(), 6);
    EXPECT_EQ(notification->propertyState(), 7);
    EXPECT_EQ(notification->lockState(), 3);
    EXPECT_EQ(notification->revision(), 17);
    EXPECT_EQ(notification->lock()->token(), "opaquelocktoken:1");
    EXPECT_EQ(notification->URL()->string(), "svn://example.org/a%20b");
    EXPECT_EQ(notification->pathPrefix(), "/wc");
    EXPECT_EQ(notification->propertyName(), "svn:eol-style");
    EXPECT_EQ(notification->mimeType(), "image/png");
    EXPECT_EQ(notification->changelistName(), "list");
    EXPECT_EQ(notification->mergeStart()->number(), 4);
    EXPECT_EQ(notification->mergeEnd()->number(), 6);
    EXPECT_THROW(notification->error()->raise(), HSVNWorkingCopyLockedException);
    EXPECT_STREQ(record.err->message, "locked out") << "the error stays Subversion's";
    HSVNCurrentEntryPoints().error_clear(record.err);
}

TEST_F(NotificationTest, OfAnOlderLineEndsBeforeTheFieldsOf1Point6)
{
    // A heap block of exactly the old record's size, so that a sanitizer sees any read beyond it.
    const std::size_t size = offsetof(svn_wc_notify_t, url);
    const std::unique_ptr<std::byte[]> block{new std::byte[size]};
    std::memcpy(block.get(), &record, size);
    HSVNNotificationRef received;
    delegate->notified = [&](const HSVNNotificationRef& notification) { received = notification; };
    client->setBundleVersion(HSVNVersion::version1_5());
    HSVNClientInternals::notify(client.get(), reinterpret_cast<const svn_wc_notify_t*>(block.get()), client->pool());
    EXPECT_EQ(received->revision(), 17);
    EXPECT_EQ(received->changelistName(), "list");
    EXPECT_EQ(received->URL(), nullptr);
    EXPECT_FALSE(received->pathPrefix() || received->propertyName());
}

TEST_F(NotificationTest, OfAURLWithoutASchemeHasNoURL)
{
    record.url = "just/a/path";
    EXPECT_EQ(send()->URL(), nullptr);
}

TEST_F(NotificationTest, KeepsAnExceptionForTheOperationAndStopsIt)
{
    record.revision = svn_revnum_t{1} << 32;
    EXPECT_EQ(send(), nullptr) << "a revision number that does not fit is refused";
    EXPECT_TRUE(HSVNKeptException::isIn(*client));
    const HSVNBundleScope current{client->bundle()};
    svn_error_t* stop = HSVNClientInternals::queryContinue(client.get());
    ASSERT_NE(stop, nullptr);
    EXPECT_EQ(stop->apr_err, SVN_ERR_CANCELLED);
    HSVNCurrentEntryPoints().error_clear(stop);
    EXPECT_THROW(std::rethrow_exception(HSVNKeptException::take(*client)), HSVNPlatformException);
}

#include "AlteredBundle.h"
#include "HSVN.h"
#include "ReasonOf.h"
#include "SvnServer.h"
#include "TemporaryFolder.h"
#include "WebServer.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <optional>
#include <string>
#include <thread>

// What a client stores of what it was told, and whom it asks for what it does not know, in a home of its own.

namespace {

using Access = WebServer::Access;
using testing::HasSubstr;
using testing::Not;

/// Answers as it is set up to, and counts the questions.
struct Keeper
{
    bool stores = false;
    bool trusts = true;
    std::string certificate{};
    std::string passphrase{};
    int passwords = 0;
    int certificates = 0;
    int passphrases = 0;
    bool mightStore = false;
    std::function<void()> asked = [] {}; // by the further prompts

    bool promptForCredentials(HSVNContext&, const HSVNCredentialsRef& credentials, const std::optional<std::string>&,
                              bool& mayStore)
    {
        ++passwords;
        mightStore = mayStore;
        credentials->setUsername("harry");
        credentials->setPassword("harryssecret");
        mayStore = stores;
        return true;
    }
    bool promptForAuthenticationErrors(HSVNContext&, std::uint32_t failures, const HSVNCertificateRef&,
                                       const std::optional<std::string>&, bool mayStore, bool& permanent)
    {
        ++certificates;
        EXPECT_EQ(failures, HSVNCertificateFailureUnknownAuthority);
        permanent = stores && mayStore;
        return trusts;
    }
    bool promptForCertificateFile(HSVNContext&, std::string& file, const std::optional<std::string>& realm,
                                  bool& mayStore)
    {
        EXPECT_THAT(realm.value_or(""), HasSubstr("https://127.0.0.1:"));
        asked();
        file = certificate;
        mayStore = stores;
        return !certificate.empty();
    }
    bool promptForCertificatePassphrase(HSVNContext&, std::string& text, const std::optional<std::string>& realm,
                                        bool& mayStore)
    {
        ++passphrases;
        asked();
        EXPECT_THAT(realm.value_or(""), HasSubstr(".p12"));
        text = passphrase;
        mayStore = stores;
        return !passphrase.empty();
    }
};

/// The same with an answer to the question before plain text.
struct OpenKeeper : Keeper
{
    bool allows = true;
    std::vector<HSVNStoredSecret> secrets{};

    bool promptForPlaintextStorage(HSVNContext&, HSVNStoredSecret secret, const std::optional<std::string>& realm)
    {
        EXPECT_TRUE(realm);
        asked();
        secrets.push_back(secret);
        return allows;
    }
};

/// A home without anything of Subversion's.
class StoredCredentials : public testing::Test
{
  protected:
    StoredCredentials()
    {
        setenv("HOME", _home.path().c_str(), 1);
        HSVNInitializeSubversionConfiguration();
    }
    ~StoredCredentials() override { setenv("HOME", _before.c_str(), 1); }

    static const WebServer& webServer()
    {
        static const WebServer server;
        return server;
    }
    static const SvnServer& svnServer()
    {
        static const SvnServer server;
        return server;
    }

    void configure(const std::string& file, const std::string& text) const
    {
        writeFile(_home / (".subversion/" + file), text);
    }
    /// What is stored of a kind, all files together; nil for nothing.
    std::optional<std::string> stored(const std::string& kind) const
    {
        std::optional<std::string> all;
        const std::filesystem::path folder = _home / (".subversion/auth/" + kind);
        if (std::filesystem::exists(folder)) {
            for (const auto& entry : std::filesystem::directory_iterator{folder}) {
                all = all.value_or("") + readFile(entry.path());
            }
        }
        return all;
    }
    static void list(const std::string& url, const HSVNClientDelegateRef& delegate)
    {
        const auto client = HSVNClient::clientWithDelegate(delegate);
        HSVNDirectory::directoryAtPath(HSVNURL::URLWithString(url), HSVNRevisionSpec::HEAD(), client);
    }

  private:
    TemporaryFolder _home;
    std::string _before = std::getenv("HOME");
};

struct Setting
{
    const char* config;
    const char* servers;
    bool mightStore;
    bool isAsked;
    bool isStored;
    bool nameIsStored = true;
};

class StoringSettings : public StoredCredentials, public testing::WithParamInterface<Setting>
{
};

} // namespace

TEST_P(StoringSettings, DecideOverAWillingDelegate)
{
    const auto& [config, servers, mightStore, isAsked, isStored, nameIsStored] = GetParam();
    configure("config", config);
    configure("servers", servers);
    const auto keeper = std::make_shared<HSVNClientDelegateFor<OpenKeeper>>();
    keeper->stores = true;
    list(svnServer().url(), keeper);
    EXPECT_EQ(keeper->mightStore, mightStore);
    EXPECT_EQ(keeper->secrets.size(), isAsked ? 1U : 0U);
    const std::string text = stored("svn.simple").value_or("");
    EXPECT_EQ(text.find("harryssecret") != std::string::npos, isStored) << text;
    EXPECT_EQ(text.find("harry") != std::string::npos, nameIsStored) << text;
}

INSTANTIATE_TEST_SUITE_P(Files, StoringSettings,
                         testing::Values(Setting{"", "", true, true, true}, //
                                         Setting{"[auth]\nstore-passwords = no\n", "", true, false, false},
                                         Setting{"[auth]\nstore-auth-creds = no\n", "", false, false, false, false},
                                         Setting{"", "[global]\nstore-passwords = no\n", true, false, false},
                                         Setting{"", "[global]\nstore-auth-creds = no\n", false, false, false, false},
                                         Setting{"", "[global]\nstore-plaintext-passwords = no\n", true, false, false},
                                         Setting{"", "[global]\nstore-plaintext-passwords = yes\n", true, false, true},
                                         Setting{"[auth]\npassword-stores = gpg-agent\n", "", true, true, true}));

TEST_F(StoredCredentials, AreNotGuessedFromASettingThatIsNoChoice)
{
    configure("config", "[auth]\nstore-passwords = perhaps\n");
    EXPECT_THROW(HSVNClient::clientWithDelegate(nullptr), HSVNException);
}

TEST_F(StoredCredentials, HoldNoPlainPasswordUnlessTheDelegateAllowsIt)
{
    const auto silent = std::make_shared<HSVNClientDelegateFor<Keeper>>();
    silent->stores = true;
    list(svnServer().url(), silent);
    EXPECT_THAT(stored("svn.simple").value_or(""), Not(HasSubstr("harryssecret")));

    const auto refusing = std::make_shared<HSVNClientDelegateFor<OpenKeeper>>();
    refusing->stores = true;
    refusing->allows = false;
    list(svnServer().url(), refusing);
    EXPECT_EQ(refusing->secrets, std::vector{HSVNStoredSecret::password});
    EXPECT_THAT(stored("svn.simple").value_or(""), Not(HasSubstr("harryssecret")));

    // Without the second table nobody can be asked.
    const auto client = std::make_shared<HSVNClient>(std::make_shared<AlteredBundle>([](auto&) {}), refusing);
    HSVNDirectory::directoryAtPath(HSVNURL::URLWithString(svnServer().url()), HSVNRevisionSpec::HEAD(), client);
    EXPECT_EQ(refusing->passwords, 2);
    EXPECT_THAT(stored("svn.simple").value_or(""), Not(HasSubstr("harryssecret")));

    refusing->allows = true;
    list(svnServer().url(), refusing);
    list(svnServer().url(), refusing);
    EXPECT_EQ(refusing->passwords, 3) << "what is stored is not asked for";
}

TEST_F(StoredCredentials, AreToldAndRemoved)
{
    const auto willing = std::make_shared<HSVNClientDelegateFor<OpenKeeper>>();
    willing->stores = true;
    list(svnServer().url(), willing);
    const auto client = HSVNClient::clientWithDelegate(willing);
    const auto told = client->storedCredentials();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told.front().kind, "svn.simple");
    EXPECT_THAT(told.front().realm, HasSubstr("svn://127.0.0.1:"));
    EXPECT_EQ(told.front().values.at("username"), "harry");
    EXPECT_EQ(told.front().values.at("password"), "");
    EXPECT_EQ(client->storedCredentials({.secrets = true}).front().values.at("password"), "harryssecret");

    const auto remove = [&](bool isUnwanted) {
        return client->removeStoredCredentials([&](const HSVNStoredCredential& credential) {
            EXPECT_EQ(credential.values.at("password"), "");
            return isUnwanted;
        });
    };
    EXPECT_EQ(remove(false), 0U);
    EXPECT_TRUE(stored("svn.simple"));
    EXPECT_EQ(remove(true), 1U);
    EXPECT_FALSE(stored("svn.simple"));
    EXPECT_EQ(reasonOf([&] { client->storedCredentials(HSVNStoredCredentialsChoices{}, nullptr); }),
              "Invalid parameter not satisfying: receiver != nil");
}

TEST_F(StoredCredentials, FollowAConfigurationThatIsReadAgain)
{
    const auto keeper = std::make_shared<HSVNClientDelegateFor<OpenKeeper>>();
    keeper->stores = true;
    for (const bool allowed : {false, true}) {
        configure("config", allowed ? "[auth]\nstore-auth-creds = no\n" : "");
        const auto client = HSVNClient::clientWithDelegate(keeper);
        configure("config", allowed ? "" : "[auth]\nstore-auth-creds = no\n");
        client->refreshConfiguration();
        client->info(svnServer().url(), HSVNRevisionSpec::HEAD());
        EXPECT_EQ(stored("svn.simple").has_value(), allowed);
    }
}

TEST_F(StoredCredentials, OfATrustedServerSpareTheNextClientTheQuestion)
{
    const std::string url = webServer().url(Access::encrypted);
    const auto first = std::make_shared<HSVNClientDelegateFor<Keeper>>();
    first->trusts = false;
    EXPECT_THROW(list(url, first), HSVNCommunicationException);
    first->trusts = true;
    list(url, first);
    first->stores = true;
    list(url, first);
    EXPECT_EQ(first->certificates, 3);
    const auto second = std::make_shared<HSVNClientDelegateFor<Keeper>>();
    second->trusts = false;
    list(url, second);
    EXPECT_EQ(second->certificates, 0);
}

TEST_F(StoredCredentials, OfTheServersFileOpenAServerThatWantsACertificate)
{
    const std::string known =
        "[global]\nssl-authority-files = " + webServer().authority() + "\nssl-client-cert-file = ";
    const std::string url = webServer().url(Access::certified);
    configure("servers", known + webServer().clientCertificate(true) + "\nssl-client-cert-password = certsecret\n");
    const auto keeper = std::make_shared<HSVNClientDelegateFor<Keeper>>();
    list(url, keeper);
    EXPECT_EQ(keeper->passphrases, 0);
    // Without the passphrase in the file the delegate is asked for it.
    configure("servers", known + webServer().clientCertificate(true) + "\n");
    keeper->passphrase = "certsecret";
    list(url, keeper);
    EXPECT_EQ(keeper->passphrases, 1);
    EXPECT_EQ(keeper->certificates, 0);
}

TEST_F(StoredCredentials, OfACertificateComeFromTheDelegateWhenNoFileHasThem)
{
    configure("servers", "[global]\nssl-authority-files = " + webServer().authority() + '\n');
    const std::string url = webServer().url(Access::certified);
    const auto keeper = std::make_shared<HSVNClientDelegateFor<OpenKeeper>>();
    EXPECT_THROW(list(url, keeper), HSVNCommunicationException) << "no certificate";
    keeper->certificate = webServer().clientCertificate(true);
    EXPECT_THROW(list(url, keeper), HSVNException) << "no passphrase";
    keeper->passphrase = "certsecret";
    list(url, keeper);
    EXPECT_FALSE(stored("svn.ssl.client-passphrase"));
    keeper->stores = true;
    keeper->allows = false;
    list(url, keeper);
    EXPECT_THAT(keeper->secrets, testing::Contains(HSVNStoredSecret::certificatePassphrase));
    EXPECT_THAT(stored("svn.ssl.client-passphrase").value_or(""), Not(HasSubstr("certsecret")));
    keeper->allows = true;
    list(url, keeper);
    EXPECT_THAT(stored("svn.ssl.client-passphrase").value_or(""), HasSubstr("certsecret"));
    const int before = keeper->passphrases;
    list(url, keeper);
    EXPECT_EQ(keeper->passphrases, before);
}

TEST_F(StoredCredentials, OfAClientAreAskedForAgainWhenAConnectionDoubtsThem)
{
    const auto keeper = std::make_shared<HSVNClientDelegateFor<Keeper>>();
    keeper->certificate = webServer().clientCertificate(true);
    const auto client = HSVNClient::clientWithDelegate(keeper);
    for (const char* passphrase : {"wrong", "certsecret", "certsecret"}) {
        keeper->passphrase = passphrase;
        const auto read = [&] { client->list(webServer().url(Access::certified)); };
        EXPECT_EQ(failureOf(read).empty(), passphrase != std::string{"wrong"});
    }
    EXPECT_EQ(keeper->passphrases, 2);
    // A server that answers nonsense; the last time it is another one.
    const std::string port = std::to_string(freeLoopbackPort());
    const std::string key = webServer().beside("server.key");
    mustRun({"openssl", "req", "-x509", "-subj", "/CN=127.0.0.1", "-key", key, "-out", webServer().beside("own.pem")});
    keeper->certificates = 0;
    for (const auto& [certificate, asked] : {std::pair{"server.pem", 1}, {"server.pem", 1}, {"own.pem", 2}}) {
        const BackgroundCommand server{{"sh", "-c",
                                        "exec openssl s_server -rev -accept 127.0.0.1:" + port + " -key " + key +
                                            " -cert " + webServer().beside(certificate) + " >/dev/null 2>&1"}};
        const auto isRefused = [&] {
            const auto read = [&] { client->list("https://127.0.0.1:" + port); };
            return failureOf(read).find("HSVNConnectionRefusedException") != std::string::npos;
        };
        for (int attempt = 0; attempt < 500 && isRefused(); ++attempt) {
            std::this_thread::sleep_for(std::chrono::milliseconds{20});
        }
        EXPECT_EQ(keeper->certificates, asked);
    }
}

TEST_F(StoredCredentials, OfADelegateThatThrowsAreItsOwnException)
{
    struct Own
    {
    };
    configure("servers", "[global]\nssl-authority-files = " + webServer().authority() + '\n');
    const auto keeper = std::make_shared<HSVNClientDelegateFor<OpenKeeper>>();
    keeper->stores = true;
    keeper->asked = [] { throw Own{}; };
    EXPECT_THROW(list(webServer().url(Access::certified), keeper), Own) << "asked for a certificate";
    EXPECT_THROW(list(svnServer().url(), keeper), Own) << "asked before plain text";
    configure("servers", "[global]\nssl-authority-files = " + webServer().authority() +
                             "\nssl-client-cert-file = " + webServer().clientCertificate(true) + '\n');
    EXPECT_THROW(list(webServer().url(Access::certified), keeper), Own) << "asked for a passphrase";
}

#include "HSVN.h"
#include "SvnServer.h"
#include "TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <memory>
#include <string>

// Clients set up without a terminal: with a configuration of their own, and credentials that nobody is asked for.

namespace {

/// Final, and counts the questions that it answers.
struct Answering final
{
    int questions = 0;
    int notifications = 0;

    bool promptForCredentials(HSVNContext&, const HSVNCredentialsRef& credentials, const std::optional<std::string>&,
                              bool& mayStore)
    {
        ++questions;
        credentials->setUsername("harry");
        credentials->setPassword("harryssecret");
        mayStore = true;
        return true;
    }
    void notify(HSVNContext&, const HSVNNotificationRef&) { ++notifications; }
};

class ClientSettings : public testing::Test
{
  protected:
    static const SvnServer& server()
    {
        static const SvnServer server;
        return server;
    }
    static HSVNClientRef clientAsking(const std::shared_ptr<Answering>& application)
    {
        return HSVNClient::clientOwningDelegate(std::make_shared<HSVNClientDelegateOf<Answering>>(application));
    }
    std::string area() const { return _folder.path().string() + "/configuration"; }
    bool hasStored() const
    {
        const std::filesystem::path stored = area() + "/auth/svn.simple";
        return std::filesystem::exists(stored) && !std::filesystem::is_empty(stored);
    }
    void checkOut(const HSVNClientRef& client, const std::string& name)
    {
        const auto url = HSVNURL::URLWithString(server().url());
        const auto path = HSVNLocalPath::pathWithString(_folder.path().string() + '/' + name);
        HSVNDirectory::checkoutDirectoryAtURL(url, path, HSVNCheckOutOptions::defaults(), client);
    }

    TemporaryFolder _folder;
};

TEST_F(ClientSettings, AnOwnedDelegateAnswersAndItsAnswersAreStoredInTheGivenArea)
{
    const auto application = std::make_shared<Answering>();
    const auto client = clientAsking(application);
    client->applySettings({.configurationDirectory = area()});
    checkOut(client, "wc");
    EXPECT_EQ(application->questions, 1);
    EXPECT_GT(application->notifications, 0);
    EXPECT_TRUE(hasStored());
    client->setDelegate(client->delegate());
    EXPECT_TRUE(client->delegate());
    client->setOwnedDelegate(std::make_shared<HSVNClientDelegateOf<Answering>>(application));
    EXPECT_TRUE(client->delegate());
    EXPECT_THROW(clientAsking(nullptr), HSVNAssertionException);
    client->setDelegate(nullptr);
    EXPECT_EQ(application.use_count(), 1) << "let go of once there is another delegate, or none";
}

TEST_F(ClientSettings, GivenCredentialsAreUsedBeforeTheDelegateIsAsked)
{
    const auto application = std::make_shared<Answering>();
    const auto client = clientAsking(application);
    client->applySettings({.configurationDirectory = area(), .username = "sally", .password = "sallyssecret"});
    checkOut(client, "wc");
    EXPECT_EQ(application->questions, 0);
    client->applySettings({.configurationDirectory = area(), .username = "sally", .password = "wrong"});
    checkOut(client, "again");
    EXPECT_EQ(application->questions, 1) << "after the wrong ones";
}

TEST_F(ClientSettings, NothingIsStoredWhereNothingShallBe)
{
    const auto client = clientAsking(std::make_shared<Answering>());
    client->applySettings({.configurationDirectory = area(), .noAuthCache = true});
    client->refreshConfiguration();
    checkOut(client, "wc");
    EXPECT_FALSE(hasStored());
}

TEST_F(ClientSettings, NobodyIsAskedWhereNobodyShallBe)
{
    const auto application = std::make_shared<Answering>();
    const auto client = clientAsking(application);
    client->applySettings({.configurationDirectory = area(), .prompts = HSVNPrompts::Nobody});
    EXPECT_THROW(checkOut(client, "wc"), HSVNException);
    EXPECT_EQ(application->questions, 0);
}

TEST_F(ClientSettings, OptionsAreSetAndUnsetOnTopOfTheFiles)
{
    const auto client = HSVNClient::clientWithDelegate(nullptr);
    std::filesystem::create_directory(area());
    std::ofstream{area() + "/config"} << "[helpers]\ndiff-cmd = echo\neditor-cmd = vi\n";
    client->applySettings(
        {.configurationDirectory = area(),
         .options = {{"config", "helpers", "diff-cmd", std::nullopt}, {"config", "helpers", "editor-cmd", "ed"}}});
    EXPECT_EQ(client->optionForName("diff-cmd", "config", "helpers", std::nullopt), std::nullopt);
    EXPECT_EQ(client->optionForName("editor-cmd", "config", "helpers", std::nullopt), "ed");
}

TEST_F(ClientSettings, AnAreaThatCannotBeUsedIsToldAndLeavesAClientThatWorks)
{
    const auto application = std::make_shared<Answering>();
    const auto client = clientAsking(application);
    std::ofstream{_folder.path().string() + "/file"} << "no directory";
    EXPECT_THROW(client->applySettings({.configurationDirectory = _folder.path().string() + "/file/below"}),
                 HSVNException);
    checkOut(client, "wc");
    EXPECT_EQ(application->questions, 1);
}

} // namespace

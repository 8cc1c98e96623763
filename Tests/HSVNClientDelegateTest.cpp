#include "HSVNClientDelegate.h"
#include "HSVNContext.h"
#include "HSVNLogMessageDelegate.h"
#include "HSVNPlatformException.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

using Message = HSVNClientDelegateMessage;

struct Nobody
{
};

/// Answers two messages, one of them with arguments that are only convertible.
struct Clerk
{
    explicit Clerk(bool carryOn) : goOn{carryOn} {}

    bool queryContinue(const HSVNContext&) const { return goOn; }
    bool promptForCredentials(HSVNContext&, const HSVNCredentialsRef& credentials,
                              const std::optional<std::string>& realm, bool& mayStore)
    {
        credentials->setUsername("clerk of " + realm.value_or("nothing"));
        mayStore = false;
        return true;
    }

    bool goOn;
};

/// A context that is never used: delegates under test do not look at it.
HSVNContext& anyContext()
{
    static HSVNContext context{nullptr};
    return context;
}

} // namespace

TEST(ClientDelegate, AnswersExactlyTheMessagesThatTheApplicationsClassDeclares)
{
    const HSVNClientDelegateFor<Clerk> clerk{true};
    const HSVNClientDelegateFor<Nobody> nobody;
    for (const Message message :
         {Message::promptForCredentials, Message::promptForAuthenticationErrors, Message::promptForLogMessage,
          Message::notify, Message::queryContinue, Message::promptForUsername, Message::promptForCertificateFile,
          Message::promptForCertificatePassphrase, Message::promptForPlaintextStorage})
    {
        EXPECT_FALSE(nobody.respondsTo(message));
        EXPECT_EQ(clerk.respondsTo(message),
                  message == Message::promptForCredentials || message == Message::queryContinue);
    }
}

TEST(ClientDelegate, HandsMessagesToTheApplicationsFunctions)
{
    HSVNClientDelegateFor<Clerk> clerk{false};
    HSVNClientDelegate& delegate = clerk;
    EXPECT_FALSE(delegate.queryContinue(anyContext()));
    clerk.goOn = true;
    EXPECT_TRUE(delegate.queryContinue(anyContext()));
    const auto credentials = HSVNCredentials::credentialsWithUsername("proposed", "");
    bool mayStore = true;
    EXPECT_TRUE(delegate.promptForCredentials(anyContext(), credentials, "realm", mayStore));
    EXPECT_EQ(credentials->username(), "clerk of realm");
    EXPECT_FALSE(mayStore);
    std::string message;
    EXPECT_THROW(delegate.promptForLogMessage(anyContext(), message, {}), HSVNInvalidArgumentException);
}

TEST(LogMessageDelegate, AnswersItsTextAndLeavesTheRestToTheNextDelegate)
{
    auto clerk = std::make_shared<HSVNClientDelegateFor<Clerk>>(false);
    const auto delegate = HSVNLogMessageDelegate::delegateWithMessage("one for all", clerk);
    std::string message = "before";
    EXPECT_TRUE(delegate->promptForLogMessage(anyContext(), message, {}));
    EXPECT_EQ(message, "one for all");
    EXPECT_TRUE(delegate->respondsTo(Message::promptForLogMessage));
    EXPECT_TRUE(delegate->respondsTo(Message::queryContinue));
    EXPECT_FALSE(delegate->respondsTo(Message::notify));
    EXPECT_FALSE(delegate->queryContinue(anyContext()));
    EXPECT_THROW(delegate->notify(anyContext(), nullptr), HSVNInvalidArgumentException);

    clerk.reset();
    EXPECT_FALSE(delegate->respondsTo(Message::queryContinue)) << "the next delegate is kept alive";
    EXPECT_THROW(delegate->queryContinue(anyContext()), HSVNInvalidArgumentException);
}

namespace {

/// Answers each of the further prompts with its own name.
struct Porter
{
    bool promptForUsername(HSVNContext&, std::string& text, const std::optional<std::string>&, bool& mayStore)
    {
        return answer("username", text, mayStore);
    }
    bool promptForCertificateFile(HSVNContext&, std::string& text, const std::optional<std::string>&, bool& mayStore)
    {
        return answer("file", text, mayStore);
    }
    bool promptForCertificatePassphrase(HSVNContext&, std::string& text, const std::optional<std::string>&,
                                        bool& mayStore)
    {
        return answer("passphrase", text, mayStore);
    }
    bool promptForPlaintextStorage(HSVNContext&, HSVNStoredSecret secret, const std::optional<std::string>&)
    {
        return secret == HSVNStoredSecret::certificatePassphrase;
    }

  private:
    static bool answer(const char* name, std::string& text, bool& mayStore)
    {
        text = name;
        mayStore = false;
        return true;
    }
};

} // namespace

TEST(LogMessageDelegate, LeavesTheFurtherPromptsToTheNextDelegate)
{
    using Question = bool (HSVNClientDelegate::*)(HSVNContext&, std::string&, const std::optional<std::string>&, bool&);
    const auto porter = std::make_shared<HSVNClientDelegateFor<Porter>>();
    const auto nobody = std::make_shared<HSVNClientDelegateFor<Nobody>>();
    const auto passing = HSVNLogMessageDelegate::delegateWithMessage("one for all", porter);
    const auto alone = HSVNLogMessageDelegate::delegateWithMessage("one for all", nobody);
    const std::tuple<Message, Question, const char*> questions[] = {
        {Message::promptForUsername, &HSVNClientDelegate::promptForUsername, "username"},
        {Message::promptForCertificateFile, &HSVNClientDelegate::promptForCertificateFile, "file"},
        {Message::promptForCertificatePassphrase, &HSVNClientDelegate::promptForCertificatePassphrase, "passphrase"},
    };
    for (const auto& [message, question, expected] : questions) {
        std::string text;
        bool mayStore = true;
        EXPECT_TRUE(passing->respondsTo(message));
        EXPECT_TRUE((*passing.*question)(anyContext(), text, {}, mayStore));
        EXPECT_EQ(text, expected);
        EXPECT_FALSE(mayStore);
        EXPECT_FALSE(alone->respondsTo(message));
        EXPECT_THROW((*alone.*question)(anyContext(), text, {}, mayStore), HSVNInvalidArgumentException);
    }
    EXPECT_TRUE(passing->respondsTo(Message::promptForPlaintextStorage));
    EXPECT_TRUE(passing->promptForPlaintextStorage(anyContext(), HSVNStoredSecret::certificatePassphrase, {}));
    EXPECT_FALSE(passing->promptForPlaintextStorage(anyContext(), HSVNStoredSecret::password, {}));
    EXPECT_THROW(alone->promptForPlaintextStorage(anyContext(), HSVNStoredSecret::password, {}),
                 HSVNInvalidArgumentException);
}

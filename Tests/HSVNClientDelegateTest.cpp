#include "HSVNClientDelegate.h"
#include "HSVNContext.h"
#include "HSVNLogMessageDelegate.h"
#include "HSVNPlatformException.h"

#include <gtest/gtest.h>

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
    for (const Message message : {Message::promptForCredentials, Message::promptForAuthenticationErrors,
                                  Message::promptForLogMessage, Message::notify, Message::queryContinue})
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

#pragma once

#include "HSVNCertificate.h"
#include "HSVNCredentials.h"
#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNMessageNames.h"
#include "HSVNPlatformException.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// The messages that a client sends its delegate.
enum class HSVNClientDelegateMessage : std::uint8_t
{
    promptForCredentials,
    promptForAuthenticationErrors,
    promptForLogMessage,
    notify,
    queryContinue,
    promptForUsername,
    promptForCertificateFile,
    promptForCertificatePassphrase,
    promptForPlaintextStorage
};

/// What Subversion would store unencrypted, in a file that only the user may read.
enum class HSVNStoredSecret : std::uint8_t
{
    password,
    certificatePassphrase
};

/// What an application answers while an operation runs.
///
/// Every message is optional: it is sent only when `respondsTo` answers true for it. Applications do not derive from
/// this class; they write a class with any of its functions and hand it over through `HSVNClientDelegateFor`, which
/// finds out at compile time which ones there are.
///
/// A delegate is called on the thread of the operation that asks, and belongs to the application: a client does not
/// keep it alive. An exception that a delegate throws never passes through Subversion; the documentation of each
/// function tells where it goes. `context` is the asking client.
class HSVN_EXPORT HSVNClientDelegate
{
  public:
    virtual ~HSVNClientDelegate();

    /// Whether the delegate answers the message; none unless a subclass says so.
    virtual bool respondsTo(HSVNClientDelegateMessage message) const;

    /// Asks for a user name and a password. Without an answer, the operation fails with "Delegate not installed".
    ///
    /// @param credentials  to be filled in; the user name is set already when Subversion proposes one
    /// @param realm        the server's name for what it protects; nil when Subversion gives none
    /// @param mayStore     in: whether the user's settings (`store-auth-creds`) allow Subversion to store the answer.
    ///                     Out: whether it shall. The user name is stored then; the password goes into the first of
    ///                     the user's key rings (`password-stores`) that takes it, and unencrypted into a file only
    ///                     when none does and `promptForPlaintextStorage`, or the user's `store-plaintext-passwords`,
    ///                     says so. With `store-passwords = no` no password is stored.
    /// @return false to cancel: the operation fails with `HSVNOperationCancelledException`
    ///
    /// When it throws, the operation fails with "Credentials delegate raised an exception", status 20014.
    virtual bool promptForCredentials(HSVNContext& context, const HSVNCredentialsRef& credentials,
                                      const std::optional<std::string>& realm, bool& mayStore);

    /// Asks whether to trust a server's certificate. Without an answer it is rejected. A client asks once, and again
    /// when the server shows another certificate, which bundles of 1.14 and later notice.
    ///
    /// @param failures   bits of `HSVNCertificateFailure`
    /// @param realm      the server; nil when Subversion gives none
    /// @param mayStore   whether Subversion may store the answer
    /// @param permanent  out: whether it shall, false at first
    /// @return false to reject the certificate
    ///
    /// When it throws, the operation fails with "SSL server prompt delegate raised an exception", status 20014.
    virtual bool promptForAuthenticationErrors(HSVNContext& context, std::uint32_t failures,
                                               const HSVNCertificateRef& certificate,
                                               const std::optional<std::string>& realm, bool mayStore, bool& permanent);

    /// Asks for the message of a commit. Without an answer the message is empty.
    ///
    /// @param message  to be filled in, UTF-8, empty at first
    /// @param items    what is going to be committed
    /// @return false to abort the commit, which then commits nothing
    ///
    /// When it throws, the commit is stopped and the exception reaches the operation's caller.
    virtual bool promptForLogMessage(HSVNContext& context, std::string& message,
                                     const std::vector<HSVNCommitItemRef>& items);

    /// Tells of progress.
    ///
    /// When it throws, the operation is stopped as soon as Subversion allows, and the exception reaches its caller.
    virtual void notify(HSVNContext& context, const HSVNNotificationRef& notification);

    /// Asks, again and again, whether to go on. Without an answer operations are never cancelled. What must not be cut
    /// off goes on for some time after a no: work on a working copy's files, and the requests that make a revision,
    /// for as many seconds as the option "stopped-commit-timeout" of the section "global" of "servers" says, or five.
    ///
    /// @return false to cancel: the operation fails with `HSVNOperationCancelledException`
    ///
    /// A `HSVNPlatformException` thrown here is ignored and the operation goes on; any other exception stops it and
    /// reaches its caller.
    virtual bool queryContinue(HSVNContext& context);

    // What follows is sent by bundles that offer Subversion's further prompts. An exception that one of them throws
    // stops the operation and reaches its caller.

    /// Asks for a user name alone, where a server knows its users without passwords and Subversion finds no name.
    /// Without an answer there is none.
    ///
    /// @param username  to be filled in, UTF-8, empty at first
    /// @param realm     the server's name for what it protects; nil when Subversion gives none
    /// @param mayStore  in: whether Subversion is allowed to store the name; out: whether it shall
    /// @return false to give none
    virtual bool promptForUsername(HSVNContext& context, std::string& username, const std::optional<std::string>& realm,
                                   bool& mayStore);

    /// Asks for the file of the user's own certificate (PKCS #12), where a server wants to see one and the user's
    /// `servers` names none. Without an answer none is shown. The next operation asks again when the server did not
    /// accept it, as for the passphrase, on bundles of 1.14 and later.
    ///
    /// @param file      to be filled in with an absolute path, UTF-8, empty at first
    /// @param realm     the server; nil when Subversion gives none
    /// @param mayStore  in: whether Subversion is allowed to store the path; out: whether it shall
    /// @return false to show none
    virtual bool promptForCertificateFile(HSVNContext& context, std::string& file,
                                          const std::optional<std::string>& realm, bool& mayStore);

    /// Asks for the passphrase of the user's own certificate, where the user's `servers` and key rings have none.
    /// Without an answer the certificate is not shown.
    ///
    /// @param passphrase  to be filled in, UTF-8, empty at first
    /// @param realm       the certificate's file; nil when Subversion gives none
    /// @param mayStore    as in `promptForCredentials`; the settings are `store-ssl-client-cert-pp` and
    ///                    `store-ssl-client-cert-pp-plaintext`
    /// @return false to give none
    virtual bool promptForCertificatePassphrase(HSVNContext& context, std::string& passphrase,
                                                const std::optional<std::string>& realm, bool& mayStore);

    /// Asks whether a secret may be stored unencrypted, after the delegate said that it may be stored and no key ring
    /// took it. Asked once for each realm of a client, unless the user's `servers` answers it. Without an answer it is
    /// not stored.
    ///
    /// @param secret  what would be stored
    /// @param realm   the server's name for what it protects, or a certificate's file; nil when Subversion gives none
    /// @return whether it may
    virtual bool promptForPlaintextStorage(HSVNContext& context, HSVNStoredSecret secret,
                                           const std::optional<std::string>& realm);

  protected:
    HSVNClientDelegate() = default;
    HSVNClientDelegate(const HSVNClientDelegate&) = default;
    HSVNClientDelegate& operator=(const HSVNClientDelegate&) = default;
};

using HSVNClientDelegateRef = std::shared_ptr<HSVNClientDelegate>;

/// The names of the messages; see `HSVNNamesBeside`.
struct HSVNClientDelegateNames
{
    int promptForCredentials;
    int promptForAuthenticationErrors;
    int promptForLogMessage;
    int notify;
    int queryContinue;
    int promptForUsername;
    int promptForCertificateFile;
    int promptForCertificatePassphrase;
    int promptForPlaintextStorage;
};

/// Hands a client's messages on to an object of an application's class, those that the class answers.
///
/// @tparam Self  the delegate's class, whose `application` answers the object
template <class Application, class Self>
class HSVNForwardingDelegate : public HSVNClientDelegate
{
  public:
    // The parameters' names keep clear of the members of the application's class, which they would hide.

    bool respondsTo(HSVNClientDelegateMessage theMessage) const override
    {
        switch (theMessage) {
        case HSVNClientDelegateMessage::promptForCredentials:
            return answersCredentials;
        case HSVNClientDelegateMessage::promptForAuthenticationErrors:
            return answersCertificates;
        case HSVNClientDelegateMessage::promptForLogMessage:
            return answersLogMessages;
        case HSVNClientDelegateMessage::notify:
            return answersNotifications;
        case HSVNClientDelegateMessage::queryContinue:
            return answersContinuation;
        case HSVNClientDelegateMessage::promptForUsername:
            return answersUsername;
        case HSVNClientDelegateMessage::promptForCertificateFile:
            return answersCertificateFile;
        case HSVNClientDelegateMessage::promptForCertificatePassphrase:
            return answersCertificatePassphrase;
        case HSVNClientDelegateMessage::promptForPlaintextStorage:
            return answersPlaintextStorage;
        }
        return false;
    }

    bool promptForCredentials(HSVNContext& theContext, const HSVNCredentialsRef& theCredentials,
                              const std::optional<std::string>& theRealm, bool& theMayStore) override
    {
        if constexpr (answersCredentials) {
            return application().promptForCredentials(theContext, theCredentials, theRealm, theMayStore);
        } else {
            return HSVNClientDelegate::promptForCredentials(theContext, theCredentials, theRealm, theMayStore);
        }
    }

    bool promptForAuthenticationErrors(HSVNContext& theContext, std::uint32_t theFailures,
                                       const HSVNCertificateRef& theCertificate,
                                       const std::optional<std::string>& theRealm, bool theMayStore,
                                       bool& thePermanent) override
    {
        if constexpr (answersCertificates) {
            return application().promptForAuthenticationErrors(theContext, theFailures, theCertificate, theRealm,
                                                               theMayStore, thePermanent);
        } else {
            return HSVNClientDelegate::promptForAuthenticationErrors(theContext, theFailures, theCertificate, theRealm,
                                                                     theMayStore, thePermanent);
        }
    }

    bool promptForLogMessage(HSVNContext& theContext, std::string& theMessage,
                             const std::vector<HSVNCommitItemRef>& theItems) override
    {
        if constexpr (answersLogMessages) {
            return application().promptForLogMessage(theContext, theMessage, theItems);
        } else {
            return HSVNClientDelegate::promptForLogMessage(theContext, theMessage, theItems);
        }
    }

    void notify(HSVNContext& theContext, const HSVNNotificationRef& theNotification) override
    {
        if constexpr (answersNotifications) {
            application().notify(theContext, theNotification);
        } else {
            HSVNClientDelegate::notify(theContext, theNotification);
        }
    }

    bool queryContinue(HSVNContext& theContext) override
    {
        if constexpr (answersContinuation) {
            return application().queryContinue(theContext);
        } else {
            return HSVNClientDelegate::queryContinue(theContext);
        }
    }

    bool promptForUsername(HSVNContext& theContext, std::string& theUsername,
                           const std::optional<std::string>& theRealm, bool& theMayStore) override
    {
        if constexpr (answersUsername) {
            return application().promptForUsername(theContext, theUsername, theRealm, theMayStore);
        } else {
            return HSVNClientDelegate::promptForUsername(theContext, theUsername, theRealm, theMayStore);
        }
    }

    bool promptForCertificateFile(HSVNContext& theContext, std::string& theFile,
                                  const std::optional<std::string>& theRealm, bool& theMayStore) override
    {
        if constexpr (answersCertificateFile) {
            return application().promptForCertificateFile(theContext, theFile, theRealm, theMayStore);
        } else {
            return HSVNClientDelegate::promptForCertificateFile(theContext, theFile, theRealm, theMayStore);
        }
    }

    bool promptForCertificatePassphrase(HSVNContext& theContext, std::string& thePassphrase,
                                        const std::optional<std::string>& theRealm, bool& theMayStore) override
    {
        if constexpr (answersCertificatePassphrase) {
            return application().promptForCertificatePassphrase(theContext, thePassphrase, theRealm, theMayStore);
        } else {
            return HSVNClientDelegate::promptForCertificatePassphrase(theContext, thePassphrase, theRealm, theMayStore);
        }
    }

    bool promptForPlaintextStorage(HSVNContext& theContext, HSVNStoredSecret theSecret,
                                   const std::optional<std::string>& theRealm) override
    {
        if constexpr (answersPlaintextStorage) {
            return application().promptForPlaintextStorage(theContext, theSecret, theRealm);
        } else {
            return HSVNClientDelegate::promptForPlaintextStorage(theContext, theSecret, theRealm);
        }
    }

  private:
    Application& application() { return static_cast<Self&>(*this).application(); }

    static constexpr bool answersCredentials =
        requires(Application & a, HSVNContext& context, const HSVNCredentialsRef& credentials,
                 const std::optional<std::string>& realm, bool& mayStore)
    {
        bool{a.promptForCredentials(context, credentials, realm, mayStore)};
    };
    static constexpr bool answersCertificates =
        requires(Application & a, HSVNContext& context, const HSVNCertificateRef& certificate,
                 const std::optional<std::string>& realm, bool& permanent)
    {
        bool{a.promptForAuthenticationErrors(context, std::uint32_t{}, certificate, realm, bool{}, permanent)};
    };
    static constexpr bool answersLogMessages = requires(Application & a, HSVNContext& context, std::string& message,
                                                        const std::vector<HSVNCommitItemRef>& items)
    {
        bool{a.promptForLogMessage(context, message, items)};
    };
    static constexpr bool answersNotifications =
        requires(Application & a, HSVNContext& context, const HSVNNotificationRef& notification)
    {
        a.notify(context, notification);
    };
    static constexpr bool answersContinuation = requires(Application & a, HSVNContext& context)
    {
        bool{a.queryContinue(context)};
    };
    static constexpr bool answersUsername = requires(Application & a, HSVNContext& context, std::string& text,
                                                     const std::optional<std::string>& realm, bool& mayStore)
    {
        bool{a.promptForUsername(context, text, realm, mayStore)};
    };
    static constexpr bool answersCertificateFile = requires(Application & a, HSVNContext& context, std::string& text,
                                                            const std::optional<std::string>& realm, bool& mayStore)
    {
        bool{a.promptForCertificateFile(context, text, realm, mayStore)};
    };
    static constexpr bool answersCertificatePassphrase =
        requires(Application & a, HSVNContext& context, std::string& text, const std::optional<std::string>& realm,
                 bool& mayStore)
    {
        bool{a.promptForCertificatePassphrase(context, text, realm, mayStore)};
    };
    static constexpr bool answersPlaintextStorage =
        requires(Application & a, HSVNContext& context, const std::optional<std::string>& realm)
    {
        bool{a.promptForPlaintextStorage(context, HSVNStoredSecret{}, realm)};
    };

    // Whether one function alone has a message's name, and takes what it is to fill in by value.

    static constexpr bool losesCredentials =
        requires(Application & a, HSVNContext& context, const HSVNCredentialsRef& credentials,
                 const std::optional<std::string>& realm)
    {
        &Application::promptForCredentials;
        a.promptForCredentials(context, credentials, realm, bool{});
    };
    static constexpr bool losesCertificates =
        requires(Application & a, HSVNContext& context, const HSVNCertificateRef& certificate,
                 const std::optional<std::string>& realm)
    {
        &Application::promptForAuthenticationErrors;
        a.promptForAuthenticationErrors(context, std::uint32_t{}, certificate, realm, bool{}, bool{});
    };
    static constexpr bool losesLogMessages =
        requires(Application & a, HSVNContext& context, const std::vector<HSVNCommitItemRef>& items)
    {
        &Application::promptForLogMessage;
        a.promptForLogMessage(context, std::string{}, items);
    };
    template <class Text, class MayStore>
    static constexpr bool losesUsername = requires(Application& a, HSVNContext& context,
                                                   const std::optional<std::string>& realm)
    {
        &Application::promptForUsername;
        a.promptForUsername(context, std::declval<Text>(), realm, std::declval<MayStore>());
    };
    template <class Text, class MayStore>
    static constexpr bool losesCertificateFile = requires(Application& a, HSVNContext& context,
                                                          const std::optional<std::string>& realm)
    {
        &Application::promptForCertificateFile;
        a.promptForCertificateFile(context, std::declval<Text>(), realm, std::declval<MayStore>());
    };
    template <class Text, class MayStore>
    static constexpr bool losesCertificatePassphrase = requires(Application& a, HSVNContext& context,
                                                                const std::optional<std::string>& realm)
    {
        &Application::promptForCertificatePassphrase;
        a.promptForCertificatePassphrase(context, std::declval<Text>(), realm, std::declval<MayStore>());
    };

    HSVN_REQUIRE_REFERENCES(losesCredentials, promptForCredentials);
    HSVN_REQUIRE_REFERENCES(losesCertificates, promptForAuthenticationErrors);
    HSVN_REQUIRE_REFERENCES(losesLogMessages, promptForLogMessage);
    HSVN_REQUIRE_REFERENCES((losesUsername<std::string, bool&> || losesUsername<std::string&, bool>),
                            promptForUsername);
    HSVN_REQUIRE_REFERENCES((losesCertificateFile<std::string, bool&> || losesCertificateFile<std::string&, bool>),
                            promptForCertificateFile);
    HSVN_REQUIRE_REFERENCES((losesCertificatePassphrase<std::string, bool&> ||
                             losesCertificatePassphrase<std::string&, bool>),
                            promptForCertificatePassphrase);

    HSVN_REQUIRE_MESSAGE(answersCredentials, promptForCredentials, HSVNClientDelegate);
    HSVN_REQUIRE_MESSAGE(answersCertificates, promptForAuthenticationErrors, HSVNClientDelegate);
    HSVN_REQUIRE_MESSAGE(answersLogMessages, promptForLogMessage, HSVNClientDelegate);
    HSVN_REQUIRE_MESSAGE(answersNotifications, notify, HSVNClientDelegate);
    HSVN_REQUIRE_MESSAGE(answersContinuation, queryContinue, HSVNClientDelegate);
    HSVN_REQUIRE_MESSAGE(answersUsername, promptForUsername, HSVNClientDelegate);
    HSVN_REQUIRE_MESSAGE(answersCertificateFile, promptForCertificateFile, HSVNClientDelegate);
    HSVN_REQUIRE_MESSAGE(answersCertificatePassphrase, promptForCertificatePassphrase, HSVNClientDelegate);
    HSVN_REQUIRE_MESSAGE(answersPlaintextStorage, promptForPlaintextStorage, HSVNClientDelegate);
};

/// Makes a delegate of an application's class, which declares whichever of `HSVNClientDelegate`'s functions it answers:
///
///     struct Listener
///     {
///         void notify(HSVNContext&, const HSVNNotificationRef& notification);
///     };
///     auto delegate = std::make_shared<HSVNClientDelegateFor<Listener>>(arguments of Listener's constructor...);
///     auto client = HSVNClient::clientWithDelegate(delegate);
///
/// A message is answered by a public function that takes its arguments and answers its result. A class that has a
/// message's name for anything else alone, such as other arguments, does not compile, and neither does one where the
/// function is private or takes by value what it is to fill in.
template <class Application>
class HSVNClientDelegateFor : public Application,
                              public HSVNForwardingDelegate<Application, HSVNClientDelegateFor<Application>>
{
    using Forwarding = HSVNForwardingDelegate<Application, HSVNClientDelegateFor<Application>>;

  public:
    /// Hands the arguments on to the constructor of the application's class.
    template <class... Arguments>
    explicit HSVNClientDelegateFor(Arguments&&... theArguments) : Application{std::forward<Arguments>(theArguments)...}
    {
    }

    // The messages, not the functions of their names in the application's class.
    using Forwarding::notify;
    using Forwarding::promptForAuthenticationErrors;
    using Forwarding::promptForCertificateFile;
    using Forwarding::promptForCertificatePassphrase;
    using Forwarding::promptForCredentials;
    using Forwarding::promptForLogMessage;
    using Forwarding::promptForPlaintextStorage;
    using Forwarding::promptForUsername;
    using Forwarding::queryContinue;

  private:
    friend Forwarding;
    Application& application() { return *this; }
};

/// Makes a delegate of an object that the application has already, of a class which may be final:
///
///     auto delegate = std::make_shared<HSVNClientDelegateOf<Window>>(window);
///
/// Otherwise as `HSVNClientDelegateFor`, but of a final class only what is public and not overloaded is looked at.
template <class Application>
class HSVNClientDelegateOf : public HSVNForwardingDelegate<Application, HSVNClientDelegateOf<Application>>
{
  public:
    /// @param object  not nil ("object != nil"); the delegate keeps it alive
    explicit HSVNClientDelegateOf(std::shared_ptr<Application> object) : _object{std::move(object)}
    {
        HSVNAssertParameter(_object != nullptr, "object != nil");
    }

  private:
    friend HSVNForwardingDelegate<Application, HSVNClientDelegateOf<Application>>;
    Application& application() { return *_object; }

    std::shared_ptr<Application> _object;
};

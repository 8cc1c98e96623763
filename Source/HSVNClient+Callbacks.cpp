#include "HSVNCommitItem.h"
#include "HSVNDebug.h"
#include "HSVNException.h"
#include "HSVNLock.h"
#include "HSVNNotification.h"
#include "HSVNRevision.h"
#include "HSVNURL.h"
#include "Internal/CString.h"
#include "Internal/CaughtException.h"
#include "Internal/Client.h"
#include "Internal/KeptException.h"
#include "Internal/Operation.h"
#include "Internal/Pool.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <mutex>
#include <string_view>

namespace {

using Message = HSVNClientDelegateMessage;

HSVNClient& clientOf(void* baton) { return *static_cast<HSVNClient*>(baton); }

/// The client's delegate when it answers the message, else null.
HSVNClientDelegateRef delegateFor(const HSVNClient& client, Message message)
{
    auto delegate = client.delegate();
    return delegate && delegate->respondsTo(message) ? delegate : nullptr;
}

std::string textOrEmpty(const char* text) { return text ? text : ""; }

/// Runs a prompt with the client's bundle current. An exception that escapes it is logged and becomes an error with
/// the given message, which is what the operation's caller gets to see.
template <class Body>
svn_error_t* runPrompt(HSVNClient& client, const char* failure, Body body) noexcept
{
    const HSVNBundleScope current{client.bundle()};
    try {
        return body();
    } catch (...) {
        HSVNDebug::logAtLevel(HSVNDebugLevelOff, "Exception in authentication prompt callback: %@",
                              HSVNCaughtException()->reason());
        svn_error_t* const error = HSVN_SUBVERSION_ERROR(HSVNExceptionGeneralStatus, failure);
        // However many errors a connection puts around this one, the operation fails with it.
        HSVNKeptException::keep(client, std::make_exception_ptr(HSVNException{error}));
        return error;
    }
}

svn_error_t* askForCredentials(HSVNClient& client, svn_auth_cred_simple_t** answer, const char* realm,
                               const char* username, svn_boolean_t maySave, apr_pool_t* pool)
{
    const auto delegate = delegateFor(client, Message::promptForCredentials);
    if (!delegate) {
        return HSVN_SUBVERSION_ERROR(SVN_ERR_CANCELLED, "Delegate not installed");
    }
    const HSVNCredentialsRef credentials = HSVNCredentials::credentials();
    if (username) {
        credentials->setUsername(username);
    }
    bool mayStore = maySave == 1;
    if (!delegate->promptForCredentials(client, credentials, HSVNTextOrNil(realm), mayStore)) {
        return HSVN_SUBVERSION_ERROR(SVN_ERR_CANCELLED, "User cancelled authentication");
    }
    const HSVNBundleEntryPoints& table = HSVNCurrentEntryPoints();
    auto* record = static_cast<svn_auth_cred_simple_t*>(table.apr_palloc(pool, sizeof(svn_auth_cred_simple_t)));
    *record = {};
    record->username = table.apr_pstrdup(pool, HSVNCString(credentials->username()));
    record->password = table.apr_pstrdup(pool, HSVNCString(credentials->password()));
    record->may_save = mayStore;
    *answer = record;
    return nullptr;
}

svn_error_t* askForCertificateTrust(HSVNClient& client, svn_auth_cred_ssl_server_trust_t** answer, const char* realm,
                                    apr_uint32_t failures, const svn_auth_ssl_server_cert_info_t& information,
                                    svn_boolean_t maySave, apr_pool_t* pool)
{
    constexpr std::uint32_t known = HSVNCertificateFailureNotYetValid | HSVNCertificateFailureExpired |
                                    HSVNCertificateFailureHostnameMismatch | HSVNCertificateFailureUnknownAuthority |
                                    HSVNCertificateFailureOther;
    const auto delegate = delegateFor(client, Message::promptForAuthenticationErrors);
    if (!delegate) {
        return nullptr;
    }
    const auto certificate = HSVNCertificate::certificateWithHostname(
        textOrEmpty(information.hostname), textOrEmpty(information.fingerprint), textOrEmpty(information.valid_from),
        textOrEmpty(information.valid_until), textOrEmpty(information.issuer_dname),
        textOrEmpty(information.ascii_cert));
    const bool mayStore = maySave != 0;
    bool permanent = false;
    if (!delegate->promptForAuthenticationErrors(client, failures & known, certificate, HSVNTextOrNil(realm), mayStore,
                                                 permanent))
    {
        return nullptr;
    }
    auto* record = static_cast<svn_auth_cred_ssl_server_trust_t*>(
        HSVNCurrentEntryPoints().apr_palloc(pool, sizeof(svn_auth_cred_ssl_server_trust_t)));
    record->may_save = mayStore && permanent;
    record->accepted_failures = failures;
    *answer = record;
    return nullptr;
}

/// One of the delegate's questions for a text, whose answer may be stored.
using TextQuestion = bool (HSVNClientDelegate::*)(HSVNContext& context, std::string& text,
                                                  const std::optional<std::string>& realm, bool& mayStore);

/// Asks it, and fills Subversion's record of that answer; leaves it null when there is no answer. An exception of the
/// delegate is kept for the operation's caller.
template <class Record>
svn_error_t* askForText(Message message, TextQuestion question, const char* Record::*text, Record** answer, void* baton,
                        const char* realm, svn_boolean_t maySave, apr_pool_t* pool) noexcept
{
    HSVNClient& client = clientOf(baton);
    *answer = nullptr;
    return HSVNGuardCallback(client, [&]() -> svn_error_t* {
        const auto delegate = delegateFor(client, message);
        std::string given;
        bool mayStore = maySave != 0;
        if (!delegate || !(*delegate.*question)(client, given, HSVNTextOrNil(realm), mayStore)) {
            return nullptr;
        }
        const HSVNBundleEntryPoints& table = HSVNCurrentEntryPoints();
        auto* record = static_cast<Record*>(table.apr_palloc(pool, sizeof(Record)));
        *record = {};
        record->*text = table.apr_pstrdup(pool, HSVNCString(given));
        record->may_save = mayStore;
        *answer = record;
        return nullptr;
    });
}

svn_error_t* askForLogMessage(HSVNClient& client, const char** message, const apr_array_header_t* items,
                              apr_pool_t* pool)
{
    const auto delegate = delegateFor(client, Message::promptForLogMessage);
    std::string text;
    if (!delegate && HSVNClientInternals::hasLostDelegate(client)) {
        // Somebody was to be asked: an empty message would be committed unasked.
        throw HSVNGenericException("A log message is asked for, but the client's delegate is gone");
    }
    if (delegate) {
        std::vector<HSVNCommitItemRef> commitItems;
        commitItems.reserve(static_cast<std::size_t>(items->nelts));
        for (int index = 0; index < items->nelts; ++index) {
            commitItems.push_back(
                HSVNCommitItem::commitItemForSVNCommitItem(APR_ARRAY_IDX(items, index, svn_client_commit_item2_t*)));
        }
        if (!delegate->promptForLogMessage(client, text, commitItems)) {
            return nullptr;
        }
    }
    *message = HSVNCurrentEntryPoints().apr_pstrdup(pool, HSVNCString(text));
    return nullptr;
}

static_assert(static_cast<int>(HSVNNotifyActionUpdateOfPathStarted) == svn_wc_notify_update_started);
static_assert(static_cast<int>(HSVNNotifyActionEndSearchTreeConflictDetails) ==
              svn_wc_notify_end_search_tree_conflict_details);

/// Nil for no revision.
HSVNRevisionRef revisionWith(svn_revnum_t number)
{
    const auto converted = HSVNRevisionNumberFromSubversion(number);
    return converted < 0 ? nullptr : HSVNRevision::revisionWithNumber(converted);
}

bool isOfHunk(const svn_wc_notify_t& record)
{
    constexpr std::int32_t actions[] = {HSVNNotifyActionPatchAppliedHunk, HSVNNotifyActionPatchRejectedHunk,
                                        HSVNNotifyActionPatchHunkAlreadyApplied};
    return std::ranges::find(actions, record.action) != std::end(actions);
}

HSVNPatchHunk hunkOf(const svn_wc_notify_t& record)
{
    return {.originalStart = record.hunk_original_start,
            .originalLength = record.hunk_original_length,
            .modifiedStart = record.hunk_modified_start,
            .modifiedLength = record.hunk_modified_length,
            .matchedLine = record.hunk_matched_line,
            .fuzz = record.hunk_fuzz};
}

HSVNNotificationRef notificationOf(const HSVNClient& client, const svn_wc_notify_t& record)
{
    auto notification = HSVNNotification::notificationWithAction(record.action);
    notification->setContentState(record.content_state);
    if (record.err) {
        notification->setError(HSVNExceptionOfError(client, record.err, false));
    }
    if (record.lock) {
        notification->setLock(HSVNLock::lockWithSVNLock(record.lock, HSVNTextOrNil(record.path).value_or("")));
    }
    notification->setLockState(record.lock_state);
    notification->setNodeKind(record.kind);
    notification->setPath(HSVNTextOrNil(record.path));
    notification->setPropertyState(record.prop_state);
    notification->setRevision(HSVNRevisionNumberFromSubversion(record.revision));
    notification->setMimeType(HSVNTextOrNil(record.mime_type));
    const HSVNVersion version = HSVNDecidingVersion(client);
    // Older lines' records end before these fields.
    if (version.isGreaterThanOrEqualTo(HSVNVersion::version1_5())) {
        notification->setChangelistName(HSVNTextOrNil(record.changelist_name));
        if (record.merge_range) {
            notification->setMergeRange(revisionWith(record.merge_range->start), revisionWith(record.merge_range->end));
        }
    }
    if (version.isGreaterThanOrEqualTo(HSVNVersion::version1_6())) {
        if (record.url && std::string_view{record.url}.find("://") != std::string_view::npos) {
            notification->setURL(HSVNURL::URLWithString(record.url));
        }
        notification->setPathPrefix(HSVNTextOrNil(record.path_prefix));
        notification->setPropertyName(HSVNTextOrNil(record.prop_name));
    }
    if (isOfHunk(record)) { // which lines before 1.7 never send
        notification->setHunk(hunkOf(record));
    }
    return notification;
}

} // namespace

void HSVNClientInternals::installLogMessageDelegate(HSVNClient& client, const HSVNLogMessageDelegateRef& delegate)
{
    const std::lock_guard guard{client.mutex()};
    client._installedDelegate = delegate;
    client.setDelegate(delegate);
}

bool HSVNClientInternals::hasLostDelegate(const HSVNClient& client)
{
    const std::lock_guard guard{client.mutex()};
    return client._hasDelegate && client._delegate.expired();
}

svn_error_t* HSVNClientInternals::promptForCredentials(svn_auth_cred_simple_t** answer, void* baton, const char* realm,
                                                       const char* username, svn_boolean_t maySave,
                                                       apr_pool_t* pool) noexcept
{
    HSVNClient& client = clientOf(baton);
    return runPrompt(client, "Credentials delegate raised an exception",
                     [&] { return askForCredentials(client, answer, realm, username, maySave, pool); });
}

svn_error_t* HSVNClientInternals::promptForCertificateTrust(svn_auth_cred_ssl_server_trust_t** answer, void* baton,
                                                            const char* realm, apr_uint32_t failures,
                                                            const svn_auth_ssl_server_cert_info_t* information,
                                                            svn_boolean_t maySave, apr_pool_t* pool) noexcept
{
    HSVNClient& client = clientOf(baton);
    *answer = nullptr;
    return runPrompt(client, "SSL server prompt delegate raised an exception", [&] {
        return askForCertificateTrust(client, answer, realm, failures, *information, maySave, pool);
    });
}

svn_error_t* HSVNClientInternals::promptForUsername(svn_auth_cred_username_t** answer, void* baton, const char* realm,
                                                    svn_boolean_t maySave, apr_pool_t* pool) noexcept
{
    return askForText(Message::promptForUsername, &HSVNClientDelegate::promptForUsername,
                      &svn_auth_cred_username_t::username, answer, baton, realm, maySave, pool);
}

svn_error_t* HSVNClientInternals::promptForCertificateFile(svn_auth_cred_ssl_client_cert_t** answer, void* baton,
                                                           const char* realm, svn_boolean_t maySave,
                                                           apr_pool_t* pool) noexcept
{
    return askForText(Message::promptForCertificateFile, &HSVNClientDelegate::promptForCertificateFile,
                      &svn_auth_cred_ssl_client_cert_t::cert_file, answer, baton, realm, maySave, pool);
}

svn_error_t* HSVNClientInternals::promptForCertificatePassphrase(svn_auth_cred_ssl_client_cert_pw_t** answer,
                                                                 void* baton, const char* realm, svn_boolean_t maySave,
                                                                 apr_pool_t* pool) noexcept
{
    return askForText(Message::promptForCertificatePassphrase, &HSVNClientDelegate::promptForCertificatePassphrase,
                      &svn_auth_cred_ssl_client_cert_pw_t::password, answer, baton, realm, maySave, pool);
}

svn_error_t* HSVNClientInternals::promptForPlaintextStorage(svn_boolean_t* mayStore, svn_boolean_t isPassphrase,
                                                            const char* realm, void* baton, apr_pool_t*) noexcept
{
    HSVNClient& client = clientOf(baton);
    *mayStore = false;
    return HSVNGuardCallback(client, [&]() -> svn_error_t* {
        const auto secret = isPassphrase ? HSVNStoredSecret::certificatePassphrase : HSVNStoredSecret::password;
        const auto delegate = delegateFor(client, Message::promptForPlaintextStorage);
        *mayStore = delegate && delegate->promptForPlaintextStorage(client, secret, HSVNTextOrNil(realm));
        return nullptr;
    });
}

svn_error_t* HSVNClientInternals::promptForLogMessage(const char** message, const char** temporaryFile,
                                                      const apr_array_header_t* items, void* baton,
                                                      apr_pool_t* pool) noexcept
{
    HSVNClient& client = clientOf(baton);
    *message = nullptr;
    *temporaryFile = nullptr;
    return HSVNGuardCallback(client, [&] { return askForLogMessage(client, message, items, pool); });
}

void HSVNClientInternals::notify(void* baton, const svn_wc_notify_t* record, apr_pool_t*) noexcept
{
    HSVNClient& client = clientOf(baton);
    HSVNGuardVoidCallback(client, [&] {
        client._notifiedPath = textOrEmpty(record->path);
        if (const auto delegate = delegateFor(client, Message::notify)) {
            delegate->notify(client, notificationOf(client, *record));
        }
    });
}

bool HSVNClientInternals::goesOn(HSVNClient& client)
{
    if (HSVNKeptException::isIn(client)) {
        return false;
    }
    try {
        return client.queryContinue();
    } catch (const HSVNPlatformException&) {
        return true;
    } catch (...) {
        HSVNKeptException::keep(client, std::current_exception());
        return false;
    }
}

bool HSVNClientInternals::mustFinishFirst(const HSVNClient& client)
{
    const auto isBusy = HSVNExtensionOrNull(client.bundle()->extensions(), &HSVNDatabaseFunctions::has_unfinished_work);
    return isBusy && isBusy(client._notifiedPath.c_str(), client.pool());
}

svn_error_t* HSVNClientInternals::queryContinue(void* baton) noexcept
{
    HSVNClient& client = clientOf(baton);
    return HSVNGuardCallback(client, [&]() -> svn_error_t* {
        return goesOn(client) || mustFinishFirst(client)
                   ? nullptr
                   : HSVN_SUBVERSION_ERROR(SVN_ERR_CANCELLED, "Operation was canceled by the user");
    });
}

#include "HSVNException.h"

#include "Internal/Characters.h"
#include "Internal/Pool.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace {

template <class Concrete>
HSVNExceptionRef makeException(std::string reason, HSVNUserInfo userInfo)
{
    return std::make_shared<Concrete>(std::move(reason), std::move(userInfo));
}

template <class Concrete>
constexpr HSVNExceptionClass classOf{Concrete::staticClassName, makeException<Concrete>};

constexpr std::array exceptionClasses{
    &classOf<HSVNException>,
    &classOf<HSVNNotWorkingCopyException>,
    &classOf<HSVNTransactionOutOfDateException>,
    &classOf<HSVNOperationCancelledException>,
    &classOf<HSVNEntryExistsException>,
    &classOf<HSVNAuthorizationException>,
    &classOf<HSVNNoSuchEntryException>,
    &classOf<HSVNItemModifiedException>,
    &classOf<HSVNUnversionedResourceException>,
    &classOf<HSVNRepositoryNotFoundException>,
    &classOf<HSVNNotRepositoryException>,
    &classOf<HSVNUnsupportedFeatureException>,
    &classOf<HSVNUnsupportedWorkingCopyFormatException>,
    &classOf<HSVNUnsupportedRepositoryFormatException>,
    &classOf<HSVNWorkingCopyLockedException>,
    &classOf<HSVNVersionConflictException>,
    &classOf<HSVNMergeConflictException>,
    &classOf<HSVNWorkingCopyNotLockedException>,
    &classOf<HSVNInvalidScheduleException>,
    &classOf<HSVNBerkeleyDBException>,
    &classOf<HSVNInvalidExternalsDescriptionException>,
    &classOf<HSVNCommunicationException>,
    &classOf<HSVNConnectionClosedException>,
    &classOf<HSVNHostUnreachableException>,
    &classOf<HSVNCommunicationTimeOutException>,
    &classOf<HSVNConnectionRefusedException>,
    &classOf<HSVNLockException>,
    &classOf<HSVNEntryLockedException>,
    &classOf<HSVNLockExpiredException>,
};

struct StatusRow
{
    std::int32_t status;
    const HSVNExceptionClass* exceptionClass;
};

// The first row with a status decides. Numbers, not Subversion's names for them: the codes are the same in every line,
// while the names of some came and went.
constexpr std::array<StatusRow, 32> statusMap{{
    {150000, &classOf<HSVNNoSuchEntryException>},                  // SVN_ERR_ENTRY_NOT_FOUND
    {150002, &classOf<HSVNEntryExistsException>},                  // SVN_ERR_ENTRY_EXISTS
    {EEXIST, &classOf<HSVNEntryExistsException>},                  //
    {200005, &classOf<HSVNUnversionedResourceException>},          // SVN_ERR_UNVERSIONED_RESOURCE
    {200007, &classOf<HSVNUnsupportedFeatureException>},           // SVN_ERR_UNSUPPORTED_FEATURE
    {200015, &classOf<HSVNOperationCancelledException>},           // SVN_ERR_CANCELLED
    {160028, &classOf<HSVNTransactionOutOfDateException>},         // SVN_ERR_FS_TXN_OUT_OF_DATE
    {160020, &classOf<HSVNEntryExistsException>},                  // SVN_ERR_FS_ALREADY_EXISTS
    {160008, &classOf<HSVNNoSuchEntryException>},                  // SVN_ERR_FS_NO_SUCH_ENTRY
    {160013, &classOf<HSVNNoSuchEntryException>},                  // SVN_ERR_FS_NOT_FOUND
    {160024, &classOf<HSVNVersionConflictException>},              // SVN_ERR_FS_CONFLICT
    {160043, &classOf<HSVNUnsupportedRepositoryFormatException>},  // SVN_ERR_FS_UNSUPPORTED_FORMAT
    {160029, &classOf<HSVNBerkeleyDBException>},                   // SVN_ERR_FS_BERKELEY_DB
    {170001, &classOf<HSVNAuthorizationException>},                // SVN_ERR_RA_NOT_AUTHORIZED
    {210002, &classOf<HSVNConnectionClosedException>},             // SVN_ERR_RA_SVN_CONNECTION_CLOSED
    {EHOSTUNREACH, &classOf<HSVNHostUnreachableException>},        //
    {ETIMEDOUT, &classOf<HSVNCommunicationTimeOutException>},      //
    {ECONNREFUSED, &classOf<HSVNConnectionRefusedException>},      //
    {210005, &classOf<HSVNRepositoryNotFoundException>},           // SVN_ERR_RA_SVN_REPOS_NOT_FOUND
    {180001, &classOf<HSVNNotRepositoryException>},                // SVN_ERR_RA_LOCAL_REPOS_OPEN_FAILED
    {175002, &classOf<HSVNCommunicationException>},                // SVN_ERR_RA_DAV_REQUEST_FAILED
    {155004, &classOf<HSVNWorkingCopyLockedException>},            // SVN_ERR_WC_LOCKED
    {155015, &classOf<HSVNMergeConflictException>},                // SVN_ERR_WC_FOUND_CONFLICT
    {155005, &classOf<HSVNWorkingCopyNotLockedException>},         // SVN_ERR_WC_NOT_LOCKED
    {155007, &classOf<HSVNNotWorkingCopyException>},               // SVN_ERR_WC_NOT_DIRECTORY
    {155023, &classOf<HSVNInvalidScheduleException>},              // SVN_ERR_WC_INVALID_SCHEDULE
    {155021, &classOf<HSVNUnsupportedWorkingCopyFormatException>}, // SVN_ERR_WC_UNSUPPORTED_FORMAT
    {195006, &classOf<HSVNItemModifiedException>},                 // SVN_ERR_CLIENT_MODIFIED
    {195005, &classOf<HSVNInvalidExternalsDescriptionException>},  // SVN_ERR_CLIENT_INVALID_EXTERNALS_DESCRIPTION
    {160037, &classOf<HSVNEntryLockedException>},                  // SVN_ERR_FS_BAD_LOCK_TOKEN
    {160039, &classOf<HSVNEntryLockedException>},                  // SVN_ERR_FS_LOCK_OWNER_MISMATCH
    {160041, &classOf<HSVNLockExpiredException>},                  // SVN_ERR_FS_LOCK_EXPIRED
}};

std::string messageOf(const svn_error_t* error)
{
    HSVNAssertParameter(error != nullptr, "error != NULL");
    std::array<char, 1024> buffer{};
    return HSVNText::decoded(HSVNCurrentEntryPoints().err_best_message(error, buffer.data(), buffer.size()));
}

/// The status map's answer for `HSVNException`, the receiver itself for any other class.
const HSVNExceptionClass* classForStatus(const HSVNExceptionClass& receiver, std::int32_t status)
{
    return &receiver == &classOf<HSVNException> ? HSVNException::mapClassToAPRStatus(status) : &receiver;
}

/// Releases a Subversion error when the scope ends, if asked to.
class ErrorScope
{
  public:
    ErrorScope(svn_error_t* error, bool clear) : _error{clear ? error : nullptr} {}
    ~ErrorScope()
    {
        if (_error) {
            _entryPoints.error_clear(_error);
        }
    }
    ErrorScope(const ErrorScope&) = delete;
    ErrorScope& operator=(const ErrorScope&) = delete;

  private:
    const HSVNBundleEntryPoints& _entryPoints = HSVNCurrentEntryPoints();
    svn_error_t* _error;
};

} // namespace

HSVNException::HSVNException(std::string reason)
    : HSVNException(std::move(reason), {{HSVNExceptionStatusKey, std::int64_t{HSVNExceptionGeneralStatus}}})
{
}

HSVNException::HSVNException(std::string reason, HSVNUserInfo userInfo)
    : HSVNException(staticClassName, std::move(reason), std::move(userInfo))
{
}

// Braces: the message is asked for first.
HSVNException::HSVNException(const svn_error_t* error) : HSVNException{messageOf(error), dictionaryForError(error)} {}

HSVNException::HSVNException(std::string className, std::string reason, HSVNUserInfo userInfo)
    : HSVNPlatformException(std::move(className), std::move(reason), std::move(userInfo))
{
}

HSVNExceptionRef HSVNException::exceptionWithError(svn_error_t* error, bool clear)
{
    return exceptionWithError(error, clear, classOf<HSVNException>);
}

HSVNExceptionRef HSVNException::exceptionWithError(svn_error_t* error) { return exceptionWithError(error, true); }

HSVNExceptionRef HSVNException::exceptionWithError(svn_error_t* error, bool clear, const HSVNExceptionClass& receiver)
{
    HSVNAssertParameter(error != nullptr, "error != NULL");
    const ErrorScope scope{error, clear};
    const HSVNExceptionClass* chosen = nullptr;
    for (const svn_error_t* link = error; link && !chosen; link = link->child) {
        chosen = classForStatus(receiver, link->apr_err);
    }
    if (!chosen) {
        chosen = &classOf<HSVNException>;
    } else if (chosen == &classOf<HSVNCommunicationException>) {
        chosen = classForCommunicationError(error);
    }
    return chosen->make(messageOf(error), dictionaryForError(error));
}

HSVNExceptionRef HSVNException::exceptionWithReason(const std::string& reason)
{
    return std::make_shared<HSVNException>(reason);
}

HSVNExceptionRef HSVNException::exceptionWithReason(const std::string& reason, std::int32_t status)
{
    const HSVNExceptionClass* const mapped = classForAPRStatus(status);
    return (mapped ? *mapped : classOf<HSVNException>)
        .make(reason, {{HSVNExceptionMessageKey, reason}, {HSVNExceptionStatusKey, std::int64_t{status}}});
}

HSVNUserInfo HSVNException::dictionaryForError(const svn_error_t* error)
{
    HSVNAssertParameter(error != nullptr, "error != nil");
    HSVNUserInfo userInfo{{HSVNExceptionMessageKey, messageOf(error)},
                          {HSVNExceptionStatusKey, std::int64_t{error->apr_err}}};
    if (error->file) {
        userInfo.emplace(HSVNExceptionFileNameKey, HSVNText::decoded(error->file));
        userInfo.emplace(HSVNExceptionLineNumberKey, std::int64_t{error->line});
    }
    if (error->child) {
        userInfo.emplace(HSVNExceptionCauseKey, std::make_shared<const HSVNUserInfo>(dictionaryForError(error->child)));
    }
    return userInfo;
}

const HSVNExceptionClass* HSVNException::classForAPRStatus(std::int32_t status) { return mapClassToAPRStatus(status); }

const HSVNExceptionClass* HSVNException::mapClassToAPRStatus(std::int32_t status)
{
    const auto* const row = std::find_if(statusMap.begin(), statusMap.end(),
                                         [&](const StatusRow& candidate) { return candidate.status == status; });
    return row == statusMap.end() ? nullptr : row->exceptionClass;
}

const HSVNExceptionClass* HSVNException::classForCommunicationError(const svn_error_t* error)
{
    const std::string_view message = error && error->message ? error->message : "";
    const bool isRefusal = HSVNText::containsIgnoringCase(message, "401 Authorization Required") ||
                           HSVNText::containsIgnoringCase(message, "403 Forbidden");
    return isRefusal ? &classOf<HSVNAuthorizationException> : &classOf<HSVNCommunicationException>;
}

std::int32_t HSVNException::status() const
{
    const auto status = userInfo().find(HSVNExceptionStatusKey);
    const std::int64_t* const number = status == userInfo().end() ? nullptr : status->second.number();
    return number ? static_cast<std::int32_t>(*number) : HSVNExceptionGeneralStatus;
}

const HSVNExceptionClass* HSVNExceptionClass::named(std::string_view name)
{
    const auto* const found =
        std::find_if(exceptionClasses.begin(), exceptionClasses.end(),
                     [&](const HSVNExceptionClass* candidate) { return candidate->name() == name; });
    return found == exceptionClasses.end() ? nullptr : *found;
}

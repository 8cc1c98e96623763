#include "HSVNException.h"

#include "HSVNStatusCodes.h"

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

// The first row with a status decides.
constexpr std::array<StatusRow, 32> statusMap{{
    {HSVNStatusCode::EntryNotFound, &classOf<HSVNNoSuchEntryException>},
    {HSVNStatusCode::EntryExists, &classOf<HSVNEntryExistsException>},
    {EEXIST, &classOf<HSVNEntryExistsException>},
    {HSVNStatusCode::UnversionedResource, &classOf<HSVNUnversionedResourceException>},
    {HSVNStatusCode::UnsupportedFeature, &classOf<HSVNUnsupportedFeatureException>},
    {HSVNStatusCode::Cancelled, &classOf<HSVNOperationCancelledException>},
    {HSVNStatusCode::TransactionOutOfDate, &classOf<HSVNTransactionOutOfDateException>},
    {HSVNStatusCode::NodeExists, &classOf<HSVNEntryExistsException>},
    {HSVNStatusCode::NoSuchEntry, &classOf<HSVNNoSuchEntryException>},
    {HSVNStatusCode::NodeNotFound, &classOf<HSVNNoSuchEntryException>},
    {HSVNStatusCode::VersionConflict, &classOf<HSVNVersionConflictException>},
    {HSVNStatusCode::UnsupportedRepositoryFormat, &classOf<HSVNUnsupportedRepositoryFormatException>},
    {HSVNStatusCode::BerkeleyDB, &classOf<HSVNBerkeleyDBException>},
    {HSVNStatusCode::NotAuthorized, &classOf<HSVNAuthorizationException>},
    {HSVNStatusCode::ConnectionClosed, &classOf<HSVNConnectionClosedException>},
    {EHOSTUNREACH, &classOf<HSVNHostUnreachableException>},
    {ETIMEDOUT, &classOf<HSVNCommunicationTimeOutException>},
    {ECONNREFUSED, &classOf<HSVNConnectionRefusedException>},
    {HSVNStatusCode::RepositoryNotFound, &classOf<HSVNRepositoryNotFoundException>},
    {HSVNStatusCode::RepositoryOpenFailed, &classOf<HSVNNotRepositoryException>},
    {HSVNStatusCode::RequestFailed, &classOf<HSVNCommunicationException>},
    {HSVNStatusCode::WorkingCopyLocked, &classOf<HSVNWorkingCopyLockedException>},
    {HSVNStatusCode::FoundConflict, &classOf<HSVNMergeConflictException>},
    {HSVNStatusCode::WorkingCopyNotLocked, &classOf<HSVNWorkingCopyNotLockedException>},
    {HSVNStatusCode::WorkingCopyNotDirectory, &classOf<HSVNNotWorkingCopyException>},
    {HSVNStatusCode::InvalidSchedule, &classOf<HSVNInvalidScheduleException>},
    {HSVNStatusCode::UnsupportedWorkingCopyFormat, &classOf<HSVNUnsupportedWorkingCopyFormatException>},
    {HSVNStatusCode::ClientModified, &classOf<HSVNItemModifiedException>},
    {HSVNStatusCode::InvalidExternals, &classOf<HSVNInvalidExternalsDescriptionException>},
    {HSVNStatusCode::BadLockToken, &classOf<HSVNEntryLockedException>},
    {HSVNStatusCode::LockOwnerMismatch, &classOf<HSVNEntryLockedException>},
    {HSVNStatusCode::LockExpired, &classOf<HSVNLockExpiredException>},
}};

} // namespace

HSVNException::HSVNException(std::string reason)
    : HSVNException(std::move(reason), {{HSVNExceptionStatusKey, std::int64_t{HSVNExceptionGeneralStatus}}})
{
}

HSVNException::HSVNException(std::string reason, HSVNUserInfo userInfo)
    : HSVNException(staticClassName, std::move(reason), std::move(userInfo))
{
}

HSVNException::HSVNException(std::string className, std::string reason, HSVNUserInfo userInfo)
    : HSVNPlatformException(std::move(className), std::move(reason), std::move(userInfo))
{
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

const HSVNExceptionClass* HSVNException::classForAPRStatus(std::int32_t status) { return mapClassToAPRStatus(status); }

const HSVNExceptionClass* HSVNException::mapClassToAPRStatus(std::int32_t status)
{
    const auto* const row = std::find_if(statusMap.begin(), statusMap.end(),
                                         [&](const StatusRow& candidate) { return candidate.status == status; });
    return row == statusMap.end() ? nullptr : row->exceptionClass;
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

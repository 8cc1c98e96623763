#include "Internal/ArchivableClasses.h"

#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNExternalDefinition.h"
#include "HSVNFile.h"
#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNNode.h"
#include "HSVNNotification.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStatus.h"
#include "HSVNURL.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

template <class Class>
std::shared_ptr<HSVNArchivable> decoded(HSVNCoder* decoder)
{
    return std::make_shared<Class>(decoder);
}

struct ArchivableClass
{
    std::string_view name;
    HSVNArchivableMaker maker;
};

constexpr ArchivableClass archivableClasses[] = {
    {"HSVNDirectory", decoded<HSVNDirectory>},
    {"HSVNExternalDefinition", decoded<HSVNExternalDefinition>},
    {"HSVNFile", decoded<HSVNFile>},
    {"HSVNHeadRevision", decoded<HSVNHeadRevision>},
    {"HSVNLocalPath", decoded<HSVNLocalPath>},
    {"HSVNLock", decoded<HSVNLock>},
    {"HSVNMineRevision", decoded<HSVNMineRevision>},
    {"HSVNMutableRevisionSpec", decoded<HSVNMutableRevisionSpec>},
    {"HSVNNode", decoded<HSVNNode>},
    {"HSVNNotification", decoded<HSVNNotification>},
    {"HSVNNumberedRevision", decoded<HSVNNumberedRevision>},
    {"HSVNRelativeRevision", decoded<HSVNRelativeRevision>},
    {"HSVNRevisionAtDate", decoded<HSVNRevisionAtDate>},
    {"HSVNRevisionSpec", decoded<HSVNRevisionSpec>},
    {"HSVNStatus", decoded<HSVNStatus>},
    {"HSVNURL", decoded<HSVNURL>},
};

template <class Class>
HSVNPlatformExceptionRef made(std::string reason)
{
    return std::make_shared<Class>(std::move(reason));
}

struct PlatformExceptionClass
{
    std::string_view name;
    HSVNPlatformExceptionRef (*maker)(std::string reason);
};

/// The exceptions that know their own name and carry no user information.
constexpr PlatformExceptionClass platformExceptionClasses[] = {
    {"HSVNAssertionException", made<HSVNAssertionException>},
    {"HSVNGenericException", made<HSVNGenericException>},
    {"HSVNInternalInconsistencyException", made<HSVNInternalInconsistencyException>},
    {"HSVNInvalidArgumentException", made<HSVNInvalidArgumentException>},
};

constexpr std::string_view rootExceptionClass = "HSVNPlatformException";

template <class Row, std::size_t count>
const Row* rowNamed(const Row (&table)[count], std::string_view name)
{
    const auto* row = std::ranges::find(table, name, &Row::name);
    return row == std::end(table) ? nullptr : row;
}

} // namespace

HSVNArchivableMaker HSVNArchivableClassNamed(std::string_view className)
{
    const auto* row = rowNamed(archivableClasses, className);
    return row ? row->maker : nullptr;
}

bool HSVNIsArchivableException(std::string_view className)
{
    return className == rootExceptionClass || rowNamed(platformExceptionClasses, className) ||
           HSVNExceptionClass::named(className);
}

HSVNPlatformExceptionRef HSVNMakeArchivedException(std::string_view className, std::string name, std::string reason,
                                                   HSVNUserInfo userInfo)
{
    if (className == rootExceptionClass) {
        return std::make_shared<HSVNPlatformException>(std::move(name), std::move(reason), std::move(userInfo));
    }
    if (const auto* row = rowNamed(platformExceptionClasses, className)) {
        return row->maker(std::move(reason));
    }
    const auto* exceptionClass = HSVNExceptionClass::named(className);
    return exceptionClass ? exceptionClass->make(std::move(reason), std::move(userInfo)) : nullptr;
}

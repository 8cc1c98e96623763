#include "HSVNPlatformException.h"

#include <fmt/format.h>

HSVNPlatformException::HSVNPlatformException(std::string name, std::string reason, HSVNUserInfo userInfo)
    : _name{std::move(name)}, _reason{std::move(reason)}, _userInfo{std::move(userInfo)}
{
}

HSVNAssertionException::HSVNAssertionException(std::string reason)
    : HSVNPlatformException("NSInternalInconsistencyException", std::move(reason))
{
}

HSVNInvalidArgumentException::HSVNInvalidArgumentException(std::string reason)
    : HSVNPlatformException("NSInvalidArgumentException", std::move(reason))
{
}

HSVNGenericException::HSVNGenericException(std::string reason)
    : HSVNPlatformException("NSGenericException", std::move(reason))
{
}

HSVNInternalInconsistencyException::HSVNInternalInconsistencyException(std::string reason)
    : HSVNPlatformException("NSInternalInconsistencyException", std::move(reason))
{
}

void HSVNFailParameter(std::string_view condition)
{
    throw HSVNAssertionException(fmt::format("Invalid parameter not satisfying: {}", condition));
}

#include "HSVNPlatformException.h"

#include <algorithm>
#include <fmt/format.h>

HSVNUserInfoValue::HSVNUserInfoValue(const char* text)
{
    HSVNAssertParameter(text != nullptr, "text != NULL");
    value = text;
}

HSVNPlatformException::HSVNPlatformException(std::string name, std::string reason, HSVNUserInfo userInfo)
    : _name{std::move(name)}, _reason{std::move(reason)}, _userInfo{std::move(userInfo)}
{
}

std::vector<std::string> HSVNPlatformException::messages() const
{
    std::vector<std::string> messages{_reason};
    const HSVNUserInfo* link = &_userInfo;
    bool isKnown = false;
    while (link) {
        const auto message = link->find(HSVNExceptionMessageKey);
        const std::string* const text = message == link->end() ? nullptr : message->second.text();
        if (text && !text->empty()) {
            isKnown = std::find(messages.begin(), messages.end(), *text) != messages.end();
            if (!isKnown) {
                messages.push_back(*text);
            }
        }
        const auto cause = link->find(HSVNExceptionCauseKey);
        link = cause == link->end() ? nullptr : cause->second.dictionary();
    }
    if (isKnown && messages.size() > 1 && messages.back().ends_with(':')) {
        messages.pop_back(); // such as "Additional errors:" with an error that stands above
    }
    return messages;
}

std::string HSVNPlatformException::fullMessage() const { return fmt::format("{}", fmt::join(messages(), "\n")); }

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

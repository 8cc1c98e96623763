#include "CommandLine/Errors.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace {

std::string& storedProgramName()
{
    static std::string name = "hsvn";
    return name;
}

ErrorLink linkOf(const HSVNUserInfo& info)
{
    ErrorLink link;
    if (const auto code = info.find(HSVNExceptionStatusKey); code != info.end() && code->second.number()) {
        link.code = static_cast<std::int32_t>(*code->second.number());
    }
    if (const auto message = info.find(HSVNExceptionMessageKey); message != info.end() && message->second.text()) {
        link.message = *message->second.text();
    }
    if (const auto cause = info.find(HSVNExceptionCauseKey); cause != info.end()) {
        link.cause = cause->second.dictionary();
    }
    return link;
}

HSVNUserInfo userInfo(std::int32_t code, const std::string& message, const HSVNUserInfo* cause)
{
    HSVNUserInfo info{{HSVNExceptionStatusKey, std::int64_t{code}}, {HSVNExceptionMessageKey, message}};
    if (cause) {
        info.emplace(HSVNExceptionCauseKey, std::make_shared<const HSVNUserInfo>(*cause));
    }
    return info;
}

/// An exception of the errors of a chain, the outermost first.
HSVNException exceptionOf(std::vector<ErrorLink> chain)
{
    std::reverse(chain.begin(), chain.end());
    std::optional<HSVNException> result;
    for (const ErrorLink& link : chain) {
        result = result ? failure(link.code, link.message, *result) : failure(link.code, link.message);
    }
    return *result;
}

} // namespace

std::vector<ErrorLink> chainOf(const HSVNException& exception)
{
    std::vector<ErrorLink> chain;
    for (const HSVNUserInfo* info = &exception.userInfo(); info; info = chain.back().cause) {
        chain.push_back(linkOf(*info));
    }
    if (chain.front().message.empty()) {
        chain.front().message = exception.reason();
    }
    return chain;
}

HSVNException failure(std::int32_t code, const std::string& message)
{
    return {message, userInfo(code, message, nullptr)};
}

void fail(std::int32_t code, const std::string& message) { throw failure(code, message); }

HSVNException failure(std::int32_t code, const std::string& message, const HSVNException& cause)
{
    return {message, userInfo(code, message, &cause.userInfo())};
}

void fail(std::int32_t code, const std::string& message, const HSVNException& cause)
{
    throw failure(code, message, cause);
}

HSVNException wrapped(const HSVNException& exception, const std::string& message)
{
    return {message, userInfo(exception.status(), message, &exception.userInfo())};
}

HSVNException extended(const HSVNException& exception, const std::vector<std::string>& messages)
{
    auto chain = chainOf(exception);
    for (const auto& message : messages) {
        chain.push_back({exception.status(), message, nullptr});
    }
    return exceptionOf(std::move(chain));
}

HSVNException replaced(const HSVNException& exception, const std::string& text, const std::string& by)
{
    auto chain = chainOf(exception);
    for (auto& link : chain) {
        if (const auto at = link.message.find(text); at != std::string::npos) {
            link.message.replace(at, text.size(), by);
        }
    }
    return exceptionOf(std::move(chain));
}

bool hasCause(const HSVNException& exception, std::int32_t code)
{
    const auto chain = chainOf(exception);
    return std::any_of(chain.begin(), chain.end(), [code](const ErrorLink& link) { return link.code == code; });
}

void setProgramName(const std::string& name) { storedProgramName() = name; }

const std::string& programName() { return storedProgramName(); }

#include "CommandLine/Errors.h"

#include "Output/Output.h"

#include <algorithm>
#include <cstdio>
#include <fmt/format.h>
#include <optional>
#include <set>

namespace {

std::string& storedProgramName()
{
    static std::string name = "hsvn";
    return name;
}

/// The parts of one error of a chain.
struct Link
{
    std::int32_t code = 0;
    std::string message;
    const HSVNUserInfo* cause = nullptr;
};

Link linkOf(const HSVNUserInfo& info)
{
    Link link;
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

/// The exception's chain of errors, the outermost first.
std::vector<Link> chainOf(const HSVNException& exception)
{
    std::vector<Link> chain;
    for (const HSVNUserInfo* info = &exception.userInfo(); info; info = chain.back().cause) {
        chain.push_back(linkOf(*info));
    }
    if (chain.front().message.empty()) {
        chain.front().message = exception.reason();
    }
    return chain;
}

/// Prints every error of the chain that has not been said already.
void printChain(const HSVNException& exception, const std::string& prefix)
{
    const auto chain = chainOf(exception);
    std::set<std::pair<std::int32_t, std::string>> printed;
    for (std::size_t index = 0; index < chain.size(); ++index) {
        const Link& link = chain[index];
        // The library puts a code that it knows above one that is new in a later line, with the same message:
        // Subversion itself says it once, with its own code.
        const bool isTranslated = index + 1 < chain.size() && chain[index + 1].message == link.message;
        if (!isTranslated && printed.emplace(link.code, link.message).second) {
            Output::writeError(fmt::format("{}{:06}: {}\n", prefix, link.code, link.message));
        }
    }
}

HSVNUserInfo userInfo(std::int32_t code, const std::string& message, const HSVNUserInfo* cause)
{
    HSVNUserInfo info{{HSVNExceptionStatusKey, std::int64_t{code}}, {HSVNExceptionMessageKey, message}};
    if (cause) {
        info.emplace(HSVNExceptionCauseKey, std::make_shared<const HSVNUserInfo>(*cause));
    }
    return info;
}

} // namespace

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
    std::reverse(chain.begin(), chain.end());
    std::optional<HSVNException> result;
    for (const Link& link : chain) {
        result = result ? failure(link.code, link.message, *result) : failure(link.code, link.message);
    }
    return *result;
}

bool hasCause(const HSVNException& exception, std::int32_t code)
{
    const auto chain = chainOf(exception);
    return std::any_of(chain.begin(), chain.end(), [code](const Link& link) { return link.code == code; });
}

void setProgramName(const std::string& name) { storedProgramName() = name; }

const std::string& programName() { return storedProgramName(); }

void printError(const HSVNException& exception) { printError(exception, programName() + ": "); }

void printError(const HSVNException& exception, const std::string& prefix)
{
    // Whoever read the output has seen enough, as `head` or a pager that was left.
    if (!hasCause(exception, PipeWrite)) {
        printChain(exception, prefix + "E");
    }
}

void printWarnings(const HSVNException& exception) { printChain(exception, programName() + ": warning: W"); }

void printInterruption(const HSVNException& exception)
{
    for (const Link& link : chainOf(exception)) {
        const std::string message = link.code == Cancelled ? "Caught signal" : link.message;
        Output::writeError(fmt::format("{}: E{:06}: {}\n", programName(), link.code, message));
    }
}

void printWarning(const HSVNException& exception)
{
    const auto chain = chainOf(exception);
    const Link& link = chain.size() > 1 && chain[1].message == chain[0].message ? chain[1] : chain[0];
    Output::writeError(fmt::format("{}: warning: W{:06}: {}\n", programName(), link.code, link.message));
}

void printWarningOfRoot(const HSVNException& exception)
{
    const Link root = chainOf(exception).back();
    Output::writeError(fmt::format("{}: warning: W{:06}: {}\n", programName(), root.code, root.message));
}

void reportFailedProgram(const HSVNException& exception)
{
    const auto code = exception.status();
    if (code != NoEditor && code != NoMergeTool && code != ExternalProgram) {
        exception.raise();
    }
    Output::writeError(exception.reason() + "\n");
}

void TargetFailures::tolerate(const HSVNException& exception, const std::vector<std::int32_t>& tolerated)
{
    const auto code = std::find_if(tolerated.begin(), tolerated.end(),
                                   [&](std::int32_t candidate) { return candidate == exception.status(); });
    if (code == tolerated.end()) {
        exception.raise();
    }
    if (!_isQuiet) {
        printWarning(exception);
    }
    if (std::find(_codes.begin(), _codes.end(), *code) == _codes.end()) {
        _codes.push_back(*code);
    }
}

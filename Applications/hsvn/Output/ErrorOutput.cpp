#include "Output/ErrorOutput.h"

#include "Output/Output.h"

#include <algorithm>
#include <fmt/format.h>
#include <set>
#include <utility>

namespace {

/// Prints every error of the chain that has not been said already.
void printChain(const HSVNException& exception, const std::string& prefix)
{
    const auto chain = chainOf(exception);
    std::set<std::pair<std::int32_t, std::string>> printed;
    bool isFollowing = false; // errors that came of the first one, which may all be the same
    for (std::size_t index = 0; index < chain.size(); ++index) {
        const ErrorLink& link = chain[index];
        // The library puts a code that it knows above one that is new in a later line, with the same message:
        // Subversion itself says it once, with its own code.
        const bool isTranslated = index + 1 < chain.size() && chain[index + 1].message == link.message;
        const bool isRepeated = isFollowing && link.code != ComposedError;
        if (!isTranslated && (isRepeated || printed.emplace(link.code, link.message).second)) {
            Output::writeError(fmt::format("{}{:06}: {}\n", prefix, link.code, link.message));
        }
        isFollowing = isFollowing || link.code == ComposedError;
    }
}

} // namespace

void printError(const HSVNException& exception) { printError(exception, programName() + ": "); }

void printError(const HSVNException& exception, const std::string& prefix)
{
    // Whoever read the output has seen enough, as `head` or a pager that was left. Other pipes lead to a server.
    if (!Output::hasFailed() || !hasCause(exception, PipeWrite)) {
        printChain(exception, prefix + "E");
    }
}

void printInterruption(const HSVNException& exception)
{
    const auto chain = chainOf(exception);
    for (const ErrorLink& link : chain) {
        const bool isReason = link.code == Cancelled && link.message == chain.back().message;
        Output::writeError(
            fmt::format("{}: E{:06}: {}\n", programName(), link.code, isReason ? "Caught signal" : link.message));
    }
}

void printWarning(const HSVNException& exception)
{
    const auto chain = chainOf(exception);
    const ErrorLink& link = chain.size() > 1 && chain[1].message == chain[0].message ? chain[1] : chain[0];
    Output::writeError(fmt::format("{}: warning: W{:06}: {}\n", programName(), link.code, link.message));
}

void printWarningOfRoot(const HSVNException& exception)
{
    const ErrorLink root = chainOf(exception).back();
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

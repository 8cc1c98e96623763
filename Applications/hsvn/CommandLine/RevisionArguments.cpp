#include "CommandLine/RevisionArguments.h"

#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/Session.h"
#include "CommandLine/Similarity.h"
#include "CommandLine/TextFiles.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fmt/format.h>
#include <limits>
#include <string_view>
#include <utility>

namespace {

/// A number at the start of the text after any letters "r", which are taken off with it; 0 when there is none.
long takeNumber(const char*& text)
{
    while (*text == 'r') {
        ++text;
    }
    char* end = nullptr;
    const long number = std::strtol(text, &end, 10);
    text = end;
    return std::max(number, -std::numeric_limits<long>::max()); // which has an absolute value
}

/// With room for the one after it.
constexpr long newestRevision = std::numeric_limits<HSVNRevisionNumber>::max() - 1L;

/// A number as a revision, or else the last one, which is as little there.
HSVNRevisionNumber clampedRevision(Options& options, long number)
{
    if (number > newestRevision) {
        options.missingRevision = number;
    }
    return static_cast<HSVNRevisionNumber>(std::min(number, newestRevision));
}

/// One change: N is N-1:N, -N is N:N-1, N-M the range with both ends in it.
std::pair<long, long> changeRange(const std::string& change)
{
    const bool isNegative = change.starts_with('-');
    const char* const digits = change.c_str() + (isNegative ? 1 : 0);
    const char* rest = digits;
    const long number = takeNumber(rest);
    const bool isRange = rest != digits && *rest == '-' && rest[-1] != 'r';
    if (isRange && isNegative) {
        fail(ArgumentParsing, fmt::format("Negative number in range ({}) not supported with -c", change));
    }
    const long last = isRange ? takeNumber(++rest) : number;
    if (rest == change.c_str() || *rest != '\0' || (last < 0) != (number < 0) || (isRange && last == 0)) {
        fail(ArgumentParsing, fmt::format("Non-numeric change argument ({}) given to -c", change));
    }
    if (number == 0) {
        fail(ArgumentParsing, "There is no change 0");
    }
    if (isNegative || number < 0) {
        return {std::abs(number), std::abs(number) - 1};
    }
    return number <= last ? std::pair{number - 1, last} : std::pair{number, last - 1};
}

} // namespace

std::string clampedText(Options& options, const std::string& text)
{
    constexpr std::string_view digits = "0123456789";
    std::string result;
    for (std::string_view left = text; !left.empty();) {
        const auto other = std::min(left.find_first_of(digits), left.size());
        result += left.substr(0, other);
        left.remove_prefix(other);
        const auto count = std::min(left.find_first_not_of(digits), left.size());
        if (count > 0) {
            const std::string number{left.substr(0, count)};
            result += std::to_string(clampedRevision(options, std::strtol(number.c_str(), nullptr, 10)));
        }
        left.remove_prefix(count);
    }
    return result;
}

HSVNException withMissingRevision(const HSVNException& exception, const Options& options)
{
    if (!options.missingRevision) {
        return exception;
    }
    constexpr const char* words = "No such revision ";
    HSVNException result = exception;
    for (const long number : {newestRevision, newestRevision + 1}) {
        result = replaced(result, words + std::to_string(number), words + std::to_string(*options.missingRevision));
    }
    return result;
}

bool isUnspecified(const HSVNRevisionRef& revision) { return revision->isEqual(HSVNRevision::UNSPECIFIED()); }

std::string suggestedRevision(const std::string& text)
{
    constexpr std::array known{"HEAD", "BASE", "COMMITTED", "PREV"};
    std::string meant;
    for (std::string part : split(text, ":")) {
        std::transform(part.begin(), part.end(), part.begin(), [](char letter) {
            return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
        });
        const bool isKnown = std::find(known.begin(), known.end(), part) != known.end();
        meant = meant.empty() && !isKnown ? suggestion(part, known) : meant;
    }
    return meant;
}

void applyRevision(Session& session, Options& options, const std::string& argument)
{
    options.usedRevision = true;
    const std::string text = NativeText::toUTF8(argument);
    const auto parsed = [&](const std::string& revisions) {
        return HSVNArguments::parseRevisions(revisions, session.context());
    };
    auto revisions = decltype(parsed(text)){};
    try {
        revisions = parsed(text);
    } catch (const HSVNInvalidArgumentException&) {
        revisions = parsed(clampedText(options, text));
    }
    if (!revisions) {
        fail(ArgumentParsing, fmt::format("Syntax error in revision argument '{}'{}", text, suggestedRevision(text)));
    }
    options.revisions.push_back({revisions->first, revisions->second});
}

void applyChange(Session& /*session*/, Options& options, const std::string& argument)
{
    const auto changes = split(NativeText::toUTF8(argument), ", \n\r\t\v");
    if (options.oldTarget) {
        fail(ArgumentParsing, "Can't specify -c with --old");
    }
    for (const auto& change : changes) {
        const auto [start, end] = changeRange(change);
        auto first = clampedRevision(options, start);
        auto last = clampedRevision(options, end);
        if (first == last) {
            (start < end ? last : first) += 1; // it is a change all the same
        }
        options.revisions.push_back({HSVNRevision::revisionWithNumber(first), HSVNRevision::revisionWithNumber(last)});
        options.usedChange = true;
    }
}

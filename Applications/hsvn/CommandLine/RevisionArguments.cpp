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
    return number;
}

HSVNRevisionRef revisionOf(const std::string& change, long number)
{
    if (number < 0 || number > std::numeric_limits<HSVNRevisionNumber>::max()) {
        fail(ArgumentParsing, fmt::format("Non-numeric change argument ({}) given to -c", change));
    }
    return HSVNRevision::revisionWithNumber(static_cast<HSVNRevisionNumber>(number));
}

/// One change: N is N-1:N, -N is N:N-1, N-M the range with both ends in it.
RevisionArgument changeRange(const std::string& change)
{
    const bool isNegative = change.starts_with('-');
    const char* const digits = change.c_str() + (isNegative ? 1 : 0);
    const char* rest = digits;
    const long number = takeNumber(rest);
    const bool isRange = rest != digits && *rest == '-';
    if (isRange && isNegative) {
        fail(ArgumentParsing, fmt::format("Negative number in range ({}) not supported with -c", change));
    }
    const long last = isRange ? takeNumber(++rest) : number;
    if (rest == digits || *rest != '\0') {
        fail(ArgumentParsing, fmt::format("Non-numeric change argument ({}) given to -c", change));
    }
    if (number == 0) {
        fail(ArgumentParsing, "There is no change 0");
    }
    if (isNegative || number < 0) {
        return {revisionOf(change, std::abs(number)), revisionOf(change, std::abs(number) - 1)};
    }
    return number <= last ? RevisionArgument{revisionOf(change, number - 1), revisionOf(change, last)}
                          : RevisionArgument{revisionOf(change, number), revisionOf(change, last - 1)};
}

} // namespace

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
    const auto revisions = HSVNArguments::parseRevisions(text, session.context());
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
        options.revisions.push_back(changeRange(change));
        options.usedChange = true;
    }
}

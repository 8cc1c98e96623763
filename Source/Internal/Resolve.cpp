#include "Internal/Resolve.h"

#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RecursionFlag.h"

#include <fmt/format.h>

namespace {

/// The choice as a svn_wc_conflict_choice_t, whose numbers are the same.
int choiceForSubversion(HSVNResolutionChoice choice)
{
    const int number = static_cast<int>(choice);
    if (choice < HSVNResolutionChoice::Postpone || choice > HSVNResolutionChoice::MergedText) {
        throw HSVNInvalidArgumentException(fmt::format("Invalid conflict choice {}", number));
    }
    return number;
}

} // namespace

void HSVNResolve(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNResolveChoices& choices)
{
    const int choice = choiceForSubversion(choices.choice);
    if (const auto resolve = operation.newest(&HSVNConflictFunctions::client_resolve)) {
        const svn_depth_t depth = HSVNDepthForSubversion(choices.depth);
        HSVNForEachText(targets, [&](const char* target) {
            operation.check(resolve(target, depth, choice, operation.ctx(), operation.pool()));
        });
        return;
    }
    operation.refuse(choices.choice != HSVNResolutionChoice::MergedText, "choice");
    const bool recurse = HSVNRecursionFlag(operation, choices.depth);
    HSVNForEachText(targets, [&](const char* target) {
        operation.check(operation->client_resolved(target, recurse, operation.ctx(), operation.pool()));
    });
}

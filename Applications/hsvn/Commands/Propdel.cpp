#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Commands/PropertyChanges.h"

#include <fmt/format.h>

namespace {

void runPropdel(Session& session)
{
    const std::string name = NativeText::toUTF8(takeArgument(session));
    if (session.options.revisionProperty) {
        changeRevisionProperty(session, name, std::nullopt);
        return;
    }
    const auto targets = unpeggedTargets(targetsOrCurrentFolder(session));
    if (session.options.usedRevision) {
        fail(PropertyName, fmt::format("Cannot specify revision for deleting versioned property '{}'", name));
    }
    changeProperty(session, name, std::nullopt, targets);
}

} // namespace

const Subcommand& propdelSubcommand()
{
    static const Subcommand subcommand{"propdel",
                                       {"pdel", "pd"},
                                       "Remove a property from files, dirs, or revisions.",
                                       "1. propdel PROPNAME [PATH...]\n"
                                       "2. propdel PROPNAME --revprop -r REV [TARGET]",
                                       "1. Removes the property from items of a working copy.\n"
                                       "2. Removes a revision's own property, in the repository that TARGET is of;\n"
                                       "   that is not versioned, so the value is lost.",
                                       {OptionId::Quiet, OptionId::Recursive, OptionId::Depth, OptionId::Revision,
                                        OptionId::Revprop, OptionId::Changelist},
                                       {},
                                       runPropdel};
    return subcommand;
}

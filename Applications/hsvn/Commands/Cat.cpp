#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/ErrorOutput.h"
#include "Output/Output.h"

#include <fmt/format.h>

namespace {

void cat(Session& session, const std::string& target)
{
    const auto [path, peg] = peggedTarget(session, target);
    session.client()->contents(HSVNTarget::verbatim(path),
                               HSVNRevisionSpec::revisionWithRevision(session.options.startRevision(), peg),
                               {.expandKeywords = !session.options.ignoreKeywords}, Output::writeBytes);
}

/// What is said of all targets together, the outermost first.
void failForTargets(const TargetFailures& failures)
{
    HSVNException exception = failure(IllegalTarget, "Illegal target for the requested operation");
    for (const std::int32_t code : failures.codes()) {
        const char* const reason = code == NodeNotFound        ? "don't exist"
                                   : code == ClientIsDirectory ? "are directories"
                                                               : "are not versioned";
        exception = wrapped(exception, fmt::format("Could not cat all targets because some targets {}", reason));
    }
    throw exception; // NOLINT(misc-throw-by-value-catch-by-reference): it is a value
}

void runCat(Session& session)
{
    const auto targets = targetsOf(session);
    if (targets.empty()) {
        fail(InsufficientArguments, "Not enough arguments provided");
    }
    session.pageOutput();
    TargetFailures failures;
    for (const auto& target : targets) {
        failures.attempt({UnversionedResource, EntryNotFound, ClientIsDirectory, NodeNotFound},
                         [&] { cat(session, target); });
    }
    if (failures.any()) {
        failForTargets(failures);
    }
}

} // namespace

const Subcommand& catSubcommand()
{
    static const Subcommand subcommand{"cat",
                                       {},
                                       "Output the content of specified files or URLs.",
                                       "cat TARGET[@REV]...",
                                       "REV tells in which revision a target of this name is looked up.",
                                       {OptionId::Revision, OptionId::IgnoreKeywords},
                                       {},
                                       runCat};
    return subcommand;
}

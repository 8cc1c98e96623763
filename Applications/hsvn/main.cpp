#include "CommandLine/Cancellation.h"
#include "CommandLine/CommandLineParser.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/RevisionArguments.h"
#include "CommandLine/Session.h"
#include "CommandLine/Similarity.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/TargetHints.h"
#include "CommandLine/Targets.h"
#include "Commands/CommitRun.h"
#include "Output/ErrorOutput.h"
#include "Output/Output.h"
#include "Output/Pager.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fmt/format.h>
#include <iostream>
#include <unistd.h>

namespace {

/// Without a terminal nobody is asked.
void settleInteraction(Options& options)
{
    if (options.nonInteractive && options.forceInteractive) {
        fail(ArgumentParsing, "--non-interactive and --force-interactive are mutually exclusive");
    }
    options.nonInteractive = options.nonInteractive || (!options.forceInteractive && isatty(STDIN_FILENO) == 0);
}

const Subcommand& chooseSubcommand(const CommandLine& line, const Options& options, bool isBare)
{
    if (options.help || (line.arguments.empty() && options.version)) {
        return helpSubcommand();
    }
    if (line.arguments.empty()) {
        throw UsageError{isBare ? "" : "Subcommand argument required", false};
    }
    const Subcommand* const found = subcommandNamed(line.arguments.front());
    if (!found) {
        const std::string name = NativeText::toUTF8(line.arguments.front());
        throw UsageError{
            fmt::format("Unknown subcommand: '{}'{}", NativeText::fromUTF8(name), suggestion(name, subcommandNames())),
            false};
    }
    return *found;
}

void checkOptions(const Subcommand& subcommand, const CommandLine& line, const Options& options)
{
    // Asking for help or the version does not depend on what else stands there.
    if (&subcommand == &helpSubcommand() && (options.help || line.arguments.empty())) {
        return;
    }
    for (const OptionId id : line.options) {
        if (!subcommand.accepts(id)) {
            throw UsageError{fmt::format("Subcommand '{}' doesn't accept option '{}'", subcommand.name,
                                         optionWithId(id).shortSynopsis()),
                             false, subcommand.name};
        }
    }
}

/// Options that do not go together, looked at before the configuration is read.
void checkCombinations(const Subcommand& subcommand, const Options& options)
{
    if (subcommand.revisionUse != RevisionUse::Ranges && options.revisions.size() > 1) {
        fail(ArgumentParsing, "Multiple revision arguments encountered; can't specify -c twice, or both -c and -r");
    }
    if (options.depth != HSVNDepthUnknown && options.setDepth != HSVNDepthUnknown) {
        fail(ArgumentParsing, "--depth and --set-depth are mutually exclusive");
    }
    if (options.allRevisionProperties && options.noRevisionProperties) {
        fail(ArgumentParsing, "--with-all-revprops and --with-no-revprops are mutually exclusive");
    }
    if (!options.revisionProperties.empty() && options.noRevisionProperties) {
        fail(ArgumentParsing, "--with-revprop and --with-no-revprops are mutually exclusive");
    }
    if (options.file && options.message) {
        fail(ArgumentParsing, "--message (-m) and --file (-F) are mutually exclusive");
    }
    const HSVNClientSettings& client = options.client;
    const bool trusts = client.trustUnknownAuthority || client.trustHostnameMismatch || client.trustExpired ||
                        client.trustNotYetValid || client.trustOtherFailures;
    if (trusts && !options.nonInteractive) {
        fail(ArgumentParsing, "--trust-server-cert-failures requires --non-interactive");
    }
    if (options.passwordFromInput && !options.nonInteractive) {
        fail(ArgumentParsing, "--password-from-stdin requires --non-interactive");
    }
    if (options.diffCommand && options.internalDiff) {
        fail(ArgumentParsing, "--diff-cmd and --internal-diff are mutually exclusive");
    }
    if (options.xml && options.json) {
        fail(ArgumentParsing, "--xml and --json are mutually exclusive");
    }
}

void settleRevisionsAndDepth(const Subcommand& subcommand, Options& options)
{
    if (options.relocate && (options.depth != HSVNDepthUnknown || options.nonRecursive)) {
        fail(MutuallyExclusiveArguments,
             fmt::format("--relocate and {} are mutually exclusive",
                         options.depth != HSVNDepthUnknown ? "--depth" : "--non-recursive (-N)"));
    }
    if (options.revisions.empty()) {
        options.revisions.emplace_back();
    }
    if (subcommand.revisionUse == RevisionUse::One && !isUnspecified(options.endRevision())) {
        fail(RevisionRange, "Revision range is not allowed");
    }
    if (options.nonRecursive) {
        options.depth = subcommand.nonRecursiveDepth;
    }
}

/// Fails where the directory is gone that paths are told from, for a subcommand that may tell some, whether it comes to
/// do so or not.
void requireCurrentDirectory(const Subcommand& subcommand, const Options& options)
{
    const bool tellsAll = &subcommand == &statusSubcommand() && options.verbose;
    if (!options.xml && !options.json && (!options.quiet || tellsAll)) {
        static_cast<void>(absolutePath(""));
    }
}

/// What stands in the way of the subcommand itself, looked at after everything else.
void checkCircumstances(const Subcommand& subcommand, Session& session)
{
    const Options& options = session.options;
    if (options.autoProperties && options.noAutoProperties) {
        fail(MutuallyExclusiveArguments, "--auto-props and --no-auto-props are mutually exclusive");
    }
    requireCurrentDirectory(subcommand, options);
    if (options.nonInteractive && (options.accept == Accept::Edit || options.accept == Accept::Launch)) {
        fail(ArgumentParsing, fmt::format("--accept={} incompatible with --non-interactive",
                                          options.accept == Accept::Edit ? "edit" : "launch"));
    }
    if (&subcommand != &helpSubcommand()) {
        static_cast<void>(
            session.isConfigured("interactive-conflicts", true)); // a word that is none is told of at once
    }
}

constexpr std::int32_t tunnelNotCreated = 170012; // SVN_ERR_RA_CANNOT_CREATE_TUNNEL, which the library has no name for

/// Adds to an error what the user can do about it.
HSVNException advised(const HSVNException& exception, const Subcommand& subcommand, const Options& options)
{
    const std::string& program = programName();
    if (subcommand.isAdministrative) {
        return exception;
    }
    if (exception.status() == InsufficientArguments || exception.status() == ArgumentParsing) {
        return wrapped(exception, fmt::format("Try '{} help {}' for more information", program, subcommand.name));
    }
    if (exception.status() == WorkingCopyUpgradeRequired) {
        return wrapped(exception, fmt::format("Please see the '{} upgrade' command", program));
    }
    if (exception.status() == AuthenticationFailed && options.nonInteractive) {
        const auto refused = wrapped(exception, "Authentication failed and interactive prompting is disabled; see the "
                                                "--force-interactive option");
        return options.file != "-" ? refused
                                   : wrapped(refused, "Reading file from standard input because of -F option; this "
                                                      "can interfere with interactive prompting");
    }
    if (hasCause(exception, DatabaseBusy)) {
        return wrapped(exception, "Another process is blocking the working copy database, or the underlying "
                                  "filesystem does not support file locking; if the working copy is on a network "
                                  "filesystem, make sure file locking has been enabled on the file server");
    }
    if (hasCause(exception, WorkingCopyLocked)) {
        return wrapped(exception,
                       fmt::format("Run '{0} cleanup' to remove locks (type '{0} help cleanup' for details)", program));
    }
    if (hasCause(exception, tunnelNotCreated) && (options.client.username || options.client.password)) {
        return wrapped(exception, "When using svn+ssh:// URLs, keep in mind that the --username and --password "
                                  "options are ignored because authentication is performed by SSH, not Subversion");
    }
    return exception;
}

/// Reads the user's configuration, whose faults come before any other; help gets by without it.
void readConfiguration(Session& session)
{
    if (session.subcommand == &helpSubcommand()) {
        session.warnOfUnknownFiles();
    } else if (!session.subcommand->isAdministrative) {
        session.client();
    }
}

/// The subcommand, its options looked at; a refused one leaves a configuration area all the same, as Subversion does.
///
/// @param isBare  nothing at all follows the program's name
const Subcommand& checkedSubcommand(const CommandLine& line, Session& session, bool isBare)
{
    try {
        const Subcommand& subcommand = chooseSubcommand(line, session.options, isBare);
        session.subcommand = &subcommand;
        checkOptions(subcommand, line, session.options);
        checkCombinations(subcommand, session.options);
        return subcommand;
    } catch (...) {
        session.ensureConfigurationArea();
        throw;
    }
}

void run(int count, char** words)
{
    Session session;
    const CommandLine line = parseCommandLine(count, words, session);
    settleInteraction(session.options);
    const Subcommand& subcommand = checkedSubcommand(line, session, count <= 1);
    rememberCurrentFolder();
    const bool isNamed = !line.arguments.empty() && !session.options.help;
    session.arguments.assign(line.arguments.begin() + (isNamed ? 1 : 0), line.arguments.end());
    readConfiguration(session);
    settleRevisionsAndDepth(subcommand, session.options);
    checkMessageSource(session);
    if (!subcommand.isAdministrative) {
        checkCircumstances(subcommand, session);
    }
    try {
        subcommand.run(session);
        Output::flush();
    } catch (const HSVNException& thrown) {
        const auto exception = withMissingRevision(thrown, session.options);
        const auto hints = targetHints(session, exception);
        throw advised(hints.empty() ? exception : extended(exception, hints), subcommand, session.options);
    }
}

void printUsageError(const UsageError& error)
{
    std::string text = error.message;
    if (!text.empty()) {
        text = (error.isNamed ? programName() + ": " : "") + text + "\n";
    }
    Output::writeErrorBytes(fmt::format("{}Type '{} help{}{}' for usage.\n", text, programName(),
                                        error.helpTopic.empty() ? "" : " ", error.helpTopic));
}

/// Runs the program and prints what goes wrong; the exit code.
int runPrintingErrors(int count, char** words)
{
    try {
        run(count, words);
        // A listener of notifications tells a failure to write, but goes on.
        return Output::hasFailed() && !Pager::isRunning() ? EXIT_FAILURE : EXIT_SUCCESS;
    } catch (const UsageError& error) {
        printUsageError(error);
    } catch (const HSVNException& exception) {
        if (Cancellation::isAsked()) {
            printInterruption(exception);
        } else if (Pager::isRunning() && Output::hasFailed() && hasCause(exception, PipeWrite)) {
            return EXIT_SUCCESS; // the user has seen enough
        } else {
            printError(exception);
        }
    } catch (const HSVNPlatformException& exception) {
        Output::writeError(fmt::format("{}: {}\n", programName(), exception.fullMessage()));
    }
    return EXIT_FAILURE;
}

/// Without a locale that the system has the program goes on in the one that every system has.
void initializeLocale()
{
    try {
        HSVNInitializeCLocale();
    } catch (const HSVNException&) {
        const auto valueOf = [](const char* name) { return std::string_view{getenv(name) ? getenv(name) : ""}; };
        const std::array names{"LC_ALL", "LC_CTYPE", "LANG"};
        const auto* const name = std::find_if(names.begin(), names.end() - 1,
                                              [&](const char* candidate) { return !valueOf(candidate).empty(); });
        Output::writeErrorBytes(fmt::format("{0}: warning: cannot set LC_CTYPE locale\n"
                                            "{0}: warning: environment variable {1} is {2}\n"
                                            "{0}: warning: please check that your locale name is correct\n",
                                            programName(), *name, valueOf(*name)));
    }
}

} // namespace

int main(int count, char** words)
{
    try {
        Output::reserveStandardStreams();
        const std::string_view path = count > 0 ? words[0] : "hsvn";
        setProgramName(std::string{path.substr(path.rfind('/') + 1)});
        initializeLocale();
        Cancellation::catchSignals();
        const int code = runPrintingErrors(count, words);
        Output::end();
        Cancellation::endBySignal();
        return code;
    } catch (const std::exception& exception) {
        std::cerr << programName() << ": " << exception.what() << '\n';
        return EXIT_FAILURE;
    }
}

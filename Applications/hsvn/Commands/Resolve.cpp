#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Interaction/ConflictResolution.h"
#include "Output/ErrorOutput.h"
#include "Output/NotificationListener.h"

namespace {

/// One run of `resolve`.
class ResolveRun
{
  public:
    explicit ResolveRun(Session& session)
        : _session{session}, _printer{session.options.quiet}, _resolution{session, _printer}
    {
        printNotifications(session, _printer);
    }

    void run()
    {
        const Options& options = _session.options;
        const auto targets = localTargets(targetsOrCurrentFolder(_session));
        if (options.accept == Accept::Postpone || options.accept == Accept::Edit || options.accept == Accept::Launch) {
            fail(ArgumentParsing, "invalid 'accept' ARG");
        }
        const bool asks = options.accept == Accept::Unspecified && !options.nonInteractive;
        for (const auto& target : targets) {
            walk(target, options.depthOr(asks ? HSVNDepthInfinity : HSVNDepthEmpty));
        }
        if (_hasFailed) {
            fail(ConflictResolverFailure, "Failure occurred resolving one or more conflicts");
        }
    }

  private:
    /// A conflict that cannot be settled ends the walk through its target, not the other targets'.
    void walk(const std::string& target, HSVNDepth depth)
    {
        const auto choice = choiceForAll(_session.options.accept);
        if (choice && !tellsOfConflicts(_session)) {
            _session.client()->resolve(HSVNTarget::verbatim(target), {.depth = depth, .choice = *choice});
            return;
        }
        if (depth == HSVNDepthEmpty) {
            // Fails for an item that is not there, which a walk only passes over.
            const HSVNConflictedItem item{HSVNTarget::verbatim(target), _session.client()};
            settle(absolutePath(target));
            return;
        }
        try {
            _session.client()->conflicts(HSVNTarget::verbatim(target), {.depth = depth},
                                         [this](const std::string& path) { return settle(path); });
        } catch (const HSVNException& exception) {
            if (exception.status() != WorkingCopyPathNotFound) {
                warn(exception);
            }
        }
    }

    /// @return false when it failed, which is told
    bool settle(const std::string& path)
    {
        try {
            if (!_resolution.hasQuit()) {
                _resolution.resolve(relativeToCurrentFolder(path));
            }
            return true;
        } catch (const HSVNException& exception) {
            warn(exception);
            return false;
        }
    }

    void warn(const HSVNException& exception)
    {
        if (exception.status() == Cancelled) {
            exception.raise();
        }
        printWarningOfRoot(exception);
        _hasFailed = true;
    }

    Session& _session;
    NotificationPrinter _printer;
    ConflictResolution _resolution;
    bool _hasFailed = false;
};

void runResolve(Session& session) { ResolveRun{session}.run(); }

} // namespace

const Subcommand& resolveSubcommand()
{
    static const Subcommand subcommand{
        "resolve",
        {},
        "Resolve conflicts on working copy files or directories.",
        "resolve [PATH...]",
        "Without --accept, asks what to do about each conflict at or below PATH.\n"
        "With --accept, settles the conflict of each PATH in the manner named, and\n"
        "those below it as far as --depth says.\n"
        "\n"
        "There are conflicts of a file's text, of properties, and of the tree:\n"
        "items that were added, deleted or moved here, there, or at both places.\n"
        "'status' and 'info' show which items are in conflict; an item in conflict\n"
        "cannot be committed.  'mine-...' and 'theirs-...' drop the changes of the\n"
        "other side; 'working' takes the item as it is now.  Tree conflicts can be\n"
        "settled by 'working' or, when asking, in the ways that are offered; 'log -v'\n"
        "shows what happened to the items in the repository.",
        {OptionId::Targets, OptionId::Recursive, OptionId::Depth, OptionId::Quiet, OptionId::Accept},
        {{OptionId::Accept, "specify automatic conflict resolution source\n"
                            "('base', 'working', 'mine-conflict',\n"
                            "'theirs-conflict', 'mine-full', 'theirs-full')"}},
        runResolve};
    return subcommand;
}

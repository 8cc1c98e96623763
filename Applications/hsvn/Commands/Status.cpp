#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/ErrorOutput.h"
#include "Output/JSON.h"
#include "Output/OperationListener.h"
#include "Output/Output.h"
#include "Output/StatusPrinter.h"
#include "Output/XML.h"

#include <fmt/format.h>
#include <map>

namespace {

/// Hears between the items that a scan of an external begins and what revision the repository was asked for.
struct StatusListener : OperationListener
{
    static void notify(HSVNContext& context, const HSVNNotificationRef& notification)
    {
        OperationListener::notify(context, notification);
        if (notification->action() == HSVNNotifyActionStatusCompleted &&
            notification->revision() != HSVNInvalidRevision) {
            Output::write(fmt::format("Status against revision: {:6}\n", notification->revision()));
        } else if (notification->action() == HSVNNotifyActionStatusExternal) {
            Output::write(fmt::format("\nPerforming status on external item at '{}':\n",
                                      relativeToCurrentFolder(notification->path().value_or(""))));
        }
    }
};

/// One item kept until its changelist is printed, with the target that it belongs to.
struct KeptItem
{
    std::string target;
    HSVNNodeRef node;
};

/// One run of `status`.
class StatusRun
{
  public:
    explicit StatusRun(Session& session) : _session{session}, _printer{session} {}

    void run()
    {
        const Options& options = _session.options;
        auto targets = targetsOrCurrentFolder(_session);
        requireLocal(targets);
        checkOptions();
        const bool isDocument = options.xml && !options.incremental;
        if (isDocument) {
            XML::writeHeader("status");
        }
        targets = unpeggedTargets(targets);
        if (!options.xml && !options.json && (!options.quiet || options.verbose)) {
            _session.setDelegate(std::make_shared<HSVNClientDelegateFor<StatusListener>>());
        }
        TargetFailures failures{options.quiet};
        for (const auto& target : targets) {
            failures.attempt({WorkingCopyNotDirectory, WorkingCopyPathNotFound}, [&] { scan(target); });
            if (options.xml) {
                Output::writeBytes(XML{}.close("target").text());
            }
        }
        printChangelists();
        if (options.json) {
            _records.finish();
        } else if (!options.xml && !options.quiet) {
            _printer.printConflictSummary();
        }
        if (isDocument) {
            XML::writeFooter("status");
        }
    }

  private:
    void checkOptions() const
    {
        const Options& options = _session.options;
        if (options.usedRevision && !options.showUpdates) {
            fail(ArgumentParsing, "--revision (-r) option valid only with --show-updates (-u) option");
        }
        if (options.incremental && !options.xml) {
            fail(ArgumentParsing, "'incremental' option only valid in XML mode");
        }
    }

    void scan(const std::string& target)
    {
        const Options& options = _session.options;
        const HSVNStatusChoices choices{.depth = options.depthOr(HSVNDepthInfinity),
                                        .getAll = options.verbose,
                                        .contactRepository = options.showUpdates,
                                        .revision = options.usedRevision ? options.startRevision() : nullptr,
                                        .matchIgnorePatterns = !options.noIgnore,
                                        .processExternals = !options.ignoreExternals,
                                        .changelists = options.changelists};
        _printer.setTarget(target);
        _target = target;
        if (options.xml) {
            Output::writeBytes(XML{}.open("target", {{"path", localStyle(target)}}).text());
        }
        const auto against = _session.client()->status(HSVNTarget::verbatim(target), choices,
                                                       [this](const HSVNNodeRef& node) { receive(node); });
        if (options.xml && against != HSVNInvalidRevision) {
            XML{}.empty("against", {{"revision", std::to_string(against)}}).write();
        }
    }

    /// Whether the item only marks the place of an external, of which -q wants no word outside of documents.
    bool isPlaceholder(const HSVNNode& node) const
    {
        const HSVNStatus& status = *node.status();
        const Options& options = _session.options;
        if (!options.quiet || options.verbose || options.xml || status.conflicted() ||
            status.repositoryNodeStatus() != HSVNStatusKindNone)
        {
            return false;
        }
        const auto isNormal = [](HSVNStatusKind kind) {
            return kind == HSVNStatusKindNormal || kind == HSVNStatusKindNone;
        };
        const bool isUnchangedFile = status.fileExternal() && isNormal(status.nodeStatus()) &&
                                     isNormal(status.propertyStatus()) && !status.changelist() && !node.lock() &&
                                     !status.locked();
        return status.nodeStatus() == HSVNStatusKindExternal || isUnchangedFile;
    }

    void receive(const HSVNNodeRef& node)
    {
        if (isPlaceholder(*node)) {
            return;
        }
        const auto changelist = node->status()->changelist();
        if (changelist && !_session.options.json) {
            _changelists[*changelist].push_back({_target, node});
            return;
        }
        print(*node);
    }

    void print(const HSVNNode& node)
    {
        const HSVNStatus& status = *node.status();
        const bool isNothing =
            status.nodeStatus() == HSVNStatusKindNone && status.repositoryNodeStatus() == HSVNStatusKindNone;
        const bool isUnwanted = _session.options.quiet && !status.versioned() && !status.conflicted() &&
                                status.nodeStatus() != HSVNStatusKindExternal;
        if (isNothing || (isUnwanted && !_session.options.xml)) {
            return;
        }
        if (_session.options.xml) {
            _printer.printXML(node);
        } else if (_session.options.json) {
            _records.add(_printer.record(node));
        } else {
            _printer.printLine(node);
        }
    }

    void printChangelists()
    {
        for (const auto& [name, items] : _changelists) {
            if (_session.options.xml) {
                Output::writeBytes(XML{}.open("changelist", {{"name", name}}).text());
            } else {
                Output::write(fmt::format("\n--- Changelist '{}':\n", name));
            }
            for (const auto& item : items) {
                _printer.setTarget(item.target);
                print(*item.node);
            }
            if (_session.options.xml) {
                Output::writeBytes(XML{}.close("changelist").text());
            }
        }
    }

    Session& _session;
    StatusPrinter _printer;
    std::string _target;
    std::map<std::string, std::vector<KeptItem>> _changelists;
    JSONArray _records;
};

void runStatus(Session& session) { StatusRun{session}.run(); }

} // namespace

const Subcommand& statusSubcommand()
{
    static const Subcommand subcommand{"status",
                                       {"stat", "st"},
                                       "Print the status of working copy files and directories.",
                                       "status [PATH...]",
                                       "Shows what is changed locally, without asking the repository.  -u asks it\n"
                                       "which items are out of date, -v shows the revisions of every item, and -q\n"
                                       "leaves out what is not under version control.\n"
                                       "\n"
                                       "The first seven columns are one character wide each: the item (A added,\n"
                                       "C conflicted, D deleted, I ignored, M modified, R replaced, X external,\n"
                                       "? unversioned, ! missing, ~ obstructed), its properties (C, M), L when the\n"
                                       "working copy is locked, + for an addition with history, S or X for switched\n"
                                       "items and file externals, the lock (K here; with -u also O elsewhere,\n"
                                       "T stolen, B broken), and C for a tree conflict.  With -u the ninth column\n"
                                       "is * for items that are out of date.",
                                       {OptionId::ShowUpdates, OptionId::Verbose, OptionId::NonRecursive,
                                        OptionId::Depth, OptionId::Revision, OptionId::Quiet, OptionId::NoIgnore,
                                        OptionId::Incremental, OptionId::XML, OptionId::JSON, OptionId::IgnoreExternals,
                                        OptionId::Changelist},
                                       {{OptionId::Quiet, "don't print unversioned items"},
                                        {OptionId::NonRecursive, "obsolete; same as --depth=immediates"}},
                                       runStatus,
                                       RevisionUse::One,
                                       HSVNDepthImmediates};
    return subcommand;
}

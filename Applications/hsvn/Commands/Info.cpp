#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/ErrorOutput.h"
#include "Output/InfoFields.h"
#include "Output/InfoPrinter.h"
#include "Output/JSON.h"
#include "Output/OperationListener.h"
#include "Output/Output.h"
#include "Output/Viewspec.h"
#include "Output/XML.h"

#include <fmt/format.h>

namespace {

/// Hears between the items that those of an external begin.
struct InfoListener : OperationListener
{
    static void notify(HSVNContext& context, const HSVNNotificationRef& notification)
    {
        OperationListener::notify(context, notification);
        constexpr int infoExternal = 78; // svn_wc_notify_info_external, which the library has no name for
        if (notification->action() == infoExternal) {
            Output::write(fmt::format("\nPerforming info on external item at '{}':\n",
                                      relativeToCurrentFolder(notification->path().value_or(""))));
        }
    }
};

/// One run of `info`.
class InfoRun
{
  public:
    explicit InfoRun(Session& session) : _session{session} {}

    void run()
    {
        const Options& options = _session.options;
        const auto targets = targetsOrCurrentFolder(_session);
        checkOptions();
        if (options.showItem) {
            _showsPaths = targets.size() > 1 || options.depthOr(HSVNDepthEmpty) > HSVNDepthEmpty;
            if (_showsPaths && options.noNewline) {
                fail(ArgumentParsing,
                     "--no-newline is only available for single-target, non-recursive info operations");
            }
            _item = infoItemNamed(*options.showItem);
        }
        if (options.depth != HSVNDepthUnknown) {
            _session.pageOutput();
        }
        const bool isDocument = options.xml && !options.incremental;
        if (isDocument) {
            XML::writeHeader("info");
        }
        if (!options.xml && !options.json) {
            _session.setDelegate(std::make_shared<HSVNClientDelegateFor<InfoListener>>());
        }
        TargetFailures failures;
        for (const auto& target : targets) {
            if (!failures.attempt({WorkingCopyPathNotFound, IllegalURL}, [&] { read(target); })) {
                Output::writeError("\n");
            }
        }
        finish(isDocument);
        if (failures.any()) {
            fail(IllegalTarget, "Could not display info for all targets because some targets don't exist");
        }
    }

  private:
    void checkOptions() const
    {
        const Options& options = _session.options;
        if (options.xml && options.showItem) {
            fail(ArgumentParsing, "--show-item is not valid in --xml mode");
        }
        if (options.incremental && !options.xml) {
            fail(ArgumentParsing, "--incremental is only valid in --xml mode");
        }
        if (options.xml && options.noNewline) {
            fail(ArgumentParsing, "--no-newline is not valid in --xml mode");
        }
        if (options.xml && options.humanReadable) {
            fail(ArgumentParsing, "--human-readable is not valid in --xml mode");
        }
        if (options.noNewline && !options.showItem) {
            fail(ArgumentParsing, "--no-newline' is only valid with --show-item");
        }
    }

    void read(const std::string& target)
    {
        const Options& options = _session.options;
        auto [truePath, peg] = peggedTarget(_session, target);
        _isPath = !isURL(truePath);
        if (isURL(truePath) && peg->isEqual(HSVNRevision::UNSPECIFIED())) {
            peg = HSVNRevision::HEAD();
        }
        _session.client()->info(HSVNTarget::verbatim(truePath),
                                HSVNRevisionSpec::revisionWithRevision(options.startRevision(), peg),
                                {.depth = options.depthOr(HSVNDepthEmpty),
                                 .includeExternals = options.includeExternals,
                                 .changelists = options.changelists},
                                [this](const HSVNItemInfo& info) { print(info); });
    }

    void print(const HSVNItemInfo& info)
    {
        if (_session.options.json) {
            _records.add(infoRecord(info));
        } else if (_session.options.xml) {
            printInfoXML(info);
        } else if (_item) {
            const auto shown = _isPath ? shownTarget(info) : info.url.value_or("");
            printInfoItem(info, *_item, _session.options, _showsPaths ? std::optional{shown} : std::nullopt);
        } else {
            printInfo(info, _session.options);
        }
    }

    void finish(bool isDocument)
    {
        const Options& options = _session.options;
        if (isDocument) {
            XML::writeFooter("info");
        }
        if (options.json) {
            _records.finish();
        }
    }

    Session& _session;
    std::optional<InfoItem> _item;
    bool _showsPaths = false;
    bool _isPath = false; // whether the target is one, and not a URL
    JSONArray _records;
};

void runInfo(Session& session)
{
    if (session.options.viewspec != Viewspec::Unspecified) {
        printViewspec(session, targetsOf(session));
    } else {
        InfoRun{session}.run();
    }
}

} // namespace

const Subcommand& infoSubcommand()
{
    static const Subcommand subcommand{"info",
                                       {},
                                       "Display information about a local or remote item.",
                                       "info [TARGET[@REV]...]",
                                       "Tells what is known of each TARGET, the current folder by default.\n"
                                       "A path is described as it stands in the working copy, a URL as it is in\n"
                                       "HEAD, unless REV names another revision to look it up in.\n"
                                       "\n"
                                       "With --show-item, one item of this information and nothing else.\n"
                                       "\n"
                                       "With --x-viewspec, how the working copy TARGET is put together: its\n"
                                       "revisions, depths and switched items.",
                                       {OptionId::Revision, OptionId::Recursive, OptionId::HumanReadable,
                                        OptionId::Depth, OptionId::Targets, OptionId::Incremental, OptionId::XML,
                                        OptionId::JSON, OptionId::Changelist, OptionId::IncludeExternals,
                                        OptionId::ShowItem, OptionId::NoNewline, OptionId::Viewspec},
                                       {{OptionId::HumanReadable, "show file sizes with base-2 unit suffixes\n"
                                                                  "(Byte, Kilobyte, Megabyte, Gigabyte, Terabyte\n"
                                                                  "and Petabyte), limiting the number of digits\n"
                                                                  "to three or less"}},
                                       runInfo};
    return subcommand;
}

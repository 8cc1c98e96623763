#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/PropertyNames.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "CommandLine/TextFiles.h"
#include "Commands/CommitRun.h"
#include "Commands/PropertyWarnings.h"
#include "Interaction/Editor.h"
#include "Output/Output.h"
#include "Output/PropertyPrinter.h"

#include <fmt/format.h>
#include <optional>

namespace {

/// A value as the user left it in the editor; nil when the file was left as it was.
std::optional<std::string> edited(Session& session, const std::string& folder, const std::string& name,
                                  const std::string& value)
{
    /// The file goes whatever happens.
    struct ValueEditor : Editor
    {
        using Editor::Editor;
        ~ValueEditor() { removeFile(); }
    };
    ValueEditor editor{session, folder, "svn-prop"};
    return isOwnProperty(name) ? editor.edit(value) : editor.editAsBytes(value);
}

/// One run of `propedit`.
class PropeditRun
{
  public:
    explicit PropeditRun(Session& session) : _session{session} {}

    void run()
    {
        const Options& options = _session.options;
        _name = NativeText::toUTF8(takeArgument(_session));
        requirePropertyName(_name);
        if (!options.force) {
            requireKnownPropertyName(_name, options.revisionProperty, "edit");
        }
        if (options.encoding && !isOwnProperty(_name)) {
            fail(UnsupportedFeature, "--encoding option applies only to textual Subversion-controlled properties");
        }
        if (options.revisionProperty) {
            editOfRevision();
        } else {
            editOfItems();
        }
    }

  private:
    void editOfRevision()
    {
        const auto target = revisionPropertyTarget(_session, targetsOrCurrentFolder(_session));
        const auto url = HSVNTarget::verbatim(target.url);
        HSVNRevisionNumber number = HSVNInvalidRevision;
        const auto former = _session.client()->revisionProperty(url, _name, target.revision, &number);
        const std::string folder = temporaryFolder();
        const auto value = edited(_session, folder, _name, former.value_or(""));
        if (!value) {
            Output::write(fmt::format("No changes to property '{}' on revision {}\n", _name, number));
            return;
        }
        number = _session.client()->setRevisionProperty(url, _name, value, target.revision,
                                                        {.force = _session.options.force, .formerValue = former});
        Output::write(fmt::format("Set new value for property '{}' on revision {}\n", _name, number));
    }

    void editOfItems()
    {
        const auto targets = targetsOf(_session);
        if (_session.options.usedRevision) {
            fail(ArgumentParsing, fmt::format("Cannot specify revision for editing versioned property '{}'", _name));
        }
        if (targets.empty()) {
            fail(InsufficientArguments, "Explicit target argument required");
        }
        for (const auto& target : unpeggedTargets(targets)) {
            isURL(target) ? editOfURL(target) : editOfPath(target);
        }
    }

    /// @param revision  in which the target is looked up
    std::string valueOf(const std::string& target, const HSVNRevisionSpecRef& revision)
    {
        const auto found = _session.client()->property(HSVNTarget::verbatim(target), _name, revision);
        return found.values.empty() ? "" : found.values.front().second;
    }

    /// Nil, once it is said, when there is nothing to set.
    std::optional<std::string> newValue(const std::string& target, const std::string& folder, const std::string& former)
    {
        const auto value = edited(_session, folder, _name, former);
        if (!value || *value == former) {
            Output::write(fmt::format("No changes to property '{}' on '{}'\n", _name, target));
            return std::nullopt;
        }
        warnOfOff(_name, *value);
        return value;
    }

    void tell(const std::string& target) const
    {
        Output::write(fmt::format("Set new value for property '{}' on '{}'\n", _name, target));
    }

    void editOfURL(const std::string& url)
    {
        const auto base = _session.client()->latestRevision(HSVNTarget::verbatim(url));
        const auto former = valueOf(url, HSVNRevisionSpec::UNSPECIFIED());
        const auto value = newValue(url, "", former);
        if (!value) {
            return;
        }
        CommitRun& commit = commitRun();
        const auto print = commit.receiver();
        commit.run([&](HSVNClient& client) {
            client.setProperty(HSVNTarget::verbatim(url), base, _name, value,
                               {.force = _session.options.force, .revisionProperties = commit.revisionProperties()},
                               [&](const HSVNCommitResult& result) {
                                   tell(url);
                                   return print(result);
                               });
        });
    }

    void editOfPath(const std::string& path)
    {
        const auto former = valueOf(path, HSVNRevisionSpec::UNSPECIFIED());
        refuseLogMessage(_session.options);
        const auto value = newValue(localStyle(path), folderOf(path), former);
        if (!value) {
            return;
        }
        if (!former.empty()) {
            warnOfBinaryType(_session, _name, former, {path});
        }
        _session.client()->setProperty(HSVNTargets::verbatim({path}), _name, value, {.force = _session.options.force});
        tell(localStyle(path));
    }

    /// Where the file that is edited is made: the item itself where it is a folder.
    std::string folderOf(const std::string& path)
    {
        const auto item = _session.client()->info(HSVNTarget::verbatim(path)).front();
        if (item.workingCopy && item.workingCopy->schedule == HSVNScheduleDelete) {
            fail(EntryNotFound, fmt::format("'{}' does not appear to be a working copy path", path));
        }
        return item.kind == HSVNNodeKindFile ? parentFolder(path) : path;
    }

    /// Made for the first URL. Its notifications are not told.
    CommitRun& commitRun()
    {
        if (!_commit) {
            _commit.emplace(_session, true);
            _commit->printer().beQuiet();
        }
        return *_commit;
    }

    Session& _session;
    std::string _name;
    std::optional<CommitRun> _commit; // the client's delegate from then on
};

void runPropedit(Session& session) { PropeditRun{session}.run(); }

} // namespace

const Subcommand& propeditSubcommand()
{
    static const Subcommand subcommand{"propedit",
                                       {"pedit", "pe"},
                                       "Edit a property in an editor.",
                                       "1. propedit PROPNAME TARGET...\n"
                                       "2. propedit PROPNAME --revprop -r REV [TARGET]",
                                       "1. Has the property of each TARGET edited: of a path it is set in the\n"
                                       "   working copy, of a URL by a commit.\n"
                                       "2. Has a revision's own property edited, at once, in the repository that\n"
                                       "   TARGET is of.\n"
                                       "\n"
                                       "Nothing is set where the editor leaves the value as it was.  See 'propset'\n"
                                       "for the names that mean something to Subversion.",
                                       {OptionId::Revision, OptionId::Revprop, OptionId::Message, OptionId::File,
                                        OptionId::ForceLog, OptionId::EditorCmd, OptionId::Encoding,
                                        OptionId::WithRevprop, OptionId::Force},
                                       {},
                                       runPropedit};
    return subcommand;
}

#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/RevisionArguments.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "CommandLine/TextFiles.h"
#include "Interaction/ConflictResolution.h"
#include "Output/NotificationListener.h"
#include "Output/Output.h"

#include <filesystem>
#include <fmt/format.h>

namespace {

/// Whether it is a file to Subversion, as links are.
bool isFileToSubversion(const std::string& path)
{
    std::error_code error;
    const auto type = std::filesystem::symlink_status(NativeText::fromUTF8(path), error).type();
    if (type == std::filesystem::file_type::none) {
        fail(error.value(), fmt::format("Can't check path '{}': {}", path, error.message()));
    }
    return type == std::filesystem::file_type::regular || type == std::filesystem::file_type::symlink;
}

/// Whether a revision is one that the repository knows without a working copy.
bool isOfRepository(const HSVNRevisionRef& revision)
{
    return revision->number() != HSVNInvalidRevision || revision->date() || revision->isEqual(HSVNRevision::HEAD());
}

/// One run of `merge`.
class MergeRun
{
  public:
    explicit MergeRun(Session& session) : _session{session}, _printer{session.options.quiet} {}

    void run()
    {
        if (_session.options.reintegrate && hasRanges()) {
            fail(ArgumentParsing, "-r and -c can't be used with --reintegrate");
        }
        readTargets();
        checkReintegration();
        printNotifications(_session, _printer);
        do {
            mergeOnce();
        } while (mayGoOn());
        if (!_session.options.quiet) {
            _printer.printConflictSummary();
        }
        if (_failure) {
            _failure->raise();
        }
    }

  private:
    void readTargets()
    {
        _targets = targetsOf(_session);
        if (_targets.empty()) {
            fail(InsufficientArguments, "Merge source required");
        }
        const auto first = peggedTarget(_session, _targets.front());
        const auto second = _targets.size() > 1 ? peggedTarget(_session, _targets[1]) : first;
        const bool isSourceAndTarget = _targets.size() == 2 && isURL(first.target) && !isURL(second.target);
        _hasTwoSources = !hasRanges() && _targets.size() > 1 && !isSourceAndTarget;
        _source = {first.target, first.pegRevision};
        _second = {second.target, second.pegRevision};
        if (_hasTwoSources) {
            takeTwoSources();
        } else {
            takeOneSource();
        }
        if (_target.empty()) {
            guessTarget();
        }
    }

    void takeOneSource()
    {
        if (hasRanges()) {
            takeRanges();
        }
        if (_targets.size() > 2) {
            fail(ArgumentParsing, "Too many arguments given");
        }
        if (isUnspecified(_source.second)) {
            _source.second = isURL(_source.first) ? HSVNRevision::HEAD() : HSVNRevision::WORKING();
        }
        if (_targets.size() == 2) {
            if (isURL(_second.first)) {
                fail(ArgumentParsing, "Cannot specify a revision range with two URLs");
            }
            _target = _targets[1];
        }
    }

    void takeRanges()
    {
        if (isUnspecified(_session.options.endRevision())) {
            fail(InsufficientArguments, "Second revision required");
        }
        auto& ranges = _ranges.emplace();
        for (const auto& [start, end] : _session.options.revisions) {
            ranges.emplace_back(start, end);
        }
    }

    void takeTwoSources()
    {
        if (_targets.size() > 3) {
            fail(ArgumentParsing, "Too many arguments given");
        }
        for (const auto* const side : {&_source, &_second}) {
            if (!isURL(side->first) && !isOfRepository(side->second)) {
                fail(BadRevision, fmt::format("Invalid merge source '{}'; a working copy path can only be used with a "
                                              "repository revision (a number, a date, or head)",
                                              localStyle(side->first)));
            }
        }
        for (auto* const side : {&_source, &_second}) {
            if (isUnspecified(side->second)) {
                side->second = HSVNRevision::HEAD();
            }
        }
        _target = _targets.size() == 3 ? _targets.back() : "";
    }

    /// Without a target, a file that bears the sources' name is meant rather than the current folder.
    void guessTarget()
    {
        if (!isURL(_second.first)) {
            _target = _source.first == _second.first && isFileToSubversion(_second.first) ? _second.first : "";
            return;
        }
        const std::string name = isURL(_source.first) ? nameOfURL(_source.first) : baseName(_source.first);
        const auto here = _session.client()->URLOfTarget(HSVNTarget::verbatim(""));
        const bool isHere = here && nameOfURL(*here) == name;
        _target = name == nameOfURL(_second.first) && !isHere && isFileToSubversion(name) ? name : "";
    }

    void checkReintegration() const
    {
        const Options& options = _session.options;
        if (!options.reintegrate) {
            return;
        }
        if (options.ignoreAncestry || options.recordOnly) {
            fail(MutuallyExclusiveArguments,
                 fmt::format("--reintegrate cannot be used with {}",
                             options.ignoreAncestry ? "--ignore-ancestry" : "--record-only"));
        }
        if (options.depth != HSVNDepthUnknown || options.force) {
            fail(MutuallyExclusiveArguments, fmt::format("{} cannot be used with --reintegrate",
                                                         options.depth == HSVNDepthUnknown ? "--force" : "--depth"));
        }
        if (_hasTwoSources) {
            fail(ArgumentParsing, "--reintegrate can only be used with a single merge source");
        }
        if (options.allowMixedRevisions) {
            fail(MutuallyExclusiveArguments, "--allow-mixed-revisions cannot be used with --reintegrate");
        }
    }

    /// Whether -r or -c names revisions; a list of -c may be empty.
    bool hasRanges() const { return !isUnspecified(_session.options.startRevision()); }

    HSVNMergeChoices choices()
    {
        const Options& options = _session.options;
        HSVNMergeChoices choices{.depth = options.depth,
                                 .ignoreMergeInfo = options.ignoreAncestry,
                                 .diffIgnoreAncestry = options.ignoreAncestry,
                                 .forceDelete = options.force,
                                 .recordOnly = options.recordOnly,
                                 .dryRun = options.dryRun,
                                 .allowMixedRevisions = options.allowMixedRevisions,
                                 .arguments = split(options.extensions.value_or(""), " \t\n\r")};
        if (const auto choice = choiceForAll(options.accept)) {
            choices.chooser = [this, choice](const std::string& path, const HSVNConflictRecord& conflict) {
                // What cannot be settled so ends the merge; it counts as settled all the same.
                _printer.conflicts().resolve(relativeToCurrentFolder(path), conflict.kind);
                return *choice;
            };
        }
        return choices;
    }

    void merge()
    {
        const auto& client = _session.client();
        const auto target = HSVNTarget::verbatim(_target);
        const HSVNTargetInRevision source{HSVNTarget::verbatim(_source.first),
                                          HSVNRevisionSpec::pegRevisionWithRevision(_source.second)};
        if (_session.options.reintegrate) {
            client->reintegrate(source, target, choices());
            return;
        }
        if (_hasTwoSources && isURL(_source.first) != isURL(_second.first)) {
            fail(ArgumentParsing, "Merge sources must both be either paths or URLs");
        }
        if (_hasTwoSources && isURL(_target)) {
            fail(ArgumentParsing, fmt::format("Merge target '{}' must be a local path but looks like a URL", _target));
        }
        if (_session.options.verbose) {
            Output::write("--- Merging\n");
            Output::flush();
        }
        if (_hasTwoSources) {
            client->mergeDifference({HSVNTarget::verbatim(_source.first), _source.second},
                                    {HSVNTarget::verbatim(_second.first), _second.second}, target, choices());
        } else if (_ranges) {
            client->merge(source, *_ranges, target, choices());
        } else {
            client->merge(source, target, choices());
        }
    }

    /// Merges what is not merged yet and settles the conflicts.
    void mergeOnce()
    {
        _failure.reset();
        try {
            merge();
        } catch (const HSVNException& exception) {
            if (exception.status() == InvalidMergeInfo) {
                throw wrapped(exception,
                              fmt::format("Fix invalid mergeinfo in target with '{} propset'", programName()));
            }
            _failure = std::make_shared<HSVNException>(exception);
        }
        if (!_session.options.dryRun) {
            settleConflicts(_session, _printer);
        }
    }

    /// Whether the merge stopped for conflicts, all of which are settled by now.
    bool mayGoOn() const
    {
        return _failure && hasCause(*_failure, FoundConflict) && !_printer.conflicts().hasConflicts() &&
               _printer.conflicts().hasResolved();
    }

    Session& _session;
    NotificationPrinter _printer;
    std::vector<std::string> _targets;
    std::pair<std::string, HSVNRevisionRef> _source;
    std::pair<std::string, HSVNRevisionRef> _second;
    std::optional<std::vector<std::pair<HSVNRevisionRef, HSVNRevisionRef>>> _ranges;
    std::string _target;
    bool _hasTwoSources = false;
    std::shared_ptr<HSVNException> _failure;
};

void runMerge(Session& session) { MergeRun{session}.run(); }

} // namespace

const Subcommand& mergeSubcommand()
{
    static const Subcommand subcommand{"merge",
                                       {},
                                       "Merge changes into a working copy.",
                                       "1. merge SOURCE[@REV] [TARGET_WCPATH]\n"
                                       "   (the 'complete' merge)\n"
                                       "2. merge [-c M[,N...] | -r N:M ...] SOURCE[@REV] [TARGET_WCPATH]\n"
                                       "   (the 'cherry-pick' merge)\n"
                                       "3. merge SOURCE1[@REV1] SOURCE2[@REV2] [TARGET_WCPATH]\n"
                                       "   (the '2-URL' merge)",
                                       "1. Merges all changes of the branch SOURCE that TARGET_WCPATH does not\n"
                                       "   have yet, in either direction between a branch and where it was made.\n"
                                       "\n"
                                       "2. Merges single changes, or ranges of them, of SOURCE.  A range from a\n"
                                       "   younger to an older revision undoes what was changed.\n"
                                       "\n"
                                       "3. Applies the difference of two trees.\n"
                                       "\n"
                                       "REV tells in which revision a source is looked up, HEAD where it is left\n"
                                       "out.  A working copy's item stands for its URL.  TARGET_WCPATH is '.' by\n"
                                       "default, or a file there that bears the sources' name.\n"
                                       "\n"
                                       "What was merged is written down in the property svn:mergeinfo and is not\n"
                                       "merged again; --ignore-ancestry does without.  The target must be of one\n"
                                       "revision and should not be changed locally; 'update' and 'commit' it\n"
                                       "before.\n"
                                       "\n"
                                       "The letters of the lines are explained in the help of 'update'.",
                                       {OptionId::Revision, OptionId::Change, OptionId::NonRecursive, OptionId::Depth,
                                        OptionId::Quiet, OptionId::Force, OptionId::DryRun, OptionId::Diff3Cmd,
                                        OptionId::RecordOnly, OptionId::Extensions, OptionId::IgnoreAncestry,
                                        OptionId::Accept, OptionId::Reintegrate, OptionId::AllowMixedRevisions,
                                        OptionId::Verbose},
                                       {{OptionId::NonRecursive, "obsolete; same as --depth=files"},
                                        {OptionId::Force, "force deletions even if deleted contents don't match"}},
                                       runMerge,
                                       RevisionUse::Ranges};
    return subcommand;
}

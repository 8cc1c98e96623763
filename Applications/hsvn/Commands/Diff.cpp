#include "CommandLine/Errors.h"
#include "CommandLine/RevisionArguments.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Commands/DiffProgram.h"
#include "Output/DiffRecord.h"
#include "Output/Display.h"
#include "Output/JSON.h"
#include "Output/Output.h"
#include "Output/Progress.h"
#include "Output/WordColours.h"
#include "Output/Words.h"
#include "Output/XML.h"

#include <array>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace {

/// What of the two sides has no revision of its own.
HSVNRevisionRef newestOf(const std::string& target, const HSVNRevisionRef& ofWorkingCopy)
{
    return isURL(target) ? HSVNRevision::HEAD() : ofWorkingCopy;
}

bool isLocalRevision(const HSVNRevisionRef& revision)
{
    return revision->isEqual(HSVNRevision::BASE()) || revision->isEqual(HSVNRevision::WORKING());
}

/// A path below one of the sides.
std::string targetBelow(const std::string& side, const std::string& path)
{
    if (!isURL(side) || path.empty()) {
        return path.starts_with('/') ? path : joined(side, path);
    }
    return HSVNURL::URLWithString(side)->pathByNormalizingAndAddingComponent(path)->string();
}

/// One run of `diff`.
class DiffRun
{
  public:
    explicit DiffRun(Session& session)
        : _session{session}, _start{session.options.startRevision()}, _end{session.options.endRevision()}
    {
    }

    void run()
    {
        const Options& options = _session.options;
        checkDocument();
        if (isLeftToProgram()) {
            Progress::setWanted(false);
        } else {
            _session.pageOutput();
        }
        if (options.xml) {
            XML::writeHeader("diff");
            Output::writeBytes(XML{}.open("paths").text());
        }
        checkSummary();
        readTargets();
        for (const auto& target : _targets) {
            _isPegged ? compareRevisions(target) : compareItems(target);
        }
        if (options.json) {
            _records.finish();
        }
        if (options.xml) {
            Output::writeBytes(XML{}.close("paths").text());
            XML::writeFooter("diff");
        }
    }

  private:
    /// Whether a program of the user's own compares, which may want the terminal for itself.
    bool isLeftToProgram() const
    {
        const Options& options = _session.options;
        const bool isConfigured =
            !options.internalDiff && _session.client()->optionForName("diff-cmd", HSVNConfigCategoryConfig,
                                                                      HSVNConfigSectionHelpers, std::nullopt);
        return !options.summarize && !options.json && (options.diffCommand || isConfigured);
    }

    void checkDocument() const
    {
        const Options& options = _session.options;
        if (options.xml && !options.summarize) {
            fail(ArgumentParsing, "'--xml' option only valid with '--summarize' option");
        }
    }

    void checkSummary() const
    {
        const Options& options = _session.options;
        const std::array onlyInText{std::pair{options.gitFormat, "git"},
                                    std::pair{options.patchCompatible, "patch-compatible"},
                                    std::pair{options.showCopiesAsAdds, "show-copies-as-adds"},
                                    std::pair{options.internalDiff, "internal-diff"},
                                    std::pair{options.diffCommand.has_value(), "diff-cmd"},
                                    std::pair{options.noDiffAdded, "no-diff-added"},
                                    std::pair{options.noDiffDeleted, "no-diff-deleted"},
                                    std::pair{options.force, "force"},
                                    std::pair{options.colourWords, "word"}};
        for (const auto& [given, name] : onlyInText) {
            if (given && options.summarize) {
                fail(ArgumentParsing, fmt::format("'--{}' not valid with '--summarize' option", name));
            }
        }
    }

    void readTargets()
    {
        const Options& options = _session.options;
        _targets = targetsOf(_session);
        const bool hasRange = !isUnspecified(_start) || !isUnspecified(_end);
        const bool areTwoSides = _targets.size() == 2 && (isURL(_targets[0]) || isURL(_targets[1])) && !hasRange;
        if (options.oldTarget) {
            const auto& newer = options.newTarget ? options.newTarget : options.oldTarget;
            takeSides(optionTargets(*options.oldTarget, *newer), options.newTarget.has_value());
        } else if (options.newTarget) {
            fail(ArgumentParsing, "'--new' option only valid with '--old' option");
        } else if (areTwoSides) {
            takeSides(std::exchange(_targets, {}), true);
        } else {
            takeTargets();
        }
        if (_targets.empty()) {
            _targets.emplace_back();
        }
    }

    /// The arguments of --old and --new, canonical.
    std::vector<std::string> optionTargets(const std::string& older, const std::string& newer)
    {
        const auto arguments = std::exchange(_session.arguments, {older, newer});
        auto sides = targetsOf(_session);
        _session.arguments = arguments;
        if (sides.size() < 2) {
            fail(InsufficientArguments, "Not enough arguments provided");
        }
        return sides;
    }

    void takeSides(const std::vector<std::string>& sides, bool areTwo)
    {
        const auto older = peggedTarget(_session, sides[0]);
        const auto newer = peggedTarget(_session, sides[1]);
        _old = older.target;
        _new = newer.target;
        settle(_start, older.pegRevision, newestOf(_old, areTwo ? HSVNRevision::WORKING() : HSVNRevision::BASE()));
        settle(_end, newer.pegRevision, newestOf(_new, HSVNRevision::WORKING()));
    }

    /// A side's own revision goes before that of -r.
    static void settle(HSVNRevisionRef& revision, const HSVNRevisionRef& own, const HSVNRevisionRef& otherwise)
    {
        if (!isUnspecified(own)) {
            revision = own;
        } else if (isUnspecified(revision)) {
            revision = otherwise;
        }
    }

    /// Each target is compared with itself.
    void takeTargets()
    {
        if (_targets.empty()) {
            _targets.emplace_back();
        }
        try {
            requireOneKind(_targets);
        } catch (const HSVNException& exception) {
            throw wrapped(exception, fmt::format("'{0} diff [-r N[:M]] [TARGET[@REV]...]' does not support mixed "
                                                 "target types. Try using the --old and --new options or one of the "
                                                 "shorthand invocations listed in '{0} help diff'.",
                                                 programName()));
        }
        const bool isLocal = !isURL(_targets.front());
        settle(_start, HSVNRevision::UNSPECIFIED(), isLocal ? HSVNRevision::BASE() : _start);
        settle(_end, HSVNRevision::UNSPECIFIED(), isLocal ? HSVNRevision::WORKING() : HSVNRevision::HEAD());
        _isPegged = !isLocalRevision(_start) || !isLocalRevision(_end);
    }

    HSVNDiffChoices choices() const
    {
        const Options& options = _session.options;
        HSVNDiffChoices choices{.depth = options.depth,
                                .ignoreAncestry = !options.noticeAncestry,
                                .changelists = options.changelists,
                                .omitAdded = options.noDiffAdded,
                                .omitDeleted = options.noDiffDeleted,
                                .copiesAsAdds = options.showCopiesAsAdds || options.patchCompatible,
                                .ignoreContentType = options.force || _session.isConfigured("diff-ignore-content-type"),
                                .ignoreProperties = options.ignoreProperties || options.patchCompatible,
                                .propertiesOnly = options.propertiesOnly,
                                .gitFormat = options.gitFormat};
        chooseDiffProgram(_session, choices);
        return choices;
    }

    void compareItems(const std::string& target)
    {
        if (isURL(target)) {
            fail(ArgumentParsing, fmt::format("Path '{}' not relative to base URLs", target));
        }
        const std::string below = targetBelow(_old, target);
        const HSVNTargetInRevision first{HSVNTarget::verbatim(below), _start};
        const HSVNTargetInRevision second{HSVNTarget::verbatim(targetBelow(_new, target)), _end};
        if (_session.options.summarize) {
            _session.client()->diffSummary(first, second, choices(), printerBelow(below));
        } else {
            compare(first, second);
        }
    }

    void compareRevisions(const std::string& target)
    {
        const auto [path, peg] = peggedTarget(_session, target);
        const HSVNTargetInRevision item{HSVNTarget::verbatim(path), HSVNRevisionSpec::pegRevisionWithRevision(peg)};
        const std::pair revisions{_start, _end};
        if (_session.options.summarize) {
            _session.client()->diffSummary(item, revisions, choices(), printerBelow(path));
        } else {
            compare(item, revisions);
        }
    }

    /// Shows how the sides differ: two items, or one in two revisions.
    template <class Sides>
    void compare(const HSVNTargetInRevision& item, const Sides& other)
    {
        if (_session.options.json) {
            _session.client()->treeDiff(item, other, choices())->readItems([&](const HSVNPatchItem& changed) {
                _records.add(diffRecord(changed));
            });
        } else if (_session.options.colourWords && Display::isColoured()) {
            WordColours colours;
            _session.client()->diff(item, other, choices(), [&](std::string_view bytes) { colours.take(bytes); });
            colours.finish();
        } else {
            const bool isDirect = isLeftToProgram() || !Display::isOnTerminal();
            _session.client()->diff(item, other, choices(), isDirect ? HSVNContentsReceiver{} : Output::writeBytes);
        }
    }

    HSVNReceiver<const HSVNDifference&> printerBelow(const std::string& anchor)
    {
        return [this, &anchor](const HSVNDifference& difference) {
            print(difference, localStyle(targetBelow(anchor, difference.path)));
        };
    }

    void print(const HSVNDifference& difference, const std::string& path)
    {
        if (_session.options.ignoreProperties && difference.status == HSVNStatusKindNone) {
            return;
        }
        const bool hasProperties = difference.propertiesModified && !_session.options.ignoreProperties;
        const char* const item = wordOf(difference.status);
        const char* const properties = hasProperties ? "modified" : "none";
        const char* const kind = wordOf(difference.kind);
        if (_session.options.xml) {
            XML{}.element("path", path, {{"item", item}, {"props", properties}, {"kind", kind}}).write();
        } else if (_session.options.json) {
            _records.add({{"path", path}, {"item", item}, {"props", properties}, {"kind", kind}});
        } else {
            Output::write(fmt::format("{}{}      {}\n", letterOf(difference.status), hasProperties ? 'M' : ' ', path));
        }
    }

    Session& _session;
    std::vector<std::string> _targets; ///< below the two sides, or whole ones
    std::string _old;
    std::string _new;
    HSVNRevisionRef _start;
    HSVNRevisionRef _end;
    bool _isPegged = false;
    JSONArray _records;
};

void runDiff(Session& session) { DiffRun{session}.run(); }

} // namespace

const Subcommand& diffSubcommand()
{
    static const Subcommand subcommand{"diff",
                                       {"di"},
                                       "Show local changes, or how two revisions or two items differ.",
                                       "1. diff\n"
                                       "2. diff [-c M | -r N[:M]] [TARGET[@REV]...]\n"
                                       "3. diff [-r N[:M]] --old=OLD-TGT[@OLDREV] [--new=NEW-TGT[@NEWREV]] \\\n"
                                       "        [PATH...]\n"
                                       "4. diff OLD-URL[@OLDREV] NEW-URL[@NEWREV]\n"
                                       "5. diff OLD-URL[@OLDREV] NEW-PATH[@NEWREV]\n"
                                       "6. diff OLD-PATH[@OLDREV] NEW-URL[@NEWREV]",
                                       "1. Shows what is changed in the working copy of the current folder.\n"
                                       "\n"
                                       "2. Shows how TARGETs, looked up in REV, changed from revision N to M.\n"
                                       "   They are all paths or all URLs.  For paths N is BASE and M the working\n"
                                       "   copy where they are left out; for URLs N is needed, and M is HEAD.\n"
                                       "\n"
                                       "3. Shows how NEW-TGT differs from OLD-TGT, or of both only what is named\n"
                                       "   by PATHs, which are relative to them.  NEW-TGT is OLD-TGT where it is\n"
                                       "   left out.  OLDREV is N by default, NEWREV is M, and without -r both are\n"
                                       "   HEAD for URLs and the working copy for paths.\n"
                                       "   Paths may be unversioned ones, which have no revisions and cannot be\n"
                                       "   compared with URLs.  Both targets are files, or both are folders.\n"
                                       "\n"
                                       "4. to 6. Short forms of '--old=OLD-URL --new=NEW-URL' and its like.\n"
                                       "\n"
                                       "With --json, items are printed with what was done to them, their lines in\n"
                                       "sections that are common or changed, and their properties.  No program\n"
                                       "other than the one that is built in compares files then.",
                                       {OptionId::Revision,
                                        OptionId::Change,
                                        OptionId::Old,
                                        OptionId::New,
                                        OptionId::NonRecursive,
                                        OptionId::Depth,
                                        OptionId::DiffCmd,
                                        OptionId::InternalDiff,
                                        OptionId::Extensions,
                                        OptionId::NoDiffAdded,
                                        OptionId::NoDiffDeleted,
                                        OptionId::IgnoreProperties,
                                        OptionId::PropertiesOnly,
                                        OptionId::ShowCopiesAsAdds,
                                        OptionId::NoticeAncestry,
                                        OptionId::Summarize,
                                        OptionId::Changelist,
                                        OptionId::Force,
                                        OptionId::XML,
                                        OptionId::JSON,
                                        OptionId::Word,
                                        OptionId::Git,
                                        OptionId::PatchCompatible},
                                       {{OptionId::NonRecursive, "obsolete; same as --depth=files"},
                                        {OptionId::Force, "compare files of binary types as texts"}},
                                       runDiff,
                                       RevisionUse::Range};
    return subcommand;
}

#include "HSVNContext.h"
#include "HSVNDifference.h"
#include "HSVNException.h"
#include "HSVNStatusCodes.h"
#include "HSVNTreeDiff.h"
#include "Internal/Browsing.h"
#include "Internal/Diff.h"
#include "Internal/ExtensionCall.h"
#include "Internal/PatchSource.h"

namespace {

void requireRevisions(const HSVNDiffRevisions& revisions)
{
    HSVNAssertParameter(revisions.first != nullptr && revisions.second != nullptr, "revision != nil");
}

/// Whether both are states of a local item, which Subversion compares as two items: it refuses a peg revision, and
/// looks nothing up.
bool areLocal(const HSVNTargetInRevision& target, const HSVNDiffRevisions& revisions)
{
    const auto isLocal = [](const HSVNRevisionRef& revision) {
        return revision->isEqual(HSVNRevision::BASE()) || revision->isEqual(HSVNRevision::WORKING());
    };
    return !target.target.isURL() && target.revision->pegRevision()->isEqual(HSVNRevision::UNSPECIFIED()) &&
           isLocal(revisions.first) && isLocal(revisions.second);
}

HSVNStatusKind statusOf(svn_client_diff_summarize_kind_t kind)
{
    switch (kind) {
    case svn_client_diff_summarize_kind_added:
        return HSVNStatusKindAdded;
    case svn_client_diff_summarize_kind_modified:
        return HSVNStatusKindModified;
    case svn_client_diff_summarize_kind_deleted:
        return HSVNStatusKindDeleted;
    case svn_client_diff_summarize_kind_normal:
        break;
    }
    return HSVNStatusKindNone;
}

using Summary = HSVNItemsCall<const HSVNDifference&>;

svn_error_t* receiveDifference(const svn_client_diff_summarize_t* record, void* baton, apr_pool_t* /*pool*/)
{
    return static_cast<Summary*>(baton)->handOver([record] {
        return HSVNDifference{record->path, statusOf(record->summarize_kind), record->prop_changed != 0,
                              static_cast<HSVNNodeKind>(record->node_kind)};
    });
}

/// Has files compared by the program of the choices: the configuration names it until the object goes.
class ComparisonProgram
{
  public:
    /// @throws HSVNException for an external program without a configuration
    ComparisonProgram(HSVNOperation& operation, const HSVNDiffChoices& choices) : _operation{operation}
    {
        const bool isExternal = choices.program == HSVNDiffProgram::External;
        HSVNAssertParameter(!isExternal || choices.command.has_value(), "choices.command != nil");
        if (choices.program == HSVNDiffProgram::Configured) {
            return;
        }
        auto* const options = operation.ctx()->config;
        auto* const found =
            options ? operation->apr_hash_get(options, HSVNConfigCategoryConfig, APR_HASH_KEY_STRING) : nullptr;
        _configuration = static_cast<svn_config_t*>(found);
        if (_configuration) {
            const char* before = nullptr;
            operation->config_get(_configuration, &before, HSVNConfigSectionHelpers, option, nullptr);
            _before = before ? std::optional<std::string>{before} : std::nullopt;
        }
        if (isExternal) {
            operation.context()->setOption(*choices.command, option, HSVNConfigCategoryConfig,
                                           HSVNConfigSectionHelpers);
        } else if (_before) {
            set(nullptr);
        }
        _isSet = isExternal || _before;
    }
    ~ComparisonProgram()
    {
        if (_isSet) {
            set(_before ? _before->c_str() : nullptr);
        }
    }
    ComparisonProgram(const ComparisonProgram&) = delete;
    ComparisonProgram& operator=(const ComparisonProgram&) = delete;

  private:
    static constexpr const char* option = "diff-cmd";

    void set(const char* program) { _operation->config_set(_configuration, HSVNConfigSectionHelpers, option, program); }

    HSVNOperation& _operation;
    svn_config_t* _configuration = nullptr;
    std::optional<std::string> _before;
    bool _isSet = false;
};

/// The choices of a text that objects are read from.
HSVNDiffChoices readableChoices(const HSVNOperation& operation, HSVNDiffChoices choices)
{
    choices.gitFormat = operation.isAtLeast({1, 7});
    choices.program = HSVNDiffProgram::Internal;
    return choices;
}

/// Writes how the sides differ, two items or one in two revisions, into a temporary file.
template <class Sides>
HSVNPatchSourceRef spooledDiff(HSVNOperation& operation, const HSVNTargetInRevision& item, const Sides& other,
                               const HSVNDiffChoices& choices)
{
    HSVNPatchSpool spool;
    const HSVNContentsReceiver output = [&](std::string_view bytes) { spool.write(bytes); };
    HSVNWriteDiff(operation, item, other, choices, {output, output, "UTF-8"});
    return spool.source();
}

/// What a diff writes.
template <class Sides>
std::string textOfDiff(HSVNContext& context, const HSVNTargetInRevision& item, const Sides& other,
                       const HSVNDiffChoices& choices)
{
    std::string text;
    context.diff(item, other, choices, [&](std::string_view piece) { text += piece; });
    return text;
}

/// What a summary tells.
template <class Sides>
std::vector<HSVNDifference> listOfDifferences(HSVNContext& context, const HSVNTargetInRevision& item,
                                              const Sides& other, const HSVNDiffChoices& choices)
{
    return HSVNCollected<HSVNDifference>(
        [&](const auto& receiver) { context.diffSummary(item, other, choices, receiver); });
}

} // namespace

void HSVNContext::diff(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                       const HSVNDiffChoices& choices, const HSVNContentsReceiver& output,
                       const HSVNContentsReceiver& errors)
{
    HSVNOperation operation{*this, "diff", {{"first", first.target.text()}, {"second", second.target.text()}}};
    const ComparisonProgram program{operation, choices};
    HSVNWriteDiff(operation, first, second, choices, {output, errors});
}

void HSVNContext::diff(const HSVNTargetInRevision& target, const HSVNDiffRevisions& revisions,
                       const HSVNDiffChoices& choices, const HSVNContentsReceiver& output,
                       const HSVNContentsReceiver& errors)
{
    requireRevisions(revisions);
    if (areLocal(target, revisions)) {
        return diff({target.target, revisions.first}, {target.target, revisions.second}, choices, output, errors);
    }
    HSVNOperation operation{*this, "diff", {{"target", target.target.text()}, {"revisions", revisions}}};
    const ComparisonProgram program{operation, choices};
    HSVNWriteDiff(operation, target, revisions, choices, {output, errors});
}

std::string HSVNContext::diff(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                              const HSVNDiffChoices& choices)
{
    return textOfDiff(*this, first, second, choices);
}

std::string HSVNContext::diff(const HSVNTargetInRevision& target, const HSVNDiffRevisions& revisions,
                              const HSVNDiffChoices& choices)
{
    return textOfDiff(*this, target, revisions, choices);
}

HSVNTreeDiffRef HSVNContext::treeDiff(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                                      const HSVNDiffChoices& choices)
{
    HSVNOperation operation{*this, "treeDiff", {{"first", first.target.text()}, {"second", second.target.text()}}};
    auto readable = readableChoices(operation, choices);
    const ComparisonProgram program{operation, readable};
    try {
        const auto source = spooledDiff(operation, first, second, readable);
        return std::make_shared<const HSVNTreeDiff>(source, readable.gitFormat);
    } catch (const HSVNException& exception) {
        if (exception.status() != HSVNStatusCode::WorkingCopyPathNotFound || readable.copiesAsAdds ||
            !readable.gitFormat) {
            throw;
        }
    }
    // Below the repository's root, Subversion looks for the sources of a working copy's copies where they are not.
    readable.copiesAsAdds = true;
    return std::make_shared<const HSVNTreeDiff>(spooledDiff(operation, first, second, readable), false);
}

HSVNTreeDiffRef HSVNContext::treeDiff(const HSVNTargetInRevision& target, const HSVNDiffRevisions& revisions,
                                      const HSVNDiffChoices& choices)
{
    requireRevisions(revisions);
    if (areLocal(target, revisions)) {
        return treeDiff({target.target, revisions.first}, {target.target, revisions.second}, choices);
    }
    HSVNOperation operation{*this, "treeDiff", {{"target", target.target.text()}, {"revisions", revisions}}};
    const auto readable = readableChoices(operation, choices);
    const ComparisonProgram program{operation, readable};
    if (operation.newest(&HSVNDifferenceFunctions::client_diff_peg)) {
        const auto source = spooledDiff(operation, target, revisions, readable);
        return std::make_shared<const HSVNTreeDiff>(source, readable.gitFormat);
    }
    HSVNPatchSpool spool;
    HSVNWriteOlderDiff(operation, target, revisions, readable, spool.path());
    return std::make_shared<const HSVNTreeDiff>(spool.source(), false);
}

void HSVNContext::diffSummary(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                              const HSVNDiffChoices& choices, const HSVNReceiver<const HSVNDifference&>& receiver)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "diffSummary", {{"first", first.target.text()}, {"second", second.target.text()}}};
    const auto ends = HSVNEndsOf(first, second);
    const auto record = HSVNRecordOfChoices(operation, choices);
    Summary summary{operation, receiver};
    operation.call(&HSVNDifferenceFunctions::client_diff_summarize, operation.cString(first.target.text()), &ends.first,
                   operation.cString(second.target.text()), &ends.second, &record, receiveDifference, &summary,
                   operation.ctx(), operation.pool());
}

void HSVNContext::diffSummary(const HSVNTargetInRevision& target, const HSVNDiffRevisions& revisions,
                              const HSVNDiffChoices& choices, const HSVNReceiver<const HSVNDifference&>& receiver)
{
    requireRevisions(revisions);
    if (areLocal(target, revisions)) {
        return diffSummary({target.target, revisions.first}, {target.target, revisions.second}, choices, receiver);
    }
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "diffSummary", {{"target", target.target.text()}, {"revisions", revisions}}};
    const auto peg = HSVNRevisionOfTarget(target.target, *target.revision->pegRevision());
    const auto ends = HSVNEndsOf(revisions);
    const auto record = HSVNRecordOfChoices(operation, choices);
    Summary summary{operation, receiver};
    operation.call(&HSVNDifferenceFunctions::client_diff_summarize_peg, operation.cString(target.target.text()), &peg,
                   &ends.first, &ends.second, &record, receiveDifference, &summary, operation.ctx(), operation.pool());
}

std::vector<HSVNDifference> HSVNContext::diffSummary(const HSVNTargetInRevision& first,
                                                     const HSVNTargetInRevision& second, const HSVNDiffChoices& choices)
{
    return listOfDifferences(*this, first, second, choices);
}

std::vector<HSVNDifference> HSVNContext::diffSummary(const HSVNTargetInRevision& target,
                                                     const HSVNDiffRevisions& revisions, const HSVNDiffChoices& choices)
{
    return listOfDifferences(*this, target, revisions, choices);
}

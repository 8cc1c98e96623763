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

struct Summary
{
    HSVNOperation& operation;
    const HSVNReceiver<const HSVNDifference&>& receiver;
};

svn_error_t* receiveDifference(const svn_client_diff_summarize_t* record, void* baton, apr_pool_t* /*pool*/)
{
    const auto& summary = *static_cast<Summary*>(baton);
    return HSVNGuardCallback(*summary.operation.context(), [&] {
        return HSVNHandOver(summary.operation, summary.receiver,
                            HSVNDifference{record->path, statusOf(record->summarize_kind), record->prop_changed != 0,
                                           static_cast<HSVNNodeKind>(record->node_kind)});
    });
}

/// Lets Subversion compare by itself: the configuration's program is set aside until the object goes.
class InternalComparison
{
  public:
    explicit InternalComparison(HSVNOperation& operation) : _operation{operation}
    {
        const auto program = operation.context()->optionForName(option, HSVNConfigCategoryConfig,
                                                                HSVNConfigSectionHelpers, std::nullopt);
        if (program) {
            _program = *program;
            auto* const configuration =
                operation->apr_hash_get(operation.ctx()->config, HSVNConfigCategoryConfig, APR_HASH_KEY_STRING);
            _configuration = static_cast<svn_config_t*>(configuration);
            operation->config_set(_configuration, HSVNConfigSectionHelpers, option, nullptr);
        }
    }
    ~InternalComparison()
    {
        if (_configuration) {
            _operation->config_set(_configuration, HSVNConfigSectionHelpers, option, _program.c_str());
        }
    }
    InternalComparison(const InternalComparison&) = delete;
    InternalComparison& operator=(const InternalComparison&) = delete;

  private:
    static constexpr const char* option = "diff-cmd";

    HSVNOperation& _operation;
    std::string _program;
    svn_config_t* _configuration = nullptr;
};

/// The choices of a text that objects are read from: Git's headers, and no arguments of another program.
HSVNDiffChoices readableChoices(HSVNDiffChoices choices)
{
    choices.gitFormat = true;
    choices.arguments = choices.arguments.value_or(std::vector<std::string>{});
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

} // namespace

void HSVNContext::diff(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                       const HSVNDiffChoices& choices, const HSVNContentsReceiver& output,
                       const HSVNContentsReceiver& errors)
{
    HSVNOperation operation{*this, "diff", {{"first", first.target.text()}, {"second", second.target.text()}}};
    HSVNWriteDiff(operation, first, second, choices, {output, errors});
}

void HSVNContext::diff(const HSVNTargetInRevision& target, const HSVNDiffRevisions& revisions,
                       const HSVNDiffChoices& choices, const HSVNContentsReceiver& output,
                       const HSVNContentsReceiver& errors)
{
    requireRevisions(revisions);
    HSVNOperation operation{*this, "diff", {{"target", target.target.text()}, {"revisions", revisions}}};
    HSVNWriteDiff(operation, target, revisions, choices, {output, errors});
}

HSVNTreeDiffRef HSVNContext::treeDiff(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                                      const HSVNDiffChoices& choices)
{
    HSVNOperation operation{*this, "treeDiff", {{"first", first.target.text()}, {"second", second.target.text()}}};
    const InternalComparison internal{operation};
    auto readable = readableChoices(choices);
    try {
        const auto source = spooledDiff(operation, first, second, readable);
        return std::make_shared<const HSVNTreeDiff>(source, true);
    } catch (const HSVNException& exception) {
        if (exception.status() != HSVNStatusCode::WorkingCopyPathNotFound || readable.copiesAsAdds) {
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
    HSVNOperation operation{*this, "treeDiff", {{"target", target.target.text()}, {"revisions", revisions}}};
    const InternalComparison internal{operation};
    if (operation.newest(&HSVNBundleExtensions::client_diff_peg)) {
        const auto source = spooledDiff(operation, target, revisions, readableChoices(choices));
        return std::make_shared<const HSVNTreeDiff>(source, true);
    }
    HSVNPatchSpool spool;
    HSVNWriteOlderDiff(operation, target, revisions, choices, spool.path());
    return std::make_shared<const HSVNTreeDiff>(spool.source(), false);
}

void HSVNContext::diffSummary(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                              const HSVNDiffChoices& choices, const HSVNReceiver<const HSVNDifference&>& receiver)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "diffSummary", {{"first", first.target.text()}, {"second", second.target.text()}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_diff_summarize);
    const auto ends = HSVNEndsOf(first, second);
    const auto record = HSVNRecordOfChoices(operation, choices);
    Summary summary{operation, receiver};
    operation.check(function(operation.cString(first.target.text()), &ends.first,
                             operation.cString(second.target.text()), &ends.second, &record, receiveDifference,
                             &summary, operation.ctx(), operation.pool()));
}

void HSVNContext::diffSummary(const HSVNTargetInRevision& target, const HSVNDiffRevisions& revisions,
                              const HSVNDiffChoices& choices, const HSVNReceiver<const HSVNDifference&>& receiver)
{
    requireRevisions(revisions);
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "diffSummary", {{"target", target.target.text()}, {"revisions", revisions}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_diff_summarize_peg);
    const auto peg = HSVNRevisionOfTarget(target.target, *target.revision->pegRevision());
    const auto ends = HSVNEndsOf(revisions);
    const auto record = HSVNRecordOfChoices(operation, choices);
    Summary summary{operation, receiver};
    operation.check(function(operation.cString(target.target.text()), &peg, &ends.first, &ends.second, &record,
                             receiveDifference, &summary, operation.ctx(), operation.pool()));
}

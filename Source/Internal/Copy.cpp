#include "Internal/Copy.h"

#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"

namespace {

/// The sources as `HSVNCommitFunctions::CopySource` values.
apr_array_header_t* sourceArray(HSVNOperation& operation, const std::vector<HSVNTargetInRevision>& sources)
{
    using Source = HSVNCommitFunctions::CopySource;
    auto* const array = operation->apr_array_make(operation.pool(), static_cast<int>(sources.size()), sizeof(Source));
    for (const auto& source : sources) {
        *static_cast<Source*>(operation->apr_array_push(array)) = {operation.changed(source.target.text()),
                                                                   source.revision->operativeRevision()->SVNRevision(),
                                                                   source.revision->pegRevision()->SVNRevision()};
    }
    return array;
}

/// Whether an item has to be traced to another revision than that in which it is looked up, which the place of the
/// first table, with its single revision, does for a local item alone.
bool isTraced(const HSVNTargetInRevision& source)
{
    const auto& operative = source.revision->operativeRevision();
    const auto& peg = source.revision->pegRevision();
    if (operative->isEqual(HSVNRevision::UNSPECIFIED()) || operative->isEqual(peg)) {
        return false;
    }
    const bool isPegged = !peg->isEqual(HSVNRevision::UNSPECIFIED());
    return isPegged || (source.target.isURL() && !operative->isEqual(HSVNRevision::HEAD()));
}

/// Refuses what the functions of older lines do not do.
void refuseForOlderLines(HSVNRevisionChange& change, const std::vector<HSVNTargetInRevision>& sources,
                         const HSVNCopyChoices& choices)
{
    const auto& operation = change.operation();
    operation.refuse(choices.pinExternals && !operation.isAtLeast({1, 9}), "pinExternals");
    operation.refuse(!choices.processExternals && !operation.isAtLeast(HSVNVersion::version1_6()), "processExternals");
    if (operation.isAtLeast(HSVNVersion::version1_5())) {
        return;
    }
    operation.refuse(sources.size() > 1, "several sources");
    operation.refuse(operation.isVerb() && isTraced(sources.front()), "peg revision");
    operation.refuse(choices.makeParents, "makeParents");
    change.refuseProperties();
}

svn_error_t* callPlace(HSVNRevisionChange& change, svn_commit_info_t** info,
                       const std::vector<HSVNTargetInRevision>& sources, const std::string& destination,
                       const HSVNCopyChoices& choices)
{
    auto& operation = change.operation();
    const auto& source = sources.front();
    operation.refuse(sources.size() > 1, "several sources");
    operation.refuse(operation.isVerb() && isTraced(source), "peg revision");
    operation.refuse(choices.asChild, "asChild");
    operation.refuse(choices.makeParents, "makeParents");
    operation.refuse(!choices.processExternals, "processExternals");
    operation.refuse(choices.pinExternals, "pinExternals");
    change.refuseProperties();
    const svn_opt_revision_t revision = source.revision->keyRevision()->SVNRevision();
    const char* const from = operation.changed(source.target.text());
    return operation->client_copy3(info, from, &revision, operation.changed(destination), operation.ctx(),
                                   operation.pool());
}

} // namespace

HSVNCommitResult HSVNCopy(HSVNRevisionChange& change, const std::vector<HSVNTargetInRevision>& sources,
                          const std::string& destination, const HSVNCopyChoices& choices)
{
    auto& operation = change.operation();
    refuseForOlderLines(change, sources, choices);
    if (const auto copy = operation.newest(&HSVNCommitFunctions::client_copy)) {
        const auto* const records = sourceArray(operation, sources);
        return change.finish(copy(records, operation.changed(destination), choices.asChild, choices.makeParents,
                                  !choices.processExternals, choices.pinExternals, change.properties(),
                                  HSVNRevisionChange::noted, &change, operation.ctx(), operation.pool()));
    }
    svn_commit_info_t* info = nullptr;
    svn_error_t* const error = callPlace(change, &info, sources, destination, choices);
    return change.finish(error, info);
}

#include "Internal/Update.h"

#include "HSVNRevision.h"
#include "Internal/ConflictRecord.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RevisionNumber.h"

#include <fmt/format.h>

namespace {

svn_error_t* callUpdate(HSVNOperation& operation, apr_array_header_t** results, const apr_array_header_t* targets,
                        const svn_opt_revision_t& revision, const HSVNUpdateChoices& choices)
{
    if (const auto update = operation.newest(&HSVNUpdateFunctions::client_update)) {
        const HSVNConflictChoosing choosing{operation, choices.chooser};
        const HSVNUpdateFunctions::Updating record{.depth = HSVNDepthForSubversion(choices.depth),
                                                   .depthIsSticky = choices.depthIsSticky,
                                                   .ignoreExternals = !choices.processExternals,
                                                   .allowObstructions = choices.allowObstructions,
                                                   .addsAsModification = choices.addsAsModification,
                                                   .makeParents = choices.makeParents,
                                                   .choosing = choosing.record()};
        return update(results, targets, &revision, &record, operation.ctx(), operation.pool());
    }
    operation.refuse(choices.addsAsModification, "addsAsModification");
    operation.refuse(choices.makeParents, "makeParents");
    operation.refuse(choices.chooser != nullptr, "chooser");
    if (operation.isAtLeast(HSVNVersion::version1_5())) {
        return operation->client_update3(results, targets, &revision, HSVNDepthForSubversion(choices.depth),
                                         choices.depthIsSticky, !choices.processExternals, choices.allowObstructions,
                                         operation.ctx(), operation.pool());
    }
    operation.refuse(operation.isVerb() && choices.depthIsSticky, "depthIsSticky");
    operation.refuse(operation.isVerb() && choices.allowObstructions, "allowObstructions");
    return operation->client_update2(results, targets, &revision, HSVNRecurseForDepth(choices.depth, HSVNDepthFiles),
                                     !choices.processExternals, operation.ctx(), operation.pool());
}

} // namespace

std::vector<HSVNRevisionNumber> HSVNUpdate(HSVNOperation& operation, const apr_array_header_t* targets,
                                           const HSVNRevision& revision, const HSVNUpdateChoices& choices)
{
    const svn_opt_revision_t record = revision.SVNRevision();
    apr_array_header_t* results = nullptr;
    svn_error_t* error = callUpdate(operation, &results, targets, record, choices);
    if (error && error->apr_err == SVN_ERR_CLIENT_BAD_REVISION && !operation.isVerb()) {
        operation->error_clear(error);
        throw HSVNInvalidArgumentException("Invalid revision");
    }
    operation.check(error);
    std::vector<HSVNRevisionNumber> revisions;
    for (int index = 0; index < results->nelts; ++index) {
        revisions.push_back(HSVNRevisionNumberFromSubversion(APR_ARRAY_IDX(results, index, svn_revnum_t)));
    }
    if (results->nelts != targets->nelts) {
        throw HSVNAssertionException(fmt::format("Expected resultant revision array with length of {}, found {}",
                                                 targets->nelts, results->nelts));
    }
    return revisions;
}

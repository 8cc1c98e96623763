#include "CanonicalPaths.h"
#include "CommitInformation.h"
#include "CommitQuestions.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "NewParents.h"
#include "ObstructedParents.h"

#include <algorithm>
#include <span>
#include <svn_path.h>

namespace HSVNAdapter {
namespace {

svn_error_t* mkdir2(svn_commit_info_t** info, const apr_array_header_t* paths, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    CommitQuestions questions{ctx};
    SVN_ERR(canonicalizeAll(&paths, TargetKind::PathOrURL, pool));
    SVN_ERR(checkNewFolders(paths));
    SVN_ERR(refuseBelowDirectoryLinks(paths, pool));
    return paths->nelts == 0 ? SVN_NO_ERROR : smoothed(svn_client_mkdir2(info, paths, ctx, pool));
}

#if HSVN_LINE_MINOR >= 7
bool hasURL(const apr_array_header_t* targets)
{
    const std::span texts{reinterpret_cast<const char* const*>(targets->elts),
                          static_cast<std::size_t>(targets->nelts)};
    return std::ranges::any_of(texts, [](const char* text) { return svn_path_is_url(text) != 0; });
}

/// Makes a local directory, and the missing ones above it, or none of them.
svn_error_t* makeWithParents(const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    NewParents parents;
    SVN_ERR(parents.look(path, ctx, pool));
    auto* const targets = apr_array_make(pool, 1, sizeof(const char*));
    APR_ARRAY_PUSH(targets, const char*) = path;
    svn_error_t* const error = svn_client_mkdir4(targets, TRUE, nullptr, nullptr, nullptr, ctx, pool);
    return error == nullptr ? SVN_NO_ERROR : svn_error_compose_create(error, parents.takeBack(ctx, pool));
}
#endif

#if HSVN_LINE_MINOR >= 5
svn_error_t* mkdir(const apr_array_header_t* targets, svn_boolean_t makeParents, const apr_hash_t* revisionProperties,
                   svn_commit_callback2_t receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    CommitQuestions questions{ctx};
    SVN_ERR(checkTargets(&targets, pool));
    SVN_ERR(checkNewFolders(targets));
    SVN_ERR(refuseBelowDirectoryLinks(targets, pool));
#if HSVN_LINE_MINOR >= 7
    if (!makeParents || hasURL(targets)) {
        return svn_client_mkdir4(targets, makeParents, revisionProperties, receiver, baton, ctx, pool);
    }
    for (int index = 0; index < targets->nelts; ++index) {
        SVN_ERR(makeWithParents(APR_ARRAY_IDX(targets, index, const char*), ctx, pool));
    }
    return SVN_NO_ERROR;
#else
    return tellCommit(receiver, baton, pool, [&](svn_commit_info_t** info) {
        return targets->nelts == 0 ? SVN_NO_ERROR
                                   : svn_client_mkdir3(info, targets, makeParents, revisionProperties, ctx, pool);
    });
#endif
}
#endif

} // namespace

void fillMakeDirectories(HSVNBundleEntryPoints& table) { table.client_mkdir2 = mkdir2; }

void fillMakeDirectories([[maybe_unused]] HSVNCommitFunctions& table)
{
#if HSVN_LINE_MINOR >= 5
    table.client_mkdir = mkdir;
#endif
}

} // namespace HSVNAdapter

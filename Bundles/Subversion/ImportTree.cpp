#include "CanonicalPaths.h"
#include "CommitInformation.h"
#include "CommitQuestions.h"
#include "ConfiguredTypes.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"

namespace HSVNAdapter {
namespace {

svn_error_t* import2(svn_commit_info_t** info, const char* path, const char* url, svn_boolean_t nonRecursive,
                     svn_boolean_t noIgnore, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    CommitQuestions questions{ctx};
    HSVN_CANONICAL_PATH(path, pool);
    HSVN_CANONICAL_URL(url, pool);
    return smoothed(withConfiguredTypes(
        ctx, pool, [&] { return svn_client_import2(info, path, url, nonRecursive, noIgnore, ctx, pool); }));
}

#if HSVN_LINE_MINOR >= 5
svn_error_t* importTree(const char* path, const char* url, svn_depth_t depth, svn_boolean_t noIgnore,
                        [[maybe_unused]] svn_boolean_t noAutoProperties, svn_boolean_t ignoreUnknownKinds,
                        const apr_hash_t* revisionProperties, svn_commit_callback2_t receiver, void* baton,
                        svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    CommitQuestions questions{ctx};
    SVN_ERR(checkLocalTarget(&path, pool));
    HSVN_CANONICAL_URL(url, pool);
    return withConfiguredTypes(ctx, pool, [&] {
#if HSVN_LINE_MINOR >= 8
        return svn_client_import5(path, url, depth, noIgnore, noAutoProperties, ignoreUnknownKinds, revisionProperties,
                                  nullptr, nullptr, receiver, baton, ctx, pool);
#elif HSVN_LINE_MINOR >= 7
        return svn_client_import4(path, url, depth, noIgnore, ignoreUnknownKinds, revisionProperties, receiver, baton,
                                  ctx, pool);
#else
        return tellCommit(receiver, baton, pool, [&](svn_commit_info_t** info) {
            return svn_client_import3(info, path, url, depth, noIgnore, ignoreUnknownKinds, revisionProperties, ctx,
                                      pool);
        });
#endif
    });
}
#endif

} // namespace

void fillImport(HSVNBundleEntryPoints& table) { table.client_import2 = import2; }

void fillImport([[maybe_unused]] HSVNCommitFunctions& table)
{
#if HSVN_LINE_MINOR >= 5
    table.client_import = importTree;
#endif
}

} // namespace HSVNAdapter

#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "LineEnds.h"

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 7
svn_error_t* mkdir(const apr_array_header_t* targets, svn_boolean_t makeParents, const apr_hash_t* revisionProperties,
                   svn_commit_callback2_t receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const LogMessageTap messages{ctx};
    SVN_ERR(checkTargets(&targets, pool));
    SVN_ERR(checkNewFolders(targets));
    return svn_client_mkdir4(targets, makeParents, revisionProperties, receiver, baton, ctx, pool);
}

svn_error_t* remove(const apr_array_header_t* targets, svn_boolean_t force, svn_boolean_t keepLocal,
                    const apr_hash_t* revisionProperties, svn_commit_callback2_t receiver, void* baton,
                    svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const LogMessageTap messages{ctx};
    SVN_ERR(checkTargets(&targets, pool));
    return svn_client_delete4(targets, force, keepLocal, revisionProperties, receiver, baton, ctx, pool);
}
#endif

#if HSVN_LINE_MINOR >= 8
svn_error_t* commit(const apr_array_header_t* targets, svn_depth_t depth, svn_boolean_t keepLocks,
                    svn_boolean_t keepChangelists, svn_boolean_t includeExternals,
                    const apr_array_header_t* changelists, const apr_hash_t* revisionProperties,
                    svn_commit_callback2_t receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const LogMessageTap messages{ctx};
    SVN_ERR(checkLocalTargets(&targets, pool));
    SVN_ERR(settleWalkDepth(&depth));
    return svn_client_commit6(targets, depth, keepLocks, keepChangelists, TRUE, includeExternals, includeExternals,
                              changelists, revisionProperties, receiver, baton, ctx, pool);
}

svn_error_t* importTree(const char* path, const char* url, svn_depth_t depth, svn_boolean_t noIgnore,
                        svn_boolean_t noAutoProperties, svn_boolean_t ignoreUnknownKinds,
                        const apr_hash_t* revisionProperties, svn_commit_callback2_t receiver, void* baton,
                        svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const LogMessageTap messages{ctx};
    SVN_ERR(checkLocalTarget(&path, pool));
    HSVN_CANONICAL_URL(url, pool);
    return svn_client_import5(path, url, depth, noIgnore, noAutoProperties, ignoreUnknownKinds, revisionProperties,
                              nullptr, nullptr, receiver, baton, ctx, pool);
}

svn_error_t* move(const apr_array_header_t* sources, const char* destination, svn_boolean_t asChild,
                  svn_boolean_t makeParents, svn_boolean_t allowMixedRevisions, const apr_hash_t* revisionProperties,
                  svn_commit_callback2_t receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const LogMessageTap messages{ctx};
    SVN_ERR(checkTargets(&sources, pool));
    SVN_ERR(checkTarget(&destination, pool));
    return svn_client_move7(sources, destination, asChild, makeParents, allowMixedRevisions, FALSE, revisionProperties,
                            receiver, baton, ctx, pool);
}
#endif

#if HSVN_LINE_MINOR >= 9
svn_error_t* copy(const apr_array_header_t* sources, const char* destination, svn_boolean_t asChild,
                  svn_boolean_t makeParents, svn_boolean_t ignoreExternals, svn_boolean_t pinExternals,
                  const apr_hash_t* revisionProperties, svn_commit_callback2_t receiver, void* baton,
                  svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const LogMessageTap messages{ctx};
    SVN_ERR(checkTarget(&destination, pool));
    auto* pointers = apr_array_make(pool, sources->nelts, sizeof(svn_client_copy_source_t*));
    for (int index = 0; index < sources->nelts; ++index) {
        const auto& source = APR_ARRAY_IDX(sources, index, HSVNBundleExtensions::CopySource);
        auto* pointer = static_cast<svn_client_copy_source_t*>(apr_pcalloc(pool, sizeof(svn_client_copy_source_t)));
        pointer->path = source.path;
        SVN_ERR(checkTarget(&pointer->path, pool));
        pointer->revision = &source.revision;
        pointer->peg_revision = &source.pegRevision;
        APR_ARRAY_PUSH(pointers, svn_client_copy_source_t*) = pointer;
    }
    return svn_client_copy7(pointers, destination, asChild, makeParents, ignoreExternals, FALSE, pinExternals, nullptr,
                            revisionProperties, receiver, baton, ctx, pool);
}
#endif

} // namespace

void fillRepositoryExtensions([[maybe_unused]] HSVNBundleExtensions& table)
{
#if HSVN_LINE_MINOR >= 7
    table.client_mkdir = mkdir;
    table.client_delete = remove;
#endif
#if HSVN_LINE_MINOR >= 8
    table.client_commit = commit;
    table.client_import = importTree;
    table.client_move = move;
#endif
#if HSVN_LINE_MINOR >= 9
    table.client_copy = copy;
#endif
}

} // namespace HSVNAdapter

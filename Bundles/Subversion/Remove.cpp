#include "CanonicalPaths.h"
#include "CommitInformation.h"
#include "CommitQuestions.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "ItemsOnDisk.h"
#include "Notifications.h"
#include "ObstructedParents.h"
#include "Obstructions.h"

namespace HSVNAdapter {
namespace {

/// Whether Subversion has a record of the item, whatever is on disk. What cannot be told counts as none.
bool isVersioned(const char* path, apr_pool_t* pool)
{
    const char* url = nullptr;
    svn_error_clear(svn_client_url_from_path(&url, path, pool));
    return url != nullptr;
}

/// A failed deletion as it is told: an unversioned item is in no working copy. Not so a versioned folder, which is
/// refused for the sake of an unversioned item inside, nor what is not there at all.
svn_error_t* deletionError(svn_error_t* error, const char* path, svn_node_kind_t kind, apr_pool_t* pool)
{
    // Lines before 1.7 say of what is missing that it is no file's name.
    const bool isUnversioned = hasCode(error, SVN_ERR_UNVERSIONED_RESOURCE) ||
                               hasCode(error, SVN_ERR_WC_NOT_DIRECTORY) || error->apr_err == SVN_ERR_BAD_FILENAME;
    if (!isUnversioned || isVersioned(path, pool)) {
        // Its outermost error says that force is wanted, the next one for the sake of which item.
        const bool isOfItemInside = error->child != nullptr && error->child->apr_err == error->apr_err;
        return smoothed(isOfItemInside && error->child->message != nullptr
                            ? svn_error_create(error->apr_err, error, error->child->message)
                            : error);
    }
    if (kind == svn_node_none) {
        svn_error_clear(error);
        return nothingAt(path);
    }
    return smoothed(error, {{SVN_ERR_UNVERSIONED_RESOURCE, SVN_ERR_WC_NOT_DIRECTORY}});
}

/// A forced deletion of what is gone already succeeds, and the delegate hears of unversioned items too.
svn_error_t* deletePath(svn_commit_info_t** info, const char* path, svn_boolean_t force, svn_client_ctx_t* ctx,
                        apr_pool_t* pool)
{
    const svn_node_kind_t kind = kindOnDisk(path, pool);
    auto* targets = apr_array_make(pool, 1, sizeof(const char*));
    APR_ARRAY_PUSH(targets, const char*) = path;
    const DeletionTap tap{ctx, path};
    svn_error_t* error = svn_client_delete2(info, targets, force, ctx, pool);
    if (error == nullptr) {
        if (kind != svn_node_none && !tap.wasReported() && kindOnDisk(path, pool) == svn_node_none) {
            auto* notification = svn_wc_create_notify(path, svn_wc_notify_delete, pool);
            notification->kind = kind;
            tap.pass(notification, pool);
        }
        return SVN_NO_ERROR;
    }
    if (force && kind == svn_node_none && error->apr_err == SVN_ERR_BAD_FILENAME) {
        svn_error_clear(error);
        return SVN_NO_ERROR;
    }
    return deletionError(error, path, kind, pool);
}

svn_error_t* delete2(svn_commit_info_t** info, const apr_array_header_t* paths, svn_boolean_t force,
                     svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    CommitQuestions questions{ctx};
    SVN_ERR(canonicalizeAll(&paths, TargetKind::PathOrURL, pool));
    if (paths->nelts > 0 && isURL(APR_ARRAY_IDX(paths, 0, const char*))) {
        return smoothed(svn_client_delete2(info, paths, force, ctx, pool));
    }
    SVN_ERR(refuseBelowDirectoryLinks(paths, pool));
#if HSVN_LINE_MINOR >= 9
    if (force) {
        SVN_ERR(refuseObstructedFiles(paths, ctx, pool));
    }
#endif
    for (int index = 0; index < paths->nelts; ++index) {
        SVN_ERR(deletePath(info, APR_ARRAY_IDX(paths, index, const char*), force, ctx, pool));
    }
    return SVN_NO_ERROR;
}

#if HSVN_LINE_MINOR >= 5
svn_error_t* remove(const apr_array_header_t* targets, svn_boolean_t force, svn_boolean_t keepLocal,
                    const apr_hash_t* revisionProperties, svn_commit_callback2_t receiver, void* baton,
                    svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    CommitQuestions questions{ctx};
    SVN_ERR(checkTargets(&targets, pool));
#if HSVN_LINE_MINOR >= 9
    if (!keepLocal) {
        SVN_ERR(refuseBelowDirectoryLinks(targets, pool));
    }
    if (force && !keepLocal) {
        SVN_ERR(refuseObstructedFiles(targets, ctx, pool));
    }
#endif
#if HSVN_LINE_MINOR >= 7
    return svn_client_delete4(targets, force, keepLocal, revisionProperties, receiver, baton, ctx, pool);
#else
    return tellCommit(receiver, baton, pool, [&](svn_commit_info_t** info) {
        return svn_client_delete3(info, targets, force, keepLocal, revisionProperties, ctx, pool);
    });
#endif
}
#endif

} // namespace

void fillRemove(HSVNBundleEntryPoints& table) { table.client_delete2 = delete2; }

void fillRemove([[maybe_unused]] HSVNCommitFunctions& table)
{
#if HSVN_LINE_MINOR >= 5
    table.client_delete = remove;
#endif
}

} // namespace HSVNAdapter

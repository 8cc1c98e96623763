#include "SubversionLine.h"

// What the older lines' own svn_client_propget2 refuses, for the adapter above it: a whole tree in which a folder is
// missing (1.4) or something else is in its place (all three). The linker's --wrap puts it before the real one.

extern "C" {
svn_error_t* __real_svn_client_propget2(apr_hash_t** properties, const char* name, const char* target, // NOLINT
                                        const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                        svn_boolean_t recurse, svn_client_ctx_t* ctx, apr_pool_t* pool);
svn_error_t* __wrap_svn_client_propget2(apr_hash_t** properties, const char* name, const char* target, // NOLINT
                                        const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                        svn_boolean_t recurse, svn_client_ctx_t* ctx, apr_pool_t* pool);
}

namespace {

bool refuses(svn_wc_status_kind kind)
{
    return kind == svn_wc_status_obstructed || (HSVN_TEST_LINE < 5 && kind == svn_wc_status_missing);
}

void noticeFolder(void* baton, const char*, svn_wc_status2_t* status)
{
    if (status->entry != nullptr && status->entry->kind == svn_node_dir && refuses(status->text_status)) {
        *static_cast<bool*>(baton) = true;
    }
}

} // namespace

svn_error_t* __wrap_svn_client_propget2(apr_hash_t** properties, const char* name, const char* target, // NOLINT
                                        const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                        svn_boolean_t recurse, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    bool isRefused = false;
    if (recurse && !svn_path_is_url(target)) {
        const svn_opt_revision_t head{svn_opt_revision_head, {0}};
        svn_error_clear(svn_client_status2(nullptr, target, &head, noticeFolder, &isRefused, TRUE, FALSE, FALSE, TRUE,
                                           TRUE, ctx, pool));
    }
    if (isRefused) {
        return svn_error_createf(SVN_ERR_WC_NOT_LOCKED, nullptr, "A directory below '%s' is missing", target);
    }
    return __real_svn_client_propget2(properties, name, target, pegRevision, revision, recurse, ctx, pool);
}

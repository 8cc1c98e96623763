#include "ExtensionTable.h"
#include "ExtensionTargets.h"

#if HSVN_LINE_MINOR < 9
#include <svn_props.h>
#include <svn_subst.h>
#endif

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 9
svn_error_t* cat(svn_stream_t* out, const char* target, const svn_opt_revision_t* pegRevision,
                 const svn_opt_revision_t* revision, svn_boolean_t expandKeywords, svn_client_ctx_t* ctx,
                 apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target, pool));
    return svn_client_cat3(nullptr, out, target, pegRevision, revision, expandKeywords, ctx, pool, pool);
}
#else
/// Replaces the stream by one that takes a file's keywords back to how the repository has them, if it has any.
svn_error_t* takeKeywordsBack(svn_stream_t** out, const char* target, const svn_opt_revision_t* pegRevision,
                              const svn_opt_revision_t* revision, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    svn_opt_revision_t state = *revision;
    if (!isURL(target) && state.kind == svn_opt_revision_unspecified &&
        pegRevision->kind == svn_opt_revision_unspecified) {
        state.kind = svn_opt_revision_base; // whose contents are read
    }
    apr_hash_t* found = nullptr;
    SVN_ERR(svn_client_propget2(&found, SVN_PROP_KEYWORDS, target, pegRevision, &state, FALSE, ctx, pool));
    auto* const entry = apr_hash_first(pool, found);
    if (entry == nullptr) {
        return SVN_NO_ERROR;
    }
    void* value = nullptr;
    apr_hash_this(entry, nullptr, nullptr, &value);
    apr_hash_t* keywords = nullptr;
    SVN_ERR(svn_subst_build_keywords2(&keywords, static_cast<const svn_string_t*>(value)->data, "", "", 0, "", pool));
    *out = svn_subst_stream_translated(*out, nullptr, FALSE, keywords, FALSE, pool);
    return SVN_NO_ERROR;
}

svn_error_t* cat(svn_stream_t* out, const char* target, const svn_opt_revision_t* pegRevision,
                 const svn_opt_revision_t* revision, svn_boolean_t expandKeywords, svn_client_ctx_t* ctx,
                 apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target, pool));
    svn_stream_t* const given = out;
    if (!expandKeywords) {
        SVN_ERR(takeKeywordsBack(&out, target, pegRevision, revision, ctx, pool));
    }
    SVN_ERR(svn_client_cat2(out, target, pegRevision, revision, ctx, pool));
    return out == given ? SVN_NO_ERROR : svn_stream_close(out); // which writes what is held back
}
#endif

} // namespace

void fillContents(HSVNReadingFunctions& table) { table.client_cat = cat; }

} // namespace HSVNAdapter

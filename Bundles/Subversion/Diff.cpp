#include "ExtensionTable.h"
#include "ExtensionTargets.h"

#include <svn_utf.h>

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 5
svn_error_t* summarize(const char* target1, const svn_opt_revision_t* revision1, const char* target2,
                       const svn_opt_revision_t* revision2, const HSVNDifferenceFunctions::Comparing* choices,
                       svn_client_diff_summarize_func_t receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target1, pool));
    SVN_ERR(checkTarget(&target2, pool));
    return svn_client_diff_summarize2(target1, revision1, target2, revision2, choices->depth, choices->ignoreAncestry,
                                      choices->changelists, receiver, baton, ctx, pool);
}

svn_error_t* summarizePeg(const char* target, const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* start,
                          const svn_opt_revision_t* end, const HSVNDifferenceFunctions::Comparing* choices,
                          svn_client_diff_summarize_func_t receiver, void* baton, svn_client_ctx_t* ctx,
                          apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target, pool));
    return svn_client_diff_summarize_peg2(target, pegRevision, start, end, choices->depth, choices->ignoreAncestry,
                                          choices->changelists, receiver, baton, ctx, pool);
}
#endif

#if HSVN_LINE_MINOR >= 11
svn_error_t* settleStreams(svn_stream_t** out, svn_stream_t** errors, apr_pool_t* pool)
{
    if (*out == nullptr) {
        SVN_ERR(svn_stream_for_stdout(out, pool));
    }
    return *errors == nullptr ? svn_stream_for_stderr(errors, pool) : SVN_NO_ERROR;
}

const char* headerEncoding(const HSVNDifferenceFunctions::Comparing& choices)
{
    return choices.headerEncoding != nullptr ? choices.headerEncoding : SVN_APR_LOCALE_CHARSET;
}

svn_error_t* diff(svn_stream_t* out, svn_stream_t* errors, const char* target1, const svn_opt_revision_t* revision1,
                  const char* target2, const svn_opt_revision_t* revision2,
                  const HSVNDifferenceFunctions::Comparing* choices, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target1, pool));
    SVN_ERR(checkTarget(&target2, pool));
    SVN_ERR(settleStreams(&out, &errors, pool));
    return svn_client_diff7(choices->arguments, target1, revision1, target2, revision2, nullptr, choices->depth,
                            choices->ignoreAncestry, choices->omitAdded, choices->omitDeleted, choices->copiesAsAdds,
                            choices->ignoreContentType, choices->ignoreProperties, choices->propertiesOnly,
                            choices->gitFormat, TRUE, headerEncoding(*choices), out, errors, choices->changelists, ctx,
                            pool);
}

svn_error_t* diffPeg(svn_stream_t* out, svn_stream_t* errors, const char* target, const svn_opt_revision_t* pegRevision,
                     const svn_opt_revision_t* start, const svn_opt_revision_t* end,
                     const HSVNDifferenceFunctions::Comparing* choices, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target, pool));
    SVN_ERR(settleStreams(&out, &errors, pool));
    return svn_client_diff_peg7(choices->arguments, target, pegRevision, start, end, nullptr, choices->depth,
                                choices->ignoreAncestry, choices->omitAdded, choices->omitDeleted,
                                choices->copiesAsAdds, choices->ignoreContentType, choices->ignoreProperties,
                                choices->propertiesOnly, choices->gitFormat, TRUE, headerEncoding(*choices), out,
                                errors, choices->changelists, ctx, pool);
}
#endif

} // namespace

void fillDiff([[maybe_unused]] HSVNDifferenceFunctions& table)
{
#if HSVN_LINE_MINOR >= 5
    table.client_diff_summarize = summarize;
    table.client_diff_summarize_peg = summarizePeg;
#endif
#if HSVN_LINE_MINOR >= 11
    table.client_diff = diff;
    table.client_diff_peg = diffPeg;
#endif
}

} // namespace HSVNAdapter

#include "CanonicalPaths.h"
#include "ExtensionTable.h"

namespace HSVNAdapter {
namespace {

svn_error_t* diffThreeFiles(svn_diff_t** diff, const char* base, const char* mine, const char* theirs,
                            const svn_diff_file_options_t* options, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(base, pool);
    HSVN_CANONICAL_PATH(mine, pool);
    HSVN_CANONICAL_PATH(theirs, pool);
    return svn_diff_file_diff3_2(diff, base, mine, theirs, options, pool);
}

#if HSVN_LINE_MINOR >= 5
svn_error_t* diffTexts(svn_diff_t** diff, const svn_string_t* original, const svn_string_t* modified,
                       const svn_string_t* latest, const svn_diff_file_options_t* options, apr_pool_t* pool)
{
    return latest != nullptr ? svn_diff_mem_string_diff3(diff, original, modified, latest, options, pool)
                             : svn_diff_mem_string_diff(diff, original, modified, options, pool);
}
#endif

#if HSVN_LINE_MINOR >= 9
svn_error_t* outputUnified(svn_stream_t* out, svn_diff_t* diff, const char* original, const char* modified,
                           const char* originalLabel, const char* modifiedLabel, const char* encoding,
                           svn_boolean_t showFunctions, int contextLines, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(original, pool);
    HSVN_CANONICAL_PATH(modified, pool);
    return svn_diff_file_output_unified4(out, diff, original, modified, originalLabel, modifiedLabel, encoding, nullptr,
                                         showFunctions, contextLines, ctx->cancel_func, ctx->cancel_baton, pool);
}
#endif

} // namespace

void fillTextComparison(HSVNDifferenceFunctions& table)
{
    table.diff_file_diff3 = diffThreeFiles;
#if HSVN_LINE_MINOR >= 5
    table.diff_texts = diffTexts;
#endif
#if HSVN_LINE_MINOR >= 9
    table.diff_output_unified = outputUnified;
#endif
}

} // namespace HSVNAdapter

#include "CanonicalPaths.h"
#include "EntryPointTable.h"

namespace HSVNAdapter {
namespace {

svn_error_t* diffFiles(svn_diff_t** diff, const char* original, const char* modified,
                       const svn_diff_file_options_t* options, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(original, pool);
    HSVN_CANONICAL_PATH(modified, pool);
    return svn_diff_file_diff_2(diff, original, modified, options, pool);
}

svn_error_t* outputDiff(svn_diff_t* diff, void* baton, const svn_diff_output_fns_t* functions)
{
    return svn_diff_output(diff, baton, functions);
}

svn_error_t* outputUnified(svn_stream_t* out, svn_diff_t* diff, const char* originalPath, const char* modifiedPath,
                           const char* originalHeader, const char* modifiedHeader, const char* headerEncoding,
                           apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(originalPath, pool);
    HSVN_CANONICAL_PATH(modifiedPath, pool);
    return svn_diff_file_output_unified2(out, diff, originalPath, modifiedPath, originalHeader, modifiedHeader,
                                         headerEncoding, pool);
}

} // namespace

void fillDiffServices(HSVNBundleEntryPoints& table)
{
    table.diff_file_options_parse = svn_diff_file_options_parse;
    table.diff_file_diff_2 = diffFiles;
    table.diff_output = outputDiff;
    table.diff_file_output_unified2 = outputUnified;
}

} // namespace HSVNAdapter

#include "ExtensionTable.h"
#include "ExtensionTargets.h"

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 7
svn_error_t* patch(const char* file, const char* directory, svn_boolean_t dryRun, int strip, svn_boolean_t reverse,
                   svn_boolean_t ignoreWhitespace, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&file, pool));
    SVN_ERR(checkAbsoluteTarget(&file, pool));
    SVN_ERR(checkLocalTarget(&directory, pool));
    SVN_ERR(checkAbsoluteTarget(&directory, pool));
    return svn_client_patch(file, directory, dryRun, strip, reverse, ignoreWhitespace, TRUE, nullptr, nullptr, ctx,
                            pool);
}
#endif

} // namespace

void fillPatch([[maybe_unused]] HSVNBundleExtensions& table)
{
#if HSVN_LINE_MINOR >= 7
    table.client_patch = patch;
#endif
}

} // namespace HSVNAdapter

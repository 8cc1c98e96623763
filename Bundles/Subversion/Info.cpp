#include "CanonicalPaths.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"

namespace HSVNAdapter {

#if HSVN_LINE_MINOR >= 9
namespace {

svn_error_t* info(const char* target, const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                  svn_depth_t depth, svn_boolean_t includeExternals, const apr_array_header_t* changelists,
                  HSVNReadingFunctions::InfoReceiver receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkAbsoluteTarget(&target, pool));
    SVN_ERR(checkWalkDepth(depth));
    const auto peg = revisionForTarget(target, pegRevision);
    return svn_client_info4(target, &peg, revision, depth, TRUE, TRUE, includeExternals, changelists, receiver, baton,
                            ctx, pool);
}

} // namespace
#endif

void fillInfo([[maybe_unused]] HSVNReadingFunctions& table)
{
#if HSVN_LINE_MINOR >= 9
    table.client_info = info;
#endif
}

} // namespace HSVNAdapter

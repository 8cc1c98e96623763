#include "ConflictSettler.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"

namespace HSVNAdapter {
namespace {

svn_error_t* switchTo(svn_revnum_t* result, const char* path, const char* url,
                      [[maybe_unused]] const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                      const HSVNUpdateFunctions::Updating* choices, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_URL(url, pool);
    SVN_ERR(checkLocalTarget(&path, pool));
#if HSVN_LINE_MINOR >= 7
    const ConflictSettler settler{ctx, choices->choosing};
    return svn_client_switch3(result, path, url, pegRevision, revision, choices->depth, choices->depthIsSticky,
                              choices->ignoreExternals, choices->allowObstructions, choices->ignoreAncestry, ctx, pool);
#elif HSVN_LINE_MINOR >= 5
    return svn_client_switch2(result, path, url, pegRevision, revision, choices->depth, choices->depthIsSticky,
                              choices->ignoreExternals, choices->allowObstructions, ctx, pool);
#else
    return svn_client_switch(result, path, url, revision, recurses(choices->depth), ctx, pool);
#endif
}

} // namespace

void fillSwitchTo(HSVNUpdateFunctions& table) { table.client_switch = switchTo; }

} // namespace HSVNAdapter

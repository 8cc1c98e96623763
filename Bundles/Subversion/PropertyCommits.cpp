#include "CommitInformation.h"
#include "CommitQuestions.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "LineEnds.h"

// Properties that a change in the repository sets at once.

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 6
svn_error_t* replaceRevisionProperty(const char* name, const svn_string_t* value, const svn_string_t* original,
                                     const char* url, const svn_opt_revision_t* revision, svn_revnum_t* number,
                                     svn_boolean_t force, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_URL(url, pool);
    SVN_ERR(checkRevision(revision));
    SVN_ERR(endLines(&value, name, pool));
    const svn_string_t none{nullptr, 0}; // by which Subversion knows that there is to be none
    return svn_client_revprop_set2(name, value, original ? original : &none, url, revision, number, force, ctx, pool);
}
#endif

#if HSVN_LINE_MINOR >= 5
svn_error_t* setRemotely(const char* name, const svn_string_t* value, const char* url, svn_boolean_t skipChecks,
                         svn_revnum_t base, const apr_hash_t* revisionProperties, svn_commit_callback2_t receiver,
                         void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    CommitQuestions questions{ctx};
    HSVN_CANONICAL_URL(url, pool);
    SVN_ERR(endLines(&value, name, pool));
#if HSVN_LINE_MINOR >= 8
    return svn_client_propset_remote(name, value, url, skipChecks, base, revisionProperties, receiver, baton, ctx,
                                     pool);
#else
    return tellCommit(receiver, baton, pool, [&](svn_commit_info_t** info) {
        return svn_client_propset3(info, name, value, url, svn_depth_empty, skipChecks, base, nullptr,
                                   revisionProperties, ctx, pool);
    });
#endif
}
#endif

} // namespace

void fillPropertyCommits([[maybe_unused]] HSVNPropertyFunctions& table)
{
#if HSVN_LINE_MINOR >= 6
    table.client_revprop_replace = replaceRevisionProperty;
#endif
#if HSVN_LINE_MINOR >= 5
    table.client_propset_remote = setRemotely;
#endif
}

} // namespace HSVNAdapter

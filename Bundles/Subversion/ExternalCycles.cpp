#include "ExternalCycles.h"

#include "StandIns.h"

#include <new>
#include <string_view>
#include <svn_wc.h>

// An external that contains itself, directly or through others, is followed by Subversion for ever: a listing never
// ends, a check-out, an update or an export when the disk is full.

namespace HSVNAdapter {
namespace {

struct Followed
{
    std::string_view url;
    svn_opt_revision_t pegRevision;
    svn_opt_revision_t revision;
    apr_pool_t* pool;
    Followed* next;
};

thread_local Followed* followed = nullptr; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

apr_status_t leave(void* external)
{
    for (auto** place = &followed; *place != nullptr; place = &(*place)->next) {
        if (*place == external) {
            *place = (*place)->next;
            break;
        }
    }
    return APR_SUCCESS;
}

bool isSame(const svn_opt_revision_t& one, const svn_opt_revision_t& other)
{
    const bool isNumber = one.kind == svn_opt_revision_number;
    const bool isDate = one.kind == svn_opt_revision_date;
    return one.kind == other.kind && (!isNumber || one.value.number == other.value.number) &&
           (!isDate || one.value.date == other.value.date);
}

/// Whether the first is the same external as the second, and around it.
bool isSameAround(const Followed& outer, const Followed& inner)
{
    return outer.url == inner.url && isSame(outer.pegRevision, inner.pegRevision) &&
           isSame(outer.revision, inner.revision) && outer.pool != inner.pool &&
           apr_pool_is_ancestor(outer.pool, inner.pool) != 0;
}

svn_error_t* containsItself(const char* url)
{
    return svn_error_createf(SVN_ERR_CLIENT_INVALID_EXTERNALS_DESCRIPTION, nullptr, "The external '%s' contains itself",
                             url);
}

} // namespace

svn_error_t* followExternal(const char* url, const svn_opt_revision_t& pegRevision, const svn_opt_revision_t& revision,
                            apr_pool_t* pool)
{
    auto* const external =
        new (apr_palloc(pool, sizeof(Followed))) Followed{url, pegRevision, revision, pool, followed};
    for (const auto* outer = followed; outer != nullptr; outer = outer->next) {
        if (isSameAround(*outer, *external)) {
            return containsItself(url);
        }
    }
    followed = external;
    apr_pool_cleanup_register(pool, external, leave, apr_pool_cleanup_null);
    return SVN_NO_ERROR;
}

} // namespace HSVNAdapter

#ifdef HSVN_STANDS_IN_FRONT

// A failure to resolve a definition ends a listing as a whole. So a URL is answered that no session is opened for: the
// external fails as any other that is not there, and all else goes on.

namespace {

constexpr std::string_view mark = "contains-itself+"; // before the URL: nobody knows the scheme

} // namespace

svn_error_t* HSVNAdapter::refuseExternalCycle(const char* url)
{
    return std::string_view{url}.starts_with(mark) ? containsItself(url + mark.size()) : SVN_NO_ERROR;
}

// Subversion's own, but in no header of the installed.
extern "C" svn_error_t* svn_wc__resolve_relative_external_url(const char** resolved,
                                                              const svn_wc_external_item2_t* item, const char* root,
                                                              const char* folder, apr_pool_t* resultPool,
                                                              apr_pool_t* scratchPool);

HSVN_STAND_IN(svn_error_t*, svn_wc__resolve_relative_external_url)
(const char** resolved, const svn_wc_external_item2_t* item, const char* root, const char* folder,
 apr_pool_t* resultPool, apr_pool_t* scratchPool)
{
    SVN_ERR(HSVN_BEHIND(svn_wc__resolve_relative_external_url)(resolved, item, root, folder, resultPool, scratchPool));
    svn_error_t* const error = HSVNAdapter::followExternal(*resolved, item->peg_revision, item->revision, resultPool);
    if (error != nullptr) {
        svn_error_clear(error);
        *resolved = apr_pstrcat(resultPool, mark.data(), *resolved, nullptr);
    }
    return SVN_NO_ERROR;
}

#endif

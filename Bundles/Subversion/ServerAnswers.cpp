#include "RelativePaths.h"
#include "ServerDrive.h"
#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <svn_dirent_uri.h>
#include <svn_path.h>
#include <svn_props.h>
#include <svn_ra.h>
#include <svn_time.h>

// Each of these ends the process, or never comes to an end, with what a server may answer.

namespace {

using namespace HSVNAdapter;

svn_error_t* malformed(const char* what)
{
    return svn_error_createf(SVN_ERR_RA_SVN_MALFORMED_DATA, nullptr, "The server's answer is malformed: %s", what);
}

/// @param cause  which is hidden behind this
svn_error_t* rootIsElsewhere(const char* url, svn_error_t* cause)
{
    svn_error_clear(cause);
    return svn_error_createf(SVN_ERR_RA_ILLEGAL_URL, nullptr,
                             "The server says that the root of its repository is not above '%s': it may have to be "
                             "reached at another address",
                             url);
}

/// What is told of a path that is locked or unlocked.
struct Locking
{
    svn_ra_lock_callback_t receiver;
    void* baton;
};

svn_error_t* receiveLocked(void* baton, const char* path, svn_boolean_t isLock, const svn_lock_t* lock,
                           svn_error_t* error, apr_pool_t* pool)
{
    const auto& locking = *static_cast<Locking*>(baton);
    if (!svn_relpath_is_canonical(path + (*path == '/' ? 1 : 0))) {
        return malformed("it tells of a path that is none");
    }
    if (!isLock || lock != nullptr || error != nullptr) {
        return locking.receiver(locking.baton, path, isLock, lock, error, pool);
    }
    svn_error_t* const missing = malformed("it tells of a lock, but not of which");
    svn_error_t* const result = locking.receiver(locking.baton, path, isLock, lock, missing, pool);
    svn_error_clear(missing);
    return result;
}

} // namespace

HSVN_STAND_IN(svn_error_t*, svn_ra_get_dir2)
(svn_ra_session_t* session, apr_hash_t** entries, svn_revnum_t* fetched, apr_hash_t** properties, const char* path,
 svn_revnum_t revision, apr_uint32_t fields, apr_pool_t* pool)
{
    SVN_ERR(HSVN_BEHIND(svn_ra_get_dir2)(session, entries, fetched, properties, path, revision, fields, pool));
    if (entries == nullptr) {
        return SVN_NO_ERROR;
    }
    for (auto* entry = apr_hash_first(pool, *entries); entry != nullptr; entry = apr_hash_next(entry)) {
        SVN_ERR(requireChild("", static_cast<const char*>(apr_hash_this_key(entry))));
    }
    return SVN_NO_ERROR;
}

HSVN_STAND_IN(svn_error_t*, svn_ra_get_inherited_props)
(svn_ra_session_t* session, apr_array_header_t** inherited, const char* path, svn_revnum_t revision,
 apr_pool_t* resultPool, apr_pool_t* scratchPool)
{
    SVN_ERR(HSVN_BEHIND(svn_ra_get_inherited_props)(session, inherited, path, revision, resultPool, scratchPool));
    for (int index = 0; index < (*inherited)->nelts; ++index) {
        if (!svn_relpath_is_canonical(APR_ARRAY_IDX(*inherited, index, svn_prop_inherited_item_t*)->path_or_url)) {
            return malformed("it tells of properties of a path that is none");
        }
    }
    return SVN_NO_ERROR;
}

// A web server behind a proxy that changes paths tells of its own.
HSVN_STAND_IN(svn_error_t*, svn_ra_get_repos_root2)(svn_ra_session_t* session, const char** root, apr_pool_t* pool)
{
    SVN_ERR(HSVN_BEHIND(svn_ra_get_repos_root2)(session, root, pool));
    const char* url = nullptr;
    SVN_ERR(svn_ra_get_session_url(session, &url, pool));
    return svn_uri_skip_ancestor(*root, url, pool) == nullptr ? rootIsElsewhere(url, SVN_NO_ERROR) : SVN_NO_ERROR;
}

// Of the library that speaks with web servers, in no header of the installed.
struct svn_ra_serf__session_t; // NOLINT(readability-identifier-naming)
extern "C" svn_error_t* svn_ra_serf__get_relative_path(const char** relative, const char* path,
                                                       svn_ra_serf__session_t* session, apr_pool_t* pool);

HSVN_STAND_IN(svn_error_t*, svn_ra_serf__get_relative_path)
(const char** relative, const char* path, svn_ra_serf__session_t* session, apr_pool_t* pool)
{
    svn_error_t* const error = HSVN_BEHIND(svn_ra_serf__get_relative_path)(relative, path, session, pool);
    return error != nullptr && error->apr_err == SVN_ERR_ASSERTION_FAIL ? rootIsElsewhere(path, error) : error;
}

HSVN_STAND_IN(svn_error_t*, svn_ra_lock)
(svn_ra_session_t* session, apr_hash_t* revisions, const char* comment, svn_boolean_t steals,
 svn_ra_lock_callback_t receiver, void* baton, apr_pool_t* pool)
{
    Locking locking{receiver, baton};
    return HSVN_BEHIND(svn_ra_lock)(session, revisions, comment, steals, receiver == nullptr ? nullptr : receiveLocked,
                                    &locking, pool);
}

HSVN_STAND_IN(svn_error_t*, svn_ra_unlock)
(svn_ra_session_t* session, apr_hash_t* tokens, svn_boolean_t breaks, svn_ra_lock_callback_t receiver, void* baton,
 apr_pool_t* pool)
{
    Locking locking{receiver, baton};
    return HSVN_BEHIND(svn_ra_unlock)(session, tokens, breaks, receiver == nullptr ? nullptr : receiveLocked, &locking,
                                      pool);
}

// An item without a date.
HSVN_STAND_IN(svn_error_t*, svn_time_from_cstring)(apr_time_t* when, const char* text, apr_pool_t* pool)
{
    return text == nullptr ? malformed("an item has no date") : HSVN_BEHIND(svn_time_from_cstring)(when, text, pool);
}

// A root of the repository that is no URL. The one put in its place holds no item.
HSVN_STAND_IN(const char*, svn_uri_canonicalize)(const char* uri, apr_pool_t* pool)
{
    return svn_path_is_url(uri) ? HSVN_BEHIND(svn_uri_canonicalize)(uri, pool) : "svn://malformed.invalid";
}

// Paths that merges are told of, relative to the session's: one that leads elsewhere is below none. Those of URLs that
// users write may go up and down again.
HSVN_STAND_IN(const char*, svn_relpath_skip_ancestor)(const char* parent, const char* child)
{
    if (HSVNAdapter::isRelativePath(child)) {
        return HSVN_BEHIND(svn_relpath_skip_ancestor)(parent, child);
    }
    const char* const rest =
        svn_relpath_is_canonical(child) ? HSVN_BEHIND(svn_relpath_skip_ancestor)(parent, child) : nullptr;
    return rest != nullptr && HSVNAdapter::leadsAbove(rest) ? nullptr : rest;
}

// A search for what became of a conflict's item goes on where it has not found the item on either side: it asks of the
// repository's root then, and finds nothing.
HSVN_STAND_IN(const char*, svn_path_url_add_component2)(const char* url, const char* component, apr_pool_t* pool)
{
    return HSVN_BEHIND(svn_path_url_add_component2)(url, component == nullptr ? "" : component, pool);
}

HSVN_STAND_IN(apr_size_t, svn_path_component_count)(const char* path)
{
    return path == nullptr ? 0 : HSVN_BEHIND(svn_path_component_count)(path);
}

// What is told of a path below none.
HSVN_STAND_IN(void, apr_hash_set)(apr_hash_t* hash, const void* key, apr_ssize_t length, const void* value)
{
    if (key != nullptr) {
        HSVN_BEHIND(apr_hash_set)(hash, key, length, value);
    }
}

#endif

#include "ListingLocks.h"

#include "CanonicalPaths.h"

#if HSVN_LINE_MINOR >= 10
#include <string>
#include <string_view>

#include <svn_ra.h>
#endif

namespace HSVNAdapter {

#if HSVN_LINE_MINOR >= 10
svn_error_t* ListingLocks::takeOver(svn_boolean_t* wanted, const char* target)
{
    if (!*wanted) {
        return SVN_NO_ERROR;
    }
    const char* url = target;
    if (!isURL(target)) {
        SVN_ERR(svn_client_url_from_path2(&url, target, _ctx, _pool, _pool));
    }
    if (url != nullptr && !std::string_view{url}.starts_with("file:")) {
        _url = url;
        *wanted = FALSE;
    }
    return SVN_NO_ERROR;
}

svn_error_t* ListingLocks::ask(const char* folder)
{
    svn_ra_session_t* session = nullptr;
    const char* root = nullptr;
    SVN_ERR(svn_client_open_ra_session2(&session, _url, nullptr, _ctx, _pool, _pool));
    SVN_ERR(svn_ra_get_repos_root2(session, &root, _pool));
    SVN_ERR(svn_ra_reparent(session, svn_path_url_add_component2(root, folder + 1, _pool), _pool));
    svn_error_t* const error = svn_ra_get_locks2(session, &_locks, "", _depth, _pool);
    if (error != nullptr && error->apr_err == SVN_ERR_RA_NOT_IMPLEMENTED) {
        svn_error_clear(error); // a server that knows no locks
        _locks = apr_hash_make(_pool);
        return SVN_NO_ERROR;
    }
    return error;
}

svn_error_t* ListingLocks::find(const svn_lock_t** lock, const char* folder, const char* path)
{
    if (_url == nullptr) {
        return SVN_NO_ERROR;
    }
    if (_locks == nullptr) {
        SVN_ERR(ask(folder));
    }
    std::string name = folder;
    if (*path != '\0') {
        name.append(name.ends_with('/') ? "" : "/").append(path);
    }
    *lock = static_cast<const svn_lock_t*>(apr_hash_get(_locks, name.c_str(), APR_HASH_KEY_STRING));
    return SVN_NO_ERROR;
}
#else
svn_error_t* ListingLocks::takeOver(svn_boolean_t* /*wanted*/, const char* /*target*/) { return SVN_NO_ERROR; }

svn_error_t* ListingLocks::find(const svn_lock_t** /*lock*/, const char* /*folder*/, const char* /*path*/)
{
    return SVN_NO_ERROR;
}
#endif

} // namespace HSVNAdapter

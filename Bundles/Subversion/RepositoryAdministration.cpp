#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"

namespace HSVNAdapter {
namespace {

svn_error_t* openRepository(svn_repos_t** repository, const char* path, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    svn_error_t* error = svn_repos_open(repository, path, pool);
    if (error != nullptr && (APR_STATUS_IS_ENOENT(error->apr_err) || APR_STATUS_IS_ENOTDIR(error->apr_err))) {
        return withCode(SVN_ERR_RA_LOCAL_REPOS_OPEN_FAILED, error);
    }
    return error;
}

svn_error_t* createRepository(svn_repos_t** repository, const char* path, const char* unused1, const char* unused2,
                              apr_hash_t* config, apr_hash_t* fileSystemConfig, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    return svn_repos_create(repository, path, unused1, unused2, config, fileSystemConfig, pool);
}

svn_error_t* deleteRepository(const char* path, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    return svn_repos_delete(path, pool);
}

} // namespace

void fillRepositoryAdministration(HSVNBundleEntryPoints& table)
{
    table.repos_open = openRepository;
    table.repos_create = createRepository;
    table.repos_delete = deleteRepository;
}

} // namespace HSVNAdapter

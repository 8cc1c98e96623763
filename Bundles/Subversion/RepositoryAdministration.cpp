#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"

#include <string_view>

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

svn_error_t* createConfiguredRepository(const char* path, const apr_array_header_t* configuration, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    auto* const hash = apr_hash_make(pool);
    for (int index = 0; index + 1 < configuration->nelts; index += 2) {
        apr_hash_set(hash, APR_ARRAY_IDX(configuration, index, const char*), APR_HASH_KEY_STRING,
                     APR_ARRAY_IDX(configuration, index + 1, const char*));
    }
    svn_repos_t* repository = nullptr;
    return svn_repos_create(&repository, path, nullptr, nullptr, nullptr, hash, pool);
}

svn_error_t* deleteRepository(const char* path, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    // Subversion takes any folder with a "db" in it for an old repository, and removes it.
    const char* root = svn_repos_find_root_path(path, pool);
    if (root == nullptr || std::string_view{root} != path) {
        return svn_error_createf(SVN_ERR_RA_LOCAL_REPOS_OPEN_FAILED, nullptr, "'%s' is not a repository", path);
    }
    return svn_repos_delete(path, pool);
}

} // namespace

void fillRepositoryAdministration(HSVNBundleEntryPoints& table)
{
    table.repos_open = openRepository;
    table.repos_create = createRepository;
    table.repos_delete = deleteRepository;
}

void fillRepositoryAdministration(HSVNLineFunctions& table) { table.repos_create = createConfiguredRepository; }

} // namespace HSVNAdapter

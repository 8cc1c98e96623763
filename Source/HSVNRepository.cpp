#include "HSVNRepository.h"

#include "HSVNBundleLoader.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "Internal/Pool.h"

#include <cstring>
#include <fmt/format.h>

namespace {

constexpr const char* fileSystemType = "fsfs";
constexpr const char* berkeleyDBType = "bdb";

HSVNBundleRef defaultBundle() { return HSVNBundleLoader::sharedInstance().defaultBundle(); }

void check(svn_error_t* error)
{
    if (error) {
        HSVNException::exceptionWithError(error)->raise();
    }
}

bool containsStatus(const svn_error_t* error, apr_status_t status)
{
    for (; error; error = error->child) {
        if (error->apr_err == status) {
            return true;
        }
    }
    return false;
}

// Subversion's own words for a type that it was built without ("Failed to load module") name neither cause nor remedy.
void checkCreation(svn_error_t* error, const std::string& type)
{
    if (!containsStatus(error, SVN_ERR_FS_UNKNOWN_FS_TYPE)) {
        return check(error);
    }
    const auto userInfo = HSVNException::exceptionWithError(error)->userInfo();
    const auto reason = fmt::format("This Subversion does not support repositories of type '{}'", type);
    if (type == berkeleyDBType) {
        throw HSVNBerkeleyDBException(reason, userInfo);
    }
    throw HSVNUnsupportedFeatureException(reason, userInfo);
}

} // namespace

HSVNRepository::HSVNRepository(HSVNLocalPathRef thePath) : _path{std::move(thePath)}
{
    HSVNAssertParameter(_path != nullptr, "thePath != nil");
    _pool = std::make_unique<HSVNPool>();
}

HSVNRepository::~HSVNRepository() = default;

HSVNRepositoryRef HSVNRepository::repositoryAtPath(const HSVNLocalPathRef& path)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    const HSVNBundleScope bundle{defaultBundle()};
    auto repository = std::make_shared<HSVNRepository>(path);
    check(HSVNCurrentEntryPoints().repos_open(&repository->_repos, path->string().c_str(), *repository->_pool));
    return repository;
}

HSVNRepositoryRef HSVNRepository::createRepositoryAtPath(const HSVNLocalPathRef& path,
                                                         const HSVNRepositoryOptionsRef& options)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
    if (const auto fileSystem = std::dynamic_pointer_cast<const HSVNFileSystemOptions>(options)) {
        return createFileSystemRepositoryAtPath(path, fileSystem);
    }
    if (const auto berkeleyDB = std::dynamic_pointer_cast<const HSVNBerkeleyDBOptions>(options)) {
        return createBerkeleyDBRepositoryAtPath(path, berkeleyDB);
    }
    throw HSVNInvalidArgumentException("Unrecognized repository options type");
}

HSVNRepositoryRef HSVNRepository::createFileSystemRepositoryAtPath(const HSVNLocalPathRef& localPath,
                                                                   const HSVNFileSystemOptionsRef& options)
{
    HSVNAssertParameter(localPath != nullptr, "localPath != nil");
    return createRepositoryOfType(fileSystemType, localPath, options);
}

HSVNRepositoryRef HSVNRepository::createBerkeleyDBRepositoryAtPath(const HSVNLocalPathRef& localPath,
                                                                   const HSVNBerkeleyDBOptionsRef& options)
{
    HSVNAssertParameter(localPath != nullptr, "localPath != nil");
    return createRepositoryOfType(berkeleyDBType, localPath, options);
}

HSVNRepositoryRef HSVNRepository::createRepositoryOfType(const char* type, const HSVNLocalPathRef& path,
                                                         const HSVNRepositoryOptionsRef& options)
{
    HSVNAssertParameter(type != nullptr, "type != nil");
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
    const HSVNBundleScope bundle{defaultBundle()};
    const auto& entryPoints = HSVNCurrentEntryPoints();
    auto repository = std::make_shared<HSVNRepository>(path);
    apr_pool_t* pool = *repository->_pool;

    auto* fileSystemConfig = entryPoints.apr_hash_make(pool);
    // The file system keeps the hash's texts for as long as it is open.
    entryPoints.apr_hash_set(fileSystemConfig, "fs-type", APR_HASH_KEY_STRING, entryPoints.apr_pstrdup(pool, type));
    options->addHSVNOptionsTo(fileSystemConfig);
    apr_hash_t* config = nullptr;
    check(entryPoints.config_get_config(&config, nullptr, pool));
    checkCreation(entryPoints.repos_create(&repository->_repos, path->string().c_str(), nullptr, nullptr, config,
                                           fileSystemConfig, pool),
                  type);
    return repository;
}

void HSVNRepository::deleteRepository()
{
    const HSVNBundleScope bundle{defaultBundle()};
    // A pool of its own: the object's may be another bundle's.
    const HSVNPool pool;
    check(HSVNCurrentEntryPoints().repos_delete(_path->string().c_str(), pool));
}

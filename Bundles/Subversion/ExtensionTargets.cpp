#include "ExtensionTargets.h"

#include "Internal/BundleExtensions.h"

#include <string_view>

#if HSVN_LINE_MINOR >= 7
#include <svn_dirent_uri.h>
#endif

namespace HSVNAdapter {

#if HSVN_LINE_MINOR >= 7
svn_error_t* checkTarget(const char** target, apr_pool_t* pool)
{
    const char* checked = *target;
    if (isURL(checked)) {
        SVN_ERR(refuseZeroByte(checked));
    }
    if (isURL(checked) ? svn_uri_is_canonical(checked, pool) : *checked == '\0') {
        return SVN_NO_ERROR;
    }
    HSVN_CANONICAL_TARGET(checked, pool);
    if (isURL(checked) || !svn_dirent_is_canonical(*target, pool)) {
        *target = checked;
    }
    return SVN_NO_ERROR;
}

svn_error_t* checkAbsoluteTarget(const char** target, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(target, pool));
    return isURL(*target) ? SVN_NO_ERROR : svn_dirent_get_absolute(target, *target, pool);
}
#else
svn_error_t* checkTarget(const char** target, apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(*target, pool);
    return SVN_NO_ERROR;
}

svn_error_t* checkAbsoluteTarget(const char** target, apr_pool_t* pool) { return checkTarget(target, pool); }
#endif

svn_error_t* checkShownTarget(const char** target, apr_pool_t* pool)
{
#if HSVN_LINE_MINOR < 7
    if (*target != nullptr && !isURL(*target) && **target != '/') {
        const char* absolute = *target;
        SVN_ERR(checkTarget(&absolute, pool));
        *target = svn_path_canonicalize(*target, pool);
        return SVN_NO_ERROR;
    }
#endif
    return checkTarget(target, pool);
}

svn_error_t* checkRelativeTarget(const char** target, apr_pool_t* pool)
{
    if (isURL(*target) || **target == '/') {
        return svn_error_createf(SVN_ERR_ILLEGAL_TARGET, nullptr, "'%s' is not a relative path", *target);
    }
#if HSVN_LINE_MINOR >= 7
    *target = svn_relpath_canonicalize(*target, pool);
#else
    *target = svn_path_canonicalize(*target, pool);
#endif
    return SVN_NO_ERROR;
}

svn_error_t* checkLocalTarget(const char** target, apr_pool_t* pool)
{
    if (isURL(*target)) {
        return svn_error_createf(SVN_ERR_ILLEGAL_TARGET, nullptr, "'%s' is not a local path", *target);
    }
    return checkTarget(target, pool);
}

svn_error_t* checkConfigurationFolder(const char** folder, apr_pool_t* pool)
{
    if (*folder == nullptr) {
        return SVN_NO_ERROR;
    }
    const char* checked = *folder;
    svn_error_t* const error = checkLocalTarget(&checked, pool);
    const bool isNowhere = error != nullptr && error->child != nullptr && APR_STATUS_IS_ENOENT(error->child->apr_err);
    if (error != nullptr && !isNowhere) {
        return error;
    }
    svn_error_clear(error);
    *folder = isNowhere ? svn_path_internal_style(*folder, pool) : checked;
    return SVN_NO_ERROR;
}

namespace {

svn_error_t* checkEach(const apr_array_header_t** targets, svn_error_t* (*check)(const char**, apr_pool_t*),
                       apr_pool_t* pool)
{
    auto* const checked = apr_array_copy(pool, *targets);
    for (int index = 0; index < checked->nelts; ++index) {
        SVN_ERR(check(&APR_ARRAY_IDX(checked, index, const char*), pool));
    }
    *targets = checked;
    return SVN_NO_ERROR;
}

} // namespace

svn_error_t* checkLocalTargets(const apr_array_header_t** targets, apr_pool_t* pool)
{
    return checkEach(targets, checkLocalTarget, pool);
}

svn_error_t* checkTargets(const apr_array_header_t** targets, apr_pool_t* pool)
{
    return checkEach(targets, checkTarget, pool);
}

namespace {

/// What stands before a URL's path.
std::string_view serverOf(std::string_view url)
{
    constexpr std::string_view separator = "://";
    return url.substr(0, url.find('/', url.find(separator) + separator.size()));
}

} // namespace

svn_error_t* checkNewFolders(const apr_array_header_t* targets)
{
    for (int index = 0; index < targets->nelts; ++index) {
        const char* const first = APR_ARRAY_IDX(targets, 0, const char*);
        const char* const target = APR_ARRAY_IDX(targets, index, const char*);
        if (!isURL(target)) {
            continue;
        }
        const std::string_view server = serverOf(target);
        if (server == target) {
            return svn_error_createf(SVN_ERR_ILLEGAL_TARGET, nullptr, "There is no valid URI above '%s'", target);
        }
        if (isURL(first) && server != serverOf(first)) {
            return svn_error_createf(SVN_ERR_ILLEGAL_TARGET, nullptr, "'%s' and '%s' are on different servers", first,
                                     target);
        }
    }
    return SVN_NO_ERROR;
}

svn_error_t* checkListedPath(const char* path, const char* folder)
{
    return path != nullptr ? SVN_NO_ERROR
                           : svn_error_createf(SVN_ERR_RA_SVN_MALFORMED_DATA, nullptr,
                                               "The server lists an item that is not in '%s'", folder);
}

svn_error_t* checkRevision(const svn_opt_revision_t* revision)
{
    return revision->kind != svn_opt_revision_unspecified
               ? SVN_NO_ERROR
               : svn_error_create(SVN_ERR_CLIENT_BAD_REVISION, nullptr, "A revision is needed");
}

#if HSVN_LINE_MINOR >= 5
svn_error_t* checkWalkDepth(svn_depth_t depth)
{
    return depth != svn_depth_exclude
               ? SVN_NO_ERROR
               : svn_error_create(SVN_ERR_INCORRECT_PARAMS, nullptr, "The depth 'exclude' is none of this operation");
}

svn_error_t* settleWalkDepth(svn_depth_t* depth)
{
    SVN_ERR(checkWalkDepth(*depth));
    if (*depth == svn_depth_unknown) {
        *depth = svn_depth_infinity;
    }
    return SVN_NO_ERROR;
}

apr_array_header_t* rangePointers(const apr_array_header_t* ranges, apr_pool_t* pool)
{
    auto* const pointers = apr_array_make(pool, ranges->nelts, sizeof(svn_opt_revision_range_t*));
    for (int index = 0; index < ranges->nelts; ++index) {
        auto* range = static_cast<svn_opt_revision_range_t*>(apr_pcalloc(pool, sizeof(svn_opt_revision_range_t)));
        range->start = APR_ARRAY_IDX(ranges, index, HSVNReadingFunctions::RevisionRange).start;
        range->end = APR_ARRAY_IDX(ranges, index, HSVNReadingFunctions::RevisionRange).end;
        APR_ARRAY_PUSH(pointers, svn_opt_revision_range_t*) = range;
    }
    return pointers;
}
#endif

} // namespace HSVNAdapter

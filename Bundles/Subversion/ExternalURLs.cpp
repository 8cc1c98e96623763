#include "ExternalURLs.h"

#include "CanonicalPaths.h"

#include <string>
#include <string_view>

namespace HSVNAdapter {
namespace {

/// Where the path of a URL begins.
std::size_t pathOffset(std::string_view url)
{
    const auto authority = url.find("://");
    return std::min(url.find('/', authority == std::string_view::npos ? 0 : authority + 3), url.size());
}

/// Whether the path's ".." components lead out of it.
bool leadsAboveItsStart(std::string_view path)
{
    int depth = 0;
    while (!path.empty() && depth >= 0) {
        const auto end = std::min(path.find('/'), path.size());
        const auto component = path.substr(0, end);
        depth += component == ".." ? -1 : component.empty() || component == "." ? 0 : 1;
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return depth < 0;
}

std::string absoluteURL(std::string_view definition, std::string_view root, std::string_view folder)
{
    if (definition.starts_with("^/")) {
        return std::string{root} + std::string{definition.substr(1)};
    }
    if (definition.starts_with("//")) {
        return std::string{root.substr(0, root.find("://") + 1)} + std::string{definition};
    }
    if (definition.starts_with('/')) {
        return std::string{root.substr(0, pathOffset(root))} + std::string{definition};
    }
    return definition.starts_with("../") ? std::string{folder} + "/" + std::string{definition}
                                         : std::string{definition};
}

} // namespace

svn_error_t* resolveExternalURL(const char** url, const char* definition, const char* rootURL, const char* folderURL,
                                apr_pool_t* pool)
{
    const std::string whole = absoluteURL(definition, rootURL, folderURL);
    if (!isURL(whole.c_str())) {
        return svn_error_createf(SVN_ERR_BAD_URL, nullptr, "Unrecognized format for the relative external URL '%s'.",
                                 definition);
    }
    if (leadsAboveItsStart(std::string_view{whole}.substr(pathOffset(whole)))) {
        return svn_error_createf(SVN_ERR_BAD_URL, nullptr,
                                 "The external relative URL '%s' cannot have too many backpaths, i.e. '..'.",
                                 definition);
    }
    *url = apr_pstrdup(pool, whole.c_str());
    HSVN_CANONICAL_URL(*url, pool);
    return SVN_NO_ERROR;
}

} // namespace HSVNAdapter

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

/// Takes the first component off the path.
std::string_view takeComponent(std::string_view& path)
{
    const auto end = std::min(path.find('/'), path.size());
    const auto component = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    return component;
}

bool hasBackpath(std::string_view path)
{
    while (!path.empty()) {
        if (takeComponent(path) == "..") {
            return true;
        }
    }
    return false;
}

/// The URL that a relative path leads to: up to the server's root and not beyond, whatever the path says.
std::string climbed(std::string_view url, std::string_view relative)
{
    const auto offset = pathOffset(url);
    std::string path{url.substr(offset)};
    while (!relative.empty()) {
        const auto component = takeComponent(relative);
        if (component == "..") {
            path.erase(std::min(path.rfind('/'), path.size()));
        } else if (!component.empty() && component != ".") {
            path += "/" + std::string{component};
        }
    }
    return std::string{url.substr(0, offset)} + path;
}

std::string absoluteURL(std::string_view definition, std::string_view root, std::string_view folder)
{
    if (definition.starts_with("^/")) {
        return climbed(root, definition.substr(2));
    }
    if (definition.starts_with("../")) {
        return climbed(folder, definition);
    }
    if (definition.starts_with("//")) {
        return std::string{root.substr(0, root.find("://") + 1)} + std::string{definition};
    }
    if (definition.starts_with('/')) {
        return std::string{root.substr(0, pathOffset(root))} + std::string{definition};
    }
    return std::string{definition};
}

} // namespace

svn_error_t* resolveExternalURL(const char** url, const char* definition, const char* rootURL, const char* folderURL,
                                apr_pool_t* pool)
{
    const std::string whole = absoluteURL(definition, rootURL, folderURL);
    if (!isURL(whole.c_str())) {
        return svn_error_createf(SVN_ERR_BAD_URL, nullptr, "Unrecognized format for the relative external URL '%s'",
                                 definition);
    }
    if (hasBackpath(std::string_view{whole}.substr(pathOffset(whole)))) {
        return svn_error_createf(SVN_ERR_BAD_URL, nullptr,
                                 "The external relative URL '%s' cannot have backpaths, i.e. '..'", definition);
    }
    *url = apr_pstrdup(pool, whole.c_str());
    HSVN_CANONICAL_URL(*url, pool);
    return SVN_NO_ERROR;
}

} // namespace HSVNAdapter

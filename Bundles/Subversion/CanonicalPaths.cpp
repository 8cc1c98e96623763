#include "CanonicalPaths.h"

#include "Internal/PercentEscapes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <utf8.h>
#include <vector>

#include <svn_utf.h>
#if HSVN_LINE_MINOR >= 7
#include <svn_dirent_uri.h>
#endif

namespace HSVNAdapter {
namespace {

/// For messages: the text itself, or, when it is not valid UTF-8, with its bytes outside ASCII written as ?\NNN.
std::string printable(std::string_view text)
{
    if (utf8::is_valid(text)) {
        return std::string{text};
    }
    std::string result;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte < 0x7F) {
            result += character;
        } else {
            std::array<char, 8> escape{};
            apr_snprintf(escape.data(), escape.size(), "?\\%03u", static_cast<unsigned>(byte));
            result += escape.data();
        }
    }
    return result;
}

/// Joins the path's components, each preceded by a slash, with ".", ".." and empty ones resolved.
std::string resolvedPath(std::string_view path)
{
    std::vector<std::string_view> components;
    while (!path.empty()) {
        const auto component = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(component.size() + 1, path.size()));
        if (component == "..") {
            if (!components.empty()) {
                components.pop_back();
            }
        } else if (!component.empty() && component != ".") {
            components.push_back(component);
        }
    }
    std::string result;
    for (const auto component : components) {
        result.append("/").append(component);
    }
    return result;
}

svn_error_t* canonicalizePath(const char** path, apr_pool_t* pool)
{
    std::string absolute = *path;
    if (!utf8::is_valid(absolute)) {
        return svn_error_createf(SVN_ERR_BAD_FILENAME, nullptr, "Path '%s' is not valid UTF-8",
                                 printable(absolute).c_str());
    }
    if (!absolute.starts_with('/')) {
        char* folder = nullptr;
        if (const apr_status_t status = apr_filepath_get(&folder, APR_FILEPATH_NATIVE, pool); status != APR_SUCCESS) {
            return svn_error_createf(SVN_ERR_BAD_FILENAME, svn_error_create(status, nullptr, nullptr),
                                     "Couldn't determine absolute path of '%s'", *path);
        }
        const char* folderUTF8 = nullptr;
        SVN_ERR(svn_path_cstring_to_utf8(&folderUTF8, folder, pool));
        absolute = std::string{folderUTF8} + "/" + absolute;
    }
    const std::string resolved = resolvedPath(absolute);
    *path = resolved.empty() ? "/" : apr_pstrdup(pool, resolved.c_str());
    return SVN_NO_ERROR;
}

svn_error_t* badURL(const char* url, const char* reason)
{
    return svn_error_createf(SVN_ERR_BAD_URL, nullptr, "URL '%s' %s", printable(url).c_str(), reason);
}

/// Of ASCII letters only, whatever the locale.
char lowerCaseLetter(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string lowerCase(std::string_view text)
{
    std::string result{text};
    std::transform(result.begin(), result.end(), result.begin(), lowerCaseLetter);
    return result;
}

/// User part as it is, host in lower case.
std::string canonicalAuthority(std::string_view authority)
{
    const auto at = authority.rfind('@');
    const auto host = at == std::string_view::npos ? 0 : at + 1;
    return std::string{authority.substr(0, host)} + lowerCase(authority.substr(host));
}

svn_error_t* canonicalizeURL(const char** url, apr_pool_t* pool)
{
    const std::string_view text = *url;
    const auto authorityStart = text.find("://") + 3;
    const auto pathStart = std::min(text.find('/', authorityStart), text.size());
    const auto authority = text.substr(authorityStart, pathStart - authorityStart);
    const std::string scheme = lowerCase(text.substr(0, authorityStart));
    const auto isOutsideAuthority = [](char character) {
        return character <= ' ' || character > '~' || std::strchr("\"<>\\^`{|}?#", character) != nullptr;
    };
    if (std::any_of(authority.begin(), authority.end(), isOutsideAuthority)) {
        return badURL(*url, "has a character in its host that no host has");
    }
    // A tunnel's program may find the server without one.
    if (authority.empty() && scheme != "file://" && !scheme.starts_with("svn+")) {
        return badURL(*url, "has no host");
    }
#if HSVN_LINE_MINOR < 10
    // Newer lines do so themselves.
    const auto host = authority.substr(std::min(authority.rfind('@') + 1, authority.size()));
    if (scheme.starts_with("svn+") && (authority.starts_with('-') || host.starts_with('-'))) {
        return badURL(*url, "has a host that a tunnel's program would take for an option");
    }
#endif
    SVN_ERR(refuseZeroByte(*url));
    const std::string decoded = HSVNPercentEscapes::decoded(text.substr(pathStart));
    if (!utf8::is_valid(decoded)) {
        return badURL(*url, "has a path that is not valid UTF-8");
    }
    const std::string path = svn_path_uri_encode(resolvedPath(decoded).c_str(), pool);
    const std::string canonical = scheme + canonicalAuthority(authority) + path;
#if HSVN_LINE_MINOR >= 7
    // Takes default ports away; what it would not accept must not reach the functions that assert on it.
    *url = svn_uri_canonicalize(canonical.c_str(), pool);
    return svn_uri_is_canonical(*url, pool) ? SVN_NO_ERROR : badURL(*url, "is malformed");
#else
    *url = svn_path_canonicalize(canonical.c_str(), pool);
    return SVN_NO_ERROR;
#endif
}

} // namespace

bool isURL(const char* target) { return target != nullptr && svn_path_is_url(target); }

svn_error_t* refuseZeroByte(const char* url)
{
    return std::strstr(url, "%00") == nullptr ? SVN_NO_ERROR : badURL(url, "has an escaped zero byte in it");
}

svn_error_t* canonicalize(const char** target, TargetKind kind, apr_pool_t* pool)
{
    if (*target == nullptr || (kind == TargetKind::URL && **target == '\0')) {
        return svn_error_create(SVN_ERR_BAD_FILENAME, nullptr,
                                kind == TargetKind::URL ? "The URL is empty" : "There is no path");
    }
    const bool targetIsURL = isURL(*target);
    if (targetIsURL && kind == TargetKind::Path) {
        return svn_error_createf(SVN_ERR_ILLEGAL_TARGET, nullptr, "'%s' is not a local path",
                                 printable(*target).c_str());
    }
    if (!targetIsURL && kind == TargetKind::URL) {
        return svn_error_createf(SVN_ERR_BAD_URL, nullptr, "'%s' is not a URL", printable(*target).c_str());
    }
    return targetIsURL ? canonicalizeURL(target, pool) : canonicalizePath(target, pool);
}

svn_error_t* canonicalizeAll(const apr_array_header_t** targets, TargetKind kind, apr_pool_t* pool)
{
    auto* canonical = apr_array_make(pool, (*targets)->nelts, sizeof(const char*));
    for (int index = 0; index < (*targets)->nelts; ++index) {
        const char* target = APR_ARRAY_IDX(*targets, index, const char*);
        if (index > 0 && isURL(target) != isURL(APR_ARRAY_IDX(canonical, 0, const char*))) {
            return svn_error_create(SVN_ERR_ILLEGAL_TARGET, nullptr, "Cannot mix repository and working copy targets");
        }
        SVN_ERR(canonicalize(&target, kind, pool));
        APR_ARRAY_PUSH(canonical, const char*) = target;
    }
    *targets = canonical;
    return SVN_NO_ERROR;
}

svn_opt_revision_t revisionForTarget(const char* target, const svn_opt_revision_t* revision)
{
    svn_opt_revision_t result = *revision;
    if (result.kind == svn_opt_revision_unspecified && isURL(target)) {
        result.kind = svn_opt_revision_head;
    }
    return result;
}

} // namespace HSVNAdapter

#include "ItemURLs.h"

#include <cstring>
#include <string_view>

namespace HSVNAdapter {

const char* ItemURLs::url(const char* root, const char* relativePath, apr_pool_t* pool)
{
    const char* slash = std::strrchr(relativePath, '/');
    const char* name = slash == nullptr ? relativePath : slash + 1;
    const std::string_view folder{relativePath, static_cast<std::size_t>(name - relativePath)};
    if (_folderURL.empty() || _folder != folder || _root != root) {
        _root = root;
        _folder = folder;
        _folderURL = _root + '/' + svn_path_uri_encode(_folder.c_str(), pool);
    }
    if (*name == '\0') { // the repository's own folder
        _url = _root;
    } else {
        _url = _folderURL;
        _url += svn_path_uri_encode(name, pool);
    }
    return _url.c_str();
}

} // namespace HSVNAdapter

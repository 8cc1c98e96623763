#include "ItemsOnDisk.h"

namespace HSVNAdapter {

svn_node_kind_t kindOnDisk(const char* path, apr_pool_t* pool)
{
    svn_node_kind_t kind = svn_node_none;
    svn_boolean_t isSpecial = FALSE;
    svn_error_clear(svn_io_check_special_path(path, &kind, &isSpecial, pool));
    return kind;
}

bool isSymbolicLink(const char* path, apr_pool_t* pool)
{
    apr_finfo_t found{};
    svn_error_t* const error = svn_io_stat(&found, path, APR_FINFO_TYPE | APR_FINFO_LINK, pool);
    svn_error_clear(error);
    return error == nullptr && found.filetype == APR_LNK;
}

bool leadsThroughLink(std::string_view path, const std::string& folder, apr_pool_t* pool)
{
    for (auto slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/', slash + 1)) {
        if (isSymbolicLink((folder + '/' + std::string{path.substr(0, slash)}).c_str(), pool)) {
            return true;
        }
    }
    return false;
}

svn_error_t* nothingAt(const char* path)
{
    return svn_error_createf(SVN_ERR_NODE_UNKNOWN_KIND, nullptr, "'%s' does not exist", path);
}

} // namespace HSVNAdapter

#include "WorkingCopyPlace.h"

#if HSVN_LINE_MINOR >= 7

#include <sys/stat.h>

namespace HSVNAdapter {

FileIdentity identityOf(const std::string& file)
{
    struct stat attributes
    {
    };
    return ::stat(file.c_str(), &attributes) == 0 ? FileIdentity{attributes.st_dev, attributes.st_ino} : FileIdentity{};
}

std::string databaseOf(std::string_view root, apr_pool_t* pool)
{
    return std::string{root} + '/' + svn_wc_get_adm_dir(pool) + "/wc.db";
}

std::string workingCopyRoot(std::string_view path, apr_pool_t* pool)
{
    for (std::string_view root = path; !root.empty();) {
        if (identityOf(databaseOf(root, pool)) != FileIdentity{}) {
            return std::string{root};
        }
        const auto slash = root.rfind('/');
        root = slash == std::string_view::npos ? std::string_view{} : root.substr(0, slash);
    }
    return {};
}

} // namespace HSVNAdapter

#endif

#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "ObstructedParents.h"

#include <cstring>
#if HSVN_LINE_MINOR >= 7
#include <svn_dirent_uri.h>
#endif

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 7
struct Patching
{
    const char* directory;
    int strip;
};

/// Subversion writes what it rejects, and what matches, through a link in the place of a versioned directory.
svn_error_t* refuseLinked(void* baton, svn_boolean_t* isFiltered, const char* name, const char* /*patched*/,
                          const char* /*rejected*/, apr_pool_t* pool)
{
    *isFiltered = FALSE;
    const auto& patching = *static_cast<const Patching*>(baton);
    for (int count = 0; count < patching.strip && name != nullptr; ++count) {
        const char* const slash = std::strchr(name, '/');
        name = slash == nullptr ? nullptr : slash + 1;
    }
    return name == nullptr ? SVN_NO_ERROR
                           : refuseBelowDirectoryLink(svn_dirent_join(patching.directory, name, pool), pool);
}

svn_error_t* patch(const char* file, const char* directory, svn_boolean_t dryRun, int strip, svn_boolean_t reverse,
                   svn_boolean_t ignoreWhitespace, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&file, pool));
    SVN_ERR(checkAbsoluteTarget(&file, pool));
    SVN_ERR(checkLocalTarget(&directory, pool));
    SVN_ERR(checkAbsoluteTarget(&directory, pool));
    Patching patching{directory, strip};
    return svn_client_patch(file, directory, dryRun, strip, reverse, ignoreWhitespace, TRUE, refuseLinked, &patching,
                            ctx, pool);
}
#endif

} // namespace

void fillPatch([[maybe_unused]] HSVNChangeFunctions& table)
{
#if HSVN_LINE_MINOR >= 7
    table.client_patch = patch;
#endif
}

} // namespace HSVNAdapter

#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <svn_string.h>
#include <svn_wc.h>

// Subversion places externals anywhere below the directory with their definition, be it in an administrative area: the
// definition's author could write files there that are read as texts and databases of the user's own.

namespace {

/// Whether a relative path has a component that is called like administrative areas.
bool leadsIntoAdministrativeArea(const char* path, apr_pool_t* pool)
{
    const auto* const names = svn_cstring_split(path, "/", FALSE, pool);
    for (int index = 0; index < names->nelts; ++index) {
        if (svn_wc_is_adm_dir(APR_ARRAY_IDX(names, index, const char*), pool)) {
            return true;
        }
    }
    return false;
}

} // namespace

HSVN_STAND_IN(svn_error_t*, svn_wc_parse_externals_description3)
(apr_array_header_t** externals, const char* folder, const char* text, svn_boolean_t canonicalizeURL, apr_pool_t* pool)
{
    apr_array_header_t* items = nullptr;
    SVN_ERR(HSVN_BEHIND(svn_wc_parse_externals_description3)(&items, folder, text, canonicalizeURL, pool));
    for (int index = 0; index < items->nelts; ++index) {
        const char* const target = APR_ARRAY_IDX(items, index, const svn_wc_external_item2_t*)->target_dir;
        if (leadsIntoAdministrativeArea(target, pool)) {
            return svn_error_createf(SVN_ERR_CLIENT_INVALID_EXTERNALS_DESCRIPTION, nullptr,
                                     "Invalid svn:externals property on '%s': target '%s' is in an administrative area",
                                     folder, target);
        }
    }
    if (externals != nullptr) {
        *externals = items;
    }
    return SVN_NO_ERROR;
}

#endif

namespace HSVNAdapter {
namespace {

svn_error_t* parseExternals(apr_array_header_t** externals, const char* definingFolder, const char* text,
                            svn_boolean_t canonicalizeURL, apr_pool_t* pool)
{
    // The folder appears in messages only and may be unknown, that is empty.
    if (definingFolder != nullptr && *definingFolder != '\0') {
        HSVN_CANONICAL_TARGET(definingFolder, pool);
    }
#ifdef HSVN_STANDS_IN_FRONT
    // What is only read may be anything.
    return smoothed(
        HSVN_BEHIND(svn_wc_parse_externals_description3)(externals, definingFolder, text, canonicalizeURL, pool));
#elif HSVN_LINE_MINOR >= 5
    return smoothed(svn_wc_parse_externals_description3(externals, definingFolder, text, canonicalizeURL, pool));
#else
    static_cast<void>(canonicalizeURL); // this line always canonicalizes
    apr_array_header_t* items = nullptr;
    SVN_ERR(svn_wc_parse_externals_description2(&items, definingFolder, text, pool));
    *externals = apr_array_make(pool, items->nelts, sizeof(svn_wc_external_item2_t*));
    for (int index = 0; index < items->nelts; ++index) {
        const auto* item = APR_ARRAY_IDX(items, index, const svn_wc_external_item_t*);
        auto* newer = static_cast<svn_wc_external_item2_t*>(apr_pcalloc(pool, sizeof(svn_wc_external_item2_t)));
        newer->target_dir = item->target_dir;
        newer->url = item->url;
        // Before peg revisions the one revision of a definition was both.
        newer->revision = item->revision;
        newer->peg_revision = item->revision;
        APR_ARRAY_PUSH(*externals, const svn_wc_external_item2_t*) = newer;
    }
    return SVN_NO_ERROR;
#endif
}

} // namespace

void fillExternals(HSVNBundleEntryPoints& table) { table.wc_parse_externals_description3 = parseExternals; }

} // namespace HSVNAdapter

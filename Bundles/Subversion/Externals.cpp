#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"

namespace HSVNAdapter {
namespace {

svn_error_t* parseExternals(apr_array_header_t** externals, const char* definingFolder, const char* text,
                            svn_boolean_t canonicalizeURL, apr_pool_t* pool)
{
    // The folder appears in messages only and may be unknown, that is empty.
    if (definingFolder != nullptr && *definingFolder != '\0') {
        HSVN_CANONICAL_TARGET(definingFolder, pool);
    }
#if HSVN_LINE_MINOR >= 5
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

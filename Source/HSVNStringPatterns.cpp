#include "HSVNStringPatterns.h"

#include "HSVNBundleLoader.h"
#include "Internal/CString.h"
#include "Internal/Pool.h"

bool HSVNString::matchesPatternInArray(const std::string& text, const std::vector<std::string>& patterns,
                                       apr_pool_t* pool)
{
    const HSVNBundleEntryPoints& entryPoints = HSVNCurrentEntryPoints();
    const HSVNPool scratch{pool};
    auto* list = entryPoints.apr_array_make(scratch, static_cast<int>(patterns.size()), sizeof(const char*));
    for (const auto& pattern : patterns) {
        *static_cast<const char**>(entryPoints.apr_array_push(list)) = HSVNCString(pattern);
    }
    return entryPoints.cstring_match_glob_list(HSVNCString(text), list) != FALSE;
}

bool HSVNString::matchesPatternInArray(const std::string& text, const std::vector<std::string>& patterns)
{
    const HSVNBundleScope bundle{HSVNBundleLoader::sharedInstance().newestBundle()};
    const HSVNPool pool;
    return matchesPatternInArray(text, patterns, pool);
}

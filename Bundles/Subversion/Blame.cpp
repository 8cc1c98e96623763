#include "ExtensionTable.h"
#include "ExtensionTargets.h"

#include <svn_props.h>

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR < 12
/// Who takes the lines that an older function tells, and where what the range means is stored.
struct Blame
{
    HSVNReadingFunctions::BlameReceiver receiver;
    void* baton;
    svn_revnum_t* first;
    svn_revnum_t* last;
};
#endif

#if HSVN_LINE_MINOR >= 7 && HSVN_LINE_MINOR < 12
svn_error_t* receiveLine(void* baton, svn_revnum_t first, svn_revnum_t last, apr_int64_t line, svn_revnum_t revision,
                         apr_hash_t* properties, svn_revnum_t mergedRevision, apr_hash_t* mergedProperties,
                         const char* mergedPath, const char* text, svn_boolean_t isLocal, apr_pool_t* pool)
{
    const auto& blame = *static_cast<Blame*>(baton);
    *blame.first = first;
    *blame.last = last;
    return blame.receiver(blame.baton, line, revision, properties, mergedRevision, mergedProperties, mergedPath,
                          svn_string_create(text, pool), isLocal, pool);
}
#elif HSVN_LINE_MINOR < 7
/// The properties of a revision as far as the older functions tell them.
apr_hash_t* propertiesOf(const char* author, const char* date, apr_pool_t* pool)
{
    apr_hash_t* const properties = apr_hash_make(pool);
    if (author != nullptr) {
        apr_hash_set(properties, SVN_PROP_REVISION_AUTHOR, APR_HASH_KEY_STRING, svn_string_create(author, pool));
    }
    if (date != nullptr) {
        apr_hash_set(properties, SVN_PROP_REVISION_DATE, APR_HASH_KEY_STRING, svn_string_create(date, pool));
    }
    return properties;
}

#if HSVN_LINE_MINOR >= 5
svn_error_t* receiveLine(void* baton, apr_int64_t line, svn_revnum_t revision, const char* author, const char* date,
                         svn_revnum_t mergedRevision, const char* mergedAuthor, const char* mergedDate,
                         const char* mergedPath, const char* text, apr_pool_t* pool)
{
    const auto& blame = *static_cast<Blame*>(baton);
    return blame.receiver(blame.baton, line, revision, propertiesOf(author, date, pool), mergedRevision,
                          propertiesOf(mergedAuthor, mergedDate, pool), mergedPath, svn_string_create(text, pool),
                          FALSE, pool);
}
#else
svn_error_t* receiveLine(void* baton, apr_int64_t line, svn_revnum_t revision, const char* author, const char* date,
                         const char* text, apr_pool_t* pool)
{
    const auto& blame = *static_cast<Blame*>(baton);
    return blame.receiver(blame.baton, line, revision, propertiesOf(author, date, pool), SVN_INVALID_REVNUM, nullptr,
                          nullptr, svn_string_create(text, pool), FALSE, pool);
}
#endif
#endif

svn_error_t* blame(svn_revnum_t* first, svn_revnum_t* last, const char* target, const svn_opt_revision_t* pegRevision,
                   const svn_opt_revision_t* start, const svn_opt_revision_t* end, const apr_array_header_t* arguments,
                   svn_boolean_t ignoreContentType, [[maybe_unused]] svn_boolean_t mergedRevisions,
                   HSVNReadingFunctions::BlameReceiver receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target, pool));
    auto* const choices = svn_diff_file_options_create(pool);
    SVN_ERR(svn_diff_file_options_parse(choices, arguments, pool));
#if HSVN_LINE_MINOR >= 12
    return svn_client_blame6(first, last, target, pegRevision, start, end, choices, ignoreContentType, mergedRevisions,
                             receiver, baton, ctx, pool);
#else
    Blame lines{receiver, baton, first, last};
#if HSVN_LINE_MINOR >= 7
    return svn_client_blame5(target, pegRevision, start, end, choices, ignoreContentType, mergedRevisions, receiveLine,
                             &lines, ctx, pool);
#elif HSVN_LINE_MINOR >= 5
    return svn_client_blame4(target, pegRevision, start, end, choices, ignoreContentType, mergedRevisions, receiveLine,
                             &lines, ctx, pool);
#else
    return svn_client_blame3(target, pegRevision, start, end, choices, ignoreContentType, receiveLine, &lines, ctx,
                             pool);
#endif
#endif
}

} // namespace

void fillBlame(HSVNReadingFunctions& table) { table.client_blame = blame; }

} // namespace HSVNAdapter

#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTargets.h"

// Older headers hide the function behind a macro that records the caller's place.
#undef svn_error_create

extern "C" void svn_error__locate(const char* file, long line);

namespace HSVNAdapter {
namespace {

svn_error_t* openFile(apr_file_t** file, const char* path, apr_int32_t flags, apr_fileperms_t permissions,
                      apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    return svn_io_file_open(file, path, flags, permissions, pool);
}

svn_error_t* checkPath(const char* path, svn_node_kind_t* kind, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    return svn_io_check_path(path, kind, pool);
}

svn_boolean_t matchGlobList(const char* text, const apr_array_header_t* patterns)
{
    // Older lines take the array without const; none of them writes to it.
    return svn_cstring_match_glob_list(text, const_cast<apr_array_header_t*>(patterns));
}

const char* bestMessage(const svn_error_t* error, char* buffer, apr_size_t size)
{
    return svn_err_best_message(const_cast<svn_error_t*>(error), buffer, size);
}

svn_error_t* ensureConfiguration(const char* folder, apr_pool_t* pool)
{
    SVN_ERR(checkConfigurationFolder(&folder, pool));
    return svn_config_ensure(folder, pool);
}

svn_error_t* readConfiguration(apr_hash_t** configuration, const char* folder, apr_pool_t* pool)
{
    SVN_ERR(checkConfigurationFolder(&folder, pool));
    return svn_config_get_config(configuration, folder, pool);
}

svn_error_t* detectMIMEType(const char** type, const char* file, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(file, pool);
    return svn_io_detect_mimetype(type, file, pool);
}

/// A pool at the top is a context's or a call's, each of one thread at a time, and so is what lives in it: with an
/// allocator of its own no allocation waits for a lock.
apr_pool_t* createPool(apr_pool_t* parent, apr_allocator_t* allocator)
{
    apr_allocator_t* own = nullptr;
    if (parent != nullptr || allocator != nullptr || apr_allocator_create(&own) != APR_SUCCESS) {
        return svn_pool_create_ex(parent, allocator);
    }
    apr_allocator_max_free_set(own, SVN_ALLOCATOR_RECOMMENDED_MAX_FREE);
    apr_pool_t* const pool = svn_pool_create_ex(nullptr, own);
    apr_allocator_owner_set(own, pool);
    return pool;
}

} // namespace

void fillRuntimeServices(HSVNBundleEntryPoints& table)
{
    table.apr_palloc = apr_palloc;
    table.apr_pstrdup = apr_pstrdup;
    table.io_file_open = openFile;
    table.io_file_close = svn_io_file_close;
    table.io_check_path = checkPath;
    table.apr_array_make = apr_array_make;
    table.apr_array_push = apr_array_push;
    table.apr_hash_make = apr_hash_make;
    table.apr_hash_first = apr_hash_first;
    table.apr_hash_next = apr_hash_next;
    table.apr_hash_this = apr_hash_this;
    table.apr_hash_get = apr_hash_get;
    table.apr_hash_set = apr_hash_set;
    table.pool_create = createPool;
    table.apr_pool_destroy = apr_pool_destroy;
    table.string_create = svn_string_create;
    table.cstring_match_glob_list = matchGlobList;
    table.cstring_split = svn_cstring_split;
    table.time_from_cstring = svn_time_from_cstring;
    table.error_clear = svn_error_clear;
    table.error_create = svn_error_create;
    table.error_locate = svn_error__locate;
    table.err_best_message = bestMessage;
    table.config_get = svn_config_get;
    table.config_set = svn_config_set;
    table.config_enumerate = svn_config_enumerate;
    table.config_ensure = ensureConfiguration;
    table.config_get_config = readConfiguration;
    table.io_detect_mimetype = detectMIMEType;
    table.client_create_context = svn_client_create_context;
}

} // namespace HSVNAdapter

#pragma once

#include "Internal/Subversion.h"

#include <cstddef>

/// The only way to Subversion: the functions that a version bundle hands to the library.
///
/// The order of the places is the contract between the library and its bundles and never changes. Every place that has
/// a name is filled, but for the second form of two-form operations: a 1.4 bundle fills `client_checkout2`,
/// `client_commit3`, `client_export3`, `client_update2` and `client_merge2`; a later bundle fills `client_checkout3`,
/// `client_commit4`, `client_export4`, `client_update3` and `client_merge3` as well. Places called `reserved` are free.
///
/// What a bundle promises beyond the functions themselves (canonical paths, error codes, records) is told in
/// Documentation/Bundles.md. The table is owned by the bundle, read-only, and valid for the life of the process.
struct HSVNBundleEntryPoints
{
    /*  0 free */
    void (*reserved0)();
    /*  1 free */
    void (*reserved1)();
    /*  2 free */
    void (*reserved2)();
    /*  3 apr_palloc */
    void* (*apr_palloc)(apr_pool_t* pool, apr_size_t size);
    /*  4 apr_pstrdup */
    char* (*apr_pstrdup)(apr_pool_t* pool, const char* text);
    /*  5 svn_io_file_open */
    svn_error_t* (*io_file_open)(apr_file_t** file, const char* path, apr_int32_t flags, apr_fileperms_t permissions,
                                 apr_pool_t* pool);
    /*  6 svn_io_file_close */
    svn_error_t* (*io_file_close)(apr_file_t* file, apr_pool_t* pool);
    /*  7 svn_stream_from_aprfile2 */
    svn_stream_t* (*stream_from_aprfile2)(apr_file_t* file, svn_boolean_t disown, apr_pool_t* pool);
    /*  8 svn_io_check_path */
    svn_error_t* (*io_check_path)(const char* path, svn_node_kind_t* kind, apr_pool_t* pool);
    /*  9 apr_array_make */
    apr_array_header_t* (*apr_array_make)(apr_pool_t* pool, int count, int elementSize);
    /* 10 apr_array_push */
    void* (*apr_array_push)(apr_array_header_t* array);
    /* 11 apr_hash_make */
    apr_hash_t* (*apr_hash_make)(apr_pool_t* pool);
    /* 12 apr_hash_first */
    apr_hash_index_t* (*apr_hash_first)(apr_pool_t* pool, apr_hash_t* hash);
    /* 13 apr_hash_next */
    apr_hash_index_t* (*apr_hash_next)(apr_hash_index_t* index);
    /* 14 apr_hash_this */
    void (*apr_hash_this)(apr_hash_index_t* index, const void** key, apr_ssize_t* keyLength, void** value);
    /* 15 apr_hash_get */
    void* (*apr_hash_get)(apr_hash_t* hash, const void* key, apr_ssize_t keyLength);
    /* 16 apr_hash_set */
    void (*apr_hash_set)(apr_hash_t* hash, const void* key, apr_ssize_t keyLength, const void* value);
    /* 17 svn_pool_create_ex */
    apr_pool_t* (*pool_create)(apr_pool_t* parent, apr_allocator_t* allocator);
    /* 18 apr_pool_destroy */
    void (*apr_pool_destroy)(apr_pool_t* pool);
    /* 19 svn_string_create */
    svn_string_t* (*string_create)(const char* text, apr_pool_t* pool);
    /* 20 svn_cstring_match_glob_list */
    svn_boolean_t (*cstring_match_glob_list)(const char* text, const apr_array_header_t* patterns);
    /* 21 svn_cstring_split */
    apr_array_header_t* (*cstring_split)(const char* text, const char* separators, svn_boolean_t chopWhitespace,
                                         apr_pool_t* pool);
    /* 22 svn_time_from_cstring */
    svn_error_t* (*time_from_cstring)(apr_time_t* time, const char* text, apr_pool_t* pool);
    /* 23 svn_error_clear */
    void (*error_clear)(svn_error_t* error);
    /* 24 svn_error_create */
    svn_error_t* (*error_create)(apr_status_t status, svn_error_t* child, const char* message);
    /* 25 svn_error__locate */
    void (*error_locate)(const char* file, long line);
    /* 26 svn_err_best_message */
    const char* (*err_best_message)(const svn_error_t* error, char* buffer, apr_size_t size);
    /* 27 svn_config_get */
    void (*config_get)(svn_config_t* config, const char** value, const char* section, const char* option,
                       const char* defaultValue);
    /* 28 svn_config_set */
    void (*config_set)(svn_config_t* config, const char* section, const char* option, const char* value);
    /* 29 svn_config_enumerate */
    int (*config_enumerate)(svn_config_t* config, const char* section, svn_config_enumerator_t callback, void* baton);
    /* 30 svn_config_ensure */
    svn_error_t* (*config_ensure)(const char* configFolder, apr_pool_t* pool);
    /* 31 svn_config_get_config */
    svn_error_t* (*config_get_config)(apr_hash_t** config, const char* configFolder, apr_pool_t* pool);
    /* 32 svn_client_add3 */
    svn_error_t* (*client_add3)(const char* path, svn_boolean_t recursive, svn_boolean_t force, svn_boolean_t noIgnore,
                                svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 33 svn_client_cat2 */
    svn_error_t* (*client_cat2)(svn_stream_t* out, const char* pathOrURL, const svn_opt_revision_t* pegRevision,
                                const svn_opt_revision_t* revision, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 34 svn_client_checkout2 */
    svn_error_t* (*client_checkout2)(svn_revnum_t* result, const char* url, const char* path,
                                     const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                     svn_boolean_t recurse, svn_boolean_t ignoreExternals, svn_client_ctx_t* ctx,
                                     apr_pool_t* pool);
    /* 35 svn_client_checkout3 */
    svn_error_t* (*client_checkout3)(svn_revnum_t* result, const char* url, const char* path,
                                     const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                     svn_depth_t depth, svn_boolean_t ignoreExternals, svn_boolean_t allowObstructions,
                                     svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 36 svn_client_cleanup */
    svn_error_t* (*client_cleanup)(const char* folder, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 37 svn_client_commit3 */
    svn_error_t* (*client_commit3)(svn_commit_info_t** info, const apr_array_header_t* targets, svn_boolean_t recurse,
                                   svn_boolean_t keepLocks, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 38 svn_client_commit4 */
    svn_error_t* (*client_commit4)(svn_commit_info_t** info, const apr_array_header_t* targets, svn_depth_t depth,
                                   svn_boolean_t keepLocks, svn_boolean_t keepChangelists,
                                   const apr_array_header_t* changelists, const apr_hash_t* revisionProperties,
                                   svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 39 svn_client_copy3 */
    svn_error_t* (*client_copy3)(svn_commit_info_t** info, const char* source, const svn_opt_revision_t* sourceRevision,
                                 const char* destination, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 40 svn_client_create_context */
    svn_error_t* (*client_create_context)(svn_client_ctx_t** ctx, apr_pool_t* pool);
    /* 41 svn_client_delete2 */
    svn_error_t* (*client_delete2)(svn_commit_info_t** info, const apr_array_header_t* paths, svn_boolean_t force,
                                   svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 42 svn_client_diff_peg3 */
    svn_error_t* (*client_diff_peg3)(const apr_array_header_t* diffOptions, const char* path,
                                     const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* startRevision,
                                     const svn_opt_revision_t* endRevision, svn_boolean_t recurse,
                                     svn_boolean_t ignoreAncestry, svn_boolean_t noDiffDeleted,
                                     svn_boolean_t ignoreContentType, const char* headerEncoding, apr_file_t* outFile,
                                     apr_file_t* errorFile, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 43 svn_client_export3 */
    svn_error_t* (*client_export3)(svn_revnum_t* result, const char* from, const char* to,
                                   const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                   svn_boolean_t overwrite, svn_boolean_t ignoreExternals, svn_boolean_t recurse,
                                   const char* nativeEOL, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 44 svn_client_export4 */
    svn_error_t* (*client_export4)(svn_revnum_t* result, const char* from, const char* to,
                                   const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                   svn_boolean_t overwrite, svn_boolean_t ignoreExternals, svn_depth_t depth,
                                   const char* nativeEOL, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 45 svn_client_import2 */
    svn_error_t* (*client_import2)(svn_commit_info_t** info, const char* path, const char* url,
                                   svn_boolean_t nonRecursive, svn_boolean_t noIgnore, svn_client_ctx_t* ctx,
                                   apr_pool_t* pool);
    /* 46 svn_client_info */
    svn_error_t* (*client_info)(const char* pathOrURL, const svn_opt_revision_t* pegRevision,
                                const svn_opt_revision_t* revision, svn_info_receiver_t receiver, void* baton,
                                svn_boolean_t recurse, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 47 svn_client_list */
    svn_error_t* (*client_list)(const char* pathOrURL, const svn_opt_revision_t* pegRevision,
                                const svn_opt_revision_t* revision, svn_boolean_t recurse, apr_uint32_t fields,
                                svn_boolean_t fetchLocks, svn_client_list_func_t receiver, void* baton,
                                svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 48 svn_client_lock */
    svn_error_t* (*client_lock)(const apr_array_header_t* targets, const char* comment, svn_boolean_t stealLock,
                                svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 49 svn_client_log3 */
    svn_error_t* (*client_log3)(const apr_array_header_t* targets, const svn_opt_revision_t* pegRevision,
                                const svn_opt_revision_t* start, const svn_opt_revision_t* end, int limit,
                                svn_boolean_t discoverChangedPaths, svn_boolean_t strictNodeHistory,
                                svn_log_message_receiver_t receiver, void* baton, svn_client_ctx_t* ctx,
                                apr_pool_t* pool);
    /* 50 svn_client_mkdir2 */
    svn_error_t* (*client_mkdir2)(svn_commit_info_t** info, const apr_array_header_t* paths, svn_client_ctx_t* ctx,
                                  apr_pool_t* pool);
    /* 51 svn_client_move4 */
    svn_error_t* (*client_move4)(svn_commit_info_t** info, const char* source, const char* destination,
                                 svn_boolean_t force, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 52 svn_client_propget2 */
    svn_error_t* (*client_propget2)(apr_hash_t** properties, const char* name, const char* target,
                                    const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                    svn_boolean_t recurse, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 53 svn_client_proplist2 */
    svn_error_t* (*client_proplist2)(apr_array_header_t** properties, const char* target,
                                     const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                                     svn_boolean_t recurse, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 54 svn_client_propset2 */
    svn_error_t* (*client_propset2)(const char* name, const svn_string_t* value, const char* target,
                                    svn_boolean_t recurse, svn_boolean_t skipChecks, svn_client_ctx_t* ctx,
                                    apr_pool_t* pool);
    /* 55 svn_client_resolved */
    svn_error_t* (*client_resolved)(const char* path, svn_boolean_t recursive, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 56 svn_client_revert */
    svn_error_t* (*client_revert)(const apr_array_header_t* paths, svn_boolean_t recursive, svn_client_ctx_t* ctx,
                                  apr_pool_t* pool);
    /* 57 svn_client_status2 */
    svn_error_t* (*client_status2)(svn_revnum_t* result, const char* path, const svn_opt_revision_t* revision,
                                   svn_wc_status_func2_t receiver, void* baton, svn_boolean_t recurse,
                                   svn_boolean_t getAll, svn_boolean_t update, svn_boolean_t noIgnore,
                                   svn_boolean_t ignoreExternals, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 58 svn_client_unlock */
    svn_error_t* (*client_unlock)(const apr_array_header_t* targets, svn_boolean_t breakLock, svn_client_ctx_t* ctx,
                                  apr_pool_t* pool);
    /* 59 svn_client_update3 */
    svn_error_t* (*client_update3)(apr_array_header_t** results, const apr_array_header_t* paths,
                                   const svn_opt_revision_t* revision, svn_depth_t depth, svn_boolean_t depthIsSticky,
                                   svn_boolean_t ignoreExternals, svn_boolean_t allowObstructions,
                                   svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 60 svn_client_update2 */
    svn_error_t* (*client_update2)(apr_array_header_t** results, const apr_array_header_t* paths,
                                   const svn_opt_revision_t* revision, svn_boolean_t recurse,
                                   svn_boolean_t ignoreExternals, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 61 svn_client_merge2 */
    svn_error_t* (*client_merge2)(const char* source1, const svn_opt_revision_t* revision1, const char* source2,
                                  const svn_opt_revision_t* revision2, const char* target, svn_boolean_t recurse,
                                  svn_boolean_t ignoreAncestry, svn_boolean_t force, svn_boolean_t dryRun,
                                  const apr_array_header_t* mergeOptions, svn_client_ctx_t* ctx, apr_pool_t* pool);
    /* 62 svn_client_merge3 */
    svn_error_t* (*client_merge3)(const char* source1, const svn_opt_revision_t* revision1, const char* source2,
                                  const svn_opt_revision_t* revision2, const char* target, svn_depth_t depth,
                                  svn_boolean_t ignoreAncestry, svn_boolean_t force, svn_boolean_t recordOnly,
                                  svn_boolean_t dryRun, const apr_array_header_t* mergeOptions, svn_client_ctx_t* ctx,
                                  apr_pool_t* pool);
    /* 63 free */
    void (*reserved63)();
    /* 64 svn_client_get_simple_provider */
    void (*client_get_simple_provider)(svn_auth_provider_object_t** provider, apr_pool_t* pool);
    /* 65 svn_client_get_username_provider */
    void (*client_get_username_provider)(svn_auth_provider_object_t** provider, apr_pool_t* pool);
    /* 66 svn_client_get_ssl_server_trust_file_provider */
    void (*client_get_ssl_server_trust_file_provider)(svn_auth_provider_object_t** provider, apr_pool_t* pool);
    /* 67 svn_client_get_ssl_client_cert_file_provider */
    void (*client_get_ssl_client_cert_file_provider)(svn_auth_provider_object_t** provider, apr_pool_t* pool);
    /* 68 svn_auth_get_simple_prompt_provider */
    void (*auth_get_simple_prompt_provider)(svn_auth_provider_object_t** provider, svn_auth_simple_prompt_func_t prompt,
                                            void* baton, int retryLimit, apr_pool_t* pool);
    /* 69 svn_auth_get_ssl_server_trust_prompt_provider */
    void (*auth_get_ssl_server_trust_prompt_provider)(svn_auth_provider_object_t** provider,
                                                      svn_auth_ssl_server_trust_prompt_func_t prompt, void* baton,
                                                      apr_pool_t* pool);
    /* 70 svn_auth_open */
    void (*auth_open)(svn_auth_baton_t** baton, const apr_array_header_t* providers, apr_pool_t* pool);
    /* 71 svn_diff_file_options_parse */
    svn_error_t* (*diff_file_options_parse)(svn_diff_file_options_t* options, const apr_array_header_t* arguments,
                                            apr_pool_t* pool);
    /* 72 svn_diff_file_diff_2 */
    svn_error_t* (*diff_file_diff_2)(svn_diff_t** diff, const char* original, const char* modified,
                                     const svn_diff_file_options_t* options, apr_pool_t* pool);
    /* 73 svn_diff_output */
    svn_error_t* (*diff_output)(svn_diff_t* diff, void* baton, const svn_diff_output_fns_t* functions);
    /* 74 svn_diff_file_output_unified2 */
    svn_error_t* (*diff_file_output_unified2)(svn_stream_t* out, svn_diff_t* diff, const char* originalPath,
                                              const char* modifiedPath, const char* originalHeader,
                                              const char* modifiedHeader, const char* headerEncoding, apr_pool_t* pool);
    /* 75 svn_wc_check_wc */
    svn_error_t* (*wc_check_wc)(const char* path, int* format, apr_pool_t* pool);
    /* 76 svn_wc_get_adm_dir */
    const char* (*wc_get_adm_dir)(apr_pool_t* pool);
    /* 77 free */
    void (*reserved77)();
    /* 78 svn_wc_parse_externals_description3 */
    svn_error_t* (*wc_parse_externals_description3)(apr_array_header_t** externals, const char* definingFolder,
                                                    const char* text, svn_boolean_t canonicalizeURL, apr_pool_t* pool);
    /* 79 svn_wc_get_pristine_copy_path */
    svn_error_t* (*wc_get_pristine_copy_path)(const char* path, const char** pristinePath, apr_pool_t* pool);
    /* 80 svn_io_detect_mimetype */
    svn_error_t* (*io_detect_mimetype)(const char** type, const char* file, apr_pool_t* pool);
    /* 81 svn_repos_open */
    svn_error_t* (*repos_open)(svn_repos_t** repository, const char* path, apr_pool_t* pool);
    /* 82 svn_repos_create */
    svn_error_t* (*repos_create)(svn_repos_t** repository, const char* path, const char* unused1, const char* unused2,
                                 apr_hash_t* config, apr_hash_t* fileSystemConfig, apr_pool_t* pool);
    /* 83 svn_repos_delete */
    svn_error_t* (*repos_delete)(const char* path, apr_pool_t* pool);
    /* 84 svn_stream_set_read */
    void (*stream_set_read)(svn_stream_t* stream, svn_read_fn_t read);
    /* 85 svn_stream_set_write */
    void (*stream_set_write)(svn_stream_t* stream, svn_write_fn_t write);
    /* 86 svn_stream_set_close */
    void (*stream_set_close)(svn_stream_t* stream, svn_close_fn_t close);
    /* 87 svn_stream_create */
    svn_stream_t* (*stream_create)(void* baton, apr_pool_t* pool);
    /* 88 svn_stream_close */
    svn_error_t* (*stream_close)(svn_stream_t* stream);
    /* 89 free */
    void (*reserved89)();
    /* 90 free */
    void (*reserved90)();
};

static_assert(sizeof(HSVNBundleEntryPoints) == 91 * sizeof(void (*)()), "the table has 91 places");
#define HSVN_REQUIRE_PLACE(number, member)                                                                             \
    static_assert(offsetof(HSVNBundleEntryPoints, member) == (number) * sizeof(void (*)()), #member)
HSVN_REQUIRE_PLACE(3, apr_palloc);
HSVN_REQUIRE_PLACE(17, pool_create);
HSVN_REQUIRE_PLACE(32, client_add3);
HSVN_REQUIRE_PLACE(46, client_info);
HSVN_REQUIRE_PLACE(57, client_status2);
HSVN_REQUIRE_PLACE(64, client_get_simple_provider);
HSVN_REQUIRE_PLACE(75, wc_check_wc);
HSVN_REQUIRE_PLACE(88, stream_close);
#undef HSVN_REQUIRE_PLACE

extern "C" {
/// What a bundle's shared object exports under the name `HSVNBundlePrincipalObject`: starts the bundle's Subversion
/// once and answers its table, which lives as long as the process; null when the libraries could not be started.
///
/// @param version  out: the version that `svn_client_version()` reports at run time, as text such as "1.14.2"; static
using HSVNBundlePrincipalFunction = const HSVNBundleEntryPoints* (*)(const char** version);
}

/// Name of the one symbol that a bundle exports.
inline constexpr const char* HSVNBundlePrincipalSymbol = "HSVNBundlePrincipalObject";

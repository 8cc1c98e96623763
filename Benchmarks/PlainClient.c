#include "PlainClient.h"

#include <apr_general.h>
#include <locale.h>
#include <stdio.h>
#include <string.h>
#include <svn_client.h>
#include <svn_config.h>
#include <svn_diff.h>
#include <svn_dirent_uri.h>
#include <svn_fs.h>
#include <svn_opt.h>
#include <svn_path.h>
#include <svn_pools.h>

struct PlainClient
{
    apr_pool_t* pool;
    svn_client_ctx_t* ctx;
};

static const svn_opt_revision_t unspecified = {svn_opt_revision_unspecified, {0}};
static const svn_opt_revision_t head = {svn_opt_revision_head, {0}};

/* Counting receivers; the baton is the count. */

static void countItem(void* count) { ++*(long*)count; }

static svn_error_t* countStatus(void* count, const char* path, const svn_client_status_t* status, apr_pool_t* pool)
{
    (void)path;
    (void)status;
    (void)pool;
    countItem(count);
    return SVN_NO_ERROR;
}

static svn_error_t* countRevision(void* count, apr_hash_t* changedPaths, svn_revnum_t revision, const char* author,
                                  const char* date, const char* message, apr_pool_t* pool)
{
    (void)changedPaths;
    (void)revision;
    (void)author;
    (void)date;
    (void)message;
    (void)pool;
    countItem(count);
    return SVN_NO_ERROR;
}

static svn_error_t* countEntry(void* count, const char* path, const svn_dirent_t* dirent, const svn_lock_t* lock,
                               const char* absolutePath, apr_pool_t* pool)
{
    (void)dirent;
    (void)lock;
    (void)absolutePath;
    (void)pool;
    if (*path) { /* the folder itself is reported with an empty path */
        countItem(count);
    }
    return SVN_NO_ERROR;
}

static svn_error_t* countBytes(void* count, const char* data, apr_size_t* length)
{
    (void)data;
    *(long*)count += (long)*length;
    return SVN_NO_ERROR;
}

/* Operations */

static svn_error_t* status(long* count, const char* path, svn_boolean_t getAll, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    return svn_client_status6(NULL, ctx, path, &unspecified, svn_depth_infinity, getAll, FALSE, TRUE, FALSE, FALSE,
                              FALSE, NULL, countStatus, count, pool);
}

static svn_error_t* statusAll(long* count, const char* target, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    return status(count, target, TRUE, ctx, pool);
}

static svn_error_t* statusChanged(long* count, const char* target, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    return status(count, target, FALSE, ctx, pool);
}

static svn_error_t* readLog(long* count, const char* target, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const svn_opt_revision_t first = {svn_opt_revision_number, {1}};
    apr_array_header_t* targets = apr_array_make(pool, 1, sizeof(const char*));
    APR_ARRAY_PUSH(targets, const char*) = target;
    return svn_client_log3(targets, &unspecified, &head, &first, 0, TRUE, FALSE, countRevision, count, ctx, pool);
}

static svn_error_t* list(long* count, const char* target, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    return svn_client_list(target, &head, &head, FALSE, SVN_DIRENT_ALL, TRUE, countEntry, count, ctx, pool);
}

static svn_error_t* cat(long* count, const char* target, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    svn_stream_t* stream = svn_stream_create(count, pool);
    svn_stream_set_write(stream, countBytes);
    return svn_client_cat2(stream, target, &head, &head, ctx, pool);
}

static svn_error_t* countOriginalLines(void* count, apr_off_t originalStart, apr_off_t originalLength,
                                       apr_off_t modifiedStart, apr_off_t modifiedLength, apr_off_t latestStart,
                                       apr_off_t latestLength)
{
    (void)originalStart;
    (void)modifiedStart;
    (void)modifiedLength;
    (void)latestStart;
    (void)latestLength;
    *(long*)count += (long)originalLength;
    return SVN_NO_ERROR;
}

static svn_error_t* compare(long* count, const char* target, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    svn_diff_t* diff = NULL;
    svn_diff_output_fns_t receivers = {0};
    receivers.output_common = countOriginalLines;
    receivers.output_diff_modified = countOriginalLines;
    (void)ctx;
    SVN_ERR(svn_diff_file_diff_2(&diff, svn_dirent_join(target, "before.txt", pool),
                                 svn_dirent_join(target, "after.txt", pool), svn_diff_file_options_create(pool), pool));
    return svn_diff_output2(diff, count, &receivers, NULL, NULL);
}

static svn_error_t* start(long* count, const char* target, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    (void)target;
    (void)ctx;
    (void)pool;
    *count = 1;
    return SVN_NO_ERROR;
}

typedef svn_error_t* (*Operation)(long* count, const char* target, svn_client_ctx_t* ctx, apr_pool_t* pool);

static Operation findOperation(const char* name)
{
    static const struct
    {
        const char* name;
        Operation operation;
    } operations[] = {{"status-all", statusAll},
                      {"status-changed", statusChanged},
                      {"status-aggregated", statusAll},
                      {"status-folder-aggregated", statusAll},
                      {"status-verb-all", statusAll},
                      {"status-verb-changed", statusChanged},
                      {"log", readLog},
                      {"list", list},
                      {"cat", cat},
                      {"compare", compare},
                      {"start", start}};
    for (size_t index = 0; index < sizeof operations / sizeof *operations; ++index) {
        if (strcmp(operations[index].name, name) == 0) {
            return operations[index].operation;
        }
    }
    return NULL;
}

/* The client */

static int report(svn_error_t* error)
{
    if (!error) {
        return 0;
    }
    svn_handle_error2(error, stderr, FALSE, "plain client: ");
    svn_error_clear(error);
    return -1;
}

static svn_error_t* openContext(svn_client_ctx_t** ctx, apr_pool_t* pool)
{
    apr_hash_t* configuration = NULL;
    apr_array_header_t* providers = apr_array_make(pool, 0, sizeof(svn_auth_provider_object_t*));
    SVN_ERR(svn_fs_initialize(pool));
    SVN_ERR(svn_config_ensure(NULL, pool));
    SVN_ERR(svn_config_get_config(&configuration, NULL, pool));
    SVN_ERR(svn_client_create_context2(ctx, configuration, pool));
    svn_auth_open(&(*ctx)->auth_baton, providers, pool);
    return SVN_NO_ERROR;
}

struct PlainClient* PlainClientOpen(void)
{
    setlocale(LC_ALL, ""); /* loaded apart, it has a C library of its own */
    if (apr_initialize() != APR_SUCCESS) {
        fputs("plain client: APR does not start\n", stderr);
        return NULL;
    }
    apr_pool_t* pool = svn_pool_create(NULL);
    struct PlainClient* client = apr_pcalloc(pool, sizeof *client);
    client->pool = pool;
    if (report(openContext(&client->ctx, pool)) != 0) {
        PlainClientClose(client);
        return NULL;
    }
    return client;
}

long PlainClientRun(struct PlainClient* client, const char* operation, const char* target)
{
    const Operation run = findOperation(operation);
    if (!run) {
        fprintf(stderr, "plain client: there is no operation '%s'\n", operation);
        return -1;
    }
    long count = 0;
    apr_pool_t* pool = svn_pool_create(client->pool);
    const char* canonical =
        svn_path_is_url(target) ? svn_uri_canonicalize(target, pool) : svn_dirent_canonicalize(target, pool);
    const int result = report(run(&count, canonical, client->ctx, pool));
    svn_pool_destroy(pool);
    return result == 0 ? count : -1;
}

void PlainClientClose(struct PlainClient* client)
{
    if (client) {
        svn_pool_destroy(client->pool);
        apr_terminate();
    }
}

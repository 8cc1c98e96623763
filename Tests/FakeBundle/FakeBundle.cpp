#include "FakeBundleState.h"
#include "Internal/BundleEntryPoints.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

// The table's places are functions of old lines, which today's Subversion has all the same.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

// A version bundle for the tests of the binding: what contexts and exceptions call works on the installed Subversion,
// the other places are filled with a function that must not be called.

extern "C" {
__attribute__((visibility("default"))) FakeBundleState HSVNFakeBundleState;
__attribute__((visibility("default"))) const HSVNBundleEntryPoints* HSVNBundlePrincipalObject(const char** version);
}

namespace {

void mustNotBeCalled() { std::abort(); }

apr_pool_t* createPool(apr_pool_t* parent, apr_allocator_t* allocator)
{
    ++HSVNFakeBundleState.pools;
    return svn_pool_create_ex(parent, allocator);
}

void destroyPool(apr_pool_t* pool)
{
    --HSVNFakeBundleState.pools;
    apr_pool_destroy(pool);
}

// What Subversion's own headers make of it: nothing, but in builds for debugging.
void locateError(const char* /*file*/, long /*line*/) {}

svn_error_t* createContext(svn_client_ctx_t** ctx, apr_pool_t* pool)
{
    if (HSVNFakeBundleState.contextFails) {
        return svn_error_create(SVN_ERR_WC_LOCKED, nullptr, "no context today");
    }
    return svn_client_create_context(ctx, pool);
}

HSVNBundleEntryPoints makeTable()
{
    std::array<void (*)(), sizeof(HSVNBundleEntryPoints) / sizeof(void (*)())> places{};
    places.fill(mustNotBeCalled);
    HSVNBundleEntryPoints table{};
    static_assert(sizeof table == sizeof places);
    std::memcpy(&table, places.data(), sizeof table);
    table.pool_create = createPool;
    table.apr_pool_destroy = destroyPool;
    table.apr_hash_get = apr_hash_get;
    table.apr_array_make = apr_array_make;
    table.apr_array_push = apr_array_push;
    table.apr_pstrdup = apr_pstrdup;
    table.cstring_split = svn_cstring_split;
    table.error_clear = svn_error_clear;
    table.error_create = svn_error_create;
    table.error_locate = locateError;
    table.err_best_message = svn_err_best_message;
    table.config_get = svn_config_get;
    table.config_set = svn_config_set;
    table.config_enumerate = svn_config_enumerate;
    table.config_get_config = svn_config_get_config;
    table.client_create_context = createContext;
    if (HSVNFakeBundleState.missingPlace >= 0) {
        char* const place = reinterpret_cast<char*>(&table) +
                            static_cast<std::size_t>(HSVNFakeBundleState.missingPlace) * sizeof(void*);
        std::memset(place, 0, sizeof(void*));
    }
    return table;
}

} // namespace

const HSVNBundleEntryPoints* HSVNBundlePrincipalObject(const char** version)
{
    FakeBundleState& state = HSVNFakeBundleState;
    ++state.starts;
    std::this_thread::sleep_for(std::chrono::milliseconds{state.startMilliseconds});
    apr_initialize();
    static const HSVNBundleEntryPoints table = makeTable();
    *version = state.version;
    return state.startFails ? nullptr : &table;
}

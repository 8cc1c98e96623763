#include "LoadedBundle.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

svn_error_t* logMessage(const char** message, const char** file, const apr_array_header_t*, void* baton, apr_pool_t*)
{
    *message = static_cast<const LoadedBundle*>(baton)->givesLogMessages ? "Changed" : nullptr;
    *file = nullptr;
    return nullptr;
}

void notified(void* baton, const svn_wc_notify_t* notification, apr_pool_t*)
{
    const auto& heard = static_cast<const LoadedBundle*>(baton)->heard;
    if (heard) {
        heard(*notification);
    }
}

} // namespace

std::vector<std::string> builtBundles()
{
    std::vector<std::string> folders;
    for (const auto& entry : std::filesystem::directory_iterator{HSVN_BUILD_PACKAGE "/Subversion"}) {
        folders.push_back(entry.path());
    }
    std::sort(folders.begin(), folders.end());
    return folders;
}

LoadedBundle::LoadedBundle(const std::string& folder)
{
    std::setlocale(LC_ALL, "");
    void* library = dlopen((folder + "/HSVNBundle.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw std::runtime_error{dlerror()};
    }
    const char* version = nullptr;
    _table = reinterpret_cast<HSVNBundlePrincipalFunction>(dlsym(library, HSVNBundlePrincipalSymbol))(&version);
    _version = version;
    _pool = _table->pool_create(nullptr, nullptr);
    succeeds(_table->client_create_context(&_ctx, _pool));
    auto* providers = _table->apr_array_make(_pool, 1, sizeof(svn_auth_provider_object_t*));
    _table->client_get_username_provider(static_cast<svn_auth_provider_object_t**>(_table->apr_array_push(providers)),
                                         _pool);
    _table->auth_open(&_ctx->auth_baton, providers, _pool);
    _ctx->config = _table->apr_hash_make(_pool);
    _ctx->log_msg_func2 = logMessage;
    _ctx->log_msg_baton2 = this;
    _ctx->notify_func2 = notified;
    _ctx->notify_baton2 = this;
}

LoadedBundle::~LoadedBundle() { _table->apr_pool_destroy(_pool); }

int LoadedBundle::minor() const
{
    return std::atoi(_version.c_str() + _version.find('.') + 1); // NOLINT(cert-err34-c): the bundle's own text
}

apr_array_header_t* LoadedBundle::array(const std::vector<std::string>& texts) const
{
    auto* result = _table->apr_array_make(_pool, static_cast<int>(texts.size()), sizeof(const char*));
    for (const auto& text : texts) {
        *static_cast<const char**>(_table->apr_array_push(result)) = _table->apr_pstrdup(_pool, text.c_str());
    }
    return result;
}

const svn_opt_revision_t* LoadedBundle::revision(svn_opt_revision_kind kind)
{
    thread_local std::array<svn_opt_revision_t, svn_opt_revision_head + 1> revisions{};
    auto& revision = revisions.at(kind);
    revision.kind = kind;
    return &revision;
}

std::vector<int> LoadedBundle::codes(svn_error_t* error) const
{
    std::vector<int> result;
    for (const auto* link = error; link != nullptr; link = link->child) {
        result.push_back(link->apr_err);
    }
    _table->error_clear(error);
    return result;
}

void LoadedBundle::succeeds(svn_error_t* error) const
{
    for (const auto* link = error; link != nullptr; link = link->child) {
        std::array<char, 1024> buffer{};
        ADD_FAILURE() << link->apr_err << ' ' << _table->err_best_message(link, buffer.data(), buffer.size());
    }
    _table->error_clear(error);
}

void LoadedBundle::makeRepository(const std::string& folder) const
{
    svn_repos_t* repository = nullptr;
    succeeds(_table->repos_create(&repository, folder.c_str(), nullptr, nullptr, nullptr, nullptr, _pool));
}

void LoadedBundle::checkOut(const std::string& url, const std::string& folder) const
{
    svn_revnum_t result = -1;
    succeeds(_table->client_checkout2(&result, url.c_str(), folder.c_str(), revision(svn_opt_revision_unspecified),
                                      revision(svn_opt_revision_head), TRUE, FALSE, _ctx, _pool));
}

svn_revnum_t LoadedBundle::commit(const std::string& path) const
{
    svn_commit_info_t* info = nullptr;
    // Old lines keep the working copy locked until the pool of a failed call goes.
    auto* pool = _table->pool_create(_pool, nullptr);
    succeeds(_table->client_commit3(&info, array({path}), TRUE, FALSE, _ctx, pool));
    const svn_revnum_t result = info == nullptr ? -1 : info->revision;
    _table->apr_pool_destroy(pool);
    return result;
}

void LoadedBundle::add(const std::string& path) const
{
    succeeds(_table->client_add3(path.c_str(), TRUE, FALSE, FALSE, _ctx, _pool));
}

#pragma once

#include "Internal/BundleEntryPoints.h"

#include <functional>
#include <string>
#include <vector>

/// The version bundles that the build made, the installed Subversion's and those of further lines, as folders.
std::vector<std::string> builtBundles();

/// A version bundle's table with a client context of its own, used without the library.
class LoadedBundle
{
  public:
    explicit LoadedBundle(const std::string& folder);
    ~LoadedBundle();
    LoadedBundle(const LoadedBundle&) = delete;
    LoadedBundle& operator=(const LoadedBundle&) = delete;

    const HSVNBundleEntryPoints* operator->() const { return _table; }
    const HSVNBundleEntryPoints& table() const { return *_table; }
    const std::string& version() const { return _version; }
    /// The line's minor number: 14 for 1.14.
    int minor() const;
    apr_pool_t* pool() const { return _pool; }
    svn_client_ctx_t* ctx() const { return _ctx; }

    apr_array_header_t* array(const std::vector<std::string>& texts) const;
    static const svn_opt_revision_t* revision(svn_opt_revision_kind kind);
    /// The chain's codes, outermost first, the error cleared; empty for none.
    std::vector<int> codes(svn_error_t* error) const;
    /// Fails the test with the chain's messages when there is an error.
    void succeeds(svn_error_t* error) const;

    /// Makes a repository and a working copy of its root with this line.
    void makeRepository(const std::string& folder) const;
    void checkOut(const std::string& url, const std::string& folder) const;
    /// Commits what changed below the path; the new revision, or -1.
    svn_revnum_t commit(const std::string& path) const;
    void add(const std::string& path) const;

    /// Hears every notification of the context.
    std::function<void(const svn_wc_notify_t&)> heard;
    /// Whether log messages are given; refused otherwise.
    bool givesLogMessages = true;

  private:
    const HSVNBundleEntryPoints* _table = nullptr;
    std::string _version;
    apr_pool_t* _pool = nullptr;
    svn_client_ctx_t* _ctx = nullptr;
};

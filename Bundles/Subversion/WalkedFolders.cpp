#include "WalkedFolders.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <exception>
#include <svn_io.h>
#include <svn_path.h>
#include <utility>

namespace HSVNAdapter {
namespace {

thread_local FoldersAhead* foldersAhead = nullptr; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

std::optional<FolderContents> contentsOf(const char* path, apr_pool_t* pool)
{
    if (foldersAhead != nullptr) {
        if (auto contents = foldersAhead->take(path)) {
            return contents;
        }
    }
    const char* native = nullptr;
    if (svn_error_t* const error = svn_path_cstring_from_utf8(&native, path, pool)) {
        svn_error_clear(error);
        return std::nullopt;
    }
    return FolderContents::read(native, false);
}

/// Null when Subversion has to read the folder, to say what is wrong with it.
apr_hash_t* entriesOf(const char* path, apr_pool_t* resultPool, apr_pool_t* pool)
{
    try {
        const auto contents = contentsOf(path, pool);
        return contents ? contents->entries(resultPool) : nullptr;
    } catch (const std::exception&) { // out of memory: it must not pass through Subversion
        return nullptr;
    }
}

} // namespace

WalkedFolders::WalkedFolders(FoldersAhead* ahead) : _before{std::exchange(foldersAhead, ahead)} {}

WalkedFolders::~WalkedFolders() { foldersAhead = _before; }

} // namespace HSVNAdapter

// Of each item's kind, size and time a status walk asks.
HSVN_STAND_IN(svn_error_t*, svn_io_get_dirents3)
(apr_hash_t** entries, const char* path, svn_boolean_t onlyKinds, apr_pool_t* resultPool, apr_pool_t* scratchPool)
{
    auto* const read = onlyKinds || *path != '/' ? nullptr : HSVNAdapter::entriesOf(path, resultPool, scratchPool);
    if (read == nullptr) {
        return HSVN_BEHIND(svn_io_get_dirents3)(entries, path, onlyKinds, resultPool, scratchPool);
    }
    *entries = read;
    return SVN_NO_ERROR;
}

#endif

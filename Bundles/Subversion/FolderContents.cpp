#include "FolderContents.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <svn_io.h>
#include <svn_path.h>
#include <svn_pools.h>
#include <unistd.h>

namespace HSVNAdapter {
namespace {

struct FolderCloser
{
    void operator()(DIR* folder) const { ::closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, FolderCloser>;

OpenFolder openFolder(const std::string& path) { return OpenFolder{::opendir(path.c_str())}; }

svn_node_kind_t kindOf(mode_t mode)
{
    if (S_ISREG(mode) || S_ISLNK(mode)) {
        return svn_node_file;
    }
    return S_ISDIR(mode) ? svn_node_dir : svn_node_unknown;
}

} // namespace

bool isASCII(std::string_view path)
{
    return std::all_of(path.begin(), path.end(), [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

std::optional<FolderContents> FolderContents::read(const std::string& path, const std::atomic<bool>& isToStop)
{
    const auto folder = openFolder(path);
    if (!folder) {
        return std::nullopt;
    }
    FolderContents contents;
    struct stat attributes
    {
    };
    while (!isToStop) {
        errno = 0;
        const dirent* const entry =
            ::readdir(folder.get()); // NOLINT(concurrency-mt-unsafe): the folder is this thread's
        if (entry == nullptr) {
            return errno == 0 ? std::optional{std::move(contents)} : std::nullopt;
        }
        const std::string_view name{&entry->d_name[0]};
        if (name == "." || name == "..") {
            continue;
        }
        if (::fstatat(::dirfd(folder.get()), &entry->d_name[0], &attributes, AT_SYMLINK_NOFOLLOW) != 0) {
            return std::nullopt;
        }
        contents.add(name, attributes);
    }
    return std::nullopt;
}

void FolderContents::add(std::string_view name, const struct stat& attributes)
{
    _items.push_back({_names.size(), name.size(), kindOf(attributes.st_mode), S_ISLNK(attributes.st_mode),
                      attributes.st_size,
                      apr_time_from_sec(attributes.st_mtim.tv_sec) + attributes.st_mtim.tv_nsec / 1000});
    _names.append(name).push_back('\0');
    _hasOnlyASCII = _hasOnlyASCII && isASCII(name);
}

apr_hash_t* FolderContents::entries(apr_pool_t* pool) const
{
    auto* const result = apr_hash_make(pool);
    const auto* const names = static_cast<const char*>(apr_pmemdup(pool, _names.data(), _names.size()));
    for (const auto& item : _items) {
        const char* name = names + item.name;
        auto length = static_cast<apr_ssize_t>(item.length);
        if (!_hasOnlyASCII) {
            if (svn_error_t* const error = svn_path_cstring_to_utf8(&name, name, pool)) {
                svn_error_clear(error);
                return nullptr;
            }
            length = APR_HASH_KEY_STRING;
        }
        auto* const entry = svn_io_dirent2_create(pool);
        entry->kind = item.kind;
        entry->special = item.isLink;
        entry->filesize = item.size;
        entry->mtime = item.time;
        apr_hash_set(result, name, length, entry);
    }
    return result;
}

} // namespace HSVNAdapter

#endif
